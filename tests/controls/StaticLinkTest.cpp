// Static text and link button: where the text lands and how it is cut, the background a lone
// repaint shows, the link's click, and the skin's elements of the three composite kinds.
#include "../toolkit/ToolkitTestSupport.h"

#include "controls/CQKLinkButton.h"
#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QUrl>
#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// A host of 240 by 80 whose font table holds id 6 (DejaVu Sans, 14 pixels).
class StaticLinkTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.Open(240, 80));
        AddFont(6, 14);
    }
    void TearDown() override { QKSetUrlOpener({}); }
    CQKStatic* AddStatic(const QString& text, QRect rc)
    {
        auto* p = new CQKStatic();
        host.Manager()->AddControl(70, std::unique_ptr<CQKButton>(p), QKKIND_STATIC);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        p->SetText(text, 0);
        p->strFontName = QStringLiteral("DejaVu Sans");
        p->crTextColor = QKRGB(255, 255, 255);
        return p;
    }
    // Where white text lies on screen after a full repaint.
    QRect TextBox(QRect area = QRect())
    {
        host.Manager()->PaintAll();
        return BoxOf(host.HostImage(), Qt::white, 100, area);
    }

    AppFolder app;
    TestHost host;
};

} // namespace

TEST_F(StaticLinkTest, StaticTextIsAlignedAndClippedToItsRectangle)
{
    // Left is the static's default and any value past 2 centres; with no width nothing shows.
    CQKStatic* label = AddStatic(QStringLiteral("Label"), QRect(20, 20, 160, 24));
    struct Case
    {
        uint32_t nAlign;
        int nWidth;
        int nLeftMin, nLeftMax, nRightMin, nRightMax; // the text's box; none when max < min
    } cases[] = { { 0, 160, 20, 23, 40, 80 }, { 1, 160, 120, 160, 175, 179 }, { 2, 160, 70, 90, 110, 130 }, { 7, 160, 70, 90, 110, 130 }, { 0, 0, 0, -1, 0, -1 }, { 0, -5, 0, -1, 0, -1 } };
    for (const Case& c : cases) {
        label->nTextAlign = c.nAlign;
        label->nWidth = c.nWidth;
        const QRect box = TextBox();
        if (c.nLeftMax < c.nLeftMin) {
            EXPECT_TRUE(box.isEmpty()) << c.nWidth;
            continue;
        }
        EXPECT_TRUE(box.left() >= c.nLeftMin && box.left() <= c.nLeftMax) << c.nAlign << ": " << box.left();
        EXPECT_TRUE(box.right() >= c.nRightMin && box.right() <= c.nRightMax) << c.nAlign << ": " << box.right();
    }
    // Too long a text wraps, and the clip cuts off what falls out of the rectangle.
    label->MoveTo(20, 20, 60, 20, 0);
    label->SetText(QStringLiteral("Now playing a long title"), 0);
    const QRect cut = TextBox();
    EXPECT_FALSE(cut.isEmpty());
    EXPECT_TRUE(label->GetRect().contains(cut));
}

TEST_F(StaticLinkTest, LoneRepaintShowsTheBackgroundTakenOnce)
{
    QColor ground = Qt::red;
    host.paintBackground = [&](CQKGraphics* g) { g->Clear(QKMakeARGB(255, ground.red(), ground.green(), ground.blue())); };
    CQKStatic* cached = AddStatic(QString(), QRect(20, 20, 60, 20));
    cached->EnableBackgroundCache(true);
    CQKStatic* plain = AddStatic(QString(), QRect(120, 20, 60, 20));
    host.Manager()->PaintAll();
    ground = Qt::blue;
    host.Manager()->PaintAll();
    cached->SetText(QStringLiteral("x"), 1);
    plain->SetText(QStringLiteral("x"), 1);
    EXPECT_EQ(PixelAt(host.HostImage(), 75, 25), QColor(Qt::red)) << "the first full repaint's background";
    EXPECT_EQ(PixelAt(host.HostImage(), 175, 25), FromBGR(g_clrFace)) << "no cache: the face colour";
}

TEST_F(StaticLinkTest, LinkClickOpensItsAddressAndTellsTheOwnerNothing)
{
    auto* link = new CQKLinkButton();
    host.Manager()->AddControl(80, std::unique_ptr<CQKButton>(link), QKKIND_LINKBUTTON);
    link->MoveTo(20, 20, 200, 30, 0);
    link->SetText(QStringLiteral("Project page"), 0);
    link->SetLink(QStringLiteral("https://example.org/orbel"));
    std::vector<QString> opened;
    QKSetUrlOpener([&](const QUrl& url) {
        opened.push_back(url.toString());
        return true;
    });
    host.input.Move(QPoint(40, 35));
    host.input.Move(QPoint(40, 35));
    host.input.Click(QPoint(40, 35));
    TestHost::Pump();
    EXPECT_EQ(opened, std::vector<QString> { QStringLiteral("https://example.org/orbel") });
    EXPECT_TRUE(host.Received(WM_COMMAND).empty());
    // An empty address reaches no browser.
    EXPECT_FALSE(OpenURL(QString()));
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(StaticLinkTest, SkinMakesTheCompositeKinds)
{
    QKRegisterControlKind(QKKIND_SLIDER, CQKSlider::KindHooks());
    QKRegisterControlKind(QKKIND_STATIC, CQKStatic::KindHooks());
    QKRegisterControlKind(QKKIND_LINKBUTTON, CQKLinkButton::KindHooks());
    app.WriteUtf8("skin/mainwnd.xml",
        QStringLiteral("<skin><slider id=\"1\" x=\"10\" width=\"120\" height=\"16\" fontid=\"5\"><text>t</text></slider>"
                       "<static id=\"2\" fontid=\"6\" width=\"50\" height=\"20\"><text>Time</text><tooltip>no</tooltip></static>"
                       "<linkbutton id=\"3\" fontid=\"6\"><text>Home</text><tooltip>Opens the page</tooltip></linkbutton></skin>"));
    ASSERT_EQ(host.Manager()->LoadSkin(&host), 1);
    auto* slider = dynamic_cast<CQKSlider*>(host.Manager()->FindControl(1, QKKIND_SLIDER));
    auto* label = dynamic_cast<CQKStatic*>(host.Manager()->FindControl(2, QKKIND_STATIC));
    auto* link = dynamic_cast<CQKLinkButton*>(host.Manager()->FindControl(3, QKKIND_LINKBUTTON));
    ASSERT_TRUE(slider && label && link);
    EXPECT_EQ(slider->GetRect(), QRect(10, 0, 120, 16));
    EXPECT_TRUE(slider->nFontID == 0 && slider->szText.isNull()) << "a slider reads neither";
    EXPECT_EQ(label->szText, QStringLiteral("Time"));
    EXPECT_TRUE(label->strToolTip.isEmpty());
    EXPECT_EQ(link->strToolTip, QStringLiteral("Opens the page"));
    // The skin's static paints like one made in code.
    label->crTextColor = QKRGB(255, 255, 255);
    EXPECT_FALSE(TextBox(label->GetRect()).isEmpty());
}
