#pragma once
// CQKMenuEx: the handle of one drawn popup menu, as user code holds it.
//
// A thin wrapper over CQKMenuManager's operations on its m_hMenu. The first wrapper brings the
// manager's state up; when the last one that user code made goes, the manager shuts down and
// every menu still in its tree is destroyed. A wrapper never destroys its own menu on
// deletion, so a short-lived wrapper can build a sub-menu and go while the menu stays (the
// context menu is built that way). Wrappers that GetSubMenu hands out belong to the manager
// and are deleted with their menu; they do not keep the state alive.
#include "services/CQKMenuManager.h"

#include <QImage>
#include <QString>

class CQKHostWnd;

class CQKMenuEx
{
public:
    CQKMenuEx();
    virtual ~CQKMenuEx();
    CQKMenuEx(const CQKMenuEx&) = delete;
    CQKMenuEx& operator=(const CQKMenuEx&) = delete;

    bool CreatePopupMenu();
    QKHMENU GetHandle() const { return m_hMenu; }
    // AppendItem on the menu: nonzero on success; an id below 1 is a separator.
    int Append(int32_t nID, const QString& strText);
    // Appends, then gives the new item a copy of `image` (null: none) as its icon. 1 or 0.
    int AppendWithImage(int32_t nID, const QImage* pImage, const QString& strText);
    // Appends, then gives the new item an icon path (null: none). 1 or 0.
    int AppendWithImagePath(int32_t nID, const QString& strImagePath, const QString& strText);
    // A private copy of the path; a decoded icon stays. 1 or 0.
    int SetItemImagePath(int32_t nItem, const QString& strImagePath, uint32_t nFlags);
    QString GetItemImagePath(int nPos) const;
    // Destroys the menu and forgets it.
    void Destroy();
    // Opens the menu at a screen point over `pHost`; the chosen id, or 0. Blocks until the
    // menu closes.
    int TrackPopupMenu(int x, int y, CQKHostWnd* pHost);
    // Sets the whole state to enabled (0) or disabled (3): 3 if enabled, else 0; 0 on failure.
    int EnableItem(int32_t nItem, bool bEnable, uint32_t nFlags);
    // Enables the items of the item's sub-menu first; disabling does not go down.
    int EnableItemDeep(int nPos, bool bEnable);
    // Sets the whole state to checked (8) or not (0), by position: 0 if it set the mark, 8 if
    // it cleared it, -1 on failure. Checking an item thus enables it as well.
    int CheckItem(int nPos, bool bCheck);
    bool IsItemChecked(int32_t nItem, uint32_t nFlags) const;
    // The wrapper of the sub-menu at `nPos` (the manager's), or null.
    CQKMenuEx* GetSubMenu(int nPos) const;

private:
    friend class CQKMenuManager;
    QKHMENU m_hMenu { 0 };
    bool bOwnedByManager { false }; // made by GetSubMenuWrapper: not counted among the live ones
};
