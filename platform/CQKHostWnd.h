#pragma once
// CQKHostWnd: a window of the program.
//
// Every real window of the program derives from this plain class: the main window, the
// dialogs, the layered bars, popup lists and menus, tool tips. It gives them the vocabulary
// they are written in (numbered messages, numbered timers, mouse messages with capture,
// virtual keys and accelerators, one composed picture that is copied to the screen) and keeps
// Qt's widgets out of their headers: a private QWidget does the window system's work and calls
// back into the virtual operations below.
//
// Threads: everything runs on the GUI thread, except PostMessage, which any thread may call.
//
// Lifetime: Create() makes the window, DestroyWindow() (or the destructor, or the destruction
// of the owner host) ends it. OnDestroy() is called exactly once, while the window still
// exists. After that IsWindow() is false and the object may be reused with Create() again.
//
// Mouse messages follow the wiring every host uses:
//
//   event                      | what the host gets
//   ---------------------------+--------------------------------------------------------------
//   move inside                | OnSetCursor (no capture anywhere), then
//                              | OnMouseMessage(WM_MOUSEMOVE (512)); leave tracking starts
//   left press/release         | WM_LBUTTONDOWN (513) / WM_LBUTTONUP (514)
//   left double click          | WM_LBUTTONDBLCLK (515) instead of the second WM_LBUTTONDOWN
//   right press/release        | WM_RBUTTONDOWN (516) / WM_RBUTTONUP (517)
//                              | (WM_RBUTTONDBLCLK (518) for a right double click)
//   anything outside           | only while this host holds the capture; without one it goes
//                              | to the host of ours under the pointer, if any
//   while another host holds   | goes to that host, in its client pixels
//   the capture                |
//   pointer leaves the window  | OnMouseMessage(WM_MOUSELEAVE (675), (-99,-99)), once per
//                              | entry
//   wheel                      | OnMouseWheel(keys, delta 120 a notch, client point)
//
// Points are client pixels of the receiving host. Keys of mouse messages are MK_* flags.
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>
#include <vector>

class QImage;
class QWidget;
class QWindow;
class CQKHostWidget;

// Style flags of CQKHostCreate::nStyle.
enum : uint32_t {
    QKHS_FRAMELESS = 0x0001, // no frame or title bar of the system
    QKHS_TOOL = 0x0002, // no taskbar entry (tool window)
    QKHS_POPUP = 0x0004, // popup: closes on a click outside, grabs the keyboard while shown
    QKHS_TOPMOST = 0x0008, // stays on top of other windows
    QKHS_TRANSLUCENT = 0x0010, // per-pixel alpha: the composed picture's alpha reaches the screen
    QKHS_NOACTIVATE = 0x0020, // showing does not take the focus (tool tips)
    QKHS_TRANSPARENTINPUT = 0x0040, // the mouse passes through (shadows)
    QKHS_TIPWINDOW = 0x0080, // a tip or shadow: above all, never activated, placed exactly
};

// ShowWindow commands (the numbers the program uses).
enum : int {
    SW_HIDE = 0,
    SW_SHOWNORMAL = 1,
    SW_SHOWMINIMIZED = 2,
    SW_MAXIMIZE = 3,
    SW_SHOWNOACTIVATE = 4,
    SW_SHOW = 5,
    SW_MINIMIZE = 6,
    SW_SHOWNA = 8,
    SW_RESTORE = 9,
};

// Cursor shapes (the numbers of the system cursors).
enum : uint32_t {
    IDC_ARROW = 32512,
    IDC_IBEAM = 32513,
    IDC_WAIT = 32514,
    IDC_CROSS = 32515,
    IDC_SIZENWSE = 32642,
    IDC_SIZENESW = 32643,
    IDC_SIZEWE = 32644,
    IDC_SIZENS = 32645,
    IDC_SIZEALL = 32646,
    IDC_HAND = 32649,
};

// A window's state in the window system (OnWindowStateChange), combinable.
enum : uint32_t {
    QKWS_MINIMIZED = 0x1,
    QKWS_MAXIMIZED = 0x2,
    QKWS_FULLSCREEN = 0x4,
};

// Edges for StartSystemResize, combinable.
enum : uint32_t {
    QKEDGE_LEFT = 0x1,
    QKEDGE_TOP = 0x2,
    QKEDGE_RIGHT = 0x4,
    QKEDGE_BOTTOM = 0x8,
};

