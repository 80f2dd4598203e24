#include "controls/QKDirectPaint.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "toolkit/CQKButton.h"
#include "toolkit/QKTheme.h"

#include <QImage>

void QKPaintDirect(CQKButton& control, CQKGraphics* pGraphics, QImage* pBitmap, QKHiddenPaint hidden)
{
    if (control.nWidth < 1 || control.nHeight < 1)
        return;
    const bool bVisible = control.bVisible != 0;
    const bool bPaintHidden = hidden == QKHiddenPaint::Background;
    const QRect rc(control.nX, control.nY, control.nWidth, control.nHeight);

    if (pGraphics) {
        if (!bVisible && !bPaintHidden)
            return;
        if (control.bCacheBackground && pBitmap && !control.pBackCache) {
            // Parts of the control outside the composition come out transparent, which a
            // lone repaint shows as black: the control is not on screen there anyway.
            control.pBackCache = std::make_unique<QImage>(pBitmap->copy(rc).convertToFormat(QImage::Format_ARGB32_Premultiplied));
            control.ptBackCache = rc.topLeft();
        }
        if (bVisible)
            control.PaintContent(pGraphics, QRectF(rc));
        return;
    }

    if ((!bVisible && !bPaintHidden) || !CQKHostWnd::IsWindow(control.hWndHost))
        return;
    // Only the part inside the window is made and copied: a control far larger than its
    // window (a hand-edited skin) costs no more than the window itself.
    const QRect rcVisible = rc.intersected(control.hWndHost->GetClientRect());
    if (rcVisible.isEmpty())
        return;
    QImage image(rcVisible.size(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return;
    {
        CQKGraphics g(image);
        // From here on the control's own top-left corner is the origin.
        g.TranslateTransform(static_cast<float>(rc.x() - rcVisible.x()), static_cast<float>(rc.y() - rcVisible.y()));
        const QRectF rcLocal(0, 0, rc.width(), rc.height());
        if (control.pBackCache)
            g.DrawImage(*control.pBackCache, rcLocal, QRectF(control.pBackCache->rect()));
        else
            g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255)), rcLocal);
        if (bVisible)
            control.PaintContent(&g, rcLocal);
    }
    // The screen takes colour only, as every copy of composed pixels to a window does.
    image.reinterpretAsFormat(QImage::Format_RGB32);
    control.hWndHost->UpdateWindowFromImage(image, rcVisible.topLeft());
}
