// The real program under X: first start, hand-off to a running player, the process roles,
// and the options written at the end.
#include "PlayerProcess.h"

#include "support/WideFileText.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
// Long enough to be still playing when a test looks.
constexpr double kClipSeconds = 60.0;
// A window needs this long to come up, a second start this long to hand over and end (more
// under the sanitizers).
constexpr int kWindowMs = 20000;
constexpr int kColourMs = 20000;

// The centre of the video area of a window.
QPoint VideoCentre(const QRect& rcWindow)
{
    return QPoint(rcWindow.width() / 2, 31 + (rcWindow.height() - 82) / 2);
}

class StartupE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid()) << "could not install the build from " << qPrintable(orbeltest::BinDir());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
        red = TestMedia::SolidColor(QStringLiteral("red"), kClipSeconds, 64, 48, true);
        green = TestMedia::SolidColor(QStringLiteral("green"), kClipSeconds, 64, 48, true);
        blue = TestMedia::SolidColor(QStringLiteral("blue"), kClipSeconds, 64, 48, true);
        ASSERT_FALSE(red.isEmpty());
        ASSERT_FALSE(green.isEmpty());
        ASSERT_FALSE(blue.isEmpty());
    }

    // Starts the first player on a file and waits until its picture shows.
    unsigned long StartPlaying(const QString& file, bool (*isColour)(const QColor&))
    {
        first = sandbox.Start({ file });
        const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
        if (windows.size() != 1)
            return 0;
        const unsigned long w = windows.front();
        if (!WaitForColour(w, isColour))
            return 0;
        return w;
    }

    // When the colour does not come, the report says what the window showed, and what the
    // screen showed is saved.
    bool WaitForColour(unsigned long w, bool (*isColour)(const QColor&), int nMs = kColourMs)
    {
        if (WaitUntil([&] { return isColour(screen.ColourAt(w, VideoCentre(screen.Geometry(w)))); }, nMs))
            return true;
        const QString name = QStringLiteral("startup-") + QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name());
        ADD_FAILURE() << qPrintable(ColourFailureReport(screen, { w }, VideoCentre, name));
        return false;
    }

    // The picture stays of one colour for a while.
    bool StaysColour(unsigned long w, bool (*isColour)(const QColor&), int nMs)
    {
        return !WaitUntil([&] { return !isColour(screen.ColourAt(w, VideoCentre(screen.Geometry(w)))); }, nMs);
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
    QProcess* first { nullptr };
    QString red;
    QString green;
    QString blue;
};

TEST_F(StartupE2ETest, StartWithoutFilesShowsTheWindowAndPlaysNothing)
{
    sandbox.Start({});
    const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
    ASSERT_EQ(windows.size(), 1u);
    const QRect rc = screen.Geometry(windows.front());
    EXPECT_EQ(rc.size(), QSize(866, 562));
    // Centred on the 1920 by 1080 screen of the test.
    EXPECT_NEAR(rc.center().x(), 960, 2);
    EXPECT_NEAR(rc.center().y(), 540, 2);
    // The start-up list was written with no entry, and the video area stays black.
    EXPECT_TRUE(WaitUntil([&] { return ReadWideFile(sandbox.SkinFolder() + "playercommand.dat").contains("<startupfiles/>"); }, 5000));
    EXPECT_TRUE(StaysColour(
        windows.front(), [](const QColor& c) { return c.red() < 30 && c.green() < 30 && c.blue() < 30; }, 1500));
}

TEST_F(StartupE2ETest, FirstStartPlaysItsFileInAWindowFittedToTheVideo)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u) << "the red clip never showed";
    // A 64 by 48 video at 100% gets the smallest video area, 320 by 240, and the window
    // around it.
    EXPECT_TRUE(WaitUntil([&] { return screen.Geometry(w).size() == QSize(330, 322); }, 5000)) << screen.Geometry(w).width() << "x" << screen.Geometry(w).height();
    EXPECT_TRUE(IsRed(screen.ColourAt(w, QPoint(10, 40))));
    EXPECT_TRUE(IsRed(screen.ColourAt(w, QPoint(320, 265))));
}

TEST_F(StartupE2ETest, SecondStartHandsItsFileToTheRunningPlayer)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    EXPECT_EQ(sandbox.RunToEnd({ blue }), 0);
    EXPECT_TRUE(WaitForColour(w, IsBlue)) << "the running player did not switch to the handed file";
    EXPECT_EQ(screen.FindWindows(kClass).size(), 1u);
    EXPECT_EQ(first->state(), QProcess::Running);
}

TEST_F(StartupE2ETest, SecondStartWithoutFilesLeavesPlaybackRunning)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    EXPECT_EQ(sandbox.RunToEnd({}), 0);
    EXPECT_TRUE(ReadWideFile(sandbox.SkinFolder() + "playercommand.dat").contains("<startupfiles/>"));
    EXPECT_TRUE(StaysColour(w, IsRed, 1500));
    EXPECT_EQ(screen.FindWindows(kClass).size(), 1u);
}

