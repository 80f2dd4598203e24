// Pixels painted by the painting facade: fills, outlines, smoothing, clips, gradients,
// pictures at an alpha, pen caps and dashes.
#include "platform/CQKGraphics.h"

#include <QColor>
#include <QImage>
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr QKARGB kRed = 0xFFFF0000;
constexpr QKARGB kBlue = 0xFF0000FF;
constexpr QKARGB kWhite = 0xFFFFFFFF;
constexpr QKARGB kBlack = 0xFF000000;

QImage Canvas(int w, int h, QKARGB fill = 0)
{
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    img.fill(fill);
    return img;
}

QColor At(const QImage& img, int x, int y)
{
    return QColor::fromRgba(img.pixel(x, y));
}

int Alpha(const QImage& img, int x, int y)
{
    return qAlpha(img.pixel(x, y));
}

// Paints with `paint` on a fresh canvas and returns the picture.
QImage Painted(int w, int h, const std::function<void(CQKGraphics&)>& paint, QKARGB fill = 0)
{
    QImage img = Canvas(w, h, fill);
    CQKGraphics g(img);
    paint(g);
    return img;
}

struct Px
{
    int x, y;
    QKARGB argb; // 0: left untouched
};

void ExpectPixels(const QImage& img, std::initializer_list<Px> pixels)
{
    for (const Px& p : pixels)
        EXPECT_EQ(img.pixel(p.x, p.y), p.argb) << "at " << p.x << "," << p.y;
}

// Counts pixels whose alpha is neither 0 nor 255: the soft edge of smoothing.
int PartialPixels(const QImage& img)
{
    int n = 0;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x) {
            const int a = Alpha(img, x, y);
            n += (a != 0 && a != 255) ? 1 : 0;
        }
    return n;
}

} // namespace

TEST(GraphicsTest, IntegerRectangleFillCoversExactlyItsPixels)
{
    const QImage img = Painted(20, 20, [](CQKGraphics& g) { g.FillRectangle(tagQKBrush::Solid(kRed), 2, 3, 4, 5); });
    ExpectPixels(img, { { 2, 3, kRed }, { 5, 7, kRed }, { 6, 3, 0 }, { 2, 8, 0 }, { 1, 3, 0 }, { 2, 2, 0 } });
}

TEST(GraphicsTest, OnePixelOutlineTakesTheOuterRingOfItsBoxSmoothedOrNot)
{
    for (int mode : { QKSmoothingDefault, QKSmoothingAntiAlias }) {
        SCOPED_TRACE(mode);
        const QImage img = Painted(10, 8, [mode](CQKGraphics& g) {
            g.SetSmoothingMode(mode);
            tagQKPen pen;
            pen.clr = kBlue;
            g.DrawRectangle(pen, 0, 0, 9, 7);
        });
        // Full strength on the ring, nothing inside: a whole coordinate is a pixel's centre.
        ExpectPixels(img, { { 0, 0, kBlue }, { 9, 7, kBlue }, { 9, 0, kBlue }, { 4, 7, kBlue }, { 0, 4, kBlue }, { 1, 1, 0 }, { 8, 6, 0 } });
    }
}

TEST(GraphicsTest, LineClosedOnItselfHasNoMiterSpike)
{
    // A chevron of two single lines, each closed as its own figure (the "next" glyph).
    CQKGraphicsPath path;
    path.AddLine(16, 4, 20, 10);
    path.CloseFigure();
    path.AddLine(20, 10, 16, 16);
    path.CloseFigure();
    const QImage img = Painted(40, 30, [&path](CQKGraphics& g) {
        g.SetSmoothingMode(QKSmoothingHighQuality);
        tagQKPen pen;
        pen.fWidth = 2;
        g.DrawPath(pen, path);
    });
    QRect ink;
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (Alpha(img, x, y) > 0)
                ink = ink.united(QRect(x, y, 1, 1));
    // The lines span 4 by 12; the pen adds about its width, not the miter limit's 10 widths.
    EXPECT_LE(ink.width(), 8);
    EXPECT_LE(ink.height(), 16);
    EXPECT_GE(ink.height(), 12);
}

