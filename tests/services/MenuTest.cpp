// The drawn menus: the tree that keeps them, the painting of a row and of the shadow, and a
// menu opened over a window and driven by keys and the mouse.
#include "../toolkit/ToolkitTestSupport.h"
#include "platform/QKDrawing.h"
#include "platform/QKMessages.h"
#include "services/CQKMenuEx.h"
#include "services/CQKMenuExShadow.h"
#include "services/CQKMenuWnd.h"
#include "support/HostRecorder.h"
#include "toolkit/QKTheme.h"

#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <tinyxml2.h>

using orbeltest::HostDriver;

namespace {

constexpr uint32_t kBack = QKRGB(20, 30, 40);
constexpr uint32_t kColumn = QKRGB(60, 70, 80);
constexpr uint32_t kText = QKRGB(230, 230, 230);
constexpr uint32_t kHighlight = QKRGB(250, 160, 0);
constexpr uint32_t kFrame = QKRGB(100, 110, 240);

QRgb Opaque(uint32_t bgr)
{
    return QKColorFromBGR(bgr);
}

class MenuTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        g_UIColors.clrMenuBack = kBack;
        g_UIColors.clrMenuColumn = kColumn;
        g_UIColors.clrMenuText = kText;
        g_UIColors.clrMenuHighlight = kHighlight;
        g_UIColors.clrMenuFrame = kFrame;
        g_UIColors.clrMenuShadow = QKRGB(0, 0, 0);
        keeper = std::make_unique<CQKMenuEx>();
    }

    // One row painted alone, w by h.
    QImage Row(int32_t nID, uint32_t nState, const QString& text, int w = 200, int h = 25, QKHMENU hMenu = 0)
    {
        QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        tagQKMenuItem record;
        record.pszText = text;
        tagQKDrawItem d;
        d.hMenu = hMenu;
        d.itemID = nID;
        d.itemState = nState;
        d.itemData = nID > 0 ? reinterpret_cast<uintptr_t>(&record) : 0;
        d.pTarget = &image;
        d.rcItem = QRect(0, 0, w, h);
        CQKMenuManager::DrawItem(d);
        return image;
    }

    toolkittest::AppFolder folder; // the theme is put back at both ends
    std::unique_ptr<CQKMenuEx> keeper; // keeps the menus' state alive
};

