#pragma once
// CQKSlider: the horizontal slider of the windowless toolkit (seek bar, volume bar, the colour
// dialog's sliders, and a skin's `slider` element).
//
// It holds its range and position as doubles and draws a one-pixel groove, a gradient fill up
// to the thumb and a round thumb. Every change the user makes reaches the owner window as
// QKM_SLIDERCHANGED, posted, with the slider itself as wParam and 1 as lParam for a step of a
// drag (only with EnableDragNotify), 0 for any other change. SetPos, the owner's own way in,
// posts nothing.
//
// The pointer maps to a position with a divisor one pixel smaller than the painting's, so the
// thumb lands a pixel or so right of a press on the groove; owners and skins rely on the
// positions this gives, so both mappings stay as they are.
#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

class CQKSlider : public CQKButton
{
public:
    CQKSlider();
    ~CQKSlider() override;

    // What the skin reader and the manager need to make a slider from a `slider` element.
    static tagQKControlKind KindHooks();

    // Stores the range; an empty or inverted one (dMin >= dMax) is ignored. The position is
    // not re-clamped.
    void SetRange(double dMin, double dMax);
    double GetRangeSpan() const { return dMaxPos - dMinPos; }
    // Clamps to the range and stores; a change below 1e-5 does nothing, not even a repaint.
    // With `bRedraw` the slider repaints itself at once. Posts no message.
    void SetPos(double dPos, int bRedraw);
    double GetPos() const { return dCurPos; }
    // Every step of a drag posts QKM_SLIDERCHANGED with lParam 1. There is no way back.
    void EnableDragNotify() { bNotifyOnDrag = 1; }

    // The thumb's rectangle in the owner's client pixels (right and bottom edges excluded; the
    // bottom row is one short of the control's).
    QRect ThumbRect() const;
    // The position the pointer's x stands for, offset already taken off, clamped.
    double PosFromPointer(int px) const;

    void Paint(CQKGraphics* pGraphics, QImage* pBitmap) override;
    int OnMouseEvent(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt) override;
    int PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t nMods) override;
    void OnLButtonDown(const QPoint& pt) override;
    int OnMouseWheel(uint32_t nFlags, int nDelta, const QPoint& pt) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;
    // The left button went up while the thumb was pressed: the closing message of a drag.
    virtual void OnLButtonUp(const QPoint& pt);
    // The pointer moved while this slider holds the owner's capture.
    virtual void OnDragMove(const QPoint& pt);

    double dMinPos { 0.0 };
    double dMaxPos { 100.0 };
    double dCurPos { 0.0 };
    int32_t nThumbSize { 10 }; // diameter in pixels
    int32_t nDragOffset { 0 }; // pointer x minus the thumb's left edge when a drag starts
    int32_t bThumbPressed { 0 }; // the last left press landed on the thumb
    int32_t bNotifyOnDrag { 0 };

private:
    // The part of the range the position stands at, 0 to 1 (0 for an empty range).
    double Fraction() const;
    // Stores a position the user chose when it moved by 1e-5 or more: repaints and posts
    // QKM_SLIDERCHANGED with `lParam`. False when it did not move.
    bool MoveByUser(double dPos, intptr_t lParam);
    void PostChanged(intptr_t lParam);
};
