#include "DesktopPanel.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xfixes.h>

namespace orbeltest {

DesktopPanel::DesktopPanel(int nHeight)
    : pDisplay(XOpenDisplay(nullptr))
{
    if (!pDisplay)
        return;
    const int w = DisplayWidth(pDisplay, DefaultScreen(pDisplay));
    window = XCreateSimpleWindow(pDisplay, DefaultRootWindow(pDisplay), 0, 0, w, nHeight, 0, 0, WhitePixel(pDisplay, DefaultScreen(pDisplay)));
    const Atom dock = XInternAtom(pDisplay, "_NET_WM_WINDOW_TYPE_DOCK", False);
    XChangeProperty(pDisplay, window, XInternAtom(pDisplay, "_NET_WM_WINDOW_TYPE", False), XA_ATOM, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&dock), 1);
    // Top edge reserved over the whole width: left, right, top, bottom, then the start and
    // end of each edge's stretch.
    const long strut[12] = { 0, 0, nHeight, 0, 0, 0, 0, 0, 0, w - 1, 0, 0 };
    XChangeProperty(pDisplay, window, XInternAtom(pDisplay, "_NET_WM_STRUT_PARTIAL", False), XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(strut), 12);
    XChangeProperty(pDisplay, window, XInternAtom(pDisplay, "_NET_WM_STRUT", False), XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(strut), 4);
    XMapWindow(pDisplay, window);
    XFlush(pDisplay);
}

DesktopPanel::~DesktopPanel()
{
    if (!pDisplay)
        return;
    XDestroyWindow(pDisplay, window);
    XCloseDisplay(pDisplay);
}

QRect DesktopPanel::WorkArea() const
{
    if (!pDisplay)
        return QRect();
    Atom type = None;
    int format = 0;
    unsigned long n = 0;
    unsigned long after = 0;
    unsigned char* data = nullptr;
    QRect rc;
    const Atom workArea = XInternAtom(pDisplay, "_NET_WORKAREA", False);
    if (XGetWindowProperty(pDisplay, DefaultRootWindow(pDisplay), workArea, 0, 4, False, XA_CARDINAL, &type, &format, &n, &after, &data) == Success && data && n == 4) {
        const long* v = reinterpret_cast<const long*>(data);
        rc = QRect(static_cast<int>(v[0]), static_cast<int>(v[1]), static_cast<int>(v[2]), static_cast<int>(v[3]));
    }
    if (data)
        XFree(data);
    return rc;
}

bool DesktopPanel::CursorShows() const
{
    XFixesCursorImage* img = pDisplay ? XFixesGetCursorImage(pDisplay) : nullptr;
    if (!img)
        return true;
    bool bShows = false;
    for (int i = 0; i < img->width * img->height && !bShows; ++i)
        bShows = ((img->pixels[i] >> 24) & 0xFF) != 0;
    XFree(img);
    return bShows;
}

} // namespace orbeltest
