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
#include <QRegularExpression>
#include <QThread>
#include <QUrl>
#include <QWidget>
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
    std::vector<qlonglong> seeks;

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
    void OnSeeked(qlonglong nPosition) { seeks.push_back(nPosition); }
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
        ASSERT_TRUE(bus.connect(QString(), QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.mpris.MediaPlayer2.Player"), QStringLiteral("Seeked"), &log, SLOT(OnSeeked(qlonglong))));
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

    // Calls a method of the media controls' root interface (Raise, Quit).
    static void CallRoot(const QString& method)
    {
        QDBusConnection(kBusName).call(QDBusMessage::createMethodCall(kMpris, QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.mpris.MediaPlayer2"), method));
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

    // Playing on, pausing, resuming and the next file are no seeks; a click in the middle of
    // the seek bar is, and so is a seek by the client, which moves the playing position and
    // the launcher's bar.
    EXPECT_TRUE(log.seeks.empty()) << log.seeks.front();
    const QRect rcWindow = screen.Geometry(w);
    screen.Click(w, QPoint(rcWindow.width() / 2, rcWindow.height() - 41));
    ASSERT_TRUE(WaitUntil([&] { return !log.seeks.empty(); }, kWaitMs)) << "no Seeked after a click on the seek bar, at " << qPrintable(Ctl({ QStringLiteral("position") }));
    // The middle of the clip, and up to a tick of playing on.
    EXPECT_GT(log.seeks.front(), 14e6);
    EXPECT_LT(log.seeks.front(), 18e6);
    Ctl({ QStringLiteral("position"), QStringLiteral("20") });
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("position") }).toDouble() >= 20.0; }, kWaitMs));
    EXPECT_TRUE(WaitUntil([&] { return log.seeks.back() == 20000000; }, kWaitMs)) << log.seeks.back();
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
    CallRoot(QStringLiteral("Quit"));
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWaitMs));
    EXPECT_EQ(player->exitCode(), 0);
    WaitUntil([&] { return screenSaver.Calls().size() == 8; }, 3000);
    EXPECT_EQ(screenSaver.Calls(),
        QStringList({ QStringLiteral("Inhibit 1"), QStringLiteral("UnInhibit 1"), QStringLiteral("Inhibit 2"), QStringLiteral("UnInhibit 2"),
            QStringLiteral("Inhibit 3"), QStringLiteral("UnInhibit 3"), QStringLiteral("Inhibit 4"), QStringLiteral("UnInhibit 4") }));
    const QString options = ReadWideFile(sandbox.SkinFolder() + QStringLiteral("playeroptions.dat"));
    EXPECT_TRUE(options.contains(QStringLiteral("dVolumeScale=\"30"))) << qPrintable(options);
}

