#include "platform/CQKHostWnd.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKHostWidget.h"
#include "platform/QKMessages.h"

#include <QApplication>
#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <mutex>
#include <unordered_set>
#include <utility>

// Hosts with a window. PostMessage may come from any thread, so the set and the posting
// share one lock: a host cannot lose its window between the check and the post.
static std::mutex g_liveLock;
static std::unordered_set<const CQKHostWnd*> g_liveHosts;

static CQKHostWnd* g_pCapture = nullptr;
static int g_nCursorCount = 0;
static bool g_bCursorHidden = false;
static CQKHostWnd* g_pDropReceiver = nullptr;

CQKHostWnd::CQKHostWnd() = default;

CQKHostWnd::~CQKHostWnd()
{
    if (g_pDropReceiver == this)
        g_pDropReceiver = nullptr;
    if (!pWidget)
        return;
    // The derived part is gone, so OnDestroy cannot be reached any more; only the window
    // itself is ended.
    CQKHostWidget* w = pWidget;
    {
        std::lock_guard lock(g_liveLock);
        g_liveHosts.erase(this);
        pWidget = nullptr;
    }
    if (g_pCapture == this)
        ReleaseCapture();
    if (pModalLoop)
        pModalLoop->exit(nModalResult);
    w->Detach();
    w->StopAllTimers();
    if (w->InEvent())
        w->deleteLater();
    else
        delete w;
}

// --- creation and lifetime ---------------------------------------------------------------------

bool CQKHostWnd::Create(const CQKHostCreate& cs)
{
    if (pWidget || !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return false;
    Qt::WindowFlags flags = Qt::Window;
    if (cs.nStyle & QKHS_POPUP)
        flags = Qt::Popup;
    else if (cs.nStyle & QKHS_TIPWINDOW)
        flags = Qt::ToolTip;
    else if (cs.nStyle & QKHS_TOOL)
        flags = Qt::Tool;
    if (cs.nStyle & QKHS_FRAMELESS)
        flags |= Qt::FramelessWindowHint;
    if (cs.nStyle & QKHS_TOPMOST)
        flags |= Qt::WindowStaysOnTopHint;
    if (cs.nStyle & (QKHS_NOACTIVATE | QKHS_TIPWINDOW))
        flags |= Qt::WindowDoesNotAcceptFocus;
    if (cs.nStyle & QKHS_TRANSPARENTINPUT)
        flags |= Qt::WindowTransparentForInput;

    QWidget* pParent = cs.pOwner ? cs.pOwner->pWidget : nullptr;
    auto* w = new CQKHostWidget(this, pParent, flags);
    // The class name is the object name of widget and window, and the window role on X11,
    // where other programs and tests can find the window by it.
    w->setObjectName(cs.strClassName);
    if (!cs.strClassName.isEmpty())
        w->setWindowRole(cs.strClassName);
    w->setWindowTitle(cs.strTitle);
    w->bPopup = (cs.nStyle & QKHS_POPUP) != 0;
    w->bTranslucent = (cs.nStyle & QKHS_TRANSLUCENT) != 0;
    if (w->bTranslucent)
        w->setAttribute(Qt::WA_TranslucentBackground);
    if (cs.nStyle & (QKHS_NOACTIVATE | QKHS_TIPWINDOW))
        w->setAttribute(Qt::WA_ShowWithoutActivating);
    else
        w->setFocusPolicy(Qt::StrongFocus);
    if (cs.rcWindow.isValid())
        w->setGeometry(cs.rcWindow);
    w->winId(); // the native window exists from now on, as after the system's create
    // Qt makes the native window anew when "always on top" changes before it is shown; the
    // X11 window of now takes its role from this property of the window handle.
    if (!cs.strClassName.isEmpty() && w->windowHandle())
        w->windowHandle()->setProperty("_q_xcb_wm_window_role", cs.strClassName.toUtf8());

    {
        std::lock_guard lock(g_liveLock);
        pWidget = w;
        g_liveHosts.insert(this);
    }
    w->FitImage();
    OnCreate();
    return pWidget != nullptr;
}

void CQKHostWnd::DestroyWindow()
{
    if (!pWidget)
        return;
    CQKHostWidget* w = pWidget;
    OnDestroy();
    if (pWidget != w)
        return; // OnDestroy ended the window itself
    DetachWidget();
    w->hide();
    if (w->InEvent())
        w->deleteLater();
    else
        delete w;
}

// The window is going (DestroyWindow, or Qt deleting it with its owner): the host lets go of
// it. OnDestroy has run already when DestroyWindow comes here.
void CQKHostWnd::DetachWidget()
{
    CQKHostWidget* w = pWidget;
    if (!w)
        return;
    {
        std::lock_guard lock(g_liveLock);
        g_liveHosts.erase(this);
        pWidget = nullptr;
    }
    w->Detach();
    w->StopAllTimers();
    if (g_pCapture == this)
        g_pCapture = nullptr;
    if (pModalLoop)
        pModalLoop->exit(nModalResult);
}

bool CQKHostWnd::IsWindow() const
{
    return pWidget != nullptr;
}

bool CQKHostWnd::IsWindow(const CQKHostWnd* pHost)
{
    if (!pHost)
        return false;
    std::lock_guard lock(g_liveLock);
    return g_liveHosts.count(pHost) != 0;
}

int CQKHostWnd::RunModal()
{
    if (!pWidget || pModalLoop)
        return -1;
    // A popup holds the input by being a popup already.
    if (pWidget->parentWidget() && !pWidget->bPopup && pWidget->windowModality() != Qt::WindowModal) {
        // Modality can only change while the window is hidden.
        pWidget->hide();
        pWidget->setWindowModality(Qt::WindowModal);
    }
    nModalResult = 0;
    QEventLoop loop;
    pModalLoop = &loop;
    pWidget->show();
    loop.exec();
    pModalLoop = nullptr;
    if (pWidget)
        pWidget->hide();
    return nModalResult;
}

void CQKHostWnd::EndModal(int nResult)
{
    nModalResult = nResult;
    if (pModalLoop)
        pModalLoop->exit(nResult);
    else if (pWidget)
        pWidget->hide();
}

// --- messages ------------------------------------------------------------------------------

bool CQKHostWnd::PostMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    return PostMessage(this, msg, wParam, lParam);
}

