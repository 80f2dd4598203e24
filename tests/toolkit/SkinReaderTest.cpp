// The skin file: what it creates, what it skips, and how it reads hand-edited or broken
// input without failing the window.
#include "ToolkitTestSupport.h"

#include "controls/CQKSlider.h"

#include "support/TestPaths.h"

#include "toolkit/CQKButton.h"
#include "toolkit/CQKCheck.h"
#include "toolkit/CQKRadio.h"
#include "toolkit/CQKSkinReader.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>
#include <tinyxml2.h>

using namespace toolkittest;

namespace {

class SkinTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(host.Open(200, 100)); }
    void TearDown() override
    {
        for (uint32_t k = 1; k < QKKIND_COUNT; ++k)
            QKRegisterControlKind(k, tagQKControlKind {});
    }
    // Writes the skin file and loads it into the host's manager.
    int Load(const QString& xml)
    {
        app.WriteUtf8("skin/mainwnd.xml", xml);
        return Manager().LoadSkin(&host);
    }
    CQKUIManager& Manager() { return *host.Manager(); }
    CQKButton* Control(size_t i) { return i < Manager().Children().size() ? Manager().Children()[i]->pControl.get() : nullptr; }

    AppFolder app;
    TestHost host;
};

// A stand-in for a control kind that a later layer registers: it records what the reader
// handed it.
struct FakeControl : CQKButton
{
    int32_t nListHeight { 300 };
    double dMin { 0 };
    double dMax { 100 };
    double dCur { 0 };
    int32_t nNumber { 0 };
    bool bFinished { false };
};

void FinishFake(CQKSkinReader& reader, const tinyxml2::XMLElement* pElement, CQKButton* pControl)
{
    auto* p = static_cast<FakeControl*>(pControl);
    reader.ReadReal(pElement, "minpos", p->dMin);
    reader.ReadReal(pElement, "maxpos", p->dMax);
    reader.ReadReal(pElement, "curpos", p->dCur);
    reader.ReadInt(pElement, "number", p->nNumber);
    p->bFinished = true;
}

void RegisterFake(uint32_t kind)
{
    tagQKControlKind k;
    k.pfnCreate = []() -> CQKButton* { return new FakeControl(); };
    k.pfnFinishSkin = FinishFake;
    k.pfnSetListHeight = [](CQKButton* p, int32_t n) { static_cast<FakeControl*>(p)->nListHeight = n; };
    QKRegisterControlKind(kind, k);
}

} // namespace

TEST_F(SkinTest, MissingOrMalformedFileLeavesAWorkingWindowWithoutSkin)
{
    EXPECT_EQ(Manager().LoadSkin(&host), 1) << "no file";
    EXPECT_TRUE(Manager().Children().empty());
    EXPECT_TRUE(g_vecFonts.empty());
    EXPECT_FALSE(Manager().pBackground);
    EXPECT_EQ(Manager().hWndHost, &host);

    for (const char* text : { "<skin><font id=\"1\"><name>Arial</name></font><button id=\"3\">", "", "not xml at all", "<skin/>", "<skin>text only</skin>" }) {
        EXPECT_EQ(Load(QString::fromUtf8(text)), 1) << text;
        EXPECT_TRUE(Manager().Children().empty()) << text;
        EXPECT_TRUE(g_vecFonts.empty()) << text;
    }
    // The window paints the theme's ground.
    Manager().PaintAll();
    EXPECT_EQ(PixelAt(host.HostImage(), 10, 10), FromBGR(g_clrFace));
    // Loading wants a live window.
    CQKUIManager lone;
    EXPECT_EQ(lone.LoadSkin(nullptr), 0);
    TestHost gone;
    ASSERT_TRUE(gone.Open(10, 10));
    gone.DestroyWindow();
    EXPECT_EQ(lone.LoadSkin(&gone), 0);
    EXPECT_EQ(lone.hWndHost, nullptr);
}

