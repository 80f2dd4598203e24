// Input of host windows: mouse messages, leave, capture, wheel, keys and accelerators,
// cursors and dropped files.
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "support/HostDriver.h"
#include "support/HostRecorder.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

using orbeltest::HostDriver;
using orbeltest::HostRecorder;

namespace {

class HostInputTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.CreateShown(QRect(200, 150, 100, 80)));
        host.ClearRecords();
    }
    void TearDown() override { CQKHostWnd::ReleaseCapture(); }

    HostRecorder host;
    HostDriver driver { host };
};

// The accelerator table of the main window: twelve keys, two of them with no Ctrl.
const std::vector<tagQKAccel> kPlayerKeys {
    { QKMOD_CONTROL, 0x4F, 26 }, { 0, VK_SPACE, 21 }, { 0, VK_F2, 25 }, { 0, VK_ESCAPE, 32 },
    { QKMOD_CONTROL, 0x4D, 27 }, { QKMOD_CONTROL, 0x53, 22 }, { QKMOD_CONTROL, VK_LEFT, 23 },
    { QKMOD_CONTROL, VK_RIGHT, 24 }, { QKMOD_CONTROL, 0x45, 2 }, { 0, VK_F3, 34 }, { 0, VK_F4, 33 },
    { 0, VK_F5, 35 }
};

} // namespace

TEST_F(HostInputTest, ButtonsAndMovesBecomeNumberedMessagesInClientPixels)
{
    driver.Move(QPoint(10, 12));
    driver.Press(QPoint(11, 12));
    driver.Release(QPoint(11, 13));
    driver.Press(QPoint(30, 40), Qt::RightButton);
    driver.Release(QPoint(30, 40), Qt::RightButton);
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 512, 513, 514, 516, 517 }));
    EXPECT_EQ(host.vecMouse[0].pt, QPoint(10, 12));
    EXPECT_EQ(host.vecMouse[2].pt, QPoint(11, 13));
    EXPECT_EQ(host.vecMouse[1].keys & MK_LBUTTON, MK_LBUTTON);
    EXPECT_EQ(host.vecMouse[2].keys & MK_LBUTTON, 0u); // released
    EXPECT_EQ(host.vecMouse[3].keys & MK_RBUTTON, MK_RBUTTON);
}

TEST_F(HostInputTest, DoubleClickReplacesTheSecondPress)
{
    driver.DoubleClick(QPoint(20, 20));
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 513, 514, 515, 514 }));
    // A third quick press starts over.
    host.ClearRecords();
    driver.DoubleClick(QPoint(20, 20));
    driver.Wait(-900); // the next press comes 100 ms after the last
    driver.Click(QPoint(20, 20));
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 513, 514, 515, 514, 513, 514 }));
    // Slow presses are two clicks.
    host.ClearRecords();
    driver.Click(QPoint(20, 20));
    driver.Click(QPoint(20, 20));
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 513, 514, 513, 514 }));
}

TEST_F(HostInputTest, LeavingGivesOneLeaveAtTheOutsidePoint)
{
    driver.Move(QPoint(50, 50));
    driver.Leave();
    driver.Leave(); // no second leave without coming back first
    ASSERT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 512, 675 }));
    EXPECT_EQ(host.vecMouse[1].pt, QPoint(-99, -99));
    driver.Move(QPoint(51, 50));
    driver.Leave();
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 512, 675, 512, 675 }));
}

TEST_F(HostInputTest, CaptureKeepsMovesComingFromOutside)
{
    // A control takes the capture on the press, as the control base does.
    host.onMouse = [&](uint32_t msg, QPoint, uint32_t) {
        if (msg == WM_LBUTTONDOWN)
            host.SetCapture();
        if (msg == WM_LBUTTONUP)
            CQKHostWnd::ReleaseCapture();
    };
    driver.Move(QPoint(10, 10));
    driver.Press(QPoint(10, 10));
    EXPECT_EQ(CQKHostWnd::GetCapture(), &host);
    driver.Move(QPoint(-30, 200));
    driver.Move(QPoint(150, -5));
    driver.Release(QPoint(150, -5));
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
    ASSERT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 512, 513, 512, 512, 514 }));
    EXPECT_EQ(host.vecMouse[2].pt, QPoint(-30, 200));
    EXPECT_EQ(host.vecMouse[4].pt, QPoint(150, -5));
}

