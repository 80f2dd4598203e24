#pragma once
// HostDriver: input for a host window through Qt's own event path, and what the screen shows.
//
// Events go to the host's native window, as the window system's would, so Qt's routing
// (grabs, enter and leave, double clicks, key focus) runs before the host sees them. Points are
// client pixels of the host. Under the offscreen platform the "screen" is the window's backing
// store, so Screen() tells what really got painted, not what the host meant to paint.
#include "platform/CQKHostWnd.h"

#include <QImage>
#include <QPoint>
#include <cstdint>
#include <functional>

namespace orbeltest {

class HostDriver
{
public:
    explicit HostDriver(CQKHostWnd& target)
        : host(target)
    {
    }

    void Move(QPoint pt);
    void Press(QPoint pt, Qt::MouseButton button = Qt::LeftButton);
    void Release(QPoint pt, Qt::MouseButton button = Qt::LeftButton);
    void Click(QPoint pt, Qt::MouseButton button = Qt::LeftButton);
    // Press, release, double click, release: what a double click delivers.
    void DoubleClick(QPoint pt);
    // Lets `ms` milliseconds pass on the events' clock (two presses closer than the double
    // click interval make a double click).
    void Wait(int ms);
    // The pointer leaves the window.
    void Leave();
    // `notches` of the wheel (positive away from the user).
    void Wheel(QPoint pt, int notches, Qt::KeyboardModifiers mods = Qt::NoModifier);
    void KeyPress(int qtKey, Qt::KeyboardModifiers mods = Qt::NoModifier);
    void KeyRelease(int qtKey, Qt::KeyboardModifiers mods = Qt::NoModifier);
    // Press and release.
    void Key(int qtKey, Qt::KeyboardModifiers mods = Qt::NoModifier);

    // The window's pixels as the screen has them now (no repaint is asked for).
    QImage Screen() const;

    // Runs the event loop for `ms` milliseconds (0: once through what is queued).
    static void Pump(int ms = 0);
    // Runs the event loop until `done` is true or `timeoutMs` passes; returns `done()`.
    static bool WaitFor(const std::function<bool()>& done, int timeoutMs = 2000);

private:
    void SendMouse(int type, QPoint pt, Qt::MouseButton button);

    CQKHostWnd& host;
    Qt::MouseButtons held;
    uint64_t nTime { 100000 }; // the events' clock, in milliseconds
};

} // namespace orbeltest
