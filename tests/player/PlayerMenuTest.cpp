// The main window's context menu as the window shows it: built once, its check marks set from
// the options at each opening, the timers resting while it is open, and where a right click
// opens it.
#include "PlayerFixture.h"
#include "platform/QKMessages.h"
#include "player/CQKPlayerDlg.h"
#include "player/QKPlayerOptions.h"
#include "services/CQKMenuWnd.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"

#include <QTimer>
#include <gtest/gtest.h>

namespace {

using orbeltest::HostDriver;

// The window's video surface makes an OpenGL context.
const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

class PlayerMenuTest : public orbeltest::PlayerFixture
{
protected:
    static CQKMenuWnd* Level(int i) { return dynamic_cast<CQKMenuWnd*>(CQKMenuManager::GetMenuWnd(i)); }

    // What an opening of the menu shows: the handles of the first menu and of the sub-menu
    // that opened by `chSub`'s letter, and the check marks of both, row by row.
    struct tagShown
    {
        QKHMENU hMenu { 0 };
        QKHMENU hSub { 0 };
        std::vector<bool> checks;
        std::vector<bool> subChecks;
        bool bCursorTimer { true };
        bool bBarsTimer { true };
    };

    tagShown Open(CQKPlayerDlg& dlg, int qtKeyOfSub, QPoint ptClient = QPoint(300, 15))
    {
        tagShown shown;
        // Fires inside the menu's own loop; where no menu opens it goes with this scope.
        QTimer inMenu;
        inMenu.setSingleShot(true);
        QObject::connect(&inMenu, &QTimer::timeout, [&] {
            if (!Level(0))
                return;
            shown.bCursorTimer = dlg.HasTimer(QKTIMER_CURSOR);
            shown.bBarsTimer = dlg.HasTimer(QKTIMER_BARS);
            HostDriver keys(*Level(0));
            keys.Key(qtKeyOfSub);
            shown.hMenu = Level(0)->Menu();
            for (const auto& row : Level(0)->Rows())
                shown.checks.push_back(row.nState & MFS_CHECKED);
            if (Level(1)) {
                shown.hSub = Level(1)->Menu();
                for (const auto& row : Level(1)->Rows())
                    shown.subChecks.push_back(row.nState & MFS_CHECKED);
            }
            keys.Key(Qt::Key_Escape);
            keys.Key(Qt::Key_Escape);
        });
        inMenu.start(0);
        HostDriver(dlg).Click(ptClient, Qt::RightButton);
        return shown;
    }