TEST_F(MenuTest, TreeKeepsItemsRecordsSubMenusAndWrappers)
{
    CQKMenuEx menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    const QKHMENU h = menu.GetHandle();
    EXPECT_TRUE(menu.Append(1, QStringLiteral("&Open\r\tCtrl+O")));
    EXPECT_TRUE(menu.Append(0, QStringLiteral("ignored")));
    EXPECT_TRUE(menu.Append(-4, QStringLiteral("ignored")));
    // A separator and a negative id have no record and are disabled; only id 0 is a thin row.
    for (int pos : { 1, 2 }) {
        EXPECT_EQ(CQKMenuManager::GetItemRecord(h, pos, MF_BYPOSITION), nullptr);
        EXPECT_EQ(CQKMenuManager::FindItemElement(h, pos, MF_BYPOSITION)->Int64Attribute("d"), 0);
        EXPECT_TRUE(CQKMenuManager::GetItemState(h, pos, MF_BYPOSITION) & MFS_DISABLED);
    }
    tagQKMeasureItem sep { 0, 0, 0, 0 }, neg { -4, 0, 0, 0 };
    CQKMenuManager::MeasureItem(sep);
    CQKMenuManager::MeasureItem(neg);
    EXPECT_EQ(sep.itemHeight, 5);
    EXPECT_EQ(neg.itemHeight, 25);
    QString text;
    EXPECT_EQ(CQKMenuManager::GetItemText(h, 1, text, 0), 13);
    EXPECT_EQ(text, QStringLiteral("&Open\r\tCtrl+O"));

    // A sub-menu hung on two items is copied for the second, with records of its own.
    QKHMENU hSub = 0;
    {
        CQKMenuEx sub; // a short-lived wrapper: its menu stays
        sub.CreatePopupMenu();
        sub.Append(7, QStringLiteral("Seven"));
        hSub = sub.GetHandle();
        EXPECT_TRUE(CQKMenuManager::AppendSubMenu(h, hSub, QStringLiteral("&First")));
        EXPECT_TRUE(CQKMenuManager::AppendSubMenu(h, hSub, QStringLiteral("&Second")));
    }
    EXPECT_TRUE(CQKMenuManager::IsManagedMenu(hSub));
    const QKHMENU hCopy = CQKMenuManager::GetSubMenuHandle(h, 4);
    EXPECT_EQ(CQKMenuManager::GetSubMenuHandle(h, 3), hSub);
    EXPECT_NE(hCopy, hSub);
    const QString changed = QStringLiteral("Changed");
    CQKMenuManager::SetItemText(hCopy, 7, &changed, 0);
    CQKMenuManager::GetItemText(hSub, 0, text, MF_BYPOSITION);
    EXPECT_EQ(text, QStringLiteral("Seven"));
    // One wrapper per sub-menu, the manager's.
    EXPECT_EQ(menu.GetSubMenu(3), menu.GetSubMenu(3));
    EXPECT_EQ(menu.GetSubMenu(3)->GetHandle(), hSub);
    EXPECT_EQ(menu.GetSubMenu(0), nullptr);

    // Insert before a position, or append beyond the end; delete takes the sub-menu along.
    EXPECT_TRUE(CQKMenuManager::InsertItem(h, 1, 9, QStringLiteral("Nine")));
    EXPECT_TRUE(CQKMenuManager::InsertItem(h, 99, 10, QStringLiteral("Ten")));
    EXPECT_EQ(CQKMenuManager::GetMenuItemID(h, 1), 9);
    EXPECT_EQ(CQKMenuManager::GetMenuItemID(h, CQKMenuManager::GetMenuItemCount(h) - 1), 10);
    EXPECT_TRUE(CQKMenuManager::DeleteItem(h, 5)); // "&Second" and its copy
    EXPECT_FALSE(CQKMenuManager::IsManagedMenu(hCopy));
    EXPECT_FALSE(CQKMenuManager::AppendItem(hCopy, 1, QStringLiteral("x")));

    // Checking and enabling replace the whole state.
    EXPECT_EQ(menu.CheckItem(0, true), 0);
    EXPECT_TRUE(menu.IsItemChecked(0, MF_BYPOSITION));
    EXPECT_EQ(menu.EnableItem(0, true, MF_BYPOSITION), 3);
    EXPECT_FALSE(menu.IsItemChecked(0, MF_BYPOSITION));
    EXPECT_EQ(menu.CheckItem(0, false), 8);
    EXPECT_EQ(menu.CheckItem(40, true), -1);

    // Destroying the menu destroys the menus its items open.
    menu.Destroy();
    EXPECT_FALSE(CQKMenuManager::IsManagedMenu(h));
    EXPECT_FALSE(CQKMenuManager::IsManagedMenu(hSub));
    // A destroyed menu opens nothing, and a shortened path lasts one tracking only.
    CQKMenuManager::SetShowFullPath(0);
    EXPECT_EQ(menu.TrackPopupMenu(10, 10, nullptr), 0);
    EXPECT_EQ(CQKMenuManager::GetShowFullPath(), 1);

    // The state lasts as long as the last wrapper of the user's.
    keeper.reset();
    EXPECT_TRUE(CQKMenuManager::IsInitialized()); // `menu` still lives
}

TEST_F(MenuTest, LastWrapperEndsEverything)
{
    CQKMenuEx* pMenu = new CQKMenuEx;
    pMenu->CreatePopupMenu();
    const QKHMENU h = pMenu->GetHandle();
    keeper.reset();
    ASSERT_TRUE(CQKMenuManager::IsManagedMenu(h));
    EXPECT_EQ(pMenu->GetSubMenu(0), nullptr);
    delete pMenu;
    EXPECT_FALSE(CQKMenuManager::IsInitialized());
    EXPECT_FALSE(CQKMenuManager::IsManagedMenu(h));
}