// How a host window is made.
struct CQKHostCreate
{
    uint32_t nStyle { QKHS_FRAMELESS }; // QKHS_* flags
    QString strClassName; // the window's class name: Qt object name and X11 window role
    QString strTitle; // window title (taskbar, window list)
    class CQKHostWnd* pOwner { nullptr }; // owner: stays above it and dies with it
    QRect rcWindow; // initial geometry in screen pixels; empty keeps the system's choice
};

// One entry of a host's accelerator table: a key with modifiers that becomes WM_COMMAND.
struct tagQKAccel
{
    uint32_t nMods { 0 }; // QKMOD_* flags that must be down, exactly
    uint32_t nKey { 0 }; // virtual-key code
    uint32_t nCmd { 0 }; // command id sent as WM_COMMAND's wParam
};

class CQKHostWnd
{
public:
    CQKHostWnd();
    virtual ~CQKHostWnd();
    CQKHostWnd(const CQKHostWnd&) = delete;
    CQKHostWnd& operator=(const CQKHostWnd&) = delete;

    // --- creation and lifetime ----------------------------------------------------------
    // Makes the window (hidden). False if it exists already. OnCreate() runs before return.
    bool Create(const CQKHostCreate& create);
    // Ends the window: OnDestroy(), then the window goes. Nothing when there is none.
    void DestroyWindow();
    // The window exists.
    bool IsWindow() const;
    // `pHost` is a live host with a window. Safe on any pointer, also one already deleted,
    // and from any thread.
    static bool IsWindow(const CQKHostWnd* pHost);
    // Runs a nested event loop with the window shown until EndModal(); returns its result.
    // A host with an owner blocks input to the owner meanwhile.
    int RunModal();
    // Ends RunModal() with `nResult`; the window is hidden, not destroyed.
    void EndModal(int nResult);
    bool IsModalRunning() const { return pModalLoop != nullptr; }

    // --- messages -----------------------------------------------------------------------
    // Queues a message; it reaches OnMessage() later on the GUI thread, in posting order.
    // Thread-safe. False when the window does not exist.
    bool PostMessage(uint32_t msg, uintptr_t wParam = 0, intptr_t lParam = 0);
    // The same for a host that may be gone already (the engine's end-of-media notice).
    static bool PostMessage(CQKHostWnd* pHost, uint32_t msg, uintptr_t wParam, intptr_t lParam);
    // Calls OnMessage() now and returns its result (GUI thread).
    intptr_t SendMessage(uint32_t msg, uintptr_t wParam = 0, intptr_t lParam = 0);

    // --- timers -------------------------------------------------------------------------
    // Starts (or restarts) timer `nID` with period `nMs`; OnTimer(nID) every period until
    // KillTimer. `bPrecise` asks for millisecond accuracy (the wave display).
    bool SetTimer(uint32_t nID, uint32_t nMs, bool bPrecise = false);
    bool KillTimer(uint32_t nID);
    bool HasTimer(uint32_t nID) const;

    // --- mouse capture and cursor --------------------------------------------------------
    // Mouse messages go to this host wherever the pointer is, until ReleaseCapture.
    void SetCapture();
    // The host holding the capture, or null.
    static CQKHostWnd* GetCapture();
    // Drops the capture, also while a button is held: later moves outside go elsewhere.
    static void ReleaseCapture();
    // Shows an IDC_* cursor over this window.
    void SetCursor(uint32_t nCursor);
    // Cursor hide counter of the process: the cursor shows while it is 0 or more. Returns the
    // new count.
    static int ShowCursor(bool bShow);
    // The cursor shows by the hide counter (a count of 0 or more).
    static bool IsCursorShowing();
    // The pointer in screen pixels.
    static QPoint GetCursorPos();

    // --- keyboard -----------------------------------------------------------------------
    void SetAccelerators(std::vector<tagQKAccel> table);
    const std::vector<tagQKAccel>& Accelerators() const { return vecAccel; }
    // Gives this window the keyboard focus.
    void SetFocus();
    bool HasFocus() const;
    // This window is the active window of the application.
    bool IsActive() const;
    // The host of the application's active window, or null when none of ours is active.
    static CQKHostWnd* GetForegroundWindow();
    // The host this window was made with as its owner, or null.
    CQKHostWnd* GetOwner() const;

