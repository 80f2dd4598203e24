#pragma once
// CQKGraphics: the painting calls of the program over a QImage.
//
// Painters of the program (controls, faces, frames, menus) draw through this class only.
// It speaks their vocabulary (smoothing modes, text rendering hints, string formats,
// gradient brushes with gamma correction, pens with caps and joins, clip combine modes, a
// picture drawn at an alpha, text as a path) and translates it to QPainter in one place.
//
// The target is a QImage in Format_ARGB32_Premultiplied, the format of every composed
// picture of the program; other formats are painted as QPainter allows. The image must
// outlive the CQKGraphics. Coordinates are pixels of the image, with no transform unless
// TranslateTransform set one.
//
// A picture for a screen of higher density (a device pixel ratio of 2 on a HiDPI screen or
// with QT_SCALE_FACTOR=2) holds ratio times as many pixels each way and carries that ratio
// (QKNewImage). Painting on it keeps the program's coordinates (logical pixels: a 10 by 10
// rectangle covers 20 by 20 pixels at ratio 2), so lines, text and faces come out at the
// screen's full resolution. Source rectangles of DrawImage are pixels of the source picture
// itself, as QPainter has them; destinations are logical. Every call returns a QKStatus* code, kept in LastStatus() and
// otherwise ignored by the program.
//
// State as it starts: smoothing off (QKSmoothingDefault), interpolation bilinear
// (QKInterpolationDefault), text hint QKTextHintSystemDefault (grid-fitted text without
// smoothing), no clip.
#include "platform/CQKGraphicsPath.h"
#include "platform/QKDrawing.h"

#include <QPainter>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <memory>
#include <vector>

class QImage;

// A picture of w by h logical pixels for a screen of this device pixel ratio, cleared to
// transparent; null when the size is empty or too large.
QImage QKNewImage(int w, int h, qreal dRatio = 1.0);
// The part `rc` (logical pixels) of a picture, at the picture's ratio.
QImage QKCopyImage(const QImage& image, const QRect& rc);
// A picture's size in logical pixels.
QSize QKImageSize(const QImage& image);
// The device pixel ratio of the primary screen (1 without a screen).
qreal QKScreenPixelRatio();

class CQKGraphics
{
public:
    // Paints on `image` until destroyed.
    explicit CQKGraphics(QImage& image);
    ~CQKGraphics();
    CQKGraphics(const CQKGraphics&) = delete;
    CQKGraphics& operator=(const CQKGraphics&) = delete;

    // The picture this paints on.
    QImage& Image() const { return image; }
    int LastStatus() const { return nStatus; }

    // --- quality settings ---------------------------------------------------------------
    int SetSmoothingMode(int nMode);
    int GetSmoothingMode() const { return nSmoothing; }
    int SetInterpolationMode(int nMode);
    int GetInterpolationMode() const { return nInterpolation; }
    int SetTextRenderingHint(int nHint);
    int GetTextRenderingHint() const { return nTextHint; }

    // --- transform ----------------------------------------------------------------------
    int TranslateTransform(float dx, float dy);
    int ResetTransform();

    // --- filling ------------------------------------------------------------------------
    int Clear(QKARGB clr);
    int FillRectangle(const tagQKBrush& brush, const QRectF& rc);
    int FillRectangle(const tagQKBrush& brush, int x, int y, int w, int h);
    int FillEllipse(const tagQKBrush& brush, const QRectF& rc);
    int FillPolygon(const tagQKBrush& brush, const std::vector<QPointF>& points);
    int FillPath(const tagQKBrush& brush, const CQKGraphicsPath& path);

    // --- outlines -----------------------------------------------------------------------
    // Rectangles are outlined on their edges: a 1-pixel pen on 0,0,w-1,h-1 covers the
    // outermost pixels of a w by h box.
    int DrawRectangle(const tagQKPen& pen, const QRectF& rc);
    int DrawRectangle(const tagQKPen& pen, int x, int y, int w, int h);
    int DrawEllipse(const tagQKPen& pen, const QRectF& rc);
    int DrawLine(const tagQKPen& pen, QPointF p1, QPointF p2);
    int DrawLine(const tagQKPen& pen, float x1, float y1, float x2, float y2) { return DrawLine(pen, QPointF(x1, y1), QPointF(x2, y2)); }
    int DrawLines(const tagQKPen& pen, const std::vector<QPointF>& points);
    int DrawPolygon(const tagQKPen& pen, const std::vector<QPointF>& points);
    int DrawPath(const tagQKPen& pen, const CQKGraphicsPath& path);

    // --- pictures -----------------------------------------------------------------------
    // Draws `rcSrc` of `src` into `rcDst`, scaled by the interpolation mode, at `fAlpha`
    // (0..1, the colour-matrix alpha of the painters).
    int DrawImage(const QImage& src, const QRectF& rcDst, const QRectF& rcSrc, float fAlpha = 1.0f);
    // The whole picture at its natural size with its top-left corner at `pt`.
    int DrawImage(const QImage& src, QPointF pt, float fAlpha = 1.0f);

    // --- text ---------------------------------------------------------------------------
    // Draws `text` in `rcLayout` by `format`. Lines wrap at words unless QKFormatNoWrap; the
    // text is clipped to the rectangle unless QKFormatNoClip. An empty rectangle (width and
    // height 0) puts the text at its top-left corner without wrapping or clipping.
    int DrawString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, const tagQKBrush& brush);
    // The box the text would take in `rcLayout`: its position by the alignments and its size
    // (line advances by line spacing). `pnLines` receives the number of lines if given.
    QRectF MeasureString(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, int* pnLines = nullptr) const;

    // --- clipping -----------------------------------------------------------------------
    int SetClipRect(const QRectF& rc, int nCombineMode = QKCombineReplace);
    int SetClipPath(const CQKGraphicsPath& path, int nCombineMode = QKCombineReplace);
    int ResetClip();
    bool HasClip() const { return bClip; }

    // --- saving state -------------------------------------------------------------------
    // Saves smoothing, interpolation, text hint, transform and clip; Restore goes back.
    void Save();
    void Restore();

    // The painter underneath, for platform code that needs more than the calls above.
    QPainter& Painter() { return painter; }

private:
    int Ok() { return nStatus = QKStatusOk; }
    int Fail(int nCode) { return nStatus = nCode; }
    QPen MakePen(const tagQKPen& pen) const;
    QBrush MakeBrush(const tagQKBrush& brush) const;
    double StrokeOffset(const tagQKPen& pen) const;
    void Stroke(const tagQKPen& pen, const QPainterPath& path);
    void StrokeWithCaps(const tagQKPen& pen, const QPainterPath& path);
    void DrawAnchorCap(const tagQKPen& pen, int nCap, QPointF tip, QPointF from);
    void ApplyClip(const QPainterPath& area, int nCombineMode);

    struct tagSaved
    {
        int nSmoothing;
        int nInterpolation;
        int nTextHint;
        bool bClip;
        QPainterPath clip;
        QTransform transform;
    };

    QImage& image;
    QPainter painter;
    int nStatus { QKStatusOk };
    int nSmoothing { QKSmoothingDefault };
    int nInterpolation { QKInterpolationDefault };
    int nTextHint { QKTextHintSystemDefault };
    bool bClip { false };
    QPainterPath clipArea; // in image pixels, valid when bClip
    std::vector<tagSaved> vecSaved;
};
