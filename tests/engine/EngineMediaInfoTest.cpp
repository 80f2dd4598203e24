// qkplaydll_GetMediaInfoEx: what the player learns of a file before it plays it.
#include "PlaySession.h"
#include "engine/qkplay.h"
#include "support/TestMedia.h"

#include <QFile>
#include <chrono>
#include <gtest/gtest.h>

using orbeltest::PlaySession;
using orbeltest::TestMedia;

namespace {

// The outputs start from values that no probe would produce, so that "left alone" and
// "written" can be told apart.
struct Info
{
    int nResult { -1 };
    int nHasVideo { -7 };
    int nReserved { 4242 };
    int nWidth { -7 };
    int nHeight { -7 };
    double dDuration { -7.0 };
    double dReserved { 42.5 };
};

Info Probe(const QString& strPath)
{
    Info info;
    std::u16string wide = TestMedia::Utf16(strPath);
    info.nResult = qkplaydll_GetMediaInfoEx(wide.c_str(), &info.nHasVideo, &info.nReserved, &info.nWidth,
        &info.nHeight, &info.dDuration, &info.dReserved);
    return info;
}

// A copy of this test program, an executable, under a media file's name.
QString ProgramNamedLikeMedia()
{
    QFile self(QStringLiteral("/proc/self/exe"));
    if (!self.open(QIODevice::ReadOnly))
        return QString();
    return TestMedia::WriteBytes("program.mkv", self.read(4 << 20));
}

} // namespace

TEST(MediaInfoTest, FilesGiveTheirShownSizeDurationAndVideoFlag)
{
    // A phone clip stored landscape with a quarter-turn rotation is shown portrait.
    const QString landscape = TestMedia::Make("landscape.mp4", { "-f", "lavfi", "-i", "testsrc=size=160x120:rate=25:duration=0.4", "-c:v", "libx264", "-preset", "ultrafast" });
    const QString rotated = TestMedia::Make("rotated.mp4", { "-i", landscape, "-c", "copy", "-metadata:s:v:0", "rotate=90" });
    // Duration -1: not checked.
    const struct
    {
        QString path;
        int nHasVideo, nWidth, nHeight;
        double dDuration, dTolerance = 0.15;
    } cases[] = {
        { TestMedia::VideoWithSound(1.0), 1, 160, 120, 1.0, 0.1 },
        { TestMedia::VideoOnly(1.0), 1, 160, 120, -1 },
        // Sound files have no video, even with a cover picture.
        { TestMedia::SoundOnly(1.0), 0, 0, 0, 1.0 },
        { TestMedia::SoundWithCover(1.0), 0, 0, 0, 1.0 },
        { TestMedia::Anamorphic(), 1, 160, 90, -1 }, // stored 120 wide with 4:3 pixels
        { TestMedia::Sized(1, 1), 1, 1, 1, -1 },
        { TestMedia::Sized(4096, 2160), 1, 4096, 2160, -1 },
        { rotated, 1, 120, 160, -1 },
        { TestMedia::NonAsciiName(), 1, 160, 120, -1 }, // found through the wide path
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path.toStdString());
        ASSERT_FALSE(c.path.isEmpty());
        const Info info = Probe(c.path);
        EXPECT_NE(info.nResult, 0);
        EXPECT_EQ(info.nHasVideo, c.nHasVideo);
        EXPECT_EQ(info.nWidth, c.nWidth);
        EXPECT_EQ(info.nHeight, c.nHeight);
        if (c.dDuration >= 0) {
            EXPECT_NEAR(info.dDuration, c.dDuration, c.dTolerance);
        }
        // The reserved outputs are left as they were.
        EXPECT_EQ(info.nReserved, 4242);
        EXPECT_EQ(info.dReserved, 42.5);
    }
}

TEST(MediaInfoTest, BrokenInputsFailQuicklyAndLeaveOutputsAlone)
{
    const QString inputs[] = {
        TestMedia::ZeroBytes(),
        TestMedia::Truncated(),
        TestMedia::RandomBytes(),
        TestMedia::FolderNamedLikeMedia(),
        TestMedia::Folder() + "no-such-file.mkv",
        QString(),
        TestMedia::Folder() + "../" + QString(3000, 'x') + ".mkv",
        // Files that some raw demuxer takes for a stream with a very low score, or shows as a
        // picture of their characters: a program and a text file, named like media.
        ProgramNamedLikeMedia(),
        TestMedia::WriteBytes("notes.mp3", QByteArray("Shopping list\n").repeated(4000)),
        TestMedia::WriteBytes("readme.txt", QByteArray("Plain text, nothing to play.\n").repeated(200)),
    };
    for (const QString& path : inputs) {
        SCOPED_TRACE(path.left(200).toStdString());
        auto tStart = std::chrono::steady_clock::now();
        Info info = Probe(path);
        auto elapsed = std::chrono::steady_clock::now() - tStart;
        EXPECT_EQ(info.nResult, 0);
        EXPECT_EQ(info.nHasVideo, -7);
        EXPECT_EQ(info.nWidth, -7);
        EXPECT_EQ(info.nHeight, -7);
        EXPECT_EQ(info.dDuration, -7.0);
        EXPECT_EQ(info.nReserved, 4242);
        EXPECT_LT(elapsed, std::chrono::milliseconds(1000));
    }
}

TEST(MediaInfoTest, BadWideStringsAndNullPointersAreRefused)
{
    EXPECT_EQ(qkplaydll_GetMediaInfoEx(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    // A lone high surrogate at the end, and a lone low surrogate inside.
    std::u16string broken = TestMedia::Utf16(TestMedia::VideoWithSound());
    std::u16string highAtEnd = broken + u'\xD800';
    std::u16string lowInside = u'\xDC00' + broken;
    int nHasVideo = -7;
    EXPECT_EQ(qkplaydll_GetMediaInfoEx(highAtEnd.c_str(), &nHasVideo, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(qkplaydll_GetMediaInfoEx(lowInside.c_str(), &nHasVideo, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(nHasVideo, -7);

    // With every output null a good file still answers.
    std::u16string good = TestMedia::Utf16(TestMedia::VideoWithSound());
    EXPECT_NE(qkplaydll_GetMediaInfoEx(good.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
}

TEST(MediaInfoTest, AnswersWhileAnotherFilePlays)
{
    PlaySession session;
    session.Start(TestMedia::Utf8(TestMedia::VideoWithSound(2.0)));
    ASSERT_TRUE(session.WaitReady());
    Info info = Probe(TestMedia::SoundOnly());
    EXPECT_NE(info.nResult, 0);
    EXPECT_EQ(info.nHasVideo, 0);
    EXPECT_NE(qkplaydll_IsReady(), 0) << "the probe must not disturb the playback";
    qkplaydll_Stop();
    EXPECT_TRUE(session.Join());
}
