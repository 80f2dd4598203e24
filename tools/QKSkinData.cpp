#include "QKSkinData.h"

#include "services/QKWideText.h"

#include <string>
#include <sys/stat.h>

namespace QKSkinData {

namespace {

// One accent, a warm gold that matches the title icon, over calm neutral greys.
constexpr std::array<std::array<uint8_t, 3>, 27> kDark { {
    { 56, 58, 64 }, // 01 outline of dialogs and bars
    { 30, 31, 35 }, // 02 ground of windows and controls
    { 238, 240, 244 }, // 03 caption text, gradient start
    { 232, 178, 72 }, // 04 caption text, gradient end
    { 38, 40, 45 }, // 05 caption band
    { 150, 154, 162 }, // 06 frames, outlines, time texts
    { 46, 48, 54 }, // 07 input fields, check boxes
    { 190, 128, 32 }, // 08 big play face, gradient end
    { 232, 178, 72 }, // 09 spare
    { 212, 214, 220 }, // 10 text
    { 240, 190, 84 }, // 11 drawn faces in hover
    { 206, 209, 216 }, // 12 drawn faces, start of layers 0 and 1
    { 176, 180, 189 }, // 13 drawn faces, start of layers 2 and 3
    { 126, 130, 140 }, // 14 drawn faces, end
    { 0, 0, 0 }, // 15 menu shadow
    { 150, 154, 162 }, // 16 menu frame and check mark
    { 36, 38, 43 }, // 17 menu icon column
    { 27, 28, 32 }, // 18 menu ground
    { 212, 214, 220 }, // 19 menu text
    { 232, 178, 72 }, // 20 selected menu entry
    { 46, 48, 54 }, // 21 spare
    { 70, 73, 80 }, // 22 spare
    { 150, 154, 162 }, // 23 spare
    { 212, 214, 220 }, // 24 spare
    { 240, 192, 88 }, // 25 slider bar, gradient start
    { 196, 136, 40 }, // 26 slider bar, gradient end
    { 232, 178, 72 }, // 27 spare
} };

// The same roles over a light ground, with a deeper gold for contrast.
constexpr std::array<std::array<uint8_t, 3>, 27> kLight { {
    { 186, 189, 196 }, // 01
    { 242, 242, 244 }, // 02
    { 44, 46, 52 }, // 03
    { 170, 112, 16 }, // 04
    { 230, 231, 235 }, // 05
    { 118, 122, 130 }, // 06
    { 255, 255, 255 }, // 07
    { 186, 124, 26 }, // 08
    { 170, 112, 16 }, // 09
    { 36, 38, 44 }, // 10
    { 206, 146, 36 }, // 11
    { 92, 96, 106 }, // 12
    { 112, 116, 126 }, // 13
    { 58, 60, 68 }, // 14
    { 90, 92, 100 }, // 15
    { 120, 124, 134 }, // 16
    { 232, 233, 236 }, // 17
    { 250, 250, 251 }, // 18
    { 36, 38, 44 }, // 19
    { 170, 112, 16 }, // 20
    { 255, 255, 255 }, // 21
    { 186, 189, 196 }, // 22
    { 118, 122, 130 }, // 23
    { 36, 38, 44 }, // 24
    { 226, 166, 50 }, // 25
    { 186, 124, 26 }, // 26
    { 170, 112, 16 }, // 27
} };

} // namespace

const std::array<Palette, 2>& Palettes()
{
    static const std::array<Palette, 2> s_palettes { {
        { 0, u" Dark: graphite ground, gold accent ", kDark },
        { 1, u" Light: paper ground, gold accent ", kLight },
    } };
    return s_palettes;
}

uint32_t ToBGR(const std::array<uint8_t, 3>& rgb)
{
    return uint32_t(rgb[0]) | (uint32_t(rgb[1]) << 8) | (uint32_t(rgb[2]) << 16);
}

void BuildUIColors(CQKXmlDocument& doc)
{
    CQKXmlNode* ui = doc.AddChild(u"UI", CQKXmlNode::kTypeElement);
    ui->AddIntAttribute(u"selID", 0);
    ui->AddChild(u" Colours are decimal numbers of the form 0x00BBGGRR (red in the low byte). selID picks the color element of that nID. ",
        CQKXmlNode::kTypeComment);
    for (const Palette& palette : Palettes()) {
        ui->AddChild(palette.pszComment, CQKXmlNode::kTypeComment);
        CQKXmlNode* color = ui->AddChild(u"color", CQKXmlNode::kTypeElement);
        color->AddIntAttribute(u"nID", palette.nID);
        for (size_t i = 0; i < palette.rgb.size(); ++i) {
            const char16_t name[3] = { char16_t(u'0' + (i + 1) / 10), char16_t(u'0' + (i + 1) % 10), 0 };
            color->AddIntAttribute(name, int32_t(ToBGR(palette.rgb[i])));
        }
    }
}

void BuildBigFont(CQKXmlDocument& doc)
{
    CQKXmlNode* flag = doc.AddChild(u"flag", CQKXmlNode::kTypeElement);
    flag->AddIntAttribute(u"offset", 0);
    flag->AddIntAttribute(u"smoothing", 0);
    flag->AddAttribute(u"fontname", u"Arial");
}

bool WriteAll(const char* pszSkinFolder)
{
    const std::string folder = pszSkinFolder;
    ::mkdir((folder + "uicolors").c_str(), 0777);
    CQKXmlDocument colors;
    BuildUIColors(colors);
    CQKXmlDocument font;
    BuildBigFont(font);
    const std::u16string colorsPath = QKWideText::FromUtf8(folder + "uicolors/UIColors.uic");
    const std::u16string fontPath = QKWideText::FromUtf8(folder + "usebigfont.dat");
    return colors.SaveFile(colorsPath.c_str()) && font.SaveFile(fontPath.c_str());
}

} // namespace QKSkinData
