#pragma once
// The font table: shapes of text (family, size, style) by id, filled from the skin file.
//
// Painters look their font up by id at paint time; the first record with the id wins, so a
// table that holds an id twice (every host reads the same skin file) looks the same. The
// table is emptied when the last UI manager goes away (CQKUIManager's destructor).
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

// One row of the font table. Colours are kept from the skin but no painter reads them: text
// colours come from the theme.
struct tagQKFont
{
    uint32_t nID { 0 };
    uint32_t nSize { 0 }; // pixels
    uint32_t bBold { 0 };
    uint32_t bItalic { 0 };
    uint32_t bVertical { 0 };
    uint32_t bUnderline { 0 };
    uint32_t clrNormal { 0 };
    uint32_t clrHover { 0 };
    uint32_t clrDown { 0 };
    uint32_t clrDisable { 0 };
    QString szName; // family; shorter than 32 bytes in the skin file, else empty
};

extern std::vector<std::unique_ptr<tagQKFont>> g_vecFonts;

// The first record with this id, or null.
tagQKFont* FindFont(uint32_t id);
// Empties the table and frees its records.
void QKClearFonts();

class CQKGraphics;
struct tagQKFontSpec;
struct tagQKStringFormat;
struct tagQKBrush;
class QRectF;
class QPointF;

// The painting form of a font record: its family, its size in pixels and its style (bold 1,
// italic 2, underline 4).
tagQKFontSpec QKFontSpecOf(const tagQKFont& font);

// Draws text that is not tied to a font record (tool tips, menus, some static text). With
// g_bTextSmoothing set the text is filled as outlines, smoothed, instead of drawn as glyphs.
void DrawSkinString(CQKGraphics* pGraphics, const QString& text, const tagQKFontSpec& font, const QRectF& rcLayout, const tagQKStringFormat& format, const tagQKBrush& brush);
// The same with the text's top-left corner at `ptOrigin`, without wrapping.
void DrawSkinStringAt(CQKGraphics* pGraphics, const QString& text, const tagQKFontSpec& font, const QPointF& ptOrigin, const tagQKStringFormat& format, const tagQKBrush& brush);
