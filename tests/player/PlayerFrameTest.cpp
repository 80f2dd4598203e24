// The main window's hand-made frame: what it paints, its resize grips, moving it by the title
// strip, and maximising by a double click on the title strip.
#include "PlayerFixture.h"
#include "player/CQKPlayerDlg.h"
#include "support/GlDriver.h"
#include "support/HostDriver.h"
#include "support/TestPaths.h"
#include "toolkit/QKTheme.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

using orbeltest::HostDriver;

namespace {

const bool bDriverPinned = orbeltest::KeepGlDriverMapped();

bool Near(QRgb a, QRgb b, int tol = 3)
{
    return std::abs(qRed(a) - qRed(b)) <= tol && std::abs(qGreen(a) - qGreen(b)) <= tol && std::abs(qBlue(a) - qBlue(b)) <= tol;
}

class PlayerFrameTest : public orbeltest::PlayerFixture
{
protected:
    void SetUp() override
    {
        PlayerFixture::SetUp();
        ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("skin/btn")));
        ASSERT_TRUE(QFile::copy(orbeltest::SourceDir() + QStringLiteral("skin/btn/gold.png"), dir.path() + QStringLiteral("/skin/btn/gold.png")));
        // Colours of the test (0x00BBGGRR): the caption runs from red to blue.
        g_clrFace = 0x203040;
        g_clrBorder = 0xC0C0C0;
        g_UIColors.clrFrame = 0x00FF00;
        g_UIColors.clrTitleTextStart = 0x0000FF;
        g_UIColors.clrTitleTextEnd = 0xFF0000;
    }

    // Runs the window at 100,100, 600 by 400, until `script` has run.
    void RunWindow(const std::function<void(HostDriver&)>& script)
    {
        bool bRan = false;
        QTimer::singleShot(0, [&] {
            HostDriver drv(dlg);
            dlg.MoveWindow(start);
            HostDriver::Pump(50);
            script(drv);
            bRan = true;
            dlg.OnCancel();
        });
        dlg.DoModal();
        EXPECT_TRUE(bRan);
    }
    QImage Repaint(HostDriver& drv)
    {
        dlg.InvalidateRect();
        dlg.UpdateWindow();
        HostDriver::Pump(20);
        return drv.Screen();
    }

    CQKPlayerDlg dlg;
    const QRect start { 100, 100, 600, 400 };
};

TEST_F(PlayerFrameTest, FramePaintsGroundIconCaptionOutlineVideoAreaAndAudioNotes)
{
    RunWindow([&](HostDriver& drv) {
        ASSERT_EQ(dlg.m_rcVideo, QRect(5, 31, 590, 318));
        QImage img = Repaint(drv);
        const QRgb face = qRgb(0x40, 0x30, 0x20);
        EXPECT_TRUE(Near(img.pixel(300, 15), face));
        EXPECT_TRUE(Near(img.pixel(30, 385), face));
        for (const QPoint pt : { QPoint(0, 200), QPoint(599, 200), QPoint(300, 0), QPoint(300, 399) })
            EXPECT_TRUE(Near(img.pixel(pt), qRgb(0, 255, 0))) << pt.x() << "," << pt.y();
        EXPECT_EQ(img.pixel(5, 31), qRgb(0, 0, 0));
        EXPECT_EQ(img.pixel(594, 348), qRgb(0, 0, 0));
        // The border is at 150 of 255 over the ground, one pixel outside the area.
        const QRgb border = qRgb((0xC0 * 150 + 0x40 * 105) / 255, (0xC0 * 150 + 0x30 * 105) / 255, (0xC0 * 150 + 0x20 * 105) / 255);
        for (const QPoint pt : { QPoint(4, 200), QPoint(595, 200), QPoint(300, 30), QPoint(300, 349) })
            EXPECT_TRUE(Near(img.pixel(pt), border)) << pt.x() << "," << pt.y();

        // The icon: the gold picture at (2, 1) over the ground.
        QImage icon(28, 28, QImage::Format_ARGB32);
        icon.fill(face);
        QPainter(&icon).drawImage(0, 0, QImage(orbeltest::SourceDir() + QStringLiteral("skin/btn/gold.png")));
        for (const QPoint pt : { QPoint(14, 14), QPoint(6, 14), QPoint(14, 3), QPoint(0, 0) })
            EXPECT_TRUE(Near(img.pixel(pt + QPoint(2, 1)), icon.pixel(pt), 16)) << pt.x() << "," << pt.y();

        // The caption: ink only right of the icon in the title strip (left of the options
        // button), red first, blue last.
        QRect ink;
        for (int y = 1; y < 31; ++y)
            for (int x = 30; x < 120; ++x)
                if (!Near(img.pixel(x, y), face, 24) && !(y == 30 && x >= 4 && x <= 595))
                    ink |= QRect(x, y, 1, 1);
        EXPECT_TRUE(QRect(28, 1, 132, 29).contains(ink)) << ink.x() << " " << ink.right() << " " << ink.bottom();
        EXPECT_GT(ink.width(), 60);
        EXPECT_TRUE(orbeltest::CaptionRunsRedToBlue(img, ink));

        // A file without a picture: three notes, the large one centred and two right of it and
        // lower; after Stop the area is plain black.
        dlg.m_bAudioOnly = 1;
        auto notes = [&](const QImage& shot) {
            QRect r;
            for (int y = 31; y < 349; ++y)
                for (int x = 5; x < 595; ++x)
                    if (shot.pixel(x, y) != qRgb(0, 0, 0))
                        r |= QRect(x, y, 1, 1);
            return r;
        };
        const QRect seen = notes(Repaint(drv));
        EXPECT_GT(seen.width(), 40);
        EXPECT_LE(std::abs(seen.center().x() - 300), 30);
        EXPECT_LE(std::abs(seen.center().y() - 190), 30);
        EXPECT_GT(seen.right() - 300, 300 - seen.left());
        dlg.OnStop();
        EXPECT_TRUE(notes(Repaint(drv)).isNull());
    });
}