bool CQKHostWnd::PostMessage(CQKHostWnd* pHost, uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    std::lock_guard lock(g_liveLock);
    if (!pHost || g_liveHosts.count(pHost) == 0 || !pHost->pWidget)
        return false;
    QCoreApplication::postEvent(pHost->pWidget, CQKHostWidget::MakeMessageEvent(msg, wParam, lParam));
    return true;
}

intptr_t CQKHostWnd::SendMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    return OnMessage(msg, wParam, lParam);
}

intptr_t CQKHostWnd::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t)
{
    if (!pWidget)
        return 0;
    if (msg == WM_CLOSE) {
        OnClose();
    } else if (msg == WM_SYSCOMMAND) {
        switch (wParam & 0xFFF0) {
        case SC_MINIMIZE:
            ShowWindow(SW_MINIMIZE);
            break;
        case SC_MAXIMIZE:
            ShowWindow(SW_MAXIMIZE);
            break;
        case SC_RESTORE:
            ShowWindow(SW_RESTORE);
            break;
        case SC_CLOSE:
            OnClose();
            break;
        default:
            break;
        }
    }
    return 0;
}

// --- timers ----------------------------------------------------------------------------------

bool CQKHostWnd::SetTimer(uint32_t nID, uint32_t nMs, bool bPrecise)
{
    return pWidget && pWidget->StartTimer(nID, nMs, bPrecise);
}

bool CQKHostWnd::KillTimer(uint32_t nID)
{
    return pWidget && pWidget->StopTimer(nID);
}

bool CQKHostWnd::HasTimer(uint32_t nID) const
{
    return pWidget && pWidget->HasTimer(nID);
}

// --- capture and cursor ----------------------------------------------------------------------

void CQKHostWnd::SetCapture()
{
    if (!pWidget)
        return;
    if (g_pCapture && g_pCapture != this)
        ReleaseCapture();
    g_pCapture = this;
    // While a button is down the window system sends every move to this window already;
    // otherwise ask for the pointer explicitly.
    if (QGuiApplication::mouseButtons() == Qt::NoButton)
        pWidget->grabMouse();
}

