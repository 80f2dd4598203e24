// The control base: the mouse state machine through a real host, picture frames, drawn
// faces, text, and the operations that repaint or do not.
#include "ToolkitTestSupport.h"

#include "platform/CQKGraphics.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// A host of 200 by 100 with one button at 20,20,60,30 (id 41).
class ButtonTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(host.Open(200, 100));
        button = new CQKButton();
        host.Manager()->AddControl(41, std::unique_ptr<CQKButton>(button), 0);
        button->MoveTo(20, 20, 60, 30, 0);
        host.Manager()->PaintAll();
        host.ClearReceived();
    }
    void TearDown() override
    {
        if (CQKHostWnd::GetCapture())
            CQKHostWnd::ReleaseCapture();
    }
    void PressAt(QPoint p)
    {
        host.input.Move(p);
        host.input.Press(p);
    }
    void ClickAt(QPoint p)
    {
        host.input.Move(p);
        host.input.Click(p);
    }
    size_t Clicks()
    {
        TestHost::Pump();
        return host.Received(WM_COMMAND).size();
    }
    // The button painted alone into a picture of its size over black.
    QImage PaintAlone(CQKButton& b)
    {
        QImage image = Solid(b.nWidth, b.nHeight, Qt::black);
        CQKGraphics g(image);
        const int x = b.nX, y = b.nY;
        b.nX = 0;
        b.nY = 0;
        b.Paint(&g, &image);
        b.nX = x;
        b.nY = y;
        return image;
    }

    AppFolder app;
    TestHost host;
    CQKButton* button { nullptr };
};

} // namespace

TEST_F(ButtonTest, HoverFollowsThePointerAndLeaveResets)
{
    // 79,49 is the last pixel inside; the right edge is outside.
    const std::pair<QPoint, uint32_t> moves[] = { { QPoint(5, 5), 0u }, { QPoint(30, 30), 1u }, { QPoint(79, 49), 1u }, { QPoint(80, 49), 0u } };
    for (const auto& [pt, state] : moves) {
        host.input.Move(pt);
        EXPECT_EQ(button->nState, state) << pt.x() << "," << pt.y();
    }
    host.input.Move(QPoint(30, 30));
    host.input.Leave();
    EXPECT_EQ(button->nState, 0u);
    EXPECT_EQ(Clicks(), 0u);
}

TEST_F(ButtonTest, PressAndReleaseInsideClicksOnce)
{
    ClickAt(QPoint(30, 30));
    ASSERT_EQ(Clicks(), 1u);
    const tagMessage m = host.Received(WM_COMMAND)[0];
    EXPECT_EQ(m.wParam, 41u);
    EXPECT_EQ(m.lParam, 0);
    EXPECT_EQ(button->nState, 1u) << "back to hover after the click";
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
    EXPECT_TRUE(button->IsFocused()) << "a press takes the focus";
    EXPECT_EQ(host.Manager()->GetFocusControl(), button);
}

TEST_F(ButtonTest, PressDraggedOutAndReleasedOutsideDoesNotClick)
{
    PressAt(QPoint(30, 30));
    EXPECT_EQ(button->nState, 2u);
    EXPECT_EQ(CQKHostWnd::GetCapture(), &host);
    host.input.Move(QPoint(150, 80));
    EXPECT_EQ(button->nState, 2u) << "a pressed control stays down while the pointer is out";
    host.input.Leave(); // the pointer leaves the window with the button held
    EXPECT_EQ(button->nState, 2u);
    host.input.Move(QPoint(300, 300)); // outside the window, heard through the capture
    EXPECT_EQ(button->nState, 2u);
    host.input.Release(QPoint(300, 300));
    EXPECT_EQ(button->nState, 0u);
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
    EXPECT_EQ(Clicks(), 0u);
}

