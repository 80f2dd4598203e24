#include "platform/CQKGraphics.h"

#include "platform/CQKTextLayout.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPolygonF>
#include <QScreen>
#include <algorithm>
#include <cmath>

// ----------------------------------------------------------------------------------------
// Brushes

tagQKBrush tagQKBrush::Solid(QKARGB c)
{
    tagQKBrush b;
    b.clr = c;
    return b;
}

tagQKBrush tagQKBrush::Linear(QPointF pt1, QPointF pt2, QKARGB c1, QKARGB c2, int nWrap)
{
    tagQKBrush b;
    b.bLinear = true;
    b.clr = c1;
    b.clrEnd = c2;
    b.ptStart = pt1;
    b.ptEnd = pt2;
    b.nWrapMode = nWrap;
    return b;
}

tagQKBrush tagQKBrush::LinearAngle(const QRectF& rc, QKARGB c1, QKARGB c2, float fAngle, int nWrap)
{
    // The gradient runs along the angle's direction and reaches its colours at the corners
    // of the rectangle that lie farthest back and farthest ahead in that direction.
    const double a = fAngle * M_PI / 180.0;
    const QPointF d(std::cos(a), std::sin(a));
    const QPointF c = rc.center();
    const double half = std::abs(rc.width() / 2.0 * d.x()) + std::abs(rc.height() / 2.0 * d.y());
    return Linear(c - d * half, c + d * half, c1, c2, nWrap);
}

tagQKBrush tagQKBrush::LinearRect(const QRectF& rc, QKARGB c1, QKARGB c2, int nMode, int nWrap)
{
    switch (nMode) {
    case QKGradientVertical:
        return Linear(rc.topLeft(), rc.bottomLeft(), c1, c2, nWrap);
    case QKGradientForwardDiagonal:
        return Linear(rc.topLeft(), rc.bottomRight(), c1, c2, nWrap);
    case QKGradientBackwardDiagonal:
        return Linear(rc.topRight(), rc.bottomLeft(), c1, c2, nWrap);
    default:
        return Linear(rc.topLeft(), rc.topRight(), c1, c2, nWrap);
    }
}

// ----------------------------------------------------------------------------------------
// Construction and quality settings

QImage QKNewImage(int w, int h, qreal dRatio)
{
    if (w <= 0 || h <= 0)
        return QImage();
    const qreal r = dRatio > 0.0 ? dRatio : 1.0;
    QImage image(static_cast<int>(std::ceil(w * r)), static_cast<int>(std::ceil(h * r)), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    image.setDevicePixelRatio(r);
    image.fill(0);
    return image;
}

QImage QKCopyImage(const QImage& image, const QRect& rc)
{
    const qreal r = image.devicePixelRatio();
    const QRect rcPixels(QPoint(static_cast<int>(std::floor(rc.x() * r)), static_cast<int>(std::floor(rc.y() * r))),
        QPoint(static_cast<int>(std::ceil((rc.x() + rc.width()) * r)) - 1, static_cast<int>(std::ceil((rc.y() + rc.height()) * r)) - 1));
    QImage part = image.copy(rcPixels);
    part.setDevicePixelRatio(r);
    return part;
}

QSize QKImageSize(const QImage& image)
{
    return image.deviceIndependentSize().toSize();
}

qreal QKScreenPixelRatio()
{
    const QScreen* pScreen = QGuiApplication::primaryScreen();
    return pScreen ? pScreen->devicePixelRatio() : 1.0;
}

CQKGraphics::CQKGraphics(QImage& target)
    : image(target)
{
    if (image.isNull() || !painter.begin(&image)) {
        nStatus = QKStatusGenericError;
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::TextAntialiasing, false);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
}

CQKGraphics::~CQKGraphics()
{
    if (painter.isActive())
        painter.end();
}

int CQKGraphics::SetSmoothingMode(int nMode)
{
    if (nMode < 0 || nMode > 5)
        return Fail(QKStatusInvalidParameter);
    nSmoothing = nMode;
    painter.setRenderHint(QPainter::Antialiasing, nMode == QKSmoothingHighQuality || nMode == QKSmoothingAntiAlias || nMode == 5);
    return Ok();
}

int CQKGraphics::SetInterpolationMode(int nMode)
{
    if (nMode < 0 || nMode > 7)
        return Fail(QKStatusInvalidParameter);
    nInterpolation = nMode;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, nMode != QKInterpolationNearestNeighbor && nMode != QKInterpolationLowQuality);
    return Ok();
}

