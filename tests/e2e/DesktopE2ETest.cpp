// The player as the desktop sees it, on a session bus of the test's own: its media controls
// driven by a real client (playerctl), the changes it announces there, and the launcher's
// progress and the requests that keep the screen awake, taken by stand-ins of the desktop's
// services that record them.
#include "PlayerProcess.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"
#include "support/WideFileText.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMutex>
#include <QThread>
#include <QUrl>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
const QString kBusName = QStringLiteral("test-session-bus");
const QString kMpris = QStringLiteral("org.mpris.MediaPlayer2.orbelplayer");
constexpr int kWaitMs = 20000;

// The desktop's screen saver, as far as a player uses it: each request gets the next cookie.
// It answers from a thread of its own, as promptly as a desktop does, whatever the test's own
// thread is waiting for.
class ScreenSaverStandIn : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")
public:
    QStringList Calls() const
    {
        QMutexLocker lock(&mutex);
        return calls;
    }

public Q_SLOTS:
    uint Inhibit(const QString&, const QString&)
    {
        QMutexLocker lock(&mutex);
        calls << QStringLiteral("Inhibit %1").arg(++nCookie);
        return nCookie;
    }
    void UnInhibit(uint nGiven)
    {
        QMutexLocker lock(&mutex);
        calls << QStringLiteral("UnInhibit %1").arg(nGiven);
    }

private:
    mutable QMutex mutex;
    QStringList calls;
    uint nCookie { 0 };
};

// What the player announces: the launcher's progress and the media controls' changes.
class SignalLog : public QObject
{
    Q_OBJECT
public:
    struct Progress
    {
        QString strUri;
        double dValue;
        bool bVisible;
    };
    std::vector<Progress> progress;
    std::vector<QVariantMap> changes;

    // A change of `key` to a value that `pred` accepts, announced after the first `nFrom`.
    bool Announced(size_t nFrom, const QString& key, const std::function<bool(const QVariant&)>& pred) const
    {
        for (size_t i = nFrom; i < changes.size(); ++i)
            if (changes[i].contains(key) && pred(changes[i].value(key)))
                return true;
        return false;
    }

public Q_SLOTS:
    void OnUpdate(const QString& strUri, const QVariantMap& props)
    {
        progress.push_back({ strUri, props.value(QStringLiteral("progress")).toDouble(), props.value(QStringLiteral("progress-visible")).toBool() });
    }
    void OnPropertiesChanged(const QString& strInterface, const QVariantMap& changed, const QStringList&)
    {
        if (strInterface == QLatin1String("org.mpris.MediaPlayer2.Player"))
            changes.push_back(changed);
    }
};

