// The panel faces showcase: what the player's buttons look like, made from the theme.
//
// The upper row holds the panel's buttons with their command ids, so they take the drawn
// faces a panel shows (the mute button, having none, shows its strip); clicking play,
// maximise, full screen or mute swaps the face the way the player does. The lower row puts
// every strip alone on a button, so that its hover and pressed frames show; "Disable strips"
// shows the empty fourth frame. The note beside them is the picture of a file without video.
#include "DemoFaces.h"

#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"
#include "player/CQKPlayerFaces.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIHostWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

namespace {

constexpr uint32_t kCmdDisable = 890;
constexpr uint32_t kFirstStrip = 900;
constexpr int kRowPanel = 64;
constexpr int kRowStrips = 140;

using Faces = CQKPlayerFaces;

// The panel's buttons in the order of its rows, with their sizes.
const struct
{
    uint32_t nID;
    int nSize;
} kPanel[] = { { QKPanelLayout::kIdOptions, 20 }, { QKPanelLayout::kIdMinimize, 20 }, { QKPanelLayout::kIdMaximize, 20 }, { QKPanelLayout::kIdClose, 20 }, { QKPanelLayout::kIdOpen, 25 },
    { QKPanelLayout::kIdPrevious, 25 }, { QKPanelLayout::kIdPlay, 25 }, { QKPanelLayout::kIdNext, 25 }, { QKPanelLayout::kIdStop, 25 }, { QKPanelLayout::kIdMute, 25 },
    { QKPanelLayout::kIdFullScreen, 20 } };

class FacesWindow : public CQKUIHostWnd
{
public:
    bool Open()
    {
        CQKHostCreate create;
        create.strClassName = QStringLiteral("OrbelFacesDemo");
        create.strTitle = QStringLiteral("Orbel panel faces");
        create.rcWindow = QRect(580, 380, 600, 230);
        if (!Create(create))
            return false;
        for (size_t i = 0; i < std::size(kPanel); ++i) {
            auto* p = new CQKButton();
            Manager()->AddControl(kPanel[i].nID, std::unique_ptr<CQKButton>(p), 0);
            const int nPad = (25 - kPanel[i].nSize) / 2;
            p->MoveTo(24 + static_cast<int>(i) * 36 + nPad, kRowPanel + nPad, kPanel[i].nSize, kPanel[i].nSize, 0);
        }
        faces.CreateFaces(Manager());
        const QImage* strips[] = { faces.faceMinimize.get(), faces.faceMaximize.get(), faces.faceRestore.get(), faces.faceClose.get(), faces.facePlay.get(),
            faces.facePause.get(), faces.faceNext.get(), faces.facePrevious.get(), faces.faceStop.get(), faces.faceOpen.get(), faces.faceEnterFull.get(),
            faces.faceExitFull.get(), faces.faceSound.get(), faces.faceMuted.get(), faces.faceOptions.get() };
        nStrips = static_cast<uint32_t>(std::size(strips));
        for (uint32_t i = 0; i < nStrips; ++i) {
            auto* p = new CQKButton();
            Manager()->AddControl(kFirstStrip + i, std::unique_ptr<CQKButton>(p), 0);
            p->MoveTo(24 + static_cast<int>(i) * 36, kRowStrips, 25, 25, 0);
            p->SetImage(strips[i]);
        }
        auto* pDisable = new CQKButton();
        Manager()->AddControl(kCmdDisable, std::unique_ptr<CQKButton>(pDisable), 0);
        pDisable->MoveTo(24, 186, 130, 28, 0);
        pDisable->SetFontID(1);
        pDisable->SetText(QStringLiteral("Disable strips"), 0);
        pDisable->SetHoverFrame(true);
        for (const auto& child : Manager()->Children())
            child->pControl->EnableBackgroundCache(true);
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
        tagQKFontSpec font;
        font.strFamily = g_strFontName;
        font.fSize = 13;
        tagQKStringFormat left;
        left.nLineAlign = QKAlignCenter;
        g->SetTextRenderingHint(QKTextHintAntiAlias);
        const tagQKBrush text = tagQKBrush::Solid(QKColorFromBGR(g_clrBorder, 255));
        DrawSkinString(g, QStringLiteral("Panel buttons (drawn faces; mute shows its strip):"), font, QRectF(24, 36, 420, 22), left, text);
        DrawSkinString(g, QStringLiteral("Every strip on a button of its own:"), font, QRectF(24, 112, 420, 22), left, text);
        DrawSkinString(g, strStatus, font, QRectF(170, 186, 300, 28), left, tagQKBrush::Solid(QKColorFromBGR(QKColorLighten(g_clrText, 40), 255)));
        if (faces.imgAudioNote)
            g->DrawImage(*faces.imgAudioNote, QPointF(rc.width() - faces.imgAudioNote->width() - 14, 14));
    }

    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override
    {
        if (msg != WM_COMMAND)
            return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
        const uint32_t id = static_cast<uint32_t>(wParam);
        strStatus = QStringLiteral("Clicked: command %1").arg(id);
        CQKButton* p = Manager()->FindControl(id, 0);
        switch (id) {
        case QKPanelLayout::kIdPlay:
            bPlaying = !bPlaying;
            Toggle(p, bPlaying, faces.facePause, faces.facePlay, true);
            break;
        case QKPanelLayout::kIdMaximize:
            bMaximized = !bMaximized;
            Toggle(p, bMaximized, faces.faceRestore, faces.faceMaximize, true);
            break;
        case QKPanelLayout::kIdFullScreen:
            bFull = !bFull;
            Toggle(p, bFull, faces.faceExitFull, faces.faceEnterFull, false);
            break;
        case QKPanelLayout::kIdMute:
            bMuted = !bMuted;
            Toggle(p, bMuted, faces.faceMuted, faces.faceSound, false);
            break;
        case kCmdDisable:
            bEnabled = !bEnabled;
            for (uint32_t i = 0; i < nStrips; ++i)
                Manager()->FindControl(kFirstStrip + i, 0)->Enable(bEnabled ? 1 : 0, 0);
            p->SetText(bEnabled ? QStringLiteral("Disable strips") : QStringLiteral("Enable strips"), 0);
            break;
        default:
            break;
        }
        Manager()->PaintAll();
        return 0;
    }

private:
    // The player's toggles set the strip and, where the button has two drawn faces, the
    // face index together.
    static void Toggle(CQKButton* p, bool bOn, const std::unique_ptr<QImage>& pOn, const std::unique_ptr<QImage>& pOff, bool bIndex)
    {
        p->SetImage(bOn ? pOn.get() : pOff.get());
        if (bIndex)
            p->SetFaceIndex(bOn ? 1 : 0);
    }

    CQKPlayerFaces faces;
    uint32_t nStrips { 0 };
    QString strStatus { QStringLiteral("Hover, press and click.") };
    bool bPlaying { false };
    bool bMaximized { false };
    bool bFull { false };
    bool bMuted { false };
    bool bEnabled { true };
};

} // namespace

std::unique_ptr<CQKHostWnd> OpenFacesDemo()
{
    auto pWindow = std::make_unique<FacesWindow>();
    if (!pWindow->Open())
        return nullptr;
    return pWindow;
}