int CQKGraphics::SetTextRenderingHint(int nHint)
{
    if (nHint < 0 || nHint > 5)
        return Fail(QKStatusInvalidParameter);
    nTextHint = nHint;
    painter.setRenderHint(QPainter::TextAntialiasing, nHint >= QKTextHintAntiAliasGridFit);
    return Ok();
}

int CQKGraphics::TranslateTransform(float dx, float dy)
{
    painter.translate(dx, dy);
    return Ok();
}

int CQKGraphics::ResetTransform()
{
    painter.resetTransform();
    return Ok();
}

// ----------------------------------------------------------------------------------------
// Pens and brushes in Qt's terms

// Gamma-corrected blending: colours meet in linear light (gamma 2.2), which keeps the middle
// of a gradient brighter than a plain blend of the stored values. A handful of stops follow
// that curve closely enough for the short gradients the program paints.
static void AddGammaStops(QLinearGradient& g, QKARGB c1, QKARGB c2)
{
    constexpr int kStops = 16;
    auto lin = [](uint32_t v) { return std::pow(v / 255.0, 2.2); };
    for (int i = 0; i <= kStops; ++i) {
        const double t = static_cast<double>(i) / kStops;
        auto mix = [&](uint32_t a, uint32_t b) {
            const double v = std::pow(lin(a) + (lin(b) - lin(a)) * t, 1.0 / 2.2);
            return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255.0));
        };
        const int alpha = static_cast<int>(std::lround(QKAlphaOf(c1) + (static_cast<double>(QKAlphaOf(c2)) - QKAlphaOf(c1)) * t));
        g.setColorAt(t, QColor(mix(QKRedOf(c1), QKRedOf(c2)), mix(QKGreenOf(c1), QKGreenOf(c2)), mix(QKBlueOf(c1), QKBlueOf(c2)), alpha));
    }
}

QBrush CQKGraphics::MakeBrush(const tagQKBrush& b) const
{
    if (!b.bLinear || b.ptStart == b.ptEnd)
        return QBrush(QColor::fromRgba(b.clr));
    QLinearGradient g(b.ptStart, b.ptEnd);
    if (b.bGammaCorrection) {
        AddGammaStops(g, b.clr, b.clrEnd);
    } else {
        g.setColorAt(0.0, QColor::fromRgba(b.clr));
        g.setColorAt(1.0, QColor::fromRgba(b.clrEnd));
    }
    switch (b.nWrapMode) {
    case QKWrapClamp:
        g.setSpread(QGradient::PadSpread);
        break;
    case QKWrapTileFlipX:
    case QKWrapTileFlipY:
    case QKWrapTileFlipXY:
        g.setSpread(QGradient::ReflectSpread);
        break;
    default:
        g.setSpread(QGradient::RepeatSpread);
        break;
    }
    return QBrush(g);
}

static Qt::PenCapStyle QtCap(int nCap)
{
    switch (nCap) {
    case QKLineCapSquare:
        return Qt::SquareCap;
    case QKLineCapRound:
        return Qt::RoundCap;
    default:
        return Qt::FlatCap; // flat, triangle and the anchors, which are drawn apart
    }
}