TEST_F(StartupE2ETest, HandOffSkipsWhatIsNotMediaAndPlaysTheNextFile)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    const QString notMedia = TestMedia::RandomBytes();
    ASSERT_FALSE(notMedia.isEmpty());
    EXPECT_EQ(sandbox.RunToEnd({ notMedia, QStringLiteral("/no/such/file.mp4"), green, blue }), 0);
    EXPECT_TRUE(WaitForColour(w, IsGreen));
    // The list holds what existed, in order; the missing file was never written.
    const QString list = ReadWideFile(sandbox.SkinFolder() + "playercommand.dat");
    EXPECT_EQ(list.count(QStringLiteral("<item ")), 3);
    EXPECT_FALSE(list.contains(QStringLiteral("/no/such/file.mp4")));
}

TEST_F(StartupE2ETest, NonAsciiPathSurvivesTheHandOff)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    const QString odd = sandbox.Root() + QStringLiteral("/Blå ünï 日本語 €.mp4");
    ASSERT_TRUE(QFile::copy(blue, odd));
    EXPECT_EQ(sandbox.RunToEnd({ odd }), 0);
    EXPECT_TRUE(WaitForColour(w, IsBlue));
    EXPECT_TRUE(ReadWideFile(sandbox.SkinFolder() + "playercommand.dat").contains(QStringLiteral("日本語 €.mp4")));
}

TEST_F(StartupE2ETest, RelativePathMeansTheFolderOfTheStartThatGotIt)
{
    // The running player works in another folder, where a file of the same name is red.
    const QString folder = sandbox.Root() + QStringLiteral("/b");
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(blue, folder + QStringLiteral("/same.mp4")));
    ASSERT_TRUE(QFile::copy(red, sandbox.Root() + QStringLiteral("/same.mp4")));
    const unsigned long w = StartPlaying(green, IsGreen);
    ASSERT_NE(w, 0u);
    QProcess* later = sandbox.Start({ QStringLiteral("same.mp4") }, folder);
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(later, kWindowMs));
    EXPECT_TRUE(WaitForColour(w, IsBlue)) << "the file of the running player's folder played";
    EXPECT_TRUE(ReadWideFile(sandbox.SkinFolder() + "playercommand.dat").contains(folder + QStringLiteral("/same.mp4")));
}

TEST_F(StartupE2ETest, PathLongerThan2048BytesPlays)
{
    // Legal on Linux up to 4095 bytes: folders of 200-byte names, about 3000 bytes in all.
    QString folder = sandbox.Root();
    while (folder.toUtf8().size() < 2900) {
        folder += QLatin1Char('/') + QString(200, QLatin1Char('d'));
        ASSERT_TRUE(QDir().mkpath(folder));
    }
    const QString longBlue = folder + QStringLiteral("/blue.mp4");
    ASSERT_GT(longBlue.toUtf8().size(), 2900);
    ASSERT_TRUE(QFile::copy(blue, longBlue));
    const unsigned long w = StartPlaying(green, IsGreen);
    ASSERT_NE(w, 0u);
    EXPECT_EQ(sandbox.RunToEnd({ longBlue }), 0);
    EXPECT_TRUE(WaitForColour(w, IsBlue));
}

TEST_F(StartupE2ETest, NameThatIsNotUtf8PlaysWithItsBytes)
{
    // Linux file names are bytes; this one is Latin-1 ("blå.mp4" from an old archive). A
    // QString cannot carry it to a process, so the shell hands it over.
    const QByteArray name = QByteArrayLiteral("bl\xe5.mp4");
    QFile in(blue);
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    const QByteArray data = in.readAll();
    const QByteArray path = QFile::encodeName(sandbox.Root()) + '/' + name;
    FILE* out = std::fopen(path.constData(), "wb");
    ASSERT_NE(out, nullptr);
    ASSERT_EQ(std::fwrite(data.constData(), 1, static_cast<size_t>(data.size()), out), static_cast<size_t>(data.size()));
    std::fclose(out);
    const unsigned long w = StartPlaying(green, IsGreen);
    ASSERT_NE(w, 0u);
    QProcess later;
    later.setProcessEnvironment(sandbox.Environment());
    later.setWorkingDirectory(sandbox.Root());
    later.setProcessChannelMode(QProcess::ForwardedChannels);
    later.start(QStringLiteral("/bin/sh"), { QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$(printf 'bl\\345.mp4')\""), sandbox.AppFolder() + QStringLiteral("orbel-player") });
    ASSERT_TRUE(later.waitForFinished(kWindowMs));
    EXPECT_EQ(later.exitCode(), 0);
    EXPECT_TRUE(WaitForColour(w, IsBlue)) << "the file with a Latin-1 name did not play";
}

