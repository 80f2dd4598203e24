#pragma once
// CQKUIManager: the flat list of windowless controls of one host window.
//
// A host (the main window, a dialog, a bar, a popup list) owns one manager. The manager owns
// its controls, passes them the host's mouse, wheel, key and activation events, keeps the
// keyboard focus, composes the whole window off screen on every full repaint, and reads the
// skin file into itself. There is one level only: a control never holds child controls here.
//
// There is no hit test: every control hears every mouse event and decides for itself, so
// overlapping controls may both hover. A control is found by the pair (id, kind), never by id
// alone (a dialog's close button and its Cancel button share id 2).
#include <QImage>
#include <QPoint>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

class CQKButton;
class CQKHostWnd;

// The manager's record of one control.
struct tagQKChild
{
    uint32_t nID { 0 };
    std::unique_ptr<CQKButton> pControl;
    uint32_t nKind { 0 };
};

// The program's folder with a trailing '/', filled by the first manager made.
extern QString g_szAppFolder;
// Live managers; the font table is emptied when the last one goes.
extern int g_nManagerCount;

class CQKUIManager
{
public:
    CQKUIManager();
    CQKUIManager(const CQKUIManager&) = delete;
    CQKUIManager& operator=(const CQKUIManager&) = delete;

    // Stores the host and reads skin/mainwnd.xml into this manager: background, fonts,
    // controls. 0 when `pHost` is no window, else 1 whatever happened to the file.
    int LoadSkin(CQKHostWnd* pHost);
    // Stores the host and reads the skin file at `path` (tests, and hosts with a skin of
    // their own). Same result as LoadSkin.
    int LoadSkinFrom(CQKHostWnd* pHost, const QString& path);
    // Adds a control made in code: gives it the host, its id, this manager and the default
    // font of its kind, and runs its kind's creation step. The manager owns it from now on.
    // What a kind is given and told stands in its row of the traits table (QKControlKinds.h).
    void AddControl(uint32_t nID, std::unique_ptr<CQKButton> pControl, uint32_t nKind);
    // Appends a record as it stands (the skin reader's way, with no defaults given).
    void AppendChild(uint32_t nID, std::unique_ptr<CQKButton> pControl, uint32_t nKind);
    // The control with this id and kind, or null.
    CQKButton* FindControl(uint32_t nID, uint32_t nKind) const;
    // The records in list order: creation order, paint order and Tab order.
    const std::vector<std::unique_ptr<tagQKChild>>& Children() const { return vecChildren; }

    // The wheel goes to the focus control, if its kind takes it; nonzero if consumed.
    int OnMouseWheel(uint32_t nFlags, int nDelta, const QPoint& pt);
    // The host's activation changed (WA_* state).
    void OnActivate(uint32_t nState);
    // A key message from the host's filter; nonzero if consumed. Tab moves the focus.
    int PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t nMods);
    // Focuses the next control in list order, wrapping; disabled and hidden ones included.
    void FocusNext();
    void SetFocusControl(CQKButton* pControl, uint32_t nKind);
    CQKButton* GetFocusControl() const { return pFocus; }
    // Composes the whole window (background, the host's own layer by QKM_PAINTBACKGROUND
    // (1924), the controls in list order) and puts it on screen in one copy.
    void PaintAll();
    // The same composition without the copy to the screen; null when there is no host.
    std::unique_ptr<QImage> RenderToBitmap();

    // Every control hears a mouse message (WM_MOUSEMOVE (512) to WM_RBUTTONUP (517), and
    // WM_MOUSELEAVE (675)) at a client point; a control that reports a change is repainted
    // alone at once.
    virtual void OnMouseMessage(uint32_t nMsg, const QPoint* pPoint);
    // After a size change: every control's saved background is dropped and the controls that
    // lay themselves out are told.
    virtual void InvalidateCaches();
    virtual ~CQKUIManager();

    CQKHostWnd* hWndHost { nullptr };
    std::unique_ptr<QImage> pBackground; // whole-window picture from the skin
    std::vector<std::unique_ptr<tagQKChild>> vecChildren;
    CQKButton* pFocus { nullptr }; // not owned
    uint32_t nFocusKind { 0 };
    CQKButton* pTimelineEditor { nullptr }; // the last QKKIND_TIMELINEEDITOR added, not owned

private:
    // Composes into `image` (already of the window's size).
    void Compose(QImage& image);
};
