// Host windows on a real X server (Xvfb) with the real pointer, moved by xdotool: the window
// system's own grabs, crossings and double clicks, which the offscreen platform cannot show.
#include "platform/QKMessages.h"
#include "support/HostDriver.h"
#include "support/HostRecorder.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <gtest/gtest.h>

using orbeltest::HostDriver;
using orbeltest::HostRecorder;

namespace {

// Runs xdotool with the arguments and lets the events arrive.
void Pointer(const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral("xdotool"), args);
    ASSERT_TRUE(p.waitForFinished(5000));
    ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    HostDriver::Pump(60);
}

void MoveTo(int x, int y)
{
    Pointer({ "mousemove", QString::number(x), QString::number(y) });
}

class HostX11Test : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        MoveTo(5, 5);
        ASSERT_TRUE(host.CreateShown(QRect(100, 100, 200, 150)));
        ASSERT_TRUE(HostDriver::WaitFor([&] { return host.GetWindowRect().topLeft() == QPoint(100, 100); }));
        HostDriver::Pump(100);
        host.ClearRecords();
    }
    void TearDown() override
    {
        Pointer({ "mouseup", "1" });
        CQKHostWnd::ReleaseCapture();
    }

    HostRecorder host;
};

} // namespace

TEST_F(HostX11Test, CaptureFollowsTheDragOutsideTheWindow)
{
    host.onMouse = [&](uint32_t msg, QPoint, uint32_t) {
        if (msg == WM_LBUTTONDOWN)
            host.SetCapture();
        if (msg == WM_LBUTTONUP)
            CQKHostWnd::ReleaseCapture();
    };
    MoveTo(150, 150);
    Pointer({ "mousedown", "1" });
    MoveTo(450, 400);
    Pointer({ "mouseup", "1" });
    auto seen = [&](uint32_t msg) {
        for (const auto& m : host.vecMouse)
            if (m.msg == msg && m.pt == QPoint(350, 300))
                return true;
        return false;
    };
    // The move and the release outside, in this host's client pixels.
    ASSERT_TRUE(HostDriver::WaitFor([&] { return seen(WM_LBUTTONUP); }));
    EXPECT_TRUE(seen(WM_MOUSEMOVE));
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
}

TEST_F(HostX11Test, ReleasedCaptureLetsMovesReachTheWindowUnderThePointer)
{
    HostRecorder other;
    ASSERT_TRUE(other.CreateShown(QRect(400, 100, 150, 150)));
    HostDriver::Pump(100);
    // The press takes the capture and gives it up at once, with the button still held.
    host.onMouse = [&](uint32_t msg, QPoint, uint32_t) {
        if (msg == WM_LBUTTONDOWN) {
            host.SetCapture();
            CQKHostWnd::ReleaseCapture();
        }
    };
    MoveTo(150, 150);
    Pointer({ "mousedown", "1" });
    other.ClearRecords();
    MoveTo(450, 150);
    MoveTo(460, 160);
    // The other window hears the moves; the pressed one hears none from outside.
    EXPECT_TRUE(HostDriver::WaitFor([&] { return !other.vecMouse.empty(); }, 1000));
    for (const auto& m : host.vecMouse)
        EXPECT_TRUE(QRect(0, 0, 200, 150).contains(m.pt) || m.msg == WM_MOUSELEAVE) << m.msg;
}

TEST_F(HostX11Test, RealDoubleClickAndLeave)
{
    MoveTo(150, 150);
    Pointer({ "click", "--repeat", "2", "--delay", "80", "1" });
    MoveTo(20, 20);
    ASSERT_TRUE(HostDriver::WaitFor([&] { return !host.vecMouse.empty() && host.vecMouse.back().msg == WM_MOUSELEAVE; }));
    std::vector<uint32_t> buttons;
    for (const auto& m : host.vecMouse)
        if (m.msg != WM_MOUSEMOVE)
            buttons.push_back(m.msg);
    EXPECT_EQ(buttons, std::vector<uint32_t>({ 513, 514, 515, 514, 675 }));
    EXPECT_EQ(host.vecMouse.back().pt, QPoint(-99, -99));
}

TEST_F(HostX11Test, ComposedPixelsReachTheRealScreenAtOnce)
{
    QImage patch(20, 10, QImage::Format_ARGB32_Premultiplied);
    patch.fill(0xFF10E020);
    host.UpdateWindowFromImage(patch, QPoint(30, 40));
    QGuiApplication::sync();
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0, 100, 100, 200, 150).toImage();
    EXPECT_EQ(screen.pixel(35, 45) & 0xFFFFFF, 0x10E020u);
    EXPECT_EQ(screen.pixel(25, 45) & 0xFFFFFF, host.clrFill & 0xFFFFFF);
}
