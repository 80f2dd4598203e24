#include "services/CQKMenuWnd.h"

#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"
#include "services/CQKMenuTracker.h"
#include "toolkit/QKTheme.h"

#include <algorithm>
#include <tinyxml2.h>

namespace {

// The letter after a single '&' of the text before the tab, in upper case.
char16_t MnemonicOf(const QString& text)
{
    const QString label = text.left(text.indexOf(u'\t'));
    for (qsizetype i = 0; i + 1 < label.size(); ++i) {
        if (label[i] != u'&')
            continue;
        if (label[i + 1] == u'&') {
            ++i;
            continue;
        }
        return label[i + 1].toUpper().unicode();
    }
    return 0;
}

} // namespace

CQKMenuWnd::CQKMenuWnd(CQKMenuTracker* pOwnerTracker)
    : pTracker(pOwnerTracker)
{
}

CQKMenuWnd::~CQKMenuWnd()
{
    DestroyWindow();
}

bool CQKMenuWnd::Create(bool bPopup, CQKHostWnd* pOwner)
{
    CQKHostCreate cs;
    cs.nStyle = QKHS_FRAMELESS | QKHS_TOPMOST | (bPopup ? QKHS_POPUP : (QKHS_TIPWINDOW | QKHS_NOACTIVATE));
    cs.strClassName = QStringLiteral("QKMenu");
    cs.pOwner = pOwner;
    return CQKHostWnd::Create(cs);
}

void CQKMenuWnd::Load(QKHMENU hLoad)
{
    hMenu = hLoad;
    vecRows.clear();
    nSel = -1;
    int nWidth = 0;
    int y = 1;
    const int n = CQKMenuManager::GetMenuItemCount(hMenu);
    for (int i = 0; i < n; ++i) {
        const tinyxml2::XMLElement* pItem = CQKMenuManager::FindItemElement(hMenu, i, MF_BYPOSITION);
        tagRow row;
        row.nID = pItem->IntAttribute("id");
        row.nState = pItem->UnsignedAttribute("st");
        row.nData = static_cast<uintptr_t>(pItem->Int64Attribute("d"));
        row.hSub = pItem->IntAttribute("s");
        if (const auto* pRecord = reinterpret_cast<const tagQKMenuItem*>(row.nData))
            row.chMnemonic = MnemonicOf(pRecord->pszText);
        tagQKMeasureItem m;
        m.itemID = row.nID;
        m.itemData = row.nData;
        CQKMenuManager::MeasureItem(m);
        row.rc = QRect(1, y, 0, m.itemHeight);
        y += m.itemHeight;
        nWidth = std::max(nWidth, m.itemWidth);
        vecRows.push_back(row);
    }
    for (tagRow& row : vecRows)
        row.rc.setWidth(nWidth);
    szMenu = QSize(nWidth + 2, y + 1);
}

void CQKMenuWnd::Select(int i)
{
    if (i == nSel)
        return;
    nSel = i;
    Repaint();
}

int CQKMenuWnd::RowAt(QPoint pt) const
{
    for (size_t i = 0; i < vecRows.size(); ++i)
        if (vecRows[i].rc.contains(pt))
            return static_cast<int>(i);
    return -1;
}

bool CQKMenuWnd::IsSelectable(int i) const
{
    return i >= 0 && i < static_cast<int>(vecRows.size()) && vecRows[i].nID > 0;
}

bool CQKMenuWnd::IsEnabled(int i) const
{
    return IsSelectable(i) && !(vecRows[i].nState & MFS_DISABLED);
}

QImage CQKMenuWnd::Compose() const
{
    QImage image(szMenu, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor::fromRgba(QKColorFromBGR(g_UIColors.clrMenuFrame)));
    for (size_t i = 0; i < vecRows.size(); ++i) {
        const tagRow& row = vecRows[i];
        tagQKDrawItem d;
        d.hMenu = hMenu;
        d.itemID = row.nID;
        d.itemData = row.nData;
        d.pTarget = &image;
        d.rcItem = row.rc;
        if (row.nState & MFS_DISABLED)
            d.itemState |= ODS_GRAYED | ODS_DISABLED;
        if (row.nState & MFS_CHECKED)
            d.itemState |= ODS_CHECKED;
        if (static_cast<int>(i) == nSel)
            d.itemState |= ODS_SELECTED;
        CQKMenuManager::DrawItem(d);
    }
    return image;
}

void CQKMenuWnd::OnPaint()
{
    Repaint();
}

void CQKMenuWnd::Repaint()
{
    if (IsWindow())
        UpdateWindowFromImage(Compose());
}

void CQKMenuWnd::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t)
{
    if (pTracker)
        pTracker->OnMouse(msg, ClientToScreen(pt));
}

bool CQKMenuWnd::PreTranslateKey(uint32_t msg, uint32_t vk, uint32_t mods)
{
    // An open menu takes every key; the window below hears none of them.
    if (pTracker && msg == WM_KEYDOWN)
        pTracker->OnKey(vk, mods);
    return true;
}

void CQKMenuWnd::OnClose()
{
    // The system closed the popup (another window took the focus): nothing was chosen.
    if (pTracker)
        pTracker->End(0);
}