TEST_F(ButtonTest, PressDraggedOutAndBackStillClicks)
{
    PressAt(QPoint(30, 30));
    host.input.Move(QPoint(150, 80));
    host.input.Move(QPoint(40, 40));
    EXPECT_EQ(button->nState, 2u);
    host.input.Release(QPoint(40, 40));
    EXPECT_EQ(Clicks(), 1u);
    EXPECT_EQ(button->nState, 1u);
}

TEST_F(ButtonTest, ReleaseOverAnotherControlClicksNeither)
{
    auto* other = new CQKButton();
    host.Manager()->AddControl(42, std::unique_ptr<CQKButton>(other), 0);
    other->MoveTo(120, 20, 60, 30, 0);
    // Pressed on the second control, released over the first (earlier in the list).
    PressAt(QPoint(130, 30));
    host.input.Move(QPoint(30, 30));
    EXPECT_EQ(button->nState, 0u) << "no hover while another holds the press";
    host.input.Release(QPoint(30, 30));
    EXPECT_EQ(Clicks(), 0u);
    EXPECT_EQ(other->nState, 0u);
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
}

TEST_F(ButtonTest, RightReleaseOutsideEndsAHeldPress)
{
    PressAt(QPoint(30, 30));
    host.input.Release(QPoint(150, 80), Qt::RightButton);
    EXPECT_EQ(button->nState, 0u);
    EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
    EXPECT_EQ(Clicks(), 0u);
}

TEST_F(ButtonTest, DisabledOrHiddenControlDropsHoverAndIgnoresTheMouse)
{
    const std::function<void(int)> ways[] = { [this](int b) { button->Enable(b, 1); }, [this](int b) { button->Show(b, 0); } };
    for (const auto& set : ways) {
        host.input.Move(QPoint(30, 30));
        ASSERT_EQ(button->nState, 1u);
        set(0);
        EXPECT_EQ(button->nState, 0u) << "at once";
        ClickAt(QPoint(31, 30));
        EXPECT_EQ(button->nState, 0u);
        EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
        set(1);
        host.input.Move(QPoint(5, 5));
    }
    EXPECT_EQ(Clicks(), 0u);
}

TEST_F(ButtonTest, ZeroSizedControlTakesNoInputAndPaintsNothing)
{
    button->MoveTo(20, 20, 0, 30, 0);
    ClickAt(QPoint(20, 20));
    EXPECT_EQ(button->nState, 0u);
    EXPECT_EQ(Clicks(), 0u);
    const QImage red = Solid(4, 4, Qt::red);
    button->SetImage(&red);
    QImage image = Solid(50, 50, Qt::black);
    CQKGraphics g(image);
    button->Paint(&g, &image);
    EXPECT_EQ(BoxOf(image, Qt::red, 10), QRect());
}

TEST_F(ButtonTest, EnterClicksAFocusedControlOnKeyDownOnly)
{
    EXPECT_EQ(button->PreTranslateKey(WM_KEYDOWN, VK_RETURN, 0), 0) << "not focused";
    host.Manager()->SetFocusControl(button, 0);
    EXPECT_EQ(button->PreTranslateKey(WM_KEYUP, VK_RETURN, 0), 0);
    EXPECT_EQ(button->PreTranslateKey(WM_KEYDOWN, VK_SPACE, 0), 0);
    EXPECT_EQ(Clicks(), 0u);
    host.input.KeyPress(Qt::Key_Return);
    host.input.KeyRelease(Qt::Key_Return);
    ASSERT_EQ(Clicks(), 1u);
    EXPECT_EQ(host.Received(WM_COMMAND)[0].wParam, 41u);
    button->Enable(0, 0);
    EXPECT_EQ(button->PreTranslateKey(WM_KEYDOWN, VK_RETURN, 0), 0) << "disabled";
}

