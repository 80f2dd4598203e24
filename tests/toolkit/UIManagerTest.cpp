// The UI manager: records and lookup, mouse routing without hit test, wheel, activation,
// keys and focus, the full repaint, and teardown.
#include "ToolkitTestSupport.h"

#include "platform/CQKGraphics.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <gtest/gtest.h>
#include <string>

using namespace toolkittest;

namespace {

// A control that writes down what the manager asks of it.
struct Probe : CQKButton
{
    explicit Probe(std::string* pLog = nullptr, std::string name = {})
        : log(pLog)
        , strName(std::move(name))
    {
    }
    void Paint(CQKGraphics* g, QImage* b) override
    {
        ++nPaints;
        if (!g)
            ++nLonePaints;
        if (log)
            *log += strName + (g ? "P" : "p");
        CQKButton::Paint(g, b);
    }
    int OnMouseEvent(CQKHostWnd* h, uint32_t m, const QPoint& pt) override
    {
        ++nMouse;
        lastPoint = pt;
        return CQKButton::OnMouseEvent(h, m, pt);
    }
    int OnMouseWheel(uint32_t, int d, const QPoint&) override
    {
        nWheel += d;
        return 1;
    }
    void OnActivate(uint32_t s) override { nActivate += static_cast<int>(s) + 1; }
    void OnLayoutChanged() override { ++nLayout; }
    void OnSetFocus() override
    {
        ++nSetFocus;
        CQKButton::OnSetFocus();
    }
    void OnKillFocus() override
    {
        ++nKillFocus;
        CQKButton::OnKillFocus();
    }
    int PreTranslateKey(uint32_t m, uint32_t vk, uint32_t mods) override
    {
        ++nKeys;
        return CQKButton::PreTranslateKey(m, vk, mods);
    }

    std::string* log;
    std::string strName;
    int nPaints { 0 }, nLonePaints { 0 }, nMouse { 0 }, nWheel { 0 }, nActivate { 0 }, nLayout { 0 };
    int nSetFocus { 0 }, nKillFocus { 0 }, nKeys { 0 };
    QPoint lastPoint;
};

class ManagerTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(host.Open(200, 100)); }
    void TearDown() override
    {
        for (uint32_t k = 1; k < QKKIND_COUNT; ++k)
            QKRegisterControlKind(k, tagQKControlKind {});
        if (CQKHostWnd::GetCapture())
            CQKHostWnd::ReleaseCapture();
    }
    Probe* Add(uint32_t id, uint32_t kind, QRect rc, std::string name = {})
    {
        auto* p = new Probe(&log, std::move(name));
        M().AddControl(id, std::unique_ptr<CQKButton>(p), kind);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        return p;
    }
    CQKUIManager& M() { return *host.Manager(); }

    AppFolder app;
    TestHost host;
    std::string log;
};

std::vector<CQKButton*> g_vecEdited;
void RecordEditWindow(CQKButton* p)
{
    g_vecEdited.push_back(p);
}
std::vector<CQKButton*> g_vecClosed;
void RecordClosePopup(CQKButton* p)
{
    g_vecClosed.push_back(p);
}

} // namespace

TEST_F(ManagerTest, ControlsAreFoundByIdAndKindTogether)
{
    Probe* close = Add(2, QKKIND_BUTTON, QRect(0, 0, 10, 10));
    Probe* cancel = Add(2, QKKIND_TEXTBUTTON, QRect(20, 0, 10, 10));
    EXPECT_EQ(M().FindControl(2, QKKIND_BUTTON), close);
    EXPECT_EQ(M().FindControl(2, QKKIND_TEXTBUTTON), cancel);
    EXPECT_EQ(M().FindControl(2, QKKIND_CHECK), nullptr);
    EXPECT_EQ(M().FindControl(3, QKKIND_BUTTON), nullptr);
    EXPECT_EQ(close->hWndHost, &host);
    EXPECT_EQ(close->pManager, &M());
    EXPECT_EQ(cancel->nKind, QKKIND_TEXTBUTTON);
}

