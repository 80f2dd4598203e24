// The installed program under X (started through its link in bin/, its own folder read-only),
// ended in the ways a desktop ends it: a window destroyed by another program, the signals of
// a logout, and a new start while the player is on its way out. Every way must save the
// options in the user's config folder, let go of the single-instance lock and leave no process.
#include "PlayerProcess.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"
#include "support/WideFileText.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <csignal>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
constexpr int kWindowMs = 20000;
constexpr int kEndMs = 15000;

class ShutdownE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid()) << "could not install the build from " << qPrintable(orbeltest::BinDir());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
        clip = TestMedia::SolidColor(QStringLiteral("red"), 60.0, 64, 48, true);
        ASSERT_FALSE(clip.isEmpty());
    }

    // Starts a player on the clip and waits for its window.
    unsigned long StartPlayer()
    {
        player = sandbox.Start({ clip });
        const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
        return windows.size() == 1 ? windows.front() : 0;
    }

    // The player ended by itself with 0, wrote all its options, and a new start opens a
    // window of its own (the lock is free again).
    void ExpectEndedLikeTheCloseCommand()
    {
        ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kEndMs)) << "the player did not end";
        EXPECT_EQ(player->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(player->exitCode(), 0);
        const QString options = ReadWideFile(sandbox.SkinFolder() + "playeroptions.dat");
        EXPECT_TRUE(options.contains(QStringLiteral("<options dr=\"0\" ds=\"1\""))) << qPrintable(options);
        EXPECT_TRUE(options.contains(QStringLiteral("nVDel=\"0\"/>"))) << qPrintable(options);
        EXPECT_EQ(QDir(sandbox.AppFolder() + "skin").entryList(QDir::Files | QDir::Hidden).join(' '), "mainwnd.xml usebigfont.dat");
        QProcess* next = sandbox.Start({});
        EXPECT_EQ(screen.WaitForWindows(kClass, 1, kWindowMs).size(), 1u);
        EXPECT_EQ(next->state(), QProcess::Running);
    }

    PlayerSandbox sandbox { PlayerSandbox::Kind::Install };
    ScreenProbe screen;
    QString clip;
    QProcess* player { nullptr };
};

TEST_F(ShutdownE2ETest, WindowDestroyedByAnotherProgramEndsThePlayer)
{
    const unsigned long w = StartPlayer();
    ASSERT_NE(w, 0u);
    // What "xdotool windowclose" does: the window is destroyed without asking its owner.
    Display* pDisplay = XOpenDisplay(nullptr);
    ASSERT_NE(pDisplay, nullptr);
    XDestroyWindow(pDisplay, w);
    XSync(pDisplay, False);
    XCloseDisplay(pDisplay);
    ExpectEndedLikeTheCloseCommand();
}

TEST_F(ShutdownE2ETest, StartDuringTheCloseOfThePlayerIsNeverLost)
{
    // A person closes the player and at once opens a file from the file manager. Whatever the
    // moment, the new start either hands its file to a player that reads it or runs a window
    // of its own; it never ends with nothing on the screen.
    const QString blue = TestMedia::SolidColor(QStringLiteral("blue"), 60.0, 64, 48, true);
    ASSERT_FALSE(blue.isEmpty());
    for (int nDelayMs : { 0, 20, 40, 60, 80, 100, 120, 150 }) {
        SCOPED_TRACE(nDelayMs);
        const unsigned long w = StartPlayer();
        ASSERT_NE(w, 0u);
        QProcess* closing = player;
        screen.RequestClose(w);
        WaitUntil([] { return false; }, nDelayMs);
        QProcess* next = sandbox.Start({ blue });
        ASSERT_TRUE(PlayerSandbox::WaitForEnd(closing, kEndMs));
        const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
        ASSERT_EQ(windows.size(), 1u) << "the new start opened nothing";
        EXPECT_EQ(next->state(), QProcess::Running);
        EXPECT_TRUE(WaitUntil([&] { return IsBlue(screen.ColourAt(windows.front(), QPoint(165, 150))); }, kWindowMs));
        screen.RequestClose(windows.front());
        ASSERT_TRUE(PlayerSandbox::WaitForEnd(next, kEndMs));
    }
}

TEST_F(ShutdownE2ETest, WindowHasTheClassThatItsDesktopEntryNames)
{
    // The desktop groups the window under its entry (name, icon) by the window's class.
    const unsigned long w = StartPlayer();
    ASSERT_NE(w, 0u);
    QFile entry(sandbox.Root() + "/prefix/share/applications/orbel-player.desktop");
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    const QString wmClass = QRegularExpression("\nStartupWMClass=(.+)\n").match(QString::fromUtf8(entry.readAll())).captured(1);
    EXPECT_EQ(screen.ClassHint(w).toStdString(), (wmClass + ", " + wmClass).toStdString());
}

class SignalE2ETest : public ShutdownE2ETest, public ::testing::WithParamInterface<int>
{
};

TEST_P(SignalE2ETest, LogoutSignalEndsThePlayerAsTheCloseCommandDoes)
{
    ASSERT_NE(StartPlayer(), 0u);
    ::kill(static_cast<pid_t>(player->processId()), GetParam());
    ExpectEndedLikeTheCloseCommand();
}

INSTANTIATE_TEST_SUITE_P(TermHupInt, SignalE2ETest, ::testing::Values(SIGTERM, SIGHUP, SIGINT));

} // namespace
