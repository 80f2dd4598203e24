#include "controls/CQKLinkButton.h"

#include "controls/QKDirectPaint.h"
#include "platform/CQKGraphics.h"
#include "platform/QKSystem.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

namespace {

CQKButton* CreateLinkButton()
{
    return new CQKLinkButton();
}

} // namespace

CQKLinkButton::CQKLinkButton()
{
    nKind = QKKIND_LINKBUTTON;
}

CQKLinkButton::~CQKLinkButton() = default;

tagQKControlKind CQKLinkButton::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateLinkButton;
    return hooks;
}

void CQKLinkButton::Paint(CQKGraphics* pGraphics, QImage* pBitmap)
{
    QKPaintDirect(*this, pGraphics, pBitmap, QKHiddenPaint::Background);
}

void CQKLinkButton::OnClick(const QPoint& /*pt*/)
{
    OpenURL(strLink);
}

void CQKLinkButton::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    const tagQKFont* pFont = FindFont(nFontID);
    if (szText.isEmpty() || !pFont)
        return;
    pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    tagQKFontSpec font = QKFontSpecOf(*pFont);
    // Always underlined, whatever the record says.
    font.nStyle = (pFont->bBold ? QKFontBold : 0) | (pFont->bItalic ? QKFontItalic : 0) | QKFontUnderline;
    tagQKStringFormat format;
    format.nAlign = QKAlignNear;
    format.nLineAlign = QKAlignCenter;
    if (pFont->bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    // A disabled link keeps the normal colour: it is not greyed out.
    uint32_t clr = QKColorDarken(g_clrBorder, 20);
    if (bEnabled && nState == 1)
        clr = QKColorLighten(g_clrBorder, 30);
    else if (bEnabled && nState == 2)
        clr = QKColorDarken(g_clrBorder, 40);
    pGraphics->DrawString(szText, font, rc, format, tagQKBrush::Solid(QKColorFromBGR(clr, 255)));
}