TEST_F(ManagerTest, AddControlGivesEachKindItsDefaultFontAndEditKindsTheirWindow)
{
    const int32_t expected[QKKIND_COUNT] = { 77, 6, 6, 3, 1, 1, 1, 1, 77, 77, 1, 1, 3, 6, 3, 77, 1, 1, 1, 1, 3, 1, 1, 6 };
    for (uint32_t k = 0; k < QKKIND_COUNT; ++k) {
        auto* p = new CQKButton();
        p->nFontID = 77;
        M().AddControl(100 + k, std::unique_ptr<CQKButton>(p), k);
        EXPECT_EQ(p->nFontID, static_cast<uint32_t>(expected[k])) << "kind " << k;
    }
    // The popup list's kind is left entirely to its owner.
    CQKButton* list = M().FindControl(108, QKKIND_COMBOBOXLIST);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->hWndHost, nullptr);
    EXPECT_EQ(list->pManager, nullptr);
    EXPECT_EQ(M().pTimelineEditor, M().FindControl(116, QKKIND_TIMELINEEDITOR));
    g_vecEdited.clear();
    tagQKControlKind edit;
    edit.pfnCreateEditWindow = RecordEditWindow;
    QKRegisterControlKind(QKKIND_EDIT, edit);
    QKRegisterControlKind(QKKIND_EDITTIME, edit);
    auto* a = new CQKButton();
    auto* b = new CQKButton();
    auto* c = new CQKButton();
    M().AddControl(1, std::unique_ptr<CQKButton>(a), QKKIND_EDIT);
    M().AddControl(2, std::unique_ptr<CQKButton>(b), QKKIND_EDITTIME);
    M().AddControl(3, std::unique_ptr<CQKButton>(c), QKKIND_STATIC);
    ASSERT_EQ(g_vecEdited.size(), 2u);
    EXPECT_EQ(g_vecEdited[0], a);
    EXPECT_EQ(g_vecEdited[1], b);
    EXPECT_EQ(a->nFontID, 3u);
}

TEST_F(ManagerTest, EveryControlHearsEveryMouseEventAndOverlapsHoverTogether)
{
    Probe* a = Add(1, 0, QRect(10, 10, 50, 50), "a");
    Probe* b = Add(2, 0, QRect(40, 40, 50, 50), "b");
    Probe* far = Add(3, 0, QRect(150, 10, 20, 20), "c");
    log.clear();
    host.input.Move(QPoint(45, 45));
    EXPECT_EQ(a->nState, 1u);
    EXPECT_EQ(b->nState, 1u);
    EXPECT_EQ(far->nMouse, 1) << "no hit test: told although the point is elsewhere";
    EXPECT_EQ(log, "apbp") << "both repaint alone, in list order";
    EXPECT_EQ(far->nLonePaints, 0) << "a control that reports no change is not repainted";
}

TEST_F(ManagerTest, TimeEditHearsNoMouseNorActivationButIsPainted)
{
    Probe* time = Add(1, QKKIND_EDITTIME, QRect(10, 10, 30, 30));
    Probe* list = Add(2, QKKIND_HLISTBOX, QRect(50, 10, 30, 30));
    Probe* other = Add(3, QKKIND_BUTTON, QRect(90, 10, 30, 30));
    host.input.Move(QPoint(20, 20));
    EXPECT_EQ(time->nMouse, 0);
    M().OnActivate(1);
    EXPECT_EQ(time->nActivate, 0);
    EXPECT_EQ(list->nActivate, 0) << "the horizontal list is not told either";
    EXPECT_EQ(other->nActivate, 2);
    M().PaintAll();
    EXPECT_EQ(time->nPaints, 1);
}

TEST_F(ManagerTest, WheelGoesToTheFocusControlOfAWheelKindOnly)
{
    Probe* button = Add(1, QKKIND_BUTTON, QRect(10, 10, 30, 30));
    Probe* list = Add(2, QKKIND_VLISTBOX, QRect(50, 10, 30, 30));
    host.input.Wheel(QPoint(60, 20), 1);
    EXPECT_EQ(list->nWheel, 0) << "no focus: nobody";
    M().SetFocusControl(button, QKKIND_BUTTON);
    EXPECT_EQ(M().OnMouseWheel(0, 120, QPoint(60, 20)), 0) << "a button takes no wheel, even over a list";
    EXPECT_EQ(list->nWheel, 0);
    M().SetFocusControl(list, QKKIND_VLISTBOX);
    host.input.Wheel(QPoint(20, 20), -2); // the pointer over the button
    EXPECT_EQ(list->nWheel, -240);
    for (uint32_t k : { 3u, 6u, 7u, 8u, 9u, 10u, 11u, 14u, 16u }) {
        M().SetFocusControl(button, k);
        EXPECT_EQ(M().OnMouseWheel(0, 120, QPoint()), 1) << "kind " << k;
    }
    for (uint32_t k : { 0u, 1u, 2u, 4u, 12u, 13u, 15u, 17u, 20u, 23u }) {
        M().SetFocusControl(button, k);
        EXPECT_EQ(M().OnMouseWheel(0, 120, QPoint()), 0) << "kind " << k;
    }
}

