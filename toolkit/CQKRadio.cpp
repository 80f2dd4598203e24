#include "CQKRadio.h"

#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"

namespace {

constexpr int kCircle = 13;
constexpr int kMark = 5;
constexpr int kLabelIndent = 20;

CQKButton* CreateRadio()
{
    return new CQKRadio();
}

} // namespace

tagQKControlKind CQKRadio::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateRadio;
    return hooks;
}

void CQKRadio::OnClick(const QPoint& /*pt*/)
{
    if (bChecked)
        return;
    bChecked = 1;
    Paint(nullptr, nullptr);
    PostCommand();
}

void CQKRadio::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    const tagQKFont* pFont = BeginLabel(pGraphics);
    if (!pFont)
        return;
    const int t = static_cast<int>((rc.height() - kCircle) * 0.5);
    const QRectF rcCircle(rc.x() + 1, rc.y() + t, kCircle, kCircle);
    if (bEnabled)
        pGraphics->FillEllipse(tagQKBrush::Solid(QKColorFromBGR(g_clrShade, 255)), rcCircle);
    tagQKPen pen;
    pen.clr = QKColorFromBGR(g_clrBorder, bEnabled ? 255 : 100);
    pGraphics->DrawEllipse(pen, rcCircle);
    // The mark of a chosen radio is a small square, not a round dot.
    if (bChecked)
        pGraphics->FillRectangle(LabelBrush(), QRectF(rc.x() + 5, rc.y() + t + 4, kMark, kMark));
    // The label sits half as far down as the circle does (whole pixels, toward zero).
    DrawLabel(pGraphics, *pFont, QRectF(rc.x() + kLabelIndent, rc.y() + t / 2, rc.width(), rc.height()));
}
