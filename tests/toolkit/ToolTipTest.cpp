// Tool tips: where they go, how big they are, when they show and hide.
#include "ToolkitTestSupport.h"

#include "toolkit/CQKButton.h"
#include "toolkit/CQKToolTipWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace toolkittest;

TEST(ToolTipPlacementTest, StaysInsideTheScreenAndFlipsAboveNearTheBottom)
{
    const QRect screen(0, 0, 1280, 800);
    const QRect work(0, 0, 1280, 760); // a 40-pixel panel at the bottom
    const QSize tip(100, 24);
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(300, 400), tip, 20, screen, work), QRect(300, 400, 100, 24));
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(1250, 400), tip, 20, screen, work).x(), 1280 - 100 - 2) << "2 pixels inside the right edge";
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(-30, 400), tip, 20, screen, work).x(), 0);
    // 745 + 24 reaches into the panel: the tip goes above the 20-pixel control.
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(300, 745), tip, 20, screen, work).y(), 745 - 20 - 20 - 24);
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(300, 736), tip, 20, screen, work).y(), 736) << "fits exactly";
    // A panel at the side takes its height off all the same.
    const QRect side(0, 0, 1280, 800);
    EXPECT_EQ(CQKToolTipWnd::PlaceBelow(QPoint(300, 790), tip, 20, screen, side).y(), 790 - 64);
}

TEST(ToolTipMeasureTest, EmptyIsNothingAndLinesAddHeight)
{
    CQKToolTipWnd tip;
    EXPECT_EQ(tip.Measure(), QSize(0, 0));
    tip.strText = QStringLiteral("Play");
    const QSize one = tip.Measure();
    EXPECT_GT(one.width(), 20);
    EXPECT_GE(one.height(), 10 + 9);
    tip.strText = QStringLiteral("Play\r\nPause");
    const QSize two = tip.Measure();
    EXPECT_GT(two.height(), one.height() + 8);
}

namespace {

class ToolTipTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.Open(200, 100));
        button = new CQKButton();
        host.Manager()->AddControl(7, std::unique_ptr<CQKButton>(button), 0);
        button->MoveTo(20, 20, 60, 30, 0);
        button->SetToolTip(QStringLiteral("Open a file"));
    }
    bool TipVisible() const { return button->pToolTipWnd && button->pToolTipWnd->IsWindowVisible(); }

    AppFolder app;
    TestHost host;
    CQKButton* button { nullptr };
};

} // namespace

TEST_F(ToolTipTest, HoverShowsTheTipBelowTheControlAndLeavingOrClickingHidesIt)
{
    host.input.Move(QPoint(30, 30));
    ASSERT_TRUE(TipVisible());
    const QRect rc = button->pToolTipWnd->GetWindowRect();
    const QPoint below = host.ClientToScreen(QPoint(20, 20 + 30 + 10));
    EXPECT_EQ(rc.topLeft(), below);
    EXPECT_EQ(rc.size(), button->pToolTipWnd->Measure());
    EXPECT_EQ(button->pToolTipWnd->strText, QStringLiteral("Open a file"));
    host.input.Move(QPoint(31, 30));
    EXPECT_TRUE(TipVisible());
    host.input.Move(QPoint(150, 80));
    EXPECT_FALSE(TipVisible()) << "leaving the control hides it at once";
    host.input.Move(QPoint(30, 30));
    ASSERT_TRUE(TipVisible());
    host.input.Click(QPoint(30, 30));
    EXPECT_FALSE(TipVisible()) << "a click hides it";
}

TEST_F(ToolTipTest, NoTextMakesNoWindow)
{
    button->SetToolTip(QString());
    host.input.Move(QPoint(30, 30));
    EXPECT_FALSE(button->pToolTipWnd);
}

TEST_F(ToolTipTest, TipFadesInAndHidesItselfAfterThreeSeconds)
{
    host.input.Move(QPoint(30, 30));
    ASSERT_TRUE(TipVisible());
    CQKToolTipWnd* tip = button->pToolTipWnd.get();
    EXPECT_EQ(tip->nAlpha, 0);
    EXPECT_EQ(tip->HostImage().size(), tip->Measure());
    // The tip paints the ground with a border frame.
    const QImage& face = tip->HostImage();
    const int h = face.height();
    EXPECT_GT(PixelAt(face, 0, h / 2).red(), PixelAt(face, 3, h / 2).red() + 20) << "a frame in the lighter border colour";
    EXPECT_EQ(PixelAt(face, 3, 3), FromBGR(g_clrFace));
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 900)
        TestHost::Pump();
    EXPECT_EQ(tip->nAlpha, 255) << "fully shown after about 600 ms";
    EXPECT_TRUE(tip->IsWindowVisible());
    while (timer.elapsed() < 3500 && tip->IsWindowVisible())
        TestHost::Pump();
    EXPECT_FALSE(tip->IsWindowVisible());
    EXPECT_GE(timer.elapsed(), 2700) << "window timers may fire a little early";
    // It does not come back while the pointer stays on the control.
    host.input.Move(QPoint(32, 30));
    EXPECT_FALSE(tip->IsWindowVisible());
    host.input.Move(QPoint(150, 80));
    host.input.Move(QPoint(32, 30));
    EXPECT_TRUE(tip->IsWindowVisible()) << "a new hover brings it back";
}

TEST_F(ToolTipTest, TipWindowGoesWithItsControl)
{
    host.input.Move(QPoint(30, 30));
    ASSERT_TRUE(TipVisible());
    const CQKHostWnd* tip = button->pToolTipWnd.get();
    ASSERT_TRUE(CQKHostWnd::IsWindow(tip));
    host.DestroyWindow(); // the manager and its controls go with the window
    TestHost::Pump();
    EXPECT_FALSE(CQKHostWnd::IsWindow(tip));
}
