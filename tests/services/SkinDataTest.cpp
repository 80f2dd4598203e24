// The default skin as committed: its data files load, carry the fields the program reads,
// are what the generator makes, and the title icon is what the title bar expects.
#include "XmlTestSupport.h"

#include "QKSkinData.h"
#include "support/TestPaths.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <cmath>
#include <set>

using xmltest::U8;

namespace {

std::string ReadAll(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return std::string();
    const QByteArray bytes = f.readAll();
    return std::string(bytes.constData(), size_t(bytes.size()));
}

QString SkinPath(const char* name)
{
    return orbeltest::SourceDir() + "skin/" + name;
}

// Relative luminance of a 0x00BBGGRR colour, 0 to 255.
double Luma(uint32_t bgr)
{
    return 0.2126 * (bgr & 0xFF) + 0.7152 * ((bgr >> 8) & 0xFF) + 0.0722 * ((bgr >> 16) & 0xFF);
}

uint32_t Colour(const CQKXmlNode* color, const char16_t* name)
{
    return uint32_t(color->GetIntAttribute(name, -1));
}

} // namespace

TEST(SkinDataTest, ThemeFileHoldsTwoCompletePalettesAndSelectsTheDarkOne)
{
    const std::string bytes = ReadAll(SkinPath("uicolors/UIColors.uic"));
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
    CQKXmlDocument doc;
    ASSERT_TRUE(doc.LoadFile(SkinPath("uicolors/UIColors.uic").toStdU16String().c_str()));
    CQKXmlNode* ui = doc.FindChild(u"UI");
    ASSERT_NE(ui, nullptr);
    EXPECT_EQ(ui->GetIntAttribute(u"selID", -1), 0);
    ASSERT_EQ(ui->CountChildren(u"color"), 2);

    std::set<int> ids;
    QKXMLPOS pos;
    for (CQKXmlNode* color = ui->FindChild(u"color", pos); color; color = ui->FindNextChild(u"color", pos)) {
        ids.insert(color->GetIntAttribute(u"nID", -1));
        EXPECT_EQ(color->GetAttributeCount(), 28) << "nID and 01 to 27";
        for (int i = 1; i <= 27; ++i) {
            const char16_t name[3] = { char16_t(u'0' + i / 10), char16_t(u'0' + i % 10), 0 };
            ASSERT_NE(color->FindAttribute(name), nullptr) << "attribute " << i;
            const int32_t n = color->GetIntAttribute(name, -1);
            EXPECT_GE(n, 0);
            EXPECT_LE(n, 0xFFFFFF) << "no alpha in a theme colour";
        }
        // Text must stand out from the ground, in the title, the controls and the menus.
        EXPECT_GT(std::abs(Luma(Colour(color, u"10")) - Luma(Colour(color, u"02"))), 120.0);
        EXPECT_GT(std::abs(Luma(Colour(color, u"03")) - Luma(Colour(color, u"02"))), 120.0);
        EXPECT_GT(std::abs(Luma(Colour(color, u"19")) - Luma(Colour(color, u"18"))), 120.0);
        EXPECT_GT(std::abs(Luma(Colour(color, u"06")) - Luma(Colour(color, u"02"))), 50.0) << "time texts and frames";
    }
    EXPECT_EQ(ids, (std::set<int> { 0, 1 }));
    // The selected palette is the dark one: a dark ground and light text.
    CQKXmlNode* dark = ui->FindChild(u"color");
    EXPECT_EQ(dark->GetIntAttribute(u"nID", -1), 0);
    EXPECT_LT(Luma(Colour(dark, u"02")), 60.0);
    EXPECT_GT(Luma(Colour(dark, u"10")), 180.0);
    // One accent: the caption's gradient end, the selected menu entry and the slider share a hue.
    EXPECT_EQ(Colour(dark, u"04"), Colour(dark, u"20"));
    const uint32_t accent = Colour(dark, u"04");
    EXPECT_GT(int(accent & 0xFF), int((accent >> 16) & 0xFF) + 100) << "gold: much more red than blue";
}

TEST(SkinDataTest, FontFileNamesArialWithoutOffsetOrSmoothing)
{
    CQKXmlDocument doc;
    ASSERT_TRUE(doc.LoadFile(SkinPath("usebigfont.dat").toStdU16String().c_str()));
    CQKXmlNode* flag = doc.FindChild(u"flag");
    ASSERT_NE(flag, nullptr);
    EXPECT_EQ(flag->GetIntAttribute(u"offset", -1), 0);
    EXPECT_EQ(flag->GetIntAttribute(u"smoothing", -1), 0);
    EXPECT_EQ(U8(flag->GetAttribute(u"fontname", u"")), "Arial");
}

TEST(SkinDataTest, GeneratorMakesTheCommittedBytes)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(QKSkinData::WriteAll(QFile::encodeName(dir.path() + "/").constData()));
    for (const char* name : { "uicolors/UIColors.uic", "usebigfont.dat" }) {
        const std::string made = ReadAll(dir.path() + "/" + name);
        ASSERT_FALSE(made.empty()) << name;
        EXPECT_TRUE(made == ReadAll(SkinPath(name))) << name << " differs: run orbel-make-skin-data skin/";
    }
    EXPECT_FALSE(QKSkinData::WriteAll(QFile::encodeName(dir.path() + "/missing/deeper/").constData()));
}

TEST(SkinDataTest, TitleIconIsAGoldDiscOnTransparency)
{
    QImage icon(SkinPath("btn/gold.png"));
    ASSERT_FALSE(icon.isNull());
    EXPECT_EQ(icon.size(), QSize(28, 28)) << "drawn at 28 by 28 in the title";
    ASSERT_TRUE(icon.hasAlphaChannel());
    icon = icon.convertToFormat(QImage::Format_ARGB32);
    for (QPoint corner : { QPoint(0, 0), QPoint(27, 0), QPoint(0, 27), QPoint(27, 27) })
        EXPECT_EQ(qAlpha(icon.pixel(corner)), 0) << corner.x() << "," << corner.y();
    // The ring of the disc is opaque gold; the play mark in the middle is dark.
    const QRgb ring = icon.pixel(14, 5);
    EXPECT_EQ(qAlpha(ring), 255);
    EXPECT_GT(qRed(ring), qBlue(ring) + 80);
    EXPECT_GT(qGreen(ring), qBlue(ring) + 30);
    const QRgb mark = icon.pixel(14, 14);
    EXPECT_EQ(qAlpha(mark), 255);
    EXPECT_LT(qGray(mark), 100);
}
