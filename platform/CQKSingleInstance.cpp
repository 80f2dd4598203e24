#include "platform/CQKSingleInstance.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

CQKSingleInstance::CQKSingleInstance(const QString& strLockName, const QString& strServerName)
{
    const QString folder = RuntimeFolder();
    if (folder.isEmpty()) {
        m_bNoFolder = true;
        return;
    }
    m_strLockPath = folder + '/' + strLockName + QStringLiteral(".lock");
    m_strServerPath = folder + '/' + strServerName + '-' + QString::number(getuid());
}

CQKSingleInstance::~CQKSingleInstance()
{
    Close();
}

QString CQKSingleInstance::RuntimeFolder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QDir::isAbsolutePath(runtime) && QFileInfo(runtime).isDir())
        return QDir::cleanPath(runtime);

    // Without a runtime folder the lock and the socket go to a folder of our own under /tmp.
    // Another user could have made that name first, so it is used only when it is a real
    // folder (not a link) that belongs to us; then it is made private.
    const QByteArray path = QByteArrayLiteral("/tmp/orbel-player-") + QByteArray::number(getuid());
    if (mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return QString();
    struct stat st
    { };
    if (lstat(path.constData(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != getuid())
        return QString();
    if ((st.st_mode & 0777) != 0700 && chmod(path.constData(), 0700) != 0)
        return QString();
    return QString::fromLocal8Bit(path);
}

bool CQKSingleInstance::HasListener() const
{
    struct stat st
    { };
    return ::stat(QFile::encodeName(m_strServerPath).constData(), &st) == 0 && S_ISSOCK(st.st_mode);
}

bool CQKSingleInstance::Acquire()
{
    if (m_nLockFd >= 0)
        return true;
    if (m_bNoFolder)
        return true;
    const QByteArray path = QFile::encodeName(m_strLockPath);
    const int fd = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return true;
    int rc;
    do {
        rc = flock(fd, LOCK_EX | LOCK_NB);
    } while (rc != 0 && errno == EINTR);
    if (rc != 0) {
        const bool bHeldByOther = (errno == EWOULDBLOCK);
        close(fd);
        // A file system that cannot lock is treated like a missing folder: run on our own.
        return !bHeldByOther;
    }
    m_nLockFd = fd;
    return true;
}

bool CQKSingleInstance::WakeRunningInstance(int nTimeoutMs, int nAckTimeoutMs)
{
    if (m_strServerPath.isEmpty())
        return false;
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        QLocalSocket socket;
        socket.connectToServer(m_strServerPath);
        if (socket.waitForConnected(qMax(50, nTimeoutMs))) {
            // The connection is the wake-up. The running instance answers with one byte once
            // it has read the list; a close without it means it is ending and read nothing.
            QElapsedTimer ackClock;
            ackClock.start();
            while (socket.bytesAvailable() == 0 && socket.state() == QLocalSocket::ConnectedState && ackClock.elapsed() < nAckTimeoutMs)
                socket.waitForReadyRead(qMax<int>(1, nAckTimeoutMs - static_cast<int>(ackClock.elapsed())));
            const bool bAcknowledged = socket.bytesAvailable() > 0;
            socket.abort();
            return bAcknowledged;
        }
        if (clock.elapsed() >= nTimeoutMs)
            return false;
        QThread::msleep(25);
    }
}

bool CQKSingleInstance::Listen(std::function<void()> fnOnWake)
{
    if (m_strServerPath.isEmpty())
        return false;
    m_fnOnWake = std::move(fnOnWake);
    if (m_pServer)
        return m_pServer->isListening();
    // Only the holder of the lock comes here, so a socket file that exists now was left by a
    // first instance that died without cleaning up: nobody listens on it any more.
    QLocalServer::removeServer(m_strServerPath);
    m_pServer = std::make_unique<QLocalServer>();
    m_pServer->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(m_pServer.get(), &QLocalServer::newConnection, m_pServer.get(), [this] {
        while (QLocalSocket* pSocket = m_pServer->nextPendingConnection()) {
            // The socket belongs to the server and goes with it at the latest.
            m_arrWaiting.push_back(pSocket);
            if (m_fnOnWake)
                m_fnOnWake();
        }
    });
    if (!m_pServer->listen(m_strServerPath)) {
        m_pServer.reset();
        return false;
    }
    return true;
}

void CQKSingleInstance::Acknowledge()
{
    for (QLocalSocket* pSocket : m_arrWaiting) {
        // A start that gave up waiting has gone already.
        if (pSocket->state() == QLocalSocket::UnconnectedState) {
            pSocket->deleteLater();
            continue;
        }
        QObject::connect(pSocket, &QLocalSocket::disconnected, pSocket, &QObject::deleteLater);
        pSocket->write("1", 1);
        pSocket->flush();
        pSocket->disconnectFromServer();
    }
    m_arrWaiting.clear();
}

void CQKSingleInstance::Close()
{
    // Starts still waiting are cut off without an answer: nobody will read their list here.
    for (QLocalSocket* pSocket : m_arrWaiting)
        pSocket->abort();
    m_arrWaiting.clear();
    if (m_pServer) {
        m_pServer->close();
        m_pServer.reset();
    }
    if (m_nLockFd >= 0) {
        // The lock file itself stays: removing it while another start has it open would let
        // two processes lock two different files of the same name.
        close(m_nLockFd);
        m_nLockFd = -1;
    }
}