TEST_F(ButtonTest, FourFrameStripPicksTheFrameOfTheState)
{
    // Frames of 10 by 6: red normal, green hover, blue down, grey disabled.
    const QImage strip = Strip(10, 6, { Qt::red, Qt::green, Qt::blue, Qt::gray });
    button->SetImage(&strip);
    button->MoveTo(20, 20, 30, 16, 0);
    const QPoint centre(20 + 15, 20 + 8);
    struct Case
    {
        uint32_t nState;
        int bEnabled;
        QColor expected;
    } cases[] = { { 0, 1, Qt::red }, { 1, 1, Qt::green }, { 2, 1, Qt::blue }, { 0, 0, Qt::gray }, { 2, 0, Qt::gray } };
    for (const Case& c : cases) {
        button->nState = c.nState;
        button->bEnabled = c.bEnabled;
        host.Manager()->PaintAll();
        const QImage& screen = host.HostImage();
        EXPECT_EQ(PixelAt(screen, centre.x(), centre.y()), c.expected) << "state " << c.nState << " enabled " << c.bEnabled;
        // The frame sits at its natural size, centred: 10 by 6 at 30,25.
        EXPECT_EQ(BoxOf(screen, c.expected, 10, button->GetRect()), QRect(30, 25, 10, 6));
    }
    // A state outside 0..2 draws no picture.
    button->bEnabled = 1;
    button->nState = 7;
    host.Manager()->PaintAll();
    EXPECT_EQ(PixelAt(host.HostImage(), centre.x(), centre.y()), FromBGR(g_clrFace));
}

TEST_F(ButtonTest, WideOrHighStripsAreSqueezedIntoTheControl)
{
    const QImage strip = Strip(50, 40, { Qt::red, Qt::green, Qt::blue, Qt::gray });
    button->SetImage(&strip);
    button->MoveTo(20, 20, 30, 16, 0);
    host.Manager()->PaintAll();
    EXPECT_EQ(BoxOf(host.HostImage(), Qt::red, 10), QRect(20, 20, 30, 16));
    // The lone repaint comes to the same.
    button->nState = 1;
    button->RepaintAlone();
    EXPECT_EQ(BoxOf(host.HostImage(), Qt::green, 10), QRect(20, 20, 30, 16));
}

TEST_F(ButtonTest, TwoFrameAndOneFrameStripsStretchAndShowDisabled)
{
    const QImage two = Strip(4, 4, { Qt::red, Qt::blue });
    button->SetImage(&two);
    button->nFrames = 2;
    button->nState = 1; // hover changes nothing with two frames
    QImage image = PaintAlone(*button);
    EXPECT_EQ(BoxOf(image, Qt::red, 10), QRect(0, 0, 60, 30));
    button->bEnabled = 0;
    image = PaintAlone(*button);
    EXPECT_EQ(BoxOf(image, Qt::blue, 10), QRect(0, 0, 60, 30));

    const QImage one = Solid(3, 3, Qt::white);
    button->SetImage(&one);
    button->nFrames = 1;
    button->bEnabled = 1;
    image = PaintAlone(*button);
    EXPECT_EQ(PixelAt(image, 30, 15), QColor(Qt::white));
    button->bEnabled = 0;
    image = PaintAlone(*button);
    EXPECT_LE(ColourDistance(PixelAt(image, 30, 15), QColor(128, 128, 128)), 2) << "half alpha over black";
    // Other frame counts draw no picture.
    button->bEnabled = 1;
    for (uint32_t n : { 0u, 3u, 5u }) {
        button->nFrames = n;
        EXPECT_EQ(BoxOf(PaintAlone(*button), Qt::white, 10), QRect()) << n << " frames";
    }
}

