// Full screen and the window size commands of the main window, on a real X server without a
// window manager: the window places itself, so its rectangle is exactly what it asked for.
#include "PlayerFixture.h"
#include "platform/QKMessages.h"
#include "player/CQKPlayerDlg.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "support/TestMedia.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <gtest/gtest.h>

#include <functional>

using orbeltest::HostDriver;
using orbeltest::TestMedia;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

constexpr uint32_t kPanelIds[] = { 29, 16, 17, 2, 18, 20, 19, 26, 23, 21, 22, 24, 27, 28, 25, 31 };

class PlayerScreenTest : public orbeltest::PlayerFixture
{
protected:
    // Plays `file` in the window and runs `script` once it plays.
    void RunPlaying(const QString& file, const std::function<void(HostDriver&)>& script)
    {
        HandOver({ file });
        bool bRan = false;
        QTimer::singleShot(0, [&] {
            HostDriver drv(dlg);
            EXPECT_TRUE(HostDriver::WaitFor([] { return qkplaydll_IsPlaying() != 0; }, 10000));
            HostDriver::Pump(50);
            script(drv);
            bRan = true;
            dlg.OnCancel();
        });
        dlg.DoModal();
        EXPECT_TRUE(bRan);
    }
    int VisiblePanelControls() const
    {
        int n = 0;
        for (uint32_t nID : kPanelIds) {
            const CQKButton* p = dlg.Manager()->FindControl(nID, nID == 20 || nID == 28 ? 11 : (nID == 18 || nID == 19 || nID == 31 ? 13 : 0));
            n += p && p->IsVisible();
        }
        return n;
    }
    const QImage& FullScreenFace() const { return *dlg.Manager()->FindControl(25, 0)->pImage; }
    void Command(uint32_t nCmd) { dlg.SendMessage(WM_COMMAND, nCmd); }

    CQKPlayerDlg dlg;
};

TEST_F(PlayerScreenTest, FullScreenCoversTheScreenAndGivesTheWindowBackExactly)
{
    // A 640 by 360 clip in a 650 by 442 window: the 1:1 mode leaves black bars beside it.
    RunPlaying(TestMedia::Sized(640, 360, 30.0), [&](HostDriver& drv) {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect window = dlg.GetWindowRect();
        ASSERT_EQ(window.size(), QSize(650, 442));
        QKPlayerOptions::dr = 3;
        dlg.UpdateVideoLayout();
        drv.DoubleClick(QPoint(20, 200));
        EXPECT_EQ(dlg.m_bFullScreen, 0) << "a double click beside the picture";

        drv.Wait(1000);
        drv.DoubleClick(QPoint(325, 200));
        ASSERT_EQ(dlg.m_bFullScreen, 1);
        EXPECT_EQ(dlg.GetWindowRect(), screen);
        EXPECT_EQ(dlg.m_rcVideo, QRect(QPoint(0, 0), screen.size()));
        EXPECT_EQ(VisiblePanelControls(), 0);
        EXPECT_TRUE(dlg.IsTopmost());
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_BARS));
        EXPECT_EQ(FullScreenFace(), *dlg.m_faces.faceExitFull);
        drv.Key(Qt::Key_Escape);
        EXPECT_EQ(dlg.m_bFullScreen, 0);
        EXPECT_EQ(dlg.GetWindowRect(), window);
        EXPECT_EQ(VisiblePanelControls(), 16);
        EXPECT_FALSE(dlg.IsTopmost());
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_BARS));
        EXPECT_EQ(FullScreenFace(), *dlg.m_faces.faceEnterFull);
        EXPECT_TRUE(dlg.IsWindow()) << "Esc in full screen only leaves it";

        // With "always on top" the window stays on top after full screen; the maximise
        // command leaves full screen, and the window keeps its maximised state through it.
        QKPlayerOptions::bAlwaysOnTop = 1;
        Command(QKCMD_MAXIMIZE);
        const QRect maximised = dlg.GetWindowRect();
        drv.Key(Qt::Key_F2);
        EXPECT_EQ(dlg.m_bMaximized, 1);
        Command(QKCMD_MAXIMIZE);
        EXPECT_EQ(dlg.m_bFullScreen, 0);
        EXPECT_EQ(dlg.m_bMaximized, 1);
        EXPECT_EQ(dlg.GetWindowRect(), maximised);
        EXPECT_TRUE(dlg.IsTopmost());

        // Without a picture the whole video area takes the double click.
        dlg.OnStop();
        drv.Wait(1000);
        drv.DoubleClick(QPoint(20, 200));
        EXPECT_EQ(dlg.m_bFullScreen, 1);
    });
}

TEST_F(PlayerScreenTest, SizeCommandLeavesMaximisedAndFullScreenButNotTheirOtherState)
{
    RunPlaying(TestMedia::Sized(640, 360, 30.0), [&](HostDriver& drv) {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        Command(QKCMD_MAXIMIZE);
        drv.Key(Qt::Key_F2);
        QKPlayerOptions::dr = 4;
        drv.Key(Qt::Key_F5);
        // 50% of 640 by 360 is below the smallest video area; the window keeps its centre.
        EXPECT_EQ(dlg.GetWindowRect(), QRect((screen.width() - 330) / 2, (screen.height() - 322) / 2, 330, 322));
        EXPECT_EQ(dlg.m_rcVideo, QRect(5, 31, 320, 240));
        EXPECT_EQ(QKPlayerOptions::ds, 2);
        EXPECT_EQ(QKPlayerOptions::dr, 0);
        EXPECT_EQ(dlg.m_bFullScreen, 0);
        EXPECT_EQ(dlg.m_bMaximized, 0);
        EXPECT_EQ(dlg.m_pBtnMaximize->nFaceIndex, 0);
        EXPECT_EQ(VisiblePanelControls(), 16);
        EXPECT_EQ(FullScreenFace(), *dlg.m_faces.faceEnterFull);
        // Unlike the way out of full screen: still on top, and the bars' poll still runs.
        EXPECT_TRUE(dlg.IsTopmost());
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_BARS));

        // A sound file has no size to fit: the command only changes the mode.
        dlg.m_strMediaPath = TestMedia::SoundOnly(5.0);
        dlg.m_bInfoLoaded = 0;
        dlg.OnStop();
        dlg.OnPlayPause();
        ASSERT_EQ(dlg.m_bHasVideo, 0);
        const QRect before = dlg.GetWindowRect();
        drv.Key(Qt::Key_F3);
        EXPECT_EQ(dlg.GetWindowRect(), before);
        EXPECT_EQ(QKPlayerOptions::ds, 0);
    });
}

} // namespace