    // --- showing and state --------------------------------------------------------------
    // SW_* command; returns whether the window was visible before.
    bool ShowWindow(int nCmd);
    bool IsWindowVisible() const;
    // Raises and activates the window, restoring it first when minimised.
    void SetForegroundWindow();
    bool IsIconic() const;
    bool IsZoomed() const;
    // Full screen on top of the window's other states: a window that the window manager
    // maximised stays maximised underneath and comes back so when full screen ends.
    void ShowFullScreen();
    // Leaves full screen only, back to the state underneath (normal or maximised).
    void EndFullScreen();
    // Leaves full screen and maximised for the normal state.
    void ShowNormal();
    bool IsFullScreen() const;
    // Turns "stays on top" on or off without moving, resizing or hiding the window for good.
    void SetTopmost(bool bTopmost);
    bool IsTopmost() const;
    void SetWindowText(const QString& strText);
    QString GetWindowText() const;
    // Constant opacity of the whole window, 0..255 (ignored without a compositor).
    void SetWindowAlpha(uint8_t nAlpha);
    // Limits the window to a region in client pixels; an empty region removes the limit.
    void SetWindowRgn(const QRect& rc);
    void SetWindowRgn(const std::vector<QRect>& rects);
    // Disabled windows take no mouse or key input.
    void EnableWindow(bool bEnable);
    bool IsWindowEnabled() const;

    // --- geometry -----------------------------------------------------------------------
    // 0,0,w,h of the client area.
    QRect GetClientRect() const;
    // The window's rectangle in screen pixels.
    QRect GetWindowRect() const;
    // A window that is moved leaves the window system's full-screen and maximised states.
    void MoveWindow(int x, int y, int w, int h, bool bRepaint = true);
    void MoveWindow(const QRect& rc, bool bRepaint = true);
    QPoint ClientToScreen(QPoint pt) const;
    QPoint ScreenToClient(QPoint pt) const;
    // Lets the window system move the window with the pointer (a drag on the caption).
    // Returns false where the system cannot; the caller then moves the window itself.
    bool StartSystemMove();
    // Same for resizing by QKEDGE_* edges.
    bool StartSystemResize(uint32_t nEdges);
    // Whether the window system lets a program place its own windows (false on Wayland).
    static bool CanPlaceWindows();
    // The work area of the primary screen (less panels) and its whole rectangle.
    static QRect GetPrimaryWorkArea();
    static QRect GetPrimaryScreenRect();
    // The whole rectangle of the screen that holds the centre of this window.
    QRect GetScreenRect() const;
    // The same screen's work area: its rectangle less the desktop's panels. A maximised
    // window of our own fills it.
    QRect GetWorkArea() const;

    // --- painting -----------------------------------------------------------------------
    // Marks a client rectangle (null: all) as needing pixels; OnPaint() follows later.
    void InvalidateRect(const QRect* pRect = nullptr);
    // Calls OnPaint() now if anything is invalid.
    void UpdateWindow();
    // The one way composed pixels reach the screen: copies `image` into the host's picture
    // at `ptDest` (client pixels) and puts that rectangle on screen before returning.
    void UpdateWindowFromImage(const QImage& image, QPoint ptDest = QPoint(0, 0));
    // The host's picture to compose a whole window into in place, without a picture of its
    // own and a copy: fitted to the window, or null when there is no window or the picture
    // is not `size` (client pixels) or the window is see-through. What is drawn reaches the
    // screen with ShowHostImage.
    QImage* HostImageToDraw(QSize size);
    void ShowHostImage(const QRect& rc);
    // The host's composed picture (client size, ARGB32 premultiplied): what the screen shows.
    // It has the window's device pixel ratio (see QKNewImage), as pictures handed to
    // UpdateWindowFromImage should have, so that they reach the screen pixel for pixel.
    const QImage& HostImage() const;
    // The device pixel ratio of the screen the window stands on (2 on a HiDPI screen).
    qreal DevicePixelRatio() const;

    // --- dropped files ------------------------------------------------------------------
    // Files dropped on this window reach its OnDropFiles.
    void DragAcceptFiles(bool bAccept);
    // Files dropped on any host window of the program (the bars, a popup) reach pReceiver's
    // OnDropFiles instead, whether or not that window takes files itself; null ends it. The
    // video surface takes no input, so a drop on it is its host's. While a modal window is up,
    // every drop is refused.
    static void CatchDroppedFiles(CQKHostWnd* pReceiver);

