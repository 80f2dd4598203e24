#include "player/CQKLayerWndTitle.h"

#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "player/CQKPlayerDlg.h"

CQKLayerWndTitle::CQKLayerWndTitle(CQKPlayerDlg& owner)
    : CQKLayerWnd(&owner)
    , dlg(owner)
{
}

int CQKLayerWndTitle::PaintFrame(CQKGraphics* pGraphics)
{
    const QRect rc = GetClientRect();
    dlg.PaintGround(pGraphics, rc.width(), rc.height(), true);
    return 0;
}

intptr_t CQKLayerWndTitle::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    if (msg == WM_COMMAND && QKHiWord(wParam) == 0)
        dlg.PostMessage(msg, wParam, lParam);
    return CQKLayerWnd::OnMessage(msg, wParam, lParam);
}

void CQKLayerWndTitle::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    CQKLayerWnd::OnMouseMessage(msg, pt, keys);
    if (msg == WM_RBUTTONUP) {
        if (!dlg.IsVideoWindowVisible())
            dlg.ShowContextMenu(GetCursorPos());
    } else if (msg == WM_LBUTTONDOWN) {
        const uint64_t nNow = QKGetTickCount();
        const uint64_t d = nNow - m_dwLastClickTick;
        m_dwLastClickTick = nNow;
        if (d > QKGetDoubleClickTime())
            return;
        if (!dlg.IsOverTitleControl(pt) && dlg.m_bFullScreen)
            dlg.OnFullScreen();
    }
}
