#pragma once
// The arithmetic of the video area: where the picture goes in it by the display ratio mode,
// and the window that fits a video at a scale. Pure functions, so that the main window's units
// and the tests share them.
#include <QRect>
#include <QSize>
#include <cstdint>

namespace QKVideoLayout {

// The video area leaves 5 pixels on each side, 31 above and 51 below; in full screen it is the
// whole client area.
inline constexpr int kSideMargin = 5;
inline constexpr int kTopMargin = 31;
inline constexpr int kOutsideHeight = 82;
// The smallest video area that fitting the window to a video makes.
inline constexpr int kMinVideoWidth = 320;
inline constexpr int kMinVideoHeight = 240;
// A fitted window keeps at least this much of itself on the screen, right and below.
inline constexpr int kOffScreenGuard = 50;

// The video area of a client area of the given size.
QRect VideoRect(QSize szClient, bool bFullScreen);

// Where the picture goes inside rcVideo for display ratio mode nMode and a source of nWidth by
// nHeight: the largest box of the mode's ratio, centred (halves cut toward zero). Modes 0 and
// 2 use the source's ratio and give an empty rectangle when the source has no size; mode 1 and
// modes above 7 fill the whole area.
QRect PlacePicture(const QRect& rcVideo, int32_t nMode, int32_t nWidth, int32_t nHeight);

// The window for a video of nWidth by nHeight at dScale: the video area is the scaled size
// (cut toward zero, at least 320 by 240) plus the frame, placed on the centre of rcWindow but
// not left of or above the corner of rcFree (the screen less the desktop's panels), and with
// its corner at least 50 pixels inside rcFree's right and bottom edges; it may be larger than
// the screen. pszVideo receives the size of the video area.
QRect FitWindowToVideo(const QRect& rcWindow, int32_t nWidth, int32_t nHeight, double dScale, const QRect& rcFree, QSize* pszVideo = nullptr);

} // namespace QKVideoLayout
