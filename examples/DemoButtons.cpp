#include "DemoButtons.h"

#include "platform/CQKGraphics.h"
#include "platform/QKAppFolder.h"
#include "platform/QKMessages.h"
#include "toolkit/CQKCheck.h"
#include "toolkit/CQKDialogBase.h"
#include "toolkit/CQKMessageDlg.h"
#include "toolkit/CQKRadio.h"
#include "toolkit/CQKTextButton.h"
#include "toolkit/CQKUIHostWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QCoreApplication>
#include <memory>

namespace {

enum : uint32_t {
    kCmdMessage = 801,
    kCmdQuestion = 802,
    kCmdHighlight = 803,
    kCmdDisabled = 804,
    kCmdCheck = 810,
    kCmdCheckOff = 811,
    kFirstRadio = 820,
    kRadios = 3,
};

class ButtonsWindow : public CQKUIHostWnd
{
public:
    bool Open()
    {
        CQKHostCreate create;
        create.strClassName = QStringLiteral("OrbelToolkitDemoButtons");
        create.strTitle = QStringLiteral("Orbel toolkit demo: buttons and dialogs");
        create.rcWindow = QRect(80, 380, 480, 230);
        if (!Create(create))
            return false;
        Manager()->LoadSkinFrom(this, QKAppFolder() + QStringLiteral("demo/buttons.xml"));
        Add<CQKTextButton>(kCmdMessage, QKKIND_TEXTBUTTON, QRect(24, 60, 130, 24), QStringLiteral("Show a message"));
        Add<CQKTextButton>(kCmdQuestion, QKKIND_TEXTBUTTON, QRect(170, 60, 130, 24), QStringLiteral("Ask Yes or No"));
        Add<CQKTextButton>(kCmdHighlight, QKKIND_TEXTBUTTON, QRect(316, 60, 130, 24), QStringLiteral("Highlighted"))->SetHighlight(1, 0);
        Add<CQKCheck>(kCmdCheck, QKKIND_CHECK, QRect(24, 110, 200, 22), QStringLiteral("Disable the last button"));
        Add<CQKCheck>(kCmdCheckOff, QKKIND_CHECK, QRect(24, 140, 200, 22), QStringLiteral("A disabled check box"))->Enable(0, 0);
        static_cast<CQKCheck*>(Manager()->FindControl(kCmdCheckOff, QKKIND_CHECK))->SetCheck(1, 0);
        for (uint32_t i = 0; i < kRadios; ++i)
            Add<CQKRadio>(kFirstRadio + i, QKKIND_RADIO, QRect(250, 110 + 26 * static_cast<int>(i), 200, 22), QStringLiteral("Choice %1").arg(i + 1));
        static_cast<CQKRadio*>(Manager()->FindControl(kFirstRadio, QKKIND_RADIO))->SetCheck(1, 0);
        Add<CQKTextButton>(kCmdDisabled, QKKIND_TEXTBUTTON, QRect(316, 190, 130, 24), QStringLiteral("Last button"));
        // The dialogs stay above this window and block it while they run.
        CQKDialogBase::SetDefaultOwner(this);
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
        tagQKFontSpec small;
        small.strFamily = g_strFontName;
        small.fSize = 13;
        tagQKStringFormat left;
        left.nLineAlign = QKAlignCenter;
        g->SetTextRenderingHint(QKTextHintAntiAlias);
        DrawSkinString(g, QStringLiteral("Text buttons, check boxes and a radio group:"), small, QRectF(24, 16, 430, 30), left, tagQKBrush::Solid(QKColorFromBGR(g_clrBorder, 255)));
        DrawSkinString(g, strStatus, small, QRectF(24, 190, 280, 24), left, tagQKBrush::Solid(QKColorFromBGR(QKColorLighten(g_clrText, 40), 255)));
    }

    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override
    {
        if (msg != WM_COMMAND)
            return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
        const uint32_t id = static_cast<uint32_t>(wParam);
        strStatus = QStringLiteral("Clicked: command %1").arg(id);
        if (id == kCmdMessage) {
            strStatus = QStringLiteral("The message ended with %1").arg(ShowMediaError());
        } else if (id == kCmdQuestion) {
            const int n = ShowMessageTitled(QStringLiteral("Question"), QStringLiteral("Do you want to go on? The dialog grows with its text, and Yes gives 6, No 7."), 4);
            strStatus = QStringLiteral("The question ended with %1").arg(n);
        } else if (id == kCmdCheck) {
            const bool bOn = static_cast<CQKCheck*>(Manager()->FindControl(kCmdCheck, QKKIND_CHECK))->IsChecked();
            Manager()->FindControl(kCmdDisabled, QKKIND_TEXTBUTTON)->Enable(bOn ? 0 : 1, 0);
        } else if (id >= kFirstRadio && id < kFirstRadio + kRadios) {
            // The window keeps its group to one choice.
            for (uint32_t i = 0; i < kRadios; ++i)
                if (kFirstRadio + i != id)
                    static_cast<CQKRadio*>(Manager()->FindControl(kFirstRadio + i, QKKIND_RADIO))->SetCheck(0, 1);
        }
        Manager()->PaintAll();
        return 0;
    }

private:
    template <class T>
    T* Add(uint32_t id, uint32_t kind, QRect rc, const QString& text)
    {
        auto* p = new T();
        Manager()->AddControl(id, std::unique_ptr<CQKButton>(p), kind);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        p->SetFontID(kind == QKKIND_TEXTBUTTON ? 2 : 1);
        p->SetText(text, 0);
        p->EnableBackgroundCache(true);
        return p;
    }

    QString strStatus { QStringLiteral("Click, toggle and choose.") };
};

} // namespace

void ShowButtonsDemo()
{
    static std::unique_ptr<ButtonsWindow> window;
    if (window)
        return;
    window = std::make_unique<ButtonsWindow>();
    if (!window->Open()) {
        window.reset();
        return;
    }
    // The window goes while the application still runs.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { window.reset(); });
}
