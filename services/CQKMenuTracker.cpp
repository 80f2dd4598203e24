#include "services/CQKMenuTracker.h"

#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "services/CQKMenuExShadow.h"
#include "services/CQKMenuWnd.h"

#include <algorithm>

CQKMenuTracker* CQKMenuTracker::s_pActive = nullptr;

void CQKMenuTracker::EndActive()
{
    if (s_pActive)
        s_pActive->End(0);
}

CQKMenuTracker::CQKMenuTracker(CQKHostWnd* pOwnerWnd)
    : pOwner(pOwnerWnd)
{
}

CQKMenuTracker::~CQKMenuTracker()
{
    CloseLevelsAbove(-1);
}

QRect CQKMenuTracker::PlaceAtPoint(QPoint pt, QSize size, const QRect& rcScreen)
{
    QRect rc(pt, size);
    if (rc.right() > rcScreen.right() && pt.x() - size.width() >= rcScreen.left())
        rc.moveRight(pt.x() - 1);
    if (rc.bottom() > rcScreen.bottom() && pt.y() - size.height() >= rcScreen.top())
        rc.moveBottom(pt.y() - 1);
    // A menu larger than the room on either side keeps to the screen as best it can.
    rc.moveLeft(std::max(rcScreen.left(), std::min(rc.left(), rcScreen.right() + 1 - size.width())));
    rc.moveTop(std::max(rcScreen.top(), std::min(rc.top(), rcScreen.bottom() + 1 - size.height())));
    return rc;
}

QRect CQKMenuTracker::PlaceBeside(const QRect& rcParent, const QRect& rcRow, QSize size, const QRect& rcScreen)
{
    // The sub-menu's first row lies level with its row, its frame just beside the parent's.
    QRect rc(QPoint(rcParent.right() + 1, rcRow.top() - 1), size);
    if (rc.right() > rcScreen.right())
        rc.moveRight(rcParent.left() - 1);
    rc.moveLeft(std::max(rc.left(), rcScreen.left()));
    rc.moveTop(std::max(rcScreen.top(), std::min(rc.top(), rcScreen.bottom() + 1 - size.height())));
    return rc;
}

int CQKMenuTracker::Track(QKHMENU hMenu, QPoint ptScreen)
{
    rcScreen = pOwner && pOwner->IsWindow() ? pOwner->GetScreenRect() : CQKHostWnd::GetPrimaryScreenRect();
    auto probe = std::make_unique<CQKMenuWnd>(this);
    probe->Load(hMenu);
    if (!OpenLevel(hMenu, PlaceAtPoint(ptScreen, probe->MenuSize(), rcScreen)))
        return 0;
    CQKMenuWnd* pRoot = vecLevels.front().pWnd.get();
    // The first menu takes the mouse wherever the pointer goes: moves over the sub-menus and
    // presses outside come to it, and a press outside reaches no other window.
    pRoot->SetCapture();
    CQKMenuTracker* pOuter = s_pActive;
    s_pActive = this;
    if (!bEnded)
        pRoot->RunModal();
    s_pActive = pOuter;
    if (CQKHostWnd::GetCapture() == pRoot)
        CQKHostWnd::ReleaseCapture();
    CloseLevelsAbove(-1);
    return nResult;
}

bool CQKMenuTracker::OpenLevel(QKHMENU hMenu, const QRect& rc)
{
    const bool bFirst = vecLevels.empty();
    CQKHostWnd* pAbove = bFirst ? pOwner : vecLevels.front().pWnd.get();
    tagLevel level;
    level.pWnd = std::make_unique<CQKMenuWnd>(this);
    if (!level.pWnd->Create(bFirst, pAbove && pAbove->IsWindow() ? pAbove : nullptr))
        return false;
    level.pWnd->Load(hMenu);
    level.pWnd->MoveWindow(rc, false);
    // The shadow goes up first, so that the menu lies above it.
    level.pShadow = std::make_unique<CQKMenuExShadow>();
    if (level.pShadow->Create(pAbove && pAbove->IsWindow() ? pAbove : nullptr)) {
        level.pShadow->Place(rc);
        level.pShadow->ShowWindow(SW_SHOWNOACTIVATE);
    }
    CQKMenuManager::RegisterMenuWnd(level.pWnd.get(), level.pShadow.get());
    level.pWnd->ShowWindow(bFirst ? SW_SHOW : SW_SHOWNOACTIVATE);
    level.pWnd->Repaint();
    vecLevels.push_back(std::move(level));
    return true;
}

void CQKMenuTracker::CloseLevelsAbove(int nLevel)
{
    while (static_cast<int>(vecLevels.size()) > nLevel + 1) {
        tagLevel& level = vecLevels.back();
        CQKMenuManager::UnregisterMenuWnd(level.pWnd.get());
        // The first menu's window goes last, with the modal loop over.
        if (vecLevels.size() == 1 && level.pWnd->IsModalRunning())
            level.pWnd->EndModal(nResult);
        level.pWnd->DestroyWindow();
        if (level.pShadow)
            level.pShadow->DestroyWindow();
        vecLevels.pop_back();
    }
}

CQKMenuWnd* CQKMenuTracker::Deepest() const
{
    return vecLevels.empty() ? nullptr : vecLevels.back().pWnd.get();
}

bool CQKMenuTracker::HitTest(QPoint ptScreen, int& nLevel, int& nRow) const
{
    for (int k = static_cast<int>(vecLevels.size()) - 1; k >= 0; --k) {
        const CQKMenuWnd* p = vecLevels[k].pWnd.get();
        const QRect rc = p->GetWindowRect();
        if (rc.contains(ptScreen)) {
            nLevel = k;
            nRow = p->RowAt(ptScreen - rc.topLeft());
            return true;
        }
    }
    return false;
}