TEST_F(MenuTest, WidthGrowsByTheTabGapAndTheFontOffset)
{
    const int32_t nPlain = CQKMenuManager::MeasureText(QStringLiteral("Full Screen F2"));
    tagQKMenuItem plain, tabbed;
    plain.pszText = QStringLiteral("Full Screen");
    tabbed.pszText = QStringLiteral("Full Screen\r\tF2");
    tagQKMeasureItem a { 1, reinterpret_cast<uintptr_t>(&plain), 0, 0 };
    tagQKMeasureItem b { 1, reinterpret_cast<uintptr_t>(&tabbed), 0, 0 };
    CQKMenuManager::MeasureItem(a);
    CQKMenuManager::MeasureItem(b);
    EXPECT_EQ(a.itemWidth, CQKMenuManager::MeasureText(plain.pszText) + 25 + 30);
    // The accelerator is measured on the same line as the rest, and 20 more make the gap.
    EXPECT_EQ(b.itemWidth, nPlain + 25 + 20 + 30);
    EXPECT_EQ(b.itemHeight, 25);

    g_nFontOffset = 5;
    CQKMenuEx bigger; // each new wrapper takes the metrics from the offset
    EXPECT_EQ(CQKMenuManager::GetItemHeight(), 30);
    EXPECT_EQ(CQKMenuManager::GetLeftWidth(), 30);
    CQKMenuManager::MeasureItem(b);
    EXPECT_EQ(b.itemHeight, 30);
}

TEST_F(MenuTest, RowPaintsItsStates)
{
    // Normal: the column on the left, the ground on the right, text in the text colour.
    QImage normal = Row(1, 0, QStringLiteral("&Open File\r\tCtrl+O"));
    EXPECT_EQ(normal.pixel(3, 3), Opaque(kColumn));
    EXPECT_EQ(normal.pixel(24, 20), Opaque(kColumn));
    EXPECT_EQ(normal.pixel(25, 2), Opaque(kBack));
    EXPECT_EQ(normal.pixel(199, 24), Opaque(kBack));
    // Pixels of glyphs in a colour: near it, as smoothed edges may be.
    auto textPixels = [](const QImage& img, int x0, int x1, uint32_t bgr) {
        const QColor want = QColor::fromRgb(Opaque(bgr));
        int n = 0;
        for (int y = 0; y < img.height(); ++y)
            for (int x = x0; x < x1; ++x) {
                const QColor c = QColor::fromRgb(img.pixel(x, y));
                n += std::abs(c.red() - want.red()) + std::abs(c.green() - want.green()) + std::abs(c.blue() - want.blue()) < 60;
            }
        return n;
    };
    // The label starts after the column; the accelerator ends 10 pixels from the right.
    EXPECT_GT(textPixels(normal, 30, 100, kText), 10);
    EXPECT_GT(textPixels(normal, 150, 190, kText), 5);
    EXPECT_EQ(textPixels(normal, 191, 200, kText), 0);
    EXPECT_EQ(textPixels(normal, 0, 29, kText), 0);
    // The mnemonic's line under the "O" of "Open": a row of text colour below the glyphs.
    int underline = 0;
    for (int y = 15; y < 22; ++y) {
        int run = 0;
        for (int x = 30; x < 40; ++x)
            run += normal.pixel(x, y) == Opaque(kText);
        underline = std::max(underline, run);
    }
    EXPECT_GE(underline, 6);

    // Hover: an outline in the highlight colour, its fill blended over the ground, and the
    // text in the highlight colour.
    QImage hover = Row(1, ODS_SELECTED, QStringLiteral("&Open File\r\tCtrl+O"));
    EXPECT_EQ(hover.pixel(1, 1), Opaque(kHighlight));
    EXPECT_EQ(hover.pixel(198, 23), Opaque(kHighlight)); // x 1 to 1 + (w - 1) - 2
    EXPECT_EQ(hover.pixel(199, 23), Opaque(kBack));
    EXPECT_EQ(hover.pixel(100, 24), Opaque(kBack));
    const QColor fill = QColor::fromRgb(hover.pixel(100, 3));
    EXPECT_NEAR(fill.red(), 20 + (250 - 20) * 50 / 255, 2);
    EXPECT_NEAR(fill.green(), 30 + (160 - 30) * 50 / 255, 2);
    EXPECT_GT(textPixels(hover, 30, 100, kHighlight), 10);
    EXPECT_EQ(textPixels(hover, 30, 100, kText), 0);

    // Disabled: never highlighted, text faint.
    QImage disabled = Row(1, ODS_SELECTED | ODS_GRAYED, QStringLiteral("&Open File"));
    EXPECT_EQ(disabled.pixel(1, 1), Opaque(kColumn));
    EXPECT_EQ(textPixels(disabled, 30, 100, kText), 0);
    EXPECT_EQ(textPixels(disabled, 30, 100, kHighlight), 0);

    // Checked: the mark in the frame colour on the column, at alpha 200.
    QImage checked = Row(1, ODS_CHECKED, QStringLiteral("Stretch"));
    int nMark = 0;
    for (int y = 6; y < 16; ++y)
        for (int x = 4; x < 19; ++x)
            nMark += QColor::fromRgb(checked.pixel(x, y)).blue() > 180; // 80 + (240 - 80) * 200 / 255 at most
    EXPECT_GT(nMark, 8);
    EXPECT_EQ(checked.pixel(20, 20), Opaque(kColumn));

    // Separator: the rule starts at the column's edge with the usual column; a wider column
    // it crosses from x 2.
    QImage sep = Row(0, 0, QString(), 200, 5);
    EXPECT_EQ(sep.pixel(25, 2), Opaque(kColumn));
    EXPECT_EQ(sep.pixel(197, 2), Opaque(kColumn));
    EXPECT_EQ(sep.pixel(198, 2), Opaque(kBack));
    EXPECT_EQ(sep.pixel(30, 1), Opaque(kBack));
    CQKMenuManager::SetLeftWidth(26);
    QImage wide = Row(0, 0, QString(), 200, 5);
    EXPECT_EQ(wide.pixel(2, 2), Opaque(kColumn));
    EXPECT_EQ(wide.pixel(1, 2), Opaque(kColumn)); // the column itself
    EXPECT_EQ(wide.pixel(30, 1), Opaque(kBack));
    EXPECT_EQ(wide.pixel(30, 2), Opaque(kColumn));
}

