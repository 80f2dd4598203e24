#include "CQKCheck.h"

#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKMessages.h"

namespace {

constexpr int kBoxSide = 16;
constexpr int kLabelIndent = 20;

CQKButton* CreateCheck()
{
    return new CQKCheck();
}

} // namespace

tagQKControlKind CQKCheck::KindHooks()
{
    tagQKControlKind hooks;
    hooks.pfnCreate = CreateCheck;
    return hooks;
}

void CQKCheck::SetCheck(int bFlag, int bRepaint)
{
    if (bFlag == bChecked)
        return;
    bChecked = bFlag;
    if (bRepaint)
        Paint(nullptr, nullptr);
}

void CQKCheck::PostCommand()
{
    if (CQKHostWnd::IsWindow(hWndHost))
        hWndHost->PostMessage(WM_COMMAND, nID, 0);
}

void CQKCheck::OnClick(const QPoint& /*pt*/)
{
    // The tool tip stays as it is: the pointer is still over the box.
    bChecked = bChecked ? 0 : 1;
    Paint(nullptr, nullptr);
    PostCommand();
}

const tagQKFont* CQKCheck::BeginLabel(CQKGraphics* pGraphics) const
{
    if (szText.isNull())
        return nullptr;
    const tagQKFont* pFont = FindFont(nFontID);
    if (!pFont)
        return nullptr;
    pGraphics->SetTextRenderingHint(QKTextHintClearTypeGridFit);
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    return pFont;
}

tagQKBrush CQKCheck::LabelBrush() const
{
    if (!bEnabled)
        return tagQKBrush::Solid(QKColorFromBGR(g_clrText, 100));
    return tagQKBrush::Solid(QKColorFromBGR(nState == 1 ? QKColorLighten(g_clrText, 40) : g_clrText, 255));
}

void CQKCheck::DrawLabel(CQKGraphics* pGraphics, const tagQKFont& font, const QRectF& rcText) const
{
    tagQKStringFormat format;
    format.nAlign = QKAlignNear;
    format.nLineAlign = QKAlignCenter;
    if (font.bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    pGraphics->DrawString(szText, QKFontSpecOf(font), rcText, format, LabelBrush());
}

void CQKCheck::PaintContent(CQKGraphics* pGraphics, const QRectF& rc)
{
    const tagQKFont* pFont = BeginLabel(pGraphics);
    if (!pFont)
        return;
    // Truncated toward zero: a control lower than the box has it across its top edge.
    const int t = static_cast<int>((rc.height() - kBoxSide) * 0.5);
    const QRectF rcBox(rc.x() + 1, rc.y() + t, kBoxSide, kBoxSide);
    if (bEnabled)
        pGraphics->FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrShade, 255)), rcBox);
    tagQKPen pen;
    pen.clr = QKColorFromBGR(g_clrBorder, bEnabled ? 255 : 100);
    pGraphics->DrawRectangle(pen, rcBox);
    if (bChecked) {
        const float X = static_cast<float>(static_cast<int>(rc.x() + 1));
        const float Y = static_cast<float>(static_cast<int>(rc.y() + t));
        pGraphics->FillPolygon(LabelBrush(), { { X + 1, Y + 7 }, { X + 5, Y + 13 }, { X + 16, Y + 2 }, { X + 5, Y + 11 }, { X + 1, Y + 7 } });
    }
    DrawLabel(pGraphics, *pFont, QRectF(rc.x() + kLabelIndent, rc.y() + t, rc.width(), rc.height()));
}
