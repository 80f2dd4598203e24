#pragma once
// CQKTextLayout: where the lines of a text go in a layout rectangle.
//
// DrawString, MeasureString and AddString of the painting facade must agree to the pixel on
// where text stands, so all three lay it out here: hotkey prefixes resolved, paragraphs split
// at line ends, wrapped at words (or anywhere inside a word too long for the line) unless
// wrapping is off, trimmed with an ellipsis when the format asks, then placed by the two
// alignments. An empty rectangle is a point: nothing wraps and the alignments place the text
// around that point.
//
// Vertical text is laid out in a frame turned by 90 degrees clockwise about the rectangle's
// top-right corner, in which the rectangle is h wide and w high; Transform() maps that frame
// to the picture. Lines then run downwards and follow each other from right to left.
#include "platform/QKDrawing.h"

#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <vector>

class CQKTextLayout
{
public:
    // One laid-out line: its text, the start of its baseline and its advance, all in the
    // layout frame, and the index in `text` of a character to underline (-1 for none).
    struct tagLine
    {
        QString text;
        QPointF ptBaseline;
        double fWidth { 0.0 };
        int nUnderline { -1 };
    };

    CQKTextLayout(const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, bool bAntiAlias = true);

    // The Qt font of a font description: family, pixel size, style flags, antialiasing.
    static QFont MakeFont(const tagQKFontSpec& font, bool bAntiAlias = true);

    const QFont& Font() const { return font; }
    const std::vector<tagLine>& Lines() const { return vecLines; }
    // The rectangle in the layout frame (the layout rectangle itself unless vertical).
    const QRectF& FrameRect() const { return rcFrame; }
    // The text's box in the layout frame: lines' extent by line spacing.
    QRectF FrameBox() const { return rcBox; }
    // Maps the layout frame onto the picture (identity unless vertical).
    const QTransform& Transform() const { return transform; }
    // The text's box in picture coordinates.
    QRectF Box() const { return transform.mapRect(rcBox); }
    bool IsVertical() const { return bVertical; }
    double LineSpacing() const { return fLineSpacing; }
    double Ascent() const { return fAscent; }

private:
    void LayParagraph(const QString& paragraph, const std::vector<int>& underlines, double fWidth, bool bWrap);
    static QString StripPrefix(const QString& text, int nMode, std::vector<int>& underlines);

    QFont font;
    std::vector<tagLine> vecLines;
    QRectF rcFrame;
    QRectF rcBox;
    QTransform transform;
    bool bVertical { false };
    double fLineSpacing { 0.0 };
    double fAscent { 0.0 };
};
