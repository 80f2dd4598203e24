#include "platform/CQKHostWidget.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QChildEvent>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaObject>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QStyleHints>
#include <QTimerEvent>
#include <QUrl>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <xcb/xcb.h>

// The queued message of PostMessage.
class CQKMessageEvent : public QEvent
{
public:
    static QEvent::Type TypeId()
    {
        static const QEvent::Type t = static_cast<QEvent::Type>(QEvent::registerEventType());
        return t;
    }
    CQKMessageEvent(uint32_t m, uintptr_t w, intptr_t l)
        : QEvent(TypeId())
        , msg(m)
        , wParam(w)
        , lParam(l)
    {
    }
    uint32_t msg;
    uintptr_t wParam;
    intptr_t lParam;
};

QEvent* CQKHostWidget::MakeMessageEvent(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    return new CQKMessageEvent(msg, wParam, lParam);
}

// Another program can destroy one of our windows on X (a session tool, a crashing window
// manager, "xdotool windowclose"). Qt keeps the widget as if nothing happened, so the host
// would go on without anything on the screen; the filter hears the destruction and lets the
// host close the way the window system's close does.
class CQKWindowLossFilter : public QAbstractNativeEventFilter
{
public:
    static void Install()
    {
        static CQKWindowLossFilter* s_pFilter = nullptr;
        if (s_pFilter || !QCoreApplication::instance() || QGuiApplication::platformName() != QLatin1String("xcb"))
            return;
        s_pFilter = new CQKWindowLossFilter;
        QCoreApplication::instance()->installNativeEventFilter(s_pFilter);
    }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) override
    {
        if (eventType != "xcb_generic_event_t")
            return false;
        const auto* ev = static_cast<const xcb_generic_event_t*>(message);
        if ((ev->response_type & 0x7F) != XCB_DESTROY_NOTIFY)
            return false;
        const auto* destroy = static_cast<const xcb_destroy_notify_event_t*>(message);
        for (QWidget* w : QApplication::topLevelWidgets()) {
            auto* host = dynamic_cast<CQKHostWidget*>(w);
            if (!host || host->NativeId() != destroy->window)
                continue;
            // Queued: the host may end its window in OnClose, which must not happen inside
            // the window system's own event handling.
            const WId nLost = destroy->window;
            QMetaObject::invokeMethod(
                host, [host, nLost] { host->OnWindowLost(nLost); }, Qt::QueuedConnection);
        }
        return false;
    }
};

CQKHostWidget::CQKHostWidget(CQKHostWnd* host, QWidget* pParent, Qt::WindowFlags flags)
    : QWidget(pParent, flags)
    , pHost(host)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_NoSystemBackground);
    // Every window hears of drags; whether a drop is taken, and by whom, is decided when one
    // comes (CQKHostWnd::CatchDroppedFiles).
    setAcceptDrops(true);
    CQKWindowLossFilter::Install();
}

void CQKHostWidget::OnWindowLost(WId nLost)
{
    // A window that Qt makes anew (when a window flag such as "always on top" changes) ends
    // its old native window; the notice of that end, handled later, must not count as the
    // window being lost. Only a widget whose own window of now is gone has lost it (the server
    // may even have handed the freed id out again).
    if (nLost != NativeId() || WindowExistsOnServer())
        return;
    if (pHost)
        pHost->OnClose();
}

WId CQKHostWidget::NativeId() const
{
    // The widget's own id can be stale: a native window that Qt makes anew for a change of
    // its flags gets a new id that only the window handle knows.
    const QWindow* pWindow = windowHandle();
    if (pWindow && pWindow->handle())
        return pWindow->winId();
    return internalWinId();
}

bool CQKHostWidget::WindowExistsOnServer() const
{
    auto* pX11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* pConnection = pX11 ? pX11->connection() : nullptr;
    const WId nId = NativeId();
    if (!pConnection || !nId)
        return false;
    const xcb_get_window_attributes_cookie_t cookie = xcb_get_window_attributes(pConnection, static_cast<xcb_window_t>(nId));
    xcb_get_window_attributes_reply_t* pReply = xcb_get_window_attributes_reply(pConnection, cookie, nullptr);
    if (!pReply)
        return false;
    std::free(pReply);
    return true;
}

