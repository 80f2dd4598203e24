#pragma once
// DesktopPanel: a panel of the desktop, as a test makes it. A dock window along the top edge
// of the screen reserves its height, so that the window manager's free area differs from the
// whole screen. It also tells what the X server shows as the pointer.
#include <QRect>

struct _XDisplay;

namespace orbeltest {

class DesktopPanel
{
public:
    explicit DesktopPanel(int nHeight);
    ~DesktopPanel();
    DesktopPanel(const DesktopPanel&) = delete;
    DesktopPanel& operator=(const DesktopPanel&) = delete;

    // The free area the window manager announces (_NET_WORKAREA of the first desktop); empty
    // while it announces none.
    QRect WorkArea() const;
    // The pointer's picture, as the X server shows it now, has a visible pixel.
    bool CursorShows() const;

private:
    _XDisplay* pDisplay { nullptr };
    unsigned long window { 0 };
};

} // namespace orbeltest