TEST_F(SkinTest, ButtonTakesItsAttributesAndChildren)
{
    app.WritePicture("skin/btn/strip.png", Strip(5, 6, { Qt::red, Qt::green, Qt::blue, Qt::gray }));
    ASSERT_EQ(Load(QStringLiteral(
                  "<skin><button x=\"5\" y=\"6\" width=\"70\" height=\"20\" state=\"2\" id=\"31\" fontid=\"4\">"
                  "<background>skin\\btn\\strip.png</background><tooltip>Line one\\r\\nLine two</tooltip>"
                  "<text>A\\r\\nB</text></button></skin>")),
        1);
    ASSERT_EQ(Manager().Children().size(), 1u);
    const tagQKChild& child = *Manager().Children()[0];
    EXPECT_EQ(child.nID, 31u);
    EXPECT_EQ(child.nKind, 0u);
    CQKButton* b = child.pControl.get();
    EXPECT_EQ(b->GetRect(), QRect(5, 6, 70, 20));
    EXPECT_EQ(b->nFrames, 2u);
    EXPECT_EQ(b->nID, 31u);
    EXPECT_EQ(b->nFontID, 4u);
    EXPECT_EQ(b->hWndHost, &host);
    EXPECT_EQ(b->pManager, &Manager());
    ASSERT_TRUE(b->pImage);
    EXPECT_EQ(b->pImage->size(), QSize(20, 6));
    EXPECT_EQ(b->strToolTip, QStringLiteral("Line one\r\nLine two")) << "the tool tip's escape is a line break";
    EXPECT_EQ(b->szText, QStringLiteral("A\\r\\nB")) << "the text's is kept as written";
    EXPECT_EQ(Manager().FindControl(31, 0), b);
    EXPECT_EQ(Manager().FindControl(31, 17), nullptr);
}

TEST_F(SkinTest, ButtonDefaultsDifferFromControlsMadeInCode)
{
    ASSERT_EQ(Load(QStringLiteral("<skin><button id=\"9\"><text/><tooltip><b>bold</b></tooltip><background>missing.png</background></button></skin>")), 1);
    CQKButton* b = Control(0);
    ASSERT_TRUE(b);
    EXPECT_EQ(b->nFrames, 4u) << "a four-frame strip unless told";
    EXPECT_EQ(b->nFontID, 0u) << "no default font from the skin";
    EXPECT_EQ(b->GetRect(), QRect(0, 0, 0, 0));
    EXPECT_TRUE(b->szText.isNull()) << "an empty element sets nothing";
    EXPECT_TRUE(b->strToolTip.isEmpty()) << "a first child that is no text sets nothing";
    ASSERT_TRUE(b->pImage) << "a picture that does not load is kept as an empty one";
    EXPECT_TRUE(b->pImage->isNull());
}

TEST_F(SkinTest, FontsGoToTheSharedTableAndTheFirstIdWins)
{
    ASSERT_EQ(Load(QStringLiteral(
                  "<skin><font id=\"3\" size=\"17\" bold=\"1\" italic=\"1\" vertical=\"1\" underline=\"1\" colornormal=\"255\" colorhover=\"2\" colordown=\"3\" colordisable=\"4\">"
                  "<name>First</name><name>Liberation Sans</name></font>"
                  "<font id=\"3\" size=\"9\"><name>Second</name></font>"
                  "<font id=\"5\"><name>0123456789012345678901234567890</name></font>"
                  "<font id=\"6\"><name>01234567890123456789012345678901</name></font>"
                  "<font id=\"7\"/></skin>")),
        1);
    ASSERT_EQ(g_vecFonts.size(), 5u);
    const tagQKFont* f = FindFont(3);
    ASSERT_TRUE(f);
    EXPECT_EQ(f->nSize, 17u);
    EXPECT_EQ(f->szName, QStringLiteral("Liberation Sans")) << "a later name overwrites";
    EXPECT_EQ(f->bBold + f->bItalic + f->bVertical + f->bUnderline, 4u);
    EXPECT_EQ(f->clrNormal, 255u);
    EXPECT_EQ(f->clrDisable, 4u);
    EXPECT_EQ(FindFont(5)->szName.size(), 31) << "31 bytes fit";
    EXPECT_TRUE(FindFont(6)->szName.isEmpty()) << "32 bytes do not";
    EXPECT_TRUE(FindFont(7)->szName.isEmpty());
    EXPECT_EQ(FindFont(7)->nSize, 0u);
    EXPECT_EQ(FindFont(8), nullptr);

    // A second host reads the same file: every row twice, the look unchanged.
    TestHost second;
    ASSERT_TRUE(second.Open(50, 50));
    second.Manager()->LoadSkin(&second);
    EXPECT_EQ(g_vecFonts.size(), 10u);
    EXPECT_EQ(FindFont(3), f);
}

