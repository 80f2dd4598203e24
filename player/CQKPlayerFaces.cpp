// CQKPlayerFaces: drawn faces and face strips of the panel buttons.
//
// Sections: the strip painter; the strips, one drawing each; the drawn faces; the audio note.
#include "CQKPlayerFaces.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKGraphicsPath.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QTransform>
#include <functional>
#include <vector>

using namespace QKPanelLayout;

namespace {

// --- the strip painter ----------------------------------------------------------------------
//
// Every drawing is written in the coordinates of the normal frame; `At` moves a point to the
// frame being drawn. `fLeft` is the frame's own left edge, for clips that follow the frame but
// not the pressed frame's extra pixel.
struct tagStripFrame
{
    QPointF ptOffset;
    QKARGB clr { 0 };
    float fLeft { 0 };

    QPointF At(float x, float y) const { return QPointF(x, y) + ptOffset; }
    QRectF At(float x, float y, float w, float h) const { return QRectF(At(x, y), QSizeF(w, h)); }
};

using StripDrawing = std::function<void(CQKGraphics&, const tagStripFrame&)>;

QKARGB FaceNormal()
{
    return QKColorFromBGR(g_UIColors.clrFaceStartB, 255);
}

// Four frames of `nFrame` by `nFrame` side by side on a transparent ground. The drawing runs
// three times, for normal, hover and pressed, each starting with smoothing `nSmoothing` and
// no clip; the fourth frame stays empty. The strip has the screen's pixel ratio, so that a
// HiDPI screen shows the faces at its full resolution.
std::unique_ptr<QImage> MakeStrip(int nFrame, int nSmoothing, QKARGB clrNormal, const StripDrawing& draw)
{
    auto pStrip = std::make_unique<QImage>(QKNewImage(4 * nFrame, nFrame, QKScreenPixelRatio()));
    if (pStrip->isNull())
        return nullptr;
    const QKARGB clrHover = QKColorFromBGR(g_UIColors.clrFaceHover, 255);
    const QKARGB clrDown = QKColorFromBGR(ColorDarken20(g_UIColors.clrFaceHover), 255);
    const float f = static_cast<float>(nFrame);
    const tagStripFrame frames[3] = {
        { QPointF(0, 0), clrNormal, 0 },
        { QPointF(f, 0), clrHover, f },
        { QPointF(2 * f + 1, 1), clrDown, 2 * f },
    };
    CQKGraphics g(*pStrip);
    for (const tagStripFrame& frame : frames) {
        g.SetSmoothingMode(nSmoothing);
        g.ResetClip();
        draw(g, frame);
    }
    return pStrip;
}

tagQKPen Pen(QKARGB clr, float fWidth)
{
    tagQKPen pen;
    pen.clr = clr;
    pen.fWidth = fWidth;
    return pen;
}

// A thick line ending in an arrow head, smoothed and drawn twice, as the arrows of the
// next, previous, open and speaker strips are.
void DrawArrow(CQKGraphics& g, const tagStripFrame& fr, QPointF from, QPointF to, int nTimes)
{
    tagQKPen pen = Pen(fr.clr, 7);
    pen.nEndCap = QKLineCapArrowAnchor;
    g.SetSmoothingMode(QKSmoothingAntiAlias);
    for (int i = 0; i < nTimes; ++i)
        g.DrawLine(pen, fr.At(from.x(), from.y()), fr.At(to.x(), to.y()));
}

// The plus sign the full-screen strips cut out of their frame, in the frame's place.
CQKGraphicsPath PlusPath(const tagStripFrame& fr)
{
    static const float kPlus[12][2] = { { 9, 3 }, { 15, 3 }, { 15, 9 }, { 22, 9 }, { 22, 15 }, { 15, 15 }, { 15, 22 }, { 9, 22 }, { 9, 15 },
        { 3, 15 }, { 3, 9 }, { 9, 9 } };
    std::vector<QPointF> points;
    for (const auto& pt : kPlus)
        points.push_back(fr.At(pt[0], pt[1]));
    CQKGraphicsPath path;
    path.AddPolygon(points);
    return path;
}

// The two diagonals of the full-screen strips, smoothed.
void DrawDiagonals(CQKGraphics& g, const tagStripFrame& fr)
{
    g.SetSmoothingMode(QKSmoothingHighQuality);
    const tagQKPen pen = Pen(fr.clr, 2);
    g.DrawLine(pen, fr.At(4, 4), fr.At(20, 20));
    g.DrawLine(pen, fr.At(4, 20), fr.At(20, 4));
}

// Steps shared by the sound and muted strips: the speaker's cone (an arrow head with its
// shaft cut off at the frame's left edge) and its magnet. The clip is reset afterwards.
void DrawSpeaker(CQKGraphics& g, const tagStripFrame& fr)
{
    g.SetClipRect(QRectF(fr.fLeft, 0, 8, 25), QKCombineExclude);
    DrawArrow(g, fr, QPointF(16, 12), QPointF(4, 12), 2);
    g.SetSmoothingMode(QKSmoothingDefault);
    g.DrawLine(Pen(fr.clr, 9), fr.At(11, 9), fr.At(11, 16));
    g.ResetClip();
}

QKARGB SpeakerNormal()
{
    return QKColorFromBGR(ColorMix(0.5, g_UIColors.clrSliderStart, g_UIColors.clrSliderEnd), 255);
}

// --- the strips -----------------------------------------------------------------------------

std::unique_ptr<QImage> MakeMinimize()
{
    return MakeStrip(20, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) { g.DrawLine(Pen(fr.clr, 1), fr.At(4, 16), fr.At(16, 16)); });
}