QPen CQKGraphics::MakePen(const tagQKPen& p) const
{
    QPen pen(p.pBrush ? MakeBrush(*p.pBrush) : QBrush(QColor::fromRgba(p.clr)), std::max(0.0f, p.fWidth));
    // Qt has one cap for both ends; a round or square start wins, as the painters set both
    // ends alike.
    pen.setCapStyle(QtCap(p.nStartCap == p.nEndCap || p.nStartCap >= QKLineCapNoAnchor ? p.nEndCap : p.nStartCap));
    // A miter that would reach past the limit becomes a bevel. This matters where a figure
    // turns straight back on itself (a single line closed as its own figure, as in the
    // drawn glyphs): there an unbevelled miter would be a long spike.
    switch (p.nLineJoin) {
    case QKLineJoinBevel:
        pen.setJoinStyle(Qt::BevelJoin);
        break;
    case QKLineJoinRound:
        pen.setJoinStyle(Qt::RoundJoin);
        break;
    default:
        pen.setJoinStyle(Qt::SvgMiterJoin);
        break;
    }
    pen.setMiterLimit(10.0);
    // Dash lengths are in pen widths: dashes of three, dots and gaps of one.
    switch (p.nDashStyle) {
    case QKDashDash:
        pen.setDashPattern({ 3, 1 });
        break;
    case QKDashDot:
        pen.setDashPattern({ 1, 1 });
        break;
    case QKDashDashDot:
        pen.setDashPattern({ 3, 1, 1, 1 });
        break;
    case QKDashDashDotDot:
        pen.setDashPattern({ 3, 1, 1, 1, 1, 1 });
        break;
    default:
        break;
    }
    return pen;
}

// ----------------------------------------------------------------------------------------
// Anchor caps

static bool IsAnchor(int nCap)
{
    return nCap >= QKLineCapSquareAnchor && nCap <= QKLineCapArrowAnchor;
}

// How far an anchor cap reaches back along the line from its end point; the stroke stops
// there so that its flat end hides inside the cap.
static double AnchorInset(int nCap, double w)
{
    return nCap == QKLineCapArrowAnchor ? w * std::sqrt(3.0) / 2.0 : 0.0;
}

void CQKGraphics::DrawAnchorCap(const tagQKPen& pen, int nCap, QPointF tip, QPointF from)
{
    const double w = std::max(1.0f, pen.fWidth);
    const QPointF v = tip - from;
    const double len = std::hypot(v.x(), v.y());
    if (len <= 0)
        return;
    const QPointF u = v / len; // along the line, towards its end
    const QPointF n(-u.y(), u.x());
    QPainterPath shape;
    switch (nCap) {
    case QKLineCapArrowAnchor: {
        // A triangle with its point on the line's end and sides of 4w/sqrt(3) at 30 degrees
        // to the line: twice the pen wide at its base, its base a little more than the pen
        // width behind the tip.
        const double side = w * 4.0 / std::sqrt(3.0);
        const QPointF back = tip - u * side * std::cos(M_PI / 6.0);
        const QPointF half = n * side * std::sin(M_PI / 6.0);
        shape.addPolygon(QPolygonF({ tip, back + half, back - half }));
        break;
    }
    case QKLineCapRoundAnchor:
        shape.addEllipse(tip, w, w);
        break;
    case QKLineCapDiamondAnchor:
        shape.addPolygon(QPolygonF({ tip + u * w, tip + n * w, tip - u * w, tip - n * w }));
        break;
    case QKLineCapSquareAnchor:
        shape.addPolygon(QPolygonF({ tip + (u + n) * w, tip + (n - u) * w, tip - (u + n) * w, tip + (u - n) * w }));
        break;
    default:
        return;
    }
    shape.closeSubpath();
    painter.fillPath(shape, pen.pBrush ? MakeBrush(*pen.pBrush) : QBrush(QColor::fromRgba(pen.clr)));
}

// Pixel centres lie on whole coordinates for the painters and half-way between them for Qt.
// A smoothed stroke of odd width on whole coordinates would thus light two half rows where
// the painters mean one full row; such strokes move by half a pixel. Even widths and fills
// need no move, and unsmoothed drawing already lands on whole pixels.
double CQKGraphics::StrokeOffset(const tagQKPen& pen) const
{
    if (!painter.testRenderHint(QPainter::Antialiasing))
        return 0.0;
    const double w = std::max(1.0f, pen.fWidth);
    const long iw = std::lround(w);
    return (std::abs(w - static_cast<double>(iw)) < 1e-6 && iw % 2 == 1) ? 0.5 : 0.0;
}

