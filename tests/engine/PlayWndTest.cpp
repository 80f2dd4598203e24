// The video surface under a real X server (Xvfb, Mesa's software OpenGL): frames of the
// playback library reach its framebuffer, upright and in their colours, and it is black
// while nothing plays.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "platform/CQKPlayWnd.h"
#include "support/GlDriver.h"
#include "support/TestMedia.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QOpenGLWidget>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>

using namespace std::chrono_literals;
using orbeltest::PlaySession;
using orbeltest::TestMedia;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

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
        host.resize(320, 240);
        host.setStyleSheet("background: rgb(40, 200, 40)"); // green, so the surface stands out
        host.show();
        ASSERT_TRUE(surface.Create(&host));
    }

    void TearDown() override
    {
        qkplaydll_Stop();
        surface.Destroy();
    }

    QImage Grab() { return static_cast<QOpenGLWidget*>(surface.NativeWidget())->grabFramebuffer(); }

    // Runs the event loop until the grabbed picture passes the check, or for 4 seconds.
    bool WaitForPicture(const std::function<bool(const QImage&)>& check)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 4000) {
            QApplication::processEvents(QEventLoop::AllEvents, 20);
            if (check(Grab()))
                return true;
        }
        return false;
    }

    void ShowSurface()
    {
        surface.MoveWindow(20, 10, 160, 120);
        surface.Show(true);
        QApplication::processEvents();
    }

    QWidget host;
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
    EXPECT_EQ(surface.NativeWidget()->geometry(), QRect(20, 10, 160, 120));
    QImage image = Grab();
    ASSERT_FALSE(image.isNull());
    for (double d : { 0.0, 0.5, 1.0 })
        EXPECT_TRUE(IsColor(PixelAt(image, d, d), { 0, 0, 0 })) << Text(PixelAt(image, d, d));
    surface.Show(false);
    EXPECT_FALSE(surface.IsVisible());
}

TEST_F(PlayWndTest, ShowsTheColourOfTheClip)
{
    ShowSurface();
    const struct
    {
        const char* pszColor;
        Rgb rgb;
    } clips[] = { { "red", { 255, 0, 0 } }, { "blue", { 0, 0, 255 } } };
    for (const auto& clip : clips) {
        SCOPED_TRACE(clip.pszColor);
        PlaySession session;
        session.Start(TestMedia::Utf8(TestMedia::SolidColor(clip.pszColor, 3.0)), surface.VideoTarget());
        EXPECT_TRUE(WaitForPicture([&](const QImage& image) { return IsColor(PixelAt(image, 0.5, 0.5), clip.rgb); }))
            << "centre " << Text(PixelAt(Grab(), 0.5, 0.5));
        qkplaydll_Stop();
        ASSERT_TRUE(session.Join());
    }
    // After the stop the surface goes black again.
    EXPECT_TRUE(WaitForPicture([](const QImage& image) { return IsColor(PixelAt(image, 0.5, 0.5), { 0, 0, 0 }); }));
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
    qkplaydll_Stop();
    EXPECT_TRUE(session.Join());
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
    qkplaydll_Stop();
    EXPECT_TRUE(session.Join());
}

TEST_F(PlayWndTest, DestroyWhilePlayingLeavesPlaybackControllable)
{
    ShowSurface();
    PlaySession session;
    session.Start(TestMedia::Utf8(TestMedia::VideoWithSound(3.0)), surface.VideoTarget());
    ASSERT_TRUE(WaitForPicture([](const QImage&) { return qkplaydll_IsReady() != 0; }));
    surface.Destroy();
    EXPECT_FALSE(surface.IsWindow());
    EXPECT_EQ(surface.NativeWidget(), nullptr);
    qkplaydll_Stop();
    EXPECT_TRUE(session.Join());

    // A new surface attaches again.
    ASSERT_TRUE(surface.Create(&host));
    ShowSurface();
    PlaySession again;
    again.Start(TestMedia::Utf8(TestMedia::SolidColor("red", 3.0)), surface.VideoTarget());
    EXPECT_TRUE(WaitForPicture([](const QImage& image) { return IsColor(PixelAt(image, 0.5, 0.5), { 255, 0, 0 }); }));
    qkplaydll_Stop();
    EXPECT_TRUE(again.Join());
}
