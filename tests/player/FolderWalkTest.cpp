// Previous and next: through the queue of several files, and through the current file's folder
// (real folders on disk) when the queue holds one.
#include "player/CQKPlayerDlg.h"
#include "player/QKFolderWalk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

class FolderWalkTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }

    // Empty files and folders in the test's folder; a name ending in '/' is a folder.
    void Make(const QStringList& names)
    {
        for (const QString& name : names) {
            if (name.endsWith(u'/')) {
                ASSERT_TRUE(QDir(dir.path()).mkdir(name.chopped(1)));
            } else {
                QFile f(Path(name));
                ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            }
        }
    }
    QString Path(const QString& name) const { return dir.path() + u'/' + name; }

    // The names the window reaches from `from` by `n` steps of next (n > 0) or previous, with
    // a queue of that one file, as after opening it.
    QStringList Walk(const QString& from, int n)
    {
        dlg.m_arrFiles = QStringList { Path(from) };
        dlg.m_strMediaPath = Path(from);
        QStringList names;
        for (int i = 0; i < std::abs(n); ++i) {
            if (n > 0)
                dlg.SelectNextFile();
            else
                dlg.SelectPrevFile();
            names << dlg.m_strMediaPath.mid(dir.path().size() + 1);
        }
        EXPECT_EQ(dlg.m_arrFiles, QStringList { Path(from) }) << "the walk changed the queue";
        return names;
    }

    QTemporaryDir dir;
    CQKPlayerDlg dlg;
};

TEST_F(FolderWalkTest, NaturalOrderIgnoresCaseCountsNumbersAndIsTotal)
{
    QStringList names { "clip 10.avi", "Clip 2.avi", "clip 1.avi", "b.avi", "A.avi", "clip 01.avi", "Clip 1.avi", "x2y10", "x2y9", "x10" };
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) { return QKFolderWalk::NaturalCompare(a, b) < 0; });
    EXPECT_EQ(names, QStringList({ "A.avi", "b.avi", "clip 01.avi", "Clip 1.avi", "clip 1.avi", "Clip 2.avi", "clip 10.avi", "x2y9", "x2y10", "x10" }));
    EXPECT_EQ(QKFolderWalk::NaturalCompare(u"clip 1.avi", u"clip 1.avi"), 0);
    EXPECT_LT(QKFolderWalk::NaturalCompare(u"clip", u"clip 1"), 0);
    EXPECT_LT(QKFolderWalk::NaturalCompare(u"clip 007", u"clip 7"), 0);
    // Numbers longer than any integer still compare by value.
    EXPECT_LT(QKFolderWalk::NaturalCompare(u"n 99999999999999999999998", u"n 99999999999999999999999"), 0);
}

TEST_F(FolderWalkTest, QueueOfSeveralWrapsBothWaysAndTakesTheFirstOfTwins)
{
    dlg.m_arrFiles = QStringList { "/m/a.avi", "/m/b.avi", "/m/c.avi" };
    dlg.m_strMediaPath = "/m/a.avi";
    QStringList seen;
    for (int i = 0; i < 3; ++i) {
        dlg.SelectNextFile();
        seen << dlg.m_strMediaPath;
    }
    dlg.SelectPrevFile();
    seen << dlg.m_strMediaPath;
    EXPECT_EQ(seen, QStringList({ "/m/b.avi", "/m/c.avi", "/m/a.avi", "/m/c.avi" }));
    // Case aside, the current file is found; a file the queue does not hold starts it over.
    dlg.m_strMediaPath = "/M/B.AVI";
    dlg.SelectPrevFile();
    EXPECT_EQ(dlg.m_strMediaPath, "/m/a.avi");
    dlg.m_strMediaPath = "/elsewhere.avi";
    dlg.SelectNextFile();
    EXPECT_EQ(dlg.m_strMediaPath, "/m/a.avi");

    // Twins: next always goes on from the first of them, so the second is reached and left
    // again for the first.
    dlg.m_arrFiles = QStringList { "/m/a.avi", "/m/a.avi" };
    dlg.SelectNextFile();
    EXPECT_EQ(dlg.m_strMediaPath, "/m/a.avi");
    dlg.m_arrFiles = QStringList { "/m/a.avi", "/m/b.avi", "/m/a.avi" };
    dlg.m_strMediaPath = "/m/b.avi";
    dlg.SelectNextFile();
    dlg.SelectNextFile();
    EXPECT_EQ(dlg.m_strMediaPath, "/m/b.avi");
}

TEST_F(FolderWalkTest, FolderIsWalkedInNaturalOrderOverTheWalksTypesOnly)
{
    Make({ "clip 10.mp4", "clip 2.MKV", "clip 1.avi", "movie.mov", "notes.txt", "song.MP3", "trailer.AVI", "z-last.wav" });
    // From the first file forward: "movie.mov" and "notes.txt" are passed over, the end wraps.
    EXPECT_EQ(Walk("clip 1.avi", 6), QStringList({ "clip 2.MKV", "clip 10.mp4", "song.MP3", "trailer.AVI", "z-last.wav", "clip 1.avi" }));
    // Backward from the first file wraps to the last.
    EXPECT_EQ(Walk("clip 1.avi", -3), QStringList({ "z-last.wav", "trailer.AVI", "song.MP3" }));
    EXPECT_EQ(Walk("z-last.wav", 1), QStringList({ "clip 1.avi" }));
    // A file of a type the walk does not take still marks its place.
    EXPECT_EQ(Walk("movie.mov", 1), QStringList({ "song.MP3" }));
    EXPECT_EQ(Walk("movie.mov", -1), QStringList({ "clip 10.mp4" }));
}

TEST_F(FolderWalkTest, FoldersNamedLikeMediaStopTheWalkButAreNeverChosen)
{
    Make({ "b.avi", "c.avi/", "d.avi" });
    // Next from b ends at the folder c.avi, and its wrap cannot reach past it: b stays.
    EXPECT_EQ(Walk("b.avi", 1), QStringList({ "b.avi" }));
    EXPECT_EQ(Walk("d.avi", 1), QStringList({ "b.avi" }));
    // Previous from d finds the folder, and its wrap the last media entry: d itself.
    EXPECT_EQ(Walk("d.avi", -1), QStringList({ "d.avi" }));
    EXPECT_EQ(Walk("b.avi", -1), QStringList({ "d.avi" }));
}

TEST_F(FolderWalkTest, LoneGoneAndUnreachableFilesKeepTheirPlaceOrWrap)
{
    Make({ "only.avi", "readme.txt" });
    EXPECT_EQ(Walk("only.avi", 1), QStringList({ "only.avi" }));
    EXPECT_EQ(Walk("only.avi", -1), QStringList({ "only.avi" }));
    // A current file that is gone from its folder: next wraps to the first media file,
    // previous to the last.
    Make({ "a.avi", "c.avi" });
    EXPECT_EQ(Walk("b.avi", 1), QStringList({ "a.avi" }));
    EXPECT_EQ(Walk("b.avi", -1), QStringList({ "only.avi" }));
    // A folder that is gone, and a name without any folder, leave the path as it was.
    const QString gone = dir.path() + QStringLiteral("/gone/x.avi");
    EXPECT_EQ(QKFolderWalk::FindNext(gone), gone);
    EXPECT_EQ(QKFolderWalk::FindPrev(gone), gone);
    EXPECT_EQ(QKFolderWalk::FindNext(QStringLiteral("x.avi")), QStringLiteral("x.avi"));
}

} // namespace
