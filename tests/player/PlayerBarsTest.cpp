// The full-screen bars of the main window: their fades and the hand-over of the window's poll,
// the poll itself, what their mouse and keys do, and what they paint.
#include "PlayerFixture.h"
#include "controls/CQKSlider.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "player/CQKLayerWndBottom.h"
#include "player/CQKPlayerDlg.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "support/TestPaths.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <cmath>

using orbeltest::HostDriver;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

// Runs one timer tick of a bar, as the timer would, without waiting for it.
struct BarTimer : CQKLayerWnd
{
    static void Tick(CQKLayerWnd& bar, uint32_t nID) { (bar.*(&BarTimer::OnTimer))(nID); }
};

class PlayerBarsTest : public orbeltest::PlayerFixture
{
protected:
    void RunWindow(const std::function<void()>& script)
    {
        bool bRan = false;
        QTimer::singleShot(0, [&] {
            HostDriver::Pump(50);
            script();
            bRan = true;
            dlg.OnCancel();
        });
        dlg.DoModal();
        EXPECT_TRUE(bRan);
    }
    CQKPlayerDlg dlg;
};

TEST_F(PlayerBarsTest, FadesRunTheirStepsAndHandThePollBack)
{
    RunWindow([&] {
        CQKLayerWnd& bar = *dlg.m_barBottom;
        const QWidget* pWidget = bar.NativeWidget();
        EXPECT_EQ(bar.GetWindowRect(), QRect(0, 1080 - 52, 1920, 52));
        EXPECT_EQ(dlg.m_barTitle->GetWindowRect(), QRect(0, 0, 1920, 30));
        EXPECT_FALSE(bar.IsWindowVisible());
        dlg.SetTimer(QKTIMER_BARS, 300);
        bar.ShowFade(true);
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_BARS));
        EXPECT_TRUE(bar.IsWindowVisible());
        EXPECT_EQ(pWidget->windowOpacity(), 0.0);
        for (int nAlpha : { 60, 120, 180, 240 }) {
            EXPECT_TRUE(bar.HasTimer(1));
            BarTimer::Tick(bar, 1);
            EXPECT_EQ(bar.m_nAlpha, nAlpha);
        }
        EXPECT_NEAR(pWidget->windowOpacity(), 240 / 255.0, 0.01);
        EXPECT_FALSE(bar.HasTimer(1));
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_BARS));

        bar.ShowFade(false);
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_BARS));
        for (int nAlpha : { 190, 140, 90, 40, 0 }) {
            // A bar that is still visible, even fading out, takes no new fade in.
            bar.ShowFade(true);
            EXPECT_FALSE(bar.HasTimer(1));
            BarTimer::Tick(bar, 2);
            EXPECT_EQ(bar.m_nAlpha, nAlpha);
        }
        EXPECT_FALSE(bar.IsWindowVisible());
        EXPECT_FALSE(bar.HasTimer(2));
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_BARS));
        bar.ShowFade(true);
        BarTimer::Tick(bar, 1);
        EXPECT_EQ(bar.m_nAlpha, 60);
        dlg.KillTimer(QKTIMER_BARS);
    });
}

// The poll in full screen: the pointer on a strip fades its bar in, elsewhere out; a hidden
// cursor brings no bar; outside full screen the visible bars go and the poll ends.
TEST_F(PlayerBarsTest, PollFollowsThePointerAndTheCursorState)
{
    RunWindow([&] {
        CQKLayerWnd& bottom = *dlg.m_barBottom;
        CQKLayerWnd& title = *dlg.m_barTitle;
        dlg.m_bFullScreen = 1;
        auto poll = [&](QPoint pt, int32_t bCursor) {
            QCursor::setPos(pt);
            HostDriver::WaitFor([&] { return QCursor::pos() == pt; });
            dlg.m_bCursorVisible = bCursor;
            dlg.OnBarsTimer();
        };
        poll(QPoint(960, 1070), 0);
        EXPECT_FALSE(bottom.IsWindowVisible());
        poll(QPoint(960, 1070), 1);
        EXPECT_TRUE(bottom.IsWindowVisible() && bottom.HasTimer(1));
        bottom.KillTimer(1);
        poll(QPoint(960, 1070), 1);
        EXPECT_FALSE(bottom.HasTimer(2));
        EXPECT_FALSE(title.IsWindowVisible());
        poll(QPoint(960, 10), 1);
        EXPECT_TRUE(bottom.HasTimer(2));
        EXPECT_TRUE(title.IsWindowVisible());
        bottom.KillTimer(2);
        title.KillTimer(1);
        poll(QPoint(960, 10), 0);
        EXPECT_TRUE(title.HasTimer(2));
        title.KillTimer(2);
        dlg.m_bFullScreen = 0;
        dlg.SetTimer(QKTIMER_BARS, 300);
        poll(QPoint(960, 10), 1);
        EXPECT_TRUE(title.HasTimer(2) && bottom.HasTimer(2));
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_BARS));
        dlg.HideBars();
    });
}

