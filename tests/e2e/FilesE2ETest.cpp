// The real program under X, given files as a person gives them: previous and next through the
// folder of the file it was started on (Ctrl+Left, Ctrl+Right), files dragged from another
// program and dropped on the picture, and play-next at the end of a file.
#include "PlayerProcess.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"
#include "support/WideFileText.h"

#include <QDir>
#include <QDrag>
#include <QFile>
#include <QMimeData>
#include <QMouseEvent>
#include <QProcess>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
constexpr int kWindowMs = 20000;
constexpr int kChangeMs = 15000;

// A small window of the test, standing for a file manager: a press on it drags its files.
class DragSource : public QWidget
{
public:
    QList<QUrl> urls;
    bool bDone { false };
    Qt::DropAction result { Qt::IgnoreAction };

protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* pDrag = new QDrag(this);
        auto* pMime = new QMimeData;
        pMime->setUrls(urls);
        pDrag->setMimeData(pMime);
        result = pDrag->exec(Qt::CopyAction);
        bDone = true;
    }
};

class FilesE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid()) << "could not copy the program from " << qPrintable(orbeltest::BinDir());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
    }

    // A clip of one colour copied into the test's media folder under a name of the test's.
    QString Clip(const QString& name, const QString& colour, double dSeconds)
    {
        const QString made = TestMedia::SolidColor(colour, dSeconds);
        const QString path = sandbox.Root() + QStringLiteral("/media/") + name;
        QDir().mkpath(sandbox.Root() + QStringLiteral("/media"));
        EXPECT_FALSE(made.isEmpty());
        EXPECT_TRUE(QFile::copy(made, path)) << qPrintable(path);
        return path;
    }

    // The colour in the middle of the video area shows up within the time.
    bool Shows(unsigned long w, bool (*pIs)(const QColor&))
    {
        return WaitUntil([&] {
            const QRect rc = screen.Geometry(w);
            return pIs(screen.ColourAt(w, QPoint(rc.width() / 2, (rc.height() - 51 + 31) / 2)));
        },
            kChangeMs);
    }

    std::string Shot(const char* pszName)
    {
        const QString path = FailureShotPath(QStringLiteral("files-") + QLatin1String(pszName));
        return screen.SaveScreen(path) ? "screenshot: " + path.toStdString() : std::string();
    }

    // Drags the files from a window of the test at the screen's corner onto a client point of
    // the player's window and lets go there, with the mouse as a person does.
    bool DragOnto(unsigned long w, QPoint ptClient, const QStringList& files)
    {
        // The source stays until the test ends: the player reads the dragged names from it
        // after the drop.
        source.urls.clear();
        source.bDone = false;
        for (const QString& f : files)
            source.urls << (f.startsWith(QStringLiteral("https:")) ? QUrl(f) : QUrl::fromLocalFile(f));
        source.setGeometry(0, 0, 80, 80);
        source.show();
        if (!WaitUntil([&] { return source.windowHandle() && source.windowHandle()->isExposed(); }, kWindowMs))
            return false;
        const QPoint pt = screen.Geometry(w).topLeft() + ptClient;
        const QString x = QString::number(pt.x());
        const QString y = QString::number(pt.y());
        // The steps wait for the two programs' exchange about the drag to be done before the
        // next one; the drag's outcome is looked at on the screen, not by time.
        QProcess::startDetached(QStringLiteral("xdotool"),
            { "mousemove", "40", "40", "mousedown", "1", "mousemove", "120", "120", "sleep", "0.3", "mousemove", x, y, "sleep", "0.5",
                "mousemove", QString::number(pt.x() + 4), QString::number(pt.y() + 4), "sleep", "0.5", "mouseup", "1", "mousemove", "0", "0" });
        return WaitUntil([&] { return source.bDone; }, kWindowMs) && source.result == Qt::CopyAction;
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
    DragSource source;
};