QString NameOf(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// The title inside an announced Metadata value.
QString TitleIn(const QVariant& metadata)
{
    const QVariantMap map = qdbus_cast<QVariantMap>(metadata.value<QDBusArgument>());
    return map.value(QStringLiteral("xesam:title")).toString();
}

class DesktopE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
        // A bus of the test's own: the player, the client and the stand-ins meet there.
        daemon.start(QStringLiteral("dbus-daemon"), { QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1") });
        ASSERT_TRUE(daemon.waitForStarted(5000) && daemon.waitForReadyRead(5000)) << "dbus-daemon did not start";
        strAddress = QString::fromUtf8(daemon.readLine()).trimmed();
        QDBusConnection bus = QDBusConnection::connectToBus(strAddress, kBusName);
        ASSERT_TRUE(bus.isConnected());
        screenSaverThread.start();
        screenSaver.moveToThread(&screenSaverThread);
        ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), &screenSaver, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver")));
        bus.connect(QString(), QString(), QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"), &log, SLOT(OnUpdate(QString, QVariantMap)));
        bus.connect(QString(), QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
            &log, SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList)));
        sandbox.SetBusAddress(strAddress);
    }

    void TearDown() override
    {
        QDBusConnection::disconnectFromBus(kBusName);
        screenSaverThread.quit();
        screenSaverThread.wait();
        daemon.kill();
        daemon.waitForFinished(5000);
    }

    // playerctl's answer for the player, trimmed.
    QString Ctl(const QStringList& args) const
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), strAddress);
        p.setProcessEnvironment(env);
        p.start(QStringLiteral("playerctl"), QStringList { QStringLiteral("--player=orbelplayer") } + args);
        p.waitForFinished(10000);
        return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    }

    // A property of the media controls' root interface, read over the bus.
    QVariant RootProperty(const QString& name) const
    {
        QDBusMessage get = QDBusMessage::createMethodCall(kMpris, QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        get << QStringLiteral("org.mpris.MediaPlayer2") << name;
        const QDBusMessage reply = QDBusConnection(kBusName).call(get, QDBus::Block, 5000);
        return reply.arguments().isEmpty() ? QVariant() : reply.arguments().constFirst().value<QDBusVariant>().variant();
    }

    // The video area of the window shows two different pictures 400 ms apart.
    bool Moves(unsigned long w) const
    {
        const QRect rcWindow = screen.Geometry(w);
        const QRect rc(5, 31, rcWindow.width() - 10, rcWindow.height() - 51 - 31);
        const auto before = screen.Pixels(w, rc);
        QThread::msleep(400);
        return screen.Pixels(w, rc) != before;
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
    QProcess daemon;
    QString strAddress;
    QThread screenSaverThread;
    ScreenSaverStandIn screenSaver;
    SignalLog log;
};

TEST_F(DesktopE2ETest, MediaControlsLauncherProgressAndScreenSaver)
{
    const QString moving = TestMedia::VideoWithSound(30.0);
    const QString green = TestMedia::SolidColor(QStringLiteral("green"), 30.0, 64, 48, true);
    const QString tone = TestMedia::SoundOnly(30.0);
    ASSERT_FALSE(moving.isEmpty() || green.isEmpty() || tone.isEmpty());
    auto status = [&](const char* pszWanted) { return WaitUntil([&] { return Ctl({ QStringLiteral("status") }) == QLatin1String(pszWanted); }, kWaitMs); };
    auto title = [&] { return Ctl({ QStringLiteral("metadata"), QStringLiteral("xesam:title") }); };
    auto announced = [&](size_t nFrom, const QString& key, const std::function<bool(const QVariant&)>& pred) {
        return WaitUntil([&] { return log.Announced(nFrom, key, pred); }, kWaitMs);
    };

    QProcess* player = sandbox.Start({ moving, green, tone });
    const auto windows = screen.WaitForWindows(kClass, 1, kWaitMs);
    ASSERT_EQ(windows.size(), 1u);
    const unsigned long w = windows.front();

    // The first file plays: its name, length, a position that moves on, the slider's volume.
    ASSERT_TRUE(status("Playing")) << "status: " << qPrintable(Ctl({ QStringLiteral("status") }));
    EXPECT_EQ(title(), NameOf(moving));
    EXPECT_NEAR(Ctl({ QStringLiteral("metadata"), QStringLiteral("mpris:length") }).toDouble(), 30e6, 0.5e6);
    EXPECT_EQ(Ctl({ QStringLiteral("metadata"), QStringLiteral("xesam:url") }), QUrl::fromLocalFile(moving).toString(QUrl::FullyEncoded));
    const double dStart = Ctl({ QStringLiteral("position") }).toDouble();
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("position") }).toDouble() > dStart + 1.0; }, kWaitMs)) << "the position stays at " << dStart;
    EXPECT_DOUBLE_EQ(Ctl({ QStringLiteral("volume") }).toDouble(), 0.9);
    EXPECT_EQ(RootProperty(QStringLiteral("Identity")).toString(), QStringLiteral("Orbel Player"));
    EXPECT_EQ(RootProperty(QStringLiteral("DesktopEntry")).toString(), QStringLiteral("orbel-player"));
    // The media types are the desktop entry's.
    QFile entry(SourceDir() + QStringLiteral("packaging/orbel-player.desktop"));
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    const QString strMime = QString::fromUtf8(entry.readAll()).section(QStringLiteral("MimeType="), 1).section(QLatin1Char('\n'), 0, 0);
    EXPECT_EQ(RootProperty(QStringLiteral("SupportedMimeTypes")).toStringList(), strMime.split(QLatin1Char(';'), Qt::SkipEmptyParts));
    // The launcher shows how far the file has played.
    ASSERT_TRUE(WaitUntil([&] { return !log.progress.empty() && log.progress.back().dValue > 0.0; }, kWaitMs));
    EXPECT_EQ(log.progress.back().strUri, QStringLiteral("application://orbel-player.desktop"));
    EXPECT_TRUE(log.progress.back().bVisible);
    EXPECT_LT(log.progress.back().dValue, 0.5);

    // Play-pause pauses: the picture stands still, and the change is announced.
    size_t nMark = log.changes.size();
    Ctl({ QStringLiteral("play-pause") });
    ASSERT_TRUE(status("Paused"));
    // The engine pauses just after the state changes: the picture comes to a stand and stays.
    EXPECT_TRUE(WaitUntil([&] { return !Moves(w); }, kWaitMs) && !Moves(w)) << "the picture moves while paused";
    EXPECT_TRUE(announced(nMark, QStringLiteral("PlaybackStatus"), [](const QVariant& v) { return v.toString() == QLatin1String("Paused"); }));
    Ctl({ QStringLiteral("play") });
    ASSERT_TRUE(status("Playing"));
    EXPECT_TRUE(WaitUntil([&] { return Moves(w); }, kWaitMs)) << "the picture does not move after play";

    // Next plays the green clip, under its name.
    nMark = log.changes.size();
    Ctl({ QStringLiteral("next") });
    EXPECT_TRUE(WaitUntil([&] { return title() == NameOf(green); }, kWaitMs)) << qPrintable(title());
    EXPECT_TRUE(WaitUntil([&] {
        const QRect rc = screen.Geometry(w);
        return IsGreen(screen.ColourAt(w, QPoint(rc.width() / 2, (31 + rc.height() - 51) / 2)));
    },
        kWaitMs));
    EXPECT_TRUE(announced(nMark, QStringLiteral("Metadata"), [&](const QVariant& v) { return TitleIn(v) == NameOf(green); }));

    // The volume set by the client moves the slider, which the player announces and keeps.
    Ctl({ QStringLiteral("volume"), QStringLiteral("0.3") });
    EXPECT_TRUE(WaitUntil([&] { return std::fabs(Ctl({ QStringLiteral("volume") }).toDouble() - 0.3) < 1e-6; }, kWaitMs));
    EXPECT_TRUE(announced(nMark, QStringLiteral("Volume"), [](const QVariant& v) { return std::fabs(v.toDouble() - 0.3) < 1e-6; }));

    // A seek by the client moves the playing position, and the launcher's bar follows it.
    Ctl({ QStringLiteral("position"), QStringLiteral("20") });
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("position") }).toDouble() >= 20.0; }, kWaitMs));
    EXPECT_TRUE(WaitUntil([&] { return log.progress.back().dValue >= 0.6; }, kWaitMs));

    // Stop: the launcher's bar goes away.
    Ctl({ QStringLiteral("stop") });
    ASSERT_TRUE(status("Stopped"));
    EXPECT_TRUE(WaitUntil([&] { return !log.progress.back().bVisible; }, kWaitMs));
    EXPECT_TRUE(announced(nMark, QStringLiteral("PlaybackStatus"), [](const QVariant& v) { return v.toString() == QLatin1String("Stopped"); }));

    // Sound alone plays without keeping the screen awake; back to a picture, it does again.
    const QStringList beforeTone = screenSaver.Calls();
    Ctl({ QStringLiteral("next") });
    ASSERT_TRUE(WaitUntil([&] { return title() == NameOf(tone); }, kWaitMs));
    ASSERT_TRUE(WaitUntil([&] { return log.progress.back().bVisible && log.progress.back().dValue > 0.0; }, kWaitMs));
    EXPECT_EQ(screenSaver.Calls(), beforeTone);
    Ctl({ QStringLiteral("previous") });
    ASSERT_TRUE(WaitUntil([&] { return title() == NameOf(green); }, kWaitMs));
    ASSERT_TRUE(WaitUntil([&] { return screenSaver.Calls().size() > beforeTone.size(); }, kWaitMs));

    // Quit ends the player the way its close command does: the request is given back and the
    // volume kept.
    QDBusConnection(kBusName).call(QDBusMessage::createMethodCall(kMpris, QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.mpris.MediaPlayer2"), QStringLiteral("Quit")));
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWaitMs));
    EXPECT_EQ(player->exitCode(), 0);
    WaitUntil([&] { return screenSaver.Calls().size() == 8; }, 3000);
    EXPECT_EQ(screenSaver.Calls(),
        QStringList({ QStringLiteral("Inhibit 1"), QStringLiteral("UnInhibit 1"), QStringLiteral("Inhibit 2"), QStringLiteral("UnInhibit 2"),
            QStringLiteral("Inhibit 3"), QStringLiteral("UnInhibit 3"), QStringLiteral("Inhibit 4"), QStringLiteral("UnInhibit 4") }));
    const QString options = ReadWideFile(sandbox.SkinFolder() + QStringLiteral("playeroptions.dat"));
    EXPECT_TRUE(options.contains(QStringLiteral("dVolumeScale=\"30"))) << qPrintable(options);
}

