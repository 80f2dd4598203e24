// Where the panel's controls stand for a window's width, and how a position becomes the time
// display and the seek bar's value.
#include "player/QKPanelLayout.h"
#include "player/QKPlayTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace QKPanelLayout;

namespace {

TEST(PanelArithmeticTest, ButtonRowCentresUnlessTheVolumeWouldReachTheFullScreenButton)
{
    // 500: (500 - 25) / 2 = 237, and 237 + 221 = 458 does not pass 469.
    EXPECT_EQ(Place(kIdPlay, 500, 400), QRect(237, 419, 25, 25));
    EXPECT_EQ(Place(kIdVolSlider, 500, 400), QRect(368, 424, 80, 16));
    // 440: 207 + 221 = 428 passes 409, so the row ends before the full-screen button.
    EXPECT_EQ(Centre(440), 188);
    EXPECT_EQ(Place(kIdOpen, 440, 400).x(), 118);
    EXPECT_EQ(Place(kIdFullScreen, 440, 400), QRect(415, 424, 20, 20));
    // An even and an odd width differ by one pixel in the middle.
    EXPECT_EQ(Centre(866), 420);
    EXPECT_EQ(Centre(867), 421);
    EXPECT_EQ(Centre(868), 421);

    // Rows that hang on the right edge and on the video area's lower edge.
    EXPECT_EQ(Place(kIdClose, 866, 511), QRect(841, 5, 20, 20));
    EXPECT_EQ(Place(kIdPosSlider, 866, 511), QRect(56, 513, 754, 16));
    EXPECT_EQ(Place(kIdTimeTotal, 866, 511), QRect(810, 513, 50, 16));
    // A narrow window leaves the title line no width at all.
    EXPECT_LE(Place(kIdTitle, 275, 200).width(), 0);
    EXPECT_LT(Place(kIdTitle, 200, 200).width(), 0);
}

TEST(PanelArithmeticTest, BarsNeverShiftTheirRow)
{
    // A bar as wide as a small screen keeps the play button in its middle, where the panel
    // would have shifted it.
    EXPECT_EQ(PlaceOnBar(kIdPlay, 440), QRect(207, 19, 25, 25));
    EXPECT_EQ(PlaceOnBar(kIdMaximize, 1920), QRect(1873, 5, 20, 20));
    EXPECT_EQ(PlaceOnBar(kIdPosSlider, 1920), QRect(56, 2, 1808, 16));
    EXPECT_TRUE(PlaceOnBar(99, 1920).isNull());
}

TEST(PanelArithmeticTest, TimeDisplayCutsTowardZeroAndRefusesNonsense)
{
    EXPECT_EQ(QKPlayTime::Format(0.0), QStringLiteral("00:00:00"));
    EXPECT_EQ(QKPlayTime::Format(3725.999), QStringLiteral("01:02:05"));
    EXPECT_EQ(QKPlayTime::Format(359999.0), QStringLiteral("99:59:59"));
    // The paused seek label reads the bar's percentage as seconds: half way is 00:00:50.
    EXPECT_EQ(QKPlayTime::Format(50.0), QStringLiteral("00:00:50"));
    // A negative or impossible time carries the minus sign that makes the display skip it.
    EXPECT_TRUE(QKPlayTime::Format(-5.0).contains(QLatin1Char('-')));
    EXPECT_TRUE(QKPlayTime::Format(std::nan("")).contains(QLatin1Char('-')));
    EXPECT_TRUE(QKPlayTime::Format(1e12).contains(QLatin1Char('-')));

    // Positions beyond 100 hours or below 0 show as 0; others stop at the duration.
    EXPECT_EQ(QKPlayTime::Clamp(360001.0, 400000.0), 0.0);
    EXPECT_EQ(QKPlayTime::Clamp(-1.0, 10.0), 0.0);
    EXPECT_EQ(QKPlayTime::Clamp(std::nan(""), 10.0), 0.0);
    EXPECT_EQ(QKPlayTime::Clamp(12.5, 10.0), 10.0);
    EXPECT_EQ(QKPlayTime::Clamp(360000.0, 400000.0), 360000.0);
}

TEST(PanelArithmeticTest, UnknownLengthLeavesTheSeekBarAtItsStart)
{
    EXPECT_EQ(QKPlayTime::ToSlider(15.0, 60.0, 100.0), 25.0);
    EXPECT_EQ(QKPlayTime::ToSlider(15.0, 0.0, 100.0), 0.0);
    EXPECT_EQ(QKPlayTime::ToSlider(0.0, 0.0, 100.0), 0.0);
    EXPECT_EQ(QKPlayTime::ToHundredths(12.349), 1234u);
    EXPECT_EQ(QKPlayTime::ToHundredths(-3.0), 0u);
    EXPECT_EQ(QKPlayTime::ToHundredths(std::numeric_limits<double>::infinity()), std::numeric_limits<uint64_t>::max());
}

} // namespace
