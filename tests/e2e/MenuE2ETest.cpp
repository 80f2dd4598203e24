// The context menu of the real program under X, used as a person does: opened by a right
// click, walked with the keys, its choices seen in the window's size, in its check marks on
// the screen and in the options the program saves.
#include "PlayerProcess.h"

#include "support/TestMedia.h"
#include "support/TestPaths.h"
#include "support/WideFileText.h"

#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>

using namespace orbeltest;

namespace {

const QString kClass = QStringLiteral("QKOrbelPlayerGuiFrame");
const QString kMenu = QStringLiteral("QKMenu");
constexpr int kWindowMs = 20000;

// Rows of the context menu, as client rectangles of its window: 25 pixels high, separators 5,
// inside a one-pixel frame.
QRect MenuRow(int nRow)
{
    static constexpr int kHeights[] = { 25, 5, 25, 25, 25, 5, 25, 25, 25, 5, 25 };
    int y = 1;
    for (int i = 0; i < nRow; ++i)
        y += kHeights[i];
    return QRect(1, y, 100, kHeights[nRow]);
}

class MenuE2ETest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sandbox.IsValid()) << "could not copy the program from " << qPrintable(BinDir());
        ASSERT_TRUE(screen.IsOpen()) << "no X display";
    }

    unsigned long StartPlayer(const QStringList& args)
    {
        player = sandbox.Start(args);
        const auto windows = screen.WaitForWindows(kClass, 1, kWindowMs);
        return windows.size() == 1 ? windows.front() : 0;
    }

    // A right click at a client point of the window, and the menu that comes of it.
    unsigned long RightClick(unsigned long w, QPoint pt)
    {
        const QRect rc = screen.Geometry(w);
        QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("mousemove"), QString::number(rc.x() + pt.x()), QString::number(rc.y() + pt.y()), QStringLiteral("click"), QStringLiteral("3") });
        const auto menus = screen.WaitForWindows(kMenu, 1, 5000);
        return menus.size() == 1 ? menus.front() : 0;
    }

    // Keys go to the open menu, which holds the keyboard.
    static void Key(const char* pszKeysym)
    {
        QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("key"), QString::fromLatin1(pszKeysym) });
    }

    // Whether the row shows a check mark: the mark's colour in the left column.
    bool Checked(unsigned long menu, int nRow) const
    {
        const QRect row = MenuRow(nRow);
        const auto pixels = screen.Pixels(menu, QRect(row.left() + 4, row.top() + 6, 15, 10));
        const uint32_t column = screen.Pixels(menu, QRect(row.left() + 22, row.top() + 2, 1, 1)).front();
        int n = 0;
        for (uint32_t p : pixels)
            n += p != column;
        return n > 8;
    }

    PlayerSandbox sandbox;
    ScreenProbe screen;
    QProcess* player { nullptr };
};

TEST_F(MenuE2ETest, RightClickOnTheVideoOpensTheMenuAndWindowSizeByKeysResizes)
{
    const QString clip = TestMedia::SolidColor(QStringLiteral("blue"), 60.0, 200, 160);
    ASSERT_FALSE(clip.isEmpty());
    const unsigned long w = StartPlayer({ clip });
    ASSERT_NE(w, 0u);
    // The window fits the clip at its size (the video area is at least 320 by 240).
    ASSERT_TRUE(WaitUntil([&] { return screen.Geometry(w).size() == QSize(330, 322); }, kWindowMs))
        << qPrintable(screen.Describe(w, QPoint(165, 150)));
    ASSERT_TRUE(WaitUntil([&] { return IsBlue(screen.ColourAt(w, QPoint(165, 150))); }, kWindowMs));

    const unsigned long menu = RightClick(w, QPoint(165, 150));
    ASSERT_NE(menu, 0u) << "no menu after a right click on the video";
    // It opens at the pointer, over the video.
    EXPECT_EQ(screen.Geometry(menu).topLeft(), screen.Geometry(w).topLeft() + QPoint(165, 150));
    Key("w"); // "&Window Size": its sub-menu opens with "&Full Screen" selected
    ASSERT_EQ(screen.WaitForWindows(kMenu, 2, 5000).size(), 2u);
    Key("Down"); // past the separator to "200%"
    Key("Return");
    EXPECT_TRUE(WaitUntil([&] { return screen.Geometry(w).size() == QSize(410, 402); }, kWindowMs))
        << qPrintable(screen.Describe(w, QPoint(5, 5)));
    EXPECT_TRUE(screen.FindWindows(kMenu).empty());
}