TEST_F(MenuTest, IconShowsUnlessTheRowIsChecked)
{
    QImage red(16, 16, QImage::Format_ARGB32_Premultiplied);
    red.fill(Qt::red);
    CQKMenuEx menu;
    menu.CreatePopupMenu();
    menu.AppendWithImage(5, &red, QStringLiteral("Red"));
    menu.AppendWithImagePath(6, QStringLiteral("skin/no-such-icon.png"), QStringLiteral("Missing"));
    auto paint = [&](int nPos, uint32_t nState) {
        QImage image(120, 25, QImage::Format_ARGB32_Premultiplied);
        tagQKDrawItem d;
        d.hMenu = menu.GetHandle();
        d.itemID = CQKMenuManager::GetMenuItemID(d.hMenu, nPos);
        d.itemState = nState;
        d.itemData = reinterpret_cast<uintptr_t>(CQKMenuManager::GetItemRecord(d.hMenu, nPos, MF_BYPOSITION));
        d.pTarget = &image;
        d.rcItem = image.rect();
        CQKMenuManager::DrawItem(d);
        return image;
    };
    // In the column, 3 pixels in, scaled to the column less 6.
    EXPECT_EQ(paint(0, 0).pixel(3, 3), qRgb(255, 0, 0));
    EXPECT_EQ(paint(0, 0).pixel(21, 21), qRgb(255, 0, 0));
    EXPECT_EQ(paint(0, 0).pixel(22, 12), Opaque(kColumn));
    EXPECT_NE(paint(0, ODS_CHECKED).pixel(3, 20), qRgb(255, 0, 0));
    // A picture that cannot be read shows nothing and is not tried again.
    EXPECT_EQ(paint(1, 0).pixel(12, 12), Opaque(kColumn));
    ASSERT_NE(CQKMenuManager::GetItemRecord(menu.GetHandle(), 1, MF_BYPOSITION)->pImage, nullptr);
}

