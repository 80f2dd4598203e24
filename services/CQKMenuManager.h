#pragma once
// CQKMenuManager: the drawn popup menus of the program, as static operations on menu handles.
//
// Every popup menu of the program is ours: a handle is a number of our own, and the one
// place that knows menus, items and their records is a tinyxml2 tree kept by the process:
//
//   <mm>                                   the root, child of the document
//     <me h="65537" sp="...">              one per menu, in order of creation (sub-menus too)
//       <i d="..." id="1" st="0"/>         one per item, in item order
//       <i d="0" id="0" st="2"/>           a separator: no record
//       <i d="..." s="65538" id="65538"/>  an item that opens the menu 65538
//     </me>
//   </mm>
//
// "h" is the menu's handle, "sp" the address of the wrapper that GetSubMenuWrapper made for
// it (the manager owns that wrapper), "d" the address of the item's record (tagQKMenuItem),
// "s" the handle of the sub-menu the item opens. Where a system keeps its menus itself, the
// tree also holds what the system would: the item's id ("id"; a sub-menu item's id is its
// sub-menu's handle) and its state ("st": MFS_* bits, 3 disabled, 8 checked). Addresses are
// 64-bit decimal text; the tree is never written to a file.
//
// Items are measured by MeasureItem and painted by DrawItem, in the theme's menu colours and
// in g_strFontName at g_nFontOffset + 12 pixels. TrackPopupMenu (CQKMenuTracker) opens a menu
// as windows of our own and returns the chosen id.
//
// The state comes up with the first CQKMenuEx and ends with the last one (Shutdown), which
// destroys every menu still in the tree. Everything runs on the GUI thread.
#include <QImage>
#include <QRect>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace tinyxml2 {
class XMLDocument;
class XMLElement;
} // namespace tinyxml2
class CQKMenuEx;
class CQKMenuExShadow;
class CQKHostWnd;

// A menu handle: 0 is none. Handles are never reused while the process runs.
using QKHMENU = int32_t;

// Flags of the item operations: the item is given by position (else by id).
inline constexpr uint32_t MF_BYPOSITION = 0x400;
// State bits of an item (the "st" attribute) and of a drawn item (tagQKDrawItem::nItemState).
inline constexpr uint32_t MFS_DISABLED = 0x3;
inline constexpr uint32_t MFS_CHECKED = 0x8;
inline constexpr uint32_t ODS_SELECTED = 0x1;
inline constexpr uint32_t ODS_GRAYED = 0x2;
inline constexpr uint32_t ODS_DISABLED = 0x4;
inline constexpr uint32_t ODS_CHECKED = 0x8;

// The record of one item that is not a separator, referred to by the item's "d".
struct tagQKMenuItem
{
    QString pszText; // the whole text; a tab starts the accelerator text. Null: none
    QString pszImagePath; // the icon's path; null: none
    std::unique_ptr<QImage> pImage; // the icon, decoded once
};

// What MeasureItem is asked and answers.
struct tagQKMeasureItem
{
    int32_t itemID { 0 };
    uintptr_t itemData { 0 }; // the record, or 0
    int32_t itemWidth { 0 };
    int32_t itemHeight { 0 };
};

// What DrawItem paints: one item into `pTarget` at `rcItem`.
struct tagQKDrawItem
{
    QKHMENU hMenu { 0 }; // the menu the item is in
    int32_t itemID { 0 };
    uint32_t itemState { 0 }; // ODS_* bits
    uintptr_t itemData { 0 };
    QImage* pTarget { nullptr };
    QRect rcItem;
};

class CQKMenuManager
{
public:
    virtual ~CQKMenuManager() = default;

    // --- the state ------------------------------------------------------------------------
    static void Initialize();
    static void Shutdown();
    static bool IsInitialized();

    // --- menus and items ------------------------------------------------------------------
    // A new empty menu, or 0 before Initialize.
    static QKHMENU CreatePopup();
    // Appends an item; an id below 1 is a separator (no record, disabled, text ignored).
    // Nonzero on success, 0 for an unknown menu.
    static int AppendItem(QKHMENU hMenu, int32_t nID, const QString& strText);
    static int AppendImageItem(QKHMENU hMenu, int32_t nID, const QString& strText, const QString& strImagePath);
    // Appends an item that opens `hSub`. A sub-menu that another item opens already is
    // copied first, so that no two items share one. 0 when either menu is unknown.
    static int AppendSubMenu(QKHMENU hMenu, QKHMENU hSub, const QString& strText);
    // A new managed menu with the same items (sub-menus copied by the rule above), or 0.
    static QKHMENU CopyMenu(QKHMENU hMenu);
    // Inserts before `nPos`; at or past the end it appends. 1 or 0.
    static int InsertItem(QKHMENU hMenu, int nPos, int32_t nID, const QString& strText);
    static int InsertSubMenu(QKHMENU hMenu, QKHMENU hSub, int nPos, const QString& strText);
    // Removes the item at `nPos`, with its record and the menu it opens. 1 or 0.
    static int DeleteItem(QKHMENU hMenu, int nPos);
    // Destroys a menu, its records, its wrapper and the menus its items open. 1 or 0.
    static int DestroyManagedMenu(QKHMENU hMenu);
    static void DestroyAllMenus();

