// Many short playbacks in a row, as a restless user makes them: Play on a thread, then
// pauses, seeks and Stop at random moments, then the join. Every round must end within its
// bound (no hang), nothing may crash, and the sanitizer build checks for races of memory and
// for leaks. The random choices come from a fixed seed, so a failing round can be replayed.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <thread>

using namespace std::chrono_literals;
using orbeltest::PlaySession;
using orbeltest::TestMedia;

namespace {

int Rounds()
{
    const char* psz = std::getenv("ORBEL_STRESS_ROUNDS");
    return psz ? std::atoi(psz) : 500;
}

} // namespace

TEST(EngineStressTest, ManyPlaysWithRandomControlsNeverHang)
{
    const std::string strClip = TestMedia::Utf8(TestMedia::SolidColor("gray", 1.0, 32, 24, true));
    const std::string strSound = TestMedia::Utf8(TestMedia::SoundOnly(1.0));
    ASSERT_FALSE(strClip.empty());
    std::mt19937 random(1524);
    auto chance = [&](int nPercent) { return std::uniform_int_distribution<int>(0, 99)(random) < nPercent; };
    auto millis = [&](int nMax) { return std::chrono::milliseconds(std::uniform_int_distribution<int>(1, nMax)(random)); };

    int nEnded = 0;
    const auto tStart = std::chrono::steady_clock::now();
    const int nRounds = Rounds();
    for (int nRound = 0; nRound < nRounds; ++nRound) {
        SCOPED_TRACE("round " + std::to_string(nRound));
        const bool bSound = chance(20);
        PlaySession session;
        session.Start(bSound ? strSound : strClip, nullptr, bSound);
        std::this_thread::sleep_for(millis(40));
        const int nActions = std::uniform_int_distribution<int>(0, 3)(random);
        for (int i = 0; i < nActions; ++i) {
            if (chance(40))
                qkplaydll_PauseOrResume();
            if (chance(50))
                qkplaydll_SetCurrentPos(std::uniform_real_distribution<double>(-0.5, 1.5)(random));
            if (chance(30)) {
                // The main thread's once-a-second reading, as the player makes it.
                (void)qkplaydll_IsPlaying();
                (void)qkplaydll_IsReady();
                (void)qkplaydll_getCurrentPos();
                (void)qkplaydll_getLastSeekingPos();
            }
            std::this_thread::sleep_for(millis(30));
        }
        qkplaydll_Stop();
        if (chance(5))
            qkplaydll_Stop(); // a second Stop is harmless
        // A round never lasts longer than its clip (a Stop that came before the play thread
        // entered Play lets the clip play out).
        ASSERT_TRUE(session.Join(4000ms)) << "Play did not return after Stop";
        EXPECT_LE(session.EndOfMediaCount(), 1);
        nEnded += session.EndOfMediaCount();
        EXPECT_EQ(qkplaydll_IsReady(), 0);
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - tStart);
    std::printf("%d rounds in %lld ms, %d of them reached the end\n", nRounds, static_cast<long long>(elapsed.count()),
        nEnded);
}
