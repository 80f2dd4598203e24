#pragma once
// Runs the real program as a person would: each test gets its own install of the build
// (executable, engine and skin in one folder), its own runtime folder (so lock and socket are
// private) and its own home, and looks at the screen through X11.
#include "support/X11Screen.h"

#include <QColor>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <vector>

struct _XDisplay;

namespace orbeltest {

class PlayerSandbox
{
public:
    // The build is installed ("cmake --install") into Root()/prefix/. A portable copy keeps
    // its program folder writable and is started from it; an install's folder is made
    // read-only, as a system folder is for a normal user, and it is started through its link
    // in bin/.
    enum class Kind { Portable,
        Install };
    explicit PlayerSandbox(Kind kind = Kind::Portable);
    ~PlayerSandbox();

    // False when the build could not be installed (the test then fails).
    bool IsValid() const { return bValid; }
    QString AppFolder() const { return strApp; }
    QString Root() const { return dir.path(); }
    // The folder the program writes its two files to: its own skin folder in a portable copy,
    // the per-user one under the sandbox's home in an install.
    QString SkinFolder() const { return bInstalled ? dir.path() + QStringLiteral("/home/.config/orbel-player/skin/") : strApp + QStringLiteral("skin/"); }

    // Starts the program with these arguments, in strWorkingDir (the sandbox's root when
    // empty); it keeps running until the test ends it.
    QProcess* Start(const QStringList& args, const QString& strWorkingDir = QString());
    // Starts it and waits for it to end; returns its exit code, or -1 if it did not end
    // within nTimeoutMs (it is killed then).
    int RunToEnd(const QStringList& args, int nTimeoutMs = 15000);
    // Waits for a started process to end by itself.
    static bool WaitForEnd(QProcess* pProcess, int nTimeoutMs);
    // The environment the program is started with (private runtime folder and home, and no
    // session bus unless a launcher brings one).
    QProcessEnvironment Environment() const;
    // A command that later starts run the program under ("dbus-run-session", "--").
    void SetLauncher(const QStringList& launcher) { arrLauncher = launcher; }
    // The session bus that later starts use (a bus the test runs itself).
    void SetBusAddress(const QString& strAddress) { strBus = strAddress; }

private:
    QTemporaryDir dir;
    QString strApp;
    QString strProgram;
    QStringList arrLauncher;
    QString strBus;
    bool bInstalled { false };
    bool bValid { false };
    std::vector<std::unique_ptr<QProcess>> processes;
};

// The X display of the test (xvfb-run gives each test program its own).
class ScreenProbe
{
public:
    bool IsOpen() const { return x11.IsOpen(); }

    // Mapped top-level windows whose window role (the program's class name of the window,
    // such as "QKOrbelPlayerGuiFrame") is strRole.
    std::vector<unsigned long> FindWindows(const QString& strRole) const;
    // Waits until exactly nCount such windows exist; returns them.
    std::vector<unsigned long> WaitForWindows(const QString& strRole, size_t nCount, int nTimeoutMs) const;
    // The window's WM_CLASS as "instance, class"; empty when it has none.
    QString ClassHint(unsigned long window) const;
    // The window's rectangle on the screen.
    QRect Geometry(unsigned long window) const;
    // The average colour of a square of nSize pixels around a client point, as the screen
    // shows it (video surface included).
    QColor ColourAt(unsigned long window, QPoint ptClient, int nSize = 9) const;
    // The size of the screen in pixels.
    QSize ScreenSize() const;
    // Saves what the whole screen shows as a PNG file; true when it was written.
    bool SaveScreen(const QString& path) const;
    // One line on a window for the report of a failed check: its rectangle, its map state
    // and the colour at ptClient.
    QString Describe(unsigned long window, QPoint ptClient) const;
    // Asks the window to close, as a window manager's close button does.
    void RequestClose(unsigned long window) const;
    // Gives the window the keyboard focus and types a key (an X keysym name such as "Escape").
    void PressKey(unsigned long window, const char* pszKeysym) const;
    // Moves the pointer to a client point of the window, clicks the left button there, and
    // moves the pointer off to the screen's corner.
    void Click(unsigned long window, QPoint ptClient) const;
    // Moves the pointer to a point of the screen, as a mouse does.
    void MovePointer(QPoint ptScreen) const;
    // The pixels of a client rectangle of the window, as the screen shows them.
    std::vector<uint32_t> Pixels(unsigned long window, const QRect& rcClient) const;
    // The window's title.
    QString WindowName(unsigned long window) const;

private:
    X11Screen x11;
};

// A file in the build's test-output folder, named after the check that failed.
QString FailureShotPath(const QString& name);

// The report of a colour that did not come: each window's line (Describe at the point that
// pointIn gives for the window's rectangle), and where the screenshot was saved.
QString ColourFailureReport(const ScreenProbe& screen, const std::vector<unsigned long>& windows,
    const std::function<QPoint(const QRect&)>& pointIn, const QString& shotName);

// Colour tests for solid clips after video decoding (small shifts of a few levels).
bool IsRed(const QColor& c);
bool IsGreen(const QColor& c);
bool IsBlue(const QColor& c);

// Runs xdotool; true when it succeeded, with what it printed (trimmed) in *pOut.
bool XdoTool(const QStringList& args, QString* pOut = nullptr);

// Runs the event loop until pred holds or the time is up.
bool WaitUntil(const std::function<bool()>& pred, int nTimeoutMs);

} // namespace orbeltest
