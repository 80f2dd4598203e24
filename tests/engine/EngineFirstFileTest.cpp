// Settings made before the engine exists (the player sets volume and mute once at start-up,
// long before any file) are in force on the first file and stay for the next ones. This
// suite runs in a process of its own so that its first Play is the engine's first.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

using namespace std::chrono_literals;
using orbeltest::PlaySession;
using orbeltest::TestMedia;
using orbeltest::WaitUntil;

namespace {

std::string Property(const char* pszName)
{
    return orbeltest::EngineProperty(pszName);
}

double Volume()
{
    return std::strtod(Property("volume").c_str(), nullptr);
}

// Waits for an asynchronous setting to arrive in the engine.
bool PropertyBecomes(const char* pszName, const std::string& strValue)
{
    return orbeltest::EnginePropertyBecomes(pszName, strValue, 2000ms);
}

} // namespace

TEST(FirstFileTest, SettingsMadeBeforeTheFirstFileAreInForceAndStay)
{
    qkplaydll_SetMute(1);
    qkplaydll_SetVolume(0.25);
    qkplaydll_AdjustColor(20, 0, -300);
    EXPECT_EQ(Property("volume"), "<none>") << "nothing may start the engine before the first file";

    {
        PlaySession session;
        session.Start(TestMedia::Utf8(TestMedia::VideoWithSound(2.0)));
        ASSERT_TRUE(session.WaitReady());
        EXPECT_NEAR(Volume(), 25.0, 0.01);
        EXPECT_EQ(Property("mute"), "yes");
        std::string strFilter = Property("vf");
        EXPECT_NE(strFilter.find("lutyuv"), std::string::npos) << strFilter;
        EXPECT_NE(strFilter.find("y=val+20"), std::string::npos) << strFilter;
        EXPECT_NE(strFilter.find("v=val-255"), std::string::npos) << "offsets are clamped: " << strFilter;

        // Changes during playback take effect at once.
        qkplaydll_SetVolume(0.6);
        qkplaydll_SetMute(0);
        qkplaydll_AdjustColor(0, 0, 0);
        EXPECT_TRUE(WaitUntil([] { return std::abs(Volume() - 60.0) < 0.01; }, 2000ms));
        EXPECT_TRUE(PropertyBecomes("mute", "no"));
        EXPECT_TRUE(PropertyBecomes("vf", "")) << "(0, 0, 0) leaves no filter behind";
        qkplaydll_AdjustColor(-5, 7, 0);
        qkplaydll_Stop();
        ASSERT_TRUE(session.Join());
    }

    // The next file keeps all of it.
    PlaySession next;
    next.Start(TestMedia::Utf8(TestMedia::SoundOnly(1.0)), nullptr, true);
    ASSERT_TRUE(next.WaitReady());
    EXPECT_NEAR(Volume(), 60.0, 0.01);
    EXPECT_EQ(Property("mute"), "no");
    EXPECT_NE(Property("vf").find("y=val-5:u=val+7:v=val"), std::string::npos) << Property("vf");

    // Out of range and not-a-number.
    qkplaydll_SetVolume(7.0);
    EXPECT_TRUE(WaitUntil([] { return std::abs(Volume() - 100.0) < 0.01; }, 2000ms));
    qkplaydll_SetVolume(-1.0);
    EXPECT_TRUE(WaitUntil([] { return Volume() == 0.0; }, 2000ms));
    qkplaydll_SetVolume(std::nan(""));
    qkplaydll_SetVolume(0.5);
    EXPECT_TRUE(WaitUntil([] { return std::abs(Volume() - 50.0) < 0.01; }, 2000ms));
    qkplaydll_Stop();
    ASSERT_TRUE(next.Join());
}

TEST(FirstFileTest, EngineIsConfiguredForAnEmbeddedPlayer)
{
    // No user configuration, no keys, nothing drawn over the picture, and a silent fallback
    // when there is no sound device.
    EXPECT_EQ(Property("config"), "no");
    EXPECT_EQ(Property("input-default-bindings"), "no");
    EXPECT_EQ(Property("osc"), "no");
    EXPECT_EQ(Property("idle"), "yes");
    EXPECT_EQ(Property("audio-fallback-to-null"), "yes");
    EXPECT_EQ(Property("hwdec"), "auto-copy-safe") << "a colour adjustment is in force";
    qkplaydll_AdjustColor(0, 0, 0);
    EXPECT_TRUE(PropertyBecomes("hwdec", "auto-safe"));
}