TEST_F(ManagerTest, TabVisitsEveryControlInListOrderAndWraps)
{
    Probe* a = Add(1, 0, QRect(0, 0, 10, 10));
    Probe* b = Add(2, 0, QRect(20, 0, 10, 10));
    Probe* c = Add(3, 0, QRect(40, 0, 10, 10));
    b->Enable(0, 0);
    c->Show(0, 0);
    host.input.KeyPress(Qt::Key_Tab);
    EXPECT_EQ(M().GetFocusControl(), a) << "no focus: the first";
    host.input.KeyPress(Qt::Key_Tab);
    EXPECT_EQ(M().GetFocusControl(), b) << "disabled controls take the focus";
    host.input.KeyPress(Qt::Key_Tab);
    EXPECT_EQ(M().GetFocusControl(), c) << "hidden ones too";
    host.input.KeyPress(Qt::Key_Tab);
    EXPECT_EQ(M().GetFocusControl(), a);
    EXPECT_EQ(a->nKillFocus, 1);
    EXPECT_TRUE(a->IsFocused());
    EXPECT_FALSE(c->IsFocused());
}

TEST_F(ManagerTest, TabWithOneControlOnlyFocusesIt)
{
    Probe* a = Add(1, 0, QRect(0, 0, 10, 10));
    M().FocusNext();
    EXPECT_EQ(M().GetFocusControl(), a);
    EXPECT_EQ(a->nSetFocus, 1);
    M().FocusNext();
    EXPECT_EQ(a->nSetFocus, 1) << "nothing happens with the focus already there";
    EXPECT_EQ(a->nKillFocus, 0);
}

TEST_F(ManagerTest, KeysReachTheFocusControlOfAKeyKind)
{
    Probe* a = Add(1, 0, QRect(0, 0, 10, 10));
    EXPECT_EQ(M().PreTranslateKey(WM_KEYDOWN, VK_SPACE, 0), 0) << "no focus";
    M().SetFocusControl(a, 0);
    M().PreTranslateKey(WM_KEYDOWN, VK_SPACE, 0);
    M().PreTranslateKey(WM_KEYUP, VK_SPACE, 0);
    M().PreTranslateKey(WM_CHAR, 32, 0);
    EXPECT_EQ(a->nKeys, 2) << "down and up, not characters";
    for (uint32_t k : { 20u, 21u, 22u, 30u }) {
        M().SetFocusControl(a, k);
        EXPECT_EQ(M().PreTranslateKey(WM_KEYDOWN, VK_RETURN, 0), 0);
    }
    EXPECT_EQ(a->nKeys, 2);
}

TEST_F(ManagerTest, FocusChangesTellOldAndNewControls)
{
    g_vecClosed.clear();
    tagQKControlKind combo;
    combo.pfnClosePopup = RecordClosePopup;
    QKRegisterControlKind(QKKIND_COMBOBOX, combo);
    Probe* a = Add(1, QKKIND_COMBOBOX, QRect(0, 0, 10, 10));
    Probe* b = Add(2, QKKIND_HLISTBOX, QRect(20, 0, 10, 10));
    Probe* c = Add(3, QKKIND_EDITTIME, QRect(40, 0, 10, 10));
    M().SetFocusControl(a, QKKIND_COMBOBOX);
    EXPECT_EQ(a->nSetFocus, 1);
    M().SetFocusControl(a, QKKIND_COMBOBOX);
    EXPECT_EQ(a->nSetFocus, 2) << "told again when it had the focus already";
    EXPECT_EQ(a->nKillFocus, 0);
    M().SetFocusControl(b, QKKIND_HLISTBOX);
    EXPECT_EQ(a->nKillFocus, 1);
    ASSERT_EQ(g_vecClosed.size(), 1u) << "the combo box's popup closes";
    EXPECT_EQ(g_vecClosed[0], a);
    EXPECT_EQ(b->nSetFocus, 0) << "the horizontal list is not told";
    M().SetFocusControl(c, QKKIND_EDITTIME);
    EXPECT_EQ(c->nSetFocus, 0);
    M().SetFocusControl(a, QKKIND_COMBOBOX);
    EXPECT_EQ(c->nKillFocus, 0) << "nor is the time edit on losing it";
}

