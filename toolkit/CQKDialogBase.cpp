#include "CQKDialogBase.h"

#include "CQKButton.h"
#include "CQKTextButton.h"
#include "CQKUIManager.h"
#include "QKControlKinds.h"
#include "QKTheme.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKGraphicsPath.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"

#include <QThread>
#include <algorithm>

namespace {

constexpr uint32_t IDOK = 1;
constexpr uint32_t IDCANCEL = 2;

CQKHostWnd* g_pDefaultOwner = nullptr;

} // namespace

CQKDialogBase::CQKDialogBase(CQKHostWnd* pOwner)
    : pOwnerWnd(pOwner)
{
}

CQKDialogBase::~CQKDialogBase()
{
    // The derived parts are still alive here, so the window's end reaches them.
    DestroyWindow();
}

void CQKDialogBase::SetDefaultOwner(CQKHostWnd* pOwner)
{
    g_pDefaultOwner = pOwner;
}

CQKHostWnd* CQKDialogBase::DefaultOwner()
{
    return CQKHostWnd::IsWindow(g_pDefaultOwner) ? g_pDefaultOwner : nullptr;
}

int CQKDialogBase::DoModal()
{
    if (IsWindow())
        return nResult;
    CQKHostWnd* pOwner = CQKHostWnd::IsWindow(pOwnerWnd) ? pOwnerWnd : DefaultOwner();
    CQKHostCreate create;
    create.nStyle = QKHS_FRAMELESS;
    create.strClassName = QStringLiteral("QKOrbelDialog");
    create.pOwner = pOwner;
    create.rcWindow = QRect(QPoint(0, 0), szTemplate);
    if (!Create(create))
        return nResult;
    CenterWindow();
    OnInitDialog();
    RunModal();
    DestroyWindow();
    return nResult;
}

void CQKDialogBase::CenterWindow()
{
    const QRect rcArea = pOwnerWnd && CQKHostWnd::IsWindow(pOwnerWnd) ? pOwnerWnd->GetWindowRect() : GetPrimaryWorkArea();
    const QRect rc = GetWindowRect();
    MoveWindow(rcArea.x() + (rcArea.width() - rc.width()) / 2, rcArea.y() + (rcArea.height() - rc.height()) / 2, rc.width(), rc.height(), false);
}

int CQKDialogBase::OnInitDialog()
{
    if (bFade)
        ApplyAlpha(0);
    if (pUIManager)
        pUIManager->LoadSkin(this);
    CreateControls();
    LayoutControls();
    if (bFade)
        SetTimer(kFadeTimer, kFadePeriodMs);
    return 1;
}

void CQKDialogBase::ApplyAlpha(int nNewAlpha)
{
    nAlpha = nNewAlpha;
    SetWindowAlpha(static_cast<uint8_t>(std::clamp(nNewAlpha, 0, 255)));
}

void CQKDialogBase::OnTimer(uint32_t nID)
{
    if (nID != kFadeTimer)
        return;
    int nNext = nAlpha + kFadeStep;
    if (nNext > 255) {
        KillTimer(kFadeTimer);
        nNext = 255;
    }
    ApplyAlpha(nNext);
}

void CQKDialogBase::EndDialog()
{
    KillTimer(kFadeTimer);
    // The fade out holds the interface for 50 ms a step, six steps at most: the dialog is
    // gone before anything else happens.
    if (bFade && nAlpha > 0) {
        while (nAlpha > 0) {
            ApplyAlpha(std::max(nAlpha - kFadeStep, 0));
            QThread::msleep(kFadePeriodMs);
        }
    }
    EndModal(nResult);
}

void CQKDialogBase::OnOK()
{
    nResult = 1;
    EndDialog();
}

void CQKDialogBase::OnCancel()
{
    nResult = 2;
    EndDialog();
}

void CQKDialogBase::CreateControls()
{
    if (!pUIManager)
        return;
    auto pClose = std::make_unique<CQKButton>();
    pClose->bCacheBackground = 1;
    pClose->nFrames = 4;
    pClose->SetFace(0);
    pUIManager->AddControl(IDCANCEL, std::move(pClose), QKKIND_BUTTON);
    AddTextButton(IDOK, QStringLiteral("OK"));
    AddTextButton(IDCANCEL, QStringLiteral("Cancel"));
}

CQKTextButton* CQKDialogBase::AddTextButton(uint32_t nID, const QString& text)
{
    if (!pUIManager)
        return nullptr;
    auto pOwned = std::make_unique<CQKTextButton>();
    CQKTextButton* p = pOwned.get();
    p->SetText(text, 0);
    pUIManager->AddControl(nID, std::move(pOwned), QKKIND_TEXTBUTTON);
    // After AddControl, which gives the kind's default font.
    p->SetFontID(kButtonFont);
    return p;
}

void CQKDialogBase::LayoutControls()
{
    if (!pUIManager)
        return;
    CQKButton* pClose = pUIManager->FindControl(IDCANCEL, QKKIND_BUTTON);
    if (!pClose)
        return;
    const QRect rc = GetClientRect();
    const int R = rc.width();
    const int B = rc.height();
    pClose->MoveTo(R - 20, 7, 16, 16, 0);
    if (CQKButton* pOK = pUIManager->FindControl(IDOK, QKKIND_TEXTBUTTON))
        pOK->MoveTo(R - 75, B - 30, 65, 20, 0);
    if (CQKButton* pCancel = pUIManager->FindControl(IDCANCEL, QKKIND_TEXTBUTTON))
        pCancel->MoveTo(R - 150, B - 30, 65, 20, 0);
}

