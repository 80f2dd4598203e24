// Host windows: messages, timers, painting, lifetime and window state.
#include "platform/QKMessages.h"
#include "support/HostDriver.h"
#include "support/HostRecorder.h"

#include <QImage>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

using orbeltest::HostDriver;
using orbeltest::HostRecorder;

namespace {

// A shown host of 40 by 30 at 100,100 with its records cleared.
class HostWndTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateShown(QRect(100, 100, 40, 30)));
        host.ClearRecords();
    }
    HostRecorder host;
    HostDriver driver { host };
};

} // namespace

TEST_F(HostWndTest, SentMessagesRunAtOncePostedOnesLaterInOrder)
{
    EXPECT_TRUE(host.PostMessage(WM_COMMAND, 21, 0));
    EXPECT_TRUE(host.PostMessage(QKM_SLIDERCHANGED, 7, 1));
    EXPECT_EQ(host.SendMessage(WM_COMMAND, 22, 0), 0);
    ASSERT_EQ(host.vecMessages.size(), 1u);
    EXPECT_EQ(host.vecMessages[0].wParam, 22u);
    HostDriver::Pump();
    ASSERT_EQ(host.vecMessages.size(), 3u);
    EXPECT_EQ(host.vecMessages[1].msg, WM_COMMAND);
    EXPECT_EQ(host.vecMessages[1].wParam, 21u);
    EXPECT_EQ(host.vecMessages[2].msg, QKM_SLIDERCHANGED);
    EXPECT_EQ(host.vecMessages[2].wParam, 7u);
    EXPECT_EQ(host.vecMessages[2].lParam, 1);
}

TEST_F(HostWndTest, MessagePostedFromAnotherThreadArrivesOnTheGuiThread)
{
    std::thread engine([&] {
        for (int i = 0; i < 50; ++i)
            CQKHostWnd::PostMessage(&host, QKM_PLAYEND, static_cast<uintptr_t>(i), 0);
    });
    engine.join();
    ASSERT_TRUE(HostDriver::WaitFor([&] { return host.vecMessages.size() == 50; }));
    for (size_t i = 0; i < 50; ++i) {
        EXPECT_EQ(host.vecMessages[i].msg, QKM_PLAYEND);
        EXPECT_EQ(host.vecMessages[i].wParam, i); // in posting order
        EXPECT_EQ(host.vecMessages[i].thread, std::this_thread::get_id());
    }
}

TEST(HostWndLifetimeTest, PostingToAGoneHostFailsQuietly)
{
    auto host = std::make_unique<HostRecorder>();
    ASSERT_TRUE(host->CreateShown(QRect(100, 100, 50, 40)));
    CQKHostWnd* raw = host.get();
    EXPECT_TRUE(CQKHostWnd::IsWindow(raw));
    host->PostMessage(WM_COMMAND, 1, 0); // still queued when the window goes
    host->DestroyWindow();
    EXPECT_FALSE(host->IsWindow());
    EXPECT_FALSE(CQKHostWnd::IsWindow(raw));
    EXPECT_FALSE(host->PostMessage(WM_COMMAND, 2, 0));
    HostDriver::Pump(20);
    EXPECT_TRUE(host->Commands().empty());
    host.reset();
    // The pointer is dangling now; the registry still answers for it.
    EXPECT_FALSE(CQKHostWnd::IsWindow(raw));
    EXPECT_FALSE(CQKHostWnd::PostMessage(raw, QKM_PLAYEND, 0, 0));
    EXPECT_FALSE(CQKHostWnd::IsWindow(nullptr));
}

