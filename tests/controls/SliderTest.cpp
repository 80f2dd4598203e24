// The slider: where it paints its thumb and fill, and how the pointer, the wheel and the
// arrow keys move it through a real host, with the messages its owner gets.
#include "../toolkit/ToolkitTestSupport.h"

#include "controls/CQKSlider.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// A host of 240 by 60 with one slider at 20,20,200,16: thumb 10, so the painted travel is 186
// pixels and the pointer's divisor 185.
class SliderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        g_UIColors.clrSliderStart = QKRGB(255, 0, 0);
        g_UIColors.clrSliderEnd = QKRGB(0, 0, 255);
        ASSERT_TRUE(host.Open(240, 60));
        slider = new CQKSlider();
        host.Manager()->AddControl(51, std::unique_ptr<CQKButton>(slider), QKKIND_SLIDER);
        slider->MoveTo(20, 20, 200, 16, 0);
        host.Manager()->PaintAll();
    }
    void TearDown() override
    {
        if (CQKHostWnd::GetCapture())
            CQKHostWnd::ReleaseCapture();
    }
    // The lParams of the slider messages that arrived since the last call; each must carry
    // the slider.
    std::vector<intptr_t> Messages()
    {
        TestHost::Pump();
        std::vector<intptr_t> out;
        for (const tagMessage& m : host.Received(QKM_SLIDERCHANGED)) {
            EXPECT_EQ(m.wParam, reinterpret_cast<uintptr_t>(slider));
            out.push_back(m.lParam);
        }
        host.ClearReceived();
        return out;
    }
    // The position a pointer at px stands for.
    static double PosAt(int px) { return (px - 21) * 100.0 / 185.0; }
    // The thumb's left edge as painted: its outline below the groove.
    int ThumbLeftOnScreen() { return BoxOf(host.HostImage(), FromBGR(g_clrBorder), 45, QRect(20, 28, 200, 8)).left(); }
    static int ThumbLeftAt(double dPos) { return 22 + static_cast<int>(dPos / 100 * 186); }

    AppFolder app;
    TestHost host;
    CQKSlider* slider { nullptr };
};

} // namespace

TEST_F(SliderTest, ThumbAndFillFollowThePosition)
{
    // Thumb left edge 22 + fraction * 186; the fill (rows 26 to 28, red at the left) only once
    // it is a pixel long.
    struct Case
    {
        double dPos;
        int nThumbLeft;
        bool bFill;
    } cases[] = { { 0.0, 22, false }, { 0.4, 22, false }, { 50.0, 115, true }, { 100.0, 208, true } };
    for (const Case& c : cases) {
        slider->dCurPos = c.dPos;
        host.Manager()->PaintAll();
        EXPECT_NEAR(ThumbLeftOnScreen(), c.nThumbLeft, 1) << c.dPos;
        EXPECT_EQ(PixelAt(host.HostImage(), 24, 26).red() > 200, c.bFill) << c.dPos;
    }
    // The gradient spans the control: blue at the far end.
    EXPECT_GT(PixelAt(host.HostImage(), 205, 26).blue(), 150);
}

TEST_F(SliderTest, ClicksOnAndBesideTheThumb)
{
    slider->SetPos(50.0, 1);
    // Beside the thumb the position jumps to the pointer: one message with lParam 0.
    host.input.Move(QPoint(60, 28));
    host.input.Click(QPoint(60, 28));
    EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(60));
    EXPECT_EQ(Messages(), std::vector<intptr_t> { 0 });
    EXPECT_NEAR(ThumbLeftOnScreen(), ThumbLeftAt(PosAt(60)), 1) << "repainted at once";
    // On the thumb (115 to 124) nothing moves and nothing is posted.
    slider->SetPos(50.0, 1);
    host.input.Move(QPoint(120, 28));
    host.input.Click(QPoint(120, 28));
    EXPECT_DOUBLE_EQ(slider->GetPos(), 50.0);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(SliderTest, DragsThatLeaveAndComeBack)
{
    // Press on the thumb at 120 (left edge 115: offset 5), leave to the right, come back, and
    // release outside or inside the control (inside, no closing message comes).
    struct Case
    {
        bool bNotify;
        QPoint ptRelease;
        std::vector<intptr_t> expected;
        uint32_t nState;
    } cases[] = { { true, QPoint(100, 50), { 1, 1, 1, 0 }, 0 }, { true, QPoint(100, 28), { 1, 1, 1 }, 1 }, { false, QPoint(100, 50), { 0 }, 0 } };
    for (const Case& c : cases) {
        slider->bNotifyOnDrag = c.bNotify ? 1 : 0;
        slider->bThumbPressed = 0;
        slider->SetPos(50.0, 1);
        host.input.Move(QPoint(120, 28));
        host.input.Press(QPoint(120, 28));
        host.input.Move(QPoint(160, 28));
        EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(155));
        host.input.Move(QPoint(300, 28)); // outside the window: clamped at the top
        EXPECT_DOUBLE_EQ(slider->GetPos(), 100.0);
        host.input.Move(QPoint(320, 45)); // no change, no message
        host.input.Move(QPoint(100, 28));
        EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(95));
        host.input.Move(c.ptRelease);
        host.input.Release(c.ptRelease);
        EXPECT_EQ(Messages(), c.expected) << "release at " << c.ptRelease.y();
        EXPECT_EQ(slider->GetState(), c.nState);
        EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
        EXPECT_NEAR(ThumbLeftOnScreen(), ThumbLeftAt(PosAt(95)), 1);
    }
}

TEST_F(SliderTest, WheelAndArrowKeysStepAFocusedSliderWithinTheRange)
{
    host.input.Wheel(QPoint(100, 28), (-120) / 120);
    EXPECT_DOUBLE_EQ(slider->GetPos(), 0.0) << "not focused";
    host.Manager()->SetFocusControl(slider, QKKIND_SLIDER);
    // Towards the user (negative delta) raises by a hundredth of the range; a key press moves
    // one pixel's worth (100 / 200).
    struct Case
    {
        double dStart;
        int nWheel;
        uint32_t nKey;
        double dEnd;
    } cases[] = { { 0.0, -120, 0, 1.0 }, { 0.0, 120, 0, 0.0 }, { 100.0, -120, 0, 100.0 }, { 99.8, -120, 0, 100.0 }, { 0.0, 0, Qt::Key_Right, 0.5 }, { 0.0, 0, Qt::Key_Left, 0.0 } };
    for (const Case& c : cases) {
        slider->SetPos(c.dStart, 0);
        if (c.nWheel)
            host.input.Wheel(QPoint(100, 28), (c.nWheel) / 120);
        else
            host.input.KeyPress(c.nKey);
        SCOPED_TRACE(testing::Message() << c.dStart << " " << c.nWheel << " " << c.nKey);
        EXPECT_DOUBLE_EQ(slider->GetPos(), c.dEnd);
        EXPECT_EQ(Messages(), c.dEnd != c.dStart ? std::vector<intptr_t> { 0 } : std::vector<intptr_t> {});
    }
}
