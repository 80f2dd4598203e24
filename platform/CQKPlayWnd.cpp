#include "CQKPlayWnd.h"

#include "CQKHostWnd.h"

#include <QMetaObject>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QPointer>
#include <memory>

namespace {

// The QOpenGLWidget behind CQKPlayWnd. It attaches to the library whenever it gets an OpenGL
// context (Qt makes a new one when the widget moves to another top-level window) and
// detaches before the context goes.
class CQKPlayWidget : public QOpenGLWidget
{
public:
    CQKPlayWidget(QWidget* pParent, qkplay_video* pVideo)
        : QOpenGLWidget(pParent)
        , pTarget(pVideo)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_OpaquePaintEvent);
        setUpdateBehavior(QOpenGLWidget::NoPartialUpdate);
        pTarget->get_proc_address = &CQKPlayWidget::GetProcAddress;
        pTarget->update = &CQKPlayWidget::OnFrameReady;
        pTarget->ctx = this;
    }

    ~CQKPlayWidget() override
    {
        // QOpenGLWidget's own destructor destroys the context after this one has run; the
        // signal must not reach this half-destroyed object then.
        *pAlive = false;
        Detach();
    }

protected:
    void initializeGL() override
    {
        // A new context replaces the old one when the widget changes its top-level window.
        connect(
            context(), &QOpenGLContext::aboutToBeDestroyed, this,
            [this, pFlag = pAlive] {
                if (*pFlag)
                    Detach();
            },
            Qt::DirectConnection);
        bAttached = qkplay_video_attach(pTarget) != 0;
    }

    void paintGL() override
    {
        QOpenGLFunctions* gl = context()->functions();
        gl->glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        if (!bAttached || !qkplaydll_IsReady())
            return;
        const qreal dRatio = devicePixelRatioF();
        qkplay_video_render(pTarget, static_cast<int>(defaultFramebufferObject()), qRound(width() * dRatio),
            qRound(height() * dRatio));
    }

public:
    // Draws the newest frame into the widget's own buffer without a repaint, so that the
    // library's video thread, which waits a while for each frame to be taken, goes on.
    void TakeFrame()
    {
        if (!bAttached || !isValid() || width() <= 0 || height() <= 0)
            return;
        makeCurrent();
        const qreal dRatio = devicePixelRatioF();
        qkplay_video_render(pTarget, static_cast<int>(defaultFramebufferObject()), qRound(width() * dRatio),
            qRound(height() * dRatio));
        doneCurrent();
    }

private:
    void Detach()
    {
        if (!bAttached)
            return;
        bAttached = false;
        makeCurrent();
        qkplay_video_detach(pTarget);
        doneCurrent();
    }

    static void* GetProcAddress(void* pCtx, const char* pszName)
    {
        (void)pCtx;
        QOpenGLContext* pContext = QOpenGLContext::currentContext();
        return pContext ? reinterpret_cast<void*>(pContext->getProcAddress(pszName)) : nullptr;
    }

    // Called on a thread of the library: only a repaint is queued to the GUI thread. A
    // queued call to a widget that is gone meanwhile is dropped by Qt.
    static void OnFrameReady(void* pCtx)
    {
        auto* pSelf = static_cast<CQKPlayWidget*>(pCtx);
        QMetaObject::invokeMethod(
            pSelf, [pSelf] { pSelf->update(); }, Qt::QueuedConnection);
    }

    qkplay_video* pTarget;
    bool bAttached { false };
    std::shared_ptr<bool> pAlive { std::make_shared<bool>(true) };
};

} // namespace

struct CQKPlayWnd::Impl
{
    // The library's view of this surface; it lives as long as the CQKPlayWnd object, so the
    // pointer handed to a play thread never dangles.
    qkplay_video video { nullptr, nullptr, nullptr, nullptr };
    // The parent widget owns the surface's widget and may delete it first.
    QPointer<CQKPlayWidget> pWidget;
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
    if (!pParent || pImpl->pWidget)
        return false;
    pImpl->pWidget = new CQKPlayWidget(pParent, &pImpl->video);
    pImpl->pWidget->setObjectName(QStringLiteral("CQKPlayWnd"));
    pImpl->pWidget->setGeometry(0, 0, 0, 0);
    pImpl->pWidget->hide();
    return true;
}

void CQKPlayWnd::TakeFrame()
{
    if (pImpl->pWidget)
        pImpl->pWidget->TakeFrame();
}

void CQKPlayWnd::Destroy()
{
    // The widget's destructor detaches it from the library with its context current.
    delete pImpl->pWidget.data();
    pImpl->pWidget = nullptr;
}

bool CQKPlayWnd::IsWindow() const
{
    return !pImpl->pWidget.isNull();
}

void CQKPlayWnd::MoveWindow(int nX, int nY, int nWidth, int nHeight)
{
    if (!pImpl->pWidget)
        return;
    pImpl->pWidget->setGeometry(nX, nY, std::max(0, nWidth), std::max(0, nHeight));
    pImpl->pWidget->update();
}

void CQKPlayWnd::Show(bool bShow)
{
    if (pImpl->pWidget)
        pImpl->pWidget->setVisible(bShow);
}

bool CQKPlayWnd::IsVisible() const
{
    return pImpl->pWidget && pImpl->pWidget->isVisible();
}

qkplay_video* CQKPlayWnd::VideoTarget()
{
    return &pImpl->video;
}

QWidget* CQKPlayWnd::NativeWidget() const
{
    return pImpl->pWidget.data();
}
