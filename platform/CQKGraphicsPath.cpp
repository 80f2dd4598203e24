#include "platform/CQKGraphicsPath.h"

#include "platform/CQKTextLayout.h"

#include <QTransform>
#include <algorithm>
#include <cmath>

void CQKGraphicsPath::LineTo(QPointF pt)
{
    if (!bFigureOpen) {
        path.moveTo(pt);
        bFigureOpen = true;
    } else if (path.currentPosition() != pt) {
        path.lineTo(pt);
    }
}

void CQKGraphicsPath::AddLine(QPointF p1, QPointF p2)
{
    // Lines continue the open figure, joined to its last point, as a polyline does.
    LineTo(p1);
    path.lineTo(p2);
}

void CQKGraphicsPath::AddLines(const std::vector<QPointF>& points)
{
    if (points.empty())
        return;
    LineTo(points.front());
    for (size_t i = 1; i < points.size(); ++i)
        path.lineTo(points[i]);
}

void CQKGraphicsPath::AddArc(const QRectF& rc, float fStartAngle, float fSweepAngle)
{
    // Angles run clockwise on screen here and counter-clockwise in Qt.
    if (!bFigureOpen) {
        path.arcMoveTo(rc, -fStartAngle);
        bFigureOpen = true;
    }
    path.arcTo(rc, -fStartAngle, -fSweepAngle);
}

void CQKGraphicsPath::AddBezier(QPointF p1, QPointF c1, QPointF c2, QPointF p2)
{
    LineTo(p1);
    path.cubicTo(c1, c2, p2);
}

// A cardinal spline through the points, as cubic pieces: the control points of each piece
// lie a third of the tension along the neighbours' chord.
static void AddCardinal(QPainterPath& path, const std::vector<QPointF>& pts, float fTension, bool bClosed)
{
    const size_t n = pts.size();
    const double k = fTension / 3.0;
    auto at = [&](long i) {
        if (bClosed)
            return pts[static_cast<size_t>((i % static_cast<long>(n) + static_cast<long>(n)) % static_cast<long>(n))];
        return pts[static_cast<size_t>(std::clamp(i, 0L, static_cast<long>(n) - 1))];
    };
    const long segments = bClosed ? static_cast<long>(n) : static_cast<long>(n) - 1;
    for (long i = 0; i < segments; ++i) {
        const QPointF p0 = at(i - 1), p1 = at(i), p2 = at(i + 1), p3 = at(i + 2);
        path.cubicTo(p1 + k * (p2 - p0), p2 - k * (p3 - p1), p2);
    }
}

void CQKGraphicsPath::AddCurve(const std::vector<QPointF>& points, float fTension)
{
    if (points.size() < 2)
        return;
    LineTo(points.front());
    AddCardinal(path, points, fTension, false);
}

void CQKGraphicsPath::AddClosedCurve(const std::vector<QPointF>& points, float fTension)
{
    if (points.size() < 3)
        return;
    path.moveTo(points.front());
    AddCardinal(path, points, fTension, true);
    path.closeSubpath();
    bFigureOpen = false;
}

void CQKGraphicsPath::AddRectangle(const QRectF& rc)
{
    path.addRect(rc);
    bFigureOpen = false;
}

void CQKGraphicsPath::AddEllipse(const QRectF& rc)
{
    path.addEllipse(rc);
    bFigureOpen = false;
}

void CQKGraphicsPath::AddPolygon(const std::vector<QPointF>& points)
{
    if (points.size() < 2)
        return;
    path.moveTo(points.front());
    for (size_t i = 1; i < points.size(); ++i)
        path.lineTo(points[i]);
    path.closeSubpath();
    bFigureOpen = false;
}

void CQKGraphicsPath::AddString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format)
{
    if (text.isEmpty())
        return;
    const CQKTextLayout layout(text, font, rcLayout, format);
    QPainterPath glyphs;
    for (const CQKTextLayout::tagLine& line : layout.Lines())
        glyphs.addText(line.ptBaseline, layout.Font(), line.text);
    glyphs = layout.Transform().map(glyphs);
    // Glyph outlines are closed figures, and the odd-even rule of the path fills them right:
    // the hole of an 'o' lies inside exactly one other outline.
    path.addPath(glyphs);
    bFigureOpen = false;
}

void CQKGraphicsPath::AddPath(const CQKGraphicsPath& other)
{
    path.addPath(other.path);
    bFigureOpen = false;
}

void CQKGraphicsPath::StartFigure()
{
    bFigureOpen = false;
}

void CQKGraphicsPath::CloseFigure()
{
    if (bFigureOpen)
        path.closeSubpath();
    bFigureOpen = false;
}

void CQKGraphicsPath::Reset()
{
    path = QPainterPath();
    bFigureOpen = false;
}

void CQKGraphicsPath::Transform(const QTransform& matrix)
{
    const bool bOpen = bFigureOpen;
    path = matrix.map(path);
    bFigureOpen = bOpen;
}

void CQKGraphicsPath::Translate(float dx, float dy)
{
    path.translate(dx, dy);
}

QRectF CQKGraphicsPath::GetBounds() const
{
    return path.boundingRect();
}

QRect CQKGraphicsPath::GetBoundsI() const
{
    const QRectF r = path.boundingRect();
    const int l = static_cast<int>(std::floor(r.left()));
    const int t = static_cast<int>(std::floor(r.top()));
    const int rr = static_cast<int>(std::ceil(r.right()));
    const int b = static_cast<int>(std::ceil(r.bottom()));
    return QRect(l, t, rr - l, b - t);
}

bool CQKGraphicsPath::IsVisible(QPointF pt) const
{
    return path.contains(pt);
}
