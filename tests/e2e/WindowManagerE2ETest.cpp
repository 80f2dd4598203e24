// The real program under a real window manager (openbox inside the test's own X server):
// what only a window manager can show, such as a minimised window coming back.
#include "PlayerProcess.h"

#include "support/TestMedia.h"

#include <QProcess>
#include <gtest/gtest.h>

// Xlib's macros (None, Bool, Status…) clash with other headers, so it comes last.
#include <X11/Xlib.h>

using namespace orbeltest;

namespace {

constexpr int kWaitMs = 20000;

// Runs xdotool; true when it succeeded, with what it printed (trimmed) in *pOut.
bool XdoTool(const QStringList& args, QString* pOut = nullptr)
{
    QProcess p;
    p.start(QStringLiteral("xdotool"), args);
    if (!p.waitForFinished(10000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return false;
    if (pOut)
        *pOut = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    return true;
}

// The first 32-bit item of a window's property (the root window's for window 0), or -1 when
// the window has no such property.
long Property32(unsigned long window, const char* pszName, const char* pszType)
{
    Display* pDisplay = XOpenDisplay(nullptr);
    if (!pDisplay)
        return -1;
    const Atom name = XInternAtom(pDisplay, pszName, False);
    const Atom type = XInternAtom(pDisplay, pszType, False);
    Atom actualType = 0;
    int format = 0;
    unsigned long nItems = 0;
    unsigned long nAfter = 0;
    unsigned char* pData = nullptr;
    long value = -1;
    const Window target = window ? window : DefaultRootWindow(pDisplay);
    if (XGetWindowProperty(pDisplay, target, name, 0, 1, False, type, &actualType, &format, &nItems, &nAfter, &pData) == Success
        && pData && nItems >= 1 && format == 32)
        value = reinterpret_cast<long*>(pData)[0];
    if (pData)
        XFree(pData);
    XCloseDisplay(pDisplay);
    return value;
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

    // The client window of the player (the window manager puts a frame around it, so it is
    // found by its title).
    unsigned long WaitForPlayerWindow()
    {
        unsigned long w = 0;
        WaitUntil([&] {
            QString out;
            if (!XdoTool({ QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Orbel Player$") }, &out))
                return false;
            w = out.section('\n', 0, 0).toULong();
            return w != 0;
        },
            kWaitMs);
        return w;
    }

    bool WaitForColour(unsigned long w, bool (*isColour)(const QColor&))
    {
        return WaitUntil([&] {
            const QRect rc = screen.Geometry(w);
            return isColour(screen.ColourAt(w, QPoint(rc.width() / 2, rc.height() / 2)));
        },
            kWaitMs);
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
    const unsigned long w = WaitForPlayerWindow();
    ASSERT_NE(w, 0u) << "the player's window did not come up";
    ASSERT_TRUE(WaitForColour(w, IsRed));
    EXPECT_EQ(WindowState(w), 1) << "the window manager does not show the player as a normal window";

    ASSERT_TRUE(XdoTool({ QStringLiteral("windowminimize"), QStringLiteral("--sync"), QString::number(w) }));
    ASSERT_TRUE(WaitUntil([&] { return WindowState(w) == 3; }, kWaitMs)) << "the player could not be minimised";

    EXPECT_EQ(sandbox.RunToEnd({ blue }), 0);
    EXPECT_TRUE(WaitUntil([&] { return WindowState(w) == 1; }, kWaitMs)) << "the minimised player was not restored";
    EXPECT_TRUE(WaitForColour(w, IsBlue)) << "the restored player does not play the handed file";
    EXPECT_EQ(pFirst->state(), QProcess::Running);
}

} // namespace
