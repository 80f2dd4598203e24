#pragma once
// The arithmetic of the main window's hand-made frame: which zone of the client area the
// pointer is in, the cursor of each resize grip, and the window that a grip drag makes. Pure
// functions, so that the window's frame unit and the tests share them.
//
// The grips, tested in this order (w and h the client size):
//
//   zone | edge         | x                 | y                  | cursor
//   -----+--------------+-------------------+--------------------+-------------
//   1    | left         | 0 to 4            | 10 below h-10      | IDC_SIZEWE
//   2    | right        | w-5 to w-1        | 10 below h-10      | IDC_SIZEWE
//   3    | top          | 10 below w-10     | 0 to 2             | IDC_SIZENS
//   4    | bottom       | 10 below w-10     | h-3 to h-1         | IDC_SIZENS
//   5    | top left     | 0 to 9            | 0 to 9             | IDC_SIZENWSE
//   6    | top right    | w-10 to w-1       | 0 to 9             | IDC_SIZENESW
//   7    | bottom right | w-10 to w-1       | h-10 to h-1        | IDC_SIZENWSE
//   8    | bottom left  | 0 to 9            | h-10 to h-1        | IDC_SIZENESW
//
// The side grips are 5 pixels wide and the top and bottom ones only 3 high, so that the title
// strip stays easy to grab; the corners are 10 by 10.
#include <QPoint>
#include <QRect>
#include <QSize>
#include <cstdint>

namespace QKFrameGrips {

// The title strip: the top 30 pixels. Its right 76 pixels hold the window buttons and do not
// take double clicks.
inline constexpr int kTitleHeight = 30;
inline constexpr int kTitleButtonsWidth = 76;
// A press on the title strip becomes a move when the pointer has gone this far (in the sum of
// both directions), so that the small jitter of a double click moves nothing.
inline constexpr int kMoveStartDistance = 3;
// The smallest window that a grip drag makes: a 320 by 240 video area and the frame.
inline constexpr int kMinWidth = 330;
inline constexpr int kMinHeight = 322;

// The grip (1 to 8) under `pt` in a client area of `szClient`, or 0.
int HitZone(QPoint pt, QSize szClient);
// The IDC_* cursor of a grip; 0 for zone 0.
uint32_t CursorOf(int nZone);
// The QKEDGE_* edges that a grip moves; 0 for zone 0.
uint32_t EdgesOf(int nZone);

bool InTitleStrip(QPoint pt);
// The part of the title strip where a double click maximises and restores.
bool InTitleDoubleClickStrip(QPoint pt, int nClientWidth);

// One mouse move of a grip drag. `ptStart` is the drag's anchor in screen pixels, `ptScreen`
// the pointer, `rcWindow` the window now. The anchor moves to the pointer but stops where the
// window's edge stops at the smallest size, so that the pointer must come back to the edge
// before the window follows again. Returns the new window, or a null rectangle when the
// pointer did not move.
QRect DragResize(int nZone, QPoint& ptStart, QPoint ptScreen, const QRect& rcWindow, QSize szMin = QSize(kMinWidth, kMinHeight));

} // namespace QKFrameGrips
