// qkplaydll_Play and the operations around it, as the player uses them: the states seen
// through IsReady and IsPlaying, the end-of-media message, Stop in every state, failures.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

using namespace std::chrono_literals;
using orbeltest::PlaySession;
using orbeltest::TestMedia;
using orbeltest::WaitUntil;

namespace {

std::string Clip(double dSeconds = 2.0)
{
    return TestMedia::Utf8(TestMedia::VideoWithSound(dSeconds));
}

void ExpectIdle()
{
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    EXPECT_EQ(qkplaydll_IsPlaying(), 0);
    EXPECT_EQ(qkplaydll_getCurrentPos(), 0.0);
}

bool EngineHasFile()
{
    char* psz = qkplay_get_engine_property("path");
    bool bHas = psz != nullptr;
    qkplay_free(psz);
    return bHas;
}

// Waits until the engine started on the file, which happens while Play is in its first
// moments, before the file is open. (A Stop made before the play thread even entered Play is
// not remembered: it cannot be told from the Stop that the player makes before every new
// file.)
void WaitForLoadfile()
{
    WaitUntil(EngineHasFile, 3000ms);
}

} // namespace

TEST(PlaybackTest, StopWithNothingPlayingDoesNothingAtOnce)
{
    auto tStart = std::chrono::steady_clock::now();
    qkplaydll_Stop();
    qkplaydll_Stop();
    qkplaydll_PauseOrResume();
    qkplaydll_SetCurrentPos(5.0);
    EXPECT_LT(std::chrono::steady_clock::now() - tStart, 50ms);
    ExpectIdle();
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 0.0);
}

TEST(PlaybackTest, WholeLifeFollowsTheStateTable)
{
    PlaySession session;
    session.Start(Clip(2.0));
    ASSERT_TRUE(session.WaitReady());
    EXPECT_NE(qkplaydll_IsPlaying(), 0);

    // Running: the position moves.
    ASSERT_TRUE(WaitUntil([] { return qkplaydll_getCurrentPos() > 0.2; }, 3000ms));

    // Paused: still ready, not playing, the position stands still.
    qkplaydll_PauseOrResume();
    EXPECT_NE(qkplaydll_IsReady(), 0);
    EXPECT_EQ(qkplaydll_IsPlaying(), 0);
    std::this_thread::sleep_for(150ms);
    double dPaused = qkplaydll_getCurrentPos();
    std::this_thread::sleep_for(300ms);
    EXPECT_NEAR(qkplaydll_getCurrentPos(), dPaused, 0.05);

    // A seek while paused: the target shows at once, the position follows without resuming.
    qkplaydll_SetCurrentPos(1.25);
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 1.25);
    EXPECT_TRUE(WaitUntil([] { return std::abs(qkplaydll_getCurrentPos() - 1.25) < 0.1; }, 3000ms))
        << "position " << qkplaydll_getCurrentPos();
    EXPECT_EQ(qkplaydll_IsPlaying(), 0);

    // Resumed: playing again and moving on from the seek target.
    qkplaydll_PauseOrResume();
    EXPECT_NE(qkplaydll_IsReady(), 0);
    EXPECT_NE(qkplaydll_IsPlaying(), 0);
    EXPECT_TRUE(WaitUntil([] { return qkplaydll_getCurrentPos() > 1.4; }, 3000ms));

    // The end: one message, Play returns, nothing open.
    ASSERT_TRUE(session.Join(5000ms));
    EXPECT_EQ(session.Result(), 1);
    qkplaydll_Stop(); // the player's stop after the end changes nothing
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(session.Messages(), std::vector<int>({ PlaySession::kEndOfMedia }));
    ExpectIdle();
}

