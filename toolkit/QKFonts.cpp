#include "QKFonts.h"

#include "QKTheme.h"
#include "platform/CQKGraphics.h"

std::vector<std::unique_ptr<tagQKFont>> g_vecFonts;

tagQKFont* FindFont(uint32_t id)
{
    for (const auto& p : g_vecFonts) {
        if (p->nID == id)
            return p.get();
    }
    return nullptr;
}

void QKClearFonts()
{
    g_vecFonts.clear();
}

void DrawSkinString(CQKGraphics* pGraphics, const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, const tagQKBrush& brush)
{
    if (!pGraphics)
        return;
    if (!g_bTextSmoothing) {
        pGraphics->DrawString(text, font, rcLayout, format, brush);
        return;
    }
    const int nOldSmoothing = pGraphics->GetSmoothingMode();
    pGraphics->SetSmoothingMode(QKSmoothingHighQuality);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    CQKGraphicsPath path;
    path.AddString(text, font, rcLayout, format);
    pGraphics->FillPath(brush, path);
    pGraphics->SetSmoothingMode(nOldSmoothing);
}

void DrawSkinStringAt(CQKGraphics* pGraphics, const QString& text, const tagQKFontSpec& font, const QPointF& ptOrigin, const tagQKStringFormat& format, const tagQKBrush& brush)
{
    DrawSkinString(pGraphics, text, font, QRectF(ptOrigin, QSizeF(0, 0)), format, brush);
}

tagQKFontSpec QKFontSpecOf(const tagQKFont& font)
{
    tagQKFontSpec fontSpec;
    fontSpec.strFamily = font.szName;
    fontSpec.fSize = static_cast<float>(font.nSize);
    fontSpec.nStyle = (font.bBold ? QKFontBold : 0) | (font.bItalic ? QKFontItalic : 0) | (font.bUnderline ? QKFontUnderline : 0);
    return fontSpec;
}
