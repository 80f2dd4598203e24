// orbel-toolkit-demo: a small window of the toolkit's own controls.
//
// Three buttons come from the demonstration's skin file (demo/demo.xml beside the program):
// two picture strips and a text button. A row of drawn faces and two text buttons are made
// in code. Hover, press and click them: a click shows its command id in the status line,
// the play face turns into pause and back, and "Disable faces" greys the row of faces out.
#include "DemoButtons.h"
#include "DemoFaces.h"
#include "DemoSlider.h"
#include "controls/QKRegisterControls.h"
#include "platform/CQKGraphics.h"
#include "platform/QKAppFolder.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIHostWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QApplication>

namespace {

constexpr uint32_t kCmdToggle = 601;
constexpr uint32_t kCmdClose = 602;
constexpr uint32_t kFirstFace = 700;
const int kFaces[] = { 1, 2, 0, 3, 28, 8, 10, 29 };

class DemoWindow : public CQKUIHostWnd
{
public:
    bool Open()
    {
        CQKHostCreate create;
        create.strClassName = QStringLiteral("OrbelToolkitDemo");
        create.strTitle = QStringLiteral("Orbel toolkit demo");
        create.rcWindow = QRect(80, 80, 480, 260);
        if (!Create(create))
            return false;
        Manager()->LoadSkinFrom(this, QKAppFolder() + QStringLiteral("demo/demo.xml"));
        for (size_t i = 0; i < std::size(kFaces); ++i) {
            auto pOwned = std::make_unique<CQKButton>();
            CQKButton* p = pOwned.get();
            Manager()->AddControl(kFirstFace + static_cast<uint32_t>(i), std::move(pOwned), QKKIND_BUTTON);
            p->MoveTo(24 + static_cast<int>(i) * 44, 140, 36, 32, 0);
            p->SetFace(kFaces[i]);
            p->SetHoverFrame(true);
            p->EnableBackgroundCache(true);
            p->SetToolTip(QStringLiteral("Drawn face of kind %1").arg(kFaces[i]));
        }
        AddTextButton(kCmdToggle, QRect(24, 196, 130, 28), QStringLiteral("Disable faces"));
        AddTextButton(kCmdClose, QRect(170, 196, 90, 28), QStringLiteral("Close"));
        for (const auto& child : Manager()->Children())
            child->pControl->EnableBackgroundCache(true);
        ShowWindow(SW_SHOW);
        return true;
    }

protected:
    void OnPaintBackground(CQKGraphics* g) override
    {
        const QRect rc = GetClientRect();
        // Title band with a gradient, a frame, and the status line.
        g->FillRectangle(tagQKBrush::LinearRect(QRectF(0, 0, rc.width(), 44), QKColorFromBGR(QKColorLighten(g_clrFace, 30), 255),
                             QKColorFromBGR(g_clrFace, 255), QKGradientVertical),
            0, 0, rc.width(), 44);
        tagQKPen frame;
        frame.clr = QKColorFromBGR(g_clrBorder, 255);
        g->DrawRectangle(frame, 0, 0, rc.width() - 1, rc.height() - 1);
        tagQKFontSpec title;
        title.strFamily = g_strFontName;
        title.fSize = 18;
        title.nStyle = QKFontBold;
        tagQKStringFormat left;
        left.nLineAlign = QKAlignCenter;
        g->SetTextRenderingHint(QKTextHintAntiAlias);
        DrawSkinString(g, QStringLiteral("Orbel toolkit demo"), title, QRectF(16, 0, 400, 44), left, tagQKBrush::Solid(QKColorFromBGR(g_clrText, 255)));
        tagQKFontSpec small;
        small.strFamily = g_strFontName;
        small.fSize = 13;
        DrawSkinString(g, QStringLiteral("From the skin file:"), small, QRectF(24, 50, 300, 18), left, tagQKBrush::Solid(QKColorFromBGR(g_clrBorder, 255)));
        DrawSkinString(g, QStringLiteral("Made in code:"), small, QRectF(24, 120, 300, 18), left, tagQKBrush::Solid(QKColorFromBGR(g_clrBorder, 255)));
        DrawSkinString(g, strStatus, small, QRectF(280, 196, 190, 28), left, tagQKBrush::Solid(QKColorFromBGR(QKColorLighten(g_clrText, 40), 255)));
    }

    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override
    {
        if (msg != WM_COMMAND)
            return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
        const uint32_t id = static_cast<uint32_t>(wParam);
        strStatus = QStringLiteral("Clicked: command %1").arg(id);
        if (id == kCmdClose) {
            QApplication::quit();
            return 0;
        }
        if (id == kCmdToggle) {
            bFacesEnabled = !bFacesEnabled;
            for (size_t i = 0; i < std::size(kFaces); ++i)
                Manager()->FindControl(kFirstFace + static_cast<uint32_t>(i), 0)->Enable(bFacesEnabled ? 1 : 0, 0);
            Manager()->FindControl(kCmdToggle, 0)->SetText(bFacesEnabled ? QStringLiteral("Disable faces") : QStringLiteral("Enable faces"), 0);
        }
        if (CQKButton* play = Manager()->FindControl(kFirstFace + 5, 0); play && id == play->GetID())
            play->SetFaceIndex(play->nFaceIndex == 0 ? 1 : 0);
        Manager()->PaintAll();
        return 0;
    }

    void OnClose() override { QApplication::quit(); }

private:
    void AddTextButton(uint32_t id, QRect rc, const QString& text)
    {
        auto pOwned = std::make_unique<CQKButton>();
        CQKButton* p = pOwned.get();
        Manager()->AddControl(id, std::move(pOwned), QKKIND_BUTTON);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        p->SetFontID(1);
        p->SetText(text, 0);
        p->SetHoverFrame(true);
    }

    QString strStatus { QStringLiteral("Hover, press and click.") };
    bool bFacesEnabled { true };
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QKRegisterControls();
    // The program's theme (colours and font settings) from the skin folder beside it.
    LoadUIColors();
    LoadBigFontFile();
    g_clrToolTipText = g_clrText;
    DemoWindow window;
    if (!window.Open())
        return 1;
    const auto pFaces = OpenFacesDemo();
    const auto sliderDemo = OpenSliderDemo();
    ShowButtonsDemo();
    return app.exec();
}