std::unique_ptr<QImage> MakeMaximize()
{
    return MakeStrip(20, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) { g.DrawRectangle(Pen(fr.clr, 1), fr.At(5, 8, 10, 8)); });
}

std::unique_ptr<QImage> MakeRestore()
{
    return MakeStrip(20, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        const tagQKPen pen = Pen(fr.clr, 1);
        g.DrawRectangle(pen, fr.At(5, 8, 10, 8));
        g.DrawLine(pen, fr.At(7, 5), fr.At(17, 5));
        g.DrawLine(pen, fr.At(17, 5), fr.At(17, 14));
    });
}

std::unique_ptr<QImage> MakeClose()
{
    return MakeStrip(20, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        const tagQKPen pen = Pen(fr.clr, 1);
        g.DrawLine(pen, fr.At(5, 6), fr.At(15, 16));
        g.DrawLine(pen, fr.At(15, 6), fr.At(5, 16));
    });
}

// A triangle stroked twice on itself with a round join: drawing the smoothed edge twice
// makes it denser.
std::unique_ptr<QImage> MakePlay()
{
    return MakeStrip(25, QKSmoothingHighQuality, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        tagQKPen pen = Pen(fr.clr, 2);
        pen.nLineJoin = QKLineJoinRound;
        CQKGraphicsPath path;
        path.AddLines({ fr.At(5, 3), fr.At(19, 13), fr.At(5, 21) });
        path.CloseFigure();
        g.DrawPath(pen, path);
        g.DrawPath(pen, path);
    });
}

std::unique_ptr<QImage> MakePause()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        const tagQKPen pen = Pen(fr.clr, 3);
        g.DrawLine(pen, fr.At(8, 6), fr.At(8, 19));
        g.DrawLine(pen, fr.At(16, 6), fr.At(16, 19));
    });
}

// An arrow towards a bar: next points right, previous left.
std::unique_ptr<QImage> MakeSkip(float fFrom, float fTo, float fBar)
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [=](CQKGraphics& g, const tagStripFrame& fr) {
        DrawArrow(g, fr, QPointF(fFrom, 12), QPointF(fTo, 12), 2);
        g.SetSmoothingMode(QKSmoothingDefault);
        g.DrawLine(Pen(fr.clr, 3), fr.At(fBar, 7), fr.At(fBar, 19));
    });
}

std::unique_ptr<QImage> MakeStop()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        g.SetSmoothingMode(QKSmoothingAntiAlias);
        const tagQKBrush brush = tagQKBrush::Solid(fr.clr);
        g.FillRectangle(brush, fr.At(6, 6, 13, 13));
        g.FillRectangle(brush, fr.At(6, 6, 13, 13));
    });
}

// An arrow up out of a tray line.
std::unique_ptr<QImage> MakeOpen()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        DrawArrow(g, fr, QPointF(12, 8), QPointF(12, 4), 1);
        g.SetSmoothingMode(QKSmoothingDefault);
        g.DrawLine(Pen(fr.clr, 2), fr.At(6, 19), fr.At(19, 19));
    });
}

// A square with its diagonals, the plus sign in its middle left out.
std::unique_ptr<QImage> MakeEnterFull()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        g.SetClipPath(PlusPath(fr), QKCombineExclude);
        g.DrawRectangle(Pen(fr.clr, 2), fr.At(4, 4, 17, 17));
        DrawDiagonals(g, fr);
        g.ResetClip();
    });
}