CQKHostWidget::~CQKHostWidget()
{
    // Qt deletes an owned host's window with its owner's. The host lets go of it first, so
    // that nothing it does in OnDestroy can reach the half-deleted window.
    if (CQKHostWnd* h = pHost) {
        h->DetachWidget();
        h->OnDestroy();
    }
}

bool CQKHostWidget::StartTimer(uint32_t nID, uint32_t nMs, bool bPrecise)
{
    StopTimer(nID);
    // Like the system's timers, none runs faster than every 10 ms.
    const int id = startTimer(std::max<uint32_t>(nMs, 10), bPrecise ? Qt::PreciseTimer : Qt::CoarseTimer);
    if (id == 0)
        return false;
    mapTimers[nID] = id;
    return true;
}

bool CQKHostWidget::StopTimer(uint32_t nID)
{
    auto it = mapTimers.find(nID);
    if (it == mapTimers.end())
        return false;
    killTimer(it->second);
    mapTimers.erase(it);
    return true;
}

void CQKHostWidget::StopAllTimers()
{
    for (const auto& [nID, id] : mapTimers)
        killTimer(id);
    mapTimers.clear();
}

void CQKHostWidget::timerEvent(QTimerEvent* e)
{
    for (const auto& [nID, id] : mapTimers) {
        if (id == e->timerId()) {
            if (pHost)
                pHost->OnTimer(nID);
            return;
        }
    }
    QWidget::timerEvent(e);
}

// --- painting -----------------------------------------------------------------------------

void CQKHostWidget::Blit(const QRect& rc)
{
    if (bInPaint || !isVisible() || rc.isEmpty())
        return;
    bBlitting = true;
    repaint(rc);
    bBlitting = false;
}

void CQKHostWidget::Invalidate(const QRect& rc)
{
    rgnInvalid += rc;
    update(rc);
}

void CQKHostWidget::PaintInvalid()
{
    if (!rgnInvalid.isEmpty() && isVisible())
        repaint(rgnInvalid);
}

void CQKHostWidget::paintEvent(QPaintEvent* e)
{
    // A repaint that only shows pixels the host has just composed needs no composition,
    // unless something else is waiting for one. Every other paint asks the host to compose.
    if (pHost && (!bBlitting || !rgnInvalid.isEmpty())) {
        rgnInvalid = QRegion();
        bInPaint = true;
        pHost->OnPaint();
        bInPaint = false;
    }
    QPainter p(this);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    // The picture may hold more pixels than the window has logical ones (a HiDPI screen): the
    // source is in its own pixels.
    const qreal d = image.devicePixelRatio();
    for (const QRect& r : e->region())
        p.drawImage(QRectF(r), image, QRectF(r.x() * d, r.y() * d, r.width() * d, r.height() * d));
}

void CQKHostWidget::FitImage()
{
    const QSize sz = size().expandedTo(QSize(0, 0));
    const qreal d = devicePixelRatioF();
    if (!image.isNull() && QKImageSize(image) == sz && image.devicePixelRatio() == d)
        return;
    QImage fresh = QKNewImage(sz.width(), sz.height(), d);
    if (!image.isNull() && !fresh.isNull()) {
        QPainter p(&fresh);
        p.setCompositionMode(QPainter::CompositionMode_Source);
        p.drawImage(0, 0, image);
    }
    image = fresh;
}

void CQKHostWidget::resizeEvent(QResizeEvent* e)
{
    const QSize sz = size();
    FitImage();
    QWidget::resizeEvent(e);
    if (pHost)
        pHost->OnSize(sz.width(), sz.height());
}

void CQKHostWidget::moveEvent(QMoveEvent* e)
{
    QWidget::moveEvent(e);
    if (pHost)
        pHost->OnMove(x(), y());
}

// --- mouse --------------------------------------------------------------------------------

static uint32_t MouseKeys(Qt::MouseButtons buttons, Qt::KeyboardModifiers mods)
{
    uint32_t keys = 0;
    if (buttons & Qt::LeftButton)
        keys |= MK_LBUTTON;
    if (buttons & Qt::RightButton)
        keys |= MK_RBUTTON;
    if (buttons & Qt::MiddleButton)
        keys |= MK_MBUTTON;
    if (mods & Qt::ShiftModifier)
        keys |= MK_SHIFT;
    if (mods & Qt::ControlModifier)
        keys |= MK_CONTROL;
    return keys;
}

