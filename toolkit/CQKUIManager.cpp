#include "CQKUIManager.h"

#include "CQKButton.h"
#include "CQKSkinReader.h"
#include "QKControlKinds.h"
#include "QKFonts.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKAppFolder.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"

QString g_szAppFolder;
int g_nManagerCount = 0;

namespace {

// A skin path longer than this is taken for no file: no real folder nests that deep, and the
// reader never sees a path it could not open.
constexpr qsizetype kMaxSkinPathBytes = 9999;

} // namespace

CQKUIManager::CQKUIManager()
{
    if (g_szAppFolder.isEmpty())
        g_szAppFolder = QKAppFolder();
    ++g_nManagerCount;
}

CQKUIManager::~CQKUIManager()
{
    pFocus = nullptr;
    pTimelineEditor = nullptr;
    vecChildren.clear();
    pBackground.reset();
    // The font table is shared by all hosts; the last manager to go takes it along, and a
    // later one reads it again from the skin.
    if (--g_nManagerCount == 0)
        QKClearFonts();
}

int CQKUIManager::LoadSkin(CQKHostWnd* pHost)
{
    return LoadSkinFrom(pHost, QKAppFolder() + QStringLiteral("skin/mainwnd.xml"));
}

int CQKUIManager::LoadSkinFrom(CQKHostWnd* pHost, const QString& path)
{
    if (!CQKHostWnd::IsWindow(pHost))
        return 0;
    hWndHost = pHost;
    if (path.toUtf8().size() <= kMaxSkinPathBytes) {
        CQKSkinReader reader(*this);
        reader.ReadFile(path);
    }
    return 1;
}

void CQKUIManager::AddControl(uint32_t nID, std::unique_ptr<CQKButton> pControl, uint32_t nKind)
{
    if (!pControl)
        return;
    const tagQKKindTraits& traits = QKKindTraits(nKind);
    if (traits.bAdopted) {
        pControl->hWndHost = hWndHost;
        pControl->nID = nID;
        pControl->pManager = this;
        pControl->nKind = nKind;
        if (traits.nDefaultFont >= 0)
            pControl->nFontID = static_cast<uint32_t>(traits.nDefaultFont);
        if (auto pfn = QKControlKind(nKind).pfnCreateEditWindow)
            pfn(pControl.get());
        if (nKind == QKKIND_TIMELINEEDITOR)
            pTimelineEditor = pControl.get();
    }
    AppendChild(nID, std::move(pControl), nKind);
}

void CQKUIManager::AppendChild(uint32_t nID, std::unique_ptr<CQKButton> pControl, uint32_t nKind)
{
    auto pChild = std::make_unique<tagQKChild>();
    pChild->nID = nID;
    pChild->pControl = std::move(pControl);
    pChild->nKind = nKind;
    vecChildren.push_back(std::move(pChild));
}

CQKButton* CQKUIManager::FindControl(uint32_t nID, uint32_t nKind) const
{
    for (const auto& p : vecChildren) {
        if (p->nID == nID && p->nKind == nKind)
            return p->pControl.get();
    }
    return nullptr;
}

void CQKUIManager::OnMouseMessage(uint32_t nMsg, const QPoint* pPoint)
{
    const QPoint pt = pPoint ? *pPoint : QPoint(QK_LEAVE_POINT, QK_LEAVE_POINT);
    for (size_t i = 0; i < vecChildren.size(); ++i) {
        tagQKChild& child = *vecChildren[i];
        if (!QKKindTraits(child.nKind).bMouse || !child.pControl)
            continue;
        if (child.pControl->OnMouseEvent(hWndHost, nMsg, pt))
            child.pControl->RepaintAlone();
    }
}

int CQKUIManager::OnMouseWheel(uint32_t nFlags, int nDelta, const QPoint& pt)
{
    if (!pFocus || !QKKindTraits(nFocusKind).bWheel)
        return 0;
    return pFocus->OnMouseWheel(nFlags, nDelta, pt);
}

void CQKUIManager::OnActivate(uint32_t nState)
{
    for (const auto& p : vecChildren) {
        if (QKKindTraits(p->nKind).bActivation && p->pControl)
            p->pControl->OnActivate(nState);
    }
}

