// The main window in a real X session: what its initialisation sets up, the hand-off message,
// the end of a file, and its end.
#include "PlayerFixture.h"
#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "engine/qkplay.h"
#include "platform/CQKTaskbarList.h"
#include "platform/QKAppFolder.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "platform/QKSystemDialogs.h"
#include "player/CQKLayerWndBottom.h"
#include "player/CQKPlayerApp.h"
#include "player/CQKPlayerDlg.h"
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"
#include "support/GlDriver.h"
#include "support/TestMedia.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <cmath>
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

// The desktop's side of the player, recorded: each call as one line.
class TaskbarRecorder : public CQKTaskbarList
{
public:
    explicit TaskbarRecorder(QStringList* pCalls)
        : pLog(pCalls)
    {
    }
    void HrInit() override { *pLog << QStringLiteral("init"); }
    void ThumbBarAddButtons(CQKHostWnd*, uint32_t n, const tagQKThumbButton* p) override { *pLog << QStringLiteral("add %1 %2 %3 %4").arg(n).arg(p[0].hIcon).arg(p[1].hIcon).arg(p[2].hIcon); }
    void ThumbBarUpdateButtons(CQKHostWnd*, uint32_t n, const tagQKThumbButton* p) override { *pLog << QStringLiteral("button %1 %2 %3").arg(n).arg(p[0].iId).arg(p[0].hIcon); }
    void SetOverlayIcon(CQKHostWnd*, uint32_t hIcon) override { *pLog << QStringLiteral("overlay %1").arg(hIcon); }
    void SetProgressState(CQKHostWnd*, uint32_t nState) override { *pLog << QStringLiteral("state %1").arg(nState); }
    void SetProgressValue(CQKHostWnd*, uint64_t nDone, uint64_t nTotal) override { *pLog << QStringLiteral("progress %1/%2").arg(nDone).arg(nTotal); }

private:
    QStringList* pLog;
};

bool SameImage(const std::unique_ptr<QImage>& a, const std::unique_ptr<QImage>& b)
{
    return a && b && *a == b->convertToFormat(a->format());
}

TEST_F(PlayerWindowTest, PanelAndDesktopFollowPlayPauseSeekVolumeAndStop)
{
    const QString video = TestMedia::VideoWithSound(20.0);
    const QString name = video.mid(video.lastIndexOf(QLatin1Char('/')) + 1);
    QStringList calls;
    QKSetTaskbarFactory([&] { return std::make_unique<TaskbarRecorder>(&calls); });
    QKPlayerOptions::bMute = 1;
    HandOver({ video });
    CQKPlayerDlg dlg;
    dlg.m_bHasTaskbarList = 1;
    // The bars of the 1920 pixel screen carry twins that must follow their panel controls.
    RunWindow(dlg, [&] {
        EXPECT_EQ(dlg.m_barBottom->Manager()->FindControl(21, 0)->GetRect(), QRect(947, 19, 25, 25));
        EXPECT_EQ(dlg.m_barTitle->Manager()->FindControl(17, 0)->nFaceIndex, 1);
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        // The three buttons once; the stop before a new file (play icon, progress emptied); the
        // start (pause icon, no overlay, normal progress).
        EXPECT_EQ(calls.join(QLatin1Char(',')), QStringLiteral("init,add 3 129 132 130,button 1 1 132,overlay 0,state 2,progress 0/1,button 1 1 131,overlay 0,state 2"));
        EXPECT_EQ(dlg.GetWindowText(), name);
        QString strText;
        dlg.m_pTitleText->GetText(strText);
        EXPECT_EQ(strText, name + QStringLiteral("  (160x120)"));
        dlg.m_pTimeTotal->GetText(strText);
        EXPECT_EQ(strText, QStringLiteral("00:00:20"));
        EXPECT_EQ(dlg.m_pBtnPlay->nFaceIndex, 1);
        EXPECT_TRUE(SameImage(dlg.m_pBarPlay->pImage, dlg.m_faces.facePause));
        // A player that starts muted shows it.
        EXPECT_TRUE(SameImage(dlg.m_pBtnMute->pImage, dlg.m_faces.faceMuted));

        // A tick reports the position in hundredths of the whole.
        calls.clear();
        dlg.OnPositionTimer();
        ASSERT_EQ(calls.size(), 1);
        EXPECT_TRUE(QRegularExpression(QStringLiteral("^progress \\d+/200\\d$")).match(calls[0]).hasMatch()) << qPrintable(calls[0]);

        // Pause: play icon, pause overlay, paused progress, play faces on both buttons.
        calls.clear();
        dlg.OnPlayPause();
        EXPECT_EQ(calls, (QStringList { "button 1 1 132", "overlay 131", "state 8" }));
        EXPECT_EQ(dlg.m_pBarPlay->nFaceIndex, 0);
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_POSITION));
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() == 0 && qkplaydll_IsReady() != 0; }));

        // A seek to the middle while paused: the twin follows, and the label reads the bar's
        // percentage as seconds.
        dlg.m_pPosSlider->SetPos(50.0, 0);
        dlg.OnSliderChanged(dlg.m_pPosSlider);
        EXPECT_EQ(dlg.m_pBarPosSlider->GetPos(), 50.0);
        dlg.m_pBarTimeCurrent->GetText(strText);
        EXPECT_EQ(strText, QStringLiteral("00:00:50"));
        EXPECT_TRUE(WaitFor([] { return std::abs(qkplaydll_getLastSeekingPos() - 10.0) < 0.5; }, 3000));

        // The volume from the bar while a file is open: stored, mirrored, and the mute lifted.
        dlg.m_pBarVolSlider->SetPos(30.0, 0);
        dlg.OnSliderChanged(dlg.m_pBarVolSlider);
        EXPECT_EQ(QKPlayerOptions::dVolumeScale, 30.0);
        EXPECT_EQ(dlg.m_pVolSlider->GetPos(), 30.0);
        EXPECT_EQ(QKPlayerOptions::bMute, 0);
        EXPECT_TRUE(SameImage(dlg.m_pBarMute->pImage, dlg.m_faces.faceSound));

        // Stop: play icon, no overlay, normal, the progress emptied; the panel's seek bar goes
        // back to its start while the bar's stays.
        calls.clear();
        dlg.OnStop();
        EXPECT_EQ(calls, (QStringList { "button 1 1 132", "overlay 0", "state 2", "progress 0/1" }));
        EXPECT_EQ(dlg.GetWindowText(), QStringLiteral("Orbel Player"));
        EXPECT_EQ(dlg.m_pPosSlider->GetPos(), 0.0);
        EXPECT_EQ(dlg.m_pBarPosSlider->GetPos(), 50.0);
        dlg.m_pTimeTotal->GetText(strText);
        EXPECT_EQ(strText, QStringLiteral("00:00:00"));

        // With nothing open a seek puts both bars back, and the volume leaves the mute alone.
        dlg.OnSliderChanged(dlg.m_pBarPosSlider);
        EXPECT_EQ(dlg.m_pBarPosSlider->GetPos(), 0.0);
        dlg.OnMute();
        dlg.OnSliderChanged(dlg.m_pVolSlider);
        EXPECT_EQ(QKPlayerOptions::bMute, 1);
    });
    QKSetTaskbarFactory(nullptr);
}

