#include "CQKToolTipWnd.h"

#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"

#include <QImage>
#include <algorithm>

namespace {

constexpr uint32_t kTimerHide = 1;
constexpr uint32_t kTimerFade = 2;
constexpr uint32_t kHideAfterMs = 3000;
constexpr uint32_t kFadeStepMs = 100;
constexpr int kFadeStep = 50;

tagQKStringFormat CentredFormat()
{
    tagQKStringFormat format;
    format.nAlign = QKAlignCenter;
    format.nLineAlign = QKAlignCenter;
    return format;
}

} // namespace

bool CQKToolTipWnd::CreateTip(CQKHostWnd* pParent)
{
    CQKHostCreate create;
    create.nStyle = QKHS_FRAMELESS | QKHS_TOOL | QKHS_TOPMOST | QKHS_NOACTIVATE | QKHS_TRANSLUCENT | QKHS_TRANSPARENTINPUT;
    create.strClassName = QStringLiteral("QKToolTipWnd");
    create.pOwner = pParent;
    return Create(create);
}

QSize CQKToolTipWnd::Measure() const
{
    if (strText.isEmpty())
        return QSize(0, 0);
    // Always Arial here, even when painting uses another family: a tip keeps its size
    // whatever the user's font choice.
    tagQKFontSpec font;
    font.strFamily = QStringLiteral("Arial");
    font.fSize = 14.0f;
    font.nStyle = QKFontRegular;
    CQKGraphicsPath path;
    path.AddString(strText, font, QRectF(0, 0, 0, 0), CentredFormat());
    const QRect b = path.GetBoundsI();
    return QSize(b.width() + 10, b.height() + 10);
}

QRect CQKToolTipWnd::PlaceBelow(QPoint pt, QSize size, int nControlHeight, const QRect& rcScreen, const QRect& rcWorkArea)
{
    // The panels' height is taken off the screen's height wherever they stand, at the side
    // too: a tip close to the bottom goes above its control.
    const int sw = rcScreen.width();
    const int sh = rcWorkArea.height();
    int x = pt.x();
    int y = pt.y();
    if (x < 0)
        x = 0;
    if (x + size.width() > sw - 2)
        x = sw - size.width() - 2;
    if (y + size.height() > sh)
        y -= 20 + nControlHeight + size.height();
    return QRect(x, y, size.width(), size.height());
}

void CQKToolTipWnd::Render(int nAlphaNow)
{
    const QRect rc = GetClientRect();
    const int w = rc.width();
    const int h = rc.height();
    if (w <= 0 || h <= 0)
        return;
    QImage image = QKNewImage(w, h, DevicePixelRatio());
    {
        CQKGraphics g(image);
        g.SetSmoothingMode(QKSmoothingAntiAlias);
        g.SetInterpolationMode(QKInterpolationHighQualityBicubic);
        g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255)), 0, 0, w, h);
        tagQKPen pen;
        pen.clr = QKColorFromBGR(g_clrBorder, 255);
        g.DrawRectangle(pen, 0, 0, w - 1, h - 1);
        if (!strText.isEmpty()) {
            g.SetTextRenderingHint(QKTextHintClearTypeGridFit);
            tagQKFontSpec font;
            font.strFamily = g_strFontName;
            font.fSize = 14.0f;
            DrawSkinString(&g, strText, font, QRectF(0, 0, w, h), CentredFormat(),
                tagQKBrush::Solid(QKColorFromBGR(QKColorDarken(g_clrToolTipText, 10), 255)));
        }
    }
    SetWindowAlpha(static_cast<uint8_t>(std::clamp(nAlphaNow, 0, 255)));
    UpdateWindowFromImage(image, QPoint(0, 0));
}

void CQKToolTipWnd::OnTimer(uint32_t nID)
{
    if (nID == kTimerHide) {
        KillTimer(kTimerHide);
        nAlpha = 0;
        Render(0);
        ShowWindow(SW_HIDE);
    } else if (nID == kTimerFade) {
        nAlpha += kFadeStep;
        if (nAlpha > 255) {
            KillTimer(kTimerFade);
            nAlpha = 255;
        }
        Render(nAlpha);
    }
}

void CQKToolTipWnd::OnShowWindow(bool bShow)
{
    nAlpha = 0;
    if (bShow) {
        Render(0);
        SetTimer(kTimerHide, kHideAfterMs);
        SetTimer(kTimerFade, kFadeStepMs);
    } else {
        KillTimer(kTimerHide);
        KillTimer(kTimerFade);
    }
    CQKHostWnd::OnShowWindow(bShow);
}

void CQKToolTipWnd::OnSize(int w, int h)
{
    CQKHostWnd::OnSize(w, h);
    if (w != 0 && h != 0)
        Render(0);
}