TEST_F(ButtonTest, SetImageKeepsACopyAndLoadImageReadsAFile)
{
    QImage mine = Strip(10, 6, { Qt::red, Qt::green, Qt::blue, Qt::gray });
    button->SetImage(&mine);
    mine.fill(Qt::yellow);
    EXPECT_EQ(PixelAt(*button->pImage, 1, 1), QColor(Qt::red)) << "the caller keeps its own picture";
    EXPECT_EQ(BoxOf(host.HostImage(), Qt::red, 10), QRect()) << "not on screen before a repaint";
    button->RepaintAlone();
    EXPECT_FALSE(BoxOf(host.HostImage(), Qt::red, 10).isEmpty());
    button->SetImage(nullptr);
    EXPECT_FALSE(button->pImage);
    app.WritePicture("pic.png", Solid(8, 2, Qt::blue));
    button->LoadImage(app.Path() + "pic.png");
    ASSERT_TRUE(button->pImage);
    EXPECT_EQ(button->pImage->size(), QSize(8, 2));
    button->LoadImage(app.Path() + "nothing.png");
    EXPECT_FALSE(button->pImage);
    app.WriteBytes("broken.png", QByteArray("\x89PNG not really", 15));
    button->LoadImage(app.Path() + "broken.png");
    ASSERT_TRUE(button->pImage);
    EXPECT_TRUE(button->pImage->isNull()) << "an unreadable picture paints nothing";
    EXPECT_EQ(BoxOf(PaintAlone(*button), Qt::blue, 10), QRect());
}

TEST_F(ButtonTest, LoneRepaintUsesTheSavedBackgroundOrTheGround)
{
    // The host's layer is red, and green just where the control lies.
    host.paintBackground = [](CQKGraphics* g) {
        g->FillRectangle(tagQKBrush::Solid(0xFFFF0000), 0, 0, 200, 100);
        g->FillRectangle(tagQKBrush::Solid(0xFF00FF00), 20, 20, 60, 30);
    };
    host.Manager()->PaintAll();
    EXPECT_EQ(PixelAt(host.HostImage(), 25, 25), QColor(Qt::green));
    // Without the cache a lone repaint lays the theme's ground under the control.
    button->RepaintAlone();
    EXPECT_EQ(PixelAt(host.HostImage(), 25, 25), FromBGR(g_clrFace));
    EXPECT_EQ(PixelAt(host.HostImage(), 10, 10), QColor(Qt::red)) << "only the control's own area changes";
    // With it, what lay beneath at the last full repaint.
    button->EnableBackgroundCache(true);
    host.Manager()->PaintAll();
    ASSERT_TRUE(button->pBackCache);
    button->RepaintAlone();
    EXPECT_EQ(PixelAt(host.HostImage(), 25, 25), QColor(Qt::green));
    // Moving drops the cache.
    button->MoveTo(21, 20, 60, 30, 0);
    EXPECT_FALSE(button->pBackCache);
    button->MoveTo(21, 20, 60, 30, 0);
}

TEST_F(ButtonTest, ControlFarLargerThanItsWindowRepaintsOnlyWhatShows)
{
    const QImage white = Solid(3, 3, Qt::white);
    button->SetImage(&white);
    button->nFrames = 1;
    button->EnableBackgroundCache(true);
    button->MoveTo(-50000, -50000, 200000, 200000, 0);
    host.Manager()->PaintAll();
    ASSERT_TRUE(button->pBackCache);
    EXPECT_EQ(button->pBackCache->size(), QSize(200, 100)) << "only the part inside the window is kept";
    host.input.Move(QPoint(100, 50)); // hover: a lone repaint
    EXPECT_EQ(button->nState, 1u);
    EXPECT_EQ(PixelAt(host.HostImage(), 100, 50), QColor(Qt::white));

    // At the very end of the number range nothing overflows.
    button->MoveTo(INT32_MAX - 5, INT32_MAX - 5, INT32_MAX, INT32_MAX, 0);
    host.input.Move(QPoint(150, 80));
    EXPECT_EQ(button->nState, 0u);
    EXPECT_EQ(button->GetRect().right(), INT32_MAX - 1);
    host.Manager()->PaintAll();
    button->RepaintAlone();
}

