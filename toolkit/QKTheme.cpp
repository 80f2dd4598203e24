#include "QKTheme.h"

#include "platform/QKAppFolder.h"
#include "platform/QKSystem.h"
#include "services/CQKXmlDocument.h"

#include <QFontDatabase>
#include <algorithm>

uint32_t g_clrFace = QKRGB(60, 60, 60);
uint32_t g_clrBorder = QKRGB(160, 160, 160);
uint32_t g_clrShade = QKRGB(100, 100, 100);
uint32_t g_clrText = QKRGB(200, 0, 0);
uint32_t g_clrToolTipText = QKRGB(200, 0, 0);
tagQKUIColors g_UIColors;
QString g_strFontName = QStringLiteral("Arial");
int32_t g_nFontOffset = 0;
int32_t g_bTextSmoothing = 0;

namespace {

// The attribute of each field, in the order of the fields. The theme file's numbering is not
// the order of the fields; themes written for the program rely on exactly this permutation.
const char16_t* const kFieldAttributes[27] = {
    u"01", u"03", u"04", u"02", u"05", u"06", u"07", u"08", u"09", u"10", u"12", u"13", u"14",
    u"11", u"15", u"16", u"17", u"18", u"19", u"20", u"22", u"23", u"24", u"21", u"25", u"26",
    u"27"
};

const char16_t* WidePath(const QString& s)
{
    return reinterpret_cast<const char16_t*>(s.utf16());
}

} // namespace

const char16_t* QKUIColorAttribute(int field)
{
    if (field < 0 || field >= 27)
        return nullptr;
    return kFieldAttributes[field];
}

void LoadUIColors()
{
    const QString path = QKAppFolder() + QStringLiteral("skin/uicolors/UIColors.uic");
    CQKXmlDocument doc;
    if (!doc.LoadFile(WidePath(path)))
        return;
    CQKXmlNode* pUI = doc.FindChild(u"UI");
    if (!pUI)
        return;
    const int32_t nSel = pUI->GetIntAttribute(u"selID", 0);

    // The first palette whose nID matches wins; a file may hold many palettes.
    CQKXmlNode* pColor = nullptr;
    QKXMLPOS pos = nullptr;
    for (CQKXmlNode* p = pUI->FindChild(u"color", pos); p; p = pUI->FindNextChild(u"color", pos)) {
        if (p->GetIntAttribute(u"nID", 0) == nSel) {
            pColor = p;
            break;
        }
    }
    if (!pColor)
        return;

    uint32_t* pFields = reinterpret_cast<uint32_t*>(&g_UIColors);
    for (int i = 0; i < 27; ++i)
        pFields[i] = static_cast<uint32_t>(pColor->GetIntAttribute(kFieldAttributes[i], 0));

    g_clrFace = g_UIColors.clrGround;
    g_clrBorder = g_UIColors.clrBorder;
    g_clrShade = g_UIColors.clrShade;
    g_clrText = g_UIColors.clrText;
}

void LoadBigFontFile()
{
    const QString path = QKAppFolder() + QStringLiteral("skin/usebigfont.dat");
    CQKXmlDocument doc;
    if (doc.LoadFile(WidePath(path))) {
        if (CQKXmlNode* pFlag = doc.FindChild(u"flag")) {
            g_nFontOffset = pFlag->GetIntAttribute(u"offset", 0);
            g_bTextSmoothing = pFlag->GetIntAttribute(u"smoothing", 0);
            const char16_t* pszName = pFlag->GetAttribute(u"fontname", nullptr);
            if (pszName && *pszName)
                g_strFontName = QString::fromUtf16(pszName);
        }
    }
    // The family must exist on this system, whatever its origin; otherwise the text would
    // silently come out in some other face than the one asked for.
    if (!QFontDatabase::hasFamily(g_strFontName))
        g_strFontName = QStringLiteral("Arial");
}

void QKResetTheme()
{
    g_clrFace = QKRGB(60, 60, 60);
    g_clrBorder = QKRGB(160, 160, 160);
    g_clrShade = QKRGB(100, 100, 100);
    g_clrText = QKRGB(200, 0, 0);
    g_clrToolTipText = QKRGB(200, 0, 0);
    g_UIColors = tagQKUIColors {};
    g_strFontName = QStringLiteral("Arial");
    g_nFontOffset = 0;
    g_bTextSmoothing = 0;
}

uint32_t ColorMix(double weight, uint32_t a, uint32_t b)
{
    if (a == b)
        return b;
    uint32_t out = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int ca = static_cast<int>((a >> shift) & 0xFF);
        const int cb = static_cast<int>((b >> shift) & 0xFF);
        const int c = static_cast<int>(ca + (cb - ca) * weight);
        out |= (static_cast<uint32_t>(c) & 0xFF) << shift;
    }
    return out;
}

uint32_t QKColorDarken(uint32_t clr, uint32_t amount)
{
    auto down = [amount](uint32_t c) { return c > amount ? c - amount : 0; };
    return QKRGB(down(QKRed(clr)), down(QKGreen(clr)), down(QKBlue(clr)));
}

uint32_t QKColorLighten(uint32_t clr, uint32_t amount)
{
    auto up = [amount](uint32_t c) { return std::min<uint32_t>(c + amount, 255); };
    return QKRGB(up(QKRed(clr)), up(QKGreen(clr)), up(QKBlue(clr)));
}

uint32_t ColorDarken20(uint32_t clr)
{
    return QKColorDarken(clr, 20);
}

int IsWindows7OrLater()
{
    return QKHasSessionBus() ? 1 : 0;
}
