#include "platform/QKSystem.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QUrl>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
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

namespace {

// The length of the valid UTF-8 sequence at p (of n bytes), or 0 when there is none: no
// overlong forms, no surrogates, nothing above U+10FFFF.
int ValidSequence(const unsigned char* p, qsizetype n)
{
    const unsigned c = p[0];
    if (c < 0x80)
        return 1;
    int nLength = 0;
    char32_t cp = 0;
    if (c >= 0xC2 && c <= 0xDF) {
        nLength = 2;
        cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        nLength = 3;
        cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        nLength = 4;
        cp = c & 0x07;
    } else {
        return 0;
    }
    if (n < nLength)
        return 0;
    for (int i = 1; i < nLength; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (p[i] & 0x3F);
    }
    if ((nLength == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) || (nLength == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
        return 0;
    return nLength;
}

bool StatPath(const QString& path, struct stat& st)
{
    return !path.isEmpty() && ::stat(QKEncodePath(path).constData(), &st) == 0;
}

} // namespace

QString QKDecodePath(const QByteArray& bytes)
{
    QString text;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n;) {
        const int nLength = ValidSequence(p + i, n - i);
        if (nLength == 0) {
            text.append(QChar(static_cast<char16_t>(0xDC00 + p[i])));
            ++i;
            continue;
        }
        text.append(QString::fromUtf8(bytes.constData() + i, nLength));
        i += nLength;
    }
    return text;
}

QByteArray QKEncodePath(const QString& path)
{
    QByteArray bytes;
    const qsizetype n = path.size();
    qsizetype nStart = 0;
    // Runs of ordinary text go through the UTF-8 encoder; an escaped byte is put back as it was.
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t u = path.at(i).unicode();
        const bool bPaired = QChar::isLowSurrogate(u) && i > 0 && QChar::isHighSurrogate(path.at(i - 1).unicode());
        if (u >= 0xDC80 && u <= 0xDCFF && !bPaired) {
            bytes += path.mid(nStart, i - nStart).toUtf8();
            bytes += static_cast<char>(u - 0xDC00);
            nStart = i + 1;
        }
    }
    bytes += path.mid(nStart).toUtf8();
    return bytes;
}

QString QKAbsolutePath(const QString& path)
{
    if (path.isEmpty() || path.startsWith(QLatin1Char('/')))
        return path;
    // Qt's own file names would turn the bytes of a name that is not UTF-8 into U+FFFD, so
    // the working folder is read and joined here.
    std::string cwd(PATH_MAX, '\0');
    if (!::getcwd(cwd.data(), cwd.size()))
        return path;
    cwd.resize(std::strlen(cwd.c_str()));
    QString folder = QKDecodePath(QByteArray::fromStdString(cwd));
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder + path;
}

bool QKPathExists(const QString& path)
{
    struct stat st
    { };
    return StatPath(path, st);
}

bool QKPathIsFile(const QString& path)
{
    struct stat st
    { };
    return StatPath(path, st) && S_ISREG(st.st_mode);
}
