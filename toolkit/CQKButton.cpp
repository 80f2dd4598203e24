// CQKButton: the control base.
//
// Sections: construction and plain operations; built-in glyph faces; the mouse state machine;
// the other virtual operations; painting (picture frames, drawn faces, text); tool tips.
#include "CQKButton.h"

#include "CQKToolTipWnd.h"
#include "CQKUIManager.h"
#include "QKControlKinds.h"
#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"

#include <QFileInfo>
#include <QTransform>
#include <algorithm>

// --- construction and plain operations ------------------------------------------------

CQKButton::CQKButton() = default;

tagQKControlKind CQKButton::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = [] { return new CQKButton(); };
    return hooks;
}

CQKButton::~CQKButton()
{
    if (pToolTipWnd && pToolTipWnd->IsWindow())
        pToolTipWnd->DestroyWindow();
}

void CQKButton::AddFace(std::unique_ptr<tagQKFace> pFace, bool bReplace)
{
    if (!pFace)
        return;
    if (bReplace)
        vecFaces.clear();
    vecFaces.push_back(std::move(pFace));
}

void CQKButton::SetImage(const QImage* pBitmap)
{
    pImage.reset();
    if (pBitmap)
        pImage = std::make_unique<QImage>(pBitmap->convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

void CQKButton::LoadImage(const QString& path)
{
    pImage.reset();
    if (!QFileInfo::exists(path))
        return;
    // A device or a pipe under a picture's name is no picture, and reading it might not end.
    if (!QFileInfo(path).isFile()) {
        pImage = std::make_unique<QImage>();
        return;
    }
    // A file that exists but does not decode leaves a null picture, which paints nothing.
    QImage loaded(path);
    pImage = std::make_unique<QImage>(loaded.isNull() ? QImage() : loaded.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

bool CQKButton::HitTest(const QPoint& pt) const
{
    // In 64 bits: a hand-edited skin may place a control at the very end of the range.
    return pt.x() >= nX && pt.y() >= nY && int64_t(pt.x()) < int64_t(nX) + nWidth && int64_t(pt.y()) < int64_t(nY) + nHeight;
}

QRect CQKButton::GetRect() const
{
    // Held inside the range of a rectangle, however large the numbers.
    auto span = [](int32_t start, int32_t length) {
        const int64_t room = int64_t(INT32_MAX) - start;
        return static_cast<int>(std::clamp<int64_t>(length, 0, std::max<int64_t>(room, 0)));
    };
    return QRect(nX, nY, span(nX, nWidth), span(nY, nHeight));
}

// --- built-in glyph faces ---------------------------------------------------------------
//
// Coordinates are the glyph's own; PaintFace centres the face in the control. Unless noted a
// glyph sits in layer 2, smoothed, stroked with a 1-pixel pen.

namespace {

std::unique_ptr<tagQKFace> NewGlyphFace(std::unique_ptr<CQKGraphicsPath> pPath, uint32_t nPenWidth = 1)
{
    auto pFace = std::make_unique<tagQKFace>();
    tagQKFaceLayer& layer = pFace->layers[2];
    layer.bAntiAlias = 1;
    layer.bFill = 0;
    layer.nPenWidth = nPenWidth;
    layer.pPath = std::move(pPath);
    return pFace;
}

std::unique_ptr<CQKGraphicsPath> RotatedLine(float fAngle)
{
    auto p = std::make_unique<CQKGraphicsPath>();
    p->AddLine(0, 0, 12, 0);
    QTransform t;
    t.translate(6, 0);
    t.rotate(fAngle);
    t.translate(-6, 0);
    p->Transform(t);
    return p;
}

// The arrow of the "next" face: two strokes meeting at the origin, each its own figure.
std::unique_ptr<CQKGraphicsPath> NextArrow()
{
    auto p = std::make_unique<CQKGraphicsPath>();
    p->AddLine(-4, -6, 0, 0);
    p->CloseFigure();
    p->AddLine(0, 0, -4, 6);
    p->CloseFigure();
    return p;
}

} // namespace

void CQKButton::SetFace(int nFaceKind)
{
    vecFaces.clear();
    switch (nFaceKind) {
    case 0: { // close: a cross
        auto p = RotatedLine(45);
        p->StartFigure();
        p->AddPath(*RotatedLine(-45));
        AddFace(NewGlyphFace(std::move(p)), false);
        break;
    }
    case 1: { // minimise: a bar
        auto p = std::make_unique<CQKGraphicsPath>();
        p->AddLine(0, 0, 10, 0);
        AddFace(NewGlyphFace(std::move(p)), false);
        break;
    }
    case 2: { // maximise, then restore
        auto p0 = std::make_unique<CQKGraphicsPath>();
        p0->AddRectangle(QRectF(0, 0, 10, 10));
        AddFace(NewGlyphFace(std::move(p0)), false);
        auto p1 = std::make_unique<CQKGraphicsPath>();
        p1->AddRectangle(QRectF(0, 2, 8, 8));
        p1->StartFigure();
        p1->AddLine(2, 0, 10, 0);
        p1->AddLine(10, 0, 10, 8);
        AddFace(NewGlyphFace(std::move(p1)), false);
        break;
    }
    case 3: { // open: a folder leaf and its back
        auto p = std::make_unique<CQKGraphicsPath>();
        p->AddPolygon({ { 0, 0 }, { 8, 3 }, { 8, 19 }, { 0, 15 } });
        p->StartFigure();
        p->AddLines({ { 0, 0 }, { 13, 0 }, { 13, 15 }, { 9, 15 } });
        std::unique_ptr<tagQKFace> pFace = NewGlyphFace(std::move(p));
        pFace->layers[0].bAntiAlias = 1;
        pFace->layers[0].nPenWidth = 2;
        AddFace(std::move(pFace), false);
        break;
    }
    case 8: { // play, then pause
        auto p0 = std::make_unique<CQKGraphicsPath>();
        p0->AddClosedCurve({ { 0, 4 }, { 4, 0 }, { 40, 20 }, { 4, 40 }, { 0, 36 } });
        QTransform t;
        t.scale(0.4, 0.4);
        t.translate(20, 15);
        p0->Transform(t);
        AddFace(NewGlyphFace(std::move(p0)), false);
        auto p1 = std::make_unique<CQKGraphicsPath>();
        p1->AddRectangle(QRectF(9, 8, 4, 14));
        p1->AddRectangle(QRectF(17, 8, 4, 14));
        AddFace(NewGlyphFace(std::move(p1)), false);
        break;
    }
    case 10: { // stop
        auto p = std::make_unique<CQKGraphicsPath>();
        p->AddRectangle(QRectF(0, 0, 14, 14));
        AddFace(NewGlyphFace(std::move(p)), false);
        break;
    }
    case 28: { // previous: the next arrow turned round
        auto p = NextArrow();
        QTransform t;
        t.rotate(180);
        p->Transform(t);
        AddFace(NewGlyphFace(std::move(p), 2), false);
        break;
    }
    case 29: // next
        AddFace(NewGlyphFace(NextArrow(), 2), false);
        break;
    default:
        break;
    }
}

// --- the mouse state machine --------------------------------------------------------------
//
// "in" is the point inside the control, "cap" the host holding the mouse capture. The first
// two columns are the rows ClassifyMouse tells apart; subclasses with state machines of their
// own (the slider, the lists, the scroll bars) start from the same rows.
//
//   condition                 | message                 | what happens                   | repaint
//   --------------------------+-------------------------+--------------------------------+----------
//   disabled or hidden        | any                     | nothing                        | no
//   out, cap not this host    | any                     | tip hides; state 0             | if changed
//   out, cap this host        | WM_LBUTTONUP (514),     | state 0, capture released      | if changed
//                             | WM_RBUTTONUP (517)      |                                |
//   out, cap this host        | others                  | nothing: a pressed control     | no
//                             |                         | stays down                     |
//   in, cap this host         | WM_LBUTTONUP (514)      | click if down; state 1;        | if not 1
//                             |                         | release                        | before
//   in, cap this host         | others                  | nothing                        | no
//   in, no capture            | WM_MOUSEMOVE (512)      | cursor; if normal: tip shows,  | if changed
//                             |                         | state 1                        |
//   in, no capture            | WM_LBUTTONDOWN (513)    | if not down: cursor, state 2,  | if changed
//                             |                         | focus, capture                 |
//   in, no capture            | WM_LBUTTONUP (514),     | cursor; click if down; state 1 | yes
//                             | not hover               |                                |
//   in, cap another window    | any                     | nothing                        | no
//
// So a press dragged out and back still clicks, and one released outside does not.

CQKButton::MouseCase CQKButton::ClassifyMouse(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt) const
{
    if (!bEnabled || !bVisible)
        return MouseCase::Inert;
    CQKHostWnd* pCap = CQKHostWnd::GetCapture();
    if (!HitTest(pt)) {
        if (pCap != pHost || !pHost)
            return MouseCase::OutFree;
        return nMsg == WM_LBUTTONUP || nMsg == WM_RBUTTONUP ? MouseCase::OutRelease : MouseCase::OutHeld;
    }
    if (pCap && pCap == pHost)
        return nMsg == WM_LBUTTONUP ? MouseCase::InRelease : MouseCase::InHeld;
    return pCap ? MouseCase::InOtherCapture : MouseCase::InFree;
}

int CQKButton::OnMouseEvent(CQKHostWnd* pHost, uint32_t nMsg, const QPoint& pt)
{
    switch (ClassifyMouse(pHost, nMsg, pt)) {
    case MouseCase::Inert:
    case MouseCase::OutHeld:
    case MouseCase::InHeld:
    case MouseCase::InOtherCapture:
        return 0;
    case MouseCase::OutFree:
        ShowToolTip(0);
        if (nState != 0) {
            nState = 0;
            return 1;
        }
        return 0;
    case MouseCase::OutRelease: {
        const bool bChanged = nState != 0;
        nState = 0;
        CQKHostWnd::ReleaseCapture();
        return bChanged ? 1 : 0;
    }
    case MouseCase::InRelease: {
        const uint32_t nOld = nState;
        if (nState == 2)
            OnClick(pt);
        nState = 1;
        CQKHostWnd::ReleaseCapture();
        return nOld != 1 ? 1 : 0;
    }
    case MouseCase::InFree:
        break;
    }
    switch (nMsg) {
    case WM_MOUSEMOVE:
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        if (nState != 1 && nState != 2) {
            ShowToolTip(1);
            nState = 1;
            return 1;
        }
        return 0;
    case WM_LBUTTONDOWN:
        if (nState == 2)
            return 0;
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        nState = 2;
        OnLButtonDown(pt);
        if (pHost)
            pHost->SetCapture();
        return 1;
    case WM_LBUTTONUP:
        if (nState == 1)
            return 0;
        if (hCursor && pHost)
            pHost->SetCursor(hCursor);
        if (nState == 2)
            OnClick(pt);
        nState = 1;
        return 1;
    default:
        return 0;
    }
}

// --- the other virtual operations -----------------------------------------------------------

int CQKButton::PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t /*nMods*/)
{
    if (nMsg == WM_KEYDOWN && nVk == VK_RETURN && bFocused && bEnabled && bVisible) {
        OnClick(QPoint(nX + 1, nY + 1));
        return 1;
    }
    return 0;
}

void CQKButton::SetText(const QString& strText, int bRepaint)
{
    szText = strText;
    if (bRepaint && bVisible)
        RepaintAlone();
}

void CQKButton::GetText(QString& strOut) const
{
    strOut = szText.isNull() ? QString(QLatin1String("")) : szText;
}

void CQKButton::Enable(int bEnable, int bRepaint)
{
    if (!bEnable) {
        ShowToolTip(0);
        nState = 0;
    }
    if (bEnable != bEnabled) {
        bEnabled = bEnable;
        if (bRepaint && bVisible)
            RepaintAlone();
    }
}

void CQKButton::Show(int bShow, int bRepaint)
{
    if (!bShow) {
        ShowToolTip(0);
        nState = 0;
    }
    if (bShow == bVisible)
        return;
    bVisible = bShow;
    if (!bRepaint)
        return;
    if (!bShow) {
        // The host's next full repaint closes the hole; nothing is drawn now.
        if (CQKHostWnd::IsWindow(hWndHost)) {
            const QRect rc = GetRect();
            hWndHost->InvalidateRect(&rc);
        }
    } else {
        RepaintAlone();
    }
}

void CQKButton::SetRect(int nLeft, int nTop, int nRight, int nBottom, int bRepaint)
{
    MoveTo(nLeft, nTop, nRight - nLeft, nBottom - nTop, bRepaint);
}

void CQKButton::MoveTo(int x, int y, int w, int h, int bRepaint)
{
    if (x == nX && y == nY && w == nWidth && h == nHeight)
        return;
    pBackCache.reset();
    nX = x;
    nY = y;
    nWidth = w;
    nHeight = h;
    // Only the new place is invalidated: hosts that move controls repaint fully themselves.
    if (bRepaint && CQKHostWnd::IsWindow(hWndHost)) {
        const QRect rc = GetRect();
        hWndHost->InvalidateRect(&rc);
    }
}

void CQKButton::OnLButtonDown(const QPoint& /*pt*/)
{
    OnSetFocus();
    if (pManager)
        pManager->SetFocusControl(this, nKind);
}

void CQKButton::OnClick(const QPoint& /*pt*/)
{
    ShowToolTip(0);
    if (CQKHostWnd::IsWindow(hWndHost))
        hWndHost->PostMessage(WM_COMMAND, nID, 0);
}

void CQKButton::OnLayoutChanged() { }

void CQKButton::OnSetFocus()
{
    bFocused = 1;
}

void CQKButton::OnKillFocus()
{
    bFocused = 0;
}

void CQKButton::OnActivate(uint32_t /*nState*/) { }

int CQKButton::OnMouseWheel(uint32_t /*nFlags*/, int /*nDelta*/, const QPoint& /*pt*/)
{
    return 0;
}

void CQKButton::SetToolTip(const QString& strText)
{
    strToolTip = strText;
}

// --- painting -------------------------------------------------------------------------------

void CQKButton::RepaintAlone()
{
    Paint(nullptr, nullptr);
}

void CQKButton::Paint(CQKGraphics* pGraphics, QImage* pBitmap)
{
    if (nWidth < 1 || nHeight < 1)
        return;
    if (pGraphics) {
        if (!bVisible)
            return;
        pBackCache.reset();
        // What lies beneath the control at this moment of the composition, for lone repaints:
        // the part of it inside the composition, which is all a lone repaint can show.
        if (bCacheBackground && pBitmap) {
            const QRect rcCache = GetRect().intersected(QRect(QPoint(0, 0), QKImageSize(*pBitmap)));
            if (!rcCache.isEmpty()) {
                pBackCache = std::make_unique<QImage>(QKCopyImage(*pBitmap, rcCache));
                ptBackCache = rcCache.topLeft();
            }
        }
        const QRect rc = GetRect();
        if (!PaintFace(pGraphics, rc) && pImage)
            PaintPicture(pGraphics, rc, false);
        PaintContent(pGraphics, QRectF(rc));
        return;
    }
    if (!bVisible)
        return;
    PaintAloneInto(GetRect(), [this](CQKGraphics& g) {
        const QRect rc(0, 0, nWidth, nHeight);
        g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255)), rc);
        if (pBackCache)
            g.DrawImage(*pBackCache, QRectF(QPointF(ptBackCache - QPoint(nX, nY)), QSizeF(QKImageSize(*pBackCache))), QRectF(pBackCache->rect()));
        if (!PaintFace(&g, rc) && pImage)
            PaintPicture(&g, rc, true);
        PaintContent(&g, QRectF(rc));
    });
}

