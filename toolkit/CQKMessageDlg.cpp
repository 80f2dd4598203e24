#include "CQKMessageDlg.h"

#include "CQKTextButton.h"
#include "CQKUIManager.h"
#include "QKControlKinds.h"
#include "QKFonts.h"
#include "platform/CQKGraphics.h"
#include "platform/QKMessages.h"

namespace {

constexpr uint32_t IDOK = 1;
constexpr uint32_t IDCANCEL = 2;
constexpr uint32_t IDYES = 6;
constexpr uint32_t IDNO = 7;
constexpr uint32_t MB_OKCANCEL = 1;
constexpr uint32_t MB_YESNO = 4;
constexpr uint32_t kTextFont = 6;
constexpr int kTextLeft = 10;
constexpr int kTextTop = 40;
constexpr int kRoomAroundText = 100; // caption and gap above, buttons below
constexpr int kFirstHeight = 600;

} // namespace

CQKMessageDlg::CQKMessageDlg(const QString& text, uint32_t type, CQKHostWnd* pOwner)
    : CQKDialogBase(pOwner)
    , strText(text)
    , nType(type)
{
}

CQKMessageDlg::CQKMessageDlg(const QString& title, const QString& text, uint32_t type, CQKHostWnd* pOwner)
    : CQKDialogBase(pOwner)
    , strTitle(title)
    , strText(text)
    , nType(type)
{
}

void CQKMessageDlg::CreateControls()
{
    CQKDialogBase::CreateControls();
    if (!pUIManager)
        return;
    // The message itself: a static text, centred, with font 6. The static text lives in a layer
    // above the toolkit, so it is made through its registered kind; a plain control that paints
    // the same text stands in where nobody registered it.
    const auto pfnCreate = QKControlKind(QKKIND_STATIC).pfnCreate;
    std::unique_ptr<CQKButton> pOwned(pfnCreate ? pfnCreate() : new CQKButton());
    CQKButton* pText = pOwned.get();
    pUIManager->AddControl(kTextID, std::move(pOwned), QKKIND_STATIC);
    pText->SetFontID(kTextFont);
    AddTextButton(IDYES, QStringLiteral("Yes"));
    AddTextButton(IDNO, QStringLiteral("No"));
}

void CQKMessageDlg::LayoutControls()
{
    CQKDialogBase::LayoutControls();
    if (!pUIManager)
        return;
    const QRect rc = GetClientRect();
    if (CQKButton* pYes = pUIManager->FindControl(IDYES, QKKIND_TEXTBUTTON))
        pYes->MoveTo(rc.width() - 75, rc.height() - 30, 65, 20, 1);
    if (CQKButton* pNo = pUIManager->FindControl(IDNO, QKKIND_TEXTBUTTON))
        pNo->MoveTo(rc.width() - 150, rc.height() - 30, 65, 20, 1);
}

QRectF CQKMessageDlg::MeasureMessage(const QString& text, const QRectF& rcLayout) const
{
    if (text.isEmpty())
        return QRectF();
    const tagQKFont* pFont = FindFont(kTextFont);
    if (!pFont)
        return QRectF();
    tagQKStringFormat format;
    format.nAlign = QKAlignCenter;
    format.nLineAlign = QKAlignCenter;
    if (pFont->bVertical)
        format.nFlags |= QKFormatDirectionVertical;
    QImage scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
    CQKGraphics g(scratch);
    return g.MeasureString(text, QKFontSpecOf(*pFont), rcLayout, format);
}

int CQKMessageDlg::OnInitDialog()
{
    CQKDialogBase::OnInitDialog();
    int cw = GetClientRect().width();
    if (strText.size() > kWideText)
        cw += kWiden;
    MoveWindow(0, 0, cw, kFirstHeight, false);
    if (!strText.isEmpty()) {
        const QRect rc = GetClientRect();
        const QRectF rcText = MeasureMessage(strText, QRectF(kTextLeft, kTextTop, cw - 2 * kTextLeft, rc.height() - kRoomAroundText));
        // The layout height only bounds the measure: a text of many lines may grow the dialog
        // past its first height.
        MoveWindow(0, 0, cw, static_cast<int>(rcText.height() + kRoomAroundText), false);
        CenterWindow();
        if (CQKButton* pText = pUIManager ? pUIManager->FindControl(kTextID, QKKIND_STATIC) : nullptr) {
            pText->SetText(strText, 0);
            pText->MoveTo(kTextLeft, kTextTop, cw - 2 * kTextLeft, static_cast<int>(rcText.height()), 0);
        }
    }
    SetWindowText(strTitle);

    // Which buttons stay, by type.
    std::vector<uint32_t> hidden;
    if (nType == MB_YESNO)
        hidden = { IDOK, IDCANCEL };
    else if (nType == MB_OKCANCEL)
        hidden = { IDYES, IDNO };
    else
        hidden = { IDCANCEL, IDYES, IDNO };
    if (pUIManager)
        for (uint32_t nID : hidden)
            if (CQKButton* p = pUIManager->FindControl(nID, QKKIND_TEXTBUTTON))
                p->Show(0, 0);
    return 1;
}

intptr_t CQKMessageDlg::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    if (msg == WM_COMMAND && IsModalRunning()) {
        // Yes and No end the dialog as OK and Cancel do, and then put their own result.
        if ((wParam & 0xFFFF) == IDYES) {
            OnOK();
            nResult = IDYES;
            return 0;
        }
        if ((wParam & 0xFFFF) == IDNO) {
            OnCancel();
            nResult = IDNO;
            return 0;
        }
    }
    return CQKDialogBase::OnMessage(msg, wParam, lParam);
}

int ShowMediaError()
{
    return ShowMessage(QStringLiteral("Error Media File! Please Try Again."), 0);
}

int ShowMessage(const QString& text, uint32_t type)
{
    CQKMessageDlg dlg(text, type);
    return dlg.DoModal();
}

int ShowMessageTitled(const QString& title, const QString& text, uint32_t type)
{
    CQKMessageDlg dlg(title, text, type);
    return dlg.DoModal();
}
