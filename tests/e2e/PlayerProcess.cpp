#include "PlayerProcess.h"

#include "support/TestPaths.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QThread>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbeltest {

namespace {

// Runs a command to its end, its output left out; true when it succeeded.
bool Run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

} // namespace

PlayerSandbox::PlayerSandbox(Kind kind)
    : bInstalled(kind == Kind::Install)
{
    if (!dir.isValid())
        return;
    strApp = dir.path() + QStringLiteral("/prefix/lib/orbel-player/");
    strProgram = bInstalled ? dir.path() + QStringLiteral("/prefix/bin/orbel-player") : strApp + QStringLiteral("orbel-player");
    if (!QDir().mkpath(dir.path() + QStringLiteral("/run")) || !QDir().mkpath(dir.path() + QStringLiteral("/home")))
        return;
    chmod(QFile::encodeName(dir.path() + QStringLiteral("/run")).constData(), 0700);
    bValid = Run(QStringLiteral("cmake"), { QStringLiteral("--install"), BinDir() + QStringLiteral(".."), QStringLiteral("--prefix"), dir.path() + QStringLiteral("/prefix") })
        && (!bInstalled || Run(QStringLiteral("chmod"), { QStringLiteral("-R"), QStringLiteral("a-w"), strApp }));
}

PlayerSandbox::~PlayerSandbox()
{
    for (auto& p : processes) {
        if (p->state() != QProcess::NotRunning) {
            p->kill();
            p->waitForFinished(5000);
        }
    }
    if (bInstalled)
        Run(QStringLiteral("chmod"), { QStringLiteral("-R"), QStringLiteral("u+w"), strApp });
}

QProcessEnvironment PlayerSandbox::Environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir.path() + QStringLiteral("/run"));
    env.insert(QStringLiteral("HOME"), dir.path() + QStringLiteral("/home"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path() + QStringLiteral("/home/.config"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // An address that leads nowhere, so that no bus is started on the program's behalf.
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), strBus.isEmpty() ? QStringLiteral("unix:path=") + dir.path() + QStringLiteral("/no-bus") : strBus);
    // In the sanitizer build the program's memory errors still end it at once; only the leak
    // report at exit is left out here. Mesa unloads its driver before that report, so the
    // driver's own blocks would show up as leaks of an unknown module that no suppression can
    // name. The program's own leaks are checked by the in-process window tests.
    QString asan = env.value(QStringLiteral("ASAN_OPTIONS"));
    env.insert(QStringLiteral("ASAN_OPTIONS"), asan.isEmpty() ? QStringLiteral("detect_leaks=0") : asan + QStringLiteral(":detect_leaks=0"));
    return env;
}

QProcess* PlayerSandbox::Start(const QStringList& args, const QString& strWorkingDir)
{
    auto p = std::make_unique<QProcess>();
    // Root may write into any folder. In a user namespace of its own (which replaces itself
    // by the program) only the owner's bits count, as for a normal user.
    QStringList command = arrLauncher;
    if (bInstalled && geteuid() == 0)
        command << QStringLiteral("unshare") << QStringLiteral("--user");
    command << strProgram << args;
    p->setProgram(command.takeFirst());
    p->setArguments(command);
    p->setProcessEnvironment(Environment());
    p->setWorkingDirectory(strWorkingDir.isEmpty() ? dir.path() : strWorkingDir);
    p->setProcessChannelMode(QProcess::ForwardedChannels);
    p->start();
    p->waitForStarted(5000);
    processes.push_back(std::move(p));
    return processes.back().get();
}

int PlayerSandbox::RunToEnd(const QStringList& args, int nTimeoutMs)
{
    QProcess* p = Start(args);
    if (!WaitForEnd(p, nTimeoutMs)) {
        p->kill();
        p->waitForFinished(5000);
        return -1;
    }
    return p->exitStatus() == QProcess::NormalExit ? p->exitCode() : -1;
}

bool PlayerSandbox::WaitForEnd(QProcess* pProcess, int nTimeoutMs)
{
    return WaitUntil([pProcess] { return pProcess->state() == QProcess::NotRunning; }, nTimeoutMs);
}