TEST_F(SkinTest, FontTableEmptiesWithTheLastManager)
{
    {
        CQKUIManager other;
        ASSERT_EQ(Load(QStringLiteral("<skin><font id=\"1\"/></skin>")), 1);
        ASSERT_EQ(g_vecFonts.size(), 1u);
        host.DestroyWindow(); // the host's manager goes with its window
        EXPECT_EQ(g_vecFonts.size(), 1u) << "another manager still lives";
    }
    EXPECT_TRUE(g_vecFonts.empty());
}

TEST_F(SkinTest, UnknownAndMiscasedElementsAreSkipped)
{
    ASSERT_EQ(Load(QStringLiteral("<window><Button id=\"1\"/><widget id=\"2\"/><button id=\"3\"/><BACKGROUND>x.png</BACKGROUND>"
                                  "<group><button id=\"4\"/></group><!-- note --><button id=\"5\"/></window>")),
        1);
    ASSERT_EQ(Manager().Children().size(), 2u);
    EXPECT_EQ(Control(0)->nID, 3u);
    EXPECT_EQ(Control(1)->nID, 5u) << "controls are read at the top level only";
    EXPECT_FALSE(Manager().pBackground);
}

TEST_F(SkinTest, UnparseableNumbersRepeatTheLastNumberRead)
{
    ASSERT_EQ(Load(QStringLiteral("<skin><button x=\"12\" y=\"abc\" width=\" 40px\" height=\"-\" id=\"7\"/>"
                                  "<font id=\"oops\" size=\"+15\"/></skin>")),
        1);
    CQKButton* b = Control(0);
    ASSERT_TRUE(b);
    EXPECT_EQ(b->nX, 12);
    EXPECT_EQ(b->nY, 12) << "the scratch number from x";
    EXPECT_EQ(b->nWidth, 40) << "leading blanks and trailing letters as %d reads them";
    EXPECT_EQ(b->nHeight, 40);
    ASSERT_EQ(g_vecFonts.size(), 1u);
    EXPECT_EQ(g_vecFonts[0]->nID, 7u) << "the scratch number lives across elements";
    EXPECT_EQ(g_vecFonts[0]->nSize, 15u);
    // The scratch number starts at zero for each load, which adds the controls again.
    ASSERT_EQ(Load(QStringLiteral("<skin><button x=\"zz\"/></skin>")), 1);
    ASSERT_EQ(Manager().Children().size(), 2u);
    EXPECT_EQ(Control(1)->nX, 0);
}

TEST_F(SkinTest, KindsWithoutTheirClassAreSkippedUntilRegistered)
{
    const QString skin = QStringLiteral("<skin><check id=\"1\" fontid=\"2\"/><slider id=\"2\" fontid=\"5\" state=\"1\" x=\"3\"><text>t</text><tooltip>tip</tooltip></slider>"
                                        "<vlistbox id=\"3\"/><button id=\"4\"/></skin>");
    ASSERT_EQ(Load(skin), 1);
    ASSERT_EQ(Manager().Children().size(), 1u);
    EXPECT_EQ(Manager().Children()[0]->nID, 4u);

    // Where the later layers plug in: once a kind is registered its element makes a control.
    RegisterFake(QKKIND_CHECK);
    QKRegisterControlKind(QKKIND_SLIDER, CQKSlider::KindHooks());
    ASSERT_EQ(Load(skin), 1);
    ASSERT_EQ(Manager().Children().size(), 4u);
    auto* check = static_cast<FakeControl*>(Manager().FindControl(1, QKKIND_CHECK));
    ASSERT_TRUE(check);
    EXPECT_EQ(check->nKind, QKKIND_CHECK);
    EXPECT_EQ(check->nFontID, 2u);
    EXPECT_TRUE(check->bFinished);
    auto* slider = dynamic_cast<CQKSlider*>(Manager().FindControl(2, QKKIND_SLIDER));
    ASSERT_TRUE(slider);
    EXPECT_EQ(slider->nX, 3);
    EXPECT_EQ(slider->nFontID, 0u) << "a slider reads no fontid";
    EXPECT_EQ(slider->nFrames, 4u) << "nor state";
    EXPECT_TRUE(slider->szText.isNull()) << "and no child elements";
    EXPECT_TRUE(slider->strToolTip.isEmpty());
}

