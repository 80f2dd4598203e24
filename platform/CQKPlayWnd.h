#pragma once
// CQKPlayWnd: the video surface, a child window of the main window that shows the frames of
// the playback library.
//
// The frames are drawn with OpenGL on the GUI thread through the library's render operations
// (qkplay_video_*): the library tells the surface from its own thread that a new frame is
// ready, the surface schedules a repaint on the GUI thread and draws the frame there. The
// surface has no data and no painting of its own: it is black while nothing plays.
//
// It is hidden when made. Mouse input passes through it to the host below, so that clicks and
// double clicks on the picture reach the main window as clicks in its video area.
//
// Threads: GUI thread only, except that VideoTarget()'s pointer is handed to qkplaydll_Play
// on the play thread. Destroy() (or the destructor) detaches the surface from the library
// before its OpenGL context goes; a file that still plays goes on without a picture.
#include "engine/qkplay.h"

#include <memory>

class QWidget;
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
    void Show(bool bShow);
    bool IsVisible() const;

    // The video target to pass to qkplaydll_Play; valid as long as this object lives. It
    // shows a picture once the surface has been shown (its OpenGL context is made then).
    qkplay_video* VideoTarget();

    // Takes the newest frame from the library without showing it. For a GUI thread that
    // waits for the play thread: while nobody draws, the library holds each new frame for a
    // while before it drops it, and a stop would wait behind that.
    void TakeFrame();

    // The surface's widget, for platform code and tests (a QOpenGLWidget), or null.
    QWidget* NativeWidget() const;

private:
    struct Impl;
    std::unique_ptr<Impl> pImpl;
};
