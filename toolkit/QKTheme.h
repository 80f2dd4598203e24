#pragma once
// The look of the toolkit: working colours, the table of theme colours and the two small files
// that set them.
//
// Every painter reads these values directly at paint time; there is no theme object and no
// change notification. Colours here are 0x00BBGGRR (red in the low byte) without alpha, the
// form the theme file and the skin use; painters add an alpha when they paint (QKColorFromBGR).
//
// Start-up reads skin/uicolors/UIColors.uic first (LoadUIColors), then skin/usebigfont.dat
// (LoadBigFontFile). A missing or broken file leaves the built-in values in place, silently.
#include <QString>
#include <cstdint>

// The 27 theme colours, in the order of their fields. The theme file names them by two-digit
// attributes whose numbering is not the order of the fields (see QKUIColorAttribute).
struct tagQKUIColors
{
    uint32_t clrFrame { 0 }; // "01": one-pixel outline of dialogs and bars
    uint32_t clrTitleTextStart { 0 }; // "03": gradient start of a caption's text
    uint32_t clrTitleTextEnd { 0 }; // "04": gradient end of a caption's text
    uint32_t clrGround { 0 }; // "02": copied to g_clrFace
    uint32_t clrTitleBar { 0 }; // "05": caption band
    uint32_t clrBorder { 0 }; // "06": copied to g_clrBorder
    uint32_t clrShade { 0 }; // "07": copied to g_clrShade
    uint32_t clrGlyphEnd { 0 }; // "08": end of the gradient on the big drawn play face
    uint32_t clrSpare9 { 0 }; // "09": read, used by nothing
    uint32_t clrText { 0 }; // "10": copied to g_clrText
    uint32_t clrFaceStartA { 0 }; // "12": drawn faces, start of layers 0 and 1, normal state
    uint32_t clrFaceStartB { 0 }; // "13": drawn faces, start of layers 2 and 3, normal state
    uint32_t clrFaceEnd { 0 }; // "14": drawn faces, end colour
    uint32_t clrFaceHover { 0 }; // "11": drawn faces in hover; darkened by 20 when down
    uint32_t clrMenuShadow { 0 }; // "15"
    uint32_t clrMenuFrame { 0 }; // "16": menu frame and check mark
    uint32_t clrMenuColumn { 0 }; // "17": menu icon column
    uint32_t clrMenuBack { 0 }; // "18": menu ground
    uint32_t clrMenuText { 0 }; // "19"
    uint32_t clrMenuHighlight { 0 }; // "20": frame and text of the selected menu entry
    uint32_t clrSpare22 { 0 }; // "22"
    uint32_t clrSpare23 { 0 }; // "23"
    uint32_t clrSpare24 { 0 }; // "24"
    uint32_t clrSpare21 { 0 }; // "21"
    uint32_t clrSliderStart { 0 }; // "25": slider bar gradient start
    uint32_t clrSliderEnd { 0 }; // "26": slider bar gradient end
    uint32_t clrSpare27 { 0 }; // "27"
};
static_assert(sizeof(tagQKUIColors) == 27 * sizeof(uint32_t));

// The working colours, with their built-in values.
extern uint32_t g_clrFace; // ground of windows and controls (60, 60, 60)
extern uint32_t g_clrBorder; // frames and outlines (160, 160, 160)
extern uint32_t g_clrShade; // fill of input fields and check boxes (100, 100, 100)
extern uint32_t g_clrText; // text and accents (200, 0, 0)
extern uint32_t g_clrToolTipText; // tool tip text (200, 0, 0); the main window copies g_clrText here

// The theme table: all 0 (black) until the theme file is read.
extern tagQKUIColors g_UIColors;

// Text that is not tied to a font record (tool tips, menus, some static text) uses this family.
extern QString g_strFontName;
// Added to the base 25 of the menu's row and column metrics.
extern int32_t g_nFontOffset;
// Nonzero: text drawn through DrawSkinString is filled as outlines.
extern int32_t g_bTextSmoothing;

// The two-digit attribute of the theme file that fills field number `field` (0 to 26) of
// tagQKUIColors, e.g. field 3 (clrGround) is filled by "02". Null outside the range.
const char16_t* QKUIColorAttribute(int field);

// Reads skin/uicolors/UIColors.uic: the palette of the `color` element whose nID equals the
// selID of the `UI` element fills g_UIColors and four working colours.
void LoadUIColors();
// Reads skin/usebigfont.dat: font offset, text smoothing and the font family.
void LoadBigFontFile();
// Puts every value of this file back to its built-in default (used by tests and start-up).
void QKResetTheme();

// RGB helpers on 0x00BBGGRR colours.
constexpr uint32_t QKRGB(uint32_t r, uint32_t g, uint32_t b)
{
    return (r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16);
}
constexpr uint32_t QKRed(uint32_t clr)
{
    return clr & 0xFF;
}
constexpr uint32_t QKGreen(uint32_t clr)
{
    return (clr >> 8) & 0xFF;
}
constexpr uint32_t QKBlue(uint32_t clr)
{
    return (clr >> 16) & 0xFF;
}

// Per channel a + (b - a) * weight, truncated and masked to 8 bits; b when a equals b.
uint32_t ColorMix(double weight, uint32_t a, uint32_t b);
// Each channel lowered by 20, not below 0.
uint32_t ColorDarken20(uint32_t clr);
// Each channel raised by `amount`, capped at 255 (hover text, disabled text).
uint32_t QKColorLighten(uint32_t clr, uint32_t amount);
// Each channel lowered by `amount`, not below 0.
uint32_t QKColorDarken(uint32_t clr, uint32_t amount);

// Whether the desktop offers the taskbar's counterpart (a D-Bus session bus that answers).
int IsWindows7OrLater();
