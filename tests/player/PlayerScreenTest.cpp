// Full screen and the window size commands of the main window, on a real X server without a
// window manager: the window places itself, so its rectangle is exactly what it asked for.
#include "PlayerFixture.h"
#include "platform/QKMessages.h"
#include "player/CQKPlayerDlg.h"
#include "player/QKPanelLayout.h"
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
        for (const auto& entry : QKPanelLayout::kControls) {
            const CQKButton* p = dlg.Manager()->FindControl(entry.nID, entry.nKind);
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
    // "Always On Top" holds from the start, until the user turns it off.
    QKPlayerOptions::bAlwaysOnTop = 1;
    RunPlaying(TestMedia::Sized(640, 360, 30.0), [&](HostDriver& drv) {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QRect window = dlg.GetWindowRect();
        ASSERT_EQ(window.size(), QSize(650, 442));
        EXPECT_TRUE(dlg.IsTopmost());
        QKPlayerOptions::bAlwaysOnTop = 0;
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

        // With "Always On Top" the window stays on top after full screen; the maximise
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