TEST_F(SkinTest, CheckAndRadioElementsMakeTheirControls)
{
    QKRegisterControlKind(QKKIND_CHECK, CQKCheck::KindHooks());
    QKRegisterControlKind(QKKIND_RADIO, CQKRadio::KindHooks());
    ASSERT_EQ(Load(QStringLiteral("<skin><check id=\"1\" x=\"4\" y=\"5\" width=\"90\" height=\"20\" fontid=\"2\"><text>Loop</text></check>"
                                  "<radio id=\"2\" fontid=\"3\"><tooltip>tip</tooltip></radio></skin>")),
        1);
    auto* check = dynamic_cast<CQKCheck*>(Manager().FindControl(1, QKKIND_CHECK));
    auto* radio = dynamic_cast<CQKRadio*>(Manager().FindControl(2, QKKIND_RADIO));
    ASSERT_TRUE(check && radio);
    EXPECT_EQ(check->GetRect(), QRect(4, 5, 90, 20));
    EXPECT_EQ(check->szText, QStringLiteral("Loop"));
    EXPECT_EQ(check->nFontID, 2u);
    EXPECT_FALSE(check->IsChecked());
    EXPECT_EQ(radio->strToolTip, QStringLiteral("tip"));
    EXPECT_EQ(radio->nFontID, 3u);
}

TEST_F(SkinTest, ComboBoxHeightAndRealAttributesOfRegisteredKinds)
{
    RegisterFake(QKKIND_COMBOBOX);
    ASSERT_EQ(Load(QStringLiteral("<skin><combobox id=\"1\" height=\"200\"/><combobox id=\"2\" width=\"80\"/></skin>")), 1);
    auto* withHeight = static_cast<FakeControl*>(Manager().FindControl(1, QKKIND_COMBOBOX));
    auto* without = static_cast<FakeControl*>(Manager().FindControl(2, QKKIND_COMBOBOX));
    ASSERT_TRUE(withHeight && without);
    EXPECT_EQ(withHeight->nHeight, 22);
    EXPECT_EQ(withHeight->nListHeight, 178);
    EXPECT_EQ(without->nHeight, 0);
    EXPECT_EQ(without->nListHeight, 300);
    RegisterFake(QKKIND_PROGRESS);
    RegisterFake(QKKIND_STATIC);
    ASSERT_EQ(Load(QStringLiteral("<skin><progress id=\"4\" minpos=\"2.5\" maxpos=\"x\" state=\"1\"><background>a.png</background><text>50%</text></progress>"
                                  "<static id=\"6\" curpos=\"nope\"><background>a.png</background><tooltip>t</tooltip><text>Label</text></static></skin>")),
        1);
    auto* progress = static_cast<FakeControl*>(Manager().FindControl(4, QKKIND_PROGRESS));
    ASSERT_TRUE(progress);
    EXPECT_DOUBLE_EQ(progress->dMin, 2.5);
    EXPECT_DOUBLE_EQ(progress->dMax, 2.5) << "an unparseable real repeats the last number";
    EXPECT_DOUBLE_EQ(progress->dCur, 0.0) << "missing: the default stays";
    EXPECT_EQ(progress->nFrames, 4u) << "progress has no state";
    EXPECT_FALSE(progress->pImage) << "nor a picture";
    EXPECT_EQ(progress->szText, QStringLiteral("50%"));
    auto* label = static_cast<FakeControl*>(Manager().FindControl(6, QKKIND_STATIC));
    ASSERT_TRUE(label);
    EXPECT_DOUBLE_EQ(label->dCur, 6.0) << "the id was the last number read";
    EXPECT_FALSE(label->pImage) << "static takes only its text";
    EXPECT_TRUE(label->strToolTip.isEmpty());
    EXPECT_EQ(label->szText, QStringLiteral("Label"));
}

TEST_F(SkinTest, OnlyTheFirstBackgroundCounts)
{
    app.WritePicture("skin/first.png", Solid(4, 4, Qt::red));
    app.WritePicture("skin/second.png", Solid(4, 4, Qt::blue));
    ASSERT_EQ(Load(QStringLiteral("<skin><background>skin/first.png</background><background>skin/second.png</background>"
                                  "<tooltipbackground fontid=\"8\">skin/tip.png</tooltipbackground></skin>")),
        1);
    ASSERT_TRUE(Manager().pBackground);
    EXPECT_EQ(PixelAt(*Manager().pBackground, 1, 1), QColor(Qt::red));
    EXPECT_EQ(g_nToolTipFontID, 8u);
    EXPECT_EQ(g_szToolTipBackground, QStringLiteral("skin/tip.png"));
    // Loading again keeps the picture the window has.
    Load(QStringLiteral("<skin><background>skin/second.png</background></skin>"));
    EXPECT_EQ(PixelAt(*Manager().pBackground, 1, 1), QColor(Qt::red));
    // And the window shows it stretched under everything.
    Manager().PaintAll();
    EXPECT_EQ(PixelAt(host.HostImage(), 150, 80), QColor(Qt::red));
}