TEST_F(PlayerFrameTest, GripsShowTheirCursorsAndResizeDownToTheSmallestWindow)
{
    using C = Qt::CursorShape;
    // Side grips 5 wide, top and bottom 3 high, corners 10 by 10.
    const std::pair<QPoint, C> zones[] = { { { 2, 200 }, Qt::SizeHorCursor }, { { 597, 200 }, Qt::SizeHorCursor }, { { 300, 1 }, Qt::SizeVerCursor }, { { 300, 398 }, Qt::SizeVerCursor },
        { { 3, 3 }, Qt::SizeFDiagCursor }, { { 595, 5 }, Qt::SizeBDiagCursor }, { { 595, 395 }, Qt::SizeFDiagCursor }, { { 5, 395 }, Qt::SizeBDiagCursor }, { { 9, 9 }, Qt::SizeFDiagCursor },
        { { 300, 3 }, Qt::ArrowCursor }, { { 5, 200 }, Qt::ArrowCursor }, { { 594, 200 }, Qt::ArrowCursor }, { { 300, 396 }, Qt::ArrowCursor } };
    // A press in client pixels, moves in screen pixels, the window that results. Past the
    // smallest width the left edge stops, and the pointer must come back to the edge (370)
    // before the window grows again. The title strip moves the window (no window manager).
    const std::tuple<QPoint, std::vector<QPoint>, QRect> drags[] = { { { 597, 200 }, { { 747, 330 } }, { 100, 100, 650, 400 } },
        { { 595, 395 }, { { 715, 505 } }, { 100, 100, 620, 410 } }, { { 2, 200 }, { { 502, 300 }, { 400, 300 } }, { 370, 100, 330, 400 } },
        { { 2, 200 }, { { 502, 300 }, { 300, 300 } }, { 300, 100, 400, 400 } }, { { 3, 3 }, { { 603, 303 } }, { 370, 178, 330, 322 } },
        { { 300, 1 }, { { 350, 80 } }, { 100, 79, 600, 421 } }, { { 200, 15 }, { { 360, 145 } }, { 160, 130, 600, 400 } } };
    RunWindow([&](HostDriver& drv) {
        for (const auto& [pt, shape] : zones) {
            drv.Move(pt);
            EXPECT_EQ(dlg.NativeWidget()->cursor().shape(), shape) << pt.x() << "," << pt.y();
        }
        for (const auto& [press, moves, result] : drags) {
            dlg.MoveWindow(start);
            HostDriver::Pump(20);
            drv.Press(press);
            for (const QPoint& screen : moves)
                drv.Move(screen - dlg.GetWindowRect().topLeft());
            drv.Release(moves.back() - dlg.GetWindowRect().topLeft());
            EXPECT_EQ(dlg.GetWindowRect(), result) << press.x() << "," << press.y();
            EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
        }
    });
}

TEST_F(PlayerFrameTest, TitleDoubleClickMaximisesToTheWorkAreaAndRestores)
{
    RunWindow([&](HostDriver& drv) {
        const QRect work = QGuiApplication::primaryScreen()->availableGeometry();
        // The right 76 pixels of the title strip and the panel below it take no double click
        // (the video area's is full screen's).
        for (const QPoint pt : { QPoint(524, 15), QPoint(590, 15), QPoint(200, 30), QPoint(20, 385) }) {
            drv.Wait(1000);
            drv.DoubleClick(pt);
            EXPECT_EQ(dlg.GetWindowRect(), start) << pt.x() << "," << pt.y();
        }
        drv.Wait(1000);
        drv.DoubleClick(QPoint(523, 29));
        EXPECT_EQ(dlg.m_bMaximized, 1);
        EXPECT_EQ(dlg.GetWindowRect(), work);
        EXPECT_TRUE(HostDriver::WaitFor([&] { return dlg.m_rcVideo == QRect(5, 31, work.width() - 10, work.height() - 82); }));
        // Maximised, the window has no grips and does not move by its title strip.
        drv.Move(QPoint(2, 200));
        EXPECT_EQ(dlg.NativeWidget()->cursor().shape(), Qt::ArrowCursor);
        drv.Press(QPoint(200, 15));
        drv.Move(QPoint(260, 60));
        drv.Release(QPoint(260, 60));
        EXPECT_EQ(dlg.GetWindowRect(), work);
        drv.Wait(1000);
        drv.DoubleClick(QPoint(10, 15));
        EXPECT_EQ(dlg.m_bMaximized, 0);
        EXPECT_EQ(dlg.GetWindowRect(), start);
    });
}

} // namespace
