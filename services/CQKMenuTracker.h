#pragma once
// CQKMenuTracker: one tracking of a popup menu, from opening to the chosen id.
//
// It opens the first menu as a popup at the point, and sub-menus beside their items as the
// user reaches them, each with its shadow. The first menu's window holds the mouse and the
// keys, and hands everything to the tracker. What each event does:
//
//   event                         | what happens
//   ------------------------------+------------------------------------------------------------
//   move over a row               | it is selected; deeper menus close; a sub-menu row opens
//                                 | its sub-menu beside it
//   move outside every menu       | the deepest menu loses its selection, unless that opened
//                                 | the menu beyond it
//   press outside every menu      | the tracking ends with 0; the press reaches nobody
//   release over an enabled row   | the tracking ends with its id (a sub-menu row: nothing)
//   Down, Up, Home, End           | selection in the deepest menu, past separators, wrapping
//   Right, Enter on a sub-menu    | opens it with its first row selected
//   Left                          | closes the deepest sub-menu
//   Esc                           | closes the deepest sub-menu; on the first menu ends with 0
//   Enter on an enabled row       | ends with its id
//   a letter or digit             | the row with that '&' mnemonic in the deepest menu: as
//                                 | Enter; several such rows are selected in turn
//   the popup closed by the system| ends with 0
#include "platform/CQKHostWnd.h"
#include "services/CQKMenuManager.h"

#include <memory>
#include <vector>

class CQKMenuWnd;
class CQKMenuExShadow;

class CQKMenuTracker
{
public:
    explicit CQKMenuTracker(CQKHostWnd* pOwner);
    ~CQKMenuTracker();
    CQKMenuTracker(const CQKMenuTracker&) = delete;
    CQKMenuTracker& operator=(const CQKMenuTracker&) = delete;

    // Opens `hMenu` with its top-left corner at `ptScreen` (flipped to stay on the screen),
    // runs until the menu ends and returns the chosen id, or 0.
    int Track(QKHMENU hMenu, QPoint ptScreen);

    void OnMouse(uint32_t msg, QPoint ptScreen);
    void OnKey(uint32_t vk, uint32_t mods);
    // Ends the tracking with `nID` (0: nothing chosen).
    void End(int nID);
    // Ends the tracking that runs now, if any, with nothing chosen: a window that closes
    // while its menu is open must not wait for the user to close the menu.
    static void EndActive();

    // Where a menu of `size` goes: at `pt`, or flipped to its left or above it where the
    // screen `rcScreen` ends.
    static QRect PlaceAtPoint(QPoint pt, QSize size, const QRect& rcScreen);
    // Where a sub-menu of `size` goes beside the row `rcRow` (screen) of a menu `rcParent`:
    // to the right, or to the left where the screen ends; moved up to stay on it.
    static QRect PlaceBeside(const QRect& rcParent, const QRect& rcRow, QSize size, const QRect& rcScreen);

private:
    struct tagLevel
    {
        std::unique_ptr<CQKMenuExShadow> pShadow;
        std::unique_ptr<CQKMenuWnd> pWnd;
    };

    bool OpenLevel(QKHMENU hMenu, const QRect& rc);
    void OpenSubMenu(int nLevel, int nRow, bool bSelectFirst);
    void CloseLevelsAbove(int nLevel);
    void Activate(int nLevel, int nRow);
    void MoveSelection(int nStep);
    void Mnemonic(char16_t ch);
    // The deepest level and row under a screen point: false when outside every menu.
    bool HitTest(QPoint ptScreen, int& nLevel, int& nRow) const;
    CQKMenuWnd* Deepest() const;

    CQKHostWnd* pOwner;
    QRect rcScreen;
    std::vector<tagLevel> vecLevels;
    int nResult { 0 };
    bool bEnded { false };
    static CQKMenuTracker* s_pActive;
};