TEST_F(ButtonTest, HidingLeavesTheHoleForTheNextFullRepaint)
{
    const QImage strip = Strip(10, 6, { Qt::red, Qt::red, Qt::red, Qt::red });
    button->SetImage(&strip);
    host.Manager()->PaintAll();
    ASSERT_FALSE(BoxOf(host.HostImage(), Qt::red, 10).isEmpty());
    button->Show(0, 1);
    EXPECT_FALSE(BoxOf(host.HostImage(), Qt::red, 10).isEmpty()) << "nothing is drawn at once";
    TestHost::Pump();
    EXPECT_EQ(BoxOf(host.HostImage(), Qt::red, 10), QRect()) << "the host's repaint closes the hole";
    button->Show(1, 1);
    EXPECT_FALSE(BoxOf(host.HostImage(), Qt::red, 10).isEmpty()) << "showing paints at once";
}

namespace {

// Face colours that tell the states apart: normal green, hover blue.
void SetFaceColours()
{
    g_UIColors.clrFaceStartA = RGB(0, 200, 0);
    g_UIColors.clrFaceStartB = RGB(0, 200, 0);
    g_UIColors.clrFaceEnd = RGB(0, 200, 0);
    g_UIColors.clrFaceHover = RGB(0, 0, 250);
}

// A face of one filled 10 by 10 square.
std::unique_ptr<tagQKFace> SquareFace()
{
    auto face = std::make_unique<tagQKFace>();
    face->layers[2].bFill = 1;
    face->layers[2].pPath = std::make_unique<CQKGraphicsPath>();
    face->layers[2].pPath->AddRectangle(QRectF(0, 0, 10, 10));
    return face;
}

// The strongest value of one channel in the picture.
int Brightest(const QImage& image, int (QColor::*channel)() const)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            n = std::max(n, (PixelAt(image, x, y).*channel)());
    }
    return n;
}

} // namespace

TEST_F(ButtonTest, GlyphFaceIsCentredAndColouredByState)
{
    SetFaceColours();
    button->SetFace(10); // a 14 by 14 square outline
    button->MoveTo(0, 0, 40, 40, 0);
    // Smoothed one-pixel strokes come out at partial strength: pixels are told apart by the
    // channel that carries the colour.
    auto green = [](QColor c) { return c.green() > 60 && c.red() < 20 && c.blue() < 20; };
    auto blue = [](QColor c) { return c.blue() > 60 && c.red() < 20 && c.green() < 20; };
    const QRect box = BoxWhere(PaintAlone(*button), green);
    ASSERT_FALSE(box.isEmpty());
    EXPECT_NEAR(box.center().x(), 20, 1);
    EXPECT_NEAR(box.center().y(), 20, 1);
    EXPECT_NEAR(box.width(), 15, 2);
    EXPECT_EQ(BoxWhere(PaintAlone(*button), blue), QRect()) << "no hover colour in the normal state";

    button->nState = 1;
    const QImage hover = PaintAlone(*button);
    EXPECT_EQ(BoxWhere(hover, blue), box);
    EXPECT_EQ(BoxWhere(hover, green), QRect());

    button->nState = 2;
    const QImage down = PaintAlone(*button);
    EXPECT_EQ(BoxWhere(down, blue), box.translated(1, 1)) << "a pressed face moves one pixel right and down";
    // The strength of a smoothed stroke is the same in both states, so the pressed one is
    // the darker by the darkening's share.
    EXPECT_LT(Brightest(down, &QColor::blue), Brightest(hover, &QColor::blue) - 8);

    // Disabled: the midpoint of start and end, red and green alike here, at alpha 100.
    g_UIColors.clrFaceEnd = RGB(200, 0, 0);
    button->nState = 1;
    button->bEnabled = 0;
    const QImage disabled = PaintAlone(*button);
    auto olive = [](QColor c) { return c.red() > 15 && std::abs(c.red() - c.green()) < 8 && c.blue() < 5; };
    EXPECT_EQ(BoxWhere(disabled, olive), box);
    EXPECT_EQ(BoxWhere(disabled, blue), QRect());
    EXPECT_LE(Brightest(disabled, &QColor::red), 100 * 100 / 255 + 2) << "at alpha 100";
}