TEST(GraphicsTest, SmoothingModesTwoAndFourSoftenEdgesOthersDoNot)
{
    for (int mode : { 0, 1, 2, 3, 4 }) {
        const QImage img = Painted(30, 30, [mode](CQKGraphics& g) {
            g.SetSmoothingMode(mode);
            g.FillEllipse(tagQKBrush::Solid(kBlack), QRectF(3, 3, 23, 19));
            g.DrawLine(tagQKPen(), 0, 29, 29, 5);
        });
        EXPECT_EQ(PartialPixels(img) > 10, mode == 2 || mode == 4) << "mode " << mode;
        EXPECT_EQ(PartialPixels(img) == 0, mode != 2 && mode != 4) << "mode " << mode;
    }
}

TEST(GraphicsTest, ClipCombineModesLimitWhereFillsLand)
{
    // Exclude alone: everything but the hole.
    QImage img = Painted(20, 20, [](CQKGraphics& g) {
        g.SetClipRect(QRectF(5, 5, 10, 10), QKCombineExclude);
        g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 20, 20);
    });
    ExpectPixels(img, { { 0, 0, kRed }, { 19, 19, kRed }, { 4, 10, kRed }, { 5, 5, 0 }, { 14, 14, 0 } });
    // Replace, then exclude a part of it, then reset: the last fill reaches everything.
    img = Painted(20, 20, [](CQKGraphics& g) {
        g.SetClipRect(QRectF(0, 0, 10, 10));
        g.SetClipRect(QRectF(5, 5, 10, 10), QKCombineExclude);
        g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 20, 20);
        EXPECT_TRUE(g.HasClip());
        g.ResetClip();
        EXPECT_FALSE(g.HasClip());
        g.FillRectangle(tagQKBrush::Solid(kBlue), 15, 15, 5, 5);
    });
    ExpectPixels(img, { { 2, 2, kRed }, { 8, 2, kRed }, { 7, 7, 0 }, { 12, 2, 0 }, { 17, 17, kBlue } });
    img = Painted(20, 20, [](CQKGraphics& g) {
        g.SetClipRect(QRectF(0, 0, 10, 10));
        g.SetClipRect(QRectF(5, 5, 10, 10), QKCombineIntersect);
        g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 20, 20);
    });
    ExpectPixels(img, { { 7, 7, kRed }, { 2, 2, 0 }, { 12, 12, 0 } });
}

TEST(GraphicsTest, ClipByPathExcludesAPlusShape)
{
    // The plus of the full-screen face: a cross-shaped hole in a stroked box.
    CQKGraphicsPath plus;
    plus.AddPolygon({ { 9, 3 }, { 15, 3 }, { 15, 9 }, { 22, 9 }, { 22, 15 }, { 15, 15 }, { 15, 22 }, { 9, 22 }, { 9, 15 }, { 3, 15 }, { 3, 9 }, { 9, 9 } });
    const QImage img = Painted(25, 25, [&plus](CQKGraphics& g) {
        g.SetClipPath(plus, QKCombineExclude);
        g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 25, 25);
    });
    // The centre and an arm of the plus stay empty; between the arms is filled.
    ExpectPixels(img, { { 12, 12, 0 }, { 12, 5, 0 }, { 5, 5, kRed }, { 20, 20, kRed } });
}

