// The lock and wake-up that decide between a first and a later start of the program.
#include "platform/CQKSingleInstance.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <cstring>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

const QString kLock = QStringLiteral("{6F1D3A94-2C7B-4E58-9B06-D41C7E82A5F3}x64");
const QString kServer = QStringLiteral("QKOrbelPlayerGuiFrame");

// Each test gets a private runtime folder, as each login session has its own.
class SingleInstanceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        saved = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", dir.path().toLocal8Bit());
    }
    void TearDown() override { qputenv("XDG_RUNTIME_DIR", saved); }

    // Runs the event loop until pred holds or the time is up.
    template <typename Pred>
    static bool WaitFor(Pred pred, int ms = 3000)
    {
        QDeadlineTimer deadline(ms);
        while (!pred() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        return pred();
    }
    // Listens on `inst`, counting and answering each wake-up.
    static bool ListenCounting(CQKSingleInstance& inst, int& nWakes)
    {
        return inst.Listen([&inst, &nWakes] { ++nWakes; inst.Acknowledge(); });
    }

    QTemporaryDir dir;
    QByteArray saved;
};

TEST_F(SingleInstanceTest, OnlyTheFirstGetsTheLockUntilItCloses)
{
    CQKSingleInstance first(kLock, kServer);
    CQKSingleInstance second(kLock, kServer);
    EXPECT_TRUE(first.Acquire());
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(second.Acquire());
    EXPECT_FALSE(second.IsHeld());
    EXPECT_EQ(first.LockPath(), dir.path() + "/" + kLock + ".lock");
    EXPECT_TRUE(QFileInfo(first.LockPath()).exists());

    first.Close();
    EXPECT_TRUE(second.Acquire());
    // A different lock name is a different program and does not compete.
    CQKSingleInstance other(QStringLiteral("another"), kServer);
    EXPECT_TRUE(other.Acquire());
}

TEST_F(SingleInstanceTest, SocketIsPerUserInTheRuntimeFolder)
{
    CQKSingleInstance inst(kLock, kServer);
    CQKSingleInstance later(kLock, kServer);
    EXPECT_EQ(inst.ServerPath(), dir.path() + "/QKOrbelPlayerGuiFrame-" + QString::number(getuid()));
    ASSERT_TRUE(inst.Acquire());
    EXPECT_FALSE(later.HasListener()) << "the lock alone is no listener";
    ASSERT_TRUE(inst.Listen([] {}));
    EXPECT_TRUE(later.HasListener());
    struct stat st
    { };
    ASSERT_EQ(stat(QFile::encodeName(inst.ServerPath()).constData(), &st), 0);
    EXPECT_TRUE(S_ISSOCK(st.st_mode));
    // Nobody else may connect to it.
    EXPECT_EQ(st.st_mode & 0077, 0u);
    inst.Close();
    EXPECT_FALSE(later.HasListener());
}

TEST_F(SingleInstanceTest, WakeUpReachesTheListenerOncePerStart)
{
    CQKSingleInstance first(kLock, kServer);
    ASSERT_TRUE(first.Acquire());
    int nWakes = 0;
    ASSERT_TRUE(ListenCounting(first, nWakes));

    // The later starts run on other threads, as they would in other processes; the listener
    // answers from this thread's event loop.
    std::vector<std::thread> starts;
    std::atomic<int> nAnswered { 0 };
    for (int i = 0; i < 3; ++i) {
        starts.emplace_back([&] {
            CQKSingleInstance later(kLock, kServer);
            if (!later.Acquire() && later.WakeRunningInstance())
                ++nAnswered;
        });
    }
    EXPECT_TRUE(WaitFor([&] { return nWakes == 3; }));
    for (auto& t : starts)
        t.join();
    EXPECT_EQ(nAnswered.load(), 3);
    WaitFor([] { return false; }, 100);
    EXPECT_EQ(nWakes, 3);
}

TEST_F(SingleInstanceTest, LateListenerIsStillFound)
{
    // The first start holds the lock a moment before its socket exists; a later start that
    // comes in between must wait for it rather than give up.
    CQKSingleInstance first(kLock, kServer);
    ASSERT_TRUE(first.Acquire());
    std::atomic<bool> bAnswered { false };
    std::thread later([&] {
        CQKSingleInstance inst(kLock, kServer);
        bAnswered = !inst.Acquire() && inst.WakeRunningInstance(3000);
    });
    QThread::msleep(200);
    int nWakes = 0;
    ASSERT_TRUE(ListenCounting(first, nWakes));
    EXPECT_TRUE(WaitFor([&] { return nWakes == 1; }));
    later.join();
    EXPECT_TRUE(bAnswered);
}

TEST_F(SingleInstanceTest, LeftoverSocketOfACrashedInstanceIsReplaced)
{
    // A socket file with nobody behind it, as a killed first instance leaves it.
    CQKSingleInstance first(kLock, kServer);
    const QByteArray path = QFile::encodeName(first.ServerPath());
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(fd, 0);
    sockaddr_un addr {};
    addr.sun_family = AF_UNIX;
    std::strncpy(addr.sun_path, path.constData(), sizeof(addr.sun_path) - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)), 0);
    close(fd);
    ASSERT_TRUE(QFileInfo::exists(first.ServerPath()));

    CQKSingleInstance later(kLock, kServer);
    ASSERT_TRUE(first.Acquire());
    // Nobody listens yet: nobody answers, and the wait ends in its time.
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(later.WakeRunningInstance(300));
    EXPECT_LT(clock.elapsed(), 2000);
    int nWakes = 0;
    ASSERT_TRUE(ListenCounting(first, nWakes));
    std::atomic<bool> bAnswered { false };
    std::thread wake([&] { bAnswered = later.WakeRunningInstance(); });
    EXPECT_TRUE(WaitFor([&] { return nWakes == 1; }));
    wake.join();
    EXPECT_TRUE(bAnswered);
}

TEST(SingleInstanceFolderTest, WithoutRuntimeFolderAPrivateFolderInTmpIsUsed)
{
    const QByteArray saved = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
    const QString folder = CQKSingleInstance::RuntimeFolder();
    EXPECT_EQ(folder, QStringLiteral("/tmp/orbel-player-") + QString::number(getuid()));
    struct stat st
    { };
    ASSERT_EQ(lstat(QFile::encodeName(folder).constData(), &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(st.st_mode & 0777, 0700u);

    // A runtime folder that is not there, or not absolute, is not used either.
    qputenv("XDG_RUNTIME_DIR", "/nonexistent/orbel-runtime");
    EXPECT_EQ(CQKSingleInstance::RuntimeFolder(), folder);
    qputenv("XDG_RUNTIME_DIR", "relative/run");
    EXPECT_EQ(CQKSingleInstance::RuntimeFolder(), folder);
    qputenv("XDG_RUNTIME_DIR", saved);
}

} // namespace