TEST_F(ButtonTest, FilledFaceShowsTheExactStateColours)
{
    SetFaceColours();
    button->AddFace(SquareFace(), true);
    button->MoveTo(0, 0, 30, 30, 0);
    EXPECT_EQ(PixelAt(PaintAlone(*button), 15, 15), QColor(0, 200, 0));
    EXPECT_EQ(BoxOf(PaintAlone(*button), QColor(0, 200, 0), 0), QRect(10, 10, 10, 10)) << "centred";
    button->nState = 1;
    EXPECT_EQ(PixelAt(PaintAlone(*button), 15, 15), QColor(0, 0, 250));
    button->nState = 2;
    EXPECT_EQ(PixelAt(PaintAlone(*button), 15, 15), QColor(0, 0, 230)) << "hover darkened by 20";
    EXPECT_EQ(BoxOf(PaintAlone(*button), QColor(0, 0, 230), 0), QRect(11, 11, 10, 10));
    button->nState = 5;
    EXPECT_EQ(PixelAt(PaintAlone(*button), 15, 15), QColor(0, 200, 0)) << "other states use the end colour";
    g_UIColors.clrFaceEnd = RGB(200, 100, 0);
    g_UIColors.clrFaceStartB = RGB(0, 0, 200);
    button->bEnabled = 0;
    // The midpoint (100, 50, 100) at alpha 100 over black.
    EXPECT_LE(ColourDistance(PixelAt(PaintAlone(*button), 15, 15), QColor(39, 20, 39)), 1);
    // A null face changes nothing.
    button->AddFace(nullptr, true);
    EXPECT_EQ(button->vecFaces.size(), 1u);
}

TEST_F(ButtonTest, FaceClipMovesWithTheFaceAndPathsStayPut)
{
    SetFaceColours();
    auto face = SquareFace();
    // Only the left half of the square shows.
    face->layers[2].pClipPath = std::make_unique<CQKGraphicsPath>();
    face->layers[2].pClipPath->AddRectangle(QRectF(0, 0, 5, 10));
    // A clip of a layer without a path is no part of the painting.
    face->layers[3].pClipPath = std::make_unique<CQKGraphicsPath>();
    face->layers[3].pClipPath->AddRectangle(QRectF(0, 0, 2, 2));
    button->AddFace(std::move(face), true);
    button->MoveTo(0, 0, 30, 30, 0);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(BoxOf(PaintAlone(*button), QColor(0, 200, 0), 0), QRect(10, 10, 5, 10)) << "paint " << i;
        const tagQKFace& f = *button->vecFaces[0];
        EXPECT_EQ(f.layers[2].pPath->GetBounds(), QRectF(0, 0, 10, 10));
        EXPECT_EQ(f.layers[2].pClipPath->GetBounds(), QRectF(0, 0, 5, 10));
        EXPECT_EQ(f.layers[3].pClipPath->GetBounds(), QRectF(0, 0, 2, 2));
    }
}

TEST_F(ButtonTest, NormalFaceRunsFromStartColourToEndColour)
{
    g_UIColors.clrFaceStartB = RGB(255, 0, 0);
    g_UIColors.clrFaceEnd = RGB(0, 0, 255);
    button->SetFace(1); // a bar of 10
    button->MoveTo(0, 0, 40, 20, 0);
    const QImage image = PaintAlone(*button);
    const QColor left = PixelAt(image, 15, 10);
    const QColor right = PixelAt(image, 24, 10);
    EXPECT_GT(left.red(), left.blue()) << "left end near the start colour";
    EXPECT_GT(right.blue(), right.red()) << "right end near the end colour";
}

