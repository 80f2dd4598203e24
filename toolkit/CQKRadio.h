#pragma once
// CQKRadio: a radio button, a 13-pixel circle with a square mark and a label to its right.
//
// A click on an unchosen radio chooses it, repaints it alone and posts WM_COMMAND with its
// id; a click on a chosen one does nothing at all. There are no groups in the toolkit: a
// radio never clears another, the host clears the rest of its group (SetCheck(0, 1)) when
// the command arrives.
#include "toolkit/CQKCheck.h"

class CQKRadio : public CQKCheck
{
public:
    void OnClick(const QPoint& pt) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;

    // How the skin's `radio` element makes one.
    static tagQKControlKind KindHooks();
};
