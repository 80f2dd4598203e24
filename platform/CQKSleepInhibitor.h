#pragma once
// CQKSleepInhibitor: asks the desktop not to blank the screen or sleep, and gives the request
// back.
//
// Desktops take the request in one of two places on the session bus: the screen saver service
// (org.freedesktop.ScreenSaver, Inhibit and UnInhibit with a cookie), or, in a sandbox or on a
// desktop that offers only that, the desktop portal (org.freedesktop.portal.Inhibit, given
// back by closing the request it returns). The first one that has an owner on the bus is
// used; with neither, nothing is asked and nothing fails.
//
// The calls never wait on the GUI thread, except at the program's end: a request still on its
// way is awaited and the give-back is sent before the process ends (each at most a second). A
// request that is answered after it is no longer wanted is given back at once.
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <cstdint>

class CQKSleepInhibitor
{
public:
    explicit CQKSleepInhibitor(const QDBusConnection& bus);
    ~CQKSleepInhibitor();
    CQKSleepInhibitor(const CQKSleepInhibitor&) = delete;
    CQKSleepInhibitor& operator=(const CQKSleepInhibitor&) = delete;

    // Asks (true) or gives back (false); repeating the same wish does nothing.
    void Want(bool bInhibit);

private:
    enum class Service { Unknown,
        None,
        ScreenSaver,
        Portal };
    void Request();
    void Release(bool bWait);
    // The answer to a request: held, with its cookie or request, unless refused.
    void TakeAnswer(const QDBusPendingCall& call);
    Service FindService();

    QDBusConnection m_bus;
    Service m_service { Service::Unknown };
    bool m_bWanted { false };
    bool m_bPending { false };
    bool m_bHeld { false };
    uint32_t m_nCookie { 0 };
    QString m_strPortalRequest;
    // The request on its way (owned by m_context), null when none is.
    QDBusPendingCallWatcher* m_pWatcher { nullptr };
    // Parent of the pending calls' watchers: they go with the inhibitor, so that an answer
    // that comes later finds nothing to call.
    QObject m_context;
};
