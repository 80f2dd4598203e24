#pragma once
// DesktopPanel: a panel of the desktop, as a test makes it. A dock window along the top edge
// of the screen reserves its height, so that the window manager's free area differs from the
// whole screen. It also tells what the X server shows as the pointer.
#include "support/X11Screen.h"

#include <QRect>

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
    // Asks the window manager to maximise a window, as the desktop's own command does.
    void AskToMaximise(unsigned long target) const;
    // The window manager shows the window in this state ("_NET_WM_STATE_FULLSCREEN", ...).
    bool InState(unsigned long target, const char* pszState) const;

private:
    X11Screen x11;
    unsigned long window { 0 };
};

} // namespace orbeltest