// The plus sign's outline inside the square, and the diagonals outside the plus.
std::unique_ptr<QImage> MakeExitFull()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        g.SetClipRect(fr.At(4, 4, 17, 17));
        const CQKGraphicsPath plus = PlusPath(fr);
        g.DrawPath(Pen(fr.clr, 2), plus);
        g.SetSmoothingMode(QKSmoothingHighQuality);
        g.SetClipPath(plus, QKCombineExclude);
        DrawDiagonals(g, fr);
        g.ResetClip();
    });
}

std::unique_ptr<QImage> MakeSound()
{
    return MakeStrip(25, QKSmoothingDefault, SpeakerNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        DrawSpeaker(g, fr);
        const tagQKPen pen = Pen(fr.clr, 1);
        g.DrawLine(pen, fr.At(18, 12), fr.At(20, 12));
        g.SetSmoothingMode(QKSmoothingHighQuality);
        g.DrawLine(pen, fr.At(18, 15), fr.At(20, 17));
        g.DrawLine(pen, fr.At(18, 9), fr.At(20, 7));
    });
}

// The speaker struck through. A line in the panel's ground colour beside the slash cuts it
// from the speaker, so the two read apart at this size.
std::unique_ptr<QImage> MakeMuted()
{
    return MakeStrip(25, QKSmoothingDefault, SpeakerNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        DrawSpeaker(g, fr);
        g.SetSmoothingMode(QKSmoothingHighQuality);
        g.DrawLine(Pen(fr.clr, 1), fr.At(20, 4), fr.At(4, 20));
        g.DrawLine(Pen(QKColorFromBGR(g_clrFace, 255), 1), fr.At(21, 5), fr.At(5, 21));
    });
}

std::unique_ptr<QImage> MakeOptions()
{
    return MakeStrip(25, QKSmoothingDefault, FaceNormal(), [](CQKGraphics& g, const tagStripFrame& fr) {
        g.DrawLine(Pen(fr.clr, 2), fr.At(7, 5), fr.At(7, 20));
        const tagQKPen pen = Pen(fr.clr, 1);
        for (float y : { 8.0f, 12.0f, 16.0f })
            g.DrawLine(pen, fr.At(9, y), fr.At(18, y));
    });
}

// --- the drawn faces ------------------------------------------------------------------------

std::unique_ptr<tagQKFace> NewLayer2Face(CQKGraphicsPath path, bool bAntiAlias)
{
    auto pFace = std::make_unique<tagQKFace>();
    tagQKFaceLayer& layer = pFace->layers[2];
    layer.bAntiAlias = bAntiAlias ? 1 : 0;
    layer.nPenWidth = 1;
    layer.pPath = std::make_unique<CQKGraphicsPath>(std::move(path));
    return pFace;
}

// --- the audio note -------------------------------------------------------------------------

std::unique_ptr<QImage> MakeAudioNote()
{
    CQKGraphicsPath path;
    path.AddCurve({ QPointF(12, 7), QPointF(12, 19), QPointF(11, 20) });
    path.AddEllipse(QRectF(6, 18, 5, 3));
    path.AddCurve({ QPointF(20, 7), QPointF(20, 21), QPointF(19, 22) });
    path.AddEllipse(QRectF(14, 20, 5, 3));
    path.CloseFigure();
    path.AddLine(12, 9, 20, 9);
    path.Transform(QTransform::fromScale(4, 4));
    const QRect rcFirst = path.GetBoundsI();
    path.Translate(static_cast<float>(2 - rcFirst.x()), static_cast<float>(2 - rcFirst.y()));
    const QRect rc = path.GetBoundsI();
    auto pNote = std::make_unique<QImage>(QKNewImage(rc.width() + 4, rc.height() + 4, QKScreenPixelRatio()));
    if (pNote->isNull())
        return nullptr;
    CQKGraphics g(*pNote);
    g.SetSmoothingMode(QKSmoothingHighQuality);
    tagQKBrush brush = tagQKBrush::Linear(QPointF(rc.left() - 2, rc.top() - 2), QPointF(rc.x() + rc.width() + 2, rc.y() + rc.height() + 2), 0xFFFFFFFF,
        QKColorFromBGR(g_UIColors.clrGlyphEnd, 255), QKWrapTile);
    brush.bGammaCorrection = true;
    tagQKPen pen = Pen(0xFFFFFFFF, 2);
    pen.pBrush = &brush;
    g.DrawPath(pen, path);
    return pNote;
}