void CQKButton::PaintAloneInto(const QRect& rc, const std::function<void(CQKGraphics&)>& fnPaint)
{
    if (!CQKHostWnd::IsWindow(hWndHost))
        return;
    const QRect rcVisible = rc.intersected(hWndHost->GetClientRect());
    if (rcVisible.isEmpty())
        return;
    QImage image = QKNewImage(rcVisible.width(), rcVisible.height(), hWndHost->DevicePixelRatio());
    if (image.isNull())
        return;
    {
        CQKGraphics g(image);
        g.TranslateTransform(static_cast<float>(rc.x() - rcVisible.x()), static_cast<float>(rc.y() - rcVisible.y()));
        fnPaint(g);
    }
    CopyToHost(image, rcVisible.topLeft());
}

void CQKButton::CopyToHost(QImage& image, QPoint ptDest)
{
    // The screen takes colour only: whatever alpha the picture has is dropped, as the copy of
    // composed pixels to a window always does (read as opaque in place, without a copy).
    image.reinterpretAsFormat(QImage::Format_RGB32);
    hWndHost->UpdateWindowFromImage(image, ptDest);
}

// Cuts the picture into frames side by side and draws the one for the state.
//
//   nFrames | frame     | placement                                | by state
//   --------+-----------+------------------------------------------+-------------------------
//   4       | iw/4      | natural size, centred; squeezed to the   | normal, hover, down,
//           |           | control when too wide or too high        | disabled (any state)
//   2       | iw/2      | stretched over the control               | enabled, disabled
//   1       | whole     | stretched, at half alpha when disabled   |
//   other   |           | nothing                                  |
void CQKButton::PaintPicture(CQKGraphics* pGraphics, const QRect& rc, bool bLone)
{
    // The picture's size in the program's pixels places it; its own pixels (more of them on a
    // HiDPI screen) cut its frames.
    const QSize size = QKImageSize(*pImage);
    const int iw = size.width();
    const int ih = size.height();
    if (iw <= 0 || ih <= 0)
        return;
    const qreal r = pImage->devicePixelRatio();
    const int w = rc.width();
    const int h = rc.height();
    switch (nFrames) {
    case 4: {
        const int fw = iw / 4;
        int nSrc = 0;
        if (!bEnabled)
            nSrc = 3 * iw / 4;
        else if (nState == 0)
            nSrc = 0;
        else if (nState == 1)
            nSrc = iw / 4;
        else if (nState == 2)
            nSrc = iw / 2;
        else
            return;
        int x = rc.x() + (w - fw) / 2;
        int y = rc.y() + (h - ih) / 2;
        int dw = fw;
        int dh = ih;
        // A frame larger than the control is squeezed into it. A lone repaint tests the
        // centred position against its own origin, which comes to nearly the same.
        const bool bTooWide = bLone ? x < 0 : iw > 4 * int64_t(w);
        const bool bTooHigh = bLone ? y < 0 : ih > h;
        if (bTooWide) {
            x = rc.x();
            dw = w;
        }
        if (bTooHigh) {
            y = rc.y();
            dh = h;
        }
        pGraphics->DrawImage(*pImage, QRectF(x, y, dw, dh), QRectF(nSrc * r, 0, fw * r, ih * r));
        break;
    }
    case 2: {
        const int fw = iw / 2;
        const int nSrc = bEnabled ? 0 : iw / 2;
        pGraphics->DrawImage(*pImage, QRectF(rc), QRectF(nSrc * r, 0, fw * r, ih * r));
        break;
    }
    case 1:
        pGraphics->DrawImage(*pImage, QRectF(rc), QRectF(pImage->rect()), bEnabled ? 1.0f : 0.5f);
        break;
    default:
        break;
    }
}

