// qkplay_prepare: the first file of a start readied in the background, then taken over by the
// Play of the same file, replaced by the Play of another, or closed. This suite runs in a
// process of its own so that the engine is made by the preparation.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <gtest/gtest.h>
#include <string>

using namespace std::chrono_literals;
using orbeltest::EngineProperty;
using orbeltest::PlaySession;
using orbeltest::TestMedia;
using orbeltest::WaitUntil;

namespace {

bool PropertyBecomes(const char* pszName, const std::string& strValue)
{
    return orbeltest::EnginePropertyBecomes(pszName, strValue, 5000ms);
}

int MediaInfo(const std::string& strPath, int& nHasVideo, int& nWidth)
{
    const std::u16string wide = TestMedia::Utf16(QString::fromStdString(strPath));
    int nReserved = 0;
    int nHeight = 0;
    double dDuration = 0.0;
    double dReserved = 0.0;
    return qkplaydll_GetMediaInfoEx(wide.c_str(), &nHasVideo, &nReserved, &nWidth, &nHeight, &dDuration, &dReserved);
}

} // namespace

TEST(PrepareTest, PreparedFileWaitsUnseenThenPlaysFromWhereItWasOpened)
{
    const std::string strClip = TestMedia::Utf8(TestMedia::SolidColor(QStringLiteral("red"), 30.0, 96, 64, true));
    qkplay_prepare(strClip.c_str());
    // The file opens paused, and to the player nothing plays yet.
    ASSERT_TRUE(PropertyBecomes("path", strClip));
    ASSERT_TRUE(PropertyBecomes("pause", "yes"));
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    EXPECT_EQ(qkplaydll_IsPlaying(), 0);
    // The probe's answer is the file's.
    int nHasVideo = -1;
    int nWidth = -1;
    EXPECT_EQ(MediaInfo(strClip, nHasVideo, nWidth), 1);
    EXPECT_EQ(nHasVideo, 1);
    EXPECT_EQ(nWidth, 96);
    ASSERT_TRUE(PropertyBecomes("time-pos", "0.000000"));
    const std::string strEntry = EngineProperty("playlist/0/id");

    // Play of the same file takes the open file over: the same playlist entry, now running.
    PlaySession session;
    session.Start(strClip);
    ASSERT_TRUE(session.WaitReady());
    EXPECT_EQ(EngineProperty("playlist/0/id"), strEntry);
    EXPECT_TRUE(PropertyBecomes("pause", "no"));
    EXPECT_TRUE(WaitUntil([] { return qkplaydll_getCurrentPos() > 0.3; }, 5000ms));
    qkplaydll_Stop();
    ASSERT_TRUE(session.Join());
    EXPECT_EQ(session.Result(), 1);
}

TEST(PrepareTest, PlayOfAnotherFilePlaysThatFileToItsEnd)
{
    const std::string strPrepared = TestMedia::Utf8(TestMedia::SolidColor(QStringLiteral("blue"), 30.0, 64, 48, true));
    const std::string strOther = TestMedia::Utf8(TestMedia::SoundOnly(1.0));
    qkplay_prepare(strPrepared.c_str());
    ASSERT_TRUE(PropertyBecomes("path", strPrepared));
    PlaySession session;
    session.Start(strOther, nullptr, true);
    ASSERT_TRUE(session.WaitReady());
    EXPECT_EQ(EngineProperty("path"), strOther);
    ASSERT_TRUE(session.Join(8000ms));
    EXPECT_EQ(session.Result(), 1);
    EXPECT_EQ(session.EndOfMediaCount(), 1);
}

TEST(PrepareTest, DiscardClosesThePreparedFileAndNonMediaIsNeverOpened)
{
    const std::string strClip = TestMedia::Utf8(TestMedia::VideoWithSound(30.0));
    qkplay_prepare(strClip.c_str());
    ASSERT_TRUE(PropertyBecomes("path", strClip));
    qkplay_prepare(nullptr);
    EXPECT_TRUE(PropertyBecomes("idle-active", "yes"));

    // A file that is no media is refused by the probe, and the engine stays idle.
    const std::string strText = TestMedia::Utf8(TestMedia::WriteBytes("letter.mkv", QByteArray("Dear reader,\n").repeated(500)));
    qkplay_prepare(strText.c_str());
    int nHasVideo = -1;
    int nWidth = -1;
    EXPECT_EQ(MediaInfo(strText, nHasVideo, nWidth), 0);
    EXPECT_EQ(EngineProperty("idle-active"), "yes");

    // A playback that runs is never replaced by a prepared file.
    PlaySession session;
    session.Start(strClip);
    ASSERT_TRUE(session.WaitReady());
    const std::string strOther = TestMedia::Utf8(TestMedia::SoundOnly(1.0));
    qkplay_prepare(strOther.c_str());
    EXPECT_FALSE(PropertyBecomes("path", strOther));
    EXPECT_EQ(qkplaydll_IsPlaying(), 1);
    qkplaydll_Stop();
    ASSERT_TRUE(session.Join());
}

TEST(PrepareTest, ProcessEndsWithAPreparationUnderWay)
{
    // The last test leaves a preparation running: the process must still end (the test's
    // time limit catches a hang at exit).
    const std::string strClip = TestMedia::Utf8(TestMedia::VideoWithSound(30.0));
    qkplay_prepare(strClip.c_str());
    qkplay_prepare(TestMedia::Utf8(TestMedia::SoundOnly(2.0)).c_str());
    SUCCEED();
}
