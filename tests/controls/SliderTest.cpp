// The slider: where it paints its thumb and fill, how the pointer, the wheel and the arrow
// keys move it through a real host, and the messages its owner gets.
#include "../toolkit/ToolkitTestSupport.h"

#include "controls/CQKSlider.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <gtest/gtest.h>

using namespace toolkittest;

namespace {

// A host of 240 by 60 with one slider at 20,20,200,16 (id 51): thumb 10, so the painted
// travel is 186 pixels and the pointer's divisor 185.
class SliderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        g_UIColors.clrSliderStart = QKRGB(255, 0, 0);
        g_UIColors.clrSliderEnd = QKRGB(0, 0, 255);
        ASSERT_TRUE(host.Open(240, 60));
        slider = new CQKSlider();
        host.Manager()->AddControl(51, slider, QKKIND_SLIDER);
        slider->MoveTo(20, 20, 200, 16, 0);
        host.Manager()->PaintAll();
    }
    void TearDown() override
    {
        if (CQKHostWnd::GetCapture())
            CQKHostWnd::ReleaseCapture();
    }
    // The lParams of the slider messages that arrived, in order; each must carry the slider.
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
    // The slider's position for a pointer at px: (px - 21) * 100 / 185.
    static double PosAt(int px) { return (px - 21) * 100.0 / 185.0; }

    AppFolder app;
    TestHost host;
    CQKSlider* slider { nullptr };
};

// The horizontal extent of the thumb's outline below the groove, from what is on screen.
QRect ThumbOnScreen(const QImage& screen)
{
    return BoxOf(screen, FromBGR(g_clrBorder), 45, QRect(20, 28, 200, 8));
}

} // namespace

TEST_F(SliderTest, ThumbAndFillFollowThePosition)
{
    // Thumb left edge: 22 + fraction * 186, truncated.
    struct Case
    {
        double dPos;
        int nThumbLeft;
        bool bFill;
    } cases[] = { { 0.0, 22, false }, { 50.0, 115, true }, { 100.0, 208, true }, { 0.4, 22, false } };
    for (const Case& c : cases) {
        slider->dCurPos = c.dPos;
        host.Manager()->PaintAll();
        const QImage& screen = host.HostImage();
        const QRect thumb = ThumbOnScreen(screen);
        EXPECT_NEAR(thumb.left(), c.nThumbLeft, 1) << c.dPos;
        EXPECT_NEAR(thumb.center().x(), c.nThumbLeft + 5, 1) << c.dPos;
        EXPECT_GE(thumb.width(), 9);
        EXPECT_LE(thumb.width(), 12);
        // The groove runs from 22 to 217 on row 27, the fill on rows 26 to 28 from 22.
        EXPECT_EQ(PixelAt(screen, 21, 27), FromBGR(g_clrFace));
        if (c.nThumbLeft < 200) {
            EXPECT_EQ(PixelAt(screen, 219, 27), FromBGR(g_clrFace));
        }
        const int nGrooveX = c.nThumbLeft > 100 ? 60 : 180; // away from the thumb
        if (!c.bFill) {
            EXPECT_EQ(PixelAt(screen, nGrooveX, 27), FromBGR(g_clrBorder));
        }
        const QColor fillStart = PixelAt(screen, 24, 26);
        if (c.bFill) {
            EXPECT_GT(fillStart.red(), 200) << "the gradient starts red at the control's left edge";
            EXPECT_EQ(PixelAt(screen, 24, 29), FromBGR(g_clrFace)) << "three rows high";
        } else {
            EXPECT_EQ(fillStart, FromBGR(g_clrFace)) << "no fill below one pixel";
        }
    }
    // At the far end the fill has turned towards blue: the gradient spans the control.
    slider->dCurPos = 100.0;
    host.Manager()->PaintAll();
    const QColor fillEnd = PixelAt(host.HostImage(), 205, 26);
    EXPECT_GT(fillEnd.blue(), fillEnd.red());
    EXPECT_GT(fillEnd.blue(), 150);

    // Disabled: groove and outline at alpha 100 over the face colour, the fill as it was.
    slider->bEnabled = 0;
    host.Manager()->PaintAll();
    EXPECT_GT(PixelAt(host.HostImage(), 24, 26).red(), 200);
    slider->dCurPos = 0.0;
    host.Manager()->PaintAll();
    const int nDimmed = 60 + (160 - 60) * 100 / 255;
    EXPECT_LE(ColourDistance(PixelAt(host.HostImage(), 100, 27), QColor(nDimmed, nDimmed, nDimmed)), 2);
}

TEST_F(SliderTest, RangeAndPositionAreClamped)
{
    slider->SetRange(-10.0, 10.0);
    slider->SetRange(5.0, 5.0);
    slider->SetRange(6.0, 5.0);
    EXPECT_DOUBLE_EQ(slider->dMinPos, -10.0);
    EXPECT_DOUBLE_EQ(slider->GetRangeSpan(), 20.0);
    slider->SetPos(-50.0, 1);
    EXPECT_DOUBLE_EQ(slider->GetPos(), -10.0);
    slider->SetPos(12.0, 1);
    EXPECT_DOUBLE_EQ(slider->GetPos(), 10.0);
    slider->SetPos(10.0 - 5e-6, 1);
    EXPECT_DOUBLE_EQ(slider->GetPos(), 10.0) << "a change below 1e-5 is no change";
    EXPECT_TRUE(Messages().empty()) << "SetPos never tells the owner";
    // A press at the very left edge maps to the bottom of the range.
    slider->SetRange(0.0, 100.0);
    EXPECT_DOUBLE_EQ(slider->PosFromPointer(20), 0.0);
    EXPECT_DOUBLE_EQ(slider->PosFromPointer(500), 100.0);
}