TEST_F(HostInputTest, WithoutCaptureMovesOutsideGoElsewhere)
{
    HostRecorder other;
    ASSERT_TRUE(other.CreateShown(QRect(400, 150, 40, 40)));
    other.ClearRecords();
    // The button is held, but nobody holds the capture (it was released meanwhile).
    driver.Press(QPoint(10, 10));
    host.SetCapture();
    CQKHostWnd::ReleaseCapture();
    driver.Move(QPoint(-30, 200)); // over no window of ours
    driver.Move(QPoint(210, 10)); // over the other window
    driver.Release(QPoint(210, 10));
    driver.Move(QPoint(20, 20));
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 513, 512 }));
    // The window under the pointer hears them, in its own client pixels.
    ASSERT_EQ(other.MouseMessages(), std::vector<uint32_t>({ 512, 514 }));
    EXPECT_EQ(other.vecMouse[0].pt, QPoint(10, 10));
}

TEST_F(HostInputTest, CaptureBelongsToOneHostAtATime)
{
    HostRecorder other;
    ASSERT_TRUE(other.CreateShown(QRect(400, 150, 40, 40)));
    host.SetCapture();
    EXPECT_EQ(CQKHostWnd::GetCapture(), &host);
    other.SetCapture();
    EXPECT_EQ(CQKHostWnd::GetCapture(), &other);
    // Input over this host now goes to the other one, in the other's client pixels.
    other.ClearRecords();
    driver.Move(QPoint(10, 10));
    EXPECT_TRUE(host.vecMouse.empty());
    ASSERT_EQ(other.vecMouse.size(), 1u);
    EXPECT_EQ(other.vecMouse[0].pt, QPoint(200 + 10 - 400, 150 + 10 - 150));
    // A host that goes drops its capture.
    other.DestroyWindow();
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
}

TEST_F(HostInputTest, WheelGivesOneHundredTwentyANotch)
{
    driver.Wheel(QPoint(40, 30), 1);
    driver.Wheel(QPoint(41, 30), -2, Qt::ControlModifier);
    ASSERT_EQ(host.vecWheel.size(), 2u);
    EXPECT_EQ(host.vecWheel[0].delta, 120);
    EXPECT_EQ(host.vecWheel[0].pt, QPoint(40, 30));
    EXPECT_EQ(host.vecWheel[1].delta, -240);
    EXPECT_EQ(host.vecWheel[1].keys & MK_CONTROL, MK_CONTROL);
}

TEST_F(HostInputTest, PlayerKeysBecomeTheirCommands)
{
    host.SetAccelerators(kPlayerKeys);
    const struct
    {
        int key;
        Qt::KeyboardModifiers mods;
        uint32_t cmd;
    } presses[] = {
        { Qt::Key_O, Qt::ControlModifier, 26 }, { Qt::Key_Space, Qt::NoModifier, 21 }, { Qt::Key_F2, Qt::NoModifier, 25 },
        { Qt::Key_Escape, Qt::NoModifier, 32 }, { Qt::Key_M, Qt::ControlModifier, 27 }, { Qt::Key_S, Qt::ControlModifier, 22 },
        { Qt::Key_Left, Qt::ControlModifier, 23 }, { Qt::Key_Right, Qt::ControlModifier, 24 },
        { Qt::Key_E, Qt::ControlModifier, 2 }, { Qt::Key_F3, Qt::NoModifier, 34 }, { Qt::Key_F4, Qt::NoModifier, 33 },
        { Qt::Key_F5, Qt::NoModifier, 35 }
    };
    std::vector<uint32_t> expected;
    for (const auto& p : presses) {
        driver.Key(p.key, p.mods);
        expected.push_back(p.cmd);
    }
    EXPECT_EQ(host.Commands(), expected);
    // Accelerators are sent, not queued: they are there without pumping.
    EXPECT_TRUE(host.vecKeysDown.empty());
}