namespace {

// The window's role (WM_WINDOW_ROLE), which the program sets to the window's class name.
QByteArray WindowRole(Display* pDisplay, Window w)
{
    Atom type = 0;
    int format = 0;
    unsigned long nItems = 0;
    unsigned long nAfter = 0;
    unsigned char* pData = nullptr;
    const Atom role = XInternAtom(pDisplay, "WM_WINDOW_ROLE", False);
    if (XGetWindowProperty(pDisplay, w, role, 0, 256, False, AnyPropertyType, &type, &format, &nItems, &nAfter, &pData) != Success || !pData)
        return QByteArray();
    QByteArray value(reinterpret_cast<const char*>(pData), format == 8 ? static_cast<int>(nItems) : 0);
    XFree(pData);
    return value;
}

} // namespace

std::vector<unsigned long> ScreenProbe::FindWindows(const QString& strRole) const
{
    std::vector<unsigned long> found;
    const QByteArray name = strRole.toUtf8();
    for (const unsigned long w : x11.ViewableWindows()) {
        if (WindowRole(x11.Connection(), w) == name)
            found.push_back(w);
    }
    return found;
}

QString ScreenProbe::ClassHint(unsigned long window) const
{
    XClassHint hint { nullptr, nullptr };
    if (!XGetClassHint(x11.Connection(), window, &hint))
        return QString();
    const QString s = QString::fromUtf8(hint.res_name) + QStringLiteral(", ") + QString::fromUtf8(hint.res_class);
    XFree(hint.res_name);
    XFree(hint.res_class);
    return s;
}

std::vector<unsigned long> ScreenProbe::WaitForWindows(const QString& strRole, size_t nCount, int nTimeoutMs) const
{
    std::vector<unsigned long> found;
    WaitUntil([&] {
        found = FindWindows(strRole);
        return found.size() == nCount;
    },
        nTimeoutMs);
    return found;
}

QRect ScreenProbe::Geometry(unsigned long window) const
{
    Display* pDisplay = x11.Connection();
    XWindowAttributes attr;
    if (!pDisplay || !XGetWindowAttributes(pDisplay, window, &attr))
        return QRect();
    int x = 0;
    int y = 0;
    Window child = 0;
    XTranslateCoordinates(pDisplay, window, DefaultRootWindow(pDisplay), 0, 0, &x, &y, &child);
    return QRect(x, y, attr.width, attr.height);
}

QColor ScreenProbe::ColourAt(unsigned long window, QPoint ptClient, int nSize) const
{
    const QRect rc = Geometry(window);
    if (rc.isNull())
        return QColor();
    const std::vector<uint32_t> pixels = x11.Read(rc.x() + ptClient.x() - nSize / 2, rc.y() + ptClient.y() - nSize / 2, nSize, nSize);
    if (pixels.empty())
        return QColor();
    long r = 0;
    long g = 0;
    long b = 0;
    for (const uint32_t px : pixels) {
        r += (px >> 16) & 0xFF;
        g += (px >> 8) & 0xFF;
        b += px & 0xFF;
    }
    const long n = static_cast<long>(pixels.size());
    return QColor(static_cast<int>(r / n), static_cast<int>(g / n), static_cast<int>(b / n));
}

QSize ScreenProbe::ScreenSize() const
{
    return x11.IsOpen() ? QSize(x11.Width(), x11.Height()) : QSize();
}

