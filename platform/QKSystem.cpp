#include "platform/QKSystem.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>
#include <chrono>

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
