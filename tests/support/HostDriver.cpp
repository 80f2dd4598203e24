#include "HostDriver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>

namespace orbeltest {

void HostDriver::SendMouse(int type, QPoint pt, Qt::MouseButton button)
{
    QWindow* win = host.NativeWindow();
    if (!win)
        return;
    const QPointF local(pt);
    const QPointF global = win->mapToGlobal(pt);
    QMouseEvent ev(static_cast<QEvent::Type>(type), local, local, global, button, held, Qt::NoModifier);
    // Events carry the time, as the window system's do; double clicks are told by it.
    ev.setTimestamp(nTime);
    QCoreApplication::sendEvent(win, &ev);
}

void HostDriver::Move(QPoint pt)
{
    SendMouse(QEvent::MouseMove, pt, Qt::NoButton);
}

void HostDriver::Press(QPoint pt, Qt::MouseButton button)
{
    // Presses of a test are apart in time unless DoubleClick makes them quick.
    nTime += 1000;
    held |= button;
    SendMouse(QEvent::MouseButtonPress, pt, button);
}

void HostDriver::Release(QPoint pt, Qt::MouseButton button)
{
    held &= ~Qt::MouseButtons(button);
    SendMouse(QEvent::MouseButtonRelease, pt, button);
}

void HostDriver::Click(QPoint pt, Qt::MouseButton button)
{
    Press(pt, button);
    Release(pt, button);
}

void HostDriver::DoubleClick(QPoint pt)
{
    // What the window system gives Qt for a double click: a second press soon after the
    // first, which Qt follows with its double click. (On X11 Qt hides that press from the
    // widget, a flag these synthetic events cannot carry; the host handles either way.)
    Click(pt);
    nTime += 50;
    held |= Qt::LeftButton;
    SendMouse(QEvent::MouseButtonPress, pt, Qt::LeftButton);
    SendMouse(QEvent::MouseButtonDblClick, pt, Qt::LeftButton);
    Release(pt);
}

void HostDriver::Wait(int ms)
{
    nTime += static_cast<uint64_t>(ms);
}

void HostDriver::Leave()
{
    QWindow* win = host.NativeWindow();
    if (!win)
        return;
    QEvent ev(QEvent::Leave);
    QCoreApplication::sendEvent(win, &ev);
}

void HostDriver::Wheel(QPoint pt, int notches, Qt::KeyboardModifiers mods)
{
    QWindow* win = host.NativeWindow();
    if (!win)
        return;
    const QPointF local(pt);
    QWheelEvent ev(local, win->mapToGlobal(local), QPoint(), QPoint(0, notches * 120), held, mods, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(win, &ev);
}

// The text a key types, as the window system gives it: letters, digits and space, unless
// Ctrl or Alt is held.
static QString TypedText(int qtKey, Qt::KeyboardModifiers mods)
{
    if (mods & (Qt::ControlModifier | Qt::AltModifier))
        return QString();
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) {
        const QChar c(static_cast<char16_t>(qtKey));
        return (mods & Qt::ShiftModifier) ? QString(c) : QString(c.toLower());
    }
    if ((qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) || qtKey == Qt::Key_Space)
        return QString(QChar(static_cast<char16_t>(qtKey)));
    return QString();
}

void HostDriver::KeyPress(int qtKey, Qt::KeyboardModifiers mods)
{
    if (QWindow* win = host.NativeWindow()) {
        QKeyEvent ev(QEvent::KeyPress, qtKey, mods, TypedText(qtKey, mods));
        QCoreApplication::sendEvent(win, &ev);
    }
}

void HostDriver::KeyRelease(int qtKey, Qt::KeyboardModifiers mods)
{
    if (QWindow* win = host.NativeWindow()) {
        QKeyEvent ev(QEvent::KeyRelease, qtKey, mods, TypedText(qtKey, mods));
        QCoreApplication::sendEvent(win, &ev);
    }
}

void HostDriver::Key(int qtKey, Qt::KeyboardModifiers mods)
{
    KeyPress(qtKey, mods);
    KeyRelease(qtKey, mods);
}

QImage HostDriver::Screen() const
{
    QWindow* win = host.NativeWindow();
    if (!win || !win->screen())
        return QImage();
    return win->screen()->grabWindow(win->winId()).toImage().convertToFormat(QImage::Format_ARGB32);
}

void HostDriver::Pump(int ms)
{
    QElapsedTimer t;
    t.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } while (t.elapsed() < ms);
}

bool HostDriver::WaitFor(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < timeoutMs)
        Pump(5);
    return done();
}

} // namespace orbeltest