// Under a Wayland compositor (weston without a screen, on the test's bus): the player starts,
// shows its window and plays, a later start hands its file over, and Quit ends it. The
// compositor's own screenshot shows the window; the playing is read from the media controls.
TEST_F(DesktopE2ETest, WaylandSessionShowsPlaysHandsOffAndQuits)
{
    const QString first = TestMedia::VideoWithSound(30.0);
    const QString second = TestMedia::SolidColor(QStringLiteral("green"), 30.0, 64, 48, true);
    ASSERT_FALSE(first.isEmpty() || second.isEmpty());
    // The compositor's socket lies in the runtime folder the player is given.
    const QString runtime = sandbox.Root() + QStringLiteral("/run");
    QProcess weston;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    env.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("orbel-test"));
    weston.setProcessEnvironment(env);
    weston.setWorkingDirectory(sandbox.Root());
    weston.start(QStringLiteral("weston"), { QStringLiteral("--backend=headless-backend.so"), QStringLiteral("--use-pixman"), QStringLiteral("--socket=orbel-test"), QStringLiteral("--width=1280"), QStringLiteral("--height=800"), QStringLiteral("--debug"), QStringLiteral("--idle-time=0") });
    ASSERT_TRUE(weston.waitForStarted(5000));
    ASSERT_TRUE(WaitUntil([&] { return QFile::exists(runtime + QStringLiteral("/orbel-test")); }, kWaitMs)) << "weston made no socket";
    // A screenshot of the whole output, as the compositor composes it.
    const QString shots = sandbox.Root() + QStringLiteral("/shots");
    auto shoot = [&] {
        QDir(shots).removeRecursively();
        QDir().mkpath(shots);
        QProcess shooter;
        shooter.setProcessEnvironment(env);
        shooter.setWorkingDirectory(shots);
        shooter.start(QStringLiteral("weston-screenshooter"));
        shooter.waitForFinished(10000);
        const QStringList found = QDir(shots).entryList({ QStringLiteral("*.png") }, QDir::Files);
        return found.isEmpty() ? QImage() : QImage(shots + QLatin1Char('/') + found.first());
    };
    // The pixels in which two pictures of the output differ.
    auto changed = [](const QImage& a, const QImage& b) {
        int n = 0;
        for (int y = 0; y < std::min(a.height(), b.height()); ++y)
            for (int x = 0; x < std::min(a.width(), b.width()); ++x)
                n += a.pixel(x, y) != b.pixel(x, y);
        return n;
    };
    // Pixels of strong colour: the test picture's bars have them, the desktop's greys do not.
    auto colourful = [](const QImage& shot) {
        int n = 0;
        for (int y = 0; y < shot.height(); ++y) {
            for (int x = 0; x < shot.width(); ++x) {
                const QRgb p = shot.pixel(x, y);
                n += std::max({ qRed(p), qGreen(p), qBlue(p) }) - std::min({ qRed(p), qGreen(p), qBlue(p) }) > 150;
            }
        }
        return n;
    };
    // The desktop as its shell draws it, before the player comes.
    QImage desktop;
    ASSERT_TRUE(WaitUntil([&] {
        desktop = shoot();
        return !desktop.isNull() && desktop.pixel(desktop.width() / 2, desktop.height() / 2) != qRgb(0, 0, 0);
    },
        kWaitMs))
        << "weston-screenshooter gave no picture of the desktop";

    sandbox.SetLauncher({ QStringLiteral("env"), QStringLiteral("QT_QPA_PLATFORM=wayland"), QStringLiteral("WAYLAND_DISPLAY=orbel-test") });
    QProcess* player = sandbox.Start({ first });
    ASSERT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("status") }) == QLatin1String("Playing"); }, kWaitMs));
    const double dStart = Ctl({ QStringLiteral("position") }).toDouble();
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("position") }).toDouble() > dStart + 1.0; }, kWaitMs)) << "the position stays at " << dStart;
    // The window is on the output, and the video surface shows the clip's coloured bars in it
    // (the 160 by 120 clip shows at twice its size).
    QImage shot;
    EXPECT_TRUE(WaitUntil([&] {
        shot = shoot();
        return changed(shot, desktop) > 40000 && colourful(shot) > colourful(desktop) + 20000;
    },
        kWaitMs))
        << "no window or no picture on the output; " << qPrintable(FailureShotPath(QStringLiteral("wayland-player")));
    QDir().mkpath(QFileInfo(FailureShotPath(QStringLiteral("wayland-player"))).path());
    shot.save(FailureShotPath(QStringLiteral("wayland-player")));

    // A later start hands its file to the running player and ends.
    QProcess* later = sandbox.Start({ second });
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(later, kWaitMs));
    EXPECT_EQ(later->exitCode(), 0);
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("metadata"), QStringLiteral("xesam:title") }) == NameOf(second); }, kWaitMs));

    QDBusConnection(kBusName).call(QDBusMessage::createMethodCall(kMpris, QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.mpris.MediaPlayer2"), QStringLiteral("Quit")));
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWaitMs));
    EXPECT_EQ(player->exitCode(), 0);
    weston.terminate();
    weston.waitForFinished(5000);
}

} // namespace

#include "DesktopE2ETest.moc"