TEST(PlaybackTest, StopEndsPlayPromptlyInEveryStateAndPostsNothing)
{
    struct Case
    {
        const char* pszName;
        void (*prepare)();
    };
    const Case cases[] = {
        { "loading", [] { WaitForLoadfile(); } },
        { "playing", [] { PlaySession::WaitUntilReady(); } },
        { "paused",
            [] {
                PlaySession::WaitUntilReady();
                qkplaydll_PauseOrResume();
            } },
        { "seeking",
            [] {
                PlaySession::WaitUntilReady();
                qkplaydll_SetCurrentPos(1.5);
            } },
        { "seeking while paused",
            [] {
                PlaySession::WaitUntilReady();
                qkplaydll_PauseOrResume();
                qkplaydll_SetCurrentPos(0.5);
            } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pszName);
        // The stop of the last case has reached the engine.
        WaitUntil([] { return !EngineHasFile(); }, 3000ms);
        PlaySession session;
        session.Start(Clip(3.0));
        c.prepare();
        auto tStop = std::chrono::steady_clock::now();
        qkplaydll_Stop();
        EXPECT_EQ(qkplaydll_IsReady(), 0) << "nothing is open once Stop returned";
        ASSERT_TRUE(session.Join(4000ms));
        EXPECT_LT(std::chrono::steady_clock::now() - tStop, 500ms);
        std::this_thread::sleep_for(100ms);
        EXPECT_TRUE(session.Messages().empty());
        ExpectIdle();
    }
}

TEST(PlaybackTest, PauseAndSeekDuringLoadingApplyOnceOpen)
{
    // The player does not wait for the engine after starting the play thread: a pause and a
    // seek may come while the file is still opening.
    WaitUntil([] { return !EngineHasFile(); }, 3000ms);
    PlaySession session;
    session.Start(Clip(3.0));
    WaitForLoadfile();
    qkplaydll_PauseOrResume();
    qkplaydll_SetCurrentPos(1.5);
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 1.5);
    ASSERT_TRUE(session.WaitReady());
    EXPECT_EQ(qkplaydll_IsPlaying(), 0) << "opens paused";
    EXPECT_TRUE(WaitUntil([] { return std::abs(qkplaydll_getCurrentPos() - 1.5) < 0.1; }, 3000ms))
        << "position " << qkplaydll_getCurrentPos();
    qkplaydll_PauseOrResume();
    EXPECT_NE(qkplaydll_IsPlaying(), 0);
    qkplaydll_Stop();
    EXPECT_TRUE(session.Join());
    EXPECT_TRUE(session.Messages().empty());
}

TEST(PlaybackTest, SeekBeyondTheEndEndsTheMedia)
{
    PlaySession session;
    session.Start(Clip(3.0));
    ASSERT_TRUE(session.WaitReady());
    qkplaydll_SetCurrentPos(100.0);
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 100.0);
    ASSERT_TRUE(session.Join(3000ms));
    EXPECT_EQ(session.EndOfMediaCount(), 1);
}

TEST(PlaybackTest, EachPlayStartsFresh)
{
    {
        PlaySession first;
        first.Start(Clip(3.0));
        ASSERT_TRUE(first.WaitReady());
        qkplaydll_PauseOrResume();
        qkplaydll_SetCurrentPos(2.0);
        qkplaydll_Stop();
        ASSERT_TRUE(first.Join());
    }
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 0.0);
    PlaySession second;
    second.Start(Clip(3.0));
    ASSERT_TRUE(second.WaitReady());
    EXPECT_NE(qkplaydll_IsPlaying(), 0) << "a pause of the last file must not carry over";
    EXPECT_EQ(qkplaydll_getLastSeekingPos(), 0.0);
    EXPECT_LT(qkplaydll_getCurrentPos(), 1.0);
    qkplaydll_Stop();
    EXPECT_TRUE(second.Join());
}

TEST(PlaybackTest, FilesThatCannotPlayEndPlayWithoutMessage)
{
    const QString inputs[] = {
        TestMedia::RandomBytes(),
        TestMedia::ZeroBytes(),
        TestMedia::Truncated(),
        TestMedia::FolderNamedLikeMedia(),
        TestMedia::Folder() + "no-such-file.mkv",
    };
    for (const QString& path : inputs) {
        SCOPED_TRACE(path.toStdString());
        PlaySession session;
        bool bSawReady = false;
        session.Start(TestMedia::Utf8(path));
        WaitUntil(
            [&] {
                bSawReady |= qkplaydll_IsReady() != 0;
                return session.Finished();
            },
            5000ms);
        ASSERT_TRUE(session.Join(100ms)) << "Play must end by itself";
        EXPECT_EQ(session.Result(), 0);
        EXPECT_FALSE(bSawReady);
        EXPECT_TRUE(session.Messages().empty());
        ExpectIdle();
    }
    // Refused before the engine is asked.
    EXPECT_EQ(qkplaydll_Play(nullptr, nullptr, nullptr, 1524, 1, 0.0, 0, 0, 0), 0);
    EXPECT_EQ(qkplaydll_Play("", nullptr, nullptr, 1524, 1, 0.0, 0, 0, 0), 0);
}

