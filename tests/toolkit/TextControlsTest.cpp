// The code-drawn controls: the text button's gradient, frame and label colours, the check
// box's tick and the radio's mark at known pixels, and clicks through a real host.
#include "ToolkitTestSupport.h"

#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKCheck.h"
#include "toolkit/CQKRadio.h"
#include "toolkit/CQKTextButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKTheme.h"

#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// The built-in theme: face 60, border 160, shade 100, text (200, 0, 0).
const QColor kFace(60, 60, 60);
const QColor kLight(90, 90, 90); // the face lightened by 30
const QColor kBorder(160, 160, 160);
const QColor kShade(100, 100, 100);
const QColor kText(200, 0, 0);
const QColor kHoverText(240, 40, 40);
const QColor kOrange(236, 143, 9);
const QColor kLightOrange(255, 183, 49);

class TextControlsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QKResetTheme();
        AddFont(2, 14);
        AddFont(6, 12);
        ASSERT_TRUE(host.Open(240, 120));
    }
    template <class T>
    T* Add(uint32_t nID, uint32_t nKind, QRect rc, const QString& text = QStringLiteral("Label"))
    {
        auto* p = new T();
        host.Manager()->AddControl(nID, std::unique_ptr<CQKButton>(p), nKind);
        p->SetFontID(nKind == QKKIND_TEXTBUTTON ? 2 : 6);
        p->SetText(text, 0);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        return p;
    }
    // The control painted into a composition of its own size over black.
    static QImage Alone(CQKButton& c)
    {
        QImage image = Solid(c.nWidth, c.nHeight, Qt::black);
        CQKGraphics g(image);
        const int x = c.nX, y = c.nY;
        c.nX = c.nY = 0;
        c.Paint(&g, &image);
        c.nX = x;
        c.nY = y;
        return image;
    }
    std::vector<uintptr_t> Commands()
    {
        TestHost::Pump();
        std::vector<uintptr_t> ids;
        for (const tagMessage& m : host.Received(WM_COMMAND))
            ids.push_back(m.wParam);
        host.ClearReceived();
        return ids;
    }

    AppFolder app;
    TestHost host;
};

bool Near(QColor a, QColor b, int tolerance = 4)
{
    return ColourDistance(a, b) <= tolerance;
}

} // namespace

TEST_F(TextControlsTest, TextButtonGradientFrameAndLabelByState)
{
    auto* b = Add<CQKTextButton>(1, QKKIND_TEXTBUTTON, QRect(10, 10, 80, 20), QStringLiteral("OK"));
    struct Row
    {
        uint32_t nState;
        bool bEnabled;
        bool bHighlight;
        QColor top, bottom, frame, label;
    };
    // The label colour is found among the text's pixels; the disabled frame is drawn at alpha
    // 100 over the face, and the disabled label likewise.
    const QColor faintBorder = QColor(60 + (160 - 60) * 100 / 255, 60 + (160 - 60) * 100 / 255, 60 + (160 - 60) * 100 / 255);
    // The last row: a disabled button keeps the hover frame, faint.
    const Row rows[] = { { 0, true, false, kLight, kFace, kBorder, kText }, { 1, true, false, kLight, kFace, kText, kHoverText }, { 2, true, false, kFace, kLight, kBorder, kText },
        { 0, true, true, kLight, kFace, kBorder, kOrange }, { 1, true, true, kLight, kFace, kText, kLightOrange }, { 1, false, true, kFace, kFace, QColor(115, 36, 36), faintBorder } };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "state " << r.nState << " enabled " << r.bEnabled << " highlight " << r.bHighlight);
        b->nState = r.nState;
        b->bEnabled = r.bEnabled ? 1 : 0;
        b->bHighlight = r.bHighlight ? 1 : 0;
        const QImage image = Alone(*b);
        EXPECT_TRUE(Near(PixelAt(image, 5, 1), r.top)) << PixelAt(image, 5, 1).name().toStdString();
        EXPECT_TRUE(Near(PixelAt(image, 5, 18), r.bottom)) << PixelAt(image, 5, 18).name().toStdString();
        EXPECT_TRUE(Near(PixelAt(image, 0, 10), r.frame, 2)) << PixelAt(image, 0, 10).name().toStdString();
        const QColor middle((r.top.red() + r.bottom.red()) / 2, (r.top.green() + r.bottom.green()) / 2, (r.top.blue() + r.bottom.blue()) / 2);
        EXPECT_TRUE(Near(PixelAt(image, 79, 10), r.frame, 2)) << "the frame's right edge is the last column";
        EXPECT_TRUE(Near(PixelAt(image, 78, 10), middle)) << "the gradient inside it";
        const QRect label = BoxOf(image, r.label, 12, QRect(2, 2, 76, 16));
        EXPECT_FALSE(label.isEmpty()) << "label colour";
        EXPECT_NEAR(label.center().x(), 40, 3) << "centred";
    }
}

