#pragma once
// The meeting point of two starts of the program.
//
// A per-user lock decides who came first: the first process takes an exclusive flock() on a
// lock file and holds it for its whole life. The kernel drops the lock when the process ends
// in any way, so a crash never leaves anything that blocks the next start. The first process
// also listens on a per-user local socket; a later start that finds the lock taken connects
// to that socket and disconnects at once. The connection itself is the wake-up: it carries no
// data, because the list of files travels in a file written before the lock is tried.
//
// Both the lock file and the socket live in the user's runtime folder ($XDG_RUNTIME_DIR), or
// in /tmp/orbel-player-<uid> (made private to the user) where that variable is not set.
#include <QString>
#include <functional>
#include <memory>

class QLocalServer;

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

    // For a process that did not get the lock: wakes the running instance. Waits a short while
    // for its socket to appear, since the running instance may have just taken the lock and not
    // yet be listening. False when nobody answered.
    bool WakeRunningInstance(int nTimeoutMs = 1000);

    // For the process that holds the lock: removes a socket left behind by an earlier first
    // instance that crashed, listens, and calls fnOnWake from the event loop of the calling
    // thread once for every wake-up. False if the socket could not be made.
    bool Listen(std::function<void()> fnOnWake);

    // Stops listening and drops the lock. Called by the destructor as well.
    void Close();

    bool IsHeld() const { return m_nLockFd >= 0; }
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
};
