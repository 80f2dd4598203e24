#include "player/QKFrameGrips.h"

#include "platform/CQKHostWnd.h"

#include <algorithm>

namespace QKFrameGrips {

namespace {

bool Between(int v, int lo, int hi)
{
    return v >= lo && v <= hi;
}

bool MovesLeft(int nZone)
{
    return nZone == 1 || nZone == 5 || nZone == 8;
}

bool MovesRight(int nZone)
{
    return nZone == 2 || nZone == 6 || nZone == 7;
}

bool MovesTop(int nZone)
{
    return nZone == 3 || nZone == 5 || nZone == 6;
}

bool MovesBottom(int nZone)
{
    return nZone == 4 || nZone == 7 || nZone == 8;
}

} // namespace

int HitZone(QPoint pt, QSize szClient)
{
    const int x = pt.x();
    const int y = pt.y();
    const int w = szClient.width();
    const int h = szClient.height();
    const bool bSideY = y >= 10 && y < h - 10;
    const bool bEdgeX = x >= 10 && x < w - 10;
    if (Between(x, 0, 4) && bSideY)
        return 1;
    if (Between(x, w - 5, w - 1) && bSideY)
        return 2;
    if (bEdgeX && Between(y, 0, 2))
        return 3;
    if (bEdgeX && Between(y, h - 3, h - 1))
        return 4;
    const bool bLeft = Between(x, 0, 9);
    const bool bRight = Between(x, w - 10, w - 1);
    const bool bTop = Between(y, 0, 9);
    const bool bBottom = Between(y, h - 10, h - 1);
    if (bLeft && bTop)
        return 5;
    if (bRight && bTop)
        return 6;
    if (bRight && bBottom)
        return 7;
    if (bLeft && bBottom)
        return 8;
    return 0;
}

uint32_t CursorOf(int nZone)
{
    switch (nZone) {
    case 1:
    case 2:
        return IDC_SIZEWE;
    case 3:
    case 4:
        return IDC_SIZENS;
    case 5:
    case 7:
        return IDC_SIZENWSE;
    case 6:
    case 8:
        return IDC_SIZENESW;
    default:
        return 0;
    }
}

uint32_t EdgesOf(int nZone)
{
    uint32_t nEdges = 0;
    if (MovesLeft(nZone))
        nEdges |= QKEDGE_LEFT;
    if (MovesRight(nZone))
        nEdges |= QKEDGE_RIGHT;
    if (MovesTop(nZone))
        nEdges |= QKEDGE_TOP;
    if (MovesBottom(nZone))
        nEdges |= QKEDGE_BOTTOM;
    return nEdges;
}

bool InTitleStrip(QPoint pt)
{
    return pt.y() >= 0 && pt.y() < kTitleHeight;
}

bool InTitleDoubleClickStrip(QPoint pt, int nClientWidth)
{
    return InTitleStrip(pt) && pt.x() < nClientWidth - kTitleButtonsWidth;
}

QRect DragResize(int nZone, QPoint& ptStart, QPoint ptScreen, const QRect& rcWindow, QSize szMin)
{
    // Edges as the window system counts them: right and bottom lie one past the last pixel.
    int left = rcWindow.x();
    int top = rcWindow.y();
    int right = rcWindow.x() + rcWindow.width();
    int bottom = rcWindow.y() + rcWindow.height();
    const int minW = szMin.width();
    const int minH = szMin.height();
    const int dx = ptScreen.x() - ptStart.x();
    const int dy = ptScreen.y() - ptStart.y();

    QPoint p = ptScreen;
    if (MovesLeft(nZone))
        p.setX(std::min(p.x(), right - minW));
    if (MovesRight(nZone))
        p.setX(std::max(p.x(), left + minW));
    if (MovesTop(nZone))
        p.setY(std::min(p.y(), bottom - minH));
    if (MovesBottom(nZone))
        p.setY(std::max(p.y(), top + minH));
    ptStart = p;
    if (dx == 0 && dy == 0)
        return QRect();

    if (MovesLeft(nZone))
        left = std::min(left + dx, right - minW);
    if (MovesRight(nZone))
        right = std::max(right + dx, left + minW);
    if (MovesTop(nZone))
        top = std::min(top + dy, bottom - minH);
    if (MovesBottom(nZone))
        bottom = std::max(bottom + dy, top + minH);
    return QRect(left, top, right - left, bottom - top);
}

} // namespace QKFrameGrips
