// Reading and writing the ten persistent settings.
#include "player/QKPlayerOptions.h"

#include "support/WideFileText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <ostream>

namespace {

namespace opt = QKPlayerOptions;
using orbeltest::ReadWideFile;

void WriteWide(const QString& path, const QString& text)
{
    ASSERT_TRUE(orbeltest::WriteWideFile(path, text));
}

// The ten values at one moment, compared as a whole.
struct Values
{
    int32_t dr, ds, bAutoPlayNext, bMute, bOnlyOneInstance;
    double dVolumeScale;
    int32_t bAlwaysOnTop, nYDel, nUDel, nVDel;
    bool operator==(const Values&) const = default;
};

Values Current()
{
    return { opt::dr, opt::ds, opt::bAutoPlayNext, opt::bMute, opt::bOnlyOneInstance, opt::dVolumeScale, opt::bAlwaysOnTop, opt::nYDel, opt::nUDel, opt::nVDel };
}

void Set(const Values& v)
{
    std::tie(opt::dr, opt::ds, opt::bAutoPlayNext, opt::bMute, opt::bOnlyOneInstance, opt::dVolumeScale, opt::bAlwaysOnTop, opt::nYDel, opt::nUDel, opt::nVDel)
        = std::tie(v.dr, v.ds, v.bAutoPlayNext, v.bMute, v.bOnlyOneInstance, v.dVolumeScale, v.bAlwaysOnTop, v.nYDel, v.nUDel, v.nVDel);
}

std::ostream& operator<<(std::ostream& os, const Values& v)
{
    return os << "dr " << v.dr << " ds " << v.ds << " next " << v.bAutoPlayNext << " mute " << v.bMute << " one " << v.bOnlyOneInstance
              << " vol " << v.dVolumeScale << " top " << v.bAlwaysOnTop << " yuv " << v.nYDel << "," << v.nUDel << "," << v.nVDel;
}

// Values that differ from every built-in one, to see which keys a load touched.
const Values kMarkers { 7, 3, 1, 1, 1, 12.5, 1, 11, -12, 13 };

class PlayerOptionsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        opt::ResetToDefaults();
    }
    void TearDown() override { opt::ResetToDefaults(); }
    QString Path() const { return dir.filePath(QStringLiteral("playeroptions.dat")); }

    QTemporaryDir dir;
};

TEST_F(PlayerOptionsTest, BuiltInValuesBeforeAnyFile)
{
    EXPECT_EQ(Current(), (Values { 2, 1, 0, 0, 1, 90.0, 0, 0, 0, 0 }));
}