void GiveStrip(CQKUIManager* pManager, uint32_t nID, const std::unique_ptr<QImage>& pStrip)
{
    if (CQKButton* p = pManager ? pManager->FindControl(nID, 0) : nullptr)
        p->SetImage(pStrip.get());
}

} // namespace

void CQKPlayerFaces::CreateFaces(CQKUIManager* pManager)
{
    CreatePanelFaces(pManager);
    faceMinimize = MakeMinimize();
    GiveStrip(pManager, kIdMinimize, faceMinimize);
    faceMaximize = MakeMaximize();
    GiveStrip(pManager, kIdMaximize, faceMaximize);
    faceRestore = MakeRestore();
    faceClose = MakeClose();
    GiveStrip(pManager, kIdClose, faceClose);
    facePlay = MakePlay();
    GiveStrip(pManager, kIdPlay, facePlay);
    facePause = MakePause();
    faceNext = MakeSkip(5, 17, 18);
    GiveStrip(pManager, kIdNext, faceNext);
    facePrevious = MakeSkip(19, 7, 6);
    GiveStrip(pManager, kIdPrevious, facePrevious);
    faceStop = MakeStop();
    GiveStrip(pManager, kIdStop, faceStop);
    faceOpen = MakeOpen();
    GiveStrip(pManager, kIdOpen, faceOpen);
    faceEnterFull = MakeEnterFull();
    GiveStrip(pManager, kIdFullScreen, faceEnterFull);
    faceExitFull = MakeExitFull();
    faceSound = MakeSound();
    GiveStrip(pManager, kIdMute, faceSound);
    faceMuted = MakeMuted();
    faceOptions = MakeOptions();
    GiveStrip(pManager, kIdOptions, faceOptions);
    imgAudioNote = MakeAudioNote();
}

void CQKPlayerFaces::CreatePanelFaces(CQKUIManager* pManager)
{
    if (!pManager)
        return;
    static const std::pair<uint32_t, int> kKinds[] = { { kIdMinimize, 1 }, { kIdMaximize, 2 }, { kIdClose, 0 }, { kIdPlay, 8 }, { kIdStop, 10 },
        { kIdPrevious, 28 }, { kIdNext, 29 }, { kIdOpen, 3 } };
    for (const auto& [nID, nKind] : kKinds)
        if (CQKButton* p = pManager->FindControl(nID, 0))
            p->SetFace(nKind);
    AddOptionsFace(pManager, kIdOptions);
    AddFullScreenFaces(pManager, kIdFullScreen, false);
}

// A round dot and four rows of text: a list sign.
void CQKPlayerFaces::AddOptionsFace(CQKUIManager* pManager, uint32_t nID)
{
    CQKButton* p = pManager ? pManager->FindControl(nID, 0) : nullptr;
    if (!p)
        return;
    CQKGraphicsPath path;
    path.AddEllipse(QRectF(0, 0, 6, 6));
    path.AddLine(6, 3, 17, 3);
    path.CloseFigure();
    path.AddLine(7, 6, 17, 6);
    path.CloseFigure();
    path.AddLine(7, 9, 17, 9);
    path.CloseFigure();
    path.AddLine(7, 12, 17, 12);
    p->AddFace(NewLayer2Face(std::move(path), true), true);
}

// An arrow pointing down, turned by -45 degrees so that it points to the lower right (index
// 0), and turned again by the same matrix, which then holds -180 degrees in all, so that it
// points to the upper left (index 1, the bottom bar's "Exit Full Screen").
void CQKPlayerFaces::AddFullScreenFaces(CQKUIManager* pManager, uint32_t nID, bool bExitOnly)
{
    CQKButton* p = pManager ? pManager->FindControl(nID, 0) : nullptr;
    if (!p)
        return;
    CQKGraphicsPath arrow;
    arrow.AddLine(0, -2, 0, 13);
    arrow.CloseFigure();
    arrow.AddLine(-4, 9, 0, 13);
    arrow.CloseFigure();
    arrow.AddLine(0, 13, 4, 9);
    arrow.CloseFigure();
    QTransform matrix;
    matrix.rotate(-45);
    arrow.Transform(matrix);
    CQKGraphicsPath back = arrow;
    matrix.rotate(-135);
    back.Transform(matrix);
    if (bExitOnly) {
        p->AddFace(NewLayer2Face(std::move(back), false), true);
        return;
    }
    p->AddFace(NewLayer2Face(std::move(arrow), false), true);
    p->AddFace(NewLayer2Face(std::move(back), false), false);
}
