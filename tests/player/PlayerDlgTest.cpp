// The main window's start-up reading and its playback control, with the real engine and no
// picture (the window itself is not made: the engine then plays sound and time only).
#include "PlayerFixture.h"
#include "engine/qkplay.h"
#include "platform/QKAppFolder.h"
#include "player/CQKPlayerApp.h"
#include "player/CQKPlayerDlg.h"
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"
#include "support/TestMedia.h"
#include "support/WideFileText.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

using orbeltest::TestMedia;
using orbeltest::WaitFor;

namespace {

class PlayerDlgTest : public orbeltest::PlayerFixture
{
};

TEST_F(PlayerDlgTest, EveryRunStartsInTheDefaultDisplayRatio)
{
    QKPlayerOptions::dr = 5;
    QKPlayerOptions::ds = 2;
    CQKPlayerDlg dlg;
    EXPECT_EQ(QKPlayerOptions::dr, 0);
    EXPECT_EQ(QKPlayerOptions::ds, 2);
    EXPECT_TRUE(dlg.m_strMediaPath.isEmpty());
    EXPECT_TRUE(dlg.m_arrFiles.isEmpty());
    EXPECT_EQ(dlg.m_bHasVideo, 1);
    EXPECT_EQ(dlg.m_rcVideo, QRect(0, 0, 856, 480));
}

TEST_F(PlayerDlgTest, StartupListPlaysTheFirstPlayableFileAndQueuesTheRest)
{
    const QString video = TestMedia::VideoWithSound(30.0);
    const QString sound = TestMedia::SoundOnly(1.0);
    const QString noise = TestMedia::RandomBytes();
    const QString folder = TestMedia::FolderNamedLikeMedia();
    ASSERT_FALSE(video.isEmpty());
    CQKPlayerDlg dlg;
    HandOver({ noise, folder, video, sound });
    theApp.ReadStartupFiles(dlg);
    EXPECT_EQ(dlg.m_arrFiles, (QStringList { video, sound }));
    EXPECT_EQ(dlg.m_strMediaPath, video);
    EXPECT_EQ(dlg.m_bHasVideo, 1);
    EXPECT_EQ(dlg.m_nVideoWidth, 160);
    EXPECT_EQ(dlg.m_nVideoHeight, 120);
    EXPECT_NEAR(dlg.m_dDuration, 30.0, 0.5);
    EXPECT_EQ(dlg.m_bInfoLoaded, 0);
    EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));

    // A later start without files empties the queue, but what plays goes on.
    HandOver({});
    theApp.ReadStartupFiles(dlg);
    EXPECT_TRUE(dlg.m_arrFiles.isEmpty());
    EXPECT_TRUE(dlg.m_strMediaPath.isEmpty());
    EXPECT_NE(qkplaydll_IsReady(), 0);

    // Play with no current file asks for files in the system's dialog, with the eleven kinds
    // of file in their order; a cancelled dialog starts and stops nothing.
    QStringList filters;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (auto* pDialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            filters = pDialog->nameFilters();
            mode = pDialog->fileMode();
            pDialog->reject();
        }
    });
    poll.start(20);
    dlg.OnPlayPause();
    poll.stop();
    ASSERT_EQ(filters.size(), 11);
    EXPECT_TRUE(filters[0].startsWith(QStringLiteral("Media Files (*.avi *.ogg *.ogm ")));
    EXPECT_TRUE(filters[1].startsWith(QStringLiteral("Video Files (")));
    EXPECT_TRUE(filters[2].startsWith(QStringLiteral("Audio files (*.wav *.flac ")));
    EXPECT_EQ(filters.mid(3), (QStringList { "MPEG Files (*.mpg *.mpeg *.m2v *.m1v *.m2ts *.mts *.ts *.vob)", "Windows Media Files (*.asf *.wmv)", "ISO files (*.mp4 *.3gp *.3g2)", "Flash Video files (*.flv *.f4v *.m4v)", "Real Media (*.rv *.rm *.rmvb)", "AVI files (*.avi)", "MOV files (*.mov)", "All Files (*)" }));
    EXPECT_EQ(mode, QFileDialog::ExistingFiles);
    EXPECT_TRUE(dlg.m_arrFiles.isEmpty());
    EXPECT_NE(qkplaydll_IsPlaying(), 0);
    dlg.OnStop();
    EXPECT_EQ(qkplaydll_IsReady(), 0);
}

