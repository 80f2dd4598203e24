#pragma once
// CQKLayerWnd: a borderless bar over a full-screen window that fades in and out.
//
// The full-screen player hides its panel; a bar at the top and one at the bottom of the screen
// carry twins of its controls and fade in when the pointer touches their strip. Each bar is a
// real window of its own with a constant window opacity, and hosts its own UI manager, which
// reads the skin when the window is made.
//
// The owner decides when a bar fades (it polls the pointer with its timer 2); the bar carries
// the fade out and hands the poll back. So there is at most one fade at a time, and the poll
// rests during it:
//
//   state       | m_nAlpha   | timer of the bar | owner's timer 2
//   ------------+------------+------------------+----------------
//   hidden      | any        | none             | running (in full screen)
//   fading in   | 0 to 180   | 1, 100 ms        | stopped
//   shown       | 240        | none             | running
//   fading out  | 190 to 40  | 2, 100 ms        | stopped
//
// A fade in runs 60, 120, 180, 240 and a fade out from the top 190, 140, 90, 40, 0: the bar
// is never fully opaque, so that the picture shines through, and it leaves a little more
// slowly than it comes. Without a compositor the window system ignores the opacity, and the
// bar simply shows and hides.
//
// Mouse messages reach the controls as in every host, except the first move after the pointer
// entered: it only arms the leave tracking, so a control hovers from the second move on.
#include "toolkit/CQKUIHostWnd.h"

#include <cstdint>

class CQKLayerWnd : public CQKUIHostWnd
{
public:
    // Timers of the bar, and the owner's poll that a fade stops and restarts.
    static constexpr uint32_t kTimerFadeIn = 1;
    static constexpr uint32_t kTimerFadeOut = 2;
    static constexpr uint32_t kOwnerPollTimer = 2;
    static constexpr uint32_t kFadeStepMs = 100;
    static constexpr uint32_t kOwnerPollMs = 300;
    static constexpr int32_t kAlphaShown = 240;
    static constexpr int32_t kAlphaStepIn = 60;
    static constexpr int32_t kAlphaStepOut = 50;

    // `pOwner` is the window whose poll the bar stops and restarts; it outlives the bar.
    explicit CQKLayerWnd(CQKHostWnd* pOwner);
    ~CQKLayerWnd() override;

    // Starts a fade in (true) on a hidden bar, or a fade out (false) on a visible one; a bar
    // already in the asked-for direction's way (visible, or hidden) is left as it is. Either
    // start stops the owner's poll.
    void ShowFade(bool bShow);

    // The bar's own controls and layout. A bar made by the player gets its controls from the
    // player, so both do nothing here.
    virtual void CreateControls() { }
    virtual void LayoutControls() { }
    // What lies under the controls. Nothing here.
    virtual int PaintFrame(CQKGraphics* pGraphics);
    // A menu or colour button's command, and a combo box's new selection.
    virtual int OnMenuCommand(uintptr_t wParam, intptr_t lParam);
    virtual int OnComboChanged(uintptr_t wParam, intptr_t lParam);

    int32_t m_nAlpha { 0 };
    CQKHostWnd* m_pOwner { nullptr }; // not owned
    int32_t m_bTrackingMouse { 0 };

protected:
    void OnCreate() override;
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnTimer(uint32_t nID) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    // Keys go to the bar's controls first; a key they leave goes through the owner's key
    // table, as if the owner had the focus.
    bool PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods) override;
    void OnPaintBackground(CQKGraphics* pGraphics) override;
    void OnLayout(int w, int h) override;
    // A bar hidden under the pointer has been left: its controls stop hovering, and the next
    // entry arms the tracking again.
    void OnShowWindow(bool bShow) override;
};
