#include "X11Screen.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace orbeltest {

namespace {

int IgnoreXError(Display*, XErrorEvent*)
{
    return 0;
}

} // namespace

X11Screen::X11Screen(bool bIgnoreErrors)
{
    pDisplay = XOpenDisplay(nullptr);
    if (!pDisplay)
        return;
    if (bIgnoreErrors)
        XSetErrorHandler(IgnoreXError);
    nWidth = DisplayWidth(pDisplay, DefaultScreen(pDisplay));
    nHeight = DisplayHeight(pDisplay, DefaultScreen(pDisplay));
}

X11Screen::~X11Screen()
{
    if (pDisplay)
        XCloseDisplay(pDisplay);
}

std::vector<uint32_t> X11Screen::Read(int x, int y, int w, int h) const
{
    std::vector<uint32_t> pixels;
    if (!pDisplay || w <= 0 || h <= 0)
        return pixels;
    XImage* pImage = XGetImage(pDisplay, DefaultRootWindow(pDisplay), x, y, static_cast<unsigned>(w), static_cast<unsigned>(h), AllPlanes, ZPixmap);
    if (!pImage)
        return pixels;
    pixels.reserve(static_cast<size_t>(w) * static_cast<size_t>(h));
    for (int j = 0; j < h; ++j) {
        for (int i = 0; i < w; ++i)
            pixels.push_back(static_cast<uint32_t>(XGetPixel(pImage, i, j) & 0xFFFFFFu));
    }
    XDestroyImage(pImage);
    return pixels;
}

std::vector<unsigned long> X11Screen::ViewableWindows() const
{
    std::vector<unsigned long> found;
    if (!pDisplay)
        return found;
    Window root = DefaultRootWindow(pDisplay);
    Window parent = 0;
    Window* pChildren = nullptr;
    unsigned int nChildren = 0;
    XSync(pDisplay, False);
    if (!XQueryTree(pDisplay, root, &root, &parent, &pChildren, &nChildren))
        return found;
    for (unsigned int i = 0; i < nChildren; ++i) {
        XWindowAttributes attr {};
        if (XGetWindowAttributes(pDisplay, pChildren[i], &attr) && attr.map_state == IsViewable)
            found.push_back(pChildren[i]);
    }
    if (pChildren)
        XFree(pChildren);
    return found;
}

long X11Screen::Property32(unsigned long window, const char* pszName, const char* pszType) const
{
    const std::vector<long> items = Property32Items(window, pszName, pszType, 1);
    return items.empty() ? -1 : items.front();
}

std::vector<long> X11Screen::Property32Items(unsigned long window, const char* pszName, const char* pszType, long nMax) const
{
    std::vector<long> items;
    if (!pDisplay)
        return items;
    const Atom name = XInternAtom(pDisplay, pszName, False);
    const Atom type = XInternAtom(pDisplay, pszType, False);
    Atom actualType = 0;
    int format = 0;
    unsigned long nItems = 0;
    unsigned long nAfter = 0;
    unsigned char* pData = nullptr;
    const Window target = window ? window : DefaultRootWindow(pDisplay);
    if (XGetWindowProperty(pDisplay, target, name, 0, nMax, False, type, &actualType, &format, &nItems, &nAfter, &pData) == Success && pData && format == 32)
        items.assign(reinterpret_cast<long*>(pData), reinterpret_cast<long*>(pData) + nItems);
    if (pData)
        XFree(pData);
    return items;
}

void X11Screen::RequestClose(unsigned long window) const
{
    if (!pDisplay)
        return;
    SendClientMessage(window, "WM_PROTOCOLS", { static_cast<long>(XInternAtom(pDisplay, "WM_DELETE_WINDOW", False)), CurrentTime }, false);
}

void X11Screen::SendClientMessage(unsigned long window, const char* pszType, const std::vector<long>& items, bool bToRoot) const
{
    if (!pDisplay)
        return;
    XEvent ev {};
    ev.xclient.type = ClientMessage;
    ev.xclient.window = window;
    ev.xclient.message_type = XInternAtom(pDisplay, pszType, False);
    ev.xclient.format = 32;
    for (size_t i = 0; i < items.size() && i < 5; ++i)
        ev.xclient.data.l[i] = items[i];
    if (bToRoot)
        XSendEvent(pDisplay, DefaultRootWindow(pDisplay), False, SubstructureRedirectMask | SubstructureNotifyMask, &ev);
    else
        XSendEvent(pDisplay, window, False, NoEventMask, &ev);
    XFlush(pDisplay);
}

} // namespace orbeltest
