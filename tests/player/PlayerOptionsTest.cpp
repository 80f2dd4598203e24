// Reading and writing the ten persistent settings.
#include "player/QKPlayerOptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

namespace opt = QKPlayerOptions;

// Writes text as the program's own files are: UTF-16LE with a byte order mark.
void WriteWide(const QString& path, const QString& text)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QByteArray bytes("\xFF\xFE", 2);
    for (QChar c : text) {
        bytes.append(static_cast<char>(c.unicode() & 0xFF));
        bytes.append(static_cast<char>(c.unicode() >> 8));
    }
    f.write(bytes);
}

QString ReadWide(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = f.readAll();
    if (bytes.size() < 2 || static_cast<uint8_t>(bytes[0]) != 0xFF || static_cast<uint8_t>(bytes[1]) != 0xFE)
        return QStringLiteral("<no mark>");
    return QString(reinterpret_cast<const QChar*>(bytes.constData() + 2), (bytes.size() - 2) / 2);
}

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

    // Values that differ from every built-in one, to see which keys a load touched.
    static void SetMarkers()
    {
        opt::dr = 7;
        opt::ds = 3;
        opt::bAutoPlayNext = 1;
        opt::bMute = 1;
        opt::bOnlyOneInstance = 1;
        opt::dVolumeScale = 12.5;
        opt::bAlwaysOnTop = 1;
        opt::nYDel = 11;
        opt::nUDel = -12;
        opt::nVDel = 13;
    }

    QTemporaryDir dir;
};

TEST_F(PlayerOptionsTest, BuiltInValuesBeforeAnyFile)
{
    EXPECT_EQ(opt::dr, 2);
    EXPECT_EQ(opt::ds, 1);
    EXPECT_EQ(opt::bAutoPlayNext, 0);
    EXPECT_EQ(opt::bMute, 0);
    EXPECT_EQ(opt::bOnlyOneInstance, 1);
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 90.0);
    EXPECT_EQ(opt::bAlwaysOnTop, 0);
    EXPECT_EQ(opt::nYDel, 0);
    EXPECT_EQ(opt::nUDel, 0);
    EXPECT_EQ(opt::nVDel, 0);
}

TEST_F(PlayerOptionsTest, UnreadableFilesTouchNothing)
{
    SetMarkers();
    // Missing file, a folder, an empty file, random bytes, and a document without `options`.
    opt::Load(Path());
    opt::Load(dir.path());
    QFile empty(Path());
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.close();
    opt::Load(Path());
    QFile noise(Path());
    ASSERT_TRUE(noise.open(QIODevice::WriteOnly));
    QByteArray bytes(4096, '\0');
    QRandomGenerator rng(1234);
    for (auto& b : bytes)
        b = static_cast<char>(rng.bounded(256));
    noise.write(bytes);
    noise.close();
    opt::Load(Path());
    WriteWide(Path(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<Options dr=\"5\"/>\r\n<!--options-->\r\n"));
    opt::Load(Path());
    // An `options` element that never closes makes the whole file unreadable.
    WriteWide(Path(), QStringLiteral("<options dr=\"5\" ds=\"0\">"));
    opt::Load(Path());

    EXPECT_EQ(opt::dr, 7);
    EXPECT_EQ(opt::ds, 3);
    EXPECT_EQ(opt::bAutoPlayNext, 1);
    EXPECT_EQ(opt::bMute, 1);
    EXPECT_EQ(opt::bOnlyOneInstance, 1);
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 12.5);
    EXPECT_EQ(opt::bAlwaysOnTop, 1);
    EXPECT_EQ(opt::nYDel, 11);
    EXPECT_EQ(opt::nUDel, -12);
    EXPECT_EQ(opt::nVDel, 13);
}

TEST_F(PlayerOptionsTest, MissingKeysReadZeroForTheFirstFiveAndKeepTheLastFive)
{
    SetMarkers();
    WriteWide(Path(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<options/>\r\n"));
    opt::Load(Path());
    EXPECT_EQ(opt::dr, 0);
    EXPECT_EQ(opt::ds, 0);
    EXPECT_EQ(opt::bAutoPlayNext, 0);
    EXPECT_EQ(opt::bMute, 0);
    // A file without the key turns the single instance off.
    EXPECT_EQ(opt::bOnlyOneInstance, 0);
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 12.5);
    EXPECT_EQ(opt::bAlwaysOnTop, 1);
    EXPECT_EQ(opt::nYDel, 11);
    EXPECT_EQ(opt::nUDel, -12);
    EXPECT_EQ(opt::nVDel, 13);
}

TEST_F(PlayerOptionsTest, ValuesAreReadAsTheyStandWithoutChecks)
{
    // Not numbers read 0, a leading number is read and the rest ignored, nothing is clamped.
    WriteWide(Path(), QStringLiteral("<options dr=\"5\" ds=\"abc\" bAutoPlayNext=\"7x\" bMute=\"1\" bOnlyOneInstance=\" 1\" "
                                     "dVolumeScale=\"150.5\" bAlwaysOnTop=\"-3\" nYDel=\"2147483647\" nUDel=\"\" nVDel=\"-40\"/>"));
    opt::Load(Path());
    EXPECT_EQ(opt::dr, 5);
    EXPECT_EQ(opt::ds, 0);
    EXPECT_EQ(opt::bAutoPlayNext, 7);
    EXPECT_EQ(opt::bMute, 1);
    EXPECT_EQ(opt::bOnlyOneInstance, 1);
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 150.5);
    EXPECT_EQ(opt::bAlwaysOnTop, -3);
    EXPECT_EQ(opt::nYDel, 2147483647);
    EXPECT_EQ(opt::nUDel, 0);
    EXPECT_EQ(opt::nVDel, -40);

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
    EXPECT_EQ(ReadWide(Path()),
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
                       "<options dr=\"0\" ds=\"1\" bAutoPlayNext=\"0\" bMute=\"0\" bOnlyOneInstance=\"1\" "
                       "dVolumeScale=\"90\" bAlwaysOnTop=\"0\" nYDel=\"0\" nUDel=\"-5\" nVDel=\"0\"/>\r\n"));
    // Nothing else is left in the folder.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList { QStringLiteral("playeroptions.dat") });
}

TEST_F(PlayerOptionsTest, RoundTripKeepsSixSignificantDigitsOfTheVolume)
{
    SetMarkers();
    opt::dVolumeScale = 33.33333;
    ASSERT_TRUE(opt::Save(Path()));
    opt::ResetToDefaults();
    opt::Load(Path());
    EXPECT_EQ(opt::dr, 7);
    EXPECT_EQ(opt::ds, 3);
    EXPECT_EQ(opt::bAutoPlayNext, 1);
    EXPECT_EQ(opt::bMute, 1);
    EXPECT_EQ(opt::bOnlyOneInstance, 1);
    EXPECT_DOUBLE_EQ(opt::dVolumeScale, 33.3333);
    EXPECT_EQ(opt::bAlwaysOnTop, 1);
    EXPECT_EQ(opt::nYDel, 11);
    EXPECT_EQ(opt::nUDel, -12);
    EXPECT_EQ(opt::nVDel, 13);
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
    EXPECT_EQ(ReadWide(dir.filePath(QStringLiteral("plain"))), QStringLiteral("<options/>"));
}

} // namespace
