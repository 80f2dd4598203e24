#include "controls/CQKSlider.h"

#include "controls/QKDirectPaint.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Positions closer than this are the same position.
constexpr double kSamePos = 1e-5;

// Truncation toward zero that stays defined for values no int holds (a hand-set empty range
// gives infinities and NaN): those become the nearest int, NaN becomes 0.
int Trunc(double d)
{
    if (std::isnan(d))
        return 0;
    return static_cast<int>(std::clamp<double>(std::trunc(d), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

CQKButton* CreateSlider()
{
    return new CQKSlider();
}

} // namespace

CQKSlider::CQKSlider()
{
    nKind = QKKIND_SLIDER;
}

CQKSlider::~CQKSlider() = default;

tagQKControlKind CQKSlider::KindHooks()
{
    // A skin's slider has only the common attributes and starts at the constructor's range
    // and position: the file format has no way to say otherwise.
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateSlider;
    return hooks;
}

void CQKSlider::SetRange(double dMin, double dMax)
{
    if (dMin >= dMax)
        return;
    dMinPos = dMin;
    dMaxPos = dMax;
}

void CQKSlider::SetPos(double dPos, int bRedraw)
{
    if (dPos < dMinPos)
        dPos = dMinPos;
    if (dPos > dMaxPos)
        dPos = dMaxPos;
    if (std::fabs(dPos - dCurPos) < kSamePos)
        return;
    dCurPos = dPos;
    if (bRedraw)
        Paint(nullptr, nullptr);
}

double CQKSlider::Fraction() const
{
    const double dSpan = dMaxPos - dMinPos;
    return dSpan > 0 ? (dCurPos - dMinPos) / dSpan : 0.0;
}

QRect CQKSlider::ThumbRect() const
{
    const double dTravel = nWidth - 4.0 - nThumbSize;
    const double dLeft = nX + 2 + Fraction() * dTravel;
    const int nLeft = Trunc(dLeft);
    const int nRight = Trunc(dLeft + nThumbSize);
    return QRect(QPoint(nLeft, nY), QPoint(nRight - 1, nY + nHeight - 2));
}

double CQKSlider::PosFromPointer(int px) const
{
    // One pixel less than the painting's travel: see the header.
    const double dDivisor = (nWidth - 1) - 4.0 - nThumbSize;
    double d = (dMaxPos - dMinPos) * std::max(px - nX - 1, 0) / dDivisor + dMinPos;
    if (std::isnan(d))
        d = dMinPos;
    return std::clamp(d, dMinPos, std::max(dMinPos, dMaxPos));
}

void CQKSlider::PostChanged(intptr_t lParam)
{
    if (CQKHostWnd::IsWindow(hWndHost))
        hWndHost->PostMessage(QKM_SLIDERCHANGED, reinterpret_cast<uintptr_t>(this), lParam);
}

bool CQKSlider::MoveByUser(double dPos, intptr_t lParam)
{
    if (std::fabs(dPos - dCurPos) < kSamePos)
        return false;
    dCurPos = dPos;
    Paint(nullptr, nullptr);
    PostChanged(lParam);
    return true;
}

void CQKSlider::Paint(CQKGraphics* pGraphics, QImage* pBitmap)
{
    QKPaintDirect(*this, pGraphics, pBitmap, QKHiddenPaint::Skip);
}

// --- the mouse ------------------------------------------------------------------------------
//
// "in" is the point inside the slider, "cap" the window holding the mouse capture, "host" the
// slider's own window. Every case not listed returns 0 and does nothing. The result asks the
// manager for a repaint. The picture never shows the state: it only steers this table.
//
//   point | cap        | message             | what happens                         | result
//   ------+------------+---------------------+--------------------------------------+-----------
//   any   | any        | disabled or hidden  | nothing                              | 0
//   in    | another    | any                 | nothing                              | 0
//   in    | none       | move                | cursor; state 0 becomes 1            | if changed
//   in    | none       | down, state not 2   | cursor; state 2; OnLButtonDown; on   | 1
//         |            |                     | the thumb (at its new place): drag   |
//         |            |                     | offset, capture                      |
//   in    | none       | up, state not 1     | cursor; state 1; OnLButtonUp         | 1
//   in    | host       | move                | OnDragMove                           | 0
//   in    | host       | up                  | state 1; capture released (no        | if changed
//         |            |                     | OnLButtonUp)                         |
//   out   | host       | move                | OnDragMove                           | 0
//   out   | host       | up                  | OnLButtonUp; state 0; release        | if changed
//   out   | not host   | up, thumb pressed   | OnLButtonUp, then the next row       | if changed
//   out   | not host   | any                 | state 0                              | if changed
int CQKSlider::OnMouseEvent(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt)
{
    if (!bEnabled || !bVisible)
        return 0;
    CQKHostWnd* pCap = CQKHostWnd::GetCapture();
    const bool bHostCaptures = pCap && pCap == pHost;
    const uint32_t nOld = nState;
    if (!HitTest(pt)) {
        if (bHostCaptures) {
            if (nMsg == WM_MOUSEMOVE) {
                OnDragMove(pt);
            } else if (nMsg == WM_LBUTTONUP) {
                OnLButtonUp(pt);
                nState = 0;
                CQKHostWnd::ReleaseCapture();
                return nOld != 0 ? 1 : 0;
            }
            return 0;
        }
        if (nMsg == WM_LBUTTONUP && bThumbPressed)
            OnLButtonUp(pt);
        nState = 0;
        return nOld != 0 ? 1 : 0;
    }
    if (pCap && !bHostCaptures)
        return 0;
    if (bHostCaptures) {
        if (nMsg == WM_MOUSEMOVE) {
            OnDragMove(pt);
        } else if (nMsg == WM_LBUTTONUP) {
            nState = 1;
            CQKHostWnd::ReleaseCapture();
            return nOld != 1 ? 1 : 0;
        }
        return 0;
    }
    switch (nMsg) {
    case WM_MOUSEMOVE:
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        if (nState != 0)
            return 0;
        nState = 1;
        return 1;
    case WM_LBUTTONDOWN: {
        if (nState == 2)
            return 0;
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        nState = 2;
        OnLButtonDown(pt);
        const QRect rcThumb = ThumbRect();
        if (rcThumb.contains(pt) && pHost) {
            nDragOffset = pt.x() - rcThumb.left();
            pHost->SetCapture();
        }
        return 1;
    }
    case WM_LBUTTONUP:
        if (nState == 1)
            return 0;
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        nState = 1;
        OnLButtonUp(pt);
        return 1;
    default:
        return 0;
    }
}

void CQKSlider::OnLButtonDown(const QPoint& pt)
{
    if (pManager && !bFocused)
        pManager->SetFocusControl(this, nKind);
    // A press on the thumb only starts a drag; it moves nothing.
    if (ThumbRect().contains(pt)) {
        bThumbPressed = 1;
        return;
    }
    // Beside the thumb the position jumps to the pointer, even by less than 1e-5.
    dCurPos = PosFromPointer(pt.x());
    Paint(nullptr, nullptr);
    PostChanged(0);
}

void CQKSlider::OnDragMove(const QPoint& pt)
{
    if (nState != 2 || !hWndHost || CQKHostWnd::GetCapture() != hWndHost) {
        bThumbPressed = 0;
        return;
    }
    const double dPos = PosFromPointer(pt.x() - nDragOffset);
    if (std::fabs(dPos - dCurPos) < kSamePos)
        return;
    dCurPos = dPos;
    Paint(nullptr, nullptr);
    if (bNotifyOnDrag)
        PostChanged(1);
}

void CQKSlider::OnLButtonUp(const QPoint& /*pt*/)
{
    // Only a drag that began on the thumb and ends away from it closes with a message; an
    // owner that wants every step asks for them with EnableDragNotify.
    if (!bThumbPressed)
        return;
    bThumbPressed = 0;
    PostChanged(0);
}

// --- keys and wheel -------------------------------------------------------------------------

int CQKSlider::PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t /*nMods*/)
{
    if (nMsg != WM_KEYDOWN || !bFocused || !bEnabled || !bVisible || nWidth <= 0)
        return 0;
    // One key press is one pixel's worth of the range. A focused slider swallows every key.
    const double dStep = (dMaxPos - dMinPos) / nWidth;
    if (nVk == VK_RIGHT)
        MoveByUser(std::min(dCurPos + dStep, dMaxPos), 0);
    else if (nVk == VK_LEFT)
        MoveByUser(std::max(dCurPos - dStep, dMinPos), 0);
    return 1;
}

int CQKSlider::OnMouseWheel(uint32_t /*nFlags*/, int nDelta, const QPoint& /*pt*/)
{
    if (!bFocused || !bEnabled || !bVisible)
        return 0;
    // A hundredth of the range per event, however far the wheel turned; turning towards the
    // user raises the position.
    const double dStep = (dMaxPos - dMinPos) / 100.0;
    if (nDelta < 0)
        MoveByUser(std::min(dCurPos + dStep, dMaxPos), 0);
    else if (nDelta > 0)
        MoveByUser(std::max(dCurPos - dStep, dMinPos), 0);
    return 1;
}

// --- painting -------------------------------------------------------------------------------

void CQKSlider::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    const double x = rc.x();
    const double y = rc.y();
    const double w = rc.width();
    const double h = rc.height();
    pGraphics->SetSmoothingMode(QKSmoothingDefault);
    tagQKPen accent;
    accent.clr = QKColorFromBGR(g_clrBorder, bEnabled ? 255 : 100);
    accent.fWidth = 1.0f;
    const tagQKBrush thumbBrush = tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255));

    // The groove: one pixel, across the control but for two pixels at either end.
    const int nGrooveY = Trunc(y + 6.0 + 1.0);
    pGraphics->DrawLine(accent, QPointF(Trunc(x + 2.0), nGrooveY), QPointF(Trunc(x + w - 3.0), nGrooveY));

    // The fill up to the thumb. Its gradient spans the whole control, so the colour at the
    // thumb tells how far along it is.
    const double dFill = Fraction() * (w - 4.0 - nThumbSize);
    if (dCurPos > dMinPos && dFill >= 1.0) {
        tagQKBrush fill = tagQKBrush::Linear(QPointF(Trunc(x), Trunc(y)), QPointF(Trunc(x + w), Trunc(y)), QKColorFromBGR(g_UIColors.clrSliderStart, 255),
            QKColorFromBGR(g_UIColors.clrSliderEnd, 255), QKWrapTile);
        fill.bGammaCorrection = true;
        pGraphics->FillRectangle(fill, QRectF(x + 2.0, y + 6.0, dFill, h - 13.0));
    }

    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    const QRectF rcThumb(x + 2.0 + dFill, y + 2.0, nThumbSize, nThumbSize);
    pGraphics->FillEllipse(thumbBrush, rcThumb);
    pGraphics->DrawEllipse(accent, rcThumb);
}
