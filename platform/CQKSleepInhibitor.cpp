#include "platform/CQKSleepInhibitor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace {

const QString kScreenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kReason = QStringLiteral("Playing a video");
// The portal's flags: 4 sleep (suspend), 8 the screen saver (idle).
constexpr uint32_t kPortalSuspendAndIdle = 4 | 8;
// How long a request may take; the program's end waits at most this long for an answer and
// again for the give-back.
constexpr int kCallTimeoutMs = 1000;

} // namespace

CQKSleepInhibitor::CQKSleepInhibitor(const QDBusConnection& bus)
    : m_bus(bus)
{
}

CQKSleepInhibitor::~CQKSleepInhibitor()
{
    m_bWanted = false;
    // A request still on its way would be granted after the program has gone, and the screen
    // would never blank again while the desktop waits for a give-back: its answer is awaited.
    if (m_bPending && m_pWatcher) {
        m_pWatcher->waitForFinished();
        TakeAnswer(*m_pWatcher);
    }
    if (m_bHeld)
        Release(true);
}

void CQKSleepInhibitor::Want(bool bInhibit)
{
    if (bInhibit == m_bWanted)
        return;
    m_bWanted = bInhibit;
    // A call on its way is settled by its answer, which looks at the wish again.
    if (m_bPending)
        return;
    if (m_bWanted && !m_bHeld)
        Request();
    else if (!m_bWanted && m_bHeld)
        Release(false);
}

CQKSleepInhibitor::Service CQKSleepInhibitor::FindService()
{
    // Looked up once: the desktop's services do not change while a video plays.
    if (m_service == Service::Unknown) {
        m_service = Service::None;
        if (QDBusConnectionInterface* pBus = m_bus.interface()) {
            if (pBus->isServiceRegistered(kScreenSaver).value())
                m_service = Service::ScreenSaver;
            else if (pBus->isServiceRegistered(kPortal).value())
                m_service = Service::Portal;
        }
    }
    return m_service;
}

void CQKSleepInhibitor::Request()
{
    QDBusMessage call;
    switch (FindService()) {
    case Service::ScreenSaver:
        call = QDBusMessage::createMethodCall(kScreenSaver, QStringLiteral("/org/freedesktop/ScreenSaver"), kScreenSaver, QStringLiteral("Inhibit"));
        call << QStringLiteral("Orbel Player") << kReason;
        break;
    case Service::Portal:
        call = QDBusMessage::createMethodCall(kPortal, QStringLiteral("/org/freedesktop/portal/desktop"), QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
        call << QString() << kPortalSuspendAndIdle << QVariantMap { { QStringLiteral("reason"), kReason } };
        break;
    default:
        return;
    }
    m_bPending = true;
    m_pWatcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, kCallTimeoutMs), &m_context);
    QObject::connect(m_pWatcher, &QDBusPendingCallWatcher::finished, &m_context, [this](QDBusPendingCallWatcher* pDone) {
        pDone->deleteLater();
        m_pWatcher = nullptr;
        TakeAnswer(*pDone);
        // The wish may have changed while the call was on its way. A refusal is not asked
        // again: it would be refused again.
        if (!m_bWanted && m_bHeld)
            Release(false);
    });
}

void CQKSleepInhibitor::TakeAnswer(const QDBusPendingCall& call)
{
    m_bPending = false;
    const QDBusMessage reply = call.reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return;
    const QVariant v = reply.arguments().constFirst();
    if (m_service == Service::ScreenSaver)
        m_nCookie = v.toUInt();
    else
        m_strPortalRequest = qvariant_cast<QDBusObjectPath>(v).path();
    m_bHeld = true;
}

void CQKSleepInhibitor::Release(bool bWait)
{
    m_bHeld = false;
    QDBusMessage call;
    if (m_service == Service::ScreenSaver) {
        call = QDBusMessage::createMethodCall(kScreenSaver, QStringLiteral("/org/freedesktop/ScreenSaver"), kScreenSaver, QStringLiteral("UnInhibit"));
        call << m_nCookie;
    } else if (m_service == Service::Portal && !m_strPortalRequest.isEmpty()) {
        call = QDBusMessage::createMethodCall(kPortal, m_strPortalRequest, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close"));
        m_strPortalRequest.clear();
    } else {
        return;
    }
    if (bWait)
        m_bus.call(call, QDBus::Block, kCallTimeoutMs);
    else
        m_bus.asyncCall(call);
}