bool ScreenProbe::SaveScreen(const QString& path) const
{
    const std::vector<uint32_t> pixels = x11.Read(0, 0, x11.Width(), x11.Height());
    if (pixels.empty())
        return false;
    QImage image(x11.Width(), x11.Height(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* pLine = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            pLine[x] = 0xFF000000u | pixels[static_cast<size_t>(y) * static_cast<size_t>(image.width()) + static_cast<size_t>(x)];
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    return image.save(path, "PNG");
}

QString ScreenProbe::Describe(unsigned long window, QPoint ptClient) const
{
    XWindowAttributes attr {};
    const bool bKnown = x11.IsOpen() && XGetWindowAttributes(x11.Connection(), window, &attr);
    const QRect rc = Geometry(window);
    const QColor c = ColourAt(window, ptClient);
    const char* pszMap = !bKnown ? "gone" : attr.map_state == IsViewable ? "viewable"
        : attr.map_state == IsUnmapped                                   ? "unmapped"
                                                                         : "unviewable";
    return QStringLiteral("window %1 at %2,%3 size %4x%5 (%6), colour at %7,%8 is %9")
        .arg(window)
        .arg(rc.x())
        .arg(rc.y())
        .arg(rc.width())
        .arg(rc.height())
        .arg(QString::fromLatin1(pszMap))
        .arg(ptClient.x())
        .arg(ptClient.y())
        .arg(c.isValid() ? c.name() : QStringLiteral("unreadable"));
}

QString FailureShotPath(const QString& name)
{
    return QDir::cleanPath(BinDir() + QStringLiteral("../test-output/") + name + QStringLiteral(".png"));
}

QString ColourFailureReport(const ScreenProbe& screen, const std::vector<unsigned long>& windows,
    const std::function<QPoint(const QRect&)>& pointIn, const QString& shotName)
{
    QStringList lines;
    for (unsigned long w : windows)
        lines << screen.Describe(w, pointIn(screen.Geometry(w)));
    const QString shot = FailureShotPath(shotName);
    return QStringLiteral("windows: %1\nscreenshot: %2")
        .arg(lines.isEmpty() ? QStringLiteral("none") : lines.join(QStringLiteral("; ")),
            screen.SaveScreen(shot) ? shot : QStringLiteral("not saved"));
}

void ScreenProbe::RequestClose(unsigned long window) const
{
    x11.RequestClose(window);
}

void ScreenProbe::PressKey(unsigned long window, const char* pszKeysym) const
{
    // xdotool focuses the window and types through the XTEST extension, as a keyboard does.
    const QString id = QString::number(window);
    QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("windowfocus"), id });
    QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("key"), QString::fromLatin1(pszKeysym) });
}

void ScreenProbe::Click(unsigned long window, QPoint ptClient) const
{
    const QRect rc = Geometry(window);
    const QString x = QString::number(rc.x() + ptClient.x());
    const QString y = QString::number(rc.y() + ptClient.y());
    // The pointer leaves afterwards, so that no hover state stays on what was clicked.
    QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("mousemove"), x, y, QStringLiteral("click"), QStringLiteral("1"), QStringLiteral("mousemove"), QStringLiteral("0"), QStringLiteral("0") });
}

void ScreenProbe::MovePointer(QPoint ptScreen) const
{
    QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("mousemove"), QString::number(ptScreen.x()), QString::number(ptScreen.y()) });
}

std::vector<uint32_t> ScreenProbe::Pixels(unsigned long window, const QRect& rcClient) const
{
    const QRect rc = Geometry(window);
    return x11.Read(rc.x() + rcClient.x(), rc.y() + rcClient.y(), rcClient.width(), rcClient.height());
}

QString ScreenProbe::WindowName(unsigned long window) const
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), { QStringLiteral("getwindowname"), QString::number(window) });
    xdotool.waitForFinished(5000);
    return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
}

bool XdoTool(const QStringList& args, QString* pOut)
{
    QProcess p;
    p.start(QStringLiteral("xdotool"), args);
    if (!p.waitForFinished(10000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return false;
    if (pOut)
        *pOut = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    return true;
}

bool IsRed(const QColor& c)
{
    return c.red() > 150 && c.green() < 90 && c.blue() < 90;
}

bool IsGreen(const QColor& c)
{
    return c.green() > 90 && c.red() < 90 && c.blue() < 90;
}

bool IsBlue(const QColor& c)
{
    return c.blue() > 150 && c.red() < 90 && c.green() < 90;
}

bool WaitUntil(const std::function<bool()>& pred, int nTimeoutMs)
{
    QDeadlineTimer deadline(nTimeoutMs);
    for (;;) {
        if (pred())
            return true;
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(30);
    }
}

} // namespace orbeltest