TEST(PlaybackTest, PathMustFitTheSystemsLimit)
{
    // The same file named with enough "./" to make its name one byte shorter than the limit plays; one byte
    // more is refused. The refused buffer has no terminator at all: reading past it would be
    // caught by the sanitizer build.
    std::string strFile = Clip(3.0);
    ASSERT_EQ(strFile[0], '/');
    std::string strLong = strFile;
    size_t nSlash = strLong.rfind('/');
    std::string strPad;
    while (strLong.size() + strPad.size() + 2 <= (QKPLAY_MAX_PATH - 1))
        strPad += "./";
    strLong.insert(nSlash + 1, strPad);
    if (strLong.size() < (QKPLAY_MAX_PATH - 1))
        strLong.insert(nSlash + 1, std::string(static_cast<size_t>(QKPLAY_MAX_PATH - 1) - strLong.size(), '/'));
    ASSERT_EQ(strLong.size(), static_cast<size_t>(QKPLAY_MAX_PATH - 1));

    PlaySession session;
    session.Start(strLong);
    EXPECT_TRUE(session.WaitReady()) << "a name just inside the limit fits";
    qkplaydll_Stop();
    ASSERT_TRUE(session.Join());
    EXPECT_EQ(session.Result(), 1);

    auto pBuffer = std::make_unique<char[]>(QKPLAY_MAX_PATH);
    std::memset(pBuffer.get(), '/', QKPLAY_MAX_PATH);
    auto tStart = std::chrono::steady_clock::now();
    EXPECT_EQ(qkplaydll_Play(pBuffer.get(), nullptr, nullptr, 1524, 1, 0.0, 0, 0, 0), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - tStart, 100ms);
}

TEST(PlaybackTest, NonAsciiNamePlaysFromItsUtf8Form)
{
    PlaySession session;
    session.Start(TestMedia::Utf8(TestMedia::NonAsciiName()));
    EXPECT_TRUE(session.WaitReady());
    qkplaydll_Stop();
    ASSERT_TRUE(session.Join());
    EXPECT_EQ(session.Result(), 1);
}

TEST(PlaybackTest, TimeRunsWithoutPictureOrSound)
{
    // Sound only, sound with a cover shown as nothing, and video without a surface (and
    // without a sound device on a machine that has none): the position runs in real time
    // and the end arrives when the media ends, not at once.
    struct Case
    {
        QString strPath;
        bool bAudioOnly;
    };
    const Case cases[] = {
        { TestMedia::SoundOnly(1.0), true },
        { TestMedia::SoundWithCover(1.0), true },
        { TestMedia::VideoOnly(1.0), false },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.strPath.toStdString());
        PlaySession session;
        auto tStart = std::chrono::steady_clock::now();
        session.Start(TestMedia::Utf8(c.strPath), nullptr, c.bAudioOnly);
        ASSERT_TRUE(session.WaitReady());
        EXPECT_TRUE(WaitUntil([] { return qkplaydll_getCurrentPos() > 0.3; }, 3000ms));
        ASSERT_TRUE(session.Join(5000ms));
        // Without a sound device the last part of the sound buffer is not waited for.
        EXPECT_GT(std::chrono::steady_clock::now() - tStart, 600ms);
        EXPECT_EQ(session.EndOfMediaCount(), 1);
    }
}

TEST(PlaybackTest, SecondPlayEndsTheFirstWithoutMessage)
{
    PlaySession first;
    first.Start(Clip(3.0));
    ASSERT_TRUE(first.WaitReady());
    PlaySession second;
    second.Start(Clip(0.5));
    ASSERT_TRUE(first.Join(2000ms)) << "the first Play returns when a second one starts";
    ASSERT_TRUE(second.Join(5000ms));
    EXPECT_TRUE(first.Messages().empty());
    EXPECT_EQ(first.Result(), 1) << "the first file had opened";
    EXPECT_EQ(second.EndOfMediaCount(), 1);
    ExpectIdle();
}

TEST(PlaybackTest, NotifyTargetMayBeNull)
{
    std::thread play([] { qkplaydll_Play(Clip(0.5).c_str(), nullptr, nullptr, 1524, 1, 0.0, 0, 0, 0); });
    play.join();
    ExpectIdle();
}
