#pragma once
// CQKMenuExShadow: the drawn shadow around one open menu window.
//
// A small translucent window that takes no input, placed at the menu window's rectangle grown
// by 4 pixels and cut to a ring 6 pixels wide with rounded outer corners, so that it never
// covers the menu itself. Its picture is five outlines of clrMenuShadow with rising alpha,
// from the outside in, painted only when its size changes:
//
//   ring i | left, top | width, height (outline)     | alpha
//   -------+-----------+-----------------------------+------
//   0      | -1        | cx + 1, cy + 1 (all outside) | 5
//   1      | 0         | cx - 1, cy - 1               | 10
//   2      | 1         | cx - 3, cy - 3               | 20
//   3      | 2         | cx - 5, cy - 5               | 40
//   4      | 3         | cx - 7, cy - 7               | 80
//
// The menu covers the inner 2 pixels of the ring, so the 4 pixels around the menu show the
// rings 1 to 4. Without a compositor the system shows the shadow's colour unblended.
#include "platform/CQKHostWnd.h"

#include <QImage>
#include <QRect>
#include <vector>

class CQKMenuExShadow : public CQKHostWnd
{
public:
    // How far the shadow window reaches beyond the menu window on every side.
    static constexpr int kGrow = 4;

    // Makes the hidden window above `pOwner`.
    bool Create(CQKHostWnd* pOwner);
    // Places it around a menu window's screen rectangle; a new size paints it anew.
    void Place(const QRect& rcMenu);
    // How many times the picture was painted (a move without a new size paints nothing).
    int PaintCount() const { return nPaints; }

    // The rings for a window of cx by cy, on a transparent picture.
    static QImage PaintRings(int cx, int cy);
    // The ring the window is cut to: the rounded rectangle less the rectangle 6 inside it.
    static std::vector<QRect> RingRegion(int cx, int cy);

protected:
    void OnSize(int w, int h) override;

private:
    int nPaints { 0 };
    QSize szPainted;
};