TEST(GraphicsTest, GradientsRunAlongTheirDirectionWithGammaAndWrap)
{
    QImage img = Painted(101, 4, [](CQKGraphics& g) { g.FillRectangle(tagQKBrush::LinearRect(QRectF(0, 0, 101, 4), kRed, kBlue, QKGradientHorizontal), 0, 0, 101, 4); });
    EXPECT_GT(At(img, 0, 1).red(), 245);
    EXPECT_LT(At(img, 0, 1).blue(), 10);
    EXPECT_GT(At(img, 100, 1).blue(), 245);
    EXPECT_LT(At(img, 100, 1).red(), 10);
    EXPECT_NEAR(At(img, 50, 1).red(), 128, 8);
    EXPECT_NEAR(At(img, 50, 1).blue(), 128, 8);

    // Vertical: top to bottom, rows alike.
    img = Painted(4, 101, [](CQKGraphics& g) { g.FillRectangle(tagQKBrush::LinearRect(QRectF(0, 0, 4, 101), kWhite, kBlack, QKGradientVertical), 0, 0, 4, 101); });
    EXPECT_GT(At(img, 2, 0).red(), 245);
    EXPECT_LT(At(img, 2, 100).red(), 10);
    EXPECT_EQ(img.pixel(0, 60), img.pixel(3, 60));
    auto fill = [](float angle) { return Painted(40, 20, [angle](CQKGraphics& g) { g.FillRectangle(tagQKBrush::LinearAngle(QRectF(0, 0, 40, 20), kWhite, kBlack, angle, QKWrapClamp), 0, 0, 40, 20); }); };
    const QImage down = fill(90); // top to bottom
    EXPECT_GT(At(down, 20, 0).red(), 240);
    EXPECT_LT(At(down, 20, 19).red(), 15);
    EXPECT_EQ(down.pixel(0, 10), down.pixel(39, 10));
    const QImage left = fill(180); // right to left
    EXPECT_GT(At(left, 39, 10).red(), 240);
    EXPECT_LT(At(left, 0, 10).red(), 15);
    // Diagonal: the corners it runs between take the two colours.
    const QImage diag = fill(45);
    EXPECT_GT(At(diag, 0, 0).red(), 235);
    EXPECT_LT(At(diag, 39, 19).red(), 20);
    EXPECT_NEAR(At(diag, 20, 10).red(), 128, 12);
    auto middle = [](bool bGamma) {
        tagQKBrush b = tagQKBrush::Linear(QPointF(0, 0), QPointF(101, 0), kBlack, kWhite);
        b.bGammaCorrection = bGamma;
        return At(Painted(101, 2, [&b](CQKGraphics& g) { g.FillRectangle(b, 0, 0, 101, 2); }), 50, 0).red();
    };
    EXPECT_NEAR(middle(false), 128, 8);
    // Half of the light of white is about 186 in stored values.
    EXPECT_NEAR(middle(true), 186, 10);
    auto fillWide = [](int nWrap) { return Painted(60, 2, [nWrap](CQKGraphics& g) { g.FillRectangle(tagQKBrush::Linear(QPointF(0, 0), QPointF(20, 0), kRed, kBlue, nWrap), 0, 0, 60, 2); }); };
    const QImage tiled = fillWide(QKWrapTile);
    EXPECT_GT(At(tiled, 21, 0).red(), 200); // starts over after its length
    const QImage clamped = fillWide(QKWrapClamp);
    EXPECT_GT(At(clamped, 40, 0).blue(), 245);
    EXPECT_LT(At(clamped, 40, 0).red(), 10);
}

TEST(GraphicsTest, PictureDrawsAtAlphaAndFromItsSourceRectangle)
{
    QImage src = Canvas(20, 10, kRed);
    for (int y = 0; y < 10; ++y)
        for (int x = 10; x < 20; ++x)
            src.setPixel(x, y, 0xFF00FF00);

    const QImage img = Painted(
        40, 40, [&src](CQKGraphics& g) {
        // Half alpha over white; the right half of the source scaled up twice; alpha 0.
        g.DrawImage(src, QRectF(0, 0, 10, 10), QRectF(0, 0, 10, 10), 0.5f);
        g.DrawImage(src, QRectF(20, 20, 20, 20), QRectF(10, 0, 10, 10));
        g.DrawImage(src, QRectF(0, 20, 10, 10), QRectF(0, 0, 10, 10), 0.0f); }, kWhite);
    const QColor half = At(img, 5, 5);
    EXPECT_EQ(half.red(), 255);
    EXPECT_NEAR(half.green(), 128, 3);
    EXPECT_NEAR(half.blue(), 128, 3);
    ExpectPixels(img, { { 30, 30, 0xFF00FF00u }, { 21, 21, 0xFF00FF00u }, { 5, 25, kWhite } });
}

