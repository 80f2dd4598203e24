// The video surface under a real X server (Xvfb, Mesa's software OpenGL): frames of the
// playback library reach the screen, upright and in their colours, in a native window of the
// surface's own; it is black while nothing plays and lets clicks through to the main window.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "platform/CQKPlayWnd.h"
#include "platform/QKMessages.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "support/HostRecorder.h"
#include "support/TestMedia.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

using orbeltest::HostDriver;
using orbeltest::HostRecorder;
using orbeltest::PlaySession;
using orbeltest::TestMedia;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

// Where the host window lies on the screen, and the surface in it.
const QRect kHostRect(100, 100, 320, 240);
const QRect kSurfaceRect(20, 10, 160, 120);

struct Rgb
{
    int r, g, b;
};

Rgb PixelAt(const QImage& image, double dX, double dY)
{
    QColor c = image.pixelColor(static_cast<int>(dX * (image.width() - 1)), static_cast<int>(dY * (image.height() - 1)));
    return { c.red(), c.green(), c.blue() };
}

bool IsColor(Rgb px, Rgb want)
{
    return std::abs(px.r - want.r) < 40 && std::abs(px.g - want.g) < 40 && std::abs(px.b - want.b) < 40;
}

std::string Text(Rgb px)
{
    return "(" + std::to_string(px.r) + ", " + std::to_string(px.g) + ", " + std::to_string(px.b) + ")";
}

class PlayWndTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        ASSERT_TRUE(host.CreateShown(kHostRect));
        ASSERT_TRUE(HostDriver::WaitFor([&] { return host.NativeWidget()->geometry().topLeft() == kHostRect.topLeft(); }));
        ASSERT_TRUE(surface.Create(&host));
    }

    void TearDown() override
    {
        qkplaydll_Stop();
        surface.Destroy();
    }

    // What the screen shows where the surface lies: the pixels a person sees.
    QImage Grab(QRect rc = kSurfaceRect)
    {
        QPoint pt = host.NativeWidget()->mapToGlobal(rc.topLeft());
        return QGuiApplication::primaryScreen()->grabWindow(0, pt.x(), pt.y(), rc.width(), rc.height()).toImage();
    }

    // Runs the event loop until the screen passes the check, or for 4 seconds.
    bool WaitForPicture(const std::function<bool(const QImage&)>& check, QRect rc = kSurfaceRect)
    {
        return HostDriver::WaitFor([&] { return check(Grab(rc)); }, 4000);
    }

    void ShowSurface(QRect rc = kSurfaceRect)
    {
        surface.MoveWindow(rc.x(), rc.y(), rc.width(), rc.height());
        surface.Show(true);
        HostDriver::Pump();
    }

    static std::function<bool(const QImage&)> Centre(Rgb want)
    {
        return [want](const QImage& image) { return IsColor(PixelAt(image, 0.5, 0.5), want); };
    }

    // Plays `clip` in the surface until its picture shows `want` in the middle.
    bool PlayUntil(PlaySession& session, const QString& clip, Rgb want)
    {
        session.Start(TestMedia::Utf8(clip), surface.VideoTarget());
        return WaitForPicture(Centre(want));
    }
    static void StopAndJoin(PlaySession& session)
    {
        qkplaydll_Stop();
        EXPECT_TRUE(session.Join());
    }

    HostRecorder host;
    CQKPlayWnd surface;
};

} // namespace

TEST_F(PlayWndTest, HiddenWhenMadeAndBlackWhileNothingPlays)
{
    EXPECT_TRUE(surface.IsWindow());
    EXPECT_FALSE(surface.IsVisible());
    EXPECT_FALSE(surface.NativeWidget()->isVisible());
    ShowSurface();
    EXPECT_TRUE(surface.IsVisible());
    EXPECT_EQ(surface.NativeWidget()->geometry(), kSurfaceRect);
    EXPECT_TRUE(WaitForPicture([](const QImage& image) {
        for (double d : { 0.0, 0.5, 1.0 })
            if (!IsColor(PixelAt(image, d, d), { 0, 0, 0 }))
                return false;
        return true;
    })) << Text(PixelAt(Grab(), 0.5, 0.5));
    // Around it the host's own picture (0x336699) still shows.
    EXPECT_TRUE(IsColor(PixelAt(Grab(QRect(200, 150, 20, 20)), 0.5, 0.5), { 0x33, 0x66, 0x99 }));
    surface.Show(false);
    EXPECT_FALSE(surface.IsVisible());
    EXPECT_TRUE(WaitForPicture(Centre({ 0x33, 0x66, 0x99 })));
}