TEST_F(MenuTest, ShadowIsFourRingsOfRisingAlphaCutToARoundedFrame)
{
    const QImage rings = CQKMenuExShadow::PaintRings(60, 40);
    const int alphas[] = { 10, 20, 40, 80, 0, 0 };
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(qAlpha(rings.pixel(i, 20)), alphas[i]) << i;
        EXPECT_EQ(qAlpha(rings.pixel(59 - i, 20)), alphas[i]) << i;
        EXPECT_EQ(qAlpha(rings.pixel(30, i)), alphas[i]) << i;
        EXPECT_EQ(qAlpha(rings.pixel(30, 39 - i)), alphas[i]) << i;
    }
    QRegion region;
    for (const QRect& rc : CQKMenuExShadow::RingRegion(60, 40))
        region += rc;
    EXPECT_FALSE(region.contains(QPoint(0, 0))); // rounded corner
    EXPECT_TRUE(region.contains(QPoint(0, 20)));
    EXPECT_TRUE(region.contains(QPoint(5, 20)));
    EXPECT_FALSE(region.contains(QPoint(6, 20))); // the menu lies there
    EXPECT_FALSE(region.contains(QPoint(30, 20)));

    // Painted per size: a move that keeps the size paints nothing.
    toolkittest::TestHost owner;
    ASSERT_TRUE(owner.Open(300, 200));
    CQKMenuExShadow shadow;
    ASSERT_TRUE(shadow.Create(&owner));
    shadow.Place(QRect(120, 120, 50, 30));
    EXPECT_EQ(shadow.GetWindowRect(), QRect(116, 116, 58, 38));
    EXPECT_EQ(shadow.PaintCount(), 1);
    shadow.Place(QRect(140, 130, 50, 30));
    EXPECT_EQ(shadow.PaintCount(), 1);
    shadow.Place(QRect(140, 130, 60, 30));
    EXPECT_EQ(shadow.PaintCount(), 2);
}

// A menu over a window, driven by a person's keys and clicks.
class MenuTrackTest : public MenuTest
{
protected:
    void SetUp() override
    {
        MenuTest::SetUp();
        ASSERT_TRUE(owner.CreateShown(QRect(100, 100, 400, 300)));
        ASSERT_TRUE(HostDriver::WaitFor([&] { return owner.IsWindowVisible(); }));
        menu.CreatePopupMenu();
        menu.Append(1, QStringLiteral("&Open File\r\tCtrl+O"));
        menu.Append(0, QString());
        CQKMenuEx sub;
        sub.CreatePopupMenu();
        sub.Append(2, QStringLiteral("&Play / Pause\r\tSpace"));
        sub.Append(3, QStringLiteral("&Stop\r\tCtrl+S"));
        sub.Append(4, QStringLiteral("P&revious\r\tCtrl+\u2190"));
        CQKMenuManager::AppendSubMenu(menu.GetHandle(), sub.GetHandle(), QStringLiteral("&Control"));
        menu.Append(23, QStringLiteral("&Exit\r\tCtrl+E"));
    }

    static CQKMenuWnd* Level(int i) { return dynamic_cast<CQKMenuWnd*>(CQKMenuManager::GetMenuWnd(i)); }

    // Opens the menu at the owner's client point 50,50 and runs `act` once it is up; whatever
    // `act` leaves open is closed by Esc so that a failing test ends.
    int Track(const std::function<void(HostDriver&)>& act)
    {
        QTimer::singleShot(0, [&] {
            ASSERT_NE(Level(0), nullptr);
            HostDriver keys(*Level(0));
            act(keys);
            for (int i = 0; i < 4 && Level(0) && Level(0)->IsWindowVisible(); ++i)
                keys.Key(Qt::Key_Escape);
        });
        const QPoint pt = owner.ClientToScreen(QPoint(50, 50));
        const int n = menu.TrackPopupMenu(pt.x(), pt.y(), &owner);
        EXPECT_EQ(CQKMenuManager::GetMenuWndCount(), 0);
        EXPECT_TRUE(CQKMenuManager::IsShadowMapEmpty());
        return n;
    }

