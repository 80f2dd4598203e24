#pragma once
// CQKHostWidget: the Qt window behind a CQKHostWnd.
//
// It turns Qt's events into the host's virtual operations and keeps the host's composed
// picture. Only CQKHostWnd makes and ends it; other code reaches it through NativeWidget().
#include <QImage>
#include <QRegion>
#include <QWidget>
#include <cstdint>
#include <map>

class CQKHostWnd;

class CQKHostWidget : public QWidget
{
public:
    CQKHostWidget(CQKHostWnd* pHost, QWidget* pParent, Qt::WindowFlags flags);
    ~CQKHostWidget() override;

    // The host this window serves, null once the host let go of it.
    CQKHostWnd* Host() const { return pHost; }
    void Detach() { pHost = nullptr; }
    // Another program destroyed the window on the screen: the host hears it as a close.
    void OnWindowLost(WId nLost);
    // The id of the widget's native window as it is now; 0 before it has one.
    WId NativeId() const;
    // Whether the server still has this widget's own native window (X11 only).
    bool WindowExistsOnServer() const;
    // Inside one of this widget's event handlers: deleting it now would pull the floor away.
    bool InEvent() const { return nEventDepth > 0; }

    bool StartTimer(uint32_t nID, uint32_t nMs, bool bPrecise);
    bool StopTimer(uint32_t nID);
    bool HasTimer(uint32_t nID) const { return mapTimers.count(nID) != 0; }
    void StopAllTimers();

    // The queued event that carries a posted message to this widget.
    static QEvent* MakeMessageEvent(uint32_t msg, uintptr_t wParam, intptr_t lParam);

    // Puts `rc` of the picture on screen now, unless a paint is running (it will show it).
    void Blit(const QRect& rc);
    void Invalidate(const QRect& rc);
    // Gives the picture the widget's size and pixel ratio, keeping what it showed.
    void FitImage();
    void PaintInvalid();

    QImage image; // the composed picture, client size, ARGB32 premultiplied, the screen's pixel ratio
    bool bTranslucent { false };
    bool bPopup { false };
    bool bAcceptFiles { false }; // DragAcceptFiles of the host

protected:
    bool event(QEvent* e) override;
    bool eventFilter(QObject* obj, QEvent* e) override;
    void paintEvent(QPaintEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void moveEvent(QMoveEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void wheelEvent(QWheelEvent* e) override;
    void leaveEvent(QEvent* e) override;
    void timerEvent(QTimerEvent* e) override;
    void closeEvent(QCloseEvent* e) override;
    void showEvent(QShowEvent* e) override;
    void hideEvent(QHideEvent* e) override;
    void changeEvent(QEvent* e) override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dragMoveEvent(QDragMoveEvent* e) override;
    void dropEvent(QDropEvent* e) override;

private:
    void DeliverMouse(uint32_t msg, QMouseEvent* e);
    bool IsSecondClick(const QMouseEvent* e);
    bool HandleKey(QKeyEvent* e, bool bChild);

    CQKHostWnd* pHost { nullptr };
    int nEventDepth { 0 };
    bool bTracking { false }; // the pointer is inside and a leave will be reported
    bool bBlitting { false }; // a repaint only to show pixels the host already composed
    bool bInPaint { false };
    // The last key event a child got through the filter: if the child leaves it, Qt passes
    // the same event up to this widget, where it is no key of the host's own.
    const QEvent* pChildKey { nullptr };
    QRegion rgnInvalid; // what InvalidateRect marked and no OnPaint has served yet
    std::map<uint32_t, int> mapTimers; // timer number -> Qt timer id
    // The last press, to tell a double click at the press itself.
    uint64_t nLastPressTime { 0 };
    QPoint ptLastPress;
    Qt::MouseButton nLastButton { Qt::NoButton };
    bool bLastWasDouble { false };
    bool bDoubleSent { false }; // the last press went out as a double click already
};