    // --- for platform code only -----------------------------------------------------------
    // The widget behind the window (video surface, edit fields), or null.
    QWidget* NativeWidget() const;
    // Its native window (tests drive input through it), or null.
    QWindow* NativeWindow() const;
    // The host of a widget made by this class, or null.
    static CQKHostWnd* FromWidget(const QWidget* pWidget);
    // The host whose OnDropFiles takes a drop on pHost's window, or null when none does.
    static CQKHostWnd* DropTarget(CQKHostWnd* pHost);

    // What happens to a key of this window that PreTranslateKey did not take: WM_KEYDOWN
    // through the accelerator table (a match sends WM_COMMAND with the command id and returns
    // true), else OnKeyDown or OnKeyUp (returns false).
    bool DefaultKeyMessage(uint32_t msg, uint32_t vk, uint32_t mods);
    // Looks a key up in the accelerator table: the command id, or 0.
    uint32_t FindAccelerator(uint32_t vk, uint32_t mods) const;

protected:
    // --- what a host overrides ----------------------------------------------------------
    // After the window is made, before Create() returns.
    virtual void OnCreate() { }
    // Private and command messages, posted or sent. Returns the message's result. The base
    // is the default processing: WM_SYSCOMMAND minimises, maximises, restores or closes,
    // WM_CLOSE calls OnClose(), anything else returns 0.
    virtual intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam);
    virtual void OnTimer(uint32_t nID);
    // Before each mouse move that no capture holds, as the system asks which cursor to
    // show. Return true when the host set one; otherwise the arrow is shown (and a control
    // may still set its own in the OnMouseMessage(WM_MOUSEMOVE (512)) that follows).
    virtual bool OnSetCursor(QPoint pt);
    virtual void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys);
    // True when consumed; otherwise nothing else happens with the wheel.
    virtual bool OnMouseWheel(uint32_t keys, int delta, QPoint pt);
    // Every key press and release of this window and its child widgets comes here first
    // (msg WM_KEYDOWN or WM_KEYUP, a VK_* code, QKMOD_* flags). True consumes it. The base
    // returns false.
    virtual bool PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods);
    // Keys that neither PreTranslateKey nor the accelerator table took.
    virtual void OnKeyDown(uint32_t vk, uint32_t mods);
    virtual void OnKeyUp(uint32_t vk, uint32_t mods);
    virtual void OnActivate(bool bActive);
    virtual void OnSetFocus() { }
    virtual void OnKillFocus() { }
    // The screen needs pixels: compose and hand them to UpdateWindowFromImage(). The base
    // does nothing, and the screen keeps showing HostImage().
    virtual void OnPaint() { }
    // The client area has a new size (the host's picture has it already).
    virtual void OnSize(int w, int h);
    virtual void OnMove(int x, int y);
    // The system or the user asks the window to close. The base destroys the window; a
    // popup that closes itself on an outside click comes here too.
    virtual void OnClose();
    // The window is going; the last moment it exists. The base destructor cannot reach a
    // derived OnDestroy, so a host that needs it calls DestroyWindow() in its own destructor.
    virtual void OnDestroy() { }
    // Files dropped on the window, in their order: local paths, and in the place of an item
    // that is no local file (a web address) its text, which names no file here. Posted: it
    // comes after the drop has ended.
    virtual void OnDropFiles(const QStringList& paths);
    // The window was shown or hidden.
    virtual void OnShowWindow(bool bShow);
    // The window system changed the window's state (QKWS_* flags) on its own or at the
    // user's command to the desktop (a window manager's maximise, the taskbar's restore).
    // Changes the program makes itself (ShowWindow, ShowFullScreen, ShowNormal) do not come
    // here, nor reports that change nothing.
    virtual void OnWindowStateChange(uint32_t nOldState, uint32_t nNewState);

private:
    friend class CQKHostWidget;
    void DetachWidget();

    CQKHostWidget* pWidget { nullptr }; // owned by Qt's tree (or by this), cleared when gone
    std::vector<tagQKAccel> vecAccel;
    class QEventLoop* pModalLoop { nullptr };
    int nModalResult { 0 };
    // The window was maximised when it went full screen. Some window managers (openbox) drop
    // the maximised state while a window is in full screen and give it back afterwards, so
    // the widget's own state cannot be trusted to remember it.
    bool bMaximizedUnderFull { false };
};