    orbeltest::HostRecorder owner;
    CQKMenuEx menu;
};

TEST_F(MenuTrackTest, KeysWalkIntoASubMenuAndBack)
{
    EXPECT_EQ(Track([&](HostDriver& d) {
        d.Key(Qt::Key_Down);
        EXPECT_EQ(Level(0)->Selected(), 0);
        d.Key(Qt::Key_Down); // past the separator
        EXPECT_EQ(Level(0)->Selected(), 2);
        d.Key(Qt::Key_Right);
        ASSERT_NE(Level(1), nullptr);
        EXPECT_EQ(Level(1)->Selected(), 0); // opened with its first row
        // Beside the row that opened it, first row level with it.
        EXPECT_EQ(Level(1)->GetWindowRect().left(), Level(0)->GetWindowRect().right() + 1);
        EXPECT_EQ(Level(1)->GetWindowRect().top() + 1, Level(0)->GetWindowRect().top() + Level(0)->Rows()[2].rc.top());
        EXPECT_FALSE(CQKMenuManager::IsShadowMapEmpty());
        d.Key(Qt::Key_Down);
        EXPECT_EQ(Level(1)->Selected(), 1);
        d.Key(Qt::Key_Left);
        EXPECT_EQ(Level(1), nullptr);
        EXPECT_EQ(Level(0)->Selected(), 2);
        d.Key(Qt::Key_Right);
        d.Key(Qt::Key_Down);
        d.Key(Qt::Key_Return);
    }),
        3);
    // Esc closes one level at a time; on the first menu nothing is chosen.
    EXPECT_EQ(Track([&](HostDriver& d) {
        d.Key(Qt::Key_C);
        ASSERT_NE(Level(1), nullptr);
        d.Key(Qt::Key_Escape);
        EXPECT_EQ(Level(1), nullptr);
        ASSERT_NE(Level(0), nullptr);
        d.Key(Qt::Key_Escape);
    }),
        0);
    // Mnemonics: "&Control" opens its sub-menu with the first row selected, "&Stop" chooses.
    EXPECT_EQ(Track([&](HostDriver& d) {
        d.Key(Qt::Key_C);
        d.Key(Qt::Key_S);
    }),
        3);
    EXPECT_EQ(Track([&](HostDriver& d) { d.Key(Qt::Key_E); }), 23);
}

TEST_F(MenuTrackTest, PointerChoosesAndAClickOutsideChoosesNothing)
{
    EXPECT_EQ(Track([&](HostDriver& d) {
        CQKMenuWnd* pRoot = Level(0);
        const QRect rcControl = pRoot->Rows()[2].rc;
        d.Move(rcControl.center());
        ASSERT_NE(Level(1), nullptr); // opens on hover
        // The first menu shows the row selected, painted on the screen.
        EXPECT_EQ(pRoot->HostImage().pixel(rcControl.left() + 1, rcControl.top() + 1), Opaque(kHighlight));
        EXPECT_EQ(pRoot->HostImage().pixel(0, 0), Opaque(kFrame));
        const QRect rcStop = Level(1)->Rows()[1].rc.translated(Level(1)->GetWindowRect().topLeft());
        const QPoint pt = pRoot->ScreenToClient(rcStop.center());
        d.Move(pt);
        EXPECT_EQ(Level(1)->Selected(), 1);
        d.Click(pt);
    }),
        3);
    owner.vecMouse.clear();
    EXPECT_EQ(Track([&](HostDriver& d) {
        // Over the owner, outside the menu: the menu closes, and the owner hears nothing.
        d.Move(QPoint(-30, 10));
        d.Click(QPoint(-30, 10));
    }),
        0);
    EXPECT_TRUE(owner.MouseMessages().empty());
}

} // namespace