    static void RunWindow(CQKPlayerDlg& dlg, const std::function<void()>& script)
    {
        QTimer::singleShot(0, [&] {
            script();
            dlg.OnCancel();
        });
        dlg.DoModal();
    }
};

TEST_F(PlayerMenuTest, MenuIsBuiltOnceAndItsMarksFollowTheOptions)
{
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        const tagShown first = Open(dlg, Qt::Key_W);
        ASSERT_NE(first.hMenu, 0);
        ASSERT_EQ(first.checks.size(), 11u);
        EXPECT_EQ(first.checks, (std::vector<bool> { false, false, false, false, false, false, false, true, false, false, false }));
        // ds 1 (100%) of the built-in options.
        EXPECT_EQ(first.subChecks, (std::vector<bool> { false, false, false, true, false, false }));
        EXPECT_FALSE(first.bCursorTimer);
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_CURSOR));

        QKPlayerOptions::ds = 3;
        QKPlayerOptions::dr = 7;
        QKPlayerOptions::bAutoPlayNext = 1;
        QKPlayerOptions::bOnlyOneInstance = 0;
        QKPlayerOptions::bMute = 1;
        const tagShown second = Open(dlg, Qt::Key_W);
        EXPECT_EQ(second.hMenu, first.hMenu);
        EXPECT_EQ(second.hSub, first.hSub);
        EXPECT_EQ(second.checks, (std::vector<bool> { false, false, false, false, false, false, true, false, false, false, false }));
        EXPECT_EQ(second.subChecks, (std::vector<bool> { false, false, false, false, false, true }));
        EXPECT_EQ(Open(dlg, Qt::Key_R).subChecks, (std::vector<bool> { false, false, false, false, false, false, false, false, true }));
        EXPECT_EQ(Open(dlg, Qt::Key_C).subChecks, (std::vector<bool> { false, false, false, false, true }));

        // In full screen the bars' timer rests too, and runs again afterwards.
        dlg.m_bFullScreen = 1;
        dlg.SetTimer(QKTIMER_BARS, 300);
        const tagShown full = Open(dlg, Qt::Key_W);
        EXPECT_FALSE(full.bBarsTimer);
        EXPECT_TRUE(full.subChecks.at(0)); // "&Full Screen"
        EXPECT_TRUE(dlg.HasTimer(QKTIMER_BARS));
        dlg.m_bFullScreen = 0;
        dlg.KillTimer(QKTIMER_BARS);

        // A right click on the title strip's buttons or on the panel opens nothing.
        EXPECT_EQ(Open(dlg, Qt::Key_W, QPoint(dlg.GetClientRect().width() - 15, 15)).hMenu, 0);
        EXPECT_EQ(Open(dlg, Qt::Key_W, QPoint(100, dlg.GetClientRect().height() - 20)).hMenu, 0);
        // In the video area it does.
        EXPECT_NE(Open(dlg, Qt::Key_W, dlg.m_rcVideo.center()).hMenu, 0);

        // The options button opens it under itself, just inside its left and bottom edges.
        QPoint ptMenu;
        QTimer inMenu;
        inMenu.setSingleShot(true);
        QObject::connect(&inMenu, &QTimer::timeout, [&] {
            ASSERT_NE(Level(0), nullptr);
            ptMenu = Level(0)->GetWindowRect().topLeft();
            HostDriver(*Level(0)).Key(Qt::Key_Escape);
        });
        inMenu.start(0);
        dlg.SendMessage(WM_COMMAND, QKCMD_OPTIONS);
        const QRect rcButton = dlg.Manager()->FindControl(QKCMD_OPTIONS, 0)->GetRect();
        EXPECT_EQ(ptMenu, dlg.ClientToScreen(QPoint(rcButton.left() + 1, rcButton.top() + rcButton.height() - 3)));
    });
}

TEST_F(PlayerMenuTest, ChoicesChangeTheOptionsTheyName)
{
    CQKPlayerDlg dlg;
    RunWindow(dlg, [&] {
        dlg.m_nVideoWidth = 0; // no video: the size choices change the mode only
        dlg.OnContextMenuChoice(11);
        EXPECT_EQ(QKPlayerOptions::ds, 3);
        dlg.OnContextMenuChoice(10);
        EXPECT_EQ(QKPlayerOptions::ds, 2);
        dlg.OnContextMenuChoice(8);
        EXPECT_EQ(QKPlayerOptions::ds, 0);
        dlg.OnContextMenuChoice(19);
        EXPECT_EQ(QKPlayerOptions::dr, 7);
        dlg.OnContextMenuChoice(12);
        EXPECT_EQ(QKPlayerOptions::dr, 0);
        dlg.OnContextMenuChoice(21);
        EXPECT_EQ(QKPlayerOptions::bOnlyOneInstance, 0);
        dlg.OnContextMenuChoice(22);
        EXPECT_EQ(QKPlayerOptions::bAlwaysOnTop, 1);
        EXPECT_TRUE(dlg.IsTopmost());
        dlg.OnContextMenuChoice(22);
        EXPECT_FALSE(dlg.IsTopmost());
        dlg.OnContextMenuChoice(0);
        EXPECT_TRUE(dlg.IsWindowVisible());
    });
}

TEST_F(PlayerMenuTest, CloseCommandWhileTheMenuIsOpenEndsTheWindow)
{
    // What a logout does: the close command arrives while the menu waits for the user.
    CQKPlayerDlg dlg;
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, [&] {
            EXPECT_EQ(CQKMenuManager::GetMenuWndCount(), 1);
            dlg.PostMessage(WM_COMMAND, QKCMD_CLOSE, 0);
        });
        dlg.ShowContextMenu(dlg.ClientToScreen(QPoint(300, 15)));
    });
    EXPECT_EQ(dlg.DoModal(), static_cast<int>(QKCMD_CLOSE));
    EXPECT_EQ(CQKMenuManager::GetMenuWndCount(), 0);
}

} // namespace