TEST_F(TextControlsTest, TextButtonPictureCentredOrStretched)
{
    auto* b = Add<CQKTextButton>(1, QKKIND_TEXTBUTTON, QRect(0, 0, 40, 20), QString());
    const QImage small = Solid(10, 6, Qt::green);
    b->SetImage(&small);
    EXPECT_EQ(BoxOf(Alone(*b), Qt::green, 10), QRect(15, 7, 10, 6));
    const QImage wide = Solid(60, 4, Qt::green); // wider than the button, lower than it
    b->SetImage(&wide);
    EXPECT_EQ(BoxOf(Alone(*b), Qt::green, 10), QRect(1, 1, 38, 18)) << "stretched over the inner rectangle both ways";
}

TEST_F(TextControlsTest, CheckAndRadioMarksAtKnownPixels)
{
    // Height 24: the check box's box sits at t = 4, the radio's circle at t = 5.
    auto* check = Add<CQKCheck>(1, QKKIND_CHECK, QRect(0, 0, 100, 24));
    auto* radio = Add<CQKRadio>(2, QKKIND_RADIO, QRect(0, 40, 100, 24));
    const QPoint tickInside(1 + 7, 4 + 9); // inside the tick's long stroke
    const QPoint boxOnly(1 + 13, 4 + 13);
    const QPoint markInside(7, 5 + 6);

    QImage c = Alone(*check);
    EXPECT_TRUE(Near(PixelAt(c, tickInside.x(), tickInside.y()), kShade));
    EXPECT_TRUE(Near(PixelAt(c, 1, 4 + 8), kBorder)) << "left edge of the box";
    check->SetCheck(1, 0);
    c = Alone(*check);
    EXPECT_TRUE(Near(PixelAt(c, tickInside.x(), tickInside.y()), kText, 20));
    EXPECT_TRUE(Near(PixelAt(c, boxOnly.x(), boxOnly.y()), kShade));
    EXPECT_GE(BoxOf(c, kText, 12, QRect(17, 0, 83, 24)).left(), 20) << "the label starts 20 pixels in";

    QImage r = Alone(*radio);
    EXPECT_TRUE(Near(PixelAt(r, markInside.x(), markInside.y()), kShade));
    radio->SetCheck(1, 0);
    r = Alone(*radio);
    EXPECT_EQ(BoxOf(r, kText, 4, QRect(0, 0, 16, 24)), QRect(5, 9, 5, 5)) << "a square mark of 5 by 5";

    // Disabled: no fill (the ground shows through), faint frame, the tick kept.
    check->Enable(0, 0);
    c = Alone(*check);
    EXPECT_TRUE(Near(PixelAt(c, boxOnly.x(), boxOnly.y()), Qt::black));
    EXPECT_TRUE(Near(PixelAt(c, 1, 12), QColor(63, 63, 63), 3)) << "border at alpha 100";
    EXPECT_TRUE(Near(PixelAt(c, tickInside.x(), tickInside.y()), QColor(78, 0, 0), 12)) << "tick at alpha 100";

    // No label at all: nothing is drawn; an empty label still draws the box and mark.
    check->Enable(1, 0);
    check->SetText(QString(), 0);
    EXPECT_EQ(BoxWhere(Alone(*check), [](QColor q) { return q != Qt::black; }), QRect());
    check->SetText(QStringLiteral(""), 0);
    EXPECT_TRUE(Near(PixelAt(Alone(*check), tickInside.x(), tickInside.y()), kText, 20));
}

