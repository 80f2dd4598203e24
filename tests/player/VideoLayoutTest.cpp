// Where the picture goes in the video area, and the window that fits a video.
#include "player/QKVideoLayout.h"

#include <gtest/gtest.h>

namespace {

using namespace QKVideoLayout;

TEST(VideoLayoutTest, VideoAreaLeavesTheFrameOrFillsTheScreen)
{
    EXPECT_EQ(VideoRect(QSize(866, 562), false), QRect(5, 31, 856, 480));
    EXPECT_EQ(VideoRect(QSize(330, 322), false), QRect(5, 31, 320, 240));
    EXPECT_EQ(VideoRect(QSize(1920, 1080), true), QRect(0, 0, 1920, 1080));
}

TEST(VideoLayoutTest, FixedRatiosFitTheAreaAndAreCentred)
{
    const QRect area(5, 31, 856, 480);
    // 4:3 is limited by the height: 640 by 480, 108 pixels in from the left.
    EXPECT_EQ(PlacePicture(area, 4, 1920, 1080), QRect(5 + 108, 31, 640, 480));
    // 16:9 in 800 by 600 is limited by the width: 450 high, 75 pixels down.
    EXPECT_EQ(PlacePicture(QRect(0, 0, 800, 600), 6, 0, 0), QRect(0, 75, 800, 450));
    EXPECT_EQ(PlacePicture(area, 3, 0, 0), QRect(5 + 188, 31, 480, 480));
    EXPECT_EQ(PlacePicture(area, 5, 0, 0), QRect(5 + 128, 31, 600, 480));
    EXPECT_EQ(PlacePicture(area, 7, 0, 0), QRect(5 + 44, 31, 768, 480));
}

TEST(VideoLayoutTest, SourceRatioNeedsASourceSize)
{
    const QRect area(5, 31, 856, 480);
    // Modes 0 and 2 are the same: the source's own ratio.
    EXPECT_EQ(PlacePicture(area, 0, 640, 360), PlacePicture(area, 2, 640, 360));
    EXPECT_EQ(PlacePicture(area, 2, 640, 360), QRect(6, 31, 853, 480));
    EXPECT_EQ(PlacePicture(area, 0, 100, 1000), QRect(5 + 404, 31, 48, 480));
    EXPECT_TRUE(PlacePicture(area, 0, 0, 360).isNull());
    EXPECT_TRUE(PlacePicture(area, 2, 640, 0).isNull());
}

TEST(VideoLayoutTest, StretchAndUnknownModesFillTheArea)
{
    const QRect area(5, 31, 856, 480);
    EXPECT_EQ(PlacePicture(area, 1, 640, 360), area);
    EXPECT_EQ(PlacePicture(area, 8, 640, 360), area);
    EXPECT_EQ(PlacePicture(area, -1, 0, 0), area);
    EXPECT_EQ(PlacePicture(area, 1000, 0, 0), area);
}

TEST(VideoLayoutTest, FittedWindowKeepsItsCentreAndAMinimumSize)
{
    const QRect screen(0, 0, 1920, 1080);
    QSize video;
    // The start window, centred on the screen, fitted to a 640 by 360 video at 100%.
    EXPECT_EQ(FitWindowToVideo(QRect(527, 259, 866, 562), 640, 360, 1.0, screen, &video), QRect(635, 319, 650, 442));
    EXPECT_EQ(video, QSize(640, 360));
    // A 100 by 100 video at 50% gets the smallest area, 320 by 240, in a 330 by 322 window.
    EXPECT_EQ(FitWindowToVideo(QRect(527, 259, 866, 562), 100, 100, 0.5, screen, &video).size(), QSize(330, 322));
    EXPECT_EQ(video, QSize(320, 240));
    // Scaled sizes are cut toward zero.
    EXPECT_EQ(FitWindowToVideo(QRect(0, 0, 866, 562), 1001, 751, 0.5, screen, &video).size(), QSize(510, 457));
    EXPECT_EQ(video, QSize(500, 375));
}

TEST(VideoLayoutTest, FittedWindowMayOutgrowTheScreenButStaysReachable)
{
    const QRect screen(0, 0, 1280, 720);
    // A 1920 by 1080 video at 100% is not shrunk to the screen; its corner stays at 0,0.
    EXPECT_EQ(FitWindowToVideo(QRect(207, 79, 866, 562), 1920, 1080, 1.0, screen), QRect(0, 0, 1930, 1162));
    // A window far right and low is pulled back so that 50 pixels of it show.
    EXPECT_EQ(FitWindowToVideo(QRect(3000, 2000, 866, 562), 640, 360, 1.0, screen).topLeft(), QPoint(1230, 670));
    // At 200% the 1920 by 1080 screen's own video gives a window of 3850 by 2242.
    EXPECT_EQ(FitWindowToVideo(QRect(0, 0, 866, 562), 1920, 1080, 2.0, QRect(0, 0, 1920, 1080)).size(), QSize(3850, 2242));
    // On a second screen right of the first, the same guards hold against that screen's edges.
    const QRect second(1920, 0, 1280, 720);
    EXPECT_EQ(FitWindowToVideo(QRect(1900, 10, 330, 322), 1920, 1080, 1.0, second).topLeft(), QPoint(1920, 0));
    EXPECT_EQ(FitWindowToVideo(QRect(4000, 900, 866, 562), 640, 360, 1.0, second).topLeft(), QPoint(3150, 670));
}

} // namespace
