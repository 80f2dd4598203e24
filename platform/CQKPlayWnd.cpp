#include "CQKPlayWnd.h"

#include "CQKHostWnd.h"

#include <QCoreApplication>
#include <QEvent>
#include <QExposeEvent>
#include <QGuiApplication>
#include <QMetaObject>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <atomic>
#include <memory>

namespace {

// The native window behind CQKPlayWnd, with an OpenGL context of its own. The context is
// attached to the library through a small offscreen surface, so attaching and detaching never
// depend on the window's own native surface, which the window system may make late or end
// first (when the main window goes).
class CQKPlaySurface : public QWindow
{
public:
    explicit CQKPlaySurface(qkplay_video* pVideo)
        : pTarget(pVideo)
    {
        setSurfaceType(QSurface::OpenGLSurface);
        // Clicks go through to the main window below (an empty input region on X11).
        setFlag(Qt::WindowTransparentForInput);
        QSurfaceFormat fmt = requestedFormat();
        fmt.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
        // The swap waits for the display's refresh, and the library is told when it is done,
        // so that it shows each frame for as many refreshes as its time asks. A Wayland
        // compositor paces a window by its frame callbacks instead, and sends none while the
        // window is hidden: a swap that waited for them would hold up the GUI thread.
        fmt.setSwapInterval(bWayland ? 0 : 1);
        fmt.setAlphaBufferSize(0);
        setFormat(fmt);
        pTarget->get_proc_address = &CQKPlaySurface::GetProcAddress;
        pTarget->update = &CQKPlaySurface::OnFrameReady;
        pTarget->ctx = this;
    }

    ~CQKPlaySurface() override { Detach(); }

    CQKPlaySurface(const CQKPlaySurface&) = delete;
    CQKPlaySurface& operator=(const CQKPlaySurface&) = delete;

    // Makes the context and attaches it to the library; true when attached.
    bool Attach()
    {
        if (bAttached)
            return true;
        if (!pContext) {
            auto pNew = std::make_unique<QOpenGLContext>();
            pNew->setFormat(requestedFormat());
            if (!pNew->create())
                return false;
            auto pSurface = std::make_unique<QOffscreenSurface>();
            pSurface->setFormat(pNew->format());
            pSurface->create();
            if (!pSurface->isValid())
                return false;
            pContext = std::move(pNew);
            pOffscreen = std::move(pSurface);
        }
        if (!pContext->makeCurrent(pOffscreen.get()))
            return false;
        bAttached = qkplay_video_attach(pTarget) != 0;
        pContext->doneCurrent();
        return bAttached;
    }

    // Draws the newest frame (black while nothing plays) and, when the window is on the
    // screen, swaps it there. Without a native window yet the frame is still taken, into the
    // offscreen surface, so that the library goes on. bTake draws whatever the library still
    // hands over, also while a stop is under way and the file no longer counts as open.
    void Render(bool bTake = false)
    {
        bFramePending.store(false);
        if (!pContext)
            return;
        const bool bOwnSurface = handle() != nullptr;
        if (!pContext->makeCurrent(bOwnSurface ? static_cast<QSurface*>(this) : pOffscreen.get()))
            return;
        const qreal dRatio = devicePixelRatio();
        const int nWidth = bOwnSurface ? qRound(width() * dRatio) : 1;
        const int nHeight = bOwnSurface ? qRound(height() * dRatio) : 1;
        // The library fills the whole buffer itself, borders included; a clear would be one
        // more full-size pass per frame.
        const bool bDrawn = bAttached && (bTake || qkplaydll_IsReady())
            && qkplay_video_render(pTarget, static_cast<int>(pContext->defaultFramebufferObject()), nWidth, nHeight);
        if (!bDrawn) {
            QOpenGLFunctions* gl = pContext->functions();
            gl->glViewport(0, 0, nWidth, nHeight);
            gl->glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
            gl->glClear(GL_COLOR_BUFFER_BIT);
        }
        // Under Wayland the window is a subsurface that counts as exposed only once frames
        // come back from the compositor, and they come only after a swap: it swaps whenever
        // it is shown, or it would stay black.
        if (bOwnSurface && (isExposed() || (bWayland && isVisible())))
            pContext->swapBuffers(this);
        // Once told of one swap, the library waits for the report of every frame it hands
        // over, for up to about 200 ms each. A frame drawn while the window is hidden (a stop
        // while the main window closes) is done with as well, so it is reported all the same.
        if (bDrawn)
            qkplay_video_swapped(pTarget);
    }

protected:
    void exposeEvent(QExposeEvent* pEvent) override
    {
        (void)pEvent;
        if (isExposed())
            Render();
    }

    void resizeEvent(QResizeEvent* pEvent) override
    {
        QWindow::resizeEvent(pEvent);
        if (isExposed())
            Render();
    }

private:
    void Detach()
    {
        if (!bAttached)
            return;
        bAttached = false;
        pContext->makeCurrent(pOffscreen.get());
        qkplay_video_detach(pTarget);
        pContext->doneCurrent();
    }