namespace {

// A line drawn with a pen of `fWidth`, caps and dash style on a fresh canvas.
QImage Line(int w, int h, QPointF p1, QPointF p2, float fWidth, int nStartCap = QKLineCapFlat, int nEndCap = QKLineCapFlat,
    int nDash = QKDashSolid, bool bSmooth = false, const tagQKBrush* pBrush = nullptr)
{
    QImage img = Canvas(w, h);
    CQKGraphics g(img);
    if (bSmooth)
        g.SetSmoothingMode(QKSmoothingAntiAlias);
    tagQKPen pen;
    pen.fWidth = fWidth;
    pen.nStartCap = nStartCap;
    pen.nEndCap = nEndCap;
    pen.nDashStyle = nDash;
    pen.pBrush = pBrush;
    g.DrawLine(pen, p1, p2);
    return img;
}

} // namespace

TEST(GraphicsTest, ArrowAnchorCapDrawsAHeadWiderThanThePenAndRoundCapsReachPastTheEnds)
{
    // The "next" face: a 7-pixel line ending in an arrow head at its end point.
    const QImage img = Line(25, 25, { 5, 12 }, { 17, 12 }, 7, QKLineCapFlat, QKLineCapArrowAnchor, QKDashSolid, true);
    // The head's base is about twice the pen wide: far above the pen's own 8.5..15.5 band.
    EXPECT_GT(Alpha(img, 6, 6), 128);
    EXPECT_GT(Alpha(img, 6, 17), 128);
    // The tip ends at the line's end point; nothing beyond it.
    EXPECT_GT(Alpha(img, 15, 12), 128);
    for (int x = 19; x < 25; ++x)
        EXPECT_EQ(Alpha(img, x, 12), 0) << x;
    // Towards the tip the head narrows below the pen width: the flat end of the stroke
    // does not poke out of it.
    EXPECT_EQ(Alpha(img, 16, 9), 0);
    // The same head as a start cap of the reversed line: the same pixels.
    EXPECT_EQ(Line(25, 25, { 17, 12 }, { 5, 12 }, 7, QKLineCapArrowAnchor, QKLineCapFlat, QKDashSolid, true), img);
    // Without the cap the same pen is a plain bar.
    const QImage bar = Line(25, 25, { 5, 12 }, { 17, 12 }, 7);
    EXPECT_EQ(Alpha(bar, 6, 6), 0);
    EXPECT_EQ(Alpha(bar, 16, 9), 255);
    const QImage flat = Line(30, 20, { 10, 10 }, { 20, 10 }, 6);
    const QImage round = Line(30, 20, { 10, 10 }, { 20, 10 }, 6, QKLineCapRound, QKLineCapRound);
    EXPECT_EQ(Alpha(flat, 8, 10), 0);
    EXPECT_EQ(Alpha(flat, 21, 10), 0);
    EXPECT_EQ(Alpha(round, 8, 10), 255);
    EXPECT_EQ(Alpha(round, 21, 10), 255);
}

TEST(GraphicsTest, DashStylesLeaveGapsAndGradientPensPaintWithTheirBrush)
{
    auto runs = [](int nDash) {
        const QImage img = Line(100, 5, { 0, 2 }, { 100, 2 }, 2, QKLineCapFlat, QKLineCapFlat, nDash);
        int changes = 0;
        for (int x = 1; x < 100; ++x)
            changes += (Alpha(img, x, 2) > 0) != (Alpha(img, x - 1, 2) > 0) ? 1 : 0;
        return changes;
    };
    EXPECT_EQ(runs(QKDashSolid), 0);
    EXPECT_GT(runs(QKDashDash), 10);
    EXPECT_GT(runs(QKDashDot), runs(QKDashDash));

    const tagQKBrush brush = tagQKBrush::Linear(QPointF(0, 0), QPointF(50, 0), kRed, kBlue, QKWrapClamp);
    const QImage img = Line(50, 10, { 0, 5 }, { 50, 5 }, 4, QKLineCapFlat, QKLineCapFlat, QKDashSolid, false, &brush);
    EXPECT_GT(At(img, 1, 5).red(), 230);
    EXPECT_GT(At(img, 48, 5).blue(), 230);
}

