#include "player/CQKLayerWndBottom.h"

#include "platform/QKMessages.h"
#include "player/CQKPlayerDlg.h"

CQKLayerWndBottom::CQKLayerWndBottom(CQKPlayerDlg& owner)
    : CQKLayerWndTitle(owner)
{
}

int CQKLayerWndBottom::PaintFrame(CQKGraphics* pGraphics)
{
    const QRect rc = GetClientRect();
    Dialog().PaintGround(pGraphics, rc.width(), rc.height(), false);
    return 0;
}

intptr_t CQKLayerWndBottom::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    if (msg == QKM_SLIDERCHANGED) {
        Dialog().OnSliderChanged(reinterpret_cast<CQKSlider*>(wParam));
        return 0;
    }
    return CQKLayerWndTitle::OnMessage(msg, wParam, lParam);
}
