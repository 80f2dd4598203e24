#pragma once
// CQKStatic: a line of text, and optionally a picture under it, that takes no input.
//
// The player's title line and time displays and the colour dialog's labels are statics. The
// face, size, style and colour are the static's own fields, set by its owner; the font id only
// decides whether any text shows (the id must be in the skin's font table) and its direction.
// The text is clipped to the control, without an ellipsis.
#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

class CQKStatic : public CQKButton
{
public:
    CQKStatic();
    ~CQKStatic() override;

    // What the skin reader needs to make a static from a `static` element.
    static tagQKControlKind KindHooks();

    // Face "Arial", regular, `nSize` pixels, in the frame colour (the player's panel text).
    void SetFontStyle(int nSize);
    // Paints with the program's interface face (g_strFontName) instead of strFontName.
    void UseUIFont() { bUseUIFont = 1; }

    void Paint(CQKGraphics* pGraphics, QImage* pBitmap) override;
    // A static never hovers, never clicks and never takes the wheel.
    int OnMouseEvent(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt) override;
    void OnClick(const QPoint& pt) override;
    int OnMouseWheel(uint32_t nFlags, int nDelta, const QPoint& pt) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;

    QString strFontName { QStringLiteral("Arial") };
    int32_t nFontStyle { 0 }; // QKFont* style bits
    int32_t nFontSize { 14 }; // pixels
    uint32_t crTextColor; // 0x00BBGGRR; the theme's text colour when made
};
