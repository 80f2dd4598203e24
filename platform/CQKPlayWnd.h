#pragma once
// CQKPlayWnd: the video surface, a native child window of the main window that shows the
// frames of the playback library.
//
// The surface is a window of its own in the window system (an X11 child window, a Wayland
// sub-surface), placed in the main window by a container widget. The frames are drawn with
// OpenGL straight into that window's own buffers on the GUI thread through the library's
// render operations (qkplay_video_*) and swapped onto the screen; Qt never composes them into
// the main window. The library tells the surface from its own thread that a new frame is
// ready, and the surface draws it on the GUI thread as soon as that thread gets to it. The
// surface has no data and no painting of its own: it is black while nothing plays.
//
// It is hidden when made. It takes no mouse input: the window system passes clicks and
// double clicks on the picture to the main window below, as clicks in its video area.
// Windows of the program that should cover the video (menus, tips, dialogs, bars) are
// top-level windows, which lie above any child window.
//
// Threads: GUI thread only, except that VideoTarget()'s pointer is handed to qkplaydll_Play
// on the play thread. Destroy() (or the destructor) detaches the surface from the library
// before its OpenGL context goes; a file that still plays goes on without a picture.
#include "engine/qkplay.h"

#include <QRect>
#include <memory>

class QWidget;
class QWindow;
class CQKHostWnd;

class CQKPlayWnd
{
public:
    CQKPlayWnd();
    ~CQKPlayWnd();
    CQKPlayWnd(const CQKPlayWnd&) = delete;
    CQKPlayWnd& operator=(const CQKPlayWnd&) = delete;

    // Makes the surface as a hidden child of a host window. False when it exists already or
    // the host has no window.
    bool Create(CQKHostWnd* pParent);
    // The same with the host's widget (platform code and tests).
    bool Create(QWidget* pParent);
    // Detaches from the library and ends the window. Nothing when there is none.
    void Destroy();
    bool IsWindow() const;

    // Places the surface in its parent's client pixels, with a repaint.
    void MoveWindow(int nX, int nY, int nWidth, int nHeight);
    // Where the surface stands, in its parent's client pixels; empty when there is none.
    QRect GetRect() const;
    // The surface attaches to the library once the event loop runs after Create, or at the
    // latest when it is first shown, so a play started right after showing it draws into it.
    void Show(bool bShow);
    bool IsVisible() const;

    // The video target to pass to qkplaydll_Play; valid as long as this object lives.
    qkplay_video* VideoTarget();

    // Takes the newest frame from the library and draws it. For a GUI thread that waits for
    // the play thread: while nobody draws, the library holds each new frame for a while
    // before it drops it, and a stop would wait behind that.
    void TakeFrame();

    // The container widget in the host (platform code and tests), or null.
    QWidget* NativeWidget() const;
    // The native window the frames are drawn into (platform code and tests), or null.
    QWindow* NativeWindow() const;

private:
    struct Impl;
    std::unique_ptr<Impl> pImpl;
};
