// The player's context menu: built once, its check marks following the options each time it
// opens, and what each of its 23 choices does. Its ids are a number space of their own and
// never pass through the command handler.
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "player/QKPlayerOptions.h"
#include "services/CQKMenuEx.h"

namespace {

// The ids of the menu's rows.
enum : int32_t {
    IDM_OPEN = 1,
    IDM_PLAYPAUSE = 2,
    IDM_STOP = 3,
    IDM_PREV = 4,
    IDM_NEXT = 5,
    IDM_MUTE = 6,
    IDM_FULLSCREEN = 7,
    IDM_SIZE200 = 8,
    IDM_SIZE100 = 9,
    IDM_SIZE50 = 10,
    IDM_SIZENONE = 11,
    IDM_RATIO_FIRST = 12, // "&Default"; the ratios follow up to 19
    IDM_RATIO_LAST = 19,
    IDM_AUTOPLAYNEXT = 20,
    IDM_ONLYONE = 21,
    IDM_TOPMOST = 22,
    IDM_EXIT = 23,
};

// Positions of the three sub-menus in the menu.
constexpr int kPosControl = 2;
constexpr int kPosWindowSize = 3;
constexpr int kPosRatio = 4;

struct tagEntry
{
    int32_t nID; // 0: a separator
    const char16_t* szText;
};

// Makes a sub-menu from its rows and hangs it on `pParent`; its short-lived wrapper goes, the
// menu stays.
void AppendSubMenu(CQKMenuEx* pParent, const char16_t* szText, std::initializer_list<tagEntry> rows)
{
    CQKMenuEx sub;
    sub.CreatePopupMenu();
    for (const tagEntry& e : rows)
        sub.Append(e.nID, e.nID ? QString::fromUtf16(e.szText) : QString());
    CQKMenuManager::AppendSubMenu(pParent->GetHandle(), sub.GetHandle(), QString::fromUtf16(szText));
}

} // namespace

void CQKPlayerDlg::BuildContextMenu()
{
    m_pContextMenu = std::make_unique<CQKMenuEx>();
    CQKMenuEx* pMenu = m_pContextMenu.get();
    pMenu->CreatePopupMenu();
    pMenu->Append(IDM_OPEN, QStringLiteral("&Open File\r\tCtrl+O"));
    pMenu->Append(0, QString());
    AppendSubMenu(pMenu, u"&Control",
        { { IDM_PLAYPAUSE, u"&Play / Pause\r\tSpace" }, { IDM_STOP, u"&Stop\r\tCtrl+S" },
            { IDM_PREV, u"P&revious\r\tCtrl+\u2190" }, { IDM_NEXT, u"&Next\r\tCtrl+\u2192" },
            { IDM_MUTE, u"&Mute\r\tCtrl+M" } });
    AppendSubMenu(pMenu, u"&Window Size",
        { { IDM_FULLSCREEN, u"&Full Screen\r\tF2" }, { 0, nullptr }, { IDM_SIZE200, u"200%\r\tF3" },
            { IDM_SIZE100, u"100% (Actual Size)\r\tF4" }, { IDM_SIZE50, u"50%\r\tF5" },
            { IDM_SIZENONE, u"Do &Nothing" } });
    AppendSubMenu(pMenu, u"Display &Ratio",
        { { 12, u"&Default" }, { 13, u"Stretch" }, { 14, u"&Keep Source Ratio" }, { 0, nullptr },
            { 15, u"1 : 1" }, { 16, u"4 : 3" }, { 17, u"5 : 4" }, { 18, u"16 : 9" }, { 19, u"16 : 10" } });
    pMenu->Append(0, QString());
    pMenu->Append(IDM_AUTOPLAYNEXT, QStringLiteral("&Auto Play Next"));
    pMenu->Append(IDM_ONLYONE, QStringLiteral("Only One Instance Running"));
    pMenu->Append(IDM_TOPMOST, QStringLiteral("Always On &Top"));
    pMenu->Append(0, QString());
    pMenu->Append(IDM_EXIT, QStringLiteral("&Exit\r\tCtrl+E"));
}

