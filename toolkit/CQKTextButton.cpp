#include "CQKTextButton.h"

#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"

namespace {

// The label colours of a highlighted button, normal and in hover (0x00BBGGRR): orange.
constexpr uint32_t kHighlightText = QKRGB(236, 143, 9);
constexpr uint32_t kHighlightHoverText = QKRGB(255, 183, 49);

CQKButton* CreateTextButton()
{
    return new CQKTextButton();
}

} // namespace

tagQKControlKind CQKTextButton::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateTextButton;
    return hooks;
}

void CQKTextButton::SetHighlight(int bFlag, int bRepaint)
{
    bHighlight = bFlag;
    if (bRepaint)
        Paint(nullptr, nullptr);
}

void CQKTextButton::Paint(CQKGraphics* pGraphics, QImage* /*pBitmap*/)
{
    if (nWidth < 1 || nHeight < 1 || !bVisible)
        return;
    if (pGraphics) {
        // The button covers its whole rectangle, so nothing beneath it is worth keeping.
        pBackCache.reset();
        PaintContent(pGraphics, QRectF(GetRect()));
        return;
    }
    PaintAloneInto(GetRect(), [this](CQKGraphics& g) { PaintContent(&g, QRectF(0, 0, nWidth, nHeight)); });
}

// The look by state ("L" is the face colour lightened by 30):
//
//   state     | gradient top..bottom | frame        | label
//   ----------+----------------------+--------------+-------------------------------------
//   normal    | L .. face            | border       | text, or orange when highlighted
//   hover (1) | L .. face            | text colour  | text + 40, or light orange
//   down (2)  | face .. L            | border       | as normal
//   disabled  | face .. face         | border       | border colour; everything at alpha 100
void CQKTextButton::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    const uint32_t clrLight = QKColorLighten(g_clrFace, 30);
    uint32_t clrTop = clrLight;
    uint32_t clrBottom = g_clrFace;
    uint32_t clrFrame = g_clrBorder;
    uint32_t nAlpha = 255;
    if (nState == 1)
        clrFrame = g_clrText;
    if (nState == 2) {
        clrTop = g_clrFace;
        clrBottom = clrLight;
    }
    if (!bEnabled) {
        nAlpha = 100;
        clrTop = clrBottom = g_clrFace;
    }
    const float x = static_cast<float>(rc.x());
    const float y = static_cast<float>(rc.y());
    const float w = static_cast<float>(rc.width());
    const float h = static_cast<float>(rc.height());
    pGraphics->FillRectangle(tagQKBrush::Linear(QPointF(x, y), QPointF(x, y + h), QKColorFromBGR(clrTop, 255), QKColorFromBGR(clrBottom, 255)), rc);
    tagQKPen pen;
    pen.clr = QKColorFromBGR(clrFrame, nAlpha);
    pGraphics->DrawRectangle(pen, QRectF(x, y, w - 1, h - 1));

    if (pImage && !pImage->isNull()) {
        const int iw = pImage->width();
        const int ih = pImage->height();
        const int nw = static_cast<int>(w);
        const int nh = static_cast<int>(h);
        QRectF rcDest(x + 1, y + 1, w - 2, h - 2);
        if (nw >= iw && nh >= ih) {
            const int dx = (nw - iw) / 2;
            const int dy = (nh - ih) / 2;
            rcDest = QRectF(x + dx, y + dy, nw - 2 * dx, nh - 2 * dy);
        }
        pGraphics->DrawImage(*pImage, rcDest, QRectF(pImage->rect()), bEnabled ? 1.0f : 0.5f);
    }

    if (szText.isEmpty())
        return;
    const tagQKFont* pFont = FindFont(nFontID);
    if (!pFont)
        return;
    pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    tagQKStringFormat format;
    format.nAlign = QKAlignCenter;
    format.nLineAlign = QKAlignCenter;
    if (pFont->bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    uint32_t clrText = bHighlight ? kHighlightText : g_clrText;
    if (nState == 1)
        clrText = bHighlight ? kHighlightHoverText : QKColorLighten(g_clrText, 40);
    if (!bEnabled)
        clrText = g_clrBorder;
    pGraphics->DrawString(szText, QKFontSpecOf(*pFont), rc, format, tagQKBrush::Solid(QKColorFromBGR(clrText, nAlpha)));
}