// Every key of the main window reaches its command; F3 is 200 % and F4 100 %.
TEST_F(PlayerWindowTest, EveryKeyRunsItsCommand)
{
    const QString big = TestMedia::Sized(400, 300, 20.0);
    const QString other = TestMedia::VideoWithSound(20.0);
    HandOver({ big, other });
    CQKPlayerDlg dlg;
    QStringList asked;
    QKSetOpenFileNamesProvider([&](const QString&) {
        asked << QStringLiteral("open");
        return QStringList();
    });
    RunWindow(dlg, [&] {
        ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        auto press = [&](int key, Qt::KeyboardModifiers mods) {
            QKeyEvent down(QEvent::KeyPress, key, mods);
            QKeyEvent up(QEvent::KeyRelease, key, mods);
            QCoreApplication::sendEvent(dlg.NativeWidget(), &down);
            QCoreApplication::sendEvent(dlg.NativeWidget(), &up);
        };
        press(Qt::Key_Space, Qt::NoModifier);
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() == 0 && qkplaydll_IsReady() != 0; }));
        press(Qt::Key_M, Qt::ControlModifier);
        EXPECT_EQ(QKPlayerOptions::bMute, 1);
        press(Qt::Key_O, Qt::ControlModifier);
        EXPECT_EQ(asked, QStringList { QStringLiteral("open") });
        // F3, then F4: the last size key holds.
        press(Qt::Key_F3, Qt::NoModifier);
        press(Qt::Key_F4, Qt::NoModifier);
        EXPECT_EQ(dlg.m_rcVideo.size(), QSize(400, 300));
        EXPECT_EQ(QKPlayerOptions::ds, 1);
        press(Qt::Key_Right, Qt::ControlModifier);
        EXPECT_EQ(dlg.m_strMediaPath, other);
        EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
        press(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(qkplaydll_IsReady(), 0);
        EXPECT_FALSE(dlg.HasTimer(QKTIMER_POSITION));
        // Ctrl+E closes as the close button does (the close itself is tested below).
        EXPECT_EQ(dlg.FindAccelerator('E', QKMOD_CONTROL), QKCMD_CLOSE);
    });
    QKSetOpenFileNamesProvider(nullptr);
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
