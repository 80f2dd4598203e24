#pragma once
// The repaint that statics, sliders and link buttons use in place of the control base's.
//
// It differs from the base's in three ways: the background under the control is taken once
// (the first full repaint after the cache was dropped) rather than on every full repaint; no
// picture or drawn face is painted, only the control's PaintContent; and a link button keeps
// painting its background while it is hidden, so that hiding one clears its place at once.
class CQKButton;
class CQKGraphics;
class QImage;

enum class QKHiddenPaint {
    Skip, // a hidden control paints nothing (statics, sliders)
    Background, // a hidden control still takes its snapshot and paints its background (links)
};

// With `pGraphics`: paints the control into the host's composition `pBitmap` (which also
// feeds the background snapshot). With two nulls: repaints the control alone, straight onto
// its host window. A control of zero or negative width or height paints nothing.
void QKPaintDirect(CQKButton& control, CQKGraphics* pGraphics, QImage* pBitmap, QKHiddenPaint hidden);