TEST_F(HostWndTest, TimersFireByNumberUntilKilledAndRestartWhenSetAgain)
{
    EXPECT_TRUE(host.SetTimer(1, 20));
    EXPECT_TRUE(host.SetTimer(3, 20, true));
    EXPECT_TRUE(host.HasTimer(1));
    auto count = [&](uint32_t id) { return std::count(host.vecTimers.begin(), host.vecTimers.end(), id); };
    ASSERT_TRUE(HostDriver::WaitFor([&] { return count(1) >= 3 && count(3) >= 3; }));
    EXPECT_TRUE(host.KillTimer(1));
    EXPECT_FALSE(host.KillTimer(1));
    EXPECT_FALSE(host.HasTimer(1));
    const auto ones = count(1);
    HostDriver::Pump(100);
    EXPECT_EQ(count(1), ones);
    EXPECT_GT(count(3), 3);
    for (uint32_t id : host.vecTimers)
        EXPECT_TRUE(id == 1 || id == 3) << id;
    host.KillTimer(3);
    host.ClearRecords();
    host.SetTimer(4, 100);
    host.SetTimer(4, 100);
    HostDriver::Pump(250);
    // One timer of 100 ms in 250 ms: two ticks, never four.
    EXPECT_GE(host.vecTimers.size(), 1u);
    EXPECT_LE(host.vecTimers.size(), 3u);
    // A one-shot is a timer its handler kills.
    host.ClearRecords();
    host.KillTimer(4);
    host.onTimer = [&](uint32_t id) { host.KillTimer(id); };
    host.SetTimer(5, 10);
    HostDriver::Pump(120);
    EXPECT_EQ(host.vecTimers, std::vector<uint32_t>({ 5 }));
}

TEST_F(HostWndTest, UpdateWindowFromImagePutsPixelsOnScreenAtOnce)
{
    HostDriver::Pump(20);
    ASSERT_EQ(driver.Screen().pixel(20, 20), host.clrFill);
    const int paints = host.nPaints;

    QImage patch(10, 10, QImage::Format_ARGB32_Premultiplied);
    patch.fill(0xFF00FF00);
    host.UpdateWindowFromImage(patch, QPoint(5, 5));
    // No event loop ran: the pixels are on screen already, and the host was not asked to
    // compose again for them.
    const QImage screen = driver.Screen();
    EXPECT_EQ(screen.pixel(7, 7), 0xFF00FF00u);
    EXPECT_EQ(screen.pixel(14, 14), 0xFF00FF00u);
    EXPECT_EQ(screen.pixel(15, 15), host.clrFill);
    EXPECT_EQ(screen.pixel(30, 20), host.clrFill);
    EXPECT_EQ(host.nPaints, paints);
    EXPECT_EQ(host.HostImage().pixel(7, 7), 0xFF00FF00u);

    // A patch that hangs over the edge is cut, not refused.
    host.UpdateWindowFromImage(patch, QPoint(35, 25));
    EXPECT_EQ(driver.Screen().pixel(39, 29), 0xFF00FF00u);
}

TEST_F(HostWndTest, InvalidateRectAsksForPixelsLater)
{
    HostDriver::Pump(20);
    const int paints = host.nPaints;
    host.clrFill = 0xFFFF0000;
    host.InvalidateRect(nullptr);
    EXPECT_EQ(host.nPaints, paints); // not at once
    ASSERT_TRUE(HostDriver::WaitFor([&] { return host.nPaints > paints; }));
    EXPECT_EQ(driver.Screen().pixel(20, 15), 0xFFFF0000u);

    // UpdateWindow serves what is invalid now.
    host.clrFill = 0xFF0000FF;
    const QRect rc(0, 0, 10, 10);
    host.InvalidateRect(&rc);
    host.UpdateWindow();
    EXPECT_EQ(driver.Screen().pixel(5, 5), 0xFF0000FFu);
}

TEST(HostWndLifetimeTest, DestroyingRunsOnDestroyOnceAndEndsTimersAndOwnedWindows)
{
    HostRecorder owner;
    ASSERT_TRUE(owner.CreateShown(QRect(100, 100, 80, 60)));
    HostRecorder owned;
    CQKHostCreate cs;
    cs.nStyle = QKHS_FRAMELESS | QKHS_TOOL;
    cs.pOwner = &owner;
    cs.rcWindow = QRect(120, 120, 20, 20);
    ASSERT_TRUE(owned.Create(cs));
    EXPECT_FALSE(owned.Create(cs)); // once only
    owned.SetTimer(1, 10);
    owner.SetTimer(1, 10);

    owner.DestroyWindow();
    EXPECT_EQ(owner.nDestroys, 1);
    EXPECT_EQ(owned.nDestroys, 1);
    EXPECT_FALSE(owner.IsWindow());
    EXPECT_FALSE(owned.IsWindow());
    owner.DestroyWindow();
    EXPECT_EQ(owner.nDestroys, 1);
    HostDriver::Pump(50);
    EXPECT_TRUE(owner.vecTimers.empty() || owner.vecTimers.size() < 2);
    // A gone window ignores everything asked of it.
    EXPECT_FALSE(owned.SetTimer(2, 10));
    EXPECT_EQ(owned.GetClientRect(), QRect());
    EXPECT_EQ(owned.NativeWidget(), nullptr);
    owned.InvalidateRect(nullptr);
    owned.ShowWindow(SW_SHOW);

    // The object can make a new window.
    EXPECT_TRUE(owner.CreateShown(QRect(100, 100, 30, 30)));
}

