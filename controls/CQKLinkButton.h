#pragma once
// CQKLinkButton: an underlined text whose click opens a web address in the desktop's browser.
//
// Mouse handling, hover and tool tip are the control base's; only the click differs: it opens
// the address (SetLink) and tells the owner nothing. The face, size, bold, italic and
// direction come from the font record; the text is always underlined and takes its colour
// from the frame colour, lighter under the pointer and darker while pressed.
#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

class CQKLinkButton : public CQKButton
{
public:
    CQKLinkButton();
    ~CQKLinkButton() override;

    // What the skin reader needs to make a link from a `linkbutton` element. The skin has no
    // attribute for the address: its owner sets it.
    static tagQKControlKind KindHooks();

    void SetLink(const QString& strAddress) { strLink = strAddress; }
    const QString& GetLink() const { return strLink; }

    void Paint(CQKGraphics* pGraphics, QImage* pBitmap) override;
    // Opens strLink; posts no WM_COMMAND.
    void OnClick(const QPoint& pt) override;
    void PaintContent(CQKGraphics* pGraphics, const QRectF& rc) override;

    QString strLink;
};