void CQKGraphics::Stroke(const tagQKPen& pen, const QPainterPath& path)
{
    const double off = StrokeOffset(pen);
    if (off == 0.0) {
        StrokeWithCaps(pen, path);
        return;
    }
    painter.translate(off, off);
    StrokeWithCaps(pen, path);
    painter.translate(-off, -off);
}

// Strokes a path and draws the anchor caps at the ends of its open figures.
void CQKGraphics::StrokeWithCaps(const tagQKPen& pen, const QPainterPath& path)
{
    const QPen qpen = MakePen(pen);
    if (!IsAnchor(pen.nStartCap) && !IsAnchor(pen.nEndCap)) {
        painter.strokePath(path, qpen);
        return;
    }
    // Split into figures; shorten the open ones at their anchored ends, stroke, then cap.
    const double w = std::max(1.0f, pen.fWidth);
    QList<QPolygonF> figures = path.toSubpathPolygons();
    for (QPolygonF& fig : figures) {
        if (fig.size() < 2)
            continue;
        const bool bClosed = fig.isClosed();
        const QPointF start = fig.front(), end = fig.back();
        const QPointF startFrom = fig[1], endFrom = fig[fig.size() - 2];
        auto shorten = [&](QPointF& pt, QPointF toward, int nCap) {
            const double inset = AnchorInset(nCap, w);
            const QPointF v = toward - pt;
            const double len = std::hypot(v.x(), v.y());
            if (inset > 0 && len > 0)
                pt += v / len * std::min(inset, len);
        };
        if (!bClosed) {
            shorten(fig.back(), endFrom, pen.nEndCap);
            shorten(fig.front(), startFrom, pen.nStartCap);
        }
        QPainterPath sub;
        sub.addPolygon(fig);
        painter.strokePath(sub, qpen);
        if (!bClosed) {
            DrawAnchorCap(pen, pen.nEndCap, end, endFrom);
            DrawAnchorCap(pen, pen.nStartCap, start, startFrom);
        }
    }
}

// ----------------------------------------------------------------------------------------
// Filling and outlines

int CQKGraphics::Clear(QKARGB clr)
{
    const QPainter::CompositionMode mode = painter.compositionMode();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.save();
    painter.resetTransform();
    painter.fillRect(QRectF(QPointF(0, 0), image.deviceIndependentSize()), QColor::fromRgba(clr));
    painter.restore();
    painter.setCompositionMode(mode);
    return Ok();
}

int CQKGraphics::FillRectangle(const tagQKBrush& brush, const QRectF& rc)
{
    if (rc.width() < 0 || rc.height() < 0)
        return Fail(QKStatusInvalidParameter);
    painter.fillRect(rc, MakeBrush(brush));
    return Ok();
}

int CQKGraphics::FillRectangle(const tagQKBrush& brush, int x, int y, int w, int h)
{
    return FillRectangle(brush, QRectF(x, y, w, h));
}

int CQKGraphics::FillEllipse(const tagQKBrush& brush, const QRectF& rc)
{
    QPainterPath p;
    p.addEllipse(rc);
    painter.fillPath(p, MakeBrush(brush));
    return Ok();
}

int CQKGraphics::FillPolygon(const tagQKBrush& brush, const std::vector<QPointF>& points)
{
    if (points.size() < 3)
        return Fail(QKStatusInvalidParameter);
    QPainterPath p;
    p.addPolygon(QPolygonF(QList<QPointF>(points.begin(), points.end())));
    p.closeSubpath();
    painter.fillPath(p, MakeBrush(brush));
    return Ok();
}

int CQKGraphics::FillPath(const tagQKBrush& brush, const CQKGraphicsPath& path)
{
    painter.fillPath(path.Path(), MakeBrush(brush));
    return Ok();
}

