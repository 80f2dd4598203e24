// The main window on a screen of device pixel ratio 2 (CTest runs this program with
// QT_SCALE_FACTOR=2): the window keeps its size in the program's pixels, its picture has twice
// the pixels each way, and the frame and the panel's faces are drawn at that resolution rather
// than scaled up from a picture of the program's own pixels.
#include "PlayerFixture.h"
#include "player/CQKPlayerDlg.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "toolkit/QKTheme.h"

#include <QGuiApplication>
#include <QTimer>
#include <gtest/gtest.h>

using orbeltest::HostDriver;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

using PlayerHiDpiTest = orbeltest::PlayerFixture;

TEST_F(PlayerHiDpiTest, FrameAndFacesAreDrawnAtTheScreensResolution)
{
    ASSERT_EQ(qApp->devicePixelRatio(), 2.0) << "QT_SCALE_FACTOR=2 is not set";
    g_clrFace = 0x203040;
    g_UIColors.clrFrame = 0x00FF00;
    CQKPlayerDlg dlg;
    bool bRan = false;
    QTimer::singleShot(0, [&] {
        HostDriver drv(dlg);
        dlg.MoveWindow(QRect(100, 100, 600, 400));
        HostDriver::Pump(50);
        dlg.InvalidateRect();
        dlg.UpdateWindow();
        HostDriver::Pump(20);
        bRan = true;

        // The program's pixels stay what they were; the picture has the screen's.
        EXPECT_EQ(dlg.GetClientRect().size(), QSize(600, 400));
        EXPECT_EQ(dlg.HostImage().size(), QSize(1200, 800));
        EXPECT_EQ(dlg.HostImage().devicePixelRatio(), 2.0);
        const QImage shot = drv.Screen();
        ASSERT_EQ(shot.size(), QSize(1200, 800));

        // The outline, one pixel of the program at the left edge, is two screen pixels of
        // its colour with the ground right beside it: no blur from scaling.
        const QRgb green = qRgb(0, 255, 0);
        const QRgb ground = qRgb(0x40, 0x30, 0x20);
        EXPECT_EQ(shot.pixel(0, 400), green);
        EXPECT_EQ(shot.pixel(1, 400), green);
        EXPECT_EQ(shot.pixel(2, 400), ground);

        // The play button's face has detail finer than a pixel of the program: a picture
        // scaled up from the program's pixels would have each 2 by 2 block in one colour.
        const int c = (600 - 25) / 2;
        const QRect rcPlay(2 * c, 2 * (349 + 19), 50, 50);
        int nFine = 0;
        int nInk = 0;
        for (int y = rcPlay.top(); y < rcPlay.bottom(); y += 2) {
            for (int x = rcPlay.left(); x < rcPlay.right(); x += 2) {
                const QRgb p = shot.pixel(x, y);
                nInk += p != ground;
                nFine += p != shot.pixel(x + 1, y) || p != shot.pixel(x, y + 1) || p != shot.pixel(x + 1, y + 1);
            }
        }
        EXPECT_GT(nInk, 20) << "no face on the play button";
        EXPECT_GT(nFine, 10);
        dlg.OnCancel();
    });
    dlg.DoModal();
    EXPECT_TRUE(bRan);
}

} // namespace
