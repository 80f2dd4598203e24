#include "services/CQKMenuManager.h"

#include "platform/CQKGraphics.h"
#include "platform/QKAppFolder.h"
#include "services/CQKMenuEx.h"
#include "services/CQKMenuTracker.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QImageReader>
#include <algorithm>
#include <cmath>
#include <tinyxml2.h>

using tinyxml2::XMLElement;

std::unique_ptr<tinyxml2::XMLDocument> CQKMenuManager::s_pMenuDocument;
XMLElement* CQKMenuManager::s_pMenuRoot = nullptr;
int32_t CQKMenuManager::s_nMenuExCount = 0;
int32_t CQKMenuManager::s_nLeftWidth = 25;
int32_t CQKMenuManager::s_nItemHeight = 25;
int32_t CQKMenuManager::s_bShowFullPath = 1;
// Handles start far above the command ids, because a sub-menu item's id is its handle.
QKHMENU CQKMenuManager::s_nNextHandle = 0x10000;
std::map<const CQKHostWnd*, CQKMenuExShadow*> CQKMenuManager::s_mapShadows;
std::vector<CQKHostWnd*> CQKMenuManager::s_arrMenuWnds;

namespace {

tagQKMenuItem* RecordOf(const XMLElement* pItem)
{
    return pItem ? reinterpret_cast<tagQKMenuItem*>(static_cast<uintptr_t>(pItem->Int64Attribute("d"))) : nullptr;
}

tagQKFontSpec MenuFont()
{
    tagQKFontSpec font;
    font.strFamily = g_strFontName;
    font.fSize = static_cast<float>(g_nFontOffset + 12);
    font.nStyle = QKFontRegular;
    return font;
}

// The visible text of a row: a carriage return and a tab have no glyph, so a text like
// "&Open File\r\tCtrl+O" is measured and drawn on one line.
QString OneLine(QString text)
{
    text.remove(u'\r');
    text.replace(u'\t', u' ');
    return text;
}

} // namespace

// --- the state -------------------------------------------------------------------------------

void CQKMenuManager::Initialize()
{
    if (s_pMenuDocument)
        return;
    s_pMenuDocument = std::make_unique<tinyxml2::XMLDocument>();
    s_pMenuRoot = s_pMenuDocument->NewElement("mm");
    s_pMenuDocument->LinkEndChild(s_pMenuRoot);
}

void CQKMenuManager::Shutdown()
{
    DestroyAllMenus();
    s_pMenuRoot = nullptr;
    s_pMenuDocument.reset();
}

bool CQKMenuManager::IsInitialized()
{
    return s_pMenuRoot != nullptr;
}

// --- menus and items -----------------------------------------------------------------------

QKHMENU CQKMenuManager::CreatePopup()
{
    if (!s_pMenuRoot)
        return 0;
    XMLElement* pMenu = s_pMenuDocument->NewElement("me");
    const QKHMENU h = s_nNextHandle++;
    pMenu->SetAttribute("h", h);
    s_pMenuRoot->LinkEndChild(pMenu);
    return h;
}

// A new "i" element for an id: a record with the text for an id above 0, none for a separator.
XMLElement* CQKMenuManager::MakeItemElement(int32_t nID, const QString& strText)
{
    XMLElement* pItem = s_pMenuDocument->NewElement("i");
    tagQKMenuItem* pRecord = nullptr;
    if (nID >= 1) {
        pRecord = new tagQKMenuItem;
        pRecord->pszText = strText; // a null text stays null
    }
    pItem->SetAttribute("d", static_cast<int64_t>(reinterpret_cast<uintptr_t>(pRecord)));
    pItem->SetAttribute("id", nID);
    pItem->SetAttribute("st", nID >= 1 ? 0u : 2u);
    return pItem;
}

int CQKMenuManager::AppendItem(QKHMENU hMenu, int32_t nID, const QString& strText)
{
    XMLElement* pMenu = FindMenuElement(hMenu);
    if (!pMenu)
        return 0;
    pMenu->LinkEndChild(MakeItemElement(nID, strText));
    return 1;
}

int CQKMenuManager::AppendImageItem(QKHMENU hMenu, int32_t nID, const QString& strText, const QString& strImagePath)
{
    if (!AppendItem(hMenu, nID, strText))
        return 0;
    if (tagQKMenuItem* pRecord = RecordOf(FindMenuElement(hMenu)->LastChildElement("i")))
        pRecord->pszImagePath = strImagePath;
    return 1;
}