TEST(GraphicsTest, TranslateMovesDrawingButClipStaysInPicturePixels)
{
    const QImage img = Painted(20, 20, [](CQKGraphics& g) {
        g.SetClipRect(QRectF(0, 0, 10, 20));
        g.TranslateTransform(5, 0);
        g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 10, 10);
        // A clip set while translated is moved with the drawing.
        g.SetClipRect(QRectF(0, 10, 2, 10), QKCombineUnion);
        g.FillRectangle(tagQKBrush::Solid(kBlue), -5, 10, 20, 10);
    });
    // Left of the moved fill, in it, cut by the clip at 10; inside the first clip, outside
    // both (the second is 5..7).
    ExpectPixels(img, { { 2, 2, 0 }, { 6, 2, kRed }, { 12, 2, 0 }, { 6, 15, kBlue }, { 12, 15, 0 } });
}

TEST(GraphicsTest, SaveAndRestoreBringBackSmoothingAndClip)
{
    QImage img = Canvas(20, 20);
    CQKGraphics g(img);
    g.SetSmoothingMode(QKSmoothingAntiAlias);
    g.Save();
    g.SetSmoothingMode(QKSmoothingNone);
    g.SetClipRect(QRectF(0, 0, 5, 5));
    g.Restore();
    EXPECT_EQ(g.GetSmoothingMode(), QKSmoothingAntiAlias);
    EXPECT_FALSE(g.HasClip());
    g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 20, 20);
    EXPECT_EQ(img.pixel(15, 15), kRed);
}

TEST(GraphicsTest, BadArgumentsKeepAStatusAndPaintNothing)
{
    QImage img = Canvas(10, 10);
    CQKGraphics g(img);
    EXPECT_EQ(g.SetSmoothingMode(9), QKStatusInvalidParameter);
    EXPECT_EQ(g.LastStatus(), QKStatusInvalidParameter);
    EXPECT_EQ(g.FillRectangle(tagQKBrush::Solid(kRed), QRectF(0, 0, -3, 4)), QKStatusInvalidParameter);
    EXPECT_EQ(g.FillPolygon(tagQKBrush::Solid(kRed), { { 0, 0 }, { 5, 5 } }), QKStatusInvalidParameter);
    EXPECT_EQ(g.DrawImage(QImage(), QPointF(0, 0)), QKStatusInvalidParameter);
    EXPECT_EQ(g.SetClipRect(QRectF(0, 0, 1, 1), 17), QKStatusInvalidParameter);
    EXPECT_EQ(Alpha(img, 0, 0), 0);
    EXPECT_EQ(g.FillRectangle(tagQKBrush::Solid(kRed), 0, 0, 1, 1), QKStatusOk);

    // A null picture gives a painter that does nothing rather than a crash.
    QImage none;
    CQKGraphics gNone(none);
    EXPECT_EQ(gNone.LastStatus(), QKStatusGenericError);
}

TEST(GraphicsTest, ColoursOfTheDataFilesBecomeArgb)
{
    EXPECT_EQ(QKColorFromBGR(0x00112233), 0xFF332211u);
    EXPECT_EQ(QKColorFromBGR(0x00112233, 100), 0x64332211u);
    EXPECT_EQ(QKBGRFromARGB(0x64332211), 0x00112233u);
    EXPECT_EQ(QKMakeARGB(1, 2, 3, 4), 0x01020304u);
    // Painted, the BGR colour comes out as the red, green and blue it names.
    EXPECT_EQ(At(Painted(2, 2, [](CQKGraphics& g) { g.Clear(QKColorFromBGR(0x000080FF)); }), 1, 1), QColor(255, 128, 0));
}
