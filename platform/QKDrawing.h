#pragma once
// The painting vocabulary of the program: colours, pens, brushes, fonts and string formats
// as plain values, with the numbers the painters use. CQKGraphics turns them into QPainter
// calls. All of them are cheap to make per paint, which is how painters use them.
#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstdint>

// Colours are 0xAARRGGBB.
using QKARGB = uint32_t;

inline constexpr QKARGB QKMakeARGB(uint32_t a, uint32_t r, uint32_t g, uint32_t b)
{
    return ((a & 0xFF) << 24) | ((r & 0xFF) << 16) | ((g & 0xFF) << 8) | (b & 0xFF);
}
// A colour of the program's data and files (0x00BBGGRR) with an alpha.
inline constexpr QKARGB QKColorFromBGR(uint32_t clrBGR, uint32_t alpha = 255)
{
    return QKMakeARGB(alpha, clrBGR & 0xFF, (clrBGR >> 8) & 0xFF, (clrBGR >> 16) & 0xFF);
}
// The other way round: 0x00BBGGRR of an ARGB colour, alpha dropped.
inline constexpr uint32_t QKBGRFromARGB(QKARGB argb)
{
    return ((argb >> 16) & 0xFF) | (argb & 0xFF00) | ((argb & 0xFF) << 16);
}
inline constexpr uint32_t QKAlphaOf(QKARGB c)
{
    return c >> 24;
}
inline constexpr uint32_t QKRedOf(QKARGB c)
{
    return (c >> 16) & 0xFF;
}
inline constexpr uint32_t QKGreenOf(QKARGB c)
{
    return (c >> 8) & 0xFF;
}
inline constexpr uint32_t QKBlueOf(QKARGB c)
{
    return c & 0xFF;
}

// Smoothing modes: 2 (high quality) and 4 (antialias) smooth edges; 0, 1, 3 do not.
enum : int {
    QKSmoothingDefault = 0,
    QKSmoothingHighSpeed = 1,
    QKSmoothingHighQuality = 2,
    QKSmoothingNone = 3,
    QKSmoothingAntiAlias = 4,
};
// Interpolation of scaled pictures: nearest neighbour (5) and low quality (1) are blocky,
// the others smooth; 7 is what the painters ask for.
enum : int {
    QKInterpolationDefault = 0,
    QKInterpolationLowQuality = 1,
    QKInterpolationHighQuality = 2,
    QKInterpolationBilinear = 3,
    QKInterpolationBicubic = 4,
    QKInterpolationNearestNeighbor = 5,
    QKInterpolationHighQualityBilinear = 6,
    QKInterpolationHighQualityBicubic = 7,
};
// Text rendering hints: 3, 4 and 5 smooth glyph edges; 0, 1 and 2 do not.
enum : int {
    QKTextHintSystemDefault = 0,
    QKTextHintSingleBitPerPixelGridFit = 1,
    QKTextHintSingleBitPerPixel = 2,
    QKTextHintAntiAliasGridFit = 3,
    QKTextHintAntiAlias = 4,
    QKTextHintClearTypeGridFit = 5,
};
// Clip combine modes.
enum : int {
    QKCombineReplace = 0,
    QKCombineIntersect = 1,
    QKCombineUnion = 2,
    QKCombineXor = 3,
    QKCombineExclude = 4,
    QKCombineComplement = 5,
};
// Line caps; the anchor caps (0x10 and up) are shapes drawn at the line's end.
enum : int {
    QKLineCapFlat = 0,
    QKLineCapSquare = 1,
    QKLineCapRound = 2,
    QKLineCapTriangle = 3,
    QKLineCapNoAnchor = 0x10,
    QKLineCapSquareAnchor = 0x11,
    QKLineCapRoundAnchor = 0x12,
    QKLineCapDiamondAnchor = 0x13,
    QKLineCapArrowAnchor = 0x14,
};
enum : int {
    QKLineJoinMiter = 0,
    QKLineJoinBevel = 1,
    QKLineJoinRound = 2,
    QKLineJoinMiterClipped = 3,
};
enum : int {
    QKDashSolid = 0,
    QKDashDash = 1,
    QKDashDot = 2,
    QKDashDashDot = 3,
    QKDashDashDotDot = 4,
};
// Wrap modes of a gradient brush outside its rectangle.
enum : int {
    QKWrapTile = 0,
    QKWrapTileFlipX = 1,
    QKWrapTileFlipY = 2,
    QKWrapTileFlipXY = 3,
    QKWrapClamp = 4,
};
// Directions of a gradient made from a rectangle.
enum : int {
    QKGradientHorizontal = 0,
    QKGradientVertical = 1,
    QKGradientForwardDiagonal = 2,
    QKGradientBackwardDiagonal = 3,
};
// Font style flags.
enum : int {
    QKFontRegular = 0,
    QKFontBold = 1,
    QKFontItalic = 2,
    QKFontUnderline = 4,
    QKFontStrikeout = 8,
};
// String alignment (horizontal for Alignment, vertical for LineAlignment).
enum : int {
    QKAlignNear = 0,
    QKAlignCenter = 1,
    QKAlignFar = 2,
};
// String format flags.
enum : uint32_t {
    QKFormatDirectionRightToLeft = 0x0001,
    QKFormatDirectionVertical = 0x0002, // lines run top to bottom, glyphs turned clockwise
    QKFormatNoFitBlackBox = 0x0004,
    QKFormatMeasureTrailingSpaces = 0x0800,
    QKFormatNoWrap = 0x1000,
    QKFormatLineLimit = 0x2000, // only whole lines are drawn
    QKFormatNoClip = 0x4000, // text may spill out of the layout rectangle
};
enum : int {
    QKTrimmingNone = 0,
    QKTrimmingCharacter = 1,
    QKTrimmingWord = 2,
    QKTrimmingEllipsisCharacter = 3,
    QKTrimmingEllipsisWord = 4,
    QKTrimmingEllipsisPath = 5,
};
// What '&' in a text does: nothing, underlines the next character, or vanishes.
enum : int {
    QKHotkeyPrefixNone = 0,
    QKHotkeyPrefixShow = 1,
    QKHotkeyPrefixHide = 2,
};

