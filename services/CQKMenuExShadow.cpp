#include "services/CQKMenuExShadow.h"

#include "platform/CQKGraphics.h"
#include "toolkit/QKTheme.h"

#include <QPainterPath>
#include <QRegion>

bool CQKMenuExShadow::Create(CQKHostWnd* pOwner)
{
    CQKHostCreate cs;
    cs.nStyle = QKHS_FRAMELESS | QKHS_TIPWINDOW | QKHS_TOPMOST | QKHS_TRANSLUCENT | QKHS_TRANSPARENTINPUT | QKHS_NOACTIVATE;
    cs.strClassName = QStringLiteral("QKMenuShadow");
    cs.pOwner = pOwner;
    return CQKHostWnd::Create(cs);
}

void CQKMenuExShadow::Place(const QRect& rcMenu)
{
    MoveWindow(rcMenu.adjusted(-kGrow, -kGrow, kGrow, kGrow), true);
    // The picture follows the size; a window that kept its size keeps its picture.
    const QSize sz = GetClientRect().size();
    if (sz != szPainted)
        OnSize(sz.width(), sz.height());
}

QImage CQKMenuExShadow::PaintRings(int cx, int cy)
{
    QImage image(std::max(cx, 1), std::max(cy, 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(0);
    if (cx <= 0 || cy <= 0)
        return image;
    CQKGraphics g(image);
    g.SetSmoothingMode(QKSmoothingAntiAlias);
    g.SetInterpolationMode(QKInterpolationHighQualityBicubic);
    static constexpr uint32_t kAlpha[5] = { 5, 10, 20, 40, 80 };
    for (int i = 0; i < 5; ++i) {
        tagQKPen pen;
        pen.clr = QKColorFromBGR(g_UIColors.clrMenuShadow, kAlpha[i]);
        g.DrawRectangle(pen, QRectF(i - 1, i - 1, cx - 2 * i + 1, cy - 2 * i + 1));
    }
    return image;
}

std::vector<QRect> CQKMenuExShadow::RingRegion(int cx, int cy)
{
    QPainterPath rounded;
    rounded.addRoundedRect(QRectF(0, 0, cx, cy), 5.5, 5.5);
    QRegion ring = QRegion(rounded.toFillPolygon().toPolygon()) & QRegion(0, 0, cx, cy);
    ring -= QRegion(6, 6, cx - 12, cy - 12);
    return std::vector<QRect>(ring.begin(), ring.end());
}

void CQKMenuExShadow::OnSize(int w, int h)
{
    // A size of nothing paints nothing and leaves the cut alone.
    if (w <= 0 || h <= 0 || !IsWindow() || QSize(w, h) == szPainted)
        return;
    szPainted = QSize(w, h);
    ++nPaints;
    UpdateWindowFromImage(PaintRings(w, h));
    SetWindowRgn(RingRegion(w, h));
}
