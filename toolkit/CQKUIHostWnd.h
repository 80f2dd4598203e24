#pragma once
// CQKUIHostWnd: a host window with a UI manager, wired the one way every host is wired.
//
// The main window, dialogs, layered bars and popups derive from this class. It owns the
// manager and feeds it the window's events:
//
//   window event      | what happens
//   ------------------+------------------------------------------------------------------
//   mouse move        | OnMouseMessage(WM_MOUSEMOVE (512)); the platform tracks the leave
//   left down         | OnLeftButtonDown(pt) (a dialog tests its caption there first);
//                     | by default OnMouseMessage(WM_LBUTTONDOWN (513))
//   left up, double   | OnMouseMessage(WM_LBUTTONUP (514)), (WM_LBUTTONDBLCLK (515))
//   right down        | OnMouseMessage(WM_RBUTTONDOWN (516))
//   right up          | OnMouseMessage(WM_RBUTTONUP (517)), after the host's own handling
//   pointer leaves    | OnMouseMessage(WM_MOUSELEAVE (675)) at -99,-99, a point outside
//                     | every control
//   wheel             | the manager's OnMouseWheel; consumed when it returns nonzero
//   activation        | the manager's OnActivate (1 active, 0 inactive)
//   keys              | the manager's PreTranslateKey first (Tab, the focus control)
//   paint             | PaintAll
//   size              | OnLayout (the host's own layout), InvalidateCaches, PaintAll
//   destroy           | the manager is deleted
//
// The composition sends the host QKM_PAINTBACKGROUND (1924) with the CQKGraphics* of the
// picture in wParam; OnPaintBackground receives it.
#include "platform/CQKHostWnd.h"

#include <memory>

class CQKGraphics;
class CQKUIManager;

class CQKUIHostWnd : public CQKHostWnd
{
public:
    CQKUIHostWnd();
    ~CQKUIHostWnd() override;

    // The manager, made with the host object; null once the window was destroyed.
    CQKUIManager* Manager() const { return pUIManager.get(); }

protected:
    // What lies under the controls: title, frame, the host's own drawing. Nothing by default.
    virtual void OnPaintBackground(CQKGraphics* pGraphics);
    // The host's own layout after a size change, before the repaint.
    virtual void OnLayout(int w, int h);
    // A left press in the client area; a dialog tests its caption first. The base passes it
    // to the controls.
    virtual void OnLeftButtonDown(QPoint pt, uint32_t keys);

    void OnCreate() override;
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    bool OnMouseWheel(uint32_t keys, int delta, QPoint pt) override;
    bool PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods) override;
    void OnActivate(bool bActive) override;
    void OnPaint() override;
    void OnSize(int w, int h) override;
    void OnDestroy() override;

    std::unique_ptr<CQKUIManager> pUIManager;
};