// Under a window manager (openbox), Raise brings the player's window from behind another
// window to the front and makes it the active one.
TEST_F(DesktopE2ETest, RaiseBringsTheWindowToTheFront)
{
    const QString green = TestMedia::SolidColor(QStringLiteral("green"), 30.0, 64, 48, true);
    ASSERT_FALSE(green.isEmpty());
    const X11Screen x11;
    QProcess wm;
    wm.start(QStringLiteral("openbox"), { QStringLiteral("--sm-disable") });
    ASSERT_TRUE(WaitUntil([&] { return x11.Property32(0, "_NET_SUPPORTING_WM_CHECK", "WINDOW") > 0; }, kWaitMs)) << "openbox did not take the screen";
    auto active = [&] { return static_cast<unsigned long>(x11.Property32(0, "_NET_ACTIVE_WINDOW", "WINDOW")); };
    auto top = [&] {
        const std::vector<long> stacking = x11.Property32Items(0, "_NET_CLIENT_LIST_STACKING", "WINDOW", 64);
        return stacking.empty() ? 0ul : static_cast<unsigned long>(stacking.back());
    };

    QProcess* player = sandbox.Start({ green });
    QString strFound;
    ASSERT_TRUE(WaitUntil([&] { return XdoTool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--pid"), QString::number(player->processId()) }, &strFound); }, kWaitMs));
    const unsigned long w = strFound.section(QLatin1Char('\n'), 0, 0).toULong();
    // The window takes the clip's size once it plays; the middle of its video area is green
    // where the player is on top.
    auto centre = [&] { return QPoint(screen.Geometry(w).width() / 2, screen.Geometry(w).height() / 2 - 10); };
    auto showsGreen = [&] { return IsGreen(screen.ColourAt(w, centre())); };
    ASSERT_TRUE(WaitUntil(showsGreen, kWaitMs)) << qPrintable(screen.Describe(w, centre()));

    // Another program's window over it, active.
    QWidget cover;
    cover.setGeometry(screen.Geometry(w).adjusted(-20, -20, 20, 20));
    cover.show();
    ASSERT_TRUE(WaitUntil([&] { return XdoTool({ QStringLiteral("windowactivate"), QStringLiteral("--sync"), QString::number(cover.winId()) }) && active() == cover.winId(); }, kWaitMs));
    ASSERT_TRUE(WaitUntil([&] { return !showsGreen(); }, kWaitMs)) << "the other window does not cover the player";

    CallRoot(QStringLiteral("Raise"));
    EXPECT_TRUE(WaitUntil([&] { return active() == w && top() == w; }, kWaitMs)) << "active " << active() << ", top " << top() << ", player " << w;
    EXPECT_TRUE(WaitUntil(showsGreen, kWaitMs)) << qPrintable(screen.Describe(w, centre()));

    CallRoot(QStringLiteral("Quit"));
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWaitMs));
    wm.kill();
    wm.waitForFinished(5000);
}

// Under a Wayland compositor (weston drawing into a window of the test's X server, on the
// test's bus): the player starts, shows its window and plays, moves by a drag on its title
// strip and grows by a drag on its corner (the compositor does both), a later start hands its
// file over, and Quit ends it. Weston's window is looked at and driven with the X pointer.
TEST_F(DesktopE2ETest, WaylandSessionShowsPlaysMovesResizesHandsOffAndQuits)
{
    const QString first = TestMedia::VideoWithSound(30.0);
    const QString second = TestMedia::SolidColor(QStringLiteral("green"), 30.0, 64, 48, true);
    ASSERT_FALSE(first.isEmpty() || second.isEmpty());
    // The compositor's socket lies in the runtime folder the player is given. Its desktop is
    // one dark colour, without a panel: whatever else shows is the player's window.
    const QString runtime = sandbox.Root() + QStringLiteral("/run");
    const QString ini = sandbox.Root() + QStringLiteral("/weston.ini");
    QFile iniFile(ini);
    ASSERT_TRUE(iniFile.open(QIODevice::WriteOnly));
    iniFile.write("[core]\nidle-time=0\n[shell]\npanel-position=none\nbackground-color=0xff203040\nlocking=false\nanimation=none\nstartup-animation=none\n");
    iniFile.close();
    const QRgb desktop = qRgb(0x20, 0x30, 0x40);
    QProcess weston;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    weston.setProcessEnvironment(env);
    weston.setProcessChannelMode(QProcess::MergedChannels);
    weston.start(QStringLiteral("weston"), { QStringLiteral("--backend=x11-backend.so"), QStringLiteral("--use-pixman"), QStringLiteral("--config=") + ini, QStringLiteral("--socket=orbel-test"), QStringLiteral("--width=1600"), QStringLiteral("--height=1000") });
    ASSERT_TRUE(weston.waitForStarted(5000));
    WaitUntil([&] { return QFile::exists(runtime + QStringLiteral("/orbel-test")) || weston.state() == QProcess::NotRunning; }, kWaitMs);
    const QString strStart = QString::fromUtf8(weston.readAll());
    if (weston.state() == QProcess::NotRunning && strStart.contains(QRegularExpression(QStringLiteral("Failed to load module[^\n]*x11-backend"))))
        GTEST_SKIP() << "weston has no X11 back end on this machine: " << qPrintable(strStart);
    ASSERT_TRUE(QFile::exists(runtime + QStringLiteral("/orbel-test"))) << "weston made no socket; " << qPrintable(strStart);
    QString strOutput;
    ASSERT_TRUE(WaitUntil([&] { return XdoTool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--class"), QStringLiteral("^Weston Compositor$") }, &strOutput); }, kWaitMs))
        << "no window of weston's; " << qPrintable(strStart + QString::fromUtf8(weston.readAll()));
    const unsigned long output = strOutput.section(QLatin1Char('\n'), 0, 0).toULong();
    const QRect rcOutput = screen.Geometry(output);
    const QPoint ptOutput = rcOutput.topLeft();
    // The pointer comes onto weston's window from outside, as a hand brings it: weston takes
    // the pointer as its own only when it enters.
    ASSERT_TRUE(XdoTool({ QStringLiteral("mousemove"), QString::number(rcOutput.right() + 20), QString::number(rcOutput.bottom() + 20), QStringLiteral("sleep"), QStringLiteral("0.1"),
        QStringLiteral("mousemove"), QString::number(ptOutput.x() + 2), QString::number(ptOutput.y() + 2) }));
    // What weston's window shows.
    const QString shotPath = sandbox.Root() + QStringLiteral("/output.png");
    auto shoot = [&] {
        QFile::remove(shotPath);
        QProcess::execute(QStringLiteral("import"), { QStringLiteral("-window"), QString::number(output), shotPath });
        return QImage(shotPath).convertToFormat(QImage::Format_RGB32);
    };
    // The player's window on the output: the rows and columns that are mostly not the desktop
    // (weston's pointer is too small to count).
    auto windowIn = [&](const QImage& shot) {
        std::vector<int> rows(shot.height()), columns(shot.width());
        for (int y = 0; y < shot.height(); ++y) {
            for (int x = 0; x < shot.width(); ++x) {
                const bool bOther = shot.pixel(x, y) != desktop;
                rows[y] += bOther;
                columns[x] += bOther;
            }
        }
        const auto isWindow = [](int n) { return n > 100; };
        const auto top = std::find_if(rows.begin(), rows.end(), isWindow);
        const auto left = std::find_if(columns.begin(), columns.end(), isWindow);
        if (top == rows.end())
            return QRect();
        const int nBottom = int(std::find_if(rows.rbegin(), rows.rend(), isWindow).base() - rows.begin());
        const int nRight = int(std::find_if(columns.rbegin(), columns.rend(), isWindow).base() - columns.begin());
        return QRect(QPoint(int(left - columns.begin()), int(top - rows.begin())), QPoint(nRight - 1, nBottom - 1));
    };
    // Pixels of strong colour in a rectangle of the shot: the test picture's bars have them,
    // the desktop and the frame do not.
    auto colourful = [](const QImage& shot, const QRect& rc) {
        int n = 0;
        for (int y = rc.top(); y <= rc.bottom(); ++y) {
            for (int x = rc.left(); x <= rc.right(); ++x) {
                const QRgb p = shot.pixel(x, y);
                n += std::max({ qRed(p), qGreen(p), qBlue(p) }) - std::min({ qRed(p), qGreen(p), qBlue(p) }) > 150;
            }
        }
        return n;
    };
    // A press, a move by `by` in steps as a hand makes it, and a release.
    auto drag = [&](QPoint ptAt, QPoint by) {
        const QPoint pt = ptOutput + ptAt;
        QStringList args { QStringLiteral("mousemove"), QString::number(pt.x()), QString::number(pt.y()), QStringLiteral("mousedown"), QStringLiteral("1") };
        for (int i = 1; i <= 10; ++i)
            args << QStringLiteral("sleep") << QStringLiteral("0.05") << QStringLiteral("mousemove") << QString::number(pt.x() + by.x() * i / 10) << QString::number(pt.y() + by.y() * i / 10);
        args << QStringLiteral("sleep") << QStringLiteral("0.3") << QStringLiteral("mouseup") << QStringLiteral("1") << QStringLiteral("mousemove") << QString::number(ptOutput.x() + 2) << QString::number(ptOutput.y() + 2);
        ASSERT_TRUE(XdoTool(args));
    };
    // The report of a failed check: where the window is, and where the shot of it was saved.
    auto report = [&](const QImage& shot, const QString& name) {
        QDir().mkpath(QFileInfo(FailureShotPath(name)).path());
        shot.save(FailureShotPath(name));
        const QRect rc = windowIn(shot);
        return QStringLiteral("window at %1,%2 size %3x%4; %5").arg(rc.x()).arg(rc.y()).arg(rc.width()).arg(rc.height()).arg(FailureShotPath(name));
    };

    sandbox.SetLauncher({ QStringLiteral("env"), QStringLiteral("QT_QPA_PLATFORM=wayland"), QStringLiteral("WAYLAND_DISPLAY=orbel-test") });
    QProcess* player = sandbox.Start({ first });
    ASSERT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("status") }) == QLatin1String("Playing"); }, kWaitMs));
    const double dStart = Ctl({ QStringLiteral("position") }).toDouble();
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("position") }).toDouble() > dStart + 1.0; }, kWaitMs)) << "the position stays at " << dStart;
    // The window is on the output, and the video surface shows the clip's coloured bars in it
    // (the 160 by 120 clip shows at twice its size).
    QImage shot;
    QRect rcStart;
    ASSERT_TRUE(WaitUntil([&] {
        shot = shoot();
        rcStart = windowIn(shot);
        return colourful(shot, rcStart) > 20000;
    },
        kWaitMs))
        << "no window or no picture on the output; " << qPrintable(report(shot, QStringLiteral("wayland-player")));

    // A drag on the title strip, toward the middle of the output (the compositor placed the
    // window where it liked), moves the window and its picture by the drag's distance.
    const QSize szOutput = shot.size();
    const QPoint by(rcStart.center().x() < szOutput.width() / 2 ? 120 : -120, rcStart.center().y() < szOutput.height() / 2 ? 90 : -90);
    drag(rcStart.topLeft() + QPoint(rcStart.width() / 2, 15), by);
    const QRect rcMoved = rcStart.translated(by);
    auto shows = [&](const QRect& rc) {
        return WaitUntil([&] {
            shot = shoot();
            return windowIn(shot) == rc && colourful(shot, rc) > 20000 && colourful(shot, rc) == colourful(shot, shot.rect());
        },
            kWaitMs);
    };
    EXPECT_TRUE(shows(rcMoved)) << "the window is not where the drag took it, from " << rcStart.x() << "," << rcStart.y() << " by " << by.x() << "," << by.y() << "; " << qPrintable(report(shot, QStringLiteral("wayland-move")));
    // A drag on the bottom right corner makes it larger by the drag's distance.
    drag(rcMoved.bottomRight() - QPoint(2, 2), QPoint(100, 80));
    EXPECT_TRUE(shows(rcMoved.adjusted(0, 0, 100, 80))) << "the window did not grow with the drag; " << qPrintable(report(shot, QStringLiteral("wayland-resize")));
    report(shot, QStringLiteral("wayland-player"));

    // A later start hands its file to the running player and ends.
    QProcess* later = sandbox.Start({ second });
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(later, kWaitMs));
    EXPECT_EQ(later->exitCode(), 0);
    EXPECT_TRUE(WaitUntil([&] { return Ctl({ QStringLiteral("metadata"), QStringLiteral("xesam:title") }) == NameOf(second); }, kWaitMs));

    CallRoot(QStringLiteral("Quit"));
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, kWaitMs));
    EXPECT_EQ(player->exitCode(), 0);
    weston.terminate();
    weston.waitForFinished(5000);
}

} // namespace

#include "DesktopE2ETest.moc"