void CQKHostWidget::DeliverMouse(uint32_t msg, QMouseEvent* e)
{
    if (!pHost)
        return;
    const QPoint pt = e->position().toPoint();
    // While another host holds the capture, the mouse is that host's wherever the pointer is.
    CQKHostWnd* pCapture = CQKHostWnd::GetCapture();
    if (pCapture && pCapture != pHost) {
        const QPoint ptThere = pCapture->ScreenToClient(mapToGlobal(pt));
        pCapture->OnMouseMessage(msg, ptThere, MouseKeys(e->buttons(), e->modifiers()));
        return;
    }
    // Outside the client area only the host holding the capture hears the mouse. Qt keeps
    // sending a held button's moves to the window it went down in, but that is no capture:
    // without one the mouse belongs to the window under the pointer, if it is one of ours.
    if (!rect().contains(pt) && pCapture != pHost) {
        // A popup keeps the mouse to itself while it is open, as menus do.
        if (bPopup)
            return;
        const QPoint global = mapToGlobal(pt);
        CQKHostWnd* pUnder = CQKHostWnd::FromWidget(QApplication::topLevelAt(global));
        if (pUnder && pUnder != pHost && pUnder->IsWindowEnabled())
            pUnder->OnMouseMessage(msg, pUnder->ScreenToClient(global), MouseKeys(e->buttons(), e->modifiers()));
        return;
    }
    if (msg == WM_MOUSEMOVE && rect().contains(pt)) {
        bTracking = true;
        if (!CQKHostWnd::GetCapture() && !pHost->OnSetCursor(pt))
            setCursor(Qt::ArrowCursor);
    }
    pHost->OnMouseMessage(msg, pt, MouseKeys(e->buttons(), e->modifiers()));
}

// Qt reports the second press of a double click as a press followed by a double click; the
// host gets the double click instead of that press. So the press itself is judged by Qt's
// own rules (same button, within the interval and the distance), and a third quick press
// starts over with a plain press.
bool CQKHostWidget::IsSecondClick(const QMouseEvent* e)
{
    const uint64_t t = e->timestamp();
    const QPoint pt = e->globalPosition().toPoint();
    const QStyleHints* hints = QGuiApplication::styleHints();
    const bool bDouble = !bLastWasDouble && e->button() == nLastButton && t >= nLastPressTime
        && t - nLastPressTime < static_cast<uint64_t>(hints->mouseDoubleClickInterval())
        && (pt - ptLastPress).manhattanLength() <= hints->mouseDoubleClickDistance();
    nLastPressTime = t;
    ptLastPress = pt;
    nLastButton = e->button();
    bLastWasDouble = bDouble;
    return bDouble;
}

void CQKHostWidget::mousePressEvent(QMouseEvent* e)
{
    if (bPopup && !rect().contains(e->position().toPoint()) && (!pHost || CQKHostWnd::GetCapture() != pHost)) {
        // A press outside an open popup closes it (Qt's own handling), and that is all.
        QWidget::mousePressEvent(e);
        return;
    }
    const bool bDouble = IsSecondClick(e);
    bDoubleSent = bDouble;
    if (e->button() == Qt::LeftButton)
        DeliverMouse(bDouble ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN, e);
    else if (e->button() == Qt::RightButton)
        DeliverMouse(bDouble ? WM_RBUTTONDBLCLK : WM_RBUTTONDOWN, e);
    else if (e->button() == Qt::MiddleButton)
        DeliverMouse(WM_MBUTTONDOWN, e);
}

void CQKHostWidget::mouseReleaseEvent(QMouseEvent* e)
{
    if (e->button() == Qt::LeftButton)
        DeliverMouse(WM_LBUTTONUP, e);
    else if (e->button() == Qt::RightButton)
        DeliverMouse(WM_RBUTTONUP, e);
    else if (e->button() == Qt::MiddleButton)
        DeliverMouse(WM_MBUTTONUP, e);
}