TEST_F(SkinTest, TextIsUtf8OrElseLatin1)
{
    QByteArray bytes("<skin><button id=\"1\"><text>\xC3\xA9t\xC3\xA9</text></button><button id=\"2\"><text>\xE9t\xE9</text></button></skin>");
    app.WriteBytes("skin/mainwnd.xml", bytes);
    ASSERT_EQ(Manager().LoadSkin(&host), 1);
    ASSERT_EQ(Manager().Children().size(), 2u);
    EXPECT_EQ(Control(0)->szText, QString::fromUtf8("\xC3\xA9t\xC3\xA9"));
    EXPECT_EQ(Control(1)->szText, QString::fromUtf8("\xC3\xA9t\xC3\xA9")) << "the same word written in Latin-1";
}

TEST_F(SkinTest, HugeValuesAreHeldAndLongTextsCut)
{
    const QString longText(20000, QLatin1Char('w'));
    ASSERT_EQ(Load(QStringLiteral("<skin><button x=\"99999999999999999999999\" y=\"-99999999999999999999\" width=\"2147483648\" id=\"1\"><text>%1</text></button></skin>").arg(longText)), 1);
    CQKButton* b = Control(0);
    ASSERT_TRUE(b);
    EXPECT_EQ(b->nX, INT32_MAX);
    EXPECT_EQ(b->nY, INT32_MIN);
    EXPECT_EQ(b->nWidth, INT32_MAX);
    EXPECT_EQ(b->szText.size(), 9999);
    // Painting such a control neither crashes nor hangs.
    Manager().PaintAll();
}

TEST_F(SkinTest, DeepNestingAndLargeFilesNeitherCrashNorHang)
{
    QString deep = QStringLiteral("<skin><button id=\"1\"/>");
    for (int i = 0; i < 5000; ++i)
        deep += QStringLiteral("<a>");
    for (int i = 0; i < 5000; ++i)
        deep += QStringLiteral("</a>");
    deep += QStringLiteral("</skin>");
    EXPECT_EQ(Load(deep), 1);

    // Ten megabytes of unknown elements around one button.
    QString big;
    big.reserve(10 * 1024 * 1024 + 100);
    big += QStringLiteral("<skin>");
    const QString filler = QStringLiteral("<filler a=\"0123456789\" b=\"abcdefghij\">text text text</filler>\n");
    while (big.size() < 10 * 1024 * 1024)
        big += filler;
    big += QStringLiteral("<button id=\"77\"/></skin>");
    QElapsedTimer timer;
    timer.start();
    const size_t before = Manager().Children().size();
    EXPECT_EQ(Load(big), 1);
    EXPECT_LT(timer.elapsed(), 20000);
    EXPECT_EQ(Manager().Children().size(), before + 1);
    EXPECT_TRUE(Manager().FindControl(77, 0));
}

TEST_F(SkinTest, DefaultSkinGivesEveryWindowItsFonts)
{
    const QString source = orbeltest::SourceDir() + QStringLiteral("skin/");
    for (const char* name : { "mainwnd.xml", "uicolors/UIColors.uic", "usebigfont.dat" }) {
        QFile f(source + QLatin1String(name));
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name;
        app.WriteBytes(QStringLiteral("skin/") + QLatin1String(name), f.readAll());
    }
    LoadUIColors();
    LoadBigFontFile();
    EXPECT_NE(g_UIColors.clrFaceHover, 0u) << "a palette was chosen";
    EXPECT_EQ(g_clrFace, g_UIColors.clrGround);
    ASSERT_EQ(Manager().LoadSkin(&host), 1);
    for (uint32_t id : { 0u, 1u, 2u, 3u, 6u }) {
        const tagQKFont* f = FindFont(id);
        ASSERT_TRUE(f) << "font " << id;
        EXPECT_FALSE(f->szName.isEmpty()) << "font " << id;
        EXPECT_GT(f->nSize, 8u) << "font " << id;
    }
}