TEST_F(HostInputTest, AcceleratorsNeedTheirExactModifiers)
{
    host.SetAccelerators(kPlayerKeys);
    driver.Key(Qt::Key_O); // no Ctrl
    driver.Key(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    driver.Key(Qt::Key_Space, Qt::ControlModifier);
    driver.Key(Qt::Key_Left); // plain Left is no command
    EXPECT_TRUE(host.Commands().empty());
    ASSERT_EQ(host.vecKeysDown.size(), 4u);
    EXPECT_EQ(host.vecKeysDown[0].vk, 0x4Fu);
    EXPECT_EQ(host.vecKeysDown[1].mods, QKMOD_CONTROL | QKMOD_SHIFT);
    EXPECT_EQ(host.vecKeysDown[3].vk, VK_LEFT);
}

TEST_F(HostInputTest, PreTranslateKeySeesKeysFirstAndCanTakeThem)
{
    host.SetAccelerators(kPlayerKeys);
    host.onPreTranslateKey = [](uint32_t msg, uint32_t vk, uint32_t) { return msg == WM_KEYDOWN && vk == VK_SPACE; };
    driver.Key(Qt::Key_Space);
    driver.Key(Qt::Key_Tab);
    driver.Key(Qt::Key_Return);
    EXPECT_TRUE(host.Commands().empty());
    // Down and up of all three; Tab is a key here, not a move of focus.
    ASSERT_EQ(host.vecKeysPre.size(), 6u);
    EXPECT_EQ(host.vecKeysPre[0].msg, WM_KEYDOWN);
    EXPECT_EQ(host.vecKeysPre[1].msg, WM_KEYUP);
    EXPECT_EQ(host.vecKeysPre[2].vk, VK_TAB);
    EXPECT_EQ(host.vecKeysPre[4].vk, VK_RETURN);
    ASSERT_EQ(host.vecKeysDown.size(), 2u);
    EXPECT_EQ(host.vecKeysDown[0].vk, VK_TAB);
}

TEST_F(HostInputTest, HeldKeyRepeatsItsKeyDownOnly)
{
    QWindow* win = host.NativeWindow();
    for (int i = 0; i < 3; ++i) {
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, QString(), i > 0);
        QCoreApplication::sendEvent(win, &down);
        if (i < 2) {
            QKeyEvent up(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(win, &up);
        }
    }
    QKeyEvent last(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier);
    QCoreApplication::sendEvent(win, &last);
    std::vector<uint32_t> msgs;
    for (const auto& k : host.vecKeysPre)
        msgs.push_back(k.msg);
    EXPECT_EQ(msgs, std::vector<uint32_t>({ WM_KEYDOWN, WM_KEYDOWN, WM_KEYDOWN, WM_KEYUP }));
    EXPECT_EQ(host.vecKeysDown.size(), 3u);
}

TEST_F(HostInputTest, KeysOfAnEditFieldPassThePreTranslationFirst)
{
    host.SetAccelerators(kPlayerKeys);
    auto* edit = new QLineEdit(host.NativeWidget());
    edit->setGeometry(5, 5, 60, 20);
    edit->show();
    host.SetForegroundWindow();
    edit->setFocus();
    ASSERT_TRUE(HostDriver::WaitFor([&] { return edit->hasFocus(); }));
    driver.Key(Qt::Key_A);
    driver.Key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QStringLiteral("a"));
    EXPECT_EQ(host.Commands(), std::vector<uint32_t>({ 26 }));
    // The host saw them all, but its own key handler none.
    EXPECT_EQ(host.vecKeysPre.size(), 4u);
    EXPECT_TRUE(host.vecKeysDown.empty());
    // A key the host takes never reaches the field.
    host.onPreTranslateKey = [](uint32_t, uint32_t vk, uint32_t) { return vk == 0x42; };
    driver.Key(Qt::Key_B);
    EXPECT_EQ(edit->text(), QStringLiteral("a"));
    // A key the field does not want (Esc) does not turn into a key of the host either.
    host.vecKeysPre.clear();
    driver.Key(Qt::Key_Escape);
    EXPECT_EQ(host.vecKeysPre.size(), 2u);
    EXPECT_TRUE(host.vecKeysDown.empty());
}

