#include "DesktopPanel.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xfixes.h>

#include <algorithm>

namespace orbeltest {

DesktopPanel::DesktopPanel(int nHeight)
{
    Display* d = x11.Connection();
    if (!d)
        return;
    const int w = x11.Width();
    window = XCreateSimpleWindow(d, DefaultRootWindow(d), 0, 0, w, nHeight, 0, 0, WhitePixel(d, DefaultScreen(d)));
    const Atom dock = XInternAtom(d, "_NET_WM_WINDOW_TYPE_DOCK", False);
    XChangeProperty(d, window, XInternAtom(d, "_NET_WM_WINDOW_TYPE", False), XA_ATOM, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(&dock), 1);
    // Top edge reserved over the whole width: left, right, top, bottom, then the start and
    // end of each edge's stretch.
    const long strut[12] = { 0, 0, nHeight, 0, 0, 0, 0, 0, 0, w - 1, 0, 0 };
    XChangeProperty(d, window, XInternAtom(d, "_NET_WM_STRUT_PARTIAL", False), XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(strut), 12);
    XChangeProperty(d, window, XInternAtom(d, "_NET_WM_STRUT", False), XA_CARDINAL, 32, PropModeReplace, reinterpret_cast<const unsigned char*>(strut), 4);
    XMapWindow(d, window);
    XFlush(d);
}

DesktopPanel::~DesktopPanel()
{
    if (x11.Connection())
        XDestroyWindow(x11.Connection(), window);
}

QRect DesktopPanel::WorkArea() const
{
    const std::vector<long> v = x11.Property32Items(0, "_NET_WORKAREA", "CARDINAL", 4);
    return v.size() == 4 ? QRect(static_cast<int>(v[0]), static_cast<int>(v[1]), static_cast<int>(v[2]), static_cast<int>(v[3])) : QRect();
}

bool DesktopPanel::CursorShows() const
{
    XFixesCursorImage* img = x11.Connection() ? XFixesGetCursorImage(x11.Connection()) : nullptr;
    if (!img)
        return true;
    bool bShows = false;
    for (int i = 0; i < img->width * img->height && !bShows; ++i)
        bShows = ((img->pixels[i] >> 24) & 0xFF) != 0;
    XFree(img);
    return bShows;
}

void DesktopPanel::AskToMaximise(unsigned long target) const
{
    // Add both maximised states; the request comes from an application (source 1).
    x11.SendClientMessage(target, "_NET_WM_STATE", { 1, static_cast<long>(XInternAtom(x11.Connection(), "_NET_WM_STATE_MAXIMIZED_VERT", False)), static_cast<long>(XInternAtom(x11.Connection(), "_NET_WM_STATE_MAXIMIZED_HORZ", False)), 1 }, true);
}

bool DesktopPanel::InState(unsigned long target, const char* pszState) const
{
    const std::vector<long> states = x11.Property32Items(target, "_NET_WM_STATE", "ATOM", 16);
    return x11.Connection() && std::find(states.begin(), states.end(), static_cast<long>(XInternAtom(x11.Connection(), pszState, False))) != states.end();
}

} // namespace orbeltest
