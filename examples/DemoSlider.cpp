// The demonstration's window of composite controls: a seek-like and a volume-like slider that
// report their changes to the window, a disabled one, statics aligned three ways, and a link.
#include "DemoSlider.h"

#include "controls/CQKLinkButton.h"
#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKUIHostWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

#include <QApplication>

namespace {

enum : uint32_t {
    kSeek = 1,
    kVolume = 2,
    kDisabled = 3,
    kSeekValue = 11,
    kVolumeValue = 12,
    kStatus = 13,
};

class SliderDemoWindow : public CQKUIHostWnd
{
public:
    bool Open()
    {
        CQKHostCreate create;
        create.strClassName = QStringLiteral("OrbelSliderDemo");
        create.strTitle = QStringLiteral("Orbel sliders and texts");
        create.rcWindow = QRect(580, 80, 480, 230);
        if (!Create(create))
            return false;
        QKRegisterControlKind(QKKIND_SLIDER, CQKSlider::KindHooks());
        QKRegisterControlKind(QKKIND_STATIC, CQKStatic::KindHooks());
        QKRegisterControlKind(QKKIND_LINKBUTTON, CQKLinkButton::KindHooks());

        CQKStatic* title = AddStatic(0, QRect(16, 10, 448, 26), QStringLiteral("Sliders, static text and a link"), 0);
        title->nFontSize = 18;
        title->nFontStyle = QKFontBold;
        title->crTextColor = g_clrText;
        title->UseUIFont();
        AddRow(kSeek, kSeekValue, 52, QStringLiteral("Seek"), 0.0);
        AddRow(kVolume, kVolumeValue, 80, QStringLiteral("Volume"), 70.0);
        AddRow(kDisabled, 0, 108, QStringLiteral("Disabled"), 30.0);
        Manager()->FindControl(kDisabled, QKKIND_SLIDER)->Enable(0, 0);
        AddStatic(0, QRect(16, 136, 448, 18), QStringLiteral("Left aligned"), 0);
        AddStatic(0, QRect(16, 136, 448, 18), QStringLiteral("centred"), 2);
        AddStatic(0, QRect(16, 136, 448, 18), QStringLiteral("right aligned"), 1);
        AddStatic(kStatus, QRect(16, 160, 448, 18), QStringLiteral("Click the groove or drag a thumb; wheel and arrows step the focused one."), 0);

        auto* link = new CQKLinkButton();
        Manager()->AddControl(0, std::unique_ptr<CQKButton>(link), QKKIND_LINKBUTTON);
        link->MoveTo(16, 190, 220, 24, 0);
        link->SetFontID(1);
        link->SetText(QStringLiteral("Open the project page"), 0);
        link->SetLink(QStringLiteral("https://example.org/"));
        link->SetToolTip(QStringLiteral("Opens https://example.org/ in your browser"));
        link->SetCursor(IDC_HAND);
        link->EnableBackgroundCache(true);
        ShowWindow(SW_SHOW);
        return true;
    }

protected:
    void OnPaintBackground(CQKGraphics* g) override
    {
        const QRect rc = GetClientRect();
        tagQKPen frame;
        frame.clr = QKColorFromBGR(g_clrBorder, 255);
        g->DrawRectangle(frame, 0, 0, rc.width() - 1, rc.height() - 1);
    }

    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override
    {
        if (msg != QKM_SLIDERCHANGED)
            return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
        // The message carries the slider, not its value: read it now.
        auto* slider = reinterpret_cast<CQKSlider*>(wParam);
        const uint32_t nValueID = slider->GetID() == kSeek ? kSeekValue : kVolumeValue;
        if (CQKButton* value = Manager()->FindControl(nValueID, QKKIND_STATIC))
            value->SetText(QString::number(slider->GetPos(), 'f', 1), 1);
        if (CQKButton* status = Manager()->FindControl(kStatus, QKKIND_STATIC))
            status->SetText(QStringLiteral("Message %1 from slider %2, lParam %3 (%4)")
                                .arg(msg)
                                .arg(slider->GetID())
                                .arg(lParam)
                                .arg(lParam ? QStringLiteral("a step of a drag") : QStringLiteral("any other change")),
                1);
        return 0;
    }

    void OnClose() override { QApplication::quit(); }

private:
    CQKStatic* AddStatic(uint32_t id, QRect rc, const QString& text, uint32_t nAlign)
    {
        auto* p = new CQKStatic();
        Manager()->AddControl(id, std::unique_ptr<CQKButton>(p), QKKIND_STATIC);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        p->SetFontStyle(12);
        p->UseUIFont();
        p->SetTextAlign(nAlign);
        p->SetText(text, 0);
        p->EnableBackgroundCache(true);
        return p;
    }
    // A label, a slider and, when `nValueID` is given, a static showing its value.
    void AddRow(uint32_t id, uint32_t nValueID, int y, const QString& label, double dPos)
    {
        AddStatic(0, QRect(16, y, 70, 16), label, 0);
        auto* slider = new CQKSlider();
        Manager()->AddControl(id, std::unique_ptr<CQKButton>(slider), QKKIND_SLIDER);
        slider->MoveTo(90, y, 300, 16, 0);
        slider->SetPos(dPos, 0);
        slider->EnableDragNotify();
        slider->EnableBackgroundCache(true);
        if (nValueID)
            AddStatic(nValueID, QRect(400, y, 64, 16), QString::number(dPos, 'f', 1), 1);
    }
};

} // namespace

std::unique_ptr<CQKHostWnd> OpenSliderDemo()
{
    auto window = std::make_unique<SliderDemoWindow>();
    if (!window->Open())
        return nullptr;
    return window;
}