int CQKButton::PaintFace(CQKGraphics* pGraphics, const QRect& rc)
{
    if (!bVisible || nFaceIndex < 0 || nFaceIndex >= static_cast<int>(vecFaces.size()) || !vecFaces[nFaceIndex])
        return 0;
    tagQKFace& face = *vecFaces[nFaceIndex];
    // The face's paths stay in the glyph's own coordinates; the painter is moved instead.
    pGraphics->Save();
    pGraphics->SetSmoothingMode(QKSmoothingHighQuality);

    // Centre the whole face by the bounds of all its layers; a pressed face sits one pixel
    // to the right and down.
    CQKGraphicsPath all;
    for (const tagQKFaceLayer& layer : face.layers) {
        if (layer.pPath) {
            all.StartFigure();
            all.AddPath(*layer.pPath);
        }
    }
    const QRect b = all.GetBoundsI();
    float ox = static_cast<float>((rc.width() - b.width()) / 2 - b.x() + rc.x());
    float oy = static_cast<float>((rc.height() - b.height()) / 2 - b.y() + rc.y());
    if (nState == 2) {
        ox += 1;
        oy += 1;
    }
    pGraphics->TranslateTransform(ox, oy);

    const tagQKUIColors& ui = g_UIColors;
    uint32_t clrStartLow = ui.clrFaceEnd; // layers 0 and 1
    uint32_t clrStartHigh = ui.clrFaceEnd; // layers 2 and 3
    uint32_t clrEnd = ui.clrFaceEnd;
    uint32_t nAlpha = 255;
    if (!bEnabled) {
        clrStartLow = clrStartHigh = clrEnd = ColorMix(0.5, ui.clrFaceStartB, ui.clrFaceEnd);
        nAlpha = 100;
    } else if (nState == 0) {
        clrStartLow = ui.clrFaceStartA;
        clrStartHigh = ui.clrFaceStartB;
    } else if (nState == 1) {
        clrStartLow = clrStartHigh = clrEnd = ui.clrFaceHover;
    } else if (nState == 2) {
        clrStartLow = clrStartHigh = clrEnd = ColorDarken20(ui.clrFaceHover);
    }

    for (int i = 0; i < 4; ++i) {
        const tagQKFaceLayer& layer = face.layers[i];
        if (!layer.pPath)
            continue;
        pGraphics->SetSmoothingMode(layer.bAntiAlias ? QKSmoothingHighQuality : QKSmoothingDefault);
        if (layer.pClipPath)
            pGraphics->SetClipPath(*layer.pClipPath, static_cast<int>(layer.nClipMode));
        const float fGrow = layer.bFill ? 1.0f : static_cast<float>(layer.nPenWidth) + 1.0f;
        const QRectF rcBrush = layer.pPath->GetBounds().adjusted(-fGrow, -fGrow, fGrow, fGrow);
        tagQKBrush brush = tagQKBrush::LinearRect(rcBrush, QKColorFromBGR(i < 2 ? clrStartLow : clrStartHigh, nAlpha),
            QKColorFromBGR(clrEnd, nAlpha), QKGradientHorizontal);
        brush.bGammaCorrection = true;
        if (layer.bFill) {
            pGraphics->FillPath(brush, *layer.pPath);
        } else {
            tagQKPen pen;
            pen.fWidth = static_cast<float>(layer.nPenWidth);
            pen.nStartCap = QKLineCapRound;
            pen.nEndCap = QKLineCapRound;
            pen.pBrush = &brush;
            pGraphics->DrawPath(pen, *layer.pPath);
        }
        if (layer.pClipPath)
            pGraphics->ResetClip();
    }
    pGraphics->Restore();
    return 1;
}

