#pragma once
// CQKEditWnd: a real text field of the system over a host window.
//
// Text input is the one thing the toolkit does not paint: an edit control places one of
// these over its own rectangle while the user types. It is a child of the host (positions
// are the host's client pixels), a single-line field or a multi-line one, coloured and set
// in a font by its owner. Its keys pass the host's PreTranslateKey and accelerators first,
// like every key of the host.
//
// The owner hears of the field through callbacks (all on the GUI thread):
//   onChange       the user changed the text (not SetText)
//   onKillFocus    the field lost the keyboard focus
//   onKeyDown      a key reached the field; return true to keep it from the field
//   onContextMenu  right button released over the field, screen point; return true when
//                  the owner showed its own menu (otherwise the field shows none)
#include "platform/QKDrawing.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

class CQKHostWnd;
class CQKEditEvents;
class QWidget;

// Style flags of Create.
enum : uint32_t {
    QKES_MULTILINE = 0x0001, // several lines; Enter starts a new one
    QKES_NUMBER = 0x0002, // digits only
    QKES_CENTER = 0x0004, // text centred
    QKES_READONLY = 0x0008,
};

class CQKEditWnd
{
public:
    CQKEditWnd();
    ~CQKEditWnd();
    CQKEditWnd(const CQKEditWnd&) = delete;
    CQKEditWnd& operator=(const CQKEditWnd&) = delete;

    // Makes the field on `pHost` at `rc` (client pixels), shown. False if the host has no
    // window or the field exists already.
    bool Create(CQKHostWnd* pHost, const QRect& rc, uint32_t nStyle = 0);
    // Removes the field; the text goes with it. Safe inside the field's own callbacks.
    void DestroyWindow();
    bool IsWindow() const { return pWidget != nullptr; }

    void SetText(const QString& text);
    QString GetText() const;
    void MoveWindow(const QRect& rc);
    QRect GetRect() const;
    void ShowWindow(bool bShow);
    bool IsVisible() const;
    void EnableWindow(bool bEnable);
    bool IsEnabled() const;
    void SetFocus();
    bool HasFocus() const;

    // The font by family and pixel size (QKFont* style flags).
    void SetFont(const QString& strFamily, int nPixelSize, int nStyle = QKFontRegular);
    // Text and ground colours for the enabled state and for the disabled state.
    void SetColors(QKARGB clrText, QKARGB clrGround, QKARGB clrTextDisabled, QKARGB clrGroundDisabled);

    // Selection as character positions; an end of -1 or past the text is the text's end.
    void SetSel(int nStart, int nEnd);
    void GetSel(int& nStart, int& nEnd) const;
    void SelectAll() { SetSel(0, -1); }
    // Puts the caret at the character nearest to a point in host client pixels, as a click
    // there would.
    void SetCaretAt(QPoint ptHost);
    void Cut();
    void Copy();
    void Paste();

    std::function<void()> onChange;
    std::function<void()> onKillFocus;
    std::function<bool(uint32_t vk, uint32_t mods)> onKeyDown;
    std::function<bool(QPoint ptScreen)> onContextMenu;

    // The field's widget, for tests and platform code.
    QWidget* NativeWidget() const { return pWidget; }

private:
    void ApplyColors();

    QWidget* pWidget { nullptr }; // a QLineEdit or QPlainTextEdit, child of the host's widget
    CQKHostWnd* pHost { nullptr };
    std::unique_ptr<CQKEditEvents> pEvents; // watches the field's focus and keys
    bool bMultiLine { false };
    bool bSetting { false }; // SetText is changing the text
    QKARGB clrText { 0xFF000000 };
    QKARGB clrGround { 0xFFFFFFFF };
    QKARGB clrTextDisabled { 0xFF808080 };
    QKARGB clrGroundDisabled { 0xFFF0F0F0 };
};