void CQKHostWidget::mouseDoubleClickEvent(QMouseEvent* e)
{
    // Qt may or may not pass the second press on before its double click; whichever came
    // first tells the host, once.
    if (bDoubleSent) {
        bDoubleSent = false;
        return;
    }
    nLastPressTime = e->timestamp();
    ptLastPress = e->globalPosition().toPoint();
    nLastButton = e->button();
    bLastWasDouble = true;
    if (e->button() == Qt::LeftButton)
        DeliverMouse(WM_LBUTTONDBLCLK, e);
    else if (e->button() == Qt::RightButton)
        DeliverMouse(WM_RBUTTONDBLCLK, e);
}

void CQKHostWidget::mouseMoveEvent(QMouseEvent* e)
{
    DeliverMouse(WM_MOUSEMOVE, e);
}

void CQKHostWidget::wheelEvent(QWheelEvent* e)
{
    const int delta = e->angleDelta().y();
    if (!pHost || delta == 0) {
        e->ignore();
        return;
    }
    if (pHost->OnMouseWheel(MouseKeys(e->buttons(), e->modifiers()), delta, e->position().toPoint()))
        e->accept();
    else
        e->ignore();
}

void CQKHostWidget::leaveEvent(QEvent* e)
{
    QWidget::leaveEvent(e);
    if (!pHost || !bTracking)
        return;
    bTracking = false;
    pHost->OnMouseMessage(WM_MOUSELEAVE, QPoint(QK_LEAVE_POINT, QK_LEAVE_POINT), 0);
}

// --- keys ---------------------------------------------------------------------------------

bool CQKHostWidget::HandleKey(QKeyEvent* e, bool bChild)
{
    if (!pHost)
        return false;
    const uint32_t vk = QKVirtualKeyFromQt(e->key(), e->modifiers());
    if (vk == 0)
        return false;
    // A held key repeats its key down only; the release comes once, at the end.
    if (e->type() == QEvent::KeyRelease && e->isAutoRepeat())
        return true;
    const uint32_t msg = e->type() == QEvent::KeyPress ? WM_KEYDOWN : WM_KEYUP;
    const uint32_t mods = QKModifiersFromQt(e->modifiers());
    if (pHost->PreTranslateKey(msg, vk, mods))
        return true;
    if (!pHost) // the key may have closed the window
        return true;
    if (bChild) {
        // A child (an edit field) handles its own keys, after the accelerators.
        const uint32_t cmd = msg == WM_KEYDOWN ? pHost->FindAccelerator(vk, mods) : 0;
        if (cmd != 0)
            pHost->SendMessage(WM_COMMAND, cmd, 0);
        return cmd != 0;
    }
    pHost->DefaultKeyMessage(msg, vk, mods);
    return true;
}

bool CQKHostWidget::eventFilter(QObject* obj, QEvent* e)
{
    if ((e->type() == QEvent::KeyPress || e->type() == QEvent::KeyRelease) && obj->isWidgetType() && !static_cast<QWidget*>(obj)->isWindow()) {
        ++nEventDepth;
        pChildKey = e;
        const bool bTaken = HandleKey(static_cast<QKeyEvent*>(e), true);
        --nEventDepth;
        return bTaken;
    }
    return QWidget::eventFilter(obj, e);
}

// --- everything else ------------------------------------------------------------------------

bool CQKHostWidget::event(QEvent* e)
{
    // The deferred deletion of a window destroyed inside one of its handlers ends this
    // object: nothing may touch it afterwards.
    if (e->type() == QEvent::DeferredDelete)
        return QWidget::event(e);
    ++nEventDepth;
    bool bResult = true;
    switch (e->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (e == pChildKey) {
            // A key an edit field did not want; as with the system's edit fields, the
            // window around it does not see it as its own.
            pChildKey = nullptr;
            break;
        }
        // Tab is a key like any other here, not a move of Qt's focus chain.
        if (!HandleKey(static_cast<QKeyEvent*>(e), false))
            e->ignore();
        break;
    case QEvent::ChildPolished: {
        QObject* child = static_cast<QChildEvent*>(e)->child();
        if (child->isWidgetType() && !static_cast<QWidget*>(child)->isWindow())
            child->installEventFilter(this);
        bResult = QWidget::event(e);
        break;
    }
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        bResult = QWidget::event(e);
        if (pHost)
            pHost->OnActivate(e->type() == QEvent::WindowActivate);
        break;
    case QEvent::FocusIn:
        bResult = QWidget::event(e);
        if (pHost)
            pHost->OnSetFocus();
        break;
    case QEvent::FocusOut:
        bResult = QWidget::event(e);
        if (pHost)
            pHost->OnKillFocus();
        break;
    default:
        if (e->type() == CQKMessageEvent::TypeId()) {
            const auto* m = static_cast<CQKMessageEvent*>(e);
            if (pHost)
                pHost->OnMessage(m->msg, m->wParam, m->lParam);
        } else {
            bResult = QWidget::event(e);
        }
        break;
    }
    --nEventDepth;
    return bResult;
}

