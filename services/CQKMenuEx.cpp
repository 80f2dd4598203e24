#include "services/CQKMenuEx.h"

#include "toolkit/QKTheme.h"

CQKMenuEx::CQKMenuEx()
{
    ++CQKMenuManager::s_nMenuExCount;
    CQKMenuManager::SetLeftWidth(g_nFontOffset + 25);
    CQKMenuManager::SetItemHeight(g_nFontOffset + 25);
    CQKMenuManager::Initialize();
}

CQKMenuEx::~CQKMenuEx()
{
    if (bOwnedByManager)
        return;
    --CQKMenuManager::s_nMenuExCount;
    if (CQKMenuManager::s_nMenuExCount <= 0) {
        CQKMenuManager::s_nMenuExCount = 0;
        CQKMenuManager::Shutdown();
    }
}

bool CQKMenuEx::CreatePopupMenu()
{
    m_hMenu = CQKMenuManager::CreatePopup();
    return m_hMenu != 0;
}

int CQKMenuEx::Append(int32_t nID, const QString& strText)
{
    return CQKMenuManager::AppendItem(m_hMenu, nID, strText);
}

int CQKMenuEx::AppendWithImage(int32_t nID, const QImage* pImage, const QString& strText)
{
    if (!Append(nID, strText))
        return 0;
    tagQKMenuItem* pRecord = CQKMenuManager::GetItemRecord(m_hMenu, CQKMenuManager::GetMenuItemCount(m_hMenu) - 1, MF_BYPOSITION);
    if (!pRecord)
        return 0;
    pRecord->pszImagePath = QString();
    pRecord->pImage.reset(pImage ? new QImage(pImage->convertToFormat(QImage::Format_ARGB32_Premultiplied)) : nullptr);
    return 1;
}

int CQKMenuEx::AppendWithImagePath(int32_t nID, const QString& strImagePath, const QString& strText)
{
    if (!Append(nID, strText))
        return 0;
    return SetItemImagePath(CQKMenuManager::GetMenuItemCount(m_hMenu) - 1, strImagePath, MF_BYPOSITION);
}

int CQKMenuEx::SetItemImagePath(int32_t nItem, const QString& strImagePath, uint32_t nFlags)
{
    tagQKMenuItem* pRecord = CQKMenuManager::GetItemRecord(m_hMenu, nItem, nFlags);
    if (!pRecord)
        return 0;
    pRecord->pszImagePath = strImagePath;
    return 1;
}

QString CQKMenuEx::GetItemImagePath(int nPos) const
{
    const tagQKMenuItem* pRecord = CQKMenuManager::GetItemRecord(m_hMenu, nPos, MF_BYPOSITION);
    return pRecord ? pRecord->pszImagePath : QString();
}

void CQKMenuEx::Destroy()
{
    const QKHMENU h = m_hMenu;
    m_hMenu = 0;
    CQKMenuManager::DestroyManagedMenu(h);
}

int CQKMenuEx::TrackPopupMenu(int x, int y, CQKHostWnd* pHost)
{
    return CQKMenuManager::TrackPopupMenu(m_hMenu, x, y, pHost);
}

int CQKMenuEx::EnableItem(int32_t nItem, bool bEnable, uint32_t nFlags)
{
    if (!CQKMenuManager::SetItemState(m_hMenu, nItem, nFlags, bEnable ? 0 : MFS_DISABLED))
        return 0;
    return bEnable ? 3 : 0;
}

int CQKMenuEx::EnableItemDeep(int nPos, bool bEnable)
{
    if (bEnable) {
        if (CQKMenuEx* pSub = GetSubMenu(nPos)) {
            const int n = CQKMenuManager::GetMenuItemCount(pSub->GetHandle());
            for (int i = 0; i < n; ++i)
                pSub->EnableItem(i, true, MF_BYPOSITION);
        }
    }
    return EnableItem(nPos, bEnable, MF_BYPOSITION);
}

int CQKMenuEx::CheckItem(int nPos, bool bCheck)
{
    if (!CQKMenuManager::SetItemState(m_hMenu, nPos, MF_BYPOSITION, bCheck ? MFS_CHECKED : 0))
        return -1;
    return bCheck ? 0 : 8;
}

bool CQKMenuEx::IsItemChecked(int32_t nItem, uint32_t nFlags) const
{
    return CQKMenuManager::GetItemState(m_hMenu, nItem, nFlags) == static_cast<int32_t>(MFS_CHECKED);
}

CQKMenuEx* CQKMenuEx::GetSubMenu(int nPos) const
{
    return CQKMenuManager::GetSubMenuWrapper(CQKMenuManager::GetSubMenuHandle(m_hMenu, nPos));
}