// The element of an item of `hMenu` that opens `hSub` (or a copy of it, when an item opens it
// already), not yet linked; null when either menu is unknown or they are the same.
XMLElement* CQKMenuManager::MakeSubMenuElement(QKHMENU hMenu, QKHMENU hSub, const QString& strText)
{
    if (!IsManagedMenu(hSub) || !IsManagedMenu(hMenu) || hSub == hMenu)
        return nullptr;
    const QKHMENU hUse = IsSubMenuInUse(hSub) ? CopyMenu(hSub) : hSub;
    if (!hUse)
        return nullptr;
    XMLElement* pItem = MakeItemElement(hUse, strText);
    pItem->SetAttribute("s", hUse);
    return pItem;
}

int CQKMenuManager::AppendSubMenu(QKHMENU hMenu, QKHMENU hSub, const QString& strText)
{
    XMLElement* pItem = MakeSubMenuElement(hMenu, hSub, strText);
    if (!pItem)
        return 0;
    FindMenuElement(hMenu)->LinkEndChild(pItem);
    return 1;
}

QKHMENU CQKMenuManager::CopyMenu(QKHMENU hMenu)
{
    XMLElement* pSource = FindMenuElement(hMenu);
    if (!pSource)
        return 0;
    const QKHMENU hCopy = CreatePopup();
    for (XMLElement* pItem = pSource->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i")) {
        const tagQKMenuItem* pRecord = RecordOf(pItem);
        const QString strText = pRecord ? pRecord->pszText : QString();
        const QKHMENU hSub = pItem->IntAttribute("s");
        if (hSub)
            AppendSubMenu(hCopy, hSub, strText);
        else if (pRecord && !pRecord->pszImagePath.isNull())
            AppendImageItem(hCopy, pItem->IntAttribute("id"), strText, pRecord->pszImagePath);
        else
            AppendItem(hCopy, pItem->IntAttribute("id"), strText);
    }
    return hCopy;
}

int CQKMenuManager::InsertItem(QKHMENU hMenu, int nPos, int32_t nID, const QString& strText)
{
    XMLElement* pBefore = nPos >= 0 ? FindItemElement(hMenu, nPos, MF_BYPOSITION) : nullptr;
    if (!pBefore)
        return AppendItem(hMenu, nID, strText);
    InsertBefore(FindMenuElement(hMenu), pBefore, MakeItemElement(nID, strText));
    return 1;
}

void CQKMenuManager::InsertBefore(XMLElement* pMenu, XMLElement* pBefore, XMLElement* pItem)
{
    if (XMLElement* pPrev = pBefore->PreviousSiblingElement("i"))
        pMenu->InsertAfterChild(pPrev, pItem);
    else
        pMenu->InsertFirstChild(pItem);
}

int CQKMenuManager::InsertSubMenu(QKHMENU hMenu, QKHMENU hSub, int nPos, const QString& strText)
{
    XMLElement* pBefore = nPos >= 0 ? FindItemElement(hMenu, nPos, MF_BYPOSITION) : nullptr;
    if (!pBefore)
        return AppendSubMenu(hMenu, hSub, strText);
    XMLElement* pItem = MakeSubMenuElement(hMenu, hSub, strText);
    if (!pItem)
        return 0;
    InsertBefore(FindMenuElement(hMenu), pBefore, pItem);
    return 1;
}

void CQKMenuManager::FreeRecord(XMLElement* pItem)
{
    tagQKMenuItem* pRecord = RecordOf(pItem);
    pItem->SetAttribute("d", 0);
    delete pRecord;
}

int CQKMenuManager::DeleteItem(QKHMENU hMenu, int nPos)
{
    XMLElement* pItem = FindItemElement(hMenu, nPos, MF_BYPOSITION);
    if (!pItem)
        return 0;
    FreeRecord(pItem);
    if (const QKHMENU hSub = pItem->IntAttribute("s")) {
        pItem->DeleteAttribute("s");
        DestroyManagedMenu(hSub);
    }
    FindMenuElement(hMenu)->DeleteChild(pItem);
    return 1;
}