void CQKPlayerDlg::UpdateContextMenuChecks()
{
    using namespace QKPlayerOptions;
    CQKMenuEx* pMenu = m_pContextMenu.get();
    // The marks are set in a fixed order, row by row: a check replaces the row's whole state.
    if (CQKMenuEx* pControl = CQKMenuManager::GetSubMenuWrapper(CQKMenuManager::GetSubMenuHandle(pMenu->GetHandle(), kPosControl)))
        pControl->CheckItem(4, bMute != 0);
    if (CQKMenuEx* pSize = CQKMenuManager::GetSubMenuWrapper(CQKMenuManager::GetSubMenuHandle(pMenu->GetHandle(), kPosWindowSize))) {
        pSize->CheckItem(0, m_bFullScreen != 0);
        for (int i = 0; i < 4; ++i)
            pSize->CheckItem(2 + i, ds == i);
    }
    if (CQKMenuEx* pRatio = CQKMenuManager::GetSubMenuWrapper(CQKMenuManager::GetSubMenuHandle(pMenu->GetHandle(), kPosRatio))) {
        for (int i = 0; i < 8; ++i)
            pRatio->CheckItem(i < 3 ? i : i + 1, dr == i);
    }
    pMenu->CheckItem(6, bAutoPlayNext != 0);
    pMenu->CheckItem(7, bOnlyOneInstance != 0);
    pMenu->CheckItem(8, bAlwaysOnTop != 0);
}

void CQKPlayerDlg::ShowContextMenu(QPoint ptScreen)
{
    if (!IsWindow())
        return;
    if (!m_pContextMenu)
        BuildContextMenu();
    UpdateContextMenuChecks();

    // The bars do not fade and the cursor does not hide while the menu is open.
    if (m_bFullScreen)
        KillTimer(QKTIMER_BARS);
    KillTimer(QKTIMER_CURSOR);
    const int nChoice = m_pContextMenu->TrackPopupMenu(ptScreen.x(), ptScreen.y(), this);
    if (!IsWindow())
        return;
    SetTimer(QKTIMER_CURSOR, 100);
    if (m_bFullScreen)
        SetTimer(QKTIMER_BARS, 300);
    OnContextMenuChoice(nChoice);
}

void CQKPlayerDlg::OnContextMenuChoice(int nChoice)
{
    using namespace QKPlayerOptions;
    switch (nChoice) {
    case IDM_OPEN:
        OnFileOpen();
        break;
    case IDM_PLAYPAUSE:
        OnPlayPause();
        break;
    case IDM_STOP:
        OnStop();
        break;
    case IDM_PREV:
        OnPrevFile();
        break;
    case IDM_NEXT:
        OnNextFile();
        break;
    case IDM_MUTE:
        OnMute();
        break;
    case IDM_FULLSCREEN:
        OnFullScreen();
        break;
    case IDM_SIZE200:
        ds = 0;
        ResizeToVideo(2.0);
        ds = 0;
        break;
    case IDM_SIZE100:
        ds = 1;
        ResizeToVideo(1.0);
        break;
    case IDM_SIZE50:
        ds = 2;
        ResizeToVideo(0.5);
        ds = 2;
        break;
    case IDM_SIZENONE:
        ds = 3;
        break;
    case IDM_AUTOPLAYNEXT:
        bAutoPlayNext = !bAutoPlayNext;
        break;
    case IDM_ONLYONE:
        bOnlyOneInstance = !bOnlyOneInstance;
        break;
    case IDM_TOPMOST:
        bAlwaysOnTop = !bAlwaysOnTop;
        // Full screen keeps the window above everything anyway.
        if (!m_bFullScreen)
            SetTopmost(bAlwaysOnTop != 0);
        break;
    case IDM_EXIT:
        OnCancel();
        break;
    default:
        if (nChoice >= IDM_RATIO_FIRST && nChoice <= IDM_RATIO_LAST) {
            dr = nChoice - IDM_RATIO_FIRST;
            UpdateVideoLayout();
        }
        break;
    }
}

bool CQKPlayerDlg::OnContextButtonUp(QPoint pt)
{
    // The video surface takes no clicks: a right click on it arrives here, in client pixels.
    const QPoint ptScreen = ClientToScreen(pt);
    if (m_wndPlay && m_wndPlay->IsVisible() && m_wndPlay->GetWindowRect().contains(ptScreen)) {
        ShowContextMenu(ptScreen);
        return true;
    }
    const bool bTitle = pt.y() >= 0 && pt.y() < 30 && GetClientRect().contains(pt) && !IsOverTitleControl(pt);
    if (bTitle || m_rcVideo.contains(pt)) {
        ShowContextMenu(GetCursorPos());
        return true;
    }
    return false;
}
