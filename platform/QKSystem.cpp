#include "platform/QKSystem.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QStyleHints>
#include <QUrl>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace {

constexpr int kEndSignals[] = { SIGTERM, SIGHUP, SIGINT };
// The pipe between the signal handler and the event loop: [0] is read by the loop.
int g_aSignalPipe[2] = { -1, -1 };
std::unique_ptr<QSocketNotifier> g_pSignalNotifier;

void OnEndSignal(int)
{
    // Only what is safe in a signal handler: one write, errno kept for the code interrupted.
    const int nSavedErrno = errno;
    const char c = 1;
    [[maybe_unused]] const ssize_t n = ::write(g_aSignalPipe[1], &c, 1);
    errno = nSavedErrno;
}

} // namespace

uint64_t QKGetTickCount()
{
    using namespace std::chrono;
    return static_cast<uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

uint64_t QKGetDoubleClickTime()
{
    // Without an application object the common default of desktops stands.
    const auto* pApp = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const int nMs = pApp ? QGuiApplication::styleHints()->mouseDoubleClickInterval() : 400;
    return static_cast<uint64_t>(nMs > 0 ? nMs : 0);
}

bool QKHasSessionBus()
{
    // Asked once: the answer decides at start-up whether the taskbar counterpart is made,
    // and a bus does not come and go while the program runs.
    static const bool bHasBus = [] {
        if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
            return false;
        QDBusConnection bus = QDBusConnection::sessionBus();
        return bus.isConnected() && bus.interface() != nullptr;
    }();
    return bHasBus;
}

QString QKGetClipboardText()
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return QString();
    return QGuiApplication::clipboard()->text();
}

void QKSetClipboardText(const QString& text)
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return;
    QGuiApplication::clipboard()->setText(text);
}

namespace {

std::function<bool(const QUrl&)>& UrlOpener()
{
    static std::function<bool(const QUrl&)> opener;
    return opener;
}

} // namespace

void QKSetUrlOpener(std::function<bool(const QUrl&)> opener)
{
    UrlOpener() = std::move(opener);
}

bool OpenURL(const QString& address)
{
    return QKOpenURL(address);
}

bool QKOpenURL(const QString& address)
{
    if (address.isEmpty())
        return false;
    // A plain path opens as a local file; anything with a scheme ("https:", "mailto:") as
    // the address it is.
    QUrl url = QUrl::fromUserInput(address);
    if (QFileInfo::exists(address))
        url = QUrl::fromLocalFile(QFileInfo(address).absoluteFilePath());
    if (!url.isValid())
        return false;
    if (UrlOpener())
        return UrlOpener()(url);
    return QDesktopServices::openUrl(url);
}

bool QKWatchEndSignals(std::function<void()> fnOnSignal)
{
    QKStopWatchingEndSignals();
    if (::pipe2(g_aSignalPipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        g_aSignalPipe[0] = g_aSignalPipe[1] = -1;
        return false;
    }
    g_pSignalNotifier = std::make_unique<QSocketNotifier>(g_aSignalPipe[0], QSocketNotifier::Read);
    QObject::connect(g_pSignalNotifier.get(), &QSocketNotifier::activated, g_pSignalNotifier.get(), [fn = std::move(fnOnSignal)] {
        // A burst of signals is one request to end.
        char buffer[64];
        while (::read(g_aSignalPipe[0], buffer, sizeof(buffer)) > 0) {
        }
        fn();
    });
    struct sigaction sa
    { };
    sa.sa_handler = OnEndSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    for (int nSignal : kEndSignals)
        ::sigaction(nSignal, &sa, nullptr);
    return true;
}

void QKStopWatchingEndSignals()
{
    for (int nSignal : kEndSignals)
        ::signal(nSignal, SIG_DFL);
    g_pSignalNotifier.reset();
    for (int& fd : g_aSignalPipe) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}
