// The theme: working colours, the theme table read from UIColors.uic, the font settings of
// usebigfont.dat, and the colour arithmetic the painters use.
#include "ToolkitTestSupport.h"

#include "platform/CQKGraphics.h"
#include "toolkit/CQKButton.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QFontDatabase>
#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

const char* const kThemePath = "skin/uicolors/UIColors.uic";

// A `color` element whose attribute NN holds RGB(NN, NN + 100, 7), so every field tells which
// attribute filled it.
QString NumberedPalette(int nID)
{
    QString s = QStringLiteral("\t<color nID=\"%1\"").arg(nID);
    for (int i = 1; i <= 27; ++i)
        s += QStringLiteral(" %1=\"%2\"").arg(i, 2, 10, QLatin1Char('0')).arg(RGB(i, i + 100, 7));
    return s + QStringLiteral("/>\r\n");
}

QString Theme(int nSel, const QString& body)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<UI selID=\"%1\">\r\n").arg(nSel) + body + QStringLiteral("</UI>\r\n");
}

void ExpectBuiltInColours()
{
    EXPECT_EQ(g_clrFace, RGB(60, 60, 60));
    EXPECT_EQ(g_clrBorder, RGB(160, 160, 160));
    EXPECT_EQ(g_clrShade, RGB(100, 100, 100));
    EXPECT_EQ(g_clrText, RGB(200, 0, 0));
    EXPECT_EQ(g_clrToolTipText, RGB(200, 0, 0));
    const uint32_t* p = reinterpret_cast<const uint32_t*>(&g_UIColors);
    for (int i = 0; i < 27; ++i)
        EXPECT_EQ(p[i], 0u) << "field " << i;
}

} // namespace

TEST(ThemeColoursTest, MissingBrokenOrUnmatchedFilesKeepTheBuiltInColours)
{
    AppFolder app;
    LoadUIColors(); // no file at all
    ExpectBuiltInColours();

    const QStringList broken = {
        QStringLiteral("<UI selID=\"1\">") + NumberedPalette(1), // never closed
        QStringLiteral("<Other selID=\"1\">") + NumberedPalette(1) + QStringLiteral("</Other>"), // no UI
        Theme(2, NumberedPalette(1) + NumberedPalette(3)), // no palette 2
        Theme(1, NumberedPalette(1).replace(QStringLiteral("color"), QStringLiteral("Color"))), // names are exact
    };
    for (const QString& text : broken) {
        app.WriteUtf16(kThemePath, text);
        LoadUIColors();
        ExpectBuiltInColours();
    }
    // A file of a byte or two is no document either.
    app.WriteBytes(kThemePath, QByteArray("\xFF\xFE", 2));
    LoadUIColors();
    ExpectBuiltInColours();
}

TEST(ThemeColoursTest, AttributesFillFieldsByTheirOwnPermutation)
{
    AppFolder app;
    app.WriteUtf16(kThemePath, Theme(1, NumberedPalette(1)));
    LoadUIColors();
    // Field order against the attribute that fills it, written out here once more on purpose.
    const int kAttributeOfField[27] = { 1, 3, 4, 2, 5, 6, 7, 8, 9, 10, 12, 13, 14, 11, 15, 16, 17, 18, 19, 20, 22, 23, 24, 21, 25, 26, 27 };
    const uint32_t* p = reinterpret_cast<const uint32_t*>(&g_UIColors);
    for (int i = 0; i < 27; ++i)
        EXPECT_EQ(p[i], RGB(kAttributeOfField[i], kAttributeOfField[i] + 100, 7)) << "field " << i;
    EXPECT_EQ(g_UIColors.clrGround, RGB(2, 102, 7)); // the fourth field, from "02"
    EXPECT_EQ(g_UIColors.clrFaceHover, RGB(11, 111, 7));
    EXPECT_EQ(g_UIColors.clrSpare21, RGB(21, 121, 7));
    // The four working colours follow the table; the tool tip colour does not.
    EXPECT_EQ(g_clrFace, RGB(2, 102, 7));
    EXPECT_EQ(g_clrBorder, RGB(6, 106, 7));
    EXPECT_EQ(g_clrShade, RGB(7, 107, 7));
    EXPECT_EQ(g_clrText, RGB(10, 110, 7));
    EXPECT_EQ(g_clrToolTipText, RGB(200, 0, 0));
}

TEST(ThemeColoursTest, SelectionPicksTheFirstMatchingPaletteOnly)
{
    AppFolder app;
    QString second = NumberedPalette(3);
    second.replace(QStringLiteral("=\"") + QString::number(RGB(10, 110, 7)) + QStringLiteral("\""), QStringLiteral("=\"255\""));
    app.WriteUtf16(kThemePath, Theme(3, NumberedPalette(1) + QStringLiteral("\t<color nID=\"2\" 10=\"65280\"/>\r\n") + NumberedPalette(3) + second));
    LoadUIColors();
    EXPECT_EQ(g_clrText, RGB(10, 110, 7)) << "the third palette, not the second or the fourth";
    EXPECT_EQ(g_UIColors.clrFrame, RGB(1, 101, 7));
}

