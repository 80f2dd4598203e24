#pragma once
// The player's panel: which controls it has, in which order, and where they stand. Pure data
// and arithmetic, shared by the main window, the full-screen bars and the tests.
//
// The panel has a title row at a fixed height, and below the video area a seek row and a
// button row. Everything is a fixed offset from the left edge, the right edge or the video
// area's lower edge B, except the button row's centre c: the play button stands in the middle,
// (w - 25) / 2, unless the volume slider would then run into the full-screen button, in which
// case the whole row moves left to end just before it (c = w - 252).
#include <QRect>
#include <cstdint>

namespace QKPanelLayout {

// Control ids: the commands their clicks post.
enum : uint32_t {
    kIdClose = 2,
    kIdMinimize = 16,
    kIdMaximize = 17,
    kIdTimeCurrent = 18,
    kIdTimeTotal = 19,
    kIdPosSlider = 20,
    kIdPlay = 21,
    kIdStop = 22,
    kIdPrevious = 23,
    kIdNext = 24,
    kIdFullScreen = 25,
    kIdOpen = 26,
    kIdMute = 27,
    kIdVolSlider = 28,
    kIdOptions = 29,
    kIdTitle = 31,
};

// One control of the panel, in creation order (which is paint and Tab order).
struct tagQKPanelControl
{
    uint32_t nID;
    uint32_t nKind; // 0 button, 11 slider, 13 static
    uint32_t nFontID;
    bool bCacheBackground;
    const char16_t* pszToolTip; // null for none
};

inline constexpr int kControlCount = 16;
extern const tagQKPanelControl kControls[kControlCount];

// The button row's centre for a client width `w`.
int Centre(int w);
// Where control `nID` stands in a client area `w` wide whose video area ends at `B`; an empty
// rectangle for an id not on the panel.
QRect Place(uint32_t nID, int w, int B);
// Where control `nID` stands on a full-screen bar `W` wide (the title bar's ids 29, 31, 16, 17
// and 2, the bottom bar's 18 to 28); an empty rectangle for an id on neither.
QRect PlaceOnBar(uint32_t nID, int W);

} // namespace QKPanelLayout
