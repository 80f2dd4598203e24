#pragma once
// CQKDialogBase: the skinned modal dialog every dialog of the program derives from.
//
// A frameless top-level window, modal over its owner, with a drawn caption band, title and
// frame, a drawn close cross and OK and Cancel buttons, all hosted by a UI manager. It fades
// in by raising the window's alpha by 50 every 50 ms, and fades out when it ends in blocking
// steps of 50 from wherever the fade in had come to. Without a compositor the alpha changes
// nothing visible.
//
//   event                        | what happens                                 | nResult
//   -----------------------------+----------------------------------------------+--------
//   WM_COMMAND 1 (OK), Enter     | OnOK: fade out, the modal loop ends          | 1
//   WM_COMMAND 2 (Cancel, cross),| OnCancel: fade out, the modal loop ends      | 2
//   Escape, the system's close   |                                              |
//   left press in the caption    | the window is dragged (not the close cross)  |
//   timer 256                    | alpha + 50; at 255 the timer stops           |
//   message 2026 (menu command)  | OnMenuCommand: WM_COMMAND with its low word  |
//   message 2024 (combo change)  | OnComboChanged                               |
//
// The object outlives the window: after DoModal, nResult tells how the dialog ended.
#include "toolkit/CQKUIHostWnd.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <cstdint>

class CQKGraphics;
class CQKTextButton;

class CQKDialogBase : public CQKUIHostWnd
{
public:
    // `pOwner`: the window the dialog stays above and blocks; null takes the default owner.
    explicit CQKDialogBase(CQKHostWnd* pOwner = nullptr);
    ~CQKDialogBase() override;

    // Makes the window, initialises it, runs it modally and destroys it; returns nResult.
    int DoModal();
    int GetResult() const { return nResult; }
    // Centres the window over its owner, or over the work area without one.
    void CenterWindow();

    // The owner of dialogs made without one (the main window sets itself); may be null.
    static void SetDefaultOwner(CQKHostWnd* pOwner);
    static CQKHostWnd* DefaultOwner();

    // --- what a dialog overrides ----------------------------------------------------------
    // After the window is made: fade start, skin, controls, fade timer. Returns 1.
    virtual int OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();
    // Makes the close cross (id 2, kind 0) and the OK (1) and Cancel (2) text buttons.
    virtual void CreateControls();
    // Places them from the client rectangle; nothing if the close cross is missing.
    virtual void LayoutControls();
    // Caption band, title and frame, under the controls.
    virtual void PaintFrame(CQKGraphics* pGraphics);
    // Message 2026: sends WM_COMMAND with the low 16 bits of `lParam`. Returns 0.
    virtual intptr_t OnMenuCommand(uintptr_t wParam, intptr_t lParam);
    // Message 2024. Returns 0.
    virtual intptr_t OnComboChanged(uintptr_t wParam, intptr_t lParam);

    int32_t nAlpha { 0 }; // current window alpha, 0 to 255
    int32_t nResult { 2 }; // how the dialog ended: 1 OK, 2 Cancel, or a subclass's own
    int32_t bFade { 1 }; // fade in and out
    QSize szTemplate { 474, 296 }; // the size the window is made with; subclasses change it

    static constexpr uint32_t kFadeTimer = 256;
    static constexpr uint32_t kFadePeriodMs = 50;
    static constexpr int kFadeStep = 50;
    static constexpr int kCaptionHeight = 30;
    static constexpr uint32_t kButtonFont = 2;

protected:
    // Adds a text button with the dialogs' button font (2).
    CQKTextButton* AddTextButton(uint32_t nID, const QString& text);
    // Stores the alpha and gives it to the window.
    virtual void ApplyAlpha(int nNewAlpha);
    // Fades out in blocking steps, then ends the modal loop with nResult.
    void EndDialog();

    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnTimer(uint32_t nID) override;
    void OnPaintBackground(CQKGraphics* pGraphics) override;
    void OnLayout(int w, int h) override;
    void OnLeftButtonDown(QPoint pt, uint32_t keys) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    void OnKeyDown(uint32_t vk, uint32_t mods) override;
    void OnClose() override;

private:
    CQKHostWnd* pOwnerWnd { nullptr };
    // A caption drag the window system could not take over: the pointer and the window's
    // corner where it began, in screen pixels.
    bool bDragging { false };
    QPoint ptDragStart;
    QPoint ptWindowStart;
};