TEST_F(PlayerOptionsTest, UnreadableFilesTouchNothing)
{
    Set(kMarkers);
    // Missing file, a folder, an empty file, random bytes, and a document without `options`.
    opt::Load(Path());
    opt::Load(dir.path());
    QByteArray bytes(4096, '\0');
    QRandomGenerator rng(1234);
    for (auto& b : bytes)
        b = static_cast<char>(rng.bounded(256));
    for (const QByteArray& content : { QByteArray(), bytes }) {
        QFile file(Path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        opt::Load(Path());
    }
    WriteWide(Path(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<Options dr=\"5\"/>\r\n<!--options-->\r\n"));
    opt::Load(Path());
    // An `options` element that never closes makes the whole file unreadable.
    WriteWide(Path(), QStringLiteral("<options dr=\"5\" ds=\"0\">"));
    opt::Load(Path());
    EXPECT_EQ(Current(), kMarkers);
}

TEST_F(PlayerOptionsTest, MissingKeysReadZeroForTheFirstFiveAndKeepTheLastFive)
{
    Set(kMarkers);
    WriteWide(Path(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<options/>\r\n"));
    opt::Load(Path());
    // A file without bOnlyOneInstance turns the single instance off; the volume stays.
    EXPECT_EQ(Current(), (Values { 0, 0, 0, 0, 0, 12.5, 1, 11, -12, 13 }));
}

TEST_F(PlayerOptionsTest, ValuesAreReadAsTheyStandWithoutChecks)
{
    // Not numbers read 0, a leading number is read and the rest ignored, nothing is clamped.
    WriteWide(Path(), QStringLiteral("<options dr=\"5\" ds=\"abc\" bAutoPlayNext=\"7x\" bMute=\"1\" bOnlyOneInstance=\" 1\" "
                                     "dVolumeScale=\"150.5\" bAlwaysOnTop=\"-3\" nYDel=\"2147483647\" nUDel=\"\" nVDel=\"-40\"/>"));
    opt::Load(Path());
    EXPECT_EQ(Current(), (Values { 5, 0, 7, 1, 1, 150.5, -3, 2147483647, 0, -40 }));

    WriteWide(Path(), QStringLiteral("<options dVolumeScale=\"loud\"/>"));
    opt::Load(Path());
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 0.0);
}

TEST_F(PlayerOptionsTest, FirstOptionsElementWinsAndCommentsAreNotIt)
{
    WriteWide(Path(), QStringLiteral("<!--options-->\r\n<options ds=\"2\" bMute=\"1\"/>\r\n<options ds=\"3\"/>\r\n"));
    opt::Load(Path());
    EXPECT_EQ(opt::ds, 2);
    EXPECT_EQ(opt::bMute, 1);
}

TEST_F(PlayerOptionsTest, SaveWritesAllTenKeysInTheirOrder)
{
    opt::dr = 0;
    opt::nUDel = -5;
    ASSERT_TRUE(opt::Save(Path()));
    EXPECT_EQ(ReadWideFile(Path()),
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
                       "<options dr=\"0\" ds=\"1\" bAutoPlayNext=\"0\" bMute=\"0\" bOnlyOneInstance=\"1\" "
                       "dVolumeScale=\"90\" bAlwaysOnTop=\"0\" nYDel=\"0\" nUDel=\"-5\" nVDel=\"0\"/>\r\n"));
    // Nothing else is left in the folder.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList { QStringLiteral("playeroptions.dat") });
}

TEST_F(PlayerOptionsTest, RoundTripKeepsSixSignificantDigitsOfTheVolume)
{
    Values v = kMarkers;
    v.dVolumeScale = 33.33333;
    Set(v);
    ASSERT_TRUE(opt::Save(Path()));
    opt::ResetToDefaults();
    opt::Load(Path());
    v.dVolumeScale = 33.3333;
    EXPECT_EQ(Current(), v);
}

TEST_F(PlayerOptionsTest, SaveWhereNoFileCanBeMadeFailsQuietly)
{
    // A missing folder, a "folder" that is a file, and a name taken by a folder.
    EXPECT_FALSE(opt::Save(dir.filePath(QStringLiteral("missing/folder/playeroptions.dat"))));
    WriteWide(dir.filePath(QStringLiteral("plain")), QStringLiteral("<options/>"));
    EXPECT_FALSE(opt::Save(dir.filePath(QStringLiteral("plain/playeroptions.dat"))));
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("playeroptions.dat")));
    EXPECT_FALSE(opt::Save(Path()));
    EXPECT_TRUE(QFileInfo(Path()).isDir());
    EXPECT_EQ(ReadWideFile(dir.filePath(QStringLiteral("plain"))), QStringLiteral("<options/>"));
}

TEST_F(PlayerOptionsTest, SaveRemovesTemporaryFilesOfEndedRunsOnly)
{
    // A run killed between writing and renaming leaves its temporary file behind. Process
    // numbers above the system's highest one belong to no process; this process is alive.
    const QString dead1 = dir.filePath(QStringLiteral(".playeroptions.dat.tmp-2147483000-0"));
    const QString dead2 = dir.filePath(QStringLiteral(".playeroptions.dat.tmp-2147483001-17"));
    const QString alive = dir.filePath(QStringLiteral(".playeroptions.dat.tmp-%1-99999").arg(QCoreApplication::applicationPid()));
    const QString other = dir.filePath(QStringLiteral(".usebigfont.dat.tmp-2147483000-0"));
    for (const QString& f : { dead1, dead2, alive, other })
        WriteWide(f, QStringLiteral("<options ds=\"2\"/>"));
    ASSERT_TRUE(opt::Save(Path()));
    EXPECT_FALSE(QFileInfo::exists(dead1));
    EXPECT_FALSE(QFileInfo::exists(dead2));
    // A save of a running process may be under way; another file's leftovers are not ours.
    EXPECT_TRUE(QFileInfo::exists(alive));
    EXPECT_TRUE(QFileInfo::exists(other));
    opt::Load(Path());
    EXPECT_EQ(opt::ds, 1);
}

TEST_F(PlayerOptionsTest, SaveWritesThroughALinkEvenWhenItDangles)
{
    // Settings kept in a dotfiles folder and linked, with a relative link; the target file
    // does not exist yet.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("dotfiles")));
    const QString target = dir.filePath(QStringLiteral("dotfiles/options.dat"));
    ASSERT_TRUE(QFile::link(QStringLiteral("dotfiles/options.dat"), Path()));
    // Once the target exists the link is kept as well.
    for (opt::nYDel = 21; opt::nYDel <= 22; ++opt::nYDel) {
        ASSERT_TRUE(opt::Save(Path()));
        EXPECT_TRUE(QFileInfo(Path()).isSymLink());
        EXPECT_TRUE(ReadWideFile(target).contains(QStringLiteral("nYDel=\"%1\"").arg(opt::nYDel)));
    }
}

} // namespace