CQKHostWnd* CQKHostWnd::GetCapture()
{
    return g_pCapture;
}

void CQKHostWnd::ReleaseCapture()
{
    CQKHostWnd* p = g_pCapture;
    g_pCapture = nullptr;
    // An explicit grab ends here. The window system's own grab of a held button stays, but
    // the seam then passes moves outside the window to the window under the pointer.
    if (p && p->pWidget && QWidget::mouseGrabber() == p->pWidget)
        p->pWidget->releaseMouse();
}

static Qt::CursorShape ShapeOf(uint32_t nCursor)
{
    switch (nCursor) {
    case IDC_IBEAM:
        return Qt::IBeamCursor;
    case IDC_WAIT:
        return Qt::WaitCursor;
    case IDC_CROSS:
        return Qt::CrossCursor;
    case IDC_SIZENWSE:
        return Qt::SizeFDiagCursor;
    case IDC_SIZENESW:
        return Qt::SizeBDiagCursor;
    case IDC_SIZEWE:
        return Qt::SizeHorCursor;
    case IDC_SIZENS:
        return Qt::SizeVerCursor;
    case IDC_SIZEALL:
        return Qt::SizeAllCursor;
    case IDC_HAND:
        return Qt::PointingHandCursor;
    default:
        return Qt::ArrowCursor;
    }
}

