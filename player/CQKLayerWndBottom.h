#pragma once
// CQKLayerWndBottom: the full-screen player's bottom bar.
//
// It behaves as the top bar (commands go on to the player, a quick second press leaves full
// screen) and adds the sliders: a seek or volume slider of the bar tells the player directly,
// as the panel's do. It paints a plain ground with an outline under its controls.
#include "player/CQKLayerWndTitle.h"

class CQKLayerWndBottom : public CQKLayerWndTitle
{
public:
    explicit CQKLayerWndBottom(CQKPlayerDlg& dlg);

    int PaintFrame(CQKGraphics* pGraphics) override;

protected:
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
};