TEST_F(MenuE2ETest, ChoicesByPointerAndKeysShowTheirMarksAndExitByItsLetterSavesThem)
{
    const unsigned long w = StartPlayer({});
    ASSERT_NE(w, 0u);
    const QPoint ptTitle(300, 15); // on the title strip, off its buttons

    unsigned long menu = RightClick(w, ptTitle);
    ASSERT_NE(menu, 0u);
    // "Only One Instance Running" is on by default: its mark tells that the menu is painted.
    ASSERT_TRUE(WaitUntil([&] { return Checked(menu, 7); }, 5000));
    EXPECT_FALSE(Checked(menu, 6)); // "&Auto Play Next"
    EXPECT_FALSE(Checked(menu, 8)); // "Always On &Top"
    // With the pointer: over "&Window Size" its sub-menu opens beside it, and a click on its
    // "Do &Nothing" (below four rows and a separator) chooses that.
    const QRect rcMenu = screen.Geometry(menu);
    const QPoint ptSize = rcMenu.topLeft() + MenuRow(3).center();
    QProcess::execute(QStringLiteral("xdotool"), { QStringLiteral("mousemove"), QString::number(ptSize.x()), QString::number(ptSize.y()) });
    const auto menus = screen.WaitForWindows(kMenu, 2, 5000);
    ASSERT_EQ(menus.size(), 2u);
    const unsigned long sub = menus[0] == menu ? menus[1] : menus[0];
    EXPECT_EQ(screen.Geometry(sub).left(), rcMenu.right() + 1);
    screen.Click(sub, QPoint(40, 1 + 25 + 5 + 3 * 25 + 12));
    ASSERT_TRUE(WaitUntil([&] { return screen.FindWindows(kMenu).empty(); }, 5000));

    menu = RightClick(w, ptTitle);
    ASSERT_NE(menu, 0u);
    Key("a");
    ASSERT_TRUE(WaitUntil([&] { return screen.FindWindows(kMenu).empty(); }, 5000));

    menu = RightClick(w, ptTitle);
    ASSERT_NE(menu, 0u);
    EXPECT_TRUE(WaitUntil([&] { return Checked(menu, 6); }, 5000));
    Key("t");
    ASSERT_TRUE(WaitUntil([&] { return screen.FindWindows(kMenu).empty(); }, 5000));

    menu = RightClick(w, ptTitle);
    ASSERT_NE(menu, 0u);
    EXPECT_TRUE(WaitUntil([&] { return Checked(menu, 6) && Checked(menu, 8); }, 5000));
    Key("e"); // "&Exit"
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, 15000)) << "the player did not end";
    EXPECT_EQ(player->exitCode(), 0);
    const QString options = ReadWideFile(sandbox.SkinFolder() + "playeroptions.dat");
    EXPECT_TRUE(options.contains(QStringLiteral("ds=\"3\" bAutoPlayNext=\"1\""))) << qPrintable(options);
    EXPECT_TRUE(options.contains(QStringLiteral("bAlwaysOnTop=\"1\""))) << qPrintable(options);

    // Started again with those options, the window that is on top from its start is the
    // player's own, found by its role, and it stays until it is told to end.
    const unsigned long w2 = StartPlayer({});
    ASSERT_NE(w2, 0u);
    QThread::msleep(1500);
    ASSERT_EQ(player->state(), QProcess::Running) << "the player ended by itself";
    menu = RightClick(w2, ptTitle);
    ASSERT_NE(menu, 0u);
    EXPECT_TRUE(WaitUntil([&] { return Checked(menu, 8); }, 5000));
    Key("e");
    ASSERT_TRUE(PlayerSandbox::WaitForEnd(player, 15000)) << "the player did not end";
}

} // namespace