TEST_F(PlayWndTest, IsANativeChildWindowOfItsOwnDrawnWithoutComposition)
{
    ShowSurface();
    QWindow* pWindow = surface.NativeWindow();
    ASSERT_NE(pWindow, nullptr);
    QWindow* pHostWindow = host.NativeWidget()->windowHandle();
    ASSERT_NE(pHostWindow, nullptr);
    // A window of the window system of its own, inside the main window's, in the main
    // window's client pixels.
    EXPECT_NE(pWindow->winId(), pHostWindow->winId());
    EXPECT_EQ(pWindow->parent(), pHostWindow);
    EXPECT_EQ(pWindow->geometry(), kSurfaceRect);
    EXPECT_EQ(pWindow->surfaceType(), QSurface::OpenGLSurface);
    // The main window itself stays a plain raster window: nothing in it is composed with
    // OpenGL, which an embedded OpenGL widget would force.
    EXPECT_EQ(pHostWindow->surfaceType(), QSurface::RasterSurface);

    // The surface follows a new rectangle (the display modes move it) with its window.
    const QRect rcWide(0, 40, 320, 160);
    ShowSurface(rcWide);
    EXPECT_TRUE(HostDriver::WaitFor([&] { return pWindow->geometry() == rcWide; })) << pWindow->geometry().width();
    EXPECT_TRUE(WaitForPicture(Centre({ 0, 0, 0 }), rcWide));
    EXPECT_TRUE(IsColor(PixelAt(Grab(QRect(0, 0, 320, 40)), 0.5, 0.5), { 0x33, 0x66, 0x99 }));
}

TEST_F(PlayWndTest, ClicksOnThePictureReachTheHost)
{
    ShowSurface();
    host.ClearRecords();
    QPoint pt = host.NativeWidget()->mapToGlobal(kSurfaceRect.center());
    QProcess p;
    p.start(QStringLiteral("xdotool"), { "mousemove", QString::number(pt.x()), QString::number(pt.y()), "click", "1" });
    ASSERT_TRUE(p.waitForFinished(5000));
    ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    auto has = [&](uint32_t nMsg) { return std::ranges::any_of(host.vecMouse, [&](const auto& m) { return m.msg == nMsg && m.pt == kSurfaceRect.center(); }); };
    ASSERT_TRUE(HostDriver::WaitFor([&] { return has(WM_LBUTTONUP); }));
    EXPECT_TRUE(has(WM_LBUTTONDOWN));
}

TEST_F(PlayWndTest, ShowsTheColourOfTheClip)
{
    ShowSurface();
    for (const auto& [pszColor, rgb] : { std::pair<const char*, Rgb> { "red", { 255, 0, 0 } }, { "blue", { 0, 0, 255 } } }) {
        SCOPED_TRACE(pszColor);
        PlaySession session;
        EXPECT_TRUE(PlayUntil(session, TestMedia::SolidColor(pszColor, 3.0), rgb)) << "centre " << Text(PixelAt(Grab(), 0.5, 0.5));
        StopAndJoin(session);
    }
    // After the stop the surface goes black again.
    EXPECT_TRUE(WaitForPicture(Centre({ 0, 0, 0 })));
}

TEST_F(PlayWndTest, WindowsOfTheProgramShowAboveThePicture)
{
    // Menus, tips, dialogs and bars are top-level windows; one over the video hides its part
    // of the picture and nothing else.
    ShowSurface();
    PlaySession session;
    ASSERT_TRUE(PlayUntil(session, TestMedia::SolidColor("red", 3.0), { 255, 0, 0 }));
    for (const auto& [pszKind, nStyle] : { std::pair<const char*, uint32_t> { "tool window", QKHS_FRAMELESS | QKHS_TOOL }, { "tip", QKHS_FRAMELESS | QKHS_TIPWINDOW } }) {
        SCOPED_TRACE(pszKind);
        HostRecorder over;
        over.clrFill = 0xFF10E010; // green
        const QRect rcOver(kSurfaceRect.topLeft() + QPoint(40, 30), QSize(60, 40));
        ASSERT_TRUE(over.CreateShown(QRect(host.NativeWidget()->mapToGlobal(rcOver.topLeft()), rcOver.size()), nStyle));
        EXPECT_TRUE(WaitForPicture(Centre({ 0x10, 0xE0, 0x10 }), rcOver)) << Text(PixelAt(Grab(rcOver), 0.5, 0.5));
        // The picture goes on around it.
        EXPECT_TRUE(IsColor(PixelAt(Grab(), 0.05, 0.05), { 255, 0, 0 })) << Text(PixelAt(Grab(), 0.05, 0.05));
        over.DestroyWindow();
    }
    StopAndJoin(session);
}

