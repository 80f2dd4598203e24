#include "CQKLayerWnd.h"

#include "CQKUIManager.h"
#include "platform/QKMessages.h"

#include <algorithm>

CQKLayerWnd::CQKLayerWnd(CQKHostWnd* pOwner)
    : m_pOwner(pOwner)
{
}

CQKLayerWnd::~CQKLayerWnd()
{
    // The window goes while the derived bar still exists, so that its OnDestroy runs.
    DestroyWindow();
}

void CQKLayerWnd::ShowFade(bool bShow)
{
    if (!IsWindow() || IsWindowVisible() == bShow)
        return;
    if (m_pOwner)
        m_pOwner->KillTimer(kOwnerPollTimer);
    if (bShow) {
        m_nAlpha = 0;
        SetWindowAlpha(0);
        // The bar shows without taking the focus: the full-screen window keeps the keys, and
        // a window manager keeps it in its full-screen state.
        ShowWindow(SW_SHOWNOACTIVATE);
        SetTimer(kTimerFadeIn, kFadeStepMs);
    } else {
        SetTimer(kTimerFadeOut, kFadeStepMs);
    }
}

int CQKLayerWnd::PaintFrame(CQKGraphics*)
{
    return 0;
}

int CQKLayerWnd::OnMenuCommand(uintptr_t, intptr_t)
{
    return 0;
}

int CQKLayerWnd::OnComboChanged(uintptr_t, intptr_t)
{
    return 0;
}

void CQKLayerWnd::OnCreate()
{
    CQKUIHostWnd::OnCreate();
    if (pUIManager)
        pUIManager->LoadSkin(this);
    CreateControls();
}

intptr_t CQKLayerWnd::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    switch (msg) {
    case QKM_MENUCOMMAND:
        return OnMenuCommand(wParam, lParam);
    case QKM_COMBOSELCHANGED:
        return OnComboChanged(wParam, lParam);
    default:
        return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
    }
}

// A fade ends by handing the poll back to the owner. A fade that runs on after the owner hid
// the bar (full screen was left) ends the same way; the owner's next poll then stops itself.
void CQKLayerWnd::OnTimer(uint32_t nID)
{
    if (nID == kTimerFadeIn) {
        m_nAlpha = std::min(m_nAlpha + kAlphaStepIn, kAlphaShown);
        SetWindowAlpha(static_cast<uint8_t>(m_nAlpha));
        if (m_nAlpha == kAlphaShown) {
            KillTimer(kTimerFadeIn);
            if (m_pOwner)
                m_pOwner->SetTimer(kOwnerPollTimer, kOwnerPollMs);
        }
    } else if (nID == kTimerFadeOut) {
        m_nAlpha = std::max(m_nAlpha - kAlphaStepOut, 0);
        SetWindowAlpha(static_cast<uint8_t>(m_nAlpha));
        if (m_nAlpha == 0) {
            KillTimer(kTimerFadeOut);
            ShowWindow(SW_HIDE);
            if (m_pOwner)
                m_pOwner->SetTimer(kOwnerPollTimer, kOwnerPollMs);
        }
    }
    CQKUIHostWnd::OnTimer(nID);
}

void CQKLayerWnd::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    if (msg == WM_MOUSEMOVE && !m_bTrackingMouse) {
        // The window tracks the leave from the first move on; this move only arms it.
        m_bTrackingMouse = 1;
        return;
    }
    if (msg == WM_MOUSELEAVE)
        m_bTrackingMouse = 0;
    // A bar takes no double clicks: a second press is a press, and the bars measure their
    // own double click between presses.
    if (msg == WM_LBUTTONDBLCLK)
        msg = WM_LBUTTONDOWN;
    CQKUIHostWnd::OnMouseMessage(msg, pt, keys);
}

bool CQKLayerWnd::PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods)
{
    if (CQKUIHostWnd::PreTranslateKey(msg, vk, mods))
        return true;
    if (msg != WM_KEYDOWN || !CQKHostWnd::IsWindow(m_pOwner))
        return false;
    const uint32_t nCmd = m_pOwner->FindAccelerator(vk, mods);
    if (nCmd == 0)
        return false;
    m_pOwner->SendMessage(WM_COMMAND, nCmd, 0);
    return true;
}

void CQKLayerWnd::OnPaintBackground(CQKGraphics* pGraphics)
{
    PaintFrame(pGraphics);
}

void CQKLayerWnd::OnLayout(int, int)
{
    LayoutControls();
}

void CQKLayerWnd::OnShowWindow(bool bShow)
{
    CQKUIHostWnd::OnShowWindow(bShow);
    if (!bShow && m_bTrackingMouse)
        OnMouseMessage(WM_MOUSELEAVE, QPoint(QK_LEAVE_POINT, QK_LEAVE_POINT), 0);
}
