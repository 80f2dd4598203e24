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
#include <QImage>
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

// The program's name painted in the test's caption colours: the left end of its ink is red and
// the right end blue, in some row each.
inline bool CaptionRunsRedToBlue(const QImage& img, const QRect& ink)
{
    int nRedFirst = 0, nBlueLast = 0;
    for (int y = ink.top(); y <= ink.bottom(); ++y) {
        nRedFirst += qRed(img.pixel(ink.left() + 2, y)) > qBlue(img.pixel(ink.left() + 2, y)) + 60;
        nBlueLast += qBlue(img.pixel(ink.right() - 2, y)) > qRed(img.pixel(ink.right() - 2, y)) + 60;
    }
    return nRedFirst > 0 && nBlueLast > 0;
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
