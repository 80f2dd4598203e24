// The engine on a machine where its media libraries cannot be loaded: this suite runs with a
// file that is no library in place of libmpv (CTest sets the library path). The player that
// uses the engine still starts; every file is refused, as the engine refuses a file it cannot
// open, and nothing crashes or hangs.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using orbeltest::PlaySession;
using orbeltest::TestMedia;

TEST(EngineWithoutMediaLibrariesTest, EveryFileIsRefusedAndNothingElseFails)
{
    EXPECT_EQ(qkplay_load_libraries(), 0);
    qkplaydll_SetVolume(0.5);
    qkplaydll_SetMute(1);
    const QString strClip = TestMedia::VideoWithSound(1.0);
    qkplay_prepare(TestMedia::Utf8(strClip).c_str());

    const std::u16string wide = TestMedia::Utf16(strClip);
    int nHasVideo = -1;
    EXPECT_EQ(qkplaydll_GetMediaInfoEx(wide.c_str(), &nHasVideo, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(nHasVideo, -1) << "a refused file leaves the outputs alone";

    PlaySession session;
    session.Start(TestMedia::Utf8(strClip));
    ASSERT_TRUE(session.Join(3000ms)) << "a play that cannot start returns";
    EXPECT_EQ(session.Result(), 0);
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    EXPECT_EQ(qkplaydll_IsPlaying(), 0);
    qkplaydll_Stop();
    qkplaydll_PauseOrResume();
    EXPECT_EQ(qkplaydll_getCurrentPos(), 0.0);
    EXPECT_EQ(qkplay_get_engine_property("volume"), nullptr);
}
