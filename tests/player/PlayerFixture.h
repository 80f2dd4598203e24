#pragma once
// What the tests of the main window share: a private program folder (so the start-up list and
// the options are the test's own), built-in options, and the engine stopped at the end.
#include "engine/qkplay.h"
#include "platform/QKAppFolder.h"
#include "player/CQKPlayerApp.h"
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <functional>

namespace orbeltest {

// Runs the event loop until pred holds or the time is up.
inline bool WaitFor(const std::function<bool()>& pred, int ms = 10000)
{
    QDeadlineTimer deadline(ms);
    while (!pred() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(5);
    }
    return pred();
}

class PlayerFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("skin")));
        QKSetAppFolderForTesting(dir.path());
        QKPlayerOptions::ResetToDefaults();
    }
    void TearDown() override
    {
        qkplaydll_Stop();
        QKSetAppFolderForTesting(QString());
        QKPlayerOptions::ResetToDefaults();
    }
    // What a start with these files leaves for the player; the first entry of a command line
    // is always the program itself.
    static void HandOver(const QStringList& files)
    {
        const QString module = QCoreApplication::applicationFilePath();
        CQKStartupList::Write(theApp.GetStartupFilePath(), QStringList { module } + files, module);
    }

    QTemporaryDir dir;
};

} // namespace orbeltest
