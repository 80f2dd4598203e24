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
            control.pBackCache = std::make_unique<QImage>(QKCopyImage(*pBitmap, rc).convertToFormat(QImage::Format_ARGB32_Premultiplied));
            control.ptBackCache = rc.topLeft();
        }
        if (bVisible)
            control.PaintContent(pGraphics, QRectF(rc));
        return;
    }

    if (!bVisible && !bPaintHidden)
        return;
    control.PaintAloneInto(rc, [&control, &rc, bVisible](CQKGraphics& g) {
        const QRectF rcLocal(0, 0, rc.width(), rc.height());
        if (control.pBackCache)
            g.DrawImage(*control.pBackCache, rcLocal, QRectF(control.pBackCache->rect()));
        else
            g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255)), rcLocal);
        if (bVisible)
            control.PaintContent(&g, rcLocal);
    });
}