int CQKMenuManager::DestroyManagedMenu(QKHMENU hMenu)
{
    XMLElement* pMenu = FindMenuElement(hMenu);
    if (!pMenu)
        return 0;
    if (const int64_t sp = pMenu->Int64Attribute("sp")) {
        pMenu->DeleteAttribute("sp");
        // The wrapper's own destructor counts the live wrappers down; the menu is ours to end.
        delete reinterpret_cast<CQKMenuEx*>(static_cast<uintptr_t>(sp));
    }
    for (XMLElement* pItem = pMenu->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i")) {
        FreeRecord(pItem);
        if (const QKHMENU hSub = pItem->IntAttribute("s")) {
            pItem->DeleteAttribute("s");
            DestroyManagedMenu(hSub);
        }
    }
    // The wrapper's destructor may have shut everything down already.
    if (s_pMenuRoot && FindMenuElement(hMenu))
        s_pMenuRoot->DeleteChild(pMenu);
    return 1;
}

void CQKMenuManager::DestroyAllMenus()
{
    if (!s_pMenuRoot)
        return;
    // Wrappers first: deleting one may end the state, so their addresses are taken out of the
    // tree before any of them goes.
    std::vector<CQKMenuEx*> wrappers;
    for (XMLElement* pMenu = s_pMenuRoot->FirstChildElement("me"); pMenu; pMenu = pMenu->NextSiblingElement("me")) {
        if (const int64_t sp = pMenu->Int64Attribute("sp"))
            wrappers.push_back(reinterpret_cast<CQKMenuEx*>(static_cast<uintptr_t>(sp)));
        pMenu->DeleteAttribute("sp");
        for (XMLElement* pItem = pMenu->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i"))
            FreeRecord(pItem);
    }
    s_pMenuRoot->DeleteChildren();
    for (CQKMenuEx* p : wrappers) {
        p->m_hMenu = 0;
        p->bOwnedByManager = true;
        delete p;
    }
}

// --- looking things up -----------------------------------------------------------------------

XMLElement* CQKMenuManager::FindMenuElement(QKHMENU hMenu)
{
    if (!s_pMenuRoot || !hMenu)
        return nullptr;
    for (XMLElement* pMenu = s_pMenuRoot->FirstChildElement("me"); pMenu; pMenu = pMenu->NextSiblingElement("me"))
        if (pMenu->IntAttribute("h") == hMenu)
            return pMenu;
    return nullptr;
}

int CQKMenuManager::IsManagedMenu(QKHMENU hMenu)
{
    return FindMenuElement(hMenu) ? 1 : 0;
}

int CQKMenuManager::IsSubMenuInUse(QKHMENU hMenu)
{
    if (!hMenu || !s_pMenuRoot)
        return 0;
    for (XMLElement* pMenu = s_pMenuRoot->FirstChildElement("me"); pMenu; pMenu = pMenu->NextSiblingElement("me"))
        for (XMLElement* pItem = pMenu->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i"))
            if (pItem->IntAttribute("s") == hMenu)
                return 1;
    return 0;
}

CQKMenuEx* CQKMenuManager::GetSubMenuWrapper(QKHMENU hMenu)
{
    XMLElement* pMenu = FindMenuElement(hMenu);
    if (!pMenu)
        return nullptr;
    if (const int64_t sp = pMenu->Int64Attribute("sp"))
        return reinterpret_cast<CQKMenuEx*>(static_cast<uintptr_t>(sp));
    auto* pWrapper = new CQKMenuEx;
    pWrapper->m_hMenu = hMenu;
    // The manager's wrappers do not keep the state alive: it ends with the last of the user's.
    pWrapper->bOwnedByManager = true;
    --s_nMenuExCount;
    pMenu->SetAttribute("sp", static_cast<int64_t>(reinterpret_cast<uintptr_t>(pWrapper)));
    return pWrapper;
}

XMLElement* CQKMenuManager::FindItemElement(QKHMENU hMenu, int32_t nItem, uint32_t nFlags)
{
    XMLElement* pMenu = FindMenuElement(hMenu);
    if (!pMenu)
        return nullptr;
    int nPos = 0;
    for (XMLElement* pItem = pMenu->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i"), ++nPos) {
        if ((nFlags & MF_BYPOSITION) ? nPos == nItem : pItem->IntAttribute("id") == nItem)
            return pItem;
    }
    return nullptr;
}

tagQKMenuItem* CQKMenuManager::GetItemRecord(QKHMENU hMenu, int32_t nItem, uint32_t nFlags)
{
    return RecordOf(FindItemElement(hMenu, nItem, nFlags));
}

int CQKMenuManager::GetItemText(QKHMENU hMenu, int32_t nItem, QString& strOut, uint32_t nFlags)
{
    strOut.clear();
    const tagQKMenuItem* pRecord = GetItemRecord(hMenu, nItem, nFlags);
    if (!pRecord)
        return 0;
    strOut = pRecord->pszText;
    return static_cast<int>(strOut.size());
}

int CQKMenuManager::SetItemText(QKHMENU hMenu, int32_t nItem, const QString* pText, uint32_t nFlags)
{
    tagQKMenuItem* pRecord = GetItemRecord(hMenu, nItem, nFlags);
    if (!pRecord)
        return 0;
    pRecord->pszText = pText ? (pText->isNull() ? QString(QStringLiteral("")) : *pText) : QString();
    return 1;
}

QKHMENU CQKMenuManager::GetSubMenuHandle(QKHMENU hMenu, int nPos)
{
    const XMLElement* pItem = FindItemElement(hMenu, nPos, MF_BYPOSITION);
    return pItem ? pItem->IntAttribute("s") : 0;
}

int CQKMenuManager::GetMenuItemCount(QKHMENU hMenu)
{
    const XMLElement* pMenu = FindMenuElement(hMenu);
    if (!pMenu)
        return 0;
    int n = 0;
    for (const XMLElement* pItem = pMenu->FirstChildElement("i"); pItem; pItem = pItem->NextSiblingElement("i"))
        ++n;
    return n;
}

int32_t CQKMenuManager::GetMenuItemID(QKHMENU hMenu, int nPos)
{
    const XMLElement* pItem = FindItemElement(hMenu, nPos, MF_BYPOSITION);
    return pItem ? pItem->IntAttribute("id") : 0;
}

int32_t CQKMenuManager::GetItemState(QKHMENU hMenu, int32_t nItem, uint32_t nFlags)
{
    const XMLElement* pItem = FindItemElement(hMenu, nItem, nFlags);
    return pItem ? static_cast<int32_t>(pItem->UnsignedAttribute("st")) : -1;
}

bool CQKMenuManager::SetItemState(QKHMENU hMenu, int32_t nItem, uint32_t nFlags, uint32_t nState)
{
    XMLElement* pItem = FindItemElement(hMenu, nItem, nFlags);
    if (!pItem)
        return false;
    pItem->SetAttribute("st", nState);
    return true;
}

// --- measuring and painting --------------------------------------------------------------------

QString CQKMenuManager::DisplayText(const tagQKMenuItem* pRecord)
{
    QString text = pRecord ? pRecord->pszText : QString();
    // A path ("x:" style, or an absolute one of this system) may show only its file's name.
    if (!s_bShowFullPath && (text.contains(u':') || text.startsWith(u'/')) && (text.contains(u'/') || text.contains(u'\\'))) {
        const qsizetype cut = std::max(text.lastIndexOf(u'/'), text.lastIndexOf(u'\\'));
        text = text.mid(cut + 1);
    }
    return text;
}

int32_t CQKMenuManager::MeasureText(const QString& strText)
{
    if (strText.isNull())
        return 0;
    // One shared picture stands for the display's measuring context.
    static QImage measure(1, 1, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(measure);
    tagQKStringFormat format;
    format.nHotkeyPrefix = QKHotkeyPrefixShow;
    format.nLineAlign = QKAlignCenter;
    format.nFlags = QKFormatNoFitBlackBox | QKFormatMeasureTrailingSpaces | QKFormatNoWrap;
    const QRectF box = g.MeasureString(OneLine(strText), MenuFont(), QRectF(), format);
    return static_cast<int32_t>(box.width());
}

void CQKMenuManager::MeasureItem(tagQKMeasureItem& m)
{
    const QString text = DisplayText(reinterpret_cast<const tagQKMenuItem*>(m.itemData));
    const int32_t nExtra = text.contains(u'\t') ? g_nFontOffset + 20 : 0;
    m.itemWidth = MeasureText(text) + s_nLeftWidth + nExtra + 30;
    m.itemHeight = m.itemID != 0 ? s_nItemHeight : 5;
}

void CQKMenuManager::DrawItem(const tagQKDrawItem& d)
{
    if (!d.pTarget || d.rcItem.isEmpty())
        return;
    const int w = d.rcItem.width();
    const int h = d.rcItem.height();
    const int L = s_nLeftWidth;
    // Each row is painted whole in a picture of its own and put in place in one step.
    QImage row(w, h, QImage::Format_ARGB32_Premultiplied);
    row.fill(0);
    {
        CQKGraphics g(row);
        g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_UIColors.clrMenuBack)), L, 0, w - L, h);
        if (L > 0)
            g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_UIColors.clrMenuColumn)), 0, 0, L, h);

        const bool bDisabled = (d.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
        const bool bChecked = (d.itemState & ODS_CHECKED) != 0;
        const bool bSelected = (d.itemState & ODS_SELECTED) && !bDisabled;
        const XMLElement* pItem = d.itemID != 0 ? FindItemElement(d.hMenu, d.itemID, 0) : nullptr;
        const bool bSubMenu = pItem && pItem->IntAttribute("s") != 0;
        auto* pRecord = reinterpret_cast<tagQKMenuItem*>(d.itemData);

        if (bSelected && d.itemID != 0) {
            const int r = bSubMenu ? w - 2 : w - 1;
            tagQKPen pen;
            pen.clr = QKColorFromBGR(g_UIColors.clrMenuHighlight);
            g.DrawRectangle(pen, 1, 1, r - 2, h - 3);
            g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_UIColors.clrMenuHighlight, 50)), 2, 2, r - 3, h - 4);
        }
        if (d.itemID == 0) {
            // With the usual column the rule starts at its edge; a wider column it crosses.
            const int x = L > 25 ? 2 : L;
            g.FillRectangle(tagQKBrush::Solid(QKColorFromBGR(g_UIColors.clrMenuColumn)), x, 2, w - 2 - x, h - 4);
        }

        const uint32_t nAlpha = bDisabled ? 100 : 255;
        const uint32_t clrText = bSelected ? g_UIColors.clrMenuHighlight : g_UIColors.clrMenuText;
        const QString text = d.itemID != 0 ? DisplayText(pRecord) : QString();
        if (!text.isEmpty()) {
            const tagQKBrush brush = tagQKBrush::Solid(QKColorFromBGR(clrText, nAlpha));
            tagQKStringFormat format;
            format.nHotkeyPrefix = QKHotkeyPrefixShow;
            format.nLineAlign = QKAlignCenter;
            format.nFlags = QKFormatNoWrap;
            const QRectF rcText(L > 0 ? L + 5 : 10, 0, w - (L > 0 ? L + 5 : 10), h);
            g.SetTextRenderingHint(QKTextHintClearTypeGridFit);
            QString rest = text;
            const qsizetype tab = text.indexOf(u'\t');
            if (tab >= 0) {
                tagQKStringFormat far;
                far.nAlign = QKAlignFar;
                far.nLineAlign = QKAlignCenter;
                far.nFlags = QKFormatNoWrap;
                DrawSkinStringAt(&g, text.mid(tab + 1), MenuFont(), QPointF(w - 10, h / 2), far, brush);
                rest = text.left(tab);
            }
            // The carriage return before the tab has no glyph and starts no line here.
            DrawSkinString(&g, OneLine(rest).trimmed(), MenuFont(), rcText, format, brush);
        }

        if (bChecked && !bSubMenu) {
            g.SetSmoothingMode(QKSmoothingAntiAlias);
            g.SetInterpolationMode(QKInterpolationHighQualityBicubic);
            tagQKPen pen;
            pen.clr = QKColorFromBGR(g_UIColors.clrMenuFrame, std::min<uint32_t>(200, nAlpha));
            pen.fWidth = 2.0f;
            g.DrawLine(pen, 5, 10, 8, 14);
            g.DrawLine(pen, 7, 14, 17, 7);
        } else if (pRecord && d.itemID != 0) {
            if (!pRecord->pImage && !pRecord->pszImagePath.isEmpty()) {
                QString path = pRecord->pszImagePath;
                if (!path.startsWith(u'/') && !path.contains(u':'))
                    path = QKAppFolder() + path;
                QImageReader reader(path);
                if (path.endsWith(u".tif", Qt::CaseInsensitive) || path.endsWith(u".tiff", Qt::CaseInsensitive))
                    reader.jumpToImage(reader.imageCount() / 2);
                const QImage loaded = reader.read();
                // A picture that cannot be read leaves an empty cache: no icon, and no retry.
                const QSize size = loaded.isNull() ? QSize(0, 0)
                                                   : (loaded.width() <= 40 && loaded.height() <= 40 ? loaded.size() : QSize(h - 4, h - 4));
                pRecord->pImage = std::make_unique<QImage>(size, QImage::Format_ARGB32_Premultiplied);
                if (!size.isEmpty()) {
                    pRecord->pImage->fill(0);
                    CQKGraphics gi(*pRecord->pImage);
                    gi.SetInterpolationMode(QKInterpolationHighQualityBicubic);
                    gi.DrawImage(loaded, QRectF(QPointF(0, 0), QSizeF(size)), QRectF(loaded.rect()));
                }
            }
            if (pRecord->pImage && !pRecord->pImage->isNull()) {
                int x = (L - (h - 4)) / 2;
                int iw = h - 4;
                if (x < 3) {
                    x = 3;
                    iw = L - 6;
                }
                const int nOld = g.GetSmoothingMode();
                g.SetSmoothingMode(QKSmoothingDefault);
                g.DrawImage(*pRecord->pImage, QRectF(x, 3, iw, h - 6), QRectF(pRecord->pImage->rect()));
                g.SetSmoothingMode(nOld);
            }
        }

        if (bSubMenu) {
            const float x = static_cast<float>(w - 18);
            const float m = static_cast<float>(h / 2);
            tagQKPen pen;
            pen.clr = QKColorFromBGR(clrText, std::min<uint32_t>(200, nAlpha));
            pen.nStartCap = pen.nEndCap = QKLineCapRound;
            g.SetSmoothingMode(QKSmoothingHighQuality);
            g.DrawLine(pen, x, m - 4, x + 4, m);
            g.DrawLine(pen, x, m + 4, x + 4, m);
            g.DrawLine(pen, x, m - 3, x + 3, m);
            g.DrawLine(pen, x, m + 3, x + 3, m);
        }
    }
    CQKGraphics target(*d.pTarget);
    target.DrawImage(row, QPointF(d.rcItem.topLeft()));
}