TEST_F(FilesE2ETest, FolderWalkDropAndPlayNextAsAPersonUsesThem)
{
    // Three clips of three colours, numbered as a person numbers them.
    const QString one = Clip(QStringLiteral("clip 1.mkv"), QStringLiteral("red"), 60.0);
    Clip(QStringLiteral("clip 2.mkv"), QStringLiteral("green"), 60.0);
    Clip(QStringLiteral("clip 10.mkv"), QStringLiteral("blue"), 60.0);
    ASSERT_TRUE(WriteWideFile(sandbox.SkinFolder() + QStringLiteral("playeroptions.dat"),
        QStringLiteral("<options dr=\"2\" ds=\"1\" bAutoPlayNext=\"1\" bMute=\"1\" bOnlyOneInstance=\"1\"/>")));
    QProcess* player = sandbox.Start({ one });
    const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
    ASSERT_EQ(windows.size(), 1u);
    const unsigned long w = windows.front();
    ASSERT_TRUE(Shows(w, IsRed)) << Shot("start");

    // Next walks the folder in the order a file manager shows it, and wraps; previous from
    // the first wraps to the last.
    screen.PressKey(w, "ctrl+Right");
    EXPECT_TRUE(Shows(w, IsGreen)) << "next from clip 1 is not clip 2; " << Shot("next-2");
    screen.PressKey(w, "ctrl+Right");
    EXPECT_TRUE(Shows(w, IsBlue)) << "next from clip 2 is not clip 10; " << Shot("next-10");
    screen.PressKey(w, "ctrl+Right");
    EXPECT_TRUE(Shows(w, IsRed)) << "next from clip 10 does not wrap to clip 1; " << Shot("next-wrap");
    screen.PressKey(w, "ctrl+Left");
    EXPECT_TRUE(Shows(w, IsBlue)) << "previous from clip 1 is not clip 10; " << Shot("prev-wrap");

    // A web address and three files dropped on the picture: the address is passed over as a
    // file that does not play, and the first file plays. It is short, and at its end the
    // player goes on to the next of the three by itself.
    const QString shortGreen = Clip(QStringLiteral("short green.mkv"), QStringLiteral("green"), 2.5);
    const QString red = Clip(QStringLiteral("dropped red.mkv"), QStringLiteral("red"), 60.0);
    const QString blue = Clip(QStringLiteral("dropped blue.mkv"), QStringLiteral("blue"), 60.0);
    const QRect rc = screen.Geometry(w);
    ASSERT_TRUE(DragOnto(w, QPoint(rc.width() / 2, rc.height() / 3), { QStringLiteral("https://example.org/clip.mkv"), shortGreen, red, blue })) << "the player did not take the drop; " << Shot("drop");
    EXPECT_TRUE(Shows(w, IsGreen)) << "the first dropped file does not play; " << Shot("dropped-first");
    EXPECT_TRUE(Shows(w, IsRed)) << "the end of the first file did not go on to the second; " << Shot("play-next");

    // A drop of nothing playable brings the message, and what played goes on playing.
    const QString noise = TestMedia::RandomBytes();
    ASSERT_TRUE(DragOnto(w, QPoint(rc.width() / 2, rc.height() / 3), { noise })) << Shot("drop-noise");
    const auto tips = screen.WaitForWindows(QStringLiteral("QKOrbelDialog"), 1, kWindowMs);
    ASSERT_EQ(tips.size(), 1u) << "no message came; " << Shot("no-tips");
    EXPECT_EQ(screen.WindowName(tips.front()), QStringLiteral("Tips"));
    screen.PressKey(tips.front(), "Return");
    EXPECT_EQ(screen.WaitForWindows(QStringLiteral("QKOrbelDialog"), 0, kWindowMs).size(), 0u);
    const QRect rcElapsed(5, screen.Geometry(w).height() - 49, 50, 16);
    const auto elapsed = screen.Pixels(w, rcElapsed);
    EXPECT_TRUE(WaitUntil([&] { return screen.Pixels(w, rcElapsed) != elapsed; }, kChangeMs)) << "the playback before the drop ended; " << Shot("after-noise");
    EXPECT_TRUE(Shows(w, IsRed)) << "the picture is covered after the message; " << Shot("after-noise-picture");

    screen.PressKey(w, "ctrl+e");
    EXPECT_TRUE(PlayerSandbox::WaitForEnd(player, kWindowMs));
}

} // namespace
