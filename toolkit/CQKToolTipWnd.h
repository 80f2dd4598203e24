#pragma once
// CQKToolTipWnd: the small popup that shows a control's tool tip.
//
// A real window, the only kind a windowless control owns, because a tip must be able to
// leave its host. It is a tool window that takes no focus and no taskbar entry. Once shown it
// fades in (alpha +50 every 100 ms, timer 2) and hides itself after three seconds (timer 1).
// It comes back only when the pointer leaves the control and hovers it again.
#include "platform/CQKHostWnd.h"

#include <QRect>
#include <QSize>
#include <QString>
#include <cstdint>

class CQKToolTipWnd : public CQKHostWnd
{
public:
    CQKToolTipWnd() = default;

    // Makes the (hidden) popup, owned by `pParent`.
    bool CreateTip(CQKHostWnd* pParent);
    // The size the text needs: its outline's bounds at 14 pixels in Arial, plus 10 each way.
    // 0,0 for an empty text.
    QSize Measure() const;
    // Paints the tip and puts it on screen at alpha `nAlphaNow` (0..255).
    void Render(int nAlphaNow);
    // Where a tip of `size` goes when its preferred top-left corner is `pt` (screen pixels,
    // 10 below a control of height `nControlHeight`): kept 2 pixels inside the screen's
    // right edge and at x 0 or more, and flipped above the control when it would reach into
    // the panels at the bottom.
    static QRect PlaceBelow(QPoint pt, QSize size, int nControlHeight, const QRect& rcScreen, const QRect& rcWorkArea);

    QString strText;
    int32_t nAlpha { 0 };

protected:
    void OnTimer(uint32_t nID) override;
    void OnShowWindow(bool bShow) override;
    void OnSize(int w, int h) override;
};