// A pen: colour or brush, width, caps, join and dashes.
struct tagQKPen
{
    QKARGB clr { 0xFF000000 };
    float fWidth { 1.0f };
    int nStartCap { QKLineCapFlat };
    int nEndCap { QKLineCapFlat };
    int nLineJoin { QKLineJoinMiter };
    int nDashStyle { QKDashSolid };
    // When set, the pen paints with this brush instead of `clr` (a gradient pen).
    const struct tagQKBrush* pBrush { nullptr };
};

// A solid or linear-gradient brush.
struct tagQKBrush
{
    bool bLinear { false };
    QKARGB clr { 0xFF000000 }; // the solid colour, or the gradient's start colour
    QKARGB clrEnd { 0xFF000000 }; // the gradient's end colour
    QPointF ptStart; // the gradient runs from ptStart (clr) to ptEnd (clrEnd)
    QPointF ptEnd;
    int nWrapMode { QKWrapTile };
    bool bGammaCorrection { false }; // blend in linear light rather than in sRGB values

    static tagQKBrush Solid(QKARGB c);
    // A gradient from one point to another.
    static tagQKBrush Linear(QPointF pt1, QPointF pt2, QKARGB c1, QKARGB c2, int nWrap = QKWrapTile);
    // A gradient over a rectangle in one of the QKGradient* directions.
    static tagQKBrush LinearRect(const QRectF& rc, QKARGB c1, QKARGB c2, int nMode, int nWrap = QKWrapTile);
    // A gradient over a rectangle at an angle in degrees, clockwise from the x axis; at 0 it
    // runs from the left edge to the right edge.
    static tagQKBrush LinearAngle(const QRectF& rc, QKARGB c1, QKARGB c2, float fAngle, int nWrap = QKWrapTile);
};

// A font: family name, size in pixels, QKFont* style flags.
struct tagQKFontSpec
{
    QString strFamily { QStringLiteral("Arial") };
    float fSize { 12.0f };
    int nStyle { QKFontRegular };
};

// How text sits in its layout rectangle.
struct tagQKStringFormat
{
    int nAlign { QKAlignNear }; // along the line
    int nLineAlign { QKAlignNear }; // across the lines
    uint32_t nFlags { 0 }; // QKFormat* flags
    int nTrimming { QKTrimmingCharacter };
    int nHotkeyPrefix { QKHotkeyPrefixNone };
};

// Status codes of the painting calls; they are kept and not reported.
enum : int {
    QKStatusOk = 0,
    QKStatusGenericError = 1,
    QKStatusInvalidParameter = 2,
};