TEST_F(ManagerTest, PaintAllComposesBackgroundHostLayerAndControlsInOrder)
{
    M().pBackground = std::make_unique<QImage>(Solid(2, 2, Qt::red));
    host.paintBackground = [](CQKGraphics* g) { g->FillRectangle(tagQKBrush::Solid(0xFF0000FF), 0, 0, 100, 100); };
    const QImage green = Strip(10, 10, { Qt::green, Qt::green, Qt::green, Qt::green });
    const QImage white = Strip(10, 10, { Qt::white, Qt::white, Qt::white, Qt::white });
    Probe* first = Add(1, 0, QRect(40, 40, 10, 10));
    first->SetImage(&green);
    Probe* second = Add(2, 0, QRect(45, 45, 10, 10));
    second->SetImage(&white);
    Add(3, 99, QRect(0, 0, 200, 100))->SetImage(&green); // a kind past the table is not painted
    TestHost::Pump();
    const int nBefore = host.nBackgroundPaints;
    M().PaintAll();
    const QImage& screen = host.HostImage();
    EXPECT_EQ(host.nBackgroundPaints, nBefore + 1) << "message 1924 once per composition";
    EXPECT_EQ(PixelAt(screen, 150, 50), QColor(Qt::red)) << "the background picture, stretched";
    EXPECT_EQ(PixelAt(screen, 20, 20), QColor(Qt::blue)) << "the host's own layer over it";
    EXPECT_EQ(PixelAt(screen, 42, 42), QColor(Qt::green));
    EXPECT_EQ(PixelAt(screen, 47, 47), QColor(Qt::white)) << "a later control over an earlier one";
    // The bitmap rendering is the same picture.
    std::unique_ptr<QImage> bitmap = M().RenderToBitmap();
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->size(), QSize(200, 100));
    EXPECT_EQ(PixelAt(*bitmap, 47, 47), QColor(Qt::white));
    EXPECT_EQ(PixelAt(*bitmap, 150, 50), QColor(Qt::red));
    EXPECT_EQ(host.nBackgroundPaints, nBefore + 2);
}

TEST_F(ManagerTest, PaintAllWithoutBackgroundUsesTheGroundAndIgnoresADeadHost)
{
    g_clrFace = 0x00102030;
    M().PaintAll();
    EXPECT_EQ(PixelAt(host.HostImage(), 100, 50), QColor(0x30, 0x20, 0x10));
    CQKUIManager lone;
    lone.PaintAll(); // no host: nothing, no crash
    EXPECT_EQ(lone.RenderToBitmap(), nullptr);
}

TEST_F(ManagerTest, InvalidateCachesDropsCachesAndTellsLaidOutKinds)
{
    std::vector<Probe*> probes;
    for (uint32_t k = 0; k < QKKIND_COUNT; ++k) {
        Probe* p = Add(k, k, QRect(0, 0, 10, 10));
        p->EnableBackgroundCache(true);
        probes.push_back(p);
    }
    M().PaintAll();
    ASSERT_TRUE(probes[0]->pBackCache);
    M().InvalidateCaches();
    for (uint32_t k = 0; k < QKKIND_COUNT; ++k) {
        EXPECT_FALSE(probes[k]->pBackCache) << "kind " << k;
        const bool bTold = (k >= 5 && k <= 19) || k >= 21;
        EXPECT_EQ(probes[k]->nLayout, bTold ? 1 : 0) << "kind " << k;
    }
}

TEST_F(ManagerTest, ResizingTheHostRelaysOutAndRepaints)
{
    Probe* list = Add(1, QKKIND_VLISTBOX, QRect(0, 0, 10, 10));
    host.MoveWindow(100, 100, 300, 150);
    TestHost::Pump();
    EXPECT_GE(list->nLayout, 1);
    EXPECT_EQ(host.HostImage().size(), QSize(300, 150));
    EXPECT_EQ(PixelAt(host.HostImage(), 290, 140), FromBGR(g_clrFace));
}

TEST_F(ManagerTest, TeardownDeletesControlsAndCountsManagers)
{
    EXPECT_EQ(g_szAppFolder.isEmpty(), false);
    const int before = g_nManagerCount;
    {
        CQKUIManager extra;
        EXPECT_EQ(g_nManagerCount, before + 1);
        auto font = std::make_unique<tagQKFont>();
        font->nID = 4;
        g_vecFonts.push_back(std::move(font));
        extra.AddControl(1, std::unique_ptr<CQKButton>(new CQKButton()), 0);
    }
    EXPECT_EQ(g_nManagerCount, before);
    EXPECT_EQ(g_vecFonts.size(), 1u) << "the host's manager still lives";
    host.DestroyWindow();
    EXPECT_EQ(host.Manager(), nullptr);
    EXPECT_EQ(g_nManagerCount, before - 1);
    EXPECT_TRUE(g_vecFonts.empty());
}