TEST_F(HostInputTest, HostSetsItsCursorOrGetsTheArrow)
{
    host.SetCursor(IDC_HAND);
    EXPECT_EQ(host.NativeWidget()->cursor().shape(), Qt::PointingHandCursor);
    driver.Move(QPoint(5, 5)); // nobody set one for this move
    EXPECT_EQ(host.NativeWidget()->cursor().shape(), Qt::ArrowCursor);
    host.onMouse = [&](uint32_t msg, QPoint, uint32_t) {
        if (msg == WM_MOUSEMOVE)
            host.SetCursor(IDC_SIZEWE);
    };
    driver.Move(QPoint(6, 5));
    EXPECT_EQ(host.NativeWidget()->cursor().shape(), Qt::SizeHorCursor);

    EXPECT_EQ(CQKHostWnd::ShowCursor(false), -1);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::BlankCursor);
    EXPECT_EQ(CQKHostWnd::ShowCursor(false), -2);
    EXPECT_EQ(CQKHostWnd::ShowCursor(true), -1);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(CQKHostWnd::ShowCursor(true), 0);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(HostInputTest, DroppedItemsArriveInOrderAtTheHostThatCatchesThem)
{
    // A drop on a window that takes no files itself reaches the catching host, in order, with
    // the text of a web address in its place.
    HostRecorder other;
    ASSERT_TRUE(other.CreateShown(QRect(400, 150, 100, 80)));
    CQKHostWnd::CatchDroppedFiles(&host);
    QMimeData mime;
    mime.setUrls({ QUrl::fromLocalFile("/tmp/b clip.mkv"), QUrl("https://example.org/x.mp4"), QUrl::fromLocalFile("/tmp/a.mp3") });
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(other.NativeWindow(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(other.NativeWindow(), &drop);
    QCoreApplication::processEvents();
    EXPECT_TRUE(other.vecDrops.empty());
    ASSERT_EQ(host.vecDrops.size(), 1u);
    EXPECT_EQ(host.vecDrops[0], QStringList({ "/tmp/b clip.mkv", "https://example.org/x.mp4", "/tmp/a.mp3" }));

    // Without a catching host, a window that takes no files refuses them.
    CQKHostWnd::CatchDroppedFiles(nullptr);
    QDragEnterEvent refused(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(other.NativeWindow(), &refused);
    EXPECT_FALSE(refused.isAccepted());
}

TEST_F(HostInputTest, ActivationIsReported)
{
    QEvent deactivate(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(host.NativeWidget(), &deactivate);
    QEvent activate(QEvent::WindowActivate);
    QCoreApplication::sendEvent(host.NativeWidget(), &activate);
    ASSERT_GE(host.vecActivate.size(), 2u);
    EXPECT_FALSE(host.vecActivate[host.vecActivate.size() - 2]);
    EXPECT_TRUE(host.vecActivate.back());
}

TEST_F(HostInputTest, PopupClosesOnAPressOutsideAndKeepsTheMouseMeanwhile)
{
    HostRecorder popup;
    CQKHostCreate cs;
    cs.nStyle = QKHS_POPUP | QKHS_FRAMELESS;
    cs.pOwner = &host;
    cs.rcWindow = QRect(220, 170, 40, 30);
    ASSERT_TRUE(popup.Create(cs));
    popup.ShowWindow(SW_SHOW);
    ASSERT_TRUE(HostDriver::WaitFor([&] { return popup.IsWindowVisible(); }));
    HostDriver popupDriver(popup);
    popupDriver.Move(QPoint(5, 5));
    popupDriver.Move(QPoint(-10, 5)); // over the owner: still the popup's, and dropped
    ASSERT_FALSE(popup.vecMouse.empty());
    EXPECT_EQ(popup.vecMouse[0].pt, QPoint(5, 5));
    for (const auto& m : popup.vecMouse)
        EXPECT_NE(m.pt, QPoint(-10, 5)); // a leave at most, never the outside point
    EXPECT_TRUE(host.vecMouse.empty());
    popupDriver.Press(QPoint(-10, 5));
    EXPECT_EQ(popup.nCloses, 1);
    EXPECT_FALSE(popup.IsWindow()); // its OnClose destroys it
    EXPECT_TRUE(host.vecMouse.empty()); // the closing press reaches nobody
    // Afterwards the owner takes clicks as before.
    driver.Press(QPoint(10, 25));
    driver.Release(QPoint(10, 25));
    EXPECT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 513, 514 }));
}

TEST_F(HostInputTest, ClicksOnAChildThatIgnoresThemReachTheHost)
{
    // The video surface is such a child: it takes no clicks of its own, and the host's
    // double click and right button handling see them in host pixels.
    auto* child = new QWidget(host.NativeWidget());
    child->setGeometry(20, 20, 50, 40);
    child->show();
    HostDriver::Pump(10);
    driver.Press(QPoint(30, 35), Qt::RightButton);
    driver.Release(QPoint(30, 35), Qt::RightButton);
    driver.DoubleClick(QPoint(40, 30));
    ASSERT_EQ(host.MouseMessages(), std::vector<uint32_t>({ 516, 517, 513, 514, 515, 514 }));
    EXPECT_EQ(host.vecMouse[1].pt, QPoint(30, 35));
    EXPECT_EQ(host.vecMouse[4].pt, QPoint(40, 30));
}
