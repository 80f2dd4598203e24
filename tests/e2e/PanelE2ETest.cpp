// The real program under X, used with the mouse as a person does: the panel's buttons and the
// seek bar clicked at their places, the picture and the time display looked at on the screen,
// and the message a bad file brings.
#include "PlayerProcess.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"
#include "support/WideFileText.h"

#include <QThread>
#include <gtest/gtest.h>

#include <algorithm>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
constexpr int kWindowMs = 20000;
constexpr int kChangeMs = 15000;

// Places on the panel of a window of client size w by h: the video area ends 51 pixels above
// the bottom; the play button stands in the middle, unless the row would reach the full-screen
// button, and then the row ends just before it.
struct PanelPlaces
{
    explicit PanelPlaces(const QRect& rc)
        : w(rc.width())
        , B(rc.height() - 51)
    {
        c = (w - 25) / 2;
        if (c + 221 > w - 31)
            c = w - 252;
    }
    QPoint Play() const { return QPoint(c + 12, B + 31); }
    QPoint Stop() const { return Play() + QPoint(70, 0); }
    QPoint Next() const { return Play() + QPoint(35, 0); }
    QPoint Mute() const { return Play() + QPoint(105, 0); }
    QPoint Close() const { return QPoint(w - 15, 15); }
    QPoint SeekMiddle() const { return QPoint(56 + (w - 112) / 2, B + 10); }
    QRect Elapsed() const { return QRect(5, B + 2, 50, 16); }
    QRect MuteButton() const { return QRect(Mute() - QPoint(12, 12), QSize(25, 25)); }
    QRect Video() const { return QRect(5, 31, w - 10, B - 31); }
    QPoint VideoCentre() const { return Video().center(); }
    int w;
    int B;
    int c;
};

bool IsBlack(const QColor& c)
{
    return c.red() < 20 && c.green() < 20 && c.blue() < 20;
}

class PanelE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid()) << "could not copy the program from " << qPrintable(orbeltest::BinDir());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
    }

    // The places on the window as it stands now (fitting the window to a video resizes it).
    PanelPlaces At(unsigned long w) const { return PanelPlaces(screen.Geometry(w)); }

    unsigned long WaitForPlayer()
    {
        const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
        return windows.size() == 1 ? windows.front() : 0;
    }

    // The video area shows two different pictures 400 ms apart.
    bool Moves(unsigned long w)
    {
        const QRect rc = At(w).Video();
        const auto before = screen.Pixels(w, rc);
        QThread::msleep(400);
        return screen.Pixels(w, rc) != before;
    }

    // Saves the screen for the report of a failed check; returns where.
    std::string SaveShot(const char* pszName)
    {
        const QString path = FailureShotPath(QStringLiteral("panel-") + QLatin1String(pszName));
        return screen.SaveScreen(path) ? "screenshot: " + path.toStdString() : std::string();
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
};

