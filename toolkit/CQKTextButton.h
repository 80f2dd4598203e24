#pragma once
// CQKTextButton: an opaque push button drawn wholly in code, a vertical gradient of the face
// colour with a one-pixel frame, an optional picture and a centred label.
//
// It lays down no background and no picture strip: every pixel of its rectangle is its own,
// so a lone repaint needs nothing saved from beneath it. Mouse handling is the base's.
#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

#include <cstdint>

class CQKTextButton : public CQKButton
{
public:
    // Stores the flag (orange label) and, with `bRepaint`, repaints the button alone.
    void SetHighlight(int bFlag, int bRepaint);
    bool IsHighlighted() const { return bHighlight != 0; }
    // A value the owner keeps with the button; the button never reads it.
    void SetUserData(uintptr_t dwData) { dwUserData = dwData; }
    uintptr_t GetUserData() const { return dwUserData; }

    void Paint(CQKGraphics* pGraphics, QImage* pBitmap) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;

    // How the control kind is made (no skin element names it; code makes it).
    static tagQKControlKind KindHooks();

    uintptr_t dwUserData { 0 };
    int32_t bHighlight { 0 };
};