// The first move after entering arms the leave tracking only; commands of the bar's controls
// (high word 0) become the window's, others not; the bar's slider and keys reach the window.
TEST_F(PlayerBarsTest, BarsPassTheirControlsAndKeysOnToTheWindow)
{
    QKPlayerOptions::dVolumeScale = 10.0;
    RunWindow([&] {
        CQKLayerWnd& bottom = *dlg.m_barBottom;
        bottom.ShowWindow(SW_SHOWNOACTIVATE);
        HostDriver drv(bottom);
        const CQKButton* pStop = bottom.Manager()->FindControl(22, 0);
        const QPoint ptStop = pStop->GetRect().center();
        drv.Move(ptStop);
        EXPECT_EQ(pStop->nState, 0);
        drv.Move(ptStop);
        EXPECT_EQ(pStop->nState, 1);

        bottom.SendMessage(WM_COMMAND, (1u << 16) | 27, 0);
        HostDriver::Pump(20);
        EXPECT_EQ(QKPlayerOptions::bMute, 0);
        bottom.SendMessage(WM_COMMAND, 27, 0);
        EXPECT_TRUE(HostDriver::WaitFor([] { return QKPlayerOptions::bMute == 1; }));
        drv.Key(Qt::Key_M, Qt::ControlModifier);
        EXPECT_EQ(QKPlayerOptions::bMute, 0);

        // The middle of the bar's volume slider sets the volume, and the panel's follows.
        drv.Click(dlg.m_pBarVolSlider->GetRect().center());
        EXPECT_TRUE(HostDriver::WaitFor([&] { return QKPlayerOptions::dVolumeScale == dlg.m_pBarVolSlider->GetPos(); }));
        EXPECT_GT(QKPlayerOptions::dVolumeScale, 40.0);
        EXPECT_EQ(dlg.m_pVolSlider->GetPos(), QKPlayerOptions::dVolumeScale);
    });
}

// Two presses within the double-click time leave full screen on the free part of a bar, not
// on one of the title strip's buttons (in either bar's own coordinates).
TEST_F(PlayerBarsTest, QuickSecondPressOnTheFreePartLeavesFullScreen)
{
    RunWindow([&] {
        dlg.OnFullScreen();
        ASSERT_EQ(dlg.m_bFullScreen, 1);
        for (CQKLayerWndTitle* pBar : { static_cast<CQKLayerWndTitle*>(dlg.m_barTitle.get()), static_cast<CQKLayerWndTitle*>(dlg.m_barBottom.get()) }) {
            pBar->ShowWindow(SW_SHOWNOACTIVATE);
            HostDriver drv(*pBar);
            // Over the options button's place; the release elsewhere clicks nothing.
            for (int i = 0; i < 2; ++i) {
                drv.Press(QPoint(130, 10));
                drv.Release(QPoint(400, 100));
            }
            EXPECT_EQ(dlg.m_bFullScreen, 1);
            pBar->m_dwLastClickTick = QKGetTickCount() - QKGetDoubleClickTime() - 100;
            drv.Click(QPoint(600, 10));
            EXPECT_EQ(dlg.m_bFullScreen, 1);
            drv.Click(QPoint(600, 10));
            EXPECT_EQ(dlg.m_bFullScreen, 0);
            dlg.OnFullScreen();
        }
        dlg.OnFullScreen();
    });
}

TEST_F(PlayerBarsTest, TitleBarPaintsIconCaptionAndOutlineAndTheBottomBarItsGround)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("skin/btn")));
    ASSERT_TRUE(QFile::copy(orbeltest::SourceDir() + QStringLiteral("skin/btn/gold.png"), dir.path() + QStringLiteral("/skin/btn/gold.png")));
    g_clrFace = 0x203040;
    g_UIColors.clrFrame = 0x00FF00;
    g_UIColors.clrTitleTextStart = 0x0000FF;
    g_UIColors.clrTitleTextEnd = 0xFF0000;
    RunWindow([&] {
        const QImage title = *dlg.m_barTitle->Manager()->RenderToBitmap();
        const QImage bottom = *dlg.m_barBottom->Manager()->RenderToBitmap();
        const QRgb face = qRgb(0x40, 0x30, 0x20);
        const QRgb frame = qRgb(0, 255, 0);
        EXPECT_EQ(title.pixel(800, 27), face);
        EXPECT_EQ(bottom.pixel(800, 48), face);
        for (const QPoint pt : { QPoint(0, 15), QPoint(1919, 15), QPoint(800, 0), QPoint(800, 29) })
            EXPECT_EQ(title.pixel(pt), frame) << pt.x() << "," << pt.y();
        for (const QPoint pt : { QPoint(0, 30), QPoint(1919, 30), QPoint(800, 0), QPoint(800, 51) })
            EXPECT_EQ(bottom.pixel(pt), frame) << pt.x() << "," << pt.y();
        // The icon's ring is gold; the caption runs from red to blue.
        for (const QPoint pt : { QPoint(5, 15), QPoint(16, 4) })
            EXPECT_GT(qRed(title.pixel(pt)), 200) << pt.x() << "," << pt.y();
        QRect ink;
        for (int y = 1; y < 29; ++y)
            for (int x = 31; x < 120; ++x)
                if (qRed(title.pixel(x, y)) > 120 || qBlue(title.pixel(x, y)) > 120)
                    ink |= QRect(x, y, 1, 1);
        EXPECT_GT(ink.width(), 60);
        EXPECT_TRUE(orbeltest::CaptionRunsRedToBlue(title, ink));
    });
}

} // namespace
