#pragma once
// CQKLayerWndTitle: the full-screen player's top bar, and the base of its bottom bar.
//
// The bar carries twins of the title strip's buttons (made by the player, with the panel's
// ids), so its clicks must become the player's commands: every WM_COMMAND whose high word is 0
// (a control's click, also a menu's or a key's command) is posted on to the player. Beside
// that it answers the mouse as the player's own title strip does:
//
//   event                        | what the bar does besides its controls
//   -----------------------------+-----------------------------------------------------------
//   right release                | the options menu at the pointer, unless the player's
//                                | video surface shows (that takes its own right clicks)
//   left press, a second one     | leaves full screen, unless the press is over one of the
//   within the double-click time | title strip's buttons; the time is measured between
//                                | presses, so the controls' own press handling stands
//
// The button test uses the player's title strip in the bar's own coordinates: the player
// fills the screen in full screen, so its strip and the bar's lie in the same place.
#include "toolkit/CQKLayerWnd.h"

#include <cstdint>

class CQKPlayerDlg;

class CQKLayerWndTitle : public CQKLayerWnd
{
public:
    explicit CQKLayerWndTitle(CQKPlayerDlg& dlg);

    // Ground, the program's icon and name, and the outline, as the player's own title strip.
    int PaintFrame(CQKGraphics* pGraphics) override;

    // The monotonic time of the last left press, 0 before the first.
    uint64_t m_dwLastClickTick { 0 };

protected:
    CQKPlayerDlg& Dialog() const { return dlg; }
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;

private:
    CQKPlayerDlg& dlg;
};
