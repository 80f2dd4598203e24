// The start-up list: what a start writes for the player that shows its files, and what that
// player reads back.
#include "player/CQKStartupList.h"

#include "support/WideFileText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

void WriteWideHelper(const QString& path, const QString& text)
{
    ASSERT_TRUE(orbeltest::WriteWideFile(path, text));
}

void WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

class StartupListTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        oldCwd = QDir::currentPath();
        QDir::setCurrent(dir.path());
        WriteBytes(dir.filePath("clip.mp4"), "x");
        WriteBytes(dir.filePath("orbel-player"), "program");
        ASSERT_TRUE(QDir(dir.path()).mkdir("folder"));
    }
    void TearDown() override { QDir::setCurrent(oldCwd); }

    QString List() const { return dir.filePath("playercommand.dat"); }
    QString Module() const { return dir.filePath("orbel-player"); }

    QTemporaryDir dir;
    QString oldCwd;
};

TEST_F(StartupListTest, KeepsExistingArgumentsAsTypedAndInOrder)
{
    const QStringList args { Module(), "clip.mp4", "/no/such/file.mkv", dir.filePath("folder"), "", dir.filePath("clip.mp4") };
    ASSERT_TRUE(CQKStartupList::Write(List(), args, Module()));
    // The program's own path goes, a missing file goes, a relative path is made absolute
    // against the working folder of this start, and a folder counts as existing (it fails
    // later, as media).
    EXPECT_EQ(orbeltest::ReadWideFile(List()),
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
                       "<startupfiles>\r\n"
                       "\t<item file=\"%2\"/>\r\n"
                       "\t<item file=\"%1\"/>\r\n"
                       "\t<item file=\"%2\"/>\r\n"
                       "</startupfiles>\r\n")
            .arg(dir.filePath("folder"), dir.filePath("clip.mp4")));
    QStringList read;
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    EXPECT_EQ(read, (QStringList { dir.filePath("clip.mp4"), dir.filePath("folder"), dir.filePath("clip.mp4") }));
}

TEST_F(StartupListTest, OwnPathIsComparedWithoutCaseButOnlyAsAWholePath)
{
    // Started by a relative name, the program's own file is an existing argument like any
    // other, and it is listed (made absolute): the comparison is with the name as typed.
    const QString upper = dir.path() + "/ORBEL-PLAYER";
    ASSERT_TRUE(CQKStartupList::Write(List(), { upper, "orbel-player", Module() }, Module()));
    QStringList read;
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    EXPECT_EQ(read, QStringList { Module() });
}

TEST_F(StartupListTest, EveryStartReplacesTheOldList)
{
    ASSERT_TRUE(CQKStartupList::Write(List(), { "clip.mp4" }, Module()));
    // Arguments that all fail still leave an empty list behind.
    ASSERT_TRUE(CQKStartupList::Write(List(), { Module(), "/missing" }, Module()));
    EXPECT_EQ(orbeltest::ReadWideFile(List()), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<startupfiles/>\r\n"));
    QStringList read { "stale" };
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    EXPECT_TRUE(read.isEmpty());
    // No arguments at all: the old file is deleted and none is written.
    EXPECT_FALSE(CQKStartupList::Write(List(), {}, Module()));
    EXPECT_FALSE(QFileInfo::exists(List()));
    // Only the list itself is ever left in the folder.
    ASSERT_TRUE(CQKStartupList::Write(List(), { "clip.mp4" }, Module()));
    EXPECT_EQ(QDir(dir.path()).entryList({ "*.dat*", ".*dat*" }, QDir::Files | QDir::Hidden), QStringList { "playercommand.dat" });
}

TEST_F(StartupListTest, NonAsciiPathsPassUnchanged)
{
    const QString odd = dir.filePath(QStringLiteral("Blå ünï 日本語 € 𝄞.mkv"));
    WriteBytes(odd, "x");
    ASSERT_TRUE(CQKStartupList::Write(List(), { odd }, Module()));
    QStringList read;
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    ASSERT_EQ(read.size(), 1);
    EXPECT_EQ(read.front(), odd);
    EXPECT_TRUE(QFileInfo::exists(read.front()));
}

TEST_F(StartupListTest, UnreadableListsChangeNothing)
{
    QStringList read { "kept" };
    EXPECT_FALSE(CQKStartupList::Read(List(), read));
    WriteBytes(List(), QByteArray("\xFF\xFE", 2));
    EXPECT_FALSE(CQKStartupList::Read(List(), read));
    QByteArray noise;
    for (int i = 0; i < 5000; ++i)
        noise.append(static_cast<char>((i * 7919 + 13) & 0xFF));
    WriteBytes(List(), noise);
    EXPECT_FALSE(CQKStartupList::Read(List(), read));
    // Half a list, as a reader may see while another start still writes one.
    WriteWideHelper(List(), QStringLiteral("<startupfiles>\r\n\t<item file=\"a\"/>\r\n"));
    EXPECT_FALSE(CQKStartupList::Read(List(), read));
    EXPECT_FALSE(CQKStartupList::Read(dir.filePath("folder"), read));
    EXPECT_EQ(read, QStringList { "kept" });
}

TEST_F(StartupListTest, HandWrittenListsReadOnlyDirectItems)
{
    WriteWideHelper(List(), QStringLiteral("<!--startupfiles--><startupfiles><item file=\"a\"/><item/><other file=\"x\"/>"
                                           "<item file=\"b\"><item file=\"c\"/></item><!--item--></startupfiles>"));
    QStringList read;
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    EXPECT_EQ(read, (QStringList { "a", "", "b" }));

    // Without the root the list has no entries, but it was read.
    WriteWideHelper(List(), QStringLiteral("<files><item file=\"a\"/></files>"));
    read = QStringList { "stale" };
    ASSERT_TRUE(CQKStartupList::Read(List(), read));
    EXPECT_TRUE(read.isEmpty());
}

} // namespace
