// The main window in a real X session: what its initialisation sets up, the hand-off message,
// the end of a file, and its end.
#include "PlayerFixture.h"
#include "engine/qkplay.h"
#include "platform/QKAppFolder.h"
#include "platform/QKMessages.h"
#include "player/CQKPlayerApp.h"
#include "player/CQKPlayerDlg.h"
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"
#include "support/GlDriver.h"
#include "support/TestMedia.h"
#include "toolkit/QKTheme.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <functional>
#include <string>

using orbeltest::TestMedia;
using orbeltest::WaitFor;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

std::string EngineProperty(const char* name)
{
    char* p = qkplay_get_engine_property(name);
    std::string s = p ? p : "";
    qkplay_free(p);
    return s;
}

class PlayerWindowTest : public orbeltest::PlayerFixture
{
protected:
    // Runs the window until `script` has run; the script gets the window once it is up and
    // returns when the window may close.
    static void RunWindow(CQKPlayerDlg& dlg, const std::function<void()>& script)
    {
        bool bRan = false;
        QTimer::singleShot(0, [&] {
            script();
            bRan = true;
            dlg.OnCancel();
        });
        dlg.DoModal();
        EXPECT_TRUE(bRan);
    }
};

TEST_F(PlayerWindowTest, InitialisationTellsTheEngineAndSetsTheWindowUp)
{
    const QString video = TestMedia::VideoWithSound(20.0);
    QKPlayerOptions::bMute = 1;
    QKPlayerOptions::dVolumeScale = 40.0;
    QKPlayerOptions::bAlwaysOnTop = 1;
    g_clrText = 0x123456;
    g_clrToolTipText = 0;
    HandOver({ video });
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        EXPECT_EQ(dlg.GetWindowText(), QStringLiteral("Orbel Player"));
        EXPECT_TRUE(dlg.IsTopmost());
        EXPECT_EQ(g_clrToolTipText, 0x123456u);
        EXPECT_EQ(dlg.m_rcVideo, QRect(5, 31, 856, 480));
        // The list is read 100 ms after the window came up, not at once.
        EXPECT_TRUE(dlg.m_strMediaPath.isEmpty());
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        EXPECT_EQ(dlg.m_strMediaPath, video);
        // Mute and volume were told before the first file and hold for it.
        EXPECT_EQ(EngineProperty("mute"), "yes");
        EXPECT_EQ(std::stod(EngineProperty("volume")), 40.0);
        // The window was fitted to the 160 by 120 video at 100%.
        EXPECT_TRUE(WaitFor([&] { return dlg.GetClientRect().size() == QSize(330, 322); }, 3000));
        EXPECT_EQ(dlg.m_rcVideo, QRect(5, 31, 320, 240));
    });
    // Closing stopped the engine and joined the thread.
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    EXPECT_FALSE(dlg.IsWindow());
}

TEST_F(PlayerWindowTest, WakeUpReadsTheListAgainALittleLater)
{
    const QString red = TestMedia::SolidColor(QStringLiteral("red"), 20.0);
    const QString blue = TestMedia::SolidColor(QStringLiteral("blue"), 20.0);
    HandOver({ red });
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        ASSERT_TRUE(WaitFor([&] { return dlg.m_strMediaPath == red && qkplaydll_IsPlaying(); }));
        HandOver({ blue });
        dlg.SendMessage(QKM_WAKEUP, 0, 0);
        EXPECT_EQ(dlg.m_strMediaPath, red);
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_STARTUP));
        EXPECT_TRUE(WaitFor([&] { return dlg.m_strMediaPath == blue; }, 3000));
        // The pick-up timer is a one-shot.
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_STARTUP));
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    });
}

TEST_F(PlayerWindowTest, EndOfFileStopsUnlessPlayNextIsOn)
{
    const QString shortClip = TestMedia::VideoWithSound(1.0);
    HandOver({ shortClip });
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        // The engine posts the end of media; the window turns it into a stop, and keeps the file.
        EXPECT_TRUE(WaitFor([&] { return qkplaydll_IsReady() == 0 && !dlg.HasTimer(QKTIMER_POSITION); }, 10000));
        EXPECT_EQ(dlg.m_strMediaPath, shortClip);
        // Play starts it again from its start.
        dlg.OnPlayPause();
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_POSITION));
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    });
}

TEST_F(PlayerWindowTest, SpacePausesAndResumes)
{
    const QString video = TestMedia::VideoWithSound(20.0);
    HandOver({ video });
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        auto pressSpace = [&] {
            QKeyEvent down(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QCoreApplication::sendEvent(dlg.NativeWidget(), &down);
            QCoreApplication::sendEvent(dlg.NativeWidget(), &up);
        };
        pressSpace();
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() == 0 && qkplaydll_IsReady() != 0; }));
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_POSITION));
        pressSpace();
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_POSITION));
    });
}

TEST_F(PlayerWindowTest, CloseCommandsEndTheWindowAndStopPlayback)
{
    const QString video = TestMedia::VideoWithSound(20.0);
    for (uint32_t nCmd : { QKCMD_CLOSE, QKCMD_ESCAPE }) {
        HandOver({ video });
        CQKPlayerDlg dlg;
        QTimer::singleShot(0, [&] {
            WaitFor([] { return qkplaydll_IsPlaying() != 0; });
            dlg.PostMessage(WM_COMMAND, nCmd, 0);
        });
        EXPECT_EQ(dlg.DoModal(), static_cast<int>(QKCMD_CLOSE));
        EXPECT_EQ(qkplaydll_IsReady(), 0) << nCmd;
    }
}

} // namespace