TEST(ThemeColoursTest, MissingOrUnreadableAttributesReadAsBlack)
{
    AppFolder app;
    app.WriteUtf16(kThemePath, Theme(1, QStringLiteral("\t<color nID=\"1\" 02=\"1234\" 06=\"abc\" 07=\"77xyz\"/>\r\n")));
    LoadUIColors();
    EXPECT_EQ(g_clrText, 0u) << "no attribute 10: black text, not the built-in red";
    EXPECT_EQ(g_clrFace, 1234u);
    EXPECT_EQ(g_clrBorder, 0u) << "garbage reads 0";
    EXPECT_EQ(g_clrShade, 77u) << "a leading number counts";
    EXPECT_EQ(g_UIColors.clrFaceHover, 0u);
}

TEST(ThemeFontFileTest, FlagSetsOffsetSmoothingAndAnInstalledFamilyElseArial)
{
    ASSERT_TRUE(QFontDatabase::hasFamily(QStringLiteral("DejaVu Sans")));
    // An unknown or empty family falls back to Arial, also when the file names none.
    const struct
    {
        const char* pszFile; // nullptr: no file
        const char* pszFamily;
        int nOffset;
        int bSmoothing;
    } cases[] = {
        { nullptr, "Arial", 0, 0 },
        { "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<other offset=\"5\" smoothing=\"1\"/>\r\n", "Arial", 0, 0 },
        { "<flag offset=\"5\" smoothing=\"1\" fontname=\"DejaVu Sans\"/>", "DejaVu Sans", 5, 1 },
        { "<flag offset=\"-3\" fontname=\"No Such Family Anywhere\"/>", "Arial", -3, 0 },
        { "<flag fontname=\"\"/>", "Arial", 0, 0 }
    };
    for (const auto& c : cases) {
        AppFolder app;
        g_strFontName = QStringLiteral("Not Installed Either");
        if (c.pszFile)
            app.WriteUtf16("skin/usebigfont.dat", QString::fromUtf8(c.pszFile));
        LoadBigFontFile();
        EXPECT_EQ(g_strFontName, QString::fromUtf8(c.pszFamily)) << (c.pszFile ? c.pszFile : "no file");
        EXPECT_EQ(g_nFontOffset, c.nOffset) << (c.pszFile ? c.pszFile : "no file");
        EXPECT_EQ(g_bTextSmoothing, c.bSmoothing) << (c.pszFile ? c.pszFile : "no file");
    }
}

TEST(ThemeArithmeticTest, MixTruncatesPerChannelAndDarkenStopsAtZero)
{
    EXPECT_EQ(ColorMix(0.5, RGB(10, 20, 30), RGB(20, 40, 60)), RGB(15, 30, 45));
    EXPECT_EQ(ColorMix(0.5, RGB(0, 0, 0), RGB(1, 3, 255)), RGB(0, 1, 127));
    EXPECT_EQ(ColorMix(0.5, RGB(10, 0, 0), RGB(5, 0, 0)), RGB(7, 0, 0)) << "10 - 2.5 truncates to 7";
    EXPECT_EQ(ColorMix(0.0, RGB(1, 2, 3), RGB(9, 9, 9)), RGB(1, 2, 3));
    EXPECT_EQ(ColorMix(1.0, RGB(1, 2, 3), RGB(9, 9, 9)), RGB(9, 9, 9));
    EXPECT_EQ(ColorMix(0.3, 0x00123456u, 0x00123456u), 0x00123456u);
    EXPECT_EQ(ColorDarken20(RGB(10, 30, 255)), RGB(0, 10, 235));
    EXPECT_EQ(ColorDarken20(RGB(20, 19, 21)), RGB(0, 0, 1));
}

TEST(ThemeTextTest, SmoothingChangesSkinStringsButNotControlText)
{
    AppFolder app;
    AddFont(1, 16);

    auto paintSkinString = [] {
        QImage image = Solid(120, 40, Qt::black);
        CQKGraphics g(image);
        tagQKFontSpec fontSpec;
        fontSpec.strFamily = QStringLiteral("DejaVu Sans");
        fontSpec.fSize = 16;
        tagQKStringFormat format;
        format.nAlign = QKAlignCenter;
        format.nLineAlign = QKAlignCenter;
        DrawSkinString(&g, QStringLiteral("Wave"), fontSpec, QRectF(0, 0, 120, 40), format, tagQKBrush::Solid(0xFFFFFFFF));
        return image;
    };
    auto paintButton = [] {
        QImage image = Solid(120, 40, Qt::black);
        CQKGraphics g(image);
        CQKButton b;
        b.nWidth = 120;
        b.nHeight = 40;
        b.nFontID = 1;
        b.szText = QStringLiteral("Wave");
        b.Paint(&g, &image);
        return image;
    };
    const QImage plain = paintSkinString();
    const QImage plainButton = paintButton();
    g_bTextSmoothing = 1;
    const QImage smooth = paintSkinString();
    const QImage smoothButton = paintButton();

    EXPECT_FALSE(BoxOf(plain, Qt::white, 60).isEmpty());
    EXPECT_FALSE(BoxOf(smooth, Qt::white, 60).isEmpty());
    EXPECT_NE(plain, smooth) << "outlined text differs from glyph text";
    const QRect a = BoxOf(plain, Qt::white, 100);
    const QRect b = BoxOf(smooth, Qt::white, 100);
    EXPECT_LE(std::abs(a.center().x() - b.center().x()), 3) << "both centred in the same place";
    EXPECT_EQ(plainButton, smoothButton) << "control text ignores the smoothing switch";
}