TEST_F(HostWndTest, HostMayDestroyItselfInsideItsOwnHandler)
{
    host.onMessage = [&](uint32_t msg, uintptr_t, intptr_t) {
        if (msg == WM_COMMAND)
            host.DestroyWindow();
    };
    host.PostMessage(WM_COMMAND, 2, 0);
    host.PostMessage(WM_COMMAND, 3, 0); // never arrives: the window is gone
    HostDriver::Pump(30);
    EXPECT_FALSE(host.IsWindow());
    EXPECT_EQ(host.nDestroys, 1);
    EXPECT_EQ(host.Commands(), std::vector<uint32_t>({ 2 }));
}

TEST_F(HostWndTest, CloseRequestGoesToTheHostWhichDecides)
{
    host.bCloseDestroys = false;
    host.NativeWidget()->close();
    EXPECT_EQ(host.nCloses, 1);
    EXPECT_TRUE(host.IsWindowVisible());
    host.SendMessage(WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(host.nCloses, 2);
    EXPECT_TRUE(host.IsWindow());
    host.bCloseDestroys = true;
    host.SendMessage(WM_CLOSE, 0, 0);
    EXPECT_FALSE(host.IsWindow());
}

TEST(HostWndLifetimeTest, ModalLoopReturnsTheResultGivenToEndModal)
{
    HostRecorder host;
    CQKHostCreate cs;
    cs.rcWindow = QRect(100, 100, 40, 30);
    ASSERT_TRUE(host.Create(cs));
    host.onMessage = [&](uint32_t msg, uintptr_t w, intptr_t) {
        if (msg == WM_COMMAND)
            host.EndModal(static_cast<int>(w));
    };
    host.PostMessage(WM_COMMAND, 7, 0);
    EXPECT_FALSE(host.IsModalRunning());
    EXPECT_EQ(host.RunModal(), 7);
    EXPECT_FALSE(host.IsModalRunning());
    EXPECT_FALSE(host.IsWindowVisible());
    EXPECT_TRUE(host.IsWindow());

    // A popup menu of an owner runs its own loop the same way and may end it by closing
    // (a press outside destroys it): the loop ends with the result set so far.
    HostRecorder menu;
    CQKHostCreate pcs;
    pcs.nStyle = QKHS_POPUP | QKHS_FRAMELESS;
    pcs.pOwner = &host;
    pcs.rcWindow = QRect(110, 110, 30, 30);
    ASSERT_TRUE(menu.Create(pcs));
    menu.onMessage = [&](uint32_t msg, uintptr_t w, intptr_t) {
        if (msg == WM_COMMAND) {
            menu.EndModal(static_cast<int>(w));
            menu.DestroyWindow();
        }
    };
    menu.PostMessage(WM_COMMAND, 12, 0);
    EXPECT_EQ(menu.RunModal(), 12);
    EXPECT_FALSE(menu.IsWindow());
}

TEST(HostWndGeometryTest, ClassNameTitleAndGeometryReachTheWindow)
{
    HostRecorder host;
    ASSERT_TRUE(host.CreateShown(QRect(120, 80, 64, 48), QKHS_FRAMELESS, QStringLiteral("QKOrbelPlayerGuiFrame")));
    EXPECT_EQ(host.NativeWidget()->objectName(), QStringLiteral("QKOrbelPlayerGuiFrame"));
    EXPECT_EQ(CQKHostWnd::FromWidget(host.NativeWidget()), &host);
    EXPECT_EQ(host.GetClientRect(), QRect(0, 0, 64, 48));
    EXPECT_EQ(host.GetWindowRect(), QRect(120, 80, 64, 48));
    EXPECT_EQ(host.ClientToScreen(QPoint(3, 4)), QPoint(123, 84));
    EXPECT_EQ(host.ScreenToClient(QPoint(123, 84)), QPoint(3, 4));
    host.SetWindowText(QStringLiteral("Orbel Player"));
    EXPECT_EQ(host.GetWindowText(), QStringLiteral("Orbel Player"));
    EXPECT_TRUE(host.NativeWidget()->windowFlags().testFlag(Qt::FramelessWindowHint));

    host.MoveWindow(10, 20, 100, 50);
    EXPECT_EQ(host.GetWindowRect(), QRect(10, 20, 100, 50));
    // The picture follows the client size.
    HostDriver::Pump(20);
    EXPECT_EQ(host.HostImage().size(), QSize(100, 50));
    EXPECT_FALSE(CQKHostWnd::GetPrimaryScreenRect().isEmpty());
    EXPECT_TRUE(CQKHostWnd::GetPrimaryScreenRect().contains(CQKHostWnd::GetPrimaryWorkArea()));
}

TEST(HostWndGeometryTest, TopmostChangesKeepGeometryAndVisibility)
{
    HostRecorder host;
    ASSERT_TRUE(host.CreateShown(QRect(150, 90, 60, 40)));
    EXPECT_FALSE(host.IsTopmost());
    host.SetTopmost(true);
    EXPECT_TRUE(host.IsTopmost());
    EXPECT_TRUE(host.IsWindowVisible());
    EXPECT_EQ(host.GetWindowRect(), QRect(150, 90, 60, 40));
    EXPECT_TRUE(host.NativeWindow()->flags().testFlag(Qt::WindowStaysOnTopHint));
    host.SetTopmost(false);
    EXPECT_FALSE(host.IsTopmost());
    EXPECT_TRUE(host.IsWindowVisible());
    EXPECT_EQ(host.GetWindowRect(), QRect(150, 90, 60, 40));
}

TEST_F(HostWndTest, ShowCommandsAndStates)
{
    EXPECT_TRUE(host.ShowWindow(SW_HIDE));
    EXPECT_FALSE(host.IsWindowVisible());
    EXPECT_FALSE(host.ShowWindow(SW_SHOWNOACTIVATE));
    EXPECT_TRUE(host.IsWindowVisible());
    host.ShowWindow(SW_MINIMIZE);
    EXPECT_TRUE(host.IsIconic());
    host.ShowWindow(SW_RESTORE);
    EXPECT_FALSE(host.IsIconic());
    host.ShowFullScreen();
    EXPECT_TRUE(host.IsFullScreen());
    host.ShowNormal();
    EXPECT_FALSE(host.IsFullScreen());
    host.SendMessage(WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    EXPECT_TRUE(host.IsZoomed());
    // Full screen over a maximised window ends maximised, or normal when asked for that.
    host.ShowFullScreen();
    host.EndFullScreen();
    EXPECT_TRUE(host.IsZoomed() && !host.IsFullScreen());
    host.ShowFullScreen();
    host.ShowNormal();
    EXPECT_FALSE(host.IsZoomed() || host.IsFullScreen());
    host.SendMessage(WM_SYSCOMMAND, SC_MAXIMIZE, 0);
    host.SendMessage(WM_SYSCOMMAND, SC_RESTORE, 0);
    EXPECT_FALSE(host.IsZoomed());
    host.SetWindowAlpha(128);
    EXPECT_NEAR(host.NativeWidget()->windowOpacity(), 128 / 255.0, 0.01);
    host.SetWindowRgn(QRect(0, 0, 10, 10));
    EXPECT_EQ(host.NativeWidget()->mask(), QRegion(0, 0, 10, 10));
    host.SetWindowRgn(QRect());
    EXPECT_TRUE(host.NativeWidget()->mask().isEmpty());
}