TEST_F(SliderTest, ClicksOnAndBesideTheThumb)
{
    slider->SetPos(50.0, 1);
    // Beside the thumb the position jumps to the pointer: one message with lParam 0.
    host.Click(QPoint(60, 28));
    EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(60));
    EXPECT_EQ(Messages(), std::vector<intptr_t> { 0 });
    EXPECT_EQ(host.Manager()->GetFocusControl(), slider) << "a press takes the focus";
    EXPECT_NEAR(ThumbOnScreen(host.HostImage()).left(), 22 + static_cast<int>(PosAt(60) / 100 * 186), 1) << "repainted at once";

    // On the thumb: nothing moves and nothing is posted, press or release. The release
    // inside leaves the thumb marked as pressed.
    slider->SetPos(50.0, 1);
    host.Click(QPoint(120, 28));
    EXPECT_DOUBLE_EQ(slider->GetPos(), 50.0);
    EXPECT_TRUE(Messages().empty());
    EXPECT_EQ(slider->GetState(), 1u);
    EXPECT_EQ(slider->bThumbPressed, 1);

    // Disabled, the slider ignores the pointer.
    slider->Enable(0, 0);
    host.Click(QPoint(200, 28));
    EXPECT_DOUBLE_EQ(slider->GetPos(), 50.0);
    EXPECT_TRUE(Messages().empty());
}

TEST_F(SliderTest, DragsThatLeaveAndComeBack)
{
    // Press on the thumb at 120 (its left edge 115: offset 5), leave to the right, come back,
    // and release in or out of the control.
    struct Case
    {
        bool bNotify;
        QPoint ptRelease;
        std::vector<intptr_t> expected;
        uint32_t nState;
        int bThumbPressed;
    } cases[] = {
        { true, QPoint(100, 50), { 1, 1, 1, 0 }, 0, 0 },
        { true, QPoint(100, 28), { 1, 1, 1 }, 1, 1 }, // a release inside posts no closing message
        { false, QPoint(100, 50), { 0 }, 0, 0 },
    };
    for (const Case& c : cases) {
        slider->bNotifyOnDrag = c.bNotify ? 1 : 0;
        slider->bThumbPressed = 0;
        slider->SetPos(50.0, 1);
        host.Move(QPoint(120, 28));
        host.Press(QPoint(120, 28));
        ASSERT_EQ(CQKHostWnd::GetCapture(), &host);
        host.Move(QPoint(160, 28));
        EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(155));
        host.Move(QPoint(300, 28)); // outside the window: clamped at the top
        EXPECT_DOUBLE_EQ(slider->GetPos(), 100.0);
        host.Move(QPoint(320, 45)); // no change, no message
        host.Move(QPoint(100, 28));
        EXPECT_DOUBLE_EQ(slider->GetPos(), PosAt(95));
        host.Move(c.ptRelease);
        host.Release(c.ptRelease);
        EXPECT_EQ(Messages(), c.expected) << "release at " << c.ptRelease.y();
        EXPECT_EQ(slider->GetState(), c.nState);
        EXPECT_EQ(slider->bThumbPressed, c.bThumbPressed);
        EXPECT_EQ(CQKHostWnd::GetCapture(), nullptr);
        EXPECT_NEAR(ThumbOnScreen(host.HostImage()).left(), 22 + static_cast<int>(PosAt(95) / 100 * 186), 1);
    }
}

TEST_F(SliderTest, WheelAndArrowKeysStepAFocusedSlider)
{
    host.Wheel(QPoint(100, 28), -120);
    EXPECT_DOUBLE_EQ(slider->GetPos(), 0.0) << "not focused";
    host.Manager()->SetFocusControl(slider, QKKIND_SLIDER);
    enum Input { WheelDown,
        WheelUp,
        Right,
        Left };
    struct Case
    {
        double dStart;
        Input input;
        double dEnd;
        size_t nMessages;
    } cases[] = {
        { 0.0, WheelDown, 1.0, 1 }, // towards the user raises by a hundredth of the range
        { 0.0, WheelUp, 0.0, 0 }, // already at the bottom
        { 100.0, WheelDown, 100.0, 0 }, // already at the top
        { 100.0, WheelUp, 99.0, 1 },
        { 99.8, WheelDown, 100.0, 1 }, // clamped
        { 0.0, Right, 0.5, 1 }, // one pixel's worth: 100 / 200
        { 0.0, Left, 0.0, 0 },
        { 100.0, Right, 100.0, 0 },
        { 50.0, Left, 49.5, 1 },
    };
    for (const Case& c : cases) {
        slider->SetPos(c.dStart, 0);
        switch (c.input) {
        case WheelDown:
            host.Wheel(QPoint(100, 28), -120);
            break;
        case WheelUp:
            host.Wheel(QPoint(100, 28), 120);
            break;
        case Right:
        case Left:
            host.Key(c.input == Right ? VK_RIGHT : VK_LEFT, true);
            host.Key(c.input == Right ? VK_RIGHT : VK_LEFT, false);
            break;
        }
        EXPECT_DOUBLE_EQ(slider->GetPos(), c.dEnd) << c.dStart << " input " << c.input;
        const std::vector<intptr_t> got = Messages();
        EXPECT_EQ(got.size(), c.nMessages) << c.dStart << " input " << c.input;
        for (intptr_t l : got)
            EXPECT_EQ(l, 0);
    }
    EXPECT_EQ(slider->PreTranslateKey(WM_KEYDOWN, VK_SPACE, 0), 1) << "a focused slider takes every key down";
    EXPECT_EQ(slider->PreTranslateKey(WM_KEYUP, VK_RIGHT, 0), 0);
}