TEST_F(PlayWndTest, PictureIsUprightAndFillsTheSurface)
{
    // Red above blue, in a surface of the clip's own aspect ratio.
    QString clip = TestMedia::Make("red-over-blue.mkv",
        { "-f", "lavfi", "-i",
            "color=c=red:size=64x48:rate=25:duration=3,"
            "drawbox=x=0:y=24:w=64:h=24:color=blue:t=fill",
            "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p" });
    ASSERT_FALSE(clip.isEmpty());
    ShowSurface();
    PlaySession session;
    session.Start(TestMedia::Utf8(clip), surface.VideoTarget());
    EXPECT_TRUE(WaitForPicture([](const QImage& image) {
        return IsColor(PixelAt(image, 0.5, 0.2), { 255, 0, 0 }) && IsColor(PixelAt(image, 0.5, 0.8), { 0, 0, 255 })
            && IsColor(PixelAt(image, 0.05, 0.05), { 255, 0, 0 }) && IsColor(PixelAt(image, 0.95, 0.95), { 0, 0, 255 });
    })) << "top "
        << Text(PixelAt(Grab(), 0.5, 0.2)) << " bottom " << Text(PixelAt(Grab(), 0.5, 0.8));
    StopAndJoin(session);
}

TEST_F(PlayWndTest, ColourOffsetsChangeThePictureWhilePlaying)
{
    ShowSurface();
    PlaySession session;
    session.Start(TestMedia::Utf8(TestMedia::SolidColor("0x808080", 4.0)), surface.VideoTarget());
    auto grey = [](int nLow, int nHigh) {
        return [=](const QImage& image) {
            Rgb px = PixelAt(image, 0.5, 0.5);
            return px.r >= nLow && px.r <= nHigh && std::abs(px.r - px.g) < 12 && std::abs(px.r - px.b) < 12;
        };
    };
    ASSERT_TRUE(WaitForPicture(grey(110, 150))) << Text(PixelAt(Grab(), 0.5, 0.5));
    qkplaydll_AdjustColor(80, 0, 0);
    EXPECT_TRUE(WaitForPicture(grey(190, 255))) << "brighter: " << Text(PixelAt(Grab(), 0.5, 0.5));
    qkplaydll_AdjustColor(0, 0, 0);
    EXPECT_TRUE(WaitForPicture(grey(110, 150))) << "back: " << Text(PixelAt(Grab(), 0.5, 0.5));
    StopAndJoin(session);
}

TEST_F(PlayWndTest, EndingWhilePlayingDetachesAndLeavesPlaybackControllable)
{
    // The surface ends by itself, or with the main window before the surface object goes.
    for (bool bHostFirst : { false, true }) {
        SCOPED_TRACE(bHostFirst ? "host destroyed first" : "Destroy");
        ShowSurface();
        PlaySession session;
        ASSERT_TRUE(PlayUntil(session, TestMedia::SolidColor("red", 3.0), { 255, 0, 0 }));
        if (bHostFirst)
            host.DestroyWindow();
        else
            surface.Destroy();
        HostDriver::Pump(20);
        EXPECT_FALSE(surface.IsWindow());
        EXPECT_EQ(surface.NativeWidget(), nullptr);
        EXPECT_EQ(surface.NativeWindow(), nullptr);
        StopAndJoin(session);

        // Detached: a new surface attaches and shows the next file.
        if (!host.NativeWidget()) {
            ASSERT_TRUE(host.CreateShown(kHostRect));
        }
        ASSERT_TRUE(surface.Create(&host));
        ShowSurface();
        PlaySession again;
        EXPECT_TRUE(PlayUntil(again, TestMedia::SolidColor("blue", 3.0), { 0, 0, 255 }));
        StopAndJoin(again);
    }
}