TEST_F(TextControlsTest, ClicksToggleCheckAndChooseRadioWithinTheHostsGroup)
{
    auto* button = Add<CQKTextButton>(5, QKKIND_TEXTBUTTON, QRect(150, 10, 65, 20), QStringLiteral("OK"));
    auto* check = Add<CQKCheck>(7, QKKIND_CHECK, QRect(10, 10, 100, 20));
    std::vector<CQKRadio*> radios;
    for (int i = 0; i < 3; ++i)
        radios.push_back(Add<CQKRadio>(20 + i, QKKIND_RADIO, QRect(10, 40 + 22 * i, 100, 20)));
    radios[0]->SetCheck(1, 0);
    host.Manager()->PaintAll();
    Commands();

    // A text button shows hover and press on screen and clicks once.
    host.input.Move(QPoint(160, 20));
    EXPECT_TRUE(Near(PixelAt(host.HostImage(), 150, 20), kText, 2)) << "hover frame in text colour";
    host.input.Press(QPoint(160, 20));
    EXPECT_TRUE(Near(PixelAt(host.HostImage(), 155, 11), kFace)) << "the gradient turns over";
    host.input.Release(QPoint(160, 20));
    EXPECT_EQ(Commands(), std::vector<uintptr_t>({ 5 }));
    EXPECT_NE(button->nState, 2u);

    // The check box toggles each click and reports each one; the box repaints at once.
    host.input.Move(QPoint(20, 20));
    host.input.Click(QPoint(20, 20));
    EXPECT_TRUE(check->IsChecked());
    EXPECT_TRUE(Near(PixelAt(host.HostImage(), 10 + 1 + 7, 10 + 2 + 9), kHoverText, 30)) << "tick on screen";
    host.input.Move(QPoint(20, 20));
    host.input.Click(QPoint(20, 20));
    EXPECT_FALSE(check->IsChecked());
    EXPECT_EQ(Commands(), std::vector<uintptr_t>({ 7, 7 }));

    // The host keeps one radio chosen by clearing the others on the command.
    auto choose = [&](int i) {
        host.input.Move(QPoint(20, 45 + 22 * i));
        host.input.Click(QPoint(20, 45 + 22 * i));
        for (uintptr_t id : Commands())
            for (CQKRadio* r : radios)
                if (r->GetID() != id)
                    r->SetCheck(0, 1);
    };
    choose(2);
    EXPECT_EQ((std::vector<bool> { radios[0]->IsChecked(), radios[1]->IsChecked(), radios[2]->IsChecked() }), (std::vector<bool> { false, false, true }));
    EXPECT_TRUE(Near(PixelAt(host.HostImage(), 10 + 7, 40 + 3 + 6), kShade)) << "the first radio's mark is gone from the screen";
    // A chosen radio clicked again says nothing; a radio alone never clears another.
    host.input.Move(QPoint(20, 45 + 44));
    host.input.Click(QPoint(20, 45 + 44));
    EXPECT_TRUE(Commands().empty());
    host.input.Move(QPoint(20, 45 + 22));
    host.input.Click(QPoint(20, 45 + 22));
    EXPECT_EQ(Commands(), std::vector<uintptr_t>({ 21 }));
    EXPECT_TRUE(radios[2]->IsChecked()) << "until the host clears it";
}