    static void* GetProcAddress(void* pCtx, const char* pszName)
    {
        (void)pCtx;
        QOpenGLContext* pCurrent = QOpenGLContext::currentContext();
        return pCurrent ? reinterpret_cast<void*>(pCurrent->getProcAddress(pszName)) : nullptr;
    }

    // Called on a thread of the library: only a draw is queued to the GUI thread, at most one
    // at a time, so that frames the GUI thread is late for are drawn once, not once each. A
    // queued call to a window that is gone meanwhile is dropped by Qt.
    static void OnFrameReady(void* pCtx)
    {
        auto* pSelf = static_cast<CQKPlaySurface*>(pCtx);
        if (pSelf->bFramePending.exchange(true))
            return;
        QMetaObject::invokeMethod(
            pSelf, [pSelf] { pSelf->Render(); }, Qt::QueuedConnection);
    }

    qkplay_video* pTarget;
    const bool bWayland { QGuiApplication::platformName().startsWith(QLatin1String("wayland")) };
    bool bAttached { false };
    std::atomic<bool> bFramePending { false };
    // Declared before the offscreen surface: the context goes last.
    std::unique_ptr<QOpenGLContext> pContext;
    std::unique_ptr<QOffscreenSurface> pOffscreen;
};

} // namespace

struct CQKPlayWnd::Impl
{
    // The library's view of this surface; it lives as long as the CQKPlayWnd object, so the
    // pointer handed to a play thread never dangles.
    qkplay_video video { nullptr, nullptr, nullptr, nullptr };
    // The parent widget owns the container, and the container the window; either may be
    // deleted first.
    QPointer<QWidget> pContainer;
    QPointer<CQKPlaySurface> pWindow;
};

CQKPlayWnd::CQKPlayWnd()
    : pImpl(std::make_unique<Impl>())
{
}

CQKPlayWnd::~CQKPlayWnd()
{
    Destroy();
}

bool CQKPlayWnd::Create(CQKHostWnd* pParent)
{
    return pParent && Create(pParent->NativeWidget());
}

bool CQKPlayWnd::Create(QWidget* pParent)
{
    if (!pParent || pImpl->pContainer)
        return false;
    // The container stays a plain widget. Otherwise Qt gives it a native window of its own as
    // soon as a window owned by the host (a message, a menu) gets one, and that window, opaque
    // and taking the clicks, would then lie over the picture.
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    auto* pWindow = new CQKPlaySurface(&pImpl->video);
    pImpl->pWindow = pWindow;
    pImpl->pContainer = QWidget::createWindowContainer(pWindow, pParent);
    pImpl->pContainer->setObjectName(QStringLiteral("CQKPlayWnd"));
    pImpl->pContainer->setAttribute(Qt::WA_TransparentForMouseEvents);
    pImpl->pContainer->setGeometry(0, 0, 0, 0);
    pImpl->pContainer->hide();
    // The library's render context takes a while to make (shaders are built, on a software
    // driver by the CPU). It is made as soon as the event loop runs, while the main window
    // comes up, rather than when the first file plays.
    QTimer::singleShot(0, pWindow, [pWindow] { pWindow->Attach(); });
    return true;
}

void CQKPlayWnd::TakeFrame()
{
    if (CQKPlaySurface* pWindow = pImpl->pWindow.data())
        pWindow->Render(true);
}

void CQKPlayWnd::Destroy()
{
    // The window's destructor detaches it from the library with its context current.
    delete pImpl->pContainer.data();
    delete pImpl->pWindow.data();
    pImpl->pContainer = nullptr;
}

bool CQKPlayWnd::IsWindow() const
{
    return !pImpl->pContainer.isNull();
}

void CQKPlayWnd::MoveWindow(int nX, int nY, int nWidth, int nHeight)
{
    if (!pImpl->pContainer)
        return;
    pImpl->pContainer->setGeometry(nX, nY, std::max(0, nWidth), std::max(0, nHeight));
    CQKPlaySurface* pWindow = pImpl->pWindow.data();
    if (pWindow && pWindow->isExposed())
        pWindow->Render();
}

QRect CQKPlayWnd::GetRect() const
{
    return pImpl->pContainer ? pImpl->pContainer->geometry() : QRect();
}

void CQKPlayWnd::Show(bool bShow)
{
    if (!pImpl->pContainer)
        return;
    pImpl->pContainer->setVisible(bShow);
    if (bShow && pImpl->pWindow)
        pImpl->pWindow->Attach();
}

bool CQKPlayWnd::IsVisible() const
{
    return pImpl->pContainer && pImpl->pContainer->isVisible();
}

QRect CQKPlayWnd::GetWindowRect() const
{
    if (!pImpl->pContainer)
        return QRect();
    return QRect(pImpl->pContainer->mapToGlobal(QPoint(0, 0)), pImpl->pContainer->size());
}

qkplay_video* CQKPlayWnd::VideoTarget()
{
    return &pImpl->video;
}

QWidget* CQKPlayWnd::NativeWidget() const
{
    return pImpl->pContainer.data();
}

QWindow* CQKPlayWnd::NativeWindow() const
{
    return pImpl->pWindow.data();
}