// --- open menu windows ---------------------------------------------------------------------

int CQKMenuManager::TrackPopupMenu(QKHMENU hMenu, int x, int y, CQKHostWnd* pOwner)
{
    int nResult = 0;
    if (IsManagedMenu(hMenu) && GetMenuItemCount(hMenu) > 0) {
        CQKMenuTracker tracker(pOwner);
        nResult = tracker.Track(hMenu, QPoint(x, y));
    }
    // A shortened path lasts for one tracking at most.
    s_bShowFullPath = 1;
    return nResult;
}

void CQKMenuManager::EndMenuTracking()
{
    CQKMenuTracker::EndActive();
}

int32_t CQKMenuManager::GetMenuWndCount()
{
    return static_cast<int32_t>(s_arrMenuWnds.size());
}

CQKHostWnd* CQKMenuManager::GetMenuWnd(int i)
{
    return i >= 0 && i < static_cast<int>(s_arrMenuWnds.size()) ? s_arrMenuWnds[i] : nullptr;
}

bool CQKMenuManager::IsShadowMapEmpty()
{
    return s_mapShadows.empty();
}

void CQKMenuManager::RegisterMenuWnd(CQKHostWnd* pWnd, CQKMenuExShadow* pShadow)
{
    if (std::find(s_arrMenuWnds.begin(), s_arrMenuWnds.end(), pWnd) == s_arrMenuWnds.end())
        s_arrMenuWnds.push_back(pWnd);
    if (pShadow)
        s_mapShadows[pWnd] = pShadow;
}

void CQKMenuManager::UnregisterMenuWnd(const CQKHostWnd* pWnd)
{
    s_arrMenuWnds.erase(std::remove(s_arrMenuWnds.begin(), s_arrMenuWnds.end(), pWnd), s_arrMenuWnds.end());
    s_mapShadows.erase(pWnd);
}