void CQKHostWidget::closeEvent(QCloseEvent* e)
{
    if (bPopup) {
        // A popup closed by a click outside is already on its way out; the host hears of it
        // after the fact.
        e->accept();
        if (pHost)
            pHost->OnClose();
        return;
    }
    e->ignore();
    if (pHost)
        pHost->OnClose();
}

void CQKHostWidget::showEvent(QShowEvent* e)
{
    QWidget::showEvent(e);
    if (pHost && !e->spontaneous())
        pHost->OnShowWindow(true);
}

void CQKHostWidget::hideEvent(QHideEvent* e)
{
    QWidget::hideEvent(e);
    bTracking = false;
    if (pHost && !e->spontaneous())
        pHost->OnShowWindow(false);
}

static uint32_t StateFlags(Qt::WindowStates states)
{
    uint32_t n = 0;
    if (states & Qt::WindowMinimized)
        n |= QKWS_MINIMIZED;
    if (states & Qt::WindowMaximized)
        n |= QKWS_MAXIMIZED;
    if (states & Qt::WindowFullScreen)
        n |= QKWS_FULLSCREEN;
    return n;
}

void CQKHostWidget::changeEvent(QEvent* e)
{
    QWidget::changeEvent(e);
    // Only the window system's reports are spontaneous; the program's own state changes
    // reach Qt's widget directly, and the system's later confirmation of them changes nothing.
    if (e->type() != QEvent::WindowStateChange || !e->spontaneous() || !pHost)
        return;
    const uint32_t nOld = StateFlags(static_cast<QWindowStateChangeEvent*>(e)->oldState());
    const uint32_t nNew = StateFlags(windowState());
    if (nOld != nNew)
        pHost->OnWindowStateChange(nOld, nNew);
}

// --- dropped files --------------------------------------------------------------------------

// The dropped items in order: local files as paths; anything else (a web address) as its text,
// so that the receiver refuses it as it refuses a file it cannot play.
static QStringList DroppedItems(const QMimeData* mime)
{
    QStringList items;
    if (!mime || !mime->hasUrls())
        return items;
    for (const QUrl& url : mime->urls())
        items << (url.isLocalFile() ? url.toLocalFile() : url.toString());
    return items;
}

// The host that takes a drag: none while a modal window (a message) is up, so that a drop
// never starts a new file under it.
static CQKHostWnd* DragTarget(CQKHostWnd* pHost, const QMimeData* mime)
{
    if (QGuiApplication::modalWindow() || DroppedItems(mime).isEmpty())
        return nullptr;
    return CQKHostWnd::DropTarget(pHost);
}

void CQKHostWidget::dragEnterEvent(QDragEnterEvent* e)
{
    if (DragTarget(pHost, e->mimeData()))
        e->acceptProposedAction();
    else
        e->ignore();
}

void CQKHostWidget::dragMoveEvent(QDragMoveEvent* e)
{
    if (DragTarget(pHost, e->mimeData()))
        e->acceptProposedAction();
    else
        e->ignore();
}

void CQKHostWidget::dropEvent(QDropEvent* e)
{
    CQKHostWnd* pTarget = DragTarget(pHost, e->mimeData());
    if (!pTarget) {
        e->ignore();
        return;
    }
    e->acceptProposedAction();
    // The files are taken after the drop has ended, as a posted message: the drag source is
    // told at once that the drop is done, and not only after the files were probed, played,
    // or a message about them was closed.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [pTarget, items = DroppedItems(e->mimeData())] {
            if (CQKHostWnd::IsWindow(pTarget))
                pTarget->OnDropFiles(items);
        },
        Qt::QueuedConnection);
}
