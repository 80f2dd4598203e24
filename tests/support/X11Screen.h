#pragma once
// X11Screen: the X display of an end-to-end test or a benchmark, looked at through its root
// window. It needs nothing but Xlib, so that the benchmarks use it without Qt.
#include <cstdint>
#include <vector>

struct _XDisplay;

namespace orbeltest {

class X11Screen
{
public:
    // Opens the display that DISPLAY names. With bIgnoreErrors, X errors (windows that vanish
    // while they are looked at) are ignored instead of ending the process.
    explicit X11Screen(bool bIgnoreErrors = false);
    ~X11Screen();
    X11Screen(const X11Screen&) = delete;
    X11Screen& operator=(const X11Screen&) = delete;

    bool IsOpen() const { return pDisplay != nullptr; }
    _XDisplay* Connection() const { return pDisplay; }
    int Width() const { return nWidth; }
    int Height() const { return nHeight; }

    // The pixels (0xRRGGBB) of a rectangle of the screen, row by row, as the screen shows
    // it (child windows of other depths, the video surface, included); empty when unreadable.
    std::vector<uint32_t> Read(int x, int y, int w, int h) const;
    // The mapped top-level windows, bottom first.
    std::vector<unsigned long> ViewableWindows() const;
    // The first 32-bit item of a window's property (the root window's for window 0), or -1
    // when the window has no such property.
    long Property32(unsigned long window, const char* pszName, const char* pszType) const;
    // Up to nMax 32-bit items of the property; empty when the window has none.
    std::vector<long> Property32Items(unsigned long window, const char* pszName, const char* pszType, long nMax) const;
    // Asks the window to close, as a window manager's close button does.
    void RequestClose(unsigned long window) const;
    // Sends a window manager's message about `window` (format 32, up to five items): to the
    // root window where the window manager listens, or with bToRoot false to the window.
    void SendClientMessage(unsigned long window, const char* pszType, const std::vector<long>& items, bool bToRoot) const;

private:
    _XDisplay* pDisplay { nullptr };
    int nWidth { 0 };
    int nHeight { 0 };
};

} // namespace orbeltest