int CQKGraphics::DrawRectangle(const tagQKPen& pen, const QRectF& rc)
{
    if (rc.width() < 0 || rc.height() < 0)
        return Fail(QKStatusInvalidParameter);
    if (pen.nDashStyle == QKDashSolid && pen.nLineJoin != QKLineJoinRound) {
        // A solid outline with square corners is the ring between two rectangles. Filled as
        // such it has crisp corners when smoothed too, where a smoothed stroke's corner
        // pixels come out a quarter short.
        // Odd widths move by half a pixel, smoothed or not, so that every edge of the ring
        // lies on whole pixels.
        const double w = std::max(1.0f, pen.fWidth);
        const double off = std::fmod(std::round(w), 2.0) == 1.0 && std::abs(w - std::round(w)) < 1e-6 ? 0.5 : 0.0;
        const QRectF outer = rc.adjusted(-w / 2, -w / 2, w / 2, w / 2).translated(off, off);
        QPainterPath ring;
        ring.addRect(outer);
        if (rc.width() > w && rc.height() > w)
            ring.addRect(rc.adjusted(w / 2, w / 2, -w / 2, -w / 2).translated(off, off));
        painter.fillPath(ring, MakePen(pen).brush());
        return Ok();
    }
    QPainterPath p;
    p.addRect(rc);
    Stroke(pen, p);
    return Ok();
}

int CQKGraphics::DrawRectangle(const tagQKPen& pen, int x, int y, int w, int h)
{
    return DrawRectangle(pen, QRectF(x, y, w, h));
}

int CQKGraphics::DrawEllipse(const tagQKPen& pen, const QRectF& rc)
{
    QPainterPath p;
    p.addEllipse(rc);
    Stroke(pen, p);
    return Ok();
}

int CQKGraphics::DrawLine(const tagQKPen& pen, QPointF p1, QPointF p2)
{
    // A line of no length marks nothing unless a cap gives it a shape.
    if (p1 == p2 && pen.nStartCap == QKLineCapFlat && pen.nEndCap == QKLineCapFlat)
        return Ok();
    QPainterPath p(p1);
    p.lineTo(p2);
    Stroke(pen, p);
    return Ok();
}

int CQKGraphics::DrawLines(const tagQKPen& pen, const std::vector<QPointF>& points)
{
    if (points.size() < 2)
        return Fail(QKStatusInvalidParameter);
    QPainterPath p(points.front());
    for (size_t i = 1; i < points.size(); ++i)
        p.lineTo(points[i]);
    Stroke(pen, p);
    return Ok();
}

int CQKGraphics::DrawPolygon(const tagQKPen& pen, const std::vector<QPointF>& points)
{
    if (points.size() < 2)
        return Fail(QKStatusInvalidParameter);
    QPainterPath p(points.front());
    for (size_t i = 1; i < points.size(); ++i)
        p.lineTo(points[i]);
    p.closeSubpath();
    Stroke(pen, p);
    return Ok();
}

int CQKGraphics::DrawPath(const tagQKPen& pen, const CQKGraphicsPath& path)
{
    Stroke(pen, path.Path());
    return Ok();
}

// ----------------------------------------------------------------------------------------
// Pictures

int CQKGraphics::DrawImage(const QImage& src, const QRectF& rcDst, const QRectF& rcSrc, float fAlpha)
{
    if (src.isNull())
        return Fail(QKStatusInvalidParameter);
    if (fAlpha <= 0.0f)
        return Ok();
    const qreal old = painter.opacity();
    painter.setOpacity(std::min(1.0f, fAlpha));
    painter.drawImage(rcDst, src, rcSrc);
    painter.setOpacity(old);
    return Ok();
}

int CQKGraphics::DrawImage(const QImage& src, QPointF pt, float fAlpha)
{
    return DrawImage(src, QRectF(pt, src.deviceIndependentSize()), QRectF(src.rect()), fAlpha);
}

// ----------------------------------------------------------------------------------------
// Text

