#include "CQKUIHostWnd.h"

#include "CQKUIManager.h"
#include "platform/QKMessages.h"

CQKUIHostWnd::CQKUIHostWnd()
    : pUIManager(std::make_unique<CQKUIManager>())
{
}

CQKUIHostWnd::~CQKUIHostWnd()
{
    // The window goes before the manager, so that nothing of it is painted with a manager
    // half torn down.
    DestroyWindow();
    pUIManager.reset();
}

void CQKUIHostWnd::OnCreate()
{
    // A host made again after its window was destroyed gets a fresh manager. The manager
    // knows its window from now on, so that controls made in code before or without a skin
    // have a host to paint on.
    if (!pUIManager)
        pUIManager = std::make_unique<CQKUIManager>();
    pUIManager->hWndHost = this;
}

void CQKUIHostWnd::OnPaintBackground(CQKGraphics* /*pGraphics*/) { }

void CQKUIHostWnd::OnLayout(int /*w*/, int /*h*/) { }

void CQKUIHostWnd::OnLeftButtonDown(QPoint pt, uint32_t /*keys*/)
{
    if (pUIManager)
        pUIManager->OnMouseMessage(WM_LBUTTONDOWN, &pt);
}

intptr_t CQKUIHostWnd::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    if (msg == QKM_PAINTBACKGROUND) {
        OnPaintBackground(reinterpret_cast<CQKGraphics*>(wParam));
        return 0;
    }
    return CQKHostWnd::OnMessage(msg, wParam, lParam);
}

void CQKUIHostWnd::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    if (!pUIManager)
        return;
    switch (msg) {
    case WM_LBUTTONDOWN:
        OnLeftButtonDown(pt, keys);
        break;
    case WM_MOUSELEAVE: {
        const QPoint outside(QK_LEAVE_POINT, QK_LEAVE_POINT);
        pUIManager->OnMouseMessage(WM_MOUSELEAVE, &outside);
        break;
    }
    default:
        pUIManager->OnMouseMessage(msg, &pt);
        break;
    }
}

bool CQKUIHostWnd::OnMouseWheel(uint32_t keys, int delta, QPoint pt)
{
    return pUIManager && pUIManager->OnMouseWheel(keys, delta, pt) != 0;
}

bool CQKUIHostWnd::PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods)
{
    return pUIManager && pUIManager->PreTranslateKey(msg, vk, mods) != 0;
}

void CQKUIHostWnd::OnActivate(bool bActive)
{
    CQKHostWnd::OnActivate(bActive);
    if (pUIManager)
        pUIManager->OnActivate(bActive ? 1 : 0);
}

void CQKUIHostWnd::OnPaint()
{
    if (pUIManager)
        pUIManager->PaintAll();
}

void CQKUIHostWnd::OnSize(int w, int h)
{
    CQKHostWnd::OnSize(w, h);
    OnLayout(w, h);
    if (pUIManager) {
        pUIManager->InvalidateCaches();
        pUIManager->PaintAll();
    }
}

void CQKUIHostWnd::OnDestroy()
{
    CQKHostWnd::OnDestroy();
    pUIManager.reset();
}
