// Paths: how figures join, close and curve, their bounds, and how they fill.
#include "platform/CQKGraphics.h"

#include <QImage>
#include <QTransform>
#include <gtest/gtest.h>

namespace {

QImage Fill(const CQKGraphicsPath& path, QSize size = QSize(30, 30))
{
    QImage img(size, QImage::Format_ARGB32_Premultiplied);
    img.fill(0);
    CQKGraphics g(img);
    g.FillPath(tagQKBrush::Solid(0xFF000000), path);
    return img;
}

bool Inked(const QImage& img, int x, int y)
{
    return qAlpha(img.pixel(x, y)) > 0;
}

} // namespace

TEST(GraphicsPathTest, LinesAddedInTurnJoinIntoOneFigure)
{
    // Two lines, then closing: a triangle, not two separate strokes.
    CQKGraphicsPath path;
    path.AddLine(2, 2, 25, 2);
    path.AddLine(25, 2, 2, 25);
    path.CloseFigure();
    const QImage img = Fill(path);
    EXPECT_TRUE(Inked(img, 6, 6));
    EXPECT_FALSE(Inked(img, 22, 22));

    // A gap between lines is bridged, as in a polyline.
    CQKGraphicsPath bridged;
    bridged.AddLine(0, 0, 10, 0);
    bridged.AddLine(10, 10, 0, 10);
    const QPainterPath& p = bridged.Path();
    EXPECT_EQ(p.elementCount(), 4);
    EXPECT_EQ(QPointF(p.elementAt(2)), QPointF(10, 10));
}

TEST(GraphicsPathTest, StartFigureSeparatesFiguresAndClosedShapesStandAlone)
{
    CQKGraphicsPath path;
    path.AddLine(0, 0, 10, 0);
    path.StartFigure();
    path.AddLine(0, 5, 10, 5);
    path.AddRectangle(QRectF(20, 20, 5, 5));
    path.AddLine(0, 9, 10, 9);
    // Three moves for the three open figures, one for the rectangle.
    int moves = 0;
    for (int i = 0; i < path.Path().elementCount(); ++i)
        moves += path.Path().elementAt(i).isMoveTo() ? 1 : 0;
    EXPECT_EQ(moves, 4);
}

TEST(GraphicsPathTest, InsideFiguresAreHolesByTheOddEvenRule)
{
    CQKGraphicsPath ring;
    ring.AddRectangle(QRectF(2, 2, 26, 26));
    ring.AddRectangle(QRectF(10, 10, 10, 10));
    const QImage img = Fill(ring);
    EXPECT_TRUE(Inked(img, 4, 4));
    EXPECT_FALSE(Inked(img, 15, 15));
}

TEST(GraphicsPathTest, ClosedCurvePassesThroughItsPoints)
{
    // The play face's curve, before its move and scale.
    const std::vector<QPointF> pts { { 0, 4 }, { 4, 0 }, { 40, 20 }, { 4, 40 }, { 0, 36 } };
    CQKGraphicsPath path;
    path.AddClosedCurve(pts);
    // A point on the curve is on the edge of its fill: the bounds hold all the points.
    const QRectF b = path.GetBounds();
    for (const QPointF& p : pts) {
        EXPECT_GE(p.x(), b.left() - 0.01);
        EXPECT_LE(p.x(), b.right() + 0.01);
        EXPECT_GE(p.y(), b.top() - 0.01);
        EXPECT_LE(p.y(), b.bottom() + 0.01);
    }
    // The curve bulges a little past the extreme point at 40,20 but not far.
    EXPECT_NEAR(b.right(), 40.0, 2.5);
    EXPECT_TRUE(path.IsVisible(QPointF(15, 20)));
    EXPECT_FALSE(path.IsVisible(QPointF(38, 5)));

    // Too few points make no curve.
    CQKGraphicsPath few;
    few.AddClosedCurve({ { 0, 0 }, { 5, 5 } });
    EXPECT_TRUE(few.IsEmpty());
}

TEST(GraphicsPathTest, ArcRunsClockwiseFromItsStartAngle)
{
    // From 0 degrees (the right) sweeping 90 reaches the bottom on screen.
    CQKGraphicsPath path;
    path.AddArc(QRectF(0, 0, 20, 20), 0, 90);
    const QPainterPath& p = path.Path();
    EXPECT_NEAR(p.elementAt(0).x, 20.0, 0.01);
    EXPECT_NEAR(p.elementAt(0).y, 10.0, 0.01);
    EXPECT_NEAR(p.currentPosition().x(), 10.0, 0.01);
    EXPECT_NEAR(p.currentPosition().y(), 20.0, 0.01);
}

TEST(GraphicsPathTest, TransformAndIntegerBounds)
{
    // The close face: a line turned by 45 degrees about its middle.
    CQKGraphicsPath path;
    path.AddLine(0, 0, 12, 0);
    QTransform t;
    t.translate(6, 0);
    t.rotate(45);
    t.translate(-6, 0);
    path.Transform(t);
    const QRectF b = path.GetBounds();
    EXPECT_NEAR(b.width(), 12 / std::sqrt(2.0), 0.01);
    EXPECT_NEAR(b.height(), 12 / std::sqrt(2.0), 0.01);
    // Integer bounds cover the float bounds.
    const QRect bi = path.GetBoundsI();
    EXPECT_LE(bi.left(), b.left());
    EXPECT_LE(bi.top(), b.top());
    EXPECT_GE(bi.left() + bi.width(), b.right());
    EXPECT_GE(bi.top() + bi.height(), b.bottom());
    EXPECT_LE(bi.width(), std::ceil(b.width()) + 1);

    path.Translate(100, 50);
    EXPECT_NEAR(path.GetBounds().left(), b.left() + 100, 0.01);
    path.Reset();
    EXPECT_TRUE(path.IsEmpty());
}

TEST(GraphicsPathTest, StrokedOpenFigureStaysOpen)
{
    auto stroke = [](const CQKGraphicsPath& path) {
        QImage img(30, 30, QImage::Format_ARGB32_Premultiplied);
        img.fill(0);
        CQKGraphics g(img);
        tagQKPen pen;
        pen.fWidth = 2;
        g.DrawPath(pen, path);
        return img;
    };
    // Three sides of a box, stroked: the fourth side has no ink.
    CQKGraphicsPath path;
    path.AddLines({ { 5, 5 }, { 25, 5 }, { 25, 25 }, { 5, 25 } });
    const QImage open = stroke(path);
    EXPECT_TRUE(Inked(open, 15, 5));
    EXPECT_TRUE(Inked(open, 25, 15));
    EXPECT_FALSE(Inked(open, 5, 15));
    // Closed, it gets the fourth side.
    path.CloseFigure();
    EXPECT_TRUE(Inked(stroke(path), 5, 15));
}