int CQKUIManager::PreTranslateKey(uint32_t nMsg, uint32_t nVk, uint32_t nMods)
{
    if (!CQKHostWnd::IsWindow(hWndHost) || !hWndHost->IsActive())
        return 0;
    if (nMsg != WM_KEYDOWN && nMsg != WM_KEYUP)
        return 0;
    if (nMsg == WM_KEYDOWN && nVk == VK_TAB) {
        FocusNext();
        return 1;
    }
    if (!pFocus || !QKKindTraits(nFocusKind).bKeys)
        return 0;
    return pFocus->PreTranslateKey(nMsg, nVk, nMods);
}

void CQKUIManager::FocusNext()
{
    if (vecChildren.empty())
        return;
    if (!pFocus) {
        SetFocusControl(vecChildren.front()->pControl.get(), vecChildren.front()->nKind);
        return;
    }
    if (vecChildren.size() < 2)
        return;
    for (size_t i = 0; i < vecChildren.size(); ++i) {
        if (vecChildren[i]->pControl.get() == pFocus && vecChildren[i]->nKind == nFocusKind) {
            // Disabled and hidden controls take the focus too: Tab visits every control.
            const tagQKChild& next = *vecChildren[(i + 1) % vecChildren.size()];
            SetFocusControl(next.pControl.get(), next.nKind);
            return;
        }
    }
}

void CQKUIManager::SetFocusControl(CQKButton* pControl, uint32_t nKind)
{
    if (pFocus && (pFocus != pControl || nFocusKind != nKind)) {
        if (QKKindTraits(nFocusKind).bKillFocus)
            pFocus->OnKillFocus();
        if (auto pfn = QKControlKind(nFocusKind).pfnClosePopup)
            pfn(pFocus);
    }
    pFocus = pControl;
    nFocusKind = nKind;
    if (pControl && QKKindTraits(nKind).bSetFocus)
        pControl->OnSetFocus();
}

void CQKUIManager::Compose(QImage& image)
{
    const int w = image.width();
    const int h = image.height();
    CQKGraphics g(image);
    // A background picture that could not be read counts as none: the window shows the
    // theme's ground rather than black.
    if (pBackground && !pBackground->isNull())
        g.DrawImage(*pBackground, QRectF(0, 0, w, h), QRectF(pBackground->rect()));
    else
        g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_clrFace, 255)), 0, 0, w, h);
    // The host paints what lies under the controls: its title, frame and the like.
    hWndHost->SendMessage(QKM_PAINTBACKGROUND, reinterpret_cast<uintptr_t>(&g), 0);
    for (size_t i = 0; i < vecChildren.size(); ++i) {
        tagQKChild& child = *vecChildren[i];
        if (child.nKind < QKKIND_COUNT && child.pControl)
            child.pControl->Paint(&g, &image);
    }
}

void CQKUIManager::PaintAll()
{
    if (!CQKHostWnd::IsWindow(hWndHost))
        return;
    const QRect rc = hWndHost->GetWindowRect();
    if (rc.width() <= 0 || rc.height() <= 0)
        return;
    // Composed in place, the window's picture needs no second one of its size and no copy.
    // The screen takes colour only: on opaque black a translucent background leaves the
    // colour it would leave with its alpha dropped, and the face colour covers everything.
    if (QImage* pTarget = hWndHost->HostImageToDraw(rc.size())) {
        if (pBackground && !pBackground->isNull())
            pTarget->fill(0xFF000000u);
        Compose(*pTarget);
        hWndHost->ShowHostImage(QRect(QPoint(0, 0), rc.size()));
        return;
    }
    QImage image = QKNewImage(rc.width(), rc.height(), hWndHost->DevicePixelRatio());
    if (image.isNull())
        return;
    Compose(image);
    // The screen takes colour only: the composition's alpha is dropped on the way (read as
    // opaque in place, without a copy).
    image.reinterpretAsFormat(QImage::Format_RGB32);
    hWndHost->UpdateWindowFromImage(image, QPoint(0, 0));
}

std::unique_ptr<QImage> CQKUIManager::RenderToBitmap()
{
    if (!CQKHostWnd::IsWindow(hWndHost))
        return nullptr;
    const QRect rc = hWndHost->GetWindowRect();
    auto pImage = std::make_unique<QImage>(QKNewImage(rc.width(), rc.height(), hWndHost->DevicePixelRatio()));
    if (pImage->isNull())
        return pImage;
    Compose(*pImage);
    return pImage;
}

void CQKUIManager::InvalidateCaches()
{
    for (const auto& p : vecChildren) {
        if (!p->pControl)
            continue;
        p->pControl->DropBackCache();
        if (QKKindTraits(p->nKind).bLayout)
            p->pControl->OnLayoutChanged();
    }
}
