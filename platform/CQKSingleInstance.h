#pragma once
// The meeting point of two starts of the program.
//
// A per-user lock decides who came first: the first process takes an exclusive flock() on a
// lock file and holds it for its whole life. The kernel drops the lock when the process ends
// in any way, so a crash never leaves anything that blocks the next start. The first process
// also listens on a per-user local socket; a later start that finds the lock taken connects
// to that socket. The connection itself is the wake-up: it carries no data, because the list
// of files travels in a file written before the lock is tried. The connection stays open until
// the running instance has read the list; then it writes one byte back (the acknowledgement)
// and closes it. A running instance on its way out never reads again and closes the connection
// without that byte, so the later start knows that nobody took its list and can wait for the
// lock and become the first instance itself instead of being lost.
//
// Both the lock file and the socket live in the user's runtime folder ($XDG_RUNTIME_DIR), or
// in /tmp/orbel-player-<uid> (made private to the user) where that variable is not set.
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QLocalServer;
class QLocalSocket;

class CQKSingleInstance
{
public:
    // strLockName names the lock (the lock file is "<folder>/<strLockName>.lock"); strServerName
    // names the socket, which gets the user id as a suffix ("<folder>/<strServerName>-<uid>").
    CQKSingleInstance(const QString& strLockName, const QString& strServerName);
    ~CQKSingleInstance();
    CQKSingleInstance(const CQKSingleInstance&) = delete;
    CQKSingleInstance& operator=(const CQKSingleInstance&) = delete;

    // Tries to take the lock without waiting. True: this process is the first one and holds
    // the lock until Close() or its end. False: another process of this user holds it. When the
    // runtime folder cannot be used at all, the answer is true: the program then runs as an
    // independent instance rather than not at all.
    bool Acquire();

    // For a process that did not get the lock: wakes the running instance. Waits up to
    // nTimeoutMs for its socket to appear, since the running instance may have just taken the
    // lock and not yet be listening, and then up to nAckTimeoutMs for the acknowledgement.
    // True only when the running instance acknowledged; false when nobody answered or the
    // running instance closed the connection without reading (it is ending).
    bool WakeRunningInstance(int nTimeoutMs = 1000, int nAckTimeoutMs = 10000);

    // For the process that holds the lock: removes a socket left behind by an earlier first
    // instance that crashed, listens, and calls fnOnWake from the event loop of the calling
    // thread once for every wake-up. False if the socket could not be made.
    bool Listen(std::function<void()> fnOnWake);

    // For the listening process, after it has read the start-up list: tells every start that
    // woke it since the last call that its list was taken.
    void Acknowledge();

    // Stops listening and drops the lock. Starts not yet acknowledged learn that nobody took
    // their list. Called by the destructor as well.
    void Close();

    bool IsHeld() const { return m_nLockFd >= 0; }
    // A hint, without touching the lock: a first instance is listening (or one that crashed
    // left its socket behind). Usable before the program's application object exists.
    bool HasListener() const;
    QString LockPath() const { return m_strLockPath; }
    QString ServerPath() const { return m_strServerPath; }

    // The folder that holds lock and socket, with no trailing '/'; empty if none can be used.
    static QString RuntimeFolder();

private:
    QString m_strLockPath;
    QString m_strServerPath;
    int m_nLockFd { -1 };
    bool m_bNoFolder { false };
    std::unique_ptr<QLocalServer> m_pServer;
    std::function<void()> m_fnOnWake;
    // The connections of starts that woke us and wait for their acknowledgement.
    std::vector<QLocalSocket*> m_arrWaiting;
};
