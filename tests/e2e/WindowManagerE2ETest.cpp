// The real program under a real window manager (openbox inside the test's own X server):
// what only a window manager can show, such as a minimised window coming back.
#include "DesktopPanel.h"
#include "PlayerProcess.h"

#include "support/TestMedia.h"

#include <QProcess>
#include <QThread>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <vector>

using namespace orbeltest;

namespace {

constexpr int kWaitMs = 30000;

// The first 32-bit item of a window's property (the root window's for window 0), or -1 when
// the window has no such property.
long Property32(unsigned long window, const char* pszName, const char* pszType)
{
    return X11Screen().Property32(window, pszName, pszType);
}

// The state a window manager gives a client window: 1 normal, 3 iconic, -1 when the window
// has none (withdrawn, or no window manager looks after it).
long WindowState(unsigned long window)
{
    return Property32(window, "WM_STATE", "WM_STATE");
}

// A window manager says it runs by setting its check window on the root.
bool WindowManagerRuns()
{
    return Property32(0, "_NET_SUPPORTING_WM_CHECK", "WINDOW") > 0;
}

class WindowManagerE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
        wm.start(QStringLiteral("openbox"), { QStringLiteral("--sm-disable") });
        ASSERT_TRUE(wm.waitForStarted(5000)) << "openbox did not start";
        ASSERT_TRUE(WaitUntil(WindowManagerRuns, kWaitMs)) << "openbox did not take the screen";
    }

    void TearDown() override
    {
        wm.kill();
        wm.waitForFinished(5000);
    }

    // The client windows titled as the player (the window manager puts a frame around each,
    // so they are found by their title, not as children of the root).
    std::vector<unsigned long> PlayerWindows()
    {
        std::vector<unsigned long> found;
        QString out;
        if (!XdoTool({ QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Orbel Player$") }, &out))
            return found;
        for (const QString& line : out.split('\n', Qt::SkipEmptyParts))
            found.push_back(line.toULong());
        return found;
    }

    unsigned long WaitForPlayerWindow()
    {
        unsigned long w = 0;
        WaitUntil([&] {
            const auto found = PlayerWindows();
            w = found.empty() ? 0 : found.front();
            return w != 0;
        },
            kWaitMs);
        return w;
    }

    static QPoint Centre(const QRect& rc) { return QPoint(rc.width() / 2, rc.height() / 2); }

    // Waits until the middle of the player's window shows the colour. The windows are looked
    // up afresh each time, so a window the program made anew is seen too. When the colour
    // does not come, the report says what each window showed and a screenshot is saved.
    // Returns the window that shows it, or 0.
    unsigned long WaitForColour(bool (*isColour)(const QColor&), const char* pszShot)
    {
        unsigned long shown = 0;
        WaitUntil([&] {
            for (unsigned long w : PlayerWindows()) {
                if (isColour(screen.ColourAt(w, Centre(screen.Geometry(w))))) {
                    shown = w;
                    return true;
                }
            }
            return false;
        },
            kWaitMs);
        if (!shown)
            ADD_FAILURE() << qPrintable(ColourFailureReport(screen, PlayerWindows(), Centre, QString::fromLatin1(pszShot)));
        return shown;
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
    QProcess wm;
};

TEST_F(WindowManagerE2ETest, SecondStartRestoresAMinimisedPlayerAndPlaysItsFile)
{
    const QString red = TestMedia::SolidColor(QStringLiteral("red"), 60.0, 64, 48, true);
    const QString blue = TestMedia::SolidColor(QStringLiteral("blue"), 60.0, 64, 48, true);
    ASSERT_FALSE(red.isEmpty());
    ASSERT_FALSE(blue.isEmpty());

    QProcess* pFirst = sandbox.Start({ red });
    const unsigned long first = WaitForPlayerWindow();
    ASSERT_NE(first, 0u) << "the player's window did not come up";
    const unsigned long w = WaitForColour(IsRed, "window-manager-first-start");
    ASSERT_NE(w, 0u) << "the first start does not show its file";
    if (w != first)
        std::cout << "note: the player's window " << first << " was replaced by " << w << "\n";
    EXPECT_EQ(WindowState(w), 1) << "the window manager does not show the player as a normal window";
    // The window opens in the middle of the screen and keeps its centre when it is fitted to
    // the clip, wherever the window manager was in taking it into its frame.
    const QRect rc = screen.Geometry(w);
    const QSize szScreen = screen.ScreenSize();
    EXPECT_LE(std::abs(rc.x() + rc.width() / 2 - szScreen.width() / 2), 1) << "window at " << rc.x() << "," << rc.y() << " size " << rc.width() << "x" << rc.height();
    EXPECT_LE(std::abs(rc.y() + rc.height() / 2 - szScreen.height() / 2), 1) << "window at " << rc.x() << "," << rc.y() << " size " << rc.width() << "x" << rc.height();

    ASSERT_TRUE(XdoTool({ QStringLiteral("windowminimize"), QStringLiteral("--sync"), QString::number(w) }));
    ASSERT_TRUE(WaitUntil([&] { return WindowState(w) == 3; }, kWaitMs)) << "the player could not be minimised";

    EXPECT_EQ(sandbox.RunToEnd({ blue }), 0);
    EXPECT_TRUE(WaitUntil([&] { return WindowState(w) == 1; }, kWaitMs)) << "the minimised player was not restored";
    EXPECT_NE(WaitForColour(IsBlue, "window-manager-hand-off"), 0u) << "the restored player does not play the handed file";
    EXPECT_EQ(pFirst->state(), QProcess::Running);
}

TEST_F(WindowManagerE2ETest, TitleStripMovesTheWindowAndADoubleClickMaximisesAndRestores)
{
    const QString red = TestMedia::SolidColor(QStringLiteral("red"), 60.0, 64, 48, true);
    ASSERT_FALSE(red.isEmpty());
    sandbox.Start({ red });
    const unsigned long w = WaitForColour(IsRed, "window-manager-frame");
    ASSERT_NE(w, 0u);
    const QRect rc = screen.Geometry(w);
    auto xdo = [](std::initializer_list<QString> args) { ASSERT_TRUE(XdoTool(QStringList(args))); };
    auto at = [](QPoint pt) { return QStringList { QStringLiteral("mousemove"), QString::number(pt.x()), QString::number(pt.y()) }; };
    // A drag on the title strip, in small steps as a hand makes it: the window manager moves
    // the window with the pointer, from where the pointer was when it took the move.
    const QPoint grab = rc.topLeft() + QPoint(100, 15);
    ASSERT_TRUE(XdoTool(at(grab)));
    xdo({ QStringLiteral("mousedown"), QStringLiteral("1") });
    for (int i = 1; i <= 40; ++i) {
        ASSERT_TRUE(XdoTool(at(grab + QPoint(i * 2, i))));
        // The window manager takes the move a moment after the pointer first went.
        if (i == 2)
            QThread::msleep(500);
    }
    xdo({ QStringLiteral("mouseup"), QStringLiteral("1") });
    EXPECT_TRUE(WaitUntil([&] { return (screen.Geometry(w).topLeft() - rc.topLeft() - QPoint(80, 40)).manhattanLength() <= 6; }, kWaitMs))
        << "window at " << screen.Geometry(w).x() << "," << screen.Geometry(w).y() << ", was at " << rc.x() << "," << rc.y();
    // A double click on the title strip fills the screen (no panels here); another restores.
    const QRect moved = screen.Geometry(w);
    ASSERT_TRUE(XdoTool(at(moved.topLeft() + QPoint(50, 15))));
    xdo({ QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1") });
    EXPECT_TRUE(WaitUntil([&] { return screen.Geometry(w) == QRect(QPoint(0, 0), screen.ScreenSize()); }, kWaitMs)) << "not maximised";
    ASSERT_TRUE(XdoTool(at(QPoint(50, 15))));
    xdo({ QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1") });
    EXPECT_TRUE(WaitUntil([&] { return screen.Geometry(w) == moved; }, kWaitMs)) << "not restored";
}

TEST_F(WindowManagerE2ETest, SizeKeysFullScreenAndMaximiseUseTheScreenAndItsFreeArea)
{
    const DesktopPanel panel(40);
    const QRect free(0, 40, screen.ScreenSize().width(), screen.ScreenSize().height() - 40);
    ASSERT_TRUE(WaitUntil([&] { return panel.WorkArea() == free; }, kWaitMs)) << "the window manager does not take the panel's strut";
    const QString red = TestMedia::SolidColor(QStringLiteral("red"), 120.0, 320, 180, true);
    ASSERT_FALSE(red.isEmpty());
    sandbox.Start({ red });
    const unsigned long w = WaitForColour(IsRed, "window-manager-modes");
    ASSERT_NE(w, 0u);
    auto xdo = [](std::initializer_list<QString> args) { ASSERT_TRUE(XdoTool(QStringList(args))); };
    auto pointer = [&](QPoint pt) { xdo({ QStringLiteral("mousemove"), QString::number(pt.x()), QString::number(pt.y()) }); };
    auto becomes = [&](const QRect& rc) { return WaitUntil([&] { return screen.Geometry(w) == rc; }, kWaitMs); };
    auto centreOf = [](const QRect& rc) { return rc.topLeft() + QPoint(rc.width() / 2, rc.height() / 2); };

    // A 320 by 180 clip: 200% gives a 640 by 360 video, 100% and 50% the smallest area of 320
    // by 240; the window keeps its centre.
    const QPoint centre = centreOf(screen.Geometry(w));
    const std::pair<const char*, QSize> keys[] = { { "F3", QSize(650, 442) }, { "F4", QSize(330, 322) }, { "F3", QSize(650, 442) }, { "F5", QSize(330, 322) } };
    for (const auto& [pszKey, size] : keys) {
        screen.PressKey(w, pszKey);
        EXPECT_TRUE(becomes(QRect(centre - QPoint(size.width() / 2, size.height() / 2), size))) << pszKey << ": " << qPrintable(screen.Describe(w, QPoint(5, 5)));
    }

    // Full screen covers the panel too, and the pointer hides when it rests over the video.
    const QRect normal = screen.Geometry(w);
    screen.PressKey(w, "F2");
    EXPECT_TRUE(becomes(QRect(QPoint(0, 0), screen.ScreenSize()))) << qPrintable(screen.Describe(w, QPoint(5, 5)));
    EXPECT_TRUE(WaitUntil([&] { return IsRed(screen.ColourAt(w, QPoint(screen.ScreenSize().width() / 2, 20))); }, kWaitMs)) << "the panel is not covered";
    pointer(QPoint(900, 500));
    EXPECT_TRUE(WaitUntil([&] { return !panel.CursorShows(); }, kWaitMs)) << "the pointer stays over the video";
    pointer(QPoint(901, 500));
    EXPECT_TRUE(WaitUntil([&] { return panel.CursorShows(); }, kWaitMs)) << "the pointer does not come back";
    screen.PressKey(w, "Escape");
    EXPECT_TRUE(becomes(normal)) << qPrintable(screen.Describe(w, QPoint(5, 5)));

    // The maximise button fills the free area; minimised and restored, the window comes back
    // there; the title's double click restores it.
    screen.Click(w, QPoint(normal.width() - 37, 15));
    EXPECT_TRUE(becomes(free)) << qPrintable(screen.Describe(w, QPoint(5, 5)));
    screen.Click(w, QPoint(free.width() - 59, 15));
    ASSERT_TRUE(WaitUntil([&] { return WindowState(w) == 3; }, kWaitMs)) << "the minimise button did nothing";
    xdo({ QStringLiteral("windowactivate"), QString::number(w) });
    EXPECT_TRUE(WaitUntil([&] { return WindowState(w) == 1; }, kWaitMs));
    EXPECT_TRUE(becomes(free)) << qPrintable(screen.Describe(w, QPoint(5, 5)));
    pointer(free.topLeft() + QPoint(50, 15));
    auto doubleClick = [&] { xdo({ QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("--delay"), QStringLiteral("80"), QStringLiteral("1") }); };
    doubleClick();
    EXPECT_TRUE(becomes(normal)) << qPrintable(screen.Describe(w, QPoint(5, 5)));
}

TEST_F(WindowManagerE2ETest, EveryWayOutOfMaximisedAndFullScreenEndsWhereTheWindowShouldStand)
{
    const DesktopPanel panel(40);
    const QSize szScreen = screen.ScreenSize();
    const QRect full(QPoint(0, 0), szScreen);
    const QRect free(0, 40, szScreen.width(), szScreen.height() - 40);
    ASSERT_TRUE(WaitUntil([&] { return panel.WorkArea() == free; }, kWaitMs));
    const QString red = TestMedia::SolidColor(QStringLiteral("red"), 120.0, 320, 180, true);
    ASSERT_FALSE(red.isEmpty());
    sandbox.Start({ red });
    const unsigned long w = WaitForColour(IsRed, "window-manager-ways-back");
    ASSERT_NE(w, 0u);
    // What the window manager shows, read from the X server: the rectangle and its states.
    auto ends = [&](const QRect& rc, bool bMaximised, bool bFull) {
        const bool bOk = WaitUntil([&] { return screen.Geometry(w) == rc && panel.InState(w, "_NET_WM_STATE_MAXIMIZED_VERT") == bMaximised && panel.InState(w, "_NET_WM_STATE_FULLSCREEN") == bFull; }, kWaitMs);
        return bOk ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << qPrintable(screen.Describe(w, QPoint(5, 5))) << " maximised " << panel.InState(w, "_NET_WM_STATE_MAXIMIZED_VERT") << " full " << panel.InState(w, "_NET_WM_STATE_FULLSCREEN");
    };
    auto maximiseButton = [&] { screen.Click(w, QPoint(screen.Geometry(w).width() - 37, 15)); };
    // A person asks the window manager a moment after the window last changed, not within the
    // same few milliseconds (which the toolkit would take for the report of its own change).
    auto windowManagerMaximises = [&] {
        QThread::msleep(300);
        panel.AskToMaximise(w);
    };
    screen.PressKey(w, "F5");
    ASSERT_TRUE(WaitUntil([&] { return screen.Geometry(w).size() == QSize(330, 322); }, kWaitMs));
    const QRect normal = screen.Geometry(w);

    // Maximised by the window manager, the window stays so under full screen and is so again
    // when full screen ends; restored, it goes back to where it stood before.
    windowManagerMaximises();
    EXPECT_TRUE(ends(free, true, false));
    screen.PressKey(w, "F2");
    EXPECT_TRUE(ends(full, false, true));
    screen.PressKey(w, "Escape");
    EXPECT_TRUE(ends(free, true, false));
    maximiseButton();
    EXPECT_TRUE(ends(normal, false, false));
    // Maximised by the button, then by the window manager on top: one restore goes all the
    // way back.
    maximiseButton();
    EXPECT_TRUE(ends(free, false, false));
    windowManagerMaximises();
    EXPECT_TRUE(ends(free, true, false));
    maximiseButton();
    EXPECT_TRUE(ends(normal, false, false));

    // A size command in full screen over a maximised window ends both, fitted on the centre of
    // the screen; full screen, minimised and brought back, is still full screen.
    windowManagerMaximises();
    EXPECT_TRUE(ends(free, true, false));
    screen.PressKey(w, "F2");
    EXPECT_TRUE(ends(full, false, true));
    screen.PressKey(w, "F3");
    const QRect fitted((szScreen.width() - 650) / 2, (szScreen.height() - 442) / 2, 650, 442);
    EXPECT_TRUE(ends(fitted, false, false));
    screen.PressKey(w, "F2");
    EXPECT_TRUE(ends(full, false, true));
    ASSERT_TRUE(XdoTool({ QStringLiteral("windowminimize"), QStringLiteral("--sync"), QString::number(w) }));
    EXPECT_TRUE(WaitUntil([&] { return WindowState(w) == 3; }, kWaitMs));
    ASSERT_TRUE(XdoTool({ QStringLiteral("windowactivate"), QString::number(w) }));
    EXPECT_TRUE(ends(full, false, true));
    screen.PressKey(w, "Escape");
    EXPECT_TRUE(ends(fitted, false, false));

    // A fitted window keeps its title below the panel, and its corner 50 pixels inside the
    // free area's right and bottom edges.
    screen.PressKey(w, "F5");
    ASSERT_TRUE(ends(QRect(fitted.x() + 160, fitted.y() + 60, 330, 322), false, false));
    ASSERT_TRUE(XdoTool({ QStringLiteral("windowmove"), QString::number(w), QStringLiteral("200"), QStringLiteral("45") }));
    ASSERT_TRUE(ends(QRect(200, 45, 330, 322), false, false));
    screen.PressKey(w, "F3");
    EXPECT_TRUE(ends(QRect(40, 40, 650, 442), false, false));
    ASSERT_TRUE(XdoTool({ QStringLiteral("windowmove"), QString::number(w), QString::number(szScreen.width() - 100), QString::number(szScreen.height() - 100) }));
    ASSERT_TRUE(WaitUntil([&] { return screen.Geometry(w).topLeft() != QPoint(40, 40); }, kWaitMs));
    screen.PressKey(w, "F5");
    EXPECT_TRUE(ends(QRect(szScreen.width() - 50, szScreen.height() - 50, 330, 322), false, false));
}

} // namespace