TEST_F(StartupE2ETest, WithSingleInstanceOffTwoPlayersRunEachWithItsOwnFile)
{
    ASSERT_TRUE(WriteWideFile(sandbox.SkinFolder() + "playeroptions.dat", QStringLiteral("<options bOnlyOneInstance=\"0\" ds=\"1\"/>")));
    // Started together, the second replaces the list file before the first reads anything.
    // The clips differ in size, and each window is fitted to the video it plays.
    const QString bigBlue = TestMedia::SolidColor(QStringLiteral("blue"), kClipSeconds, 640, 480, true);
    ASSERT_FALSE(bigBlue.isEmpty());
    QProcess* a = sandbox.Start({ red });
    QProcess* b = sandbox.Start({ bigBlue });
    const auto windows = screen.WaitForWindows(kClass, 2, kWindowMs);
    ASSERT_EQ(windows.size(), 2u);
    const auto sizes = [&] {
        QList<QSize> list { screen.Geometry(windows[0]).size(), screen.Geometry(windows[1]).size() };
        std::sort(list.begin(), list.end(), [](const QSize& x, const QSize& y) { return x.width() < y.width(); });
        return list;
    };
    EXPECT_TRUE(WaitUntil([&] { return sizes() == QList<QSize> { QSize(330, 322), QSize(650, 562) }; }, kColourMs))
        << sizes()[0].width() << "x" << sizes()[0].height() << ", " << sizes()[1].width() << "x" << sizes()[1].height();
    EXPECT_EQ(a->state(), QProcess::Running);
    EXPECT_EQ(b->state(), QProcess::Running);
}

TEST_F(StartupE2ETest, ManyNearSimultaneousStartsLeaveOnePlayerPlayingAHandedFile)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    std::vector<QProcess*> later;
    for (int i = 0; i < 20; ++i)
        later.push_back(sandbox.Start({ i % 2 ? green : blue }));
    for (QProcess* p : later) {
        ASSERT_TRUE(PlayerSandbox::WaitForEnd(p, 60000));
        EXPECT_EQ(p->exitCode(), 0);
    }
    EXPECT_EQ(screen.FindWindows(kClass).size(), 1u);
    EXPECT_EQ(first->state(), QProcess::Running);
    EXPECT_TRUE(WaitForColour(w, [](const QColor& c) { return IsGreen(c) || IsBlue(c); }));
}

TEST_F(StartupE2ETest, KilledFirstPlayerDoesNotBlockTheNextStart)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    ::kill(static_cast<pid_t>(first->processId()), SIGKILL);
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(first, 5000));
    // Its socket file is still there; the next start must not take it for a running player.
    QProcess* next = sandbox.Start({ blue });
    const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
    ASSERT_EQ(windows.size(), 1u);
    EXPECT_TRUE(WaitForColour(windows.front(), IsBlue));
    EXPECT_EQ(next->state(), QProcess::Running);
}

TEST_F(StartupE2ETest, ClosingWritesAllTenOptionsWithTheDeliberateRules)
{
    // A stored display ratio never takes effect, and is written back as the default; the
    // rest is kept. A hand-edited volume above 100 is kept as it is.
    ASSERT_TRUE(WriteWideFile(sandbox.SkinFolder() + "playeroptions.dat",
        QStringLiteral("<options dr=\"5\" ds=\"1\" bAutoPlayNext=\"1\" bMute=\"1\" bOnlyOneInstance=\"1\" dVolumeScale=\"33.33333\" nYDel=\"4\"/>")));
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    screen.RequestClose(w);
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(first, 15000));
    EXPECT_EQ(first->exitCode(), 0);
    EXPECT_EQ(ReadWideFile(sandbox.SkinFolder() + "playeroptions.dat"),
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
                       "<options dr=\"0\" ds=\"1\" bAutoPlayNext=\"1\" bMute=\"1\" bOnlyOneInstance=\"1\" "
                       "dVolumeScale=\"33.3333\" bAlwaysOnTop=\"0\" nYDel=\"4\" nUDel=\"0\" nVDel=\"0\"/>\r\n"));
}

TEST_F(StartupE2ETest, EscapeEndsThePlayerAndASecondStartNeverWritesOptions)
{
    const unsigned long w = StartPlaying(red, IsRed);
    ASSERT_NE(w, 0u);
    // A start that hands over ends without saving: the file does not exist yet.
    EXPECT_EQ(sandbox.RunToEnd({ blue }), 0);
    EXPECT_FALSE(QFileInfo::exists(sandbox.SkinFolder() + "playeroptions.dat"));
    screen.PressKey(w, "Escape");
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(first, 15000));
    EXPECT_EQ(first->exitCode(), 0);
    const QString options = ReadWideFile(sandbox.SkinFolder() + "playeroptions.dat");
    for (const char* key : { "dr", "ds", "bAutoPlayNext", "bMute", "bOnlyOneInstance", "dVolumeScale", "bAlwaysOnTop", "nYDel", "nUDel", "nVDel" })
        EXPECT_TRUE(options.contains(QStringLiteral(" %1=\"").arg(QLatin1String(key)))) << key;
    // With the first player gone, a new start runs a window of its own at once.
    sandbox.Start({});
    EXPECT_EQ(screen.WaitForWindows(kClass, 1, kWindowMs).size(), 1u);
}

} // namespace