namespace {

tagQKStringFormat ContentFormat(uint32_t nTextAlign, const tagQKFont& font)
{
    tagQKStringFormat format;
    format.nAlign = nTextAlign == 0 ? QKAlignNear : nTextAlign == 1 ? QKAlignFar
                                                                    : QKAlignCenter;
    format.nLineAlign = nTextAlign == 3 ? QKAlignFar : QKAlignCenter;
    if (font.bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    return format;
}

} // namespace

void CQKButton::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    if (bHoverFrame && bEnabled && nState != 0) {
        tagQKPen pen;
        pen.clr = QKColorFromBGR(nState == 1 ? QKColorLighten(g_clrBorder, 40) : g_clrBorder, 255);
        pen.fWidth = 1.0f;
        pGraphics->DrawRectangle(pen, QRectF(rc.x(), rc.y(), rc.width() - 1, rc.height() - 1));
    }
    if (szText.isEmpty())
        return;
    const tagQKFont* pFont = FindFont(nFontID);
    if (!pFont)
        return;
    pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    uint32_t clr = g_clrText;
    if (!bEnabled)
        clr = QKColorLighten(g_clrFace, 30);
    else if (nState == 1)
        clr = QKColorLighten(g_clrText, 40);
    pGraphics->DrawString(szText, QKFontSpecOf(*pFont), rc, ContentFormat(nTextAlign, *pFont), tagQKBrush::Solid(QKColorFromBGR(clr, 255)));
}