TEST_F(PanelE2ETest, PlayPauseSeekMuteStopAndCloseByTheMouse)
{
    // Fifteen seconds of a moving picture, then fifteen of blue: a seek to the middle shows
    // blue.
    const QString clip = TestMedia::Make(QStringLiteral("moving-then-blue.mkv"),
        { "-f", "lavfi", "-i", "testsrc2=size=160x120:rate=25:duration=15", "-f", "lavfi", "-i", "color=c=blue:size=160x120:rate=25:duration=15",
            "-filter_complex", "[0:v][1:v]concat=n=2:v=1:a=0", "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "25" });
    ASSERT_FALSE(clip.isEmpty());

    // A player with nothing to play shows the start of the time display.
    QProcess* player = sandbox.Start({});
    const unsigned long w = WaitForPlayer();
    ASSERT_NE(w, 0u);
    // The window may be mapped before its first picture: wait for the text to show.
    std::vector<uint32_t> zeroTime;
    ASSERT_TRUE(WaitUntil([&] {
        zeroTime = screen.Pixels(w, At(w).Elapsed());
        return !zeroTime.empty() && std::count(zeroTime.begin(), zeroTime.end(), zeroTime.front()) != static_cast<long>(zeroTime.size());
    },
        kWindowMs));

    // A later start hands its file over; it plays, and the elapsed time moves on.
    sandbox.Start({ clip });
    ASSERT_TRUE(WaitUntil([&] { return Moves(w); }, kWindowMs)) << "the picture does not move; " << SaveShot("not-moving");
    EXPECT_TRUE(WaitUntil([&] { return screen.Pixels(w, At(w).Elapsed()) != zeroTime; }, kChangeMs)) << "the elapsed time stays at its start";
    const PanelPlaces at = At(w);
    const auto soundFace = screen.Pixels(w, at.MuteButton());

    // Play and pause freezes the picture; a second click lets it run again.
    screen.Click(w, at.Play());
    QThread::msleep(300);
    EXPECT_FALSE(Moves(w)) << "the picture moves while paused";
    screen.Click(w, at.Play());
    EXPECT_TRUE(WaitUntil([&] { return Moves(w); }, kChangeMs)) << "the picture does not move after resuming";

    // The middle of the seek bar is the middle of the clip, where it is blue.
    screen.Click(w, at.SeekMiddle());
    EXPECT_TRUE(WaitUntil([&] { return IsBlue(screen.ColourAt(w, at.VideoCentre())); }, kChangeMs)) << "the seek did not reach the blue half; " << SaveShot("seek");

    // Mute changes the button's face.
    screen.Click(w, at.Mute());
    EXPECT_TRUE(WaitUntil([&] { return screen.Pixels(w, at.MuteButton()) != soundFace; }, 3000)) << "the mute button kept its face";

    // Stop blacks the video area and puts the time display back to its start.
    screen.Click(w, at.Stop());
    EXPECT_TRUE(WaitUntil([&] { return IsBlack(screen.ColourAt(w, at.VideoCentre())); }, kChangeMs)) << "the video area is not black after Stop; " << SaveShot("stop");
    EXPECT_TRUE(WaitUntil([&] { return screen.Pixels(w, at.Elapsed()) == zeroTime; }, 3000)) << "the elapsed time is not back at its start";

    // The close button ends the program, which writes its options with the mute on.
    screen.Click(w, at.Close());
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWindowMs)) << "the close button did not end the player";
    EXPECT_EQ(player->exitCode(), 0);
    const QString options = ReadWideFile(sandbox.SkinFolder() + QStringLiteral("playeroptions.dat"));
    EXPECT_TRUE(options.contains(QStringLiteral("bMute=\"1\""))) << qPrintable(options);
}

TEST_F(PanelE2ETest, NextOntoABadFileShowsTheMessageThatEnterCloses)
{
    const QString clip = TestMedia::SolidColor(QStringLiteral("red"), 60.0);
    const QString noise = TestMedia::RandomBytes();
    ASSERT_FALSE(clip.isEmpty());
    QProcess* player = sandbox.Start({ clip, noise });
    const unsigned long w = WaitForPlayer();
    ASSERT_NE(w, 0u);
    ASSERT_TRUE(WaitUntil([&] { return IsRed(screen.ColourAt(w, At(w).VideoCentre())); }, kWindowMs));

    screen.Click(w, At(w).Next());
    const auto dialogs = screen.WaitForWindows(QStringLiteral("QKOrbelDialog"), 1, kWindowMs);
    ASSERT_EQ(dialogs.size(), 1u) << "no message came; " << SaveShot("no-tips");
    EXPECT_EQ(screen.WindowName(dialogs.front()), QStringLiteral("Tips"));
    screen.PressKey(dialogs.front(), "Return");
    EXPECT_EQ(screen.WaitForWindows(QStringLiteral("QKOrbelDialog"), 0, kWindowMs).size(), 0u) << "Enter did not close the message";
    QThread::msleep(300);
    EXPECT_EQ(player->state(), QProcess::Running);
    EXPECT_EQ(screen.FindWindows(kClass).size(), 1u);
}

