#pragma once
// CQKGraphicsPath: a path of figures for filling, stroking and clipping.
//
// Figures are built with the Add* calls in the order the painters use them; a figure stays
// open until CloseFigure() or StartFigure(). Lines added one after another join into one
// figure, as polylines do. Coordinates are floats in the pixels of the picture.
#include "platform/QKDrawing.h"

#include <QPainterPath>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QString>
#include <vector>

class QTransform;

class CQKGraphicsPath
{
public:
    CQKGraphicsPath() = default;

    void AddLine(QPointF p1, QPointF p2);
    void AddLine(float x1, float y1, float x2, float y2) { AddLine(QPointF(x1, y1), QPointF(x2, y2)); }
    // A polyline through the points, continuing the open figure.
    void AddLines(const std::vector<QPointF>& points);
    // An arc of the ellipse in `rc` from `fStartAngle` sweeping `fSweepAngle` degrees,
    // clockwise from the x axis.
    void AddArc(const QRectF& rc, float fStartAngle, float fSweepAngle);
    void AddBezier(QPointF p1, QPointF c1, QPointF c2, QPointF p2);
    // A smooth curve through the points (cardinal spline, tension 0.5 by default).
    void AddCurve(const std::vector<QPointF>& points, float fTension = 0.5f);
    // The same, closed into its own figure.
    void AddClosedCurve(const std::vector<QPointF>& points, float fTension = 0.5f);
    // A closed rectangle, ellipse or polygon, each its own figure.
    void AddRectangle(const QRectF& rc);
    void AddEllipse(const QRectF& rc);
    void AddPolygon(const std::vector<QPointF>& points);
    // The outlines of a text laid out in `rcLayout` the way CQKGraphics::DrawString lays it
    // out (an empty rectangle: at its top-left corner, no wrapping).
    void AddString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format);
    // Another path's figures, appended.
    void AddPath(const CQKGraphicsPath& other);
    void StartFigure();
    void CloseFigure();
    void Reset();

    void Transform(const QTransform& matrix);
    void Translate(float dx, float dy);

    bool IsEmpty() const { return path.elementCount() == 0; }
    // The bounds of the points, without pen width.
    QRectF GetBounds() const;
    // The same, widened to whole pixels: floor of left and top, ceiling of right and bottom.
    QRect GetBoundsI() const;
    bool IsVisible(QPointF pt) const;

    // The path in Qt's form. It fills by the odd-even rule: a figure inside another is a
    // hole, as in the drawn faces.
    const QPainterPath& Path() const { return path; }

private:
    void LineTo(QPointF pt);

    QPainterPath path;
    bool bFigureOpen { false };
};