QSize CQKButton::MeasureText(const QString& strText)
{
    if (strText.isEmpty())
        return QSize(0, 0);
    const tagQKFont* pFont = FindFont(nFontID);
    if (!pFont || !CQKHostWnd::IsWindow(hWndHost))
        return QSize(0, 0);
    tagQKStringFormat format = ContentFormat(2, *pFont);
    // Measured in a fixed box of 100 by 50: a wider text wraps, and its height grows.
    QImage scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(scratch);
    const QRectF box = g.MeasureString(strText, QKFontSpecOf(*pFont), QRectF(0, 0, 100, 50), format);
    return QSize(static_cast<int>(box.width()), static_cast<int>(box.height()));
}

// --- tool tips ---------------------------------------------------------------------------

void CQKButton::ShowToolTip(int bShow)
{
    if (strToolTip.isEmpty()) {
        if (pToolTipWnd && pToolTipWnd->IsWindow())
            pToolTipWnd->ShowWindow(SW_HIDE);
        return;
    }
    if (!bShow) {
        if (pToolTipWnd && pToolTipWnd->IsWindowVisible())
            pToolTipWnd->ShowWindow(SW_HIDE);
        return;
    }
    if (!CQKHostWnd::IsWindow(hWndHost))
        return;
    if (!pToolTipWnd)
        pToolTipWnd = std::make_unique<CQKToolTipWnd>();
    if (!pToolTipWnd->IsWindow() && !pToolTipWnd->CreateTip(hWndHost))
        return;
    if (pToolTipWnd->IsWindowVisible())
        return;
    pToolTipWnd->strText = strToolTip;
    // Numbers of any size stay within reach of the screen, so that nothing overflows.
    auto near = [](int64_t v) { return static_cast<int>(std::clamp<int64_t>(v, -(1 << 24), 1 << 24)); };
    const QPoint ptBelow(near(nX), near(int64_t(nY) + nHeight + 10));
    const QRect rcTip = CQKToolTipWnd::PlaceBelow(hWndHost->ClientToScreen(ptBelow), pToolTipWnd->Measure(), near(nHeight),
        CQKHostWnd::GetPrimaryScreenRect(), CQKHostWnd::GetPrimaryWorkArea());
    pToolTipWnd->MoveWindow(rcTip);
    pToolTipWnd->ShowWindow(SW_SHOWNOACTIVATE);
}