void CQKDialogBase::PaintFrame(CQKGraphics* pGraphics)
{
    if (!pGraphics)
        return;
    pGraphics->SetSmoothingMode(QKSmoothingAntiAlias);
    pGraphics->SetInterpolationMode(QKInterpolationHighQualityBicubic);
    const QRect rc = GetClientRect();
    const int W = rc.width();
    const int H = rc.height();
    const tagQKUIColors& ui = g_UIColors;

    tagQKBrush band = tagQKBrush::Linear(QPointF(0, 0), QPointF(0, 32), QKColorFromBGR(ui.clrTitleBar, 255), QKColorFromBGR(QKColorDarken(ui.clrTitleBar, 10), 255));
    band.bGammaCorrection = true;
    pGraphics->FillRectangle(band, 0, 0, W, kCaptionHeight);

    const QString strTitle = GetWindowText();
    if (!strTitle.isEmpty()) {
        // The title's face is fixed: neither the skin's fonts nor the theme's family apply.
        tagQKFontSpec font;
        font.strFamily = QStringLiteral("Arial");
        font.fSize = 15.0f;
        tagQKStringFormat format;
        format.nLineAlign = QKAlignCenter;
        const QRectF rcLayout(5, 0, W - 60, kCaptionHeight);
        CQKGraphicsPath path;
        path.AddString(strTitle, font, rcLayout, format);
        const QRect b = path.GetBoundsI();
        tagQKBrush text = tagQKBrush::Linear(QPointF(b.x(), b.y()), QPointF(b.x() + b.width(), b.y() + b.height()),
            QKColorFromBGR(ui.clrTitleTextStart, 255), QKColorFromBGR(ui.clrTitleTextEnd, 255));
        text.bGammaCorrection = true;
        // A long title ends at the layout rectangle, clear of the close cross.
        pGraphics->SetClipRect(rcLayout);
        pGraphics->FillPath(text, path);
        pGraphics->ResetClip();
    }

    tagQKPen pen;
    pen.clr = QKColorFromBGR(ui.clrFrame, 255);
    pGraphics->DrawRectangle(pen, 0, 0, W - 1, H - 1);
}

intptr_t CQKDialogBase::OnMenuCommand(uintptr_t /*wParam*/, intptr_t lParam)
{
    SendMessage(WM_COMMAND, static_cast<uintptr_t>(lParam) & 0xFFFF, 0);
    return 0;
}

intptr_t CQKDialogBase::OnComboChanged(uintptr_t /*wParam*/, intptr_t /*lParam*/)
{
    return 0;
}

intptr_t CQKDialogBase::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    switch (msg) {
    case WM_COMMAND:
        // A command that arrives after the dialog ended (a second quick click) is dropped.
        if (!IsModalRunning())
            return 0;
        if ((wParam & 0xFFFF) == IDOK)
            OnOK();
        else if ((wParam & 0xFFFF) == IDCANCEL)
            OnCancel();
        return 0;
    case QKM_MENUCOMMAND:
        return OnMenuCommand(wParam, lParam);
    case QKM_COMBOSELCHANGED:
        return OnComboChanged(wParam, lParam);
    default:
        return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
    }
}

void CQKDialogBase::OnPaintBackground(CQKGraphics* pGraphics)
{
    PaintFrame(pGraphics);
}

void CQKDialogBase::OnLayout(int /*w*/, int /*h*/)
{
    LayoutControls();
}

void CQKDialogBase::OnLeftButtonDown(QPoint pt, uint32_t keys)
{
    // The caption, less the close cross's corner.
    const QRect rc = GetClientRect();
    const QRect rcCaption(0, 0, rc.width() - 25, kCaptionHeight);
    if (!rcCaption.contains(pt)) {
        CQKUIHostWnd::OnLeftButtonDown(pt, keys);
        return;
    }
    if (StartSystemMove())
        return;
    // No window manager to hand the drag to: the window follows the pointer itself.
    bDragging = true;
    ptDragStart = ClientToScreen(pt);
    ptWindowStart = GetWindowRect().topLeft();
    SetCapture();
}

void CQKDialogBase::OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys)
{
    if (bDragging && (msg == WM_MOUSEMOVE || msg == WM_LBUTTONUP)) {
        const QRect rc = GetWindowRect();
        // The event's own point, in the window's place at this moment.
        const QPoint to = ptWindowStart + (ClientToScreen(pt) - ptDragStart);
        MoveWindow(to.x(), to.y(), rc.width(), rc.height(), false);
        if (msg == WM_LBUTTONUP) {
            bDragging = false;
            ReleaseCapture();
        }
        return;
    }
    CQKUIHostWnd::OnMouseMessage(msg, pt, keys);
}

void CQKDialogBase::OnKeyDown(uint32_t vk, uint32_t mods)
{
    if (vk == VK_RETURN)
        OnOK();
    else if (vk == VK_ESCAPE)
        OnCancel();
    else
        CQKUIHostWnd::OnKeyDown(vk, mods);
}

void CQKDialogBase::OnClose()
{
    // The window manager's close is the close cross.
    OnCancel();
}
