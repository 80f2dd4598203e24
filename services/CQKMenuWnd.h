#pragma once
// CQKMenuWnd: the window of one open menu, painted row by row by CQKMenuManager::DrawItem.
//
// The first menu of a tracking is a popup: it holds the keyboard and the mouse while it is
// open, and everything it hears goes to its CQKMenuTracker, which knows all open levels. The
// windows of sub-menus are plain windows that never take the focus; while the first menu
// holds the mouse their input reaches the tracker through it.
//
// The window is a one-pixel frame in clrMenuFrame around the rows, which lie one under the
// other, all as wide as the widest.
#include "platform/CQKHostWnd.h"
#include "services/CQKMenuManager.h"

#include <QChar>
#include <vector>

class CQKMenuTracker;

class CQKMenuWnd : public CQKHostWnd
{
public:
    struct tagRow
    {
        int32_t nID { 0 };
        uint32_t nState { 0 }; // MFS_* bits from the tree
        uintptr_t nData { 0 };
        QKHMENU hSub { 0 };
        QRect rc; // client pixels
        char16_t chMnemonic { 0 }; // upper case, 0 for none
    };

    explicit CQKMenuWnd(CQKMenuTracker* pTracker);
    ~CQKMenuWnd() override;

    // Makes the hidden window: the popup of the first level, or a sub-menu's window.
    bool Create(bool bPopup, CQKHostWnd* pOwner);
    // Reads the menu's rows from the tree and measures them; the window's size follows.
    void Load(QKHMENU hMenu);
    QSize MenuSize() const { return szMenu; }
    QKHMENU Menu() const { return hMenu; }
    const std::vector<tagRow>& Rows() const { return vecRows; }

    int Selected() const { return nSel; }
    // Selects row `i` (-1: none) and repaints now.
    void Select(int i);
    // The row under a client point, or -1.
    int RowAt(QPoint pt) const;
    // Whether the row can be selected by the keyboard (not a separator).
    bool IsSelectable(int i) const;
    bool IsEnabled(int i) const;

    // The whole picture of the menu as it shows now, and the same put on the screen now.
    QImage Compose() const;
    void Repaint();

protected:
    void OnPaint() override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    bool PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods) override;
    void OnClose() override;

private:
    CQKMenuTracker* pTracker;
    QKHMENU hMenu { 0 };
    std::vector<tagRow> vecRows;
    QSize szMenu;
    int nSel { -1 };
};
