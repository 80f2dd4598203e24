#pragma once
// CQKCheck: a check box, a 16-pixel box with a drawn tick and a label to its right.
//
// A click toggles the mark, repaints the box alone and posts WM_COMMAND with the control's
// id. A check box draws nothing at all, not even its box, without a label text (null) or
// with a font id the table lacks; an empty label still draws box and tick.
#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

#include <cstdint>

struct tagQKFont;
struct tagQKBrush;

class CQKCheck : public CQKButton
{
public:
    // Stores the mark when it differs and, with `bRepaint`, repaints the control alone.
    void SetCheck(int bFlag, int bRepaint);
    bool IsChecked() const { return bChecked != 0; }

    void OnClick(const QPoint& pt) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;

    // How the skin's `check` element makes one.
    static tagQKControlKind KindHooks();

    int32_t bChecked { 0 };

protected:
    // The label's font, or null when the control must draw nothing. Sets the text quality.
    const tagQKFont* BeginLabel(CQKGraphics* pGraphics) const;
    // The label's colour (also the mark's) by state, with its alpha.
    tagQKBrush LabelBrush() const;
    // Draws the label, left-aligned and centred across its lines, in `rcText`.
    void DrawLabel(CQKGraphics* pGraphics, const tagQKFont& font, const QRectF& rcText) const;
    // Posts the click to the host.
    void PostCommand();
};