TEST_F(PlayerDlgTest, ListWithoutPlayableFilesEndsEmptyAndStartsNothing)
{
    const QString noise = TestMedia::RandomBytes();
    const QString empty = TestMedia::ZeroBytes();
    CQKPlayerDlg dlg;
    dlg.m_arrFiles = QStringList { QStringLiteral("old") };
    HandOver({ noise, empty });
    theApp.ReadStartupFiles(dlg);
    EXPECT_TRUE(dlg.m_arrFiles.isEmpty());
    EXPECT_TRUE(dlg.m_strMediaPath.isEmpty());
    EXPECT_EQ(dlg.m_bHasVideo, 0);
    QThread::msleep(200);
    EXPECT_EQ(qkplaydll_IsReady(), 0);
}

TEST_F(PlayerDlgTest, MissingOrBrokenListChangesNothing)
{
    CQKPlayerDlg dlg;
    dlg.m_arrFiles = QStringList { QStringLiteral("a"), QStringLiteral("b") };
    dlg.m_strMediaPath = QStringLiteral("a");
    theApp.ReadStartupFiles(dlg);
    // Half a list, as a reader may see while another start still writes it.
    ASSERT_TRUE(orbeltest::WriteWideFile(theApp.GetStartupFilePath(), QStringLiteral("<startupfiles><item file=\"x\"/>")));
    theApp.ReadStartupFiles(dlg);
    EXPECT_EQ(dlg.m_arrFiles, (QStringList { QStringLiteral("a"), QStringLiteral("b") }));
    EXPECT_EQ(dlg.m_strMediaPath, QStringLiteral("a"));
}

TEST_F(PlayerDlgTest, PlayPausesAndResumesAndStopRestartsFromTheStart)
{
    const QString video = TestMedia::VideoWithSound(30.0);
    CQKPlayerDlg dlg;
    HandOver({ video });
    theApp.ReadStartupFiles(dlg);
    ASSERT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    dlg.OnPlayPause();
    EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() == 0 && qkplaydll_IsReady() != 0; }));
    dlg.OnPlayPause();
    EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    dlg.OnStop();
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    // Stop keeps the file and the queue: Play starts the same file again, asking for its facts.
    EXPECT_EQ(dlg.m_strMediaPath, video);
    dlg.m_nVideoWidth = 0;
    dlg.OnPlayPause();
    EXPECT_EQ(dlg.m_nVideoWidth, 160);
    EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    EXPECT_LT(qkplaydll_getCurrentPos(), 5.0);
    // A second Play before the engine is ready would have left a thread running; repeated
    // quick starts end with one playback that a single stop ends.
    dlg.OnStop();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 5; ++i)
        dlg.OnPlayPause();
    dlg.OnStop();
    EXPECT_EQ(qkplaydll_IsReady(), 0);
    // A stop that came before the thread entered the engine must not wait for the file's end.
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST_F(PlayerDlgTest, SoundOnlyFileTakesTheAudioWay)
{
    const QString sound = TestMedia::SoundWithCover(5.0);
    CQKPlayerDlg dlg;
    HandOver({ sound });
    theApp.ReadStartupFiles(dlg);
    EXPECT_EQ(dlg.m_bHasVideo, 0);
    EXPECT_EQ(dlg.m_bAudioOnly, 1);
    EXPECT_TRUE(WaitFor([] { return qkplaydll_IsPlaying() != 0; }));
    dlg.OnStop();
    EXPECT_EQ(dlg.m_bAudioOnly, 0);
}

} // namespace