int CQKGraphics::DrawString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, const tagQKBrush& brush)
{
    if (text.isEmpty())
        return Ok();
    const bool bAA = nTextHint >= QKTextHintAntiAliasGridFit;
    const CQKTextLayout layout(text, font, rcLayout, format, bAA);
    const QFontMetricsF fm(layout.Font());
    painter.save();
    if (!(format.nFlags & QKFormatNoClip) && rcLayout.width() > 0 && rcLayout.height() > 0)
        painter.setClipRect(rcLayout, Qt::IntersectClip);
    painter.setTransform(layout.Transform(), true);
    painter.setFont(layout.Font());
    painter.setPen(QPen(MakeBrush(brush), 1.0));
    for (const CQKTextLayout::tagLine& line : layout.Lines()) {
        painter.drawText(line.ptBaseline, line.text);
        if (line.nUnderline >= 0) {
            const double x = line.ptBaseline.x() + fm.horizontalAdvance(line.text.left(line.nUnderline));
            const double w = fm.horizontalAdvance(line.text.mid(line.nUnderline, 1));
            const double y = line.ptBaseline.y() + fm.underlinePos();
            painter.fillRect(QRectF(x, y, w, std::max(1.0, fm.lineWidth())), painter.pen().brush());
        }
    }
    painter.restore();
    return Ok();
}

QRectF CQKGraphics::MeasureString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, int* pnLines) const
{
    if (pnLines)
        *pnLines = 0;
    if (text.isEmpty())
        return QRectF(rcLayout.topLeft(), QSizeF(0, 0));
    const CQKTextLayout layout(text, font, rcLayout, format, nTextHint >= QKTextHintAntiAliasGridFit);
    if (pnLines)
        *pnLines = static_cast<int>(layout.Lines().size());
    return layout.Box();
}

// ----------------------------------------------------------------------------------------
// Clipping

void CQKGraphics::ApplyClip(const QPainterPath& area, int nCombineMode)
{
    QPainterPath whole;
    whole.addRect(QRectF(QPointF(0, 0), image.deviceIndependentSize()));
    const QPainterPath base = bClip ? clipArea : whole;
    switch (nCombineMode) {
    case QKCombineIntersect:
        clipArea = base.intersected(area);
        break;
    case QKCombineUnion:
        clipArea = bClip ? base.united(area) : whole;
        break;
    case QKCombineXor:
        clipArea = base.united(area).subtracted(base.intersected(area));
        break;
    case QKCombineExclude:
        clipArea = base.subtracted(area);
        break;
    case QKCombineComplement:
        clipArea = area.subtracted(base);
        break;
    default:
        clipArea = area;
        break;
    }
    bClip = true;
    // The clip is kept in picture pixels, whatever transform is set at the moment.
    const QTransform t = painter.transform();
    painter.resetTransform();
    painter.setClipPath(clipArea, Qt::ReplaceClip);
    painter.setTransform(t);
}

int CQKGraphics::SetClipRect(const QRectF& rc, int nCombineMode)
{
    if (nCombineMode < 0 || nCombineMode > QKCombineComplement)
        return Fail(QKStatusInvalidParameter);
    QPainterPath p;
    p.addRect(rc);
    ApplyClip(painter.transform().map(p), nCombineMode);
    return Ok();
}

int CQKGraphics::SetClipPath(const CQKGraphicsPath& path, int nCombineMode)
{
    if (nCombineMode < 0 || nCombineMode > QKCombineComplement)
        return Fail(QKStatusInvalidParameter);
    ApplyClip(painter.transform().map(path.Path()), nCombineMode);
    return Ok();
}

int CQKGraphics::ResetClip()
{
    bClip = false;
    clipArea = QPainterPath();
    painter.setClipping(false);
    return Ok();
}

// ----------------------------------------------------------------------------------------
// Saving state

void CQKGraphics::Save()
{
    vecSaved.push_back({ nSmoothing, nInterpolation, nTextHint, bClip, clipArea, painter.transform() });
}

void CQKGraphics::Restore()
{
    if (vecSaved.empty())
        return;
    const tagSaved s = vecSaved.back();
    vecSaved.pop_back();
    SetSmoothingMode(s.nSmoothing);
    SetInterpolationMode(s.nInterpolation);
    SetTextRenderingHint(s.nTextHint);
    painter.setTransform(s.transform);
    if (s.bClip) {
        bClip = false;
        ApplyClip(s.clip, QKCombineReplace);
    } else {
        ResetClip();
    }
    Ok();
}
