#include "controls/CQKStatic.h"

#include "controls/QKDirectPaint.h"
#include "platform/CQKGraphics.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <cmath>

namespace {

CQKButton* CreateStatic()
{
    return new CQKStatic();
}

} // namespace

CQKStatic::CQKStatic()
    : crTextColor(g_clrText)
{
    nKind = QKKIND_STATIC;
    nTextAlign = 0;
}

CQKStatic::~CQKStatic() = default;

tagQKControlKind CQKStatic::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateStatic;
    return hooks;
}

void CQKStatic::SetFontStyle(int nSize)
{
    strFontName = QStringLiteral("Arial");
    nFontStyle = 0;
    nFontSize = nSize;
    crTextColor = g_clrBorder;
}

void CQKStatic::Paint(CQKGraphics* pGraphics, QImage* pBitmap)
{
    QKPaintDirect(*this, pGraphics, pBitmap, QKHiddenPaint::Skip);
}

int CQKStatic::OnMouseEvent(CQKHostWnd* /*pHost*/, uint32_t /*nMsg*/, const QPoint& /*pt*/)
{
    return 0;
}

void CQKStatic::OnClick(const QPoint& /*pt*/)
{
}

int CQKStatic::OnMouseWheel(uint32_t /*nFlags*/, int /*nDelta*/, const QPoint& /*pt*/)
{
    return 0;
}

void CQKStatic::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    pGraphics->SetClipRect(rc, QKCombineReplace);
    if (pImage) {
        // The picture at its own size, centred, at 70 percent: a watermark under the text.
        const QSize size = QKImageSize(*pImage);
        const double dLeft = std::trunc((rc.width() - size.width()) * 0.5 + rc.x());
        const double dTop = std::trunc((rc.height() - size.height()) * 0.5 + rc.y());
        pGraphics->DrawImage(*pImage, QPointF(dLeft, dTop), 0.7f);
    }
    const tagQKFont* pFont = FindFont(nFontID);
    if (szText.isEmpty() || !pFont) {
        pGraphics->ResetClip();
        return;
    }
    pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    tagQKFontSpec font;
    font.strFamily = bUseUIFont ? g_strFontName : strFontName;
    font.fSize = static_cast<float>(nFontSize);
    font.nStyle = nFontStyle;
    tagQKStringFormat format;
    format.nAlign = nTextAlign == 0 ? QKAlignNear : nTextAlign == 1 ? QKAlignFar
                                                                    : QKAlignCenter;
    if (pFont->bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    const tagQKBrush brush = tagQKBrush::Solid(QKColorFromBGR(crTextColor, bEnabled ? 255 : 100));
    DrawSkinString(pGraphics, szText, font, rc, format, brush);
    pGraphics->ResetClip();
}