void CQKMenuTracker::OpenSubMenu(int nLevel, int nRow, bool bSelectFirst)
{
    CQKMenuWnd* pParent = vecLevels[nLevel].pWnd.get();
    const CQKMenuWnd::tagRow& row = pParent->Rows()[nRow];
    if (!row.hSub || !pParent->IsEnabled(nRow))
        return;
    CloseLevelsAbove(nLevel);
    CQKMenuWnd probe(this);
    probe.Load(row.hSub);
    if (probe.Rows().empty())
        return;
    const QRect rcParent = pParent->GetWindowRect();
    const QRect rcRow = row.rc.translated(rcParent.topLeft());
    if (!OpenLevel(row.hSub, PlaceBeside(rcParent, rcRow, probe.MenuSize(), rcScreen)))
        return;
    if (bSelectFirst) {
        CQKMenuWnd* pSub = Deepest();
        for (int i = 0; i < static_cast<int>(pSub->Rows().size()); ++i) {
            if (pSub->IsSelectable(i)) {
                pSub->Select(i);
                break;
            }
        }
    }
}

void CQKMenuTracker::Activate(int nLevel, int nRow)
{
    CQKMenuWnd* p = vecLevels[nLevel].pWnd.get();
    if (!p->IsEnabled(nRow))
        return;
    p->Select(nRow);
    if (p->Rows()[nRow].hSub)
        OpenSubMenu(nLevel, nRow, true);
    else
        End(p->Rows()[nRow].nID);
}

void CQKMenuTracker::End(int nID)
{
    if (bEnded)
        return;
    bEnded = true;
    nResult = nID;
    if (!vecLevels.empty())
        vecLevels.front().pWnd->EndModal(nID);
}

void CQKMenuTracker::OnMouse(uint32_t msg, QPoint ptScreen)
{
    if (bEnded)
        return;
    int nLevel = -1, nRow = -1;
    const bool bInside = HitTest(ptScreen, nLevel, nRow);
    switch (msg) {
    case WM_MOUSEMOVE: {
        if (!bInside) {
            // The rows that opened the deeper menus keep their selection.
            if (CQKMenuWnd* p = Deepest())
                p->Select(-1);
            return;
        }
        CQKMenuWnd* p = vecLevels[nLevel].pWnd.get();
        if (nRow < 0 || nRow == p->Selected())
            return;
        p->Select(nRow);
        CloseLevelsAbove(nLevel);
        if (p->Rows()[nRow].hSub)
            OpenSubMenu(nLevel, nRow, false);
        return;
    }
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
        if (!bInside)
            End(0);
        return;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        if (bInside && nRow >= 0 && !vecLevels[nLevel].pWnd->Rows()[nRow].hSub)
            Activate(nLevel, nRow);
        return;
    default:
        return;
    }
}

void CQKMenuTracker::MoveSelection(int nStep)
{
    CQKMenuWnd* p = Deepest();
    const int n = static_cast<int>(p->Rows().size());
    int i = p->Selected();
    for (int tries = 0; tries < n; ++tries) {
        i = i < 0 ? (nStep > 0 ? 0 : n - 1) : (i + nStep + n) % n;
        if (p->IsSelectable(i)) {
            p->Select(i);
            return;
        }
    }
}

void CQKMenuTracker::Mnemonic(char16_t ch)
{
    CQKMenuWnd* p = Deepest();
    std::vector<int> matches;
    for (int i = 0; i < static_cast<int>(p->Rows().size()); ++i)
        if (p->IsEnabled(i) && p->Rows()[i].chMnemonic == ch)
            matches.push_back(i);
    if (matches.size() == 1) {
        Activate(static_cast<int>(vecLevels.size()) - 1, matches.front());
    } else if (!matches.empty()) {
        // Several rows share the letter: each press selects the next of them.
        const auto next = std::upper_bound(matches.begin(), matches.end(), p->Selected());
        p->Select(next == matches.end() ? matches.front() : *next);
    }
}

void CQKMenuTracker::OnKey(uint32_t vk, uint32_t mods)
{
    if (bEnded || vecLevels.empty())
        return;
    const int nDeepest = static_cast<int>(vecLevels.size()) - 1;
    CQKMenuWnd* p = Deepest();
    switch (vk) {
    case VK_DOWN:
        MoveSelection(1);
        return;
    case VK_UP:
        MoveSelection(-1);
        return;
    case VK_HOME:
        p->Select(-1);
        MoveSelection(1);
        return;
    case VK_END:
        p->Select(-1);
        MoveSelection(-1);
        return;
    case VK_RIGHT:
        if (p->Selected() >= 0 && p->Rows()[p->Selected()].hSub)
            OpenSubMenu(nDeepest, p->Selected(), true);
        return;
    case VK_LEFT:
        if (nDeepest > 0)
            CloseLevelsAbove(nDeepest - 1);
        return;
    case VK_ESCAPE:
        if (nDeepest > 0)
            CloseLevelsAbove(nDeepest - 1);
        else
            End(0);
        return;
    case VK_RETURN:
        if (p->Selected() >= 0)
            Activate(nDeepest, p->Selected());
        return;
    default:
        break;
    }
    // Letters and digits are mnemonics, with or without Alt; other shortcuts do nothing here.
    if ((mods & QKMOD_CONTROL) == 0 && ((vk >= 'A' && vk <= 'Z') || (vk >= '0' && vk <= '9')))
        Mnemonic(static_cast<char16_t>(vk));
}