TEST_F(ButtonTest, FaceKindsAndIndexChooseWhatIsDrawn)
{
    SetFaceColours();
    for (int kind : { 0, 1, 3, 10, 28, 29 }) {
        button->SetFace(kind);
        EXPECT_EQ(button->vecFaces.size(), 1u) << kind;
    }
    button->SetFace(2);
    EXPECT_EQ(button->vecFaces.size(), 2u);
    button->SetFace(4);
    EXPECT_TRUE(button->vecFaces.empty()) << "unknown kinds make no face";

    // Play and pause: face 1 shows two bars whatever picture the button holds.
    button->SetFace(8);
    ASSERT_EQ(button->vecFaces.size(), 2u);
    const QImage strip = Strip(10, 6, { Qt::red, Qt::red, Qt::red, Qt::red });
    button->SetImage(&strip);
    button->MoveTo(0, 0, 40, 40, 0);
    button->SetFaceIndex(1);
    QImage pause = PaintAlone(*button);
    EXPECT_EQ(BoxOf(pause, Qt::red, 10), QRect()) << "a face hides the picture";
    const QRect bars = BoxOf(pause, QColor(0, 200, 0), 60);
    EXPECT_NEAR(bars.width(), 13, 2);
    EXPECT_NEAR(bars.height(), 15, 2);
    // The gap between the bars shows the ground.
    EXPECT_EQ(PixelAt(pause, bars.center().x(), bars.center().y()), QColor(Qt::black));

    // An index outside the faces falls back to the picture.
    button->SetFaceIndex(2);
    EXPECT_FALSE(BoxOf(PaintAlone(*button), Qt::red, 10).isEmpty());
    button->SetFaceIndex(-1);
    EXPECT_FALSE(BoxOf(PaintAlone(*button), Qt::red, 10).isEmpty());
}

TEST_F(ButtonTest, GlyphsHaveTheirOwnSizes)
{
    SetFaceColours();
    button->MoveTo(0, 0, 40, 40, 0);
    auto lit = [](QColor c) { return c.green() > 30; };
    struct Case
    {
        int nKind;
        QSize size; // the glyph's own extent plus its pen
    } cases[] = { { 0, QSize(10, 10) }, { 1, QSize(11, 2) }, { 2, QSize(11, 11) }, { 3, QSize(14, 20) }, { 8, QSize(17, 17) },
        { 10, QSize(15, 15) }, { 28, QSize(6, 14) }, { 29, QSize(6, 14) } };
    for (const Case& c : cases) {
        button->SetFace(c.nKind);
        const QRect box = BoxWhere(PaintAlone(*button), lit);
        EXPECT_NEAR(box.width(), c.size.width(), 2) << "kind " << c.nKind;
        EXPECT_NEAR(box.height(), c.size.height(), 2) << "kind " << c.nKind;
        EXPECT_NEAR(box.center().x(), 20, 1) << "kind " << c.nKind;
        EXPECT_NEAR(box.center().y(), 20, 1) << "kind " << c.nKind;
    }
    // The arrows point opposite ways: "next" has its tip on the right.
    button->SetFace(29);
    const QImage next = PaintAlone(*button);
    const QRect box = BoxWhere(next, lit);
    EXPECT_GT(PixelAt(next, box.right() - 1, box.center().y()).green(), 30);
    EXPECT_LT(PixelAt(next, box.left() + 1, box.center().y()).green(), 30);
}