void CQKHostWnd::SetCursor(uint32_t nCursor)
{
    if (!pWidget)
        return;
    pWidget->setCursor(ShapeOf(nCursor));
    // The wait cursor comes before work that holds this thread; it must reach the screen
    // before that work starts, not when the loop next runs.
    if (nCursor == IDC_WAIT && qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        QGuiApplication::sync();
}

int CQKHostWnd::ShowCursor(bool bShow)
{
    g_nCursorCount += bShow ? 1 : -1;
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return g_nCursorCount;
    if (g_nCursorCount < 0 && !g_bCursorHidden) {
        QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
        g_bCursorHidden = true;
    } else if (g_nCursorCount >= 0 && g_bCursorHidden) {
        QGuiApplication::restoreOverrideCursor();
        g_bCursorHidden = false;
    }
    return g_nCursorCount;
}

bool CQKHostWnd::IsCursorShowing()
{
    return g_nCursorCount >= 0;
}

QPoint CQKHostWnd::GetCursorPos()
{
    return QCursor::pos();
}

// --- keyboard ----------------------------------------------------------------------------------

void CQKHostWnd::SetAccelerators(std::vector<tagQKAccel> table)
{
    vecAccel = std::move(table);
}

uint32_t CQKHostWnd::FindAccelerator(uint32_t vk, uint32_t mods) const
{
    // Modifiers must match exactly: Ctrl+Shift+O is not Ctrl+O. The first entry wins.
    for (const tagQKAccel& a : vecAccel)
        if (a.nKey == vk && a.nMods == mods)
            return a.nCmd;
    return 0;
}

bool CQKHostWnd::DefaultKeyMessage(uint32_t msg, uint32_t vk, uint32_t mods)
{
    if (msg == WM_KEYDOWN) {
        const uint32_t cmd = FindAccelerator(vk, mods);
        if (cmd != 0) {
            SendMessage(WM_COMMAND, cmd, 0);
            return true;
        }
        OnKeyDown(vk, mods);
    } else if (msg == WM_KEYUP) {
        OnKeyUp(vk, mods);
    }
    return false;
}

void CQKHostWnd::SetFocus()
{
    if (pWidget)
        pWidget->setFocus(Qt::OtherFocusReason);
}

bool CQKHostWnd::HasFocus() const
{
    return pWidget && pWidget->hasFocus();
}

bool CQKHostWnd::IsActive() const
{
    return pWidget && pWidget->isActiveWindow();
}

CQKHostWnd* CQKHostWnd::GetForegroundWindow()
{
    return FromWidget(QApplication::activeWindow());
}

CQKHostWnd* CQKHostWnd::GetOwner() const
{
    return pWidget && pWidget->isWindow() ? FromWidget(pWidget->parentWidget()) : nullptr;
}

// --- showing and state -----------------------------------------------------------------------

bool CQKHostWnd::ShowWindow(int nCmd)
{
    if (!pWidget)
        return false;
    const bool bWasVisible = pWidget->isVisible();
    switch (nCmd) {
    case SW_HIDE:
        pWidget->hide();
        break;
    case SW_SHOWNORMAL:
        pWidget->showNormal();
        break;
    case SW_SHOWMINIMIZED:
    case SW_MINIMIZE:
        pWidget->showMinimized();
        break;
    case SW_MAXIMIZE:
        pWidget->showMaximized();
        break;
    case SW_RESTORE:
        // Back from minimised to what the window was before; from maximised to normal.
        if (pWidget->windowState() & Qt::WindowMinimized)
            pWidget->setWindowState(pWidget->windowState() & ~Qt::WindowMinimized);
        else
            pWidget->setWindowState(pWidget->windowState() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
        pWidget->show();
        break;
    case SW_SHOWNOACTIVATE:
    case SW_SHOWNA: {
        const bool bHad = pWidget->testAttribute(Qt::WA_ShowWithoutActivating);
        pWidget->setAttribute(Qt::WA_ShowWithoutActivating, true);
        pWidget->show();
        pWidget->setAttribute(Qt::WA_ShowWithoutActivating, bHad);
        break;
    }
    default:
        pWidget->show();
        break;
    }
    return bWasVisible;
}

bool CQKHostWnd::IsWindowVisible() const
{
    return pWidget && pWidget->isVisible();
}

void CQKHostWnd::SetForegroundWindow()
{
    if (!pWidget)
        return;
    if (pWidget->windowState() & Qt::WindowMinimized)
        pWidget->setWindowState(pWidget->windowState() & ~Qt::WindowMinimized);
    pWidget->show();
    pWidget->raise();
    pWidget->activateWindow();
}

bool CQKHostWnd::IsIconic() const
{
    return pWidget && (pWidget->windowState() & Qt::WindowMinimized);
}

bool CQKHostWnd::IsZoomed() const
{
    return pWidget && (pWidget->windowState() & Qt::WindowMaximized);
}

void CQKHostWnd::ShowFullScreen()
{
    // QWidget::showFullScreen would drop the maximised state, and a window manager then puts
    // the window back to its size from before it was maximised.
    if (!pWidget || (pWidget->windowState() & Qt::WindowFullScreen))
        return;
    bMaximizedUnderFull = (pWidget->windowState() & Qt::WindowMaximized) != 0;
    pWidget->setWindowState((pWidget->windowState() & ~Qt::WindowMinimized) | Qt::WindowFullScreen);
    pWidget->show();
}

void CQKHostWnd::EndFullScreen()
{
    if (!pWidget)
        return;
    Qt::WindowStates states = pWidget->windowState() & ~Qt::WindowFullScreen;
    if (std::exchange(bMaximizedUnderFull, false))
        states |= Qt::WindowMaximized;
    pWidget->setWindowState(states);
}

void CQKHostWnd::ShowNormal()
{
    if (!pWidget)
        return;
    // A window maximised under full screen goes back through maximised, so that a window
    // manager that gives the maximised state back when full screen ends also takes it away.
    if (std::exchange(bMaximizedUnderFull, false) && (pWidget->windowState() & Qt::WindowFullScreen))
        pWidget->setWindowState(Qt::WindowMaximized);
    pWidget->showNormal();
}

bool CQKHostWnd::IsFullScreen() const
{
    return pWidget && (pWidget->windowState() & Qt::WindowFullScreen);
}

void CQKHostWnd::SetTopmost(bool bTopmost)
{
    if (!pWidget || IsTopmost() == bTopmost)
        return;
    Qt::WindowFlags flags = pWidget->windowFlags();
    flags.setFlag(Qt::WindowStaysOnTopHint, bTopmost);
    // Changing a widget's flags re-creates and hides its window; telling only the native
    // window keeps it where it is, as it is.
    pWidget->overrideWindowFlags(flags);
    if (QWindow* win = pWidget->windowHandle())
        win->setFlags(flags);
}

bool CQKHostWnd::IsTopmost() const
{
    return pWidget && pWidget->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

void CQKHostWnd::SetWindowText(const QString& strText)
{
    if (pWidget)
        pWidget->setWindowTitle(strText);
}

QString CQKHostWnd::GetWindowText() const
{
    return pWidget ? pWidget->windowTitle() : QString();
}

void CQKHostWnd::SetWindowAlpha(uint8_t nAlpha)
{
    if (pWidget)
        pWidget->setWindowOpacity(nAlpha / 255.0);
}

void CQKHostWnd::SetWindowRgn(const QRect& rc)
{
    if (!pWidget)
        return;
    if (rc.isEmpty())
        pWidget->clearMask();
    else
        pWidget->setMask(QRegion(rc));
}

void CQKHostWnd::SetWindowRgn(const std::vector<QRect>& rects)
{
    if (!pWidget)
        return;
    QRegion rgn;
    for (const QRect& r : rects)
        rgn += r;
    if (rgn.isEmpty())
        pWidget->clearMask();
    else
        pWidget->setMask(rgn);
}

void CQKHostWnd::EnableWindow(bool bEnable)
{
    if (pWidget)
        pWidget->setEnabled(bEnable);
}

bool CQKHostWnd::IsWindowEnabled() const
{
    return pWidget && pWidget->isEnabled();
}

// --- geometry --------------------------------------------------------------------------------

QRect CQKHostWnd::GetClientRect() const
{
    return pWidget ? QRect(0, 0, pWidget->width(), pWidget->height()) : QRect();
}

QRect CQKHostWnd::GetWindowRect() const
{
    if (!pWidget)
        return QRect();
    // A top-level window's own geometry is where it was last put or where the window manager
    // last said it is. Asking the display server instead gives 0,0 for a window that is not
    // shown yet, or one that a window manager is just taking into its frame.
    if (pWidget->isWindow())
        return pWidget->geometry();
    return QRect(pWidget->mapToGlobal(QPoint(0, 0)), pWidget->size());
}

void CQKHostWnd::MoveWindow(int x, int y, int w, int h, bool bRepaint)
{
    MoveWindow(QRect(x, y, std::max(0, w), std::max(0, h)), bRepaint);
}

void CQKHostWnd::MoveWindow(const QRect& rc, bool bRepaint)
{
    if (!pWidget)
        return;
    pWidget->setGeometry(rc);
    if (bRepaint)
        InvalidateRect(nullptr);
}

QPoint CQKHostWnd::ClientToScreen(QPoint pt) const
{
    return pWidget ? pWidget->mapToGlobal(pt) : pt;
}

QPoint CQKHostWnd::ScreenToClient(QPoint pt) const
{
    return pWidget ? pWidget->mapFromGlobal(pt) : pt;
}

bool CQKHostWnd::StartSystemMove()
{
    return pWidget && pWidget->windowHandle() && pWidget->windowHandle()->startSystemMove();
}

bool CQKHostWnd::StartSystemResize(uint32_t nEdges)
{
    if (!pWidget || !pWidget->windowHandle() || nEdges == 0)
        return false;
    Qt::Edges edges;
    if (nEdges & QKEDGE_LEFT)
        edges |= Qt::LeftEdge;
    if (nEdges & QKEDGE_TOP)
        edges |= Qt::TopEdge;
    if (nEdges & QKEDGE_RIGHT)
        edges |= Qt::RightEdge;
    if (nEdges & QKEDGE_BOTTOM)
        edges |= Qt::BottomEdge;
    return pWidget->windowHandle()->startSystemResize(edges);
}

bool CQKHostWnd::CanPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

QRect CQKHostWnd::GetPrimaryWorkArea()
{
    QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->availableGeometry() : QRect();
}

QRect CQKHostWnd::GetPrimaryScreenRect()
{
    QScreen* s = QGuiApplication::primaryScreen();
    return s ? s->geometry() : QRect();
}

QRect CQKHostWnd::GetScreenRect() const
{
    QScreen* s = pWidget ? pWidget->screen() : nullptr;
    if (!s)
        s = QGuiApplication::primaryScreen();
    return s ? s->geometry() : QRect();
}

QRect CQKHostWnd::GetWorkArea() const
{
    QScreen* s = pWidget ? pWidget->screen() : nullptr;
    if (!s)
        s = QGuiApplication::primaryScreen();
    return s ? s->availableGeometry() : QRect();
}

// --- painting --------------------------------------------------------------------------------

void CQKHostWnd::InvalidateRect(const QRect* pRect)
{
    if (pWidget)
        pWidget->Invalidate(pRect ? *pRect : pWidget->rect());
}

void CQKHostWnd::UpdateWindow()
{
    if (pWidget)
        pWidget->PaintInvalid();
}

void CQKHostWnd::UpdateWindowFromImage(const QImage& image, QPoint ptDest)
{
    if (!pWidget || image.isNull())
        return;
    // The window may have moved to a screen of another pixel ratio since the last picture.
    pWidget->FitImage();
    QImage& target = pWidget->image;
    const QRect rc = QRect(ptDest, QKImageSize(image)).intersected(QRect(QPoint(0, 0), QKImageSize(target)));
    if (rc.isEmpty())
        return;
    {
        QPainter p(&target);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(ptDest, image);
    }
    pWidget->Blit(rc);
}

QImage* CQKHostWnd::HostImageToDraw(QSize size)
{
    // A see-through window shows its picture's alpha, which only a picture of its own keeps.
    if (!pWidget || pWidget->bTranslucent)
        return nullptr;
    pWidget->FitImage();
    QImage& target = pWidget->image;
    return !target.isNull() && QKImageSize(target) == size ? &target : nullptr;
}

void CQKHostWnd::ShowHostImage(const QRect& rc)
{
    if (pWidget)
        pWidget->Blit(rc.intersected(pWidget->rect()));
}

qreal CQKHostWnd::DevicePixelRatio() const
{
    return pWidget ? pWidget->devicePixelRatioF() : QKScreenPixelRatio();
}

const QImage& CQKHostWnd::HostImage() const
{
    static const QImage empty;
    return pWidget ? pWidget->image : empty;
}

// --- dropped files, widgets ------------------------------------------------------------------

void CQKHostWnd::DragAcceptFiles(bool bAccept)
{
    if (pWidget)
        pWidget->bAcceptFiles = bAccept;
}

void CQKHostWnd::CatchDroppedFiles(CQKHostWnd* pReceiver)
{
    g_pDropReceiver = pReceiver;
}

CQKHostWnd* CQKHostWnd::DropTarget(CQKHostWnd* pHost)
{
    if (g_pDropReceiver && IsWindow(g_pDropReceiver))
        return g_pDropReceiver;
    return pHost && pHost->pWidget && pHost->pWidget->bAcceptFiles ? pHost : nullptr;
}

QWidget* CQKHostWnd::NativeWidget() const
{
    return pWidget;
}

QWindow* CQKHostWnd::NativeWindow() const
{
    return pWidget ? pWidget->windowHandle() : nullptr;
}

CQKHostWnd* CQKHostWnd::FromWidget(const QWidget* pW)
{
    const auto* w = dynamic_cast<const CQKHostWidget*>(pW);
    return w ? w->Host() : nullptr;
}

// --- default handlers ------------------------------------------------------------------------

void CQKHostWnd::OnTimer(uint32_t) { }
bool CQKHostWnd::OnSetCursor(QPoint)
{
    return false;
}
void CQKHostWnd::OnMouseMessage(uint32_t, QPoint, uint32_t) { }
bool CQKHostWnd::OnMouseWheel(uint32_t, int, QPoint)
{
    return false;
}
bool CQKHostWnd::PreTranslateKey(uint32_t, uint32_t, uint32_t)
{
    return false;
}
void CQKHostWnd::OnKeyDown(uint32_t, uint32_t) { }
void CQKHostWnd::OnKeyUp(uint32_t, uint32_t) { }
void CQKHostWnd::OnActivate(bool) { }
void CQKHostWnd::OnSize(int, int) { }
void CQKHostWnd::OnMove(int, int) { }
void CQKHostWnd::OnDropFiles(const QStringList&) { }
void CQKHostWnd::OnShowWindow(bool) { }
void CQKHostWnd::OnWindowStateChange(uint32_t, uint32_t) { }

void CQKHostWnd::OnClose()
{
    DestroyWindow();
}