    // --- looking things up ----------------------------------------------------------------
    static tinyxml2::XMLElement* FindMenuElement(QKHMENU hMenu);
    static int IsManagedMenu(QKHMENU hMenu);
    // Whether an item of any menu opens `hMenu`.
    static int IsSubMenuInUse(QKHMENU hMenu);
    // The wrapper of a managed menu, made once and owned by the manager; null if unmanaged.
    static CQKMenuEx* GetSubMenuWrapper(QKHMENU hMenu);
    // The item's text into `strOut` (emptied first): its length, or 0. `nFlags` with
    // MF_BYPOSITION gives the item by position, otherwise by id.
    static int GetItemText(QKHMENU hMenu, int32_t nItem, QString& strOut, uint32_t nFlags);
    // A private copy of the text (null: none). 1 or 0.
    static int SetItemText(QKHMENU hMenu, int32_t nItem, const QString* pText, uint32_t nFlags);
    static QKHMENU GetSubMenuHandle(QKHMENU hMenu, int nPos);
    static int GetMenuItemCount(QKHMENU hMenu);
    // The id of the item at `nPos` (a sub-menu item's is its sub-menu's handle), or 0.
    static int32_t GetMenuItemID(QKHMENU hMenu, int nPos);
    // The item's "st" (MFS_* bits), or -1 when there is no such item.
    static int32_t GetItemState(QKHMENU hMenu, int32_t nItem, uint32_t nFlags);
    // Replaces the whole state; false when there is no such item.
    static bool SetItemState(QKHMENU hMenu, int32_t nItem, uint32_t nFlags, uint32_t nState);
    // The record of the item (null for separators and unknown items).
    static tagQKMenuItem* GetItemRecord(QKHMENU hMenu, int32_t nItem, uint32_t nFlags);
    // The item element (by position or id), or null.
    static tinyxml2::XMLElement* FindItemElement(QKHMENU hMenu, int32_t nItem, uint32_t nFlags);

    // --- measuring and painting -----------------------------------------------------------
    static void MeasureItem(tagQKMeasureItem& m);
    static void DrawItem(const tagQKDrawItem& d);
    // The width of a text in the menu's font, on one line, '&' marks shown: truncated.
    static int32_t MeasureText(const QString& strText);

    // --- settings -------------------------------------------------------------------------
    // 0: a path text ("x:" and a '/' in it) shows only its last part, for the next tracking.
    static void SetShowFullPath(int32_t bShow) { s_bShowFullPath = bShow; }
    static int32_t GetShowFullPath() { return s_bShowFullPath; }
    static void SetLeftWidth(int32_t n) { s_nLeftWidth = n; }
    static int32_t GetLeftWidth() { return s_nLeftWidth; }
    static void SetItemHeight(int32_t n) { s_nItemHeight = n; }
    static int32_t GetItemHeight() { return s_nItemHeight; }

    // --- open menu windows ----------------------------------------------------------------
    // Opens `hMenu` at a screen point over `pOwner` and returns the chosen id, or 0.
    static int TrackPopupMenu(QKHMENU hMenu, int x, int y, CQKHostWnd* pOwner);
    // Closes the menu that is open now, with nothing chosen (a window on its way out).
    static void EndMenuTracking();
    static int32_t GetMenuWndCount();
    // The open menu window at `i` (0 is the first menu), or null.
    static CQKHostWnd* GetMenuWnd(int i);
    static bool IsShadowMapEmpty();
    // Kept by the tracker: the menu windows open now and the shadow of each.
    static void RegisterMenuWnd(CQKHostWnd* pWnd, CQKMenuExShadow* pShadow);
    static void UnregisterMenuWnd(const CQKHostWnd* pWnd);

    static int32_t s_nMenuExCount;

private:
    static tinyxml2::XMLElement* MakeItemElement(int32_t nID, const QString& strText);
    static void InsertBefore(tinyxml2::XMLElement* pMenu, tinyxml2::XMLElement* pBefore, tinyxml2::XMLElement* pItem);
    static void FreeRecord(tinyxml2::XMLElement* pItem);
    static tinyxml2::XMLElement* MakeSubMenuElement(QKHMENU hMenu, QKHMENU hSub, const QString& strText);
    // The text as a row shows it: a path shortened while full paths are off.
    static QString DisplayText(const tagQKMenuItem* pRecord);

    static std::unique_ptr<tinyxml2::XMLDocument> s_pMenuDocument;
    static tinyxml2::XMLElement* s_pMenuRoot;
    static int32_t s_nLeftWidth;
    static int32_t s_nItemHeight;
    static int32_t s_bShowFullPath;
    static QKHMENU s_nNextHandle;
    static std::map<const CQKHostWnd*, CQKMenuExShadow*> s_mapShadows;
    static std::vector<CQKHostWnd*> s_arrMenuWnds;
};