TEST_F(ButtonTest, TextIsColouredByStateAndNeedsItsFont)
{
    AddFont(6, 20);
    g_clrText = RGB(200, 0, 0);
    g_clrFace = RGB(60, 60, 60);
    button->SetText(QStringLiteral("IIII"), 0);
    button->MoveTo(0, 0, 100, 30, 0);

    button->nFontID = 5; // not in the table: no text
    EXPECT_EQ(BoxOf(PaintAlone(*button), QColor(200, 0, 0), 30), QRect());
    button->nFontID = 6;
    // The stems of "IIII" are solid: the brightest pixel is the text colour itself.
    auto brightest = [this] {
        const QImage image = PaintAlone(*button);
        return QColor(Brightest(image, &QColor::red), Brightest(image, &QColor::green), Brightest(image, &QColor::blue));
    };
    const QRect normal = BoxOf(PaintAlone(*button), QColor(200, 0, 0), 30);
    ASSERT_FALSE(normal.isEmpty());
    EXPECT_NEAR(normal.center().x(), 50, 2) << "centred";
    EXPECT_NEAR(normal.center().y(), 15, 2);
    EXPECT_LE(ColourDistance(brightest(), QColor(200, 0, 0)), 2);
    button->nState = 1;
    EXPECT_LE(ColourDistance(brightest(), QColor(240, 40, 40)), 2) << "hover text is 40 lighter";
    button->nState = 0;
    button->bEnabled = 0;
    EXPECT_LE(ColourDistance(brightest(), QColor(90, 90, 90)), 2) << "disabled text is the ground plus 30";
    button->bEnabled = 1;
    button->nTextAlign = 0;
    EXPECT_LT(BoxOf(PaintAlone(*button), QColor(200, 0, 0), 30).left(), 5) << "left aligned";
    button->nTextAlign = 1;
    EXPECT_GT(BoxOf(PaintAlone(*button), QColor(200, 0, 0), 30).right(), 94) << "right aligned";
    button->nTextAlign = 3;
    const QRect bottom = BoxOf(PaintAlone(*button), QColor(200, 0, 0), 30);
    EXPECT_NEAR(bottom.center().x(), 50, 2) << "centred and at the bottom";
    EXPECT_GT(bottom.center().y(), normal.center().y() + 2);
}

TEST_F(ButtonTest, HoverFrameShowsInHoverAndDownOnly)
{
    g_clrBorder = RGB(100, 100, 100);
    button->SetHoverFrame(true);
    button->MoveTo(0, 0, 20, 10, 0);
    EXPECT_EQ(PixelAt(PaintAlone(*button), 0, 0), QColor(Qt::black));
    button->nState = 1;
    QImage hover = PaintAlone(*button);
    EXPECT_EQ(PixelAt(hover, 0, 0), QColor(140, 140, 140));
    EXPECT_EQ(PixelAt(hover, 19, 9), QColor(140, 140, 140)) << "the frame covers the outermost pixels";
    EXPECT_EQ(PixelAt(hover, 10, 5), QColor(Qt::black));
    button->nState = 2;
    EXPECT_EQ(PixelAt(PaintAlone(*button), 0, 0), QColor(100, 100, 100));
    button->bEnabled = 0;
    EXPECT_EQ(PixelAt(PaintAlone(*button), 0, 0), QColor(Qt::black));
}

TEST_F(ButtonTest, MeasureTextWrapsInAHundredPixelBox)
{
    AddFont(2, 14);
    button->nFontID = 2;
    EXPECT_EQ(button->MeasureText(QString()), QSize(0, 0));
    const QSize one = button->MeasureText(QStringLiteral("Play"));
    EXPECT_GT(one.width(), 20);
    EXPECT_LT(one.width(), 60);
    EXPECT_GE(one.height(), 14);
    const QSize many = button->MeasureText(QStringLiteral("Play the next file in this folder"));
    EXPECT_LE(many.width(), 100);
    EXPECT_GT(many.height(), one.height()) << "long text wraps";
    button->nFontID = 9;
    EXPECT_EQ(button->MeasureText(QStringLiteral("Play")), QSize(0, 0));
}

TEST_F(ButtonTest, TextOperationsCopyAndReportEmpty)
{
    QString s;
    button->GetText(s);
    EXPECT_TRUE(s.isEmpty());
    EXPECT_FALSE(s.isNull());
    button->SetText(QStringLiteral("Open"), 0);
    button->GetText(s);
    EXPECT_EQ(s, QStringLiteral("Open"));
    button->SetText(QString(), 0);
    button->GetText(s);
    EXPECT_TRUE(s.isEmpty());
    button->SetRect(1, 2, 11, 22, 0);
    EXPECT_EQ(button->GetRect(), QRect(1, 2, 10, 20));
}