// The window's title names the file where the desktop shows it (a session bus answers), and
// stays the program's name where nothing would show it.
TEST_F(PanelE2ETest, WindowTitleNamesTheFileOnlyWithASessionBus)
{
    const QString clip = TestMedia::SolidColor(QStringLiteral("green"), 60.0);
    ASSERT_FALSE(clip.isEmpty());
    const QString name = clip.mid(clip.lastIndexOf(QLatin1Char('/')) + 1);
    for (const bool bBus : { false, true }) {
        SCOPED_TRACE(bBus ? "with a session bus" : "without a session bus");
        sandbox.SetLauncher(bBus ? QStringList { QStringLiteral("dbus-run-session"), QStringLiteral("--") } : QStringList());
        QProcess* player = sandbox.Start({ clip });
        const unsigned long w = WaitForPlayer();
        ASSERT_NE(w, 0u);
        ASSERT_TRUE(WaitUntil([&] { return IsGreen(screen.ColourAt(w, At(w).VideoCentre())); }, kWindowMs));
        EXPECT_EQ(screen.WindowName(w), bBus ? name : QStringLiteral("Orbel Player"));
        screen.PressKey(w, "ctrl+e");
        ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWindowMs));
        screen.WaitForWindows(kClass, 0, kWindowMs);
    }
}

// In full screen the bottom bar comes when the pointer reaches the screen's bottom edge; its
// play button pauses the picture, and the bar goes once the pointer has left its strip.
TEST_F(PanelE2ETest, FullScreenBottomBarComesAtTheEdgePausesAndGoes)
{
    const QString clip = TestMedia::Make(QStringLiteral("moving.mkv"),
        { "-f", "lavfi", "-i", "testsrc2=size=160x120:rate=25:duration=60", "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p" });
    ASSERT_FALSE(clip.isEmpty());
    sandbox.Start({ clip });
    const unsigned long w = WaitForPlayer();
    ASSERT_NE(w, 0u);
    ASSERT_TRUE(WaitUntil([&] { return Moves(w); }, kWindowMs)) << "the picture does not move; " << SaveShot("bars-not-moving");
    const QSize size = screen.ScreenSize();
    const QRect rcMiddle(size.width() / 2 - 100, size.height() / 2 - 100, 200, 200);
    auto moving = [&] {
        const auto before = screen.Pixels(w, rcMiddle);
        QThread::msleep(400);
        return screen.Pixels(w, rcMiddle) != before;
    };

    screen.PressKey(w, "F2");
    ASSERT_TRUE(WaitUntil([&] { return screen.Geometry(w) == QRect(QPoint(0, 0), size); }, kChangeMs)) << "no full screen; " << SaveShot("bars-no-full-screen");
    EXPECT_TRUE(screen.FindWindows(QStringLiteral("QKLayerWndBottom")).empty());
    screen.MovePointer(QPoint(size.width() / 2, size.height() - 1));
    const auto bars = screen.WaitForWindows(QStringLiteral("QKLayerWndBottom"), 1, kChangeMs);
    ASSERT_EQ(bars.size(), 1u) << "the bottom bar did not come; " << SaveShot("bars-no-bottom-bar");
    EXPECT_EQ(screen.Geometry(bars.front()), QRect(0, size.height() - 52, size.width(), 52));
    screen.Click(bars.front(), QPoint((size.width() - 25) / 2 + 12, 31));
    EXPECT_TRUE(WaitUntil([&] { return !moving(); }, kChangeMs)) << "the picture moves after the bar's pause; " << SaveShot("bars-pause");

    screen.MovePointer(QPoint(size.width() / 2, size.height() / 2));
    EXPECT_TRUE(screen.WaitForWindows(QStringLiteral("QKLayerWndBottom"), 0, kChangeMs).empty()) << "the bottom bar stays; " << SaveShot("bars-stays");
    EXPECT_TRUE(screen.WaitForWindows(QStringLiteral("QKLayerWndTitle"), 0, kChangeMs).empty()) << "the top bar stays; " << SaveShot("bars-title-stays");
}

} // namespace
