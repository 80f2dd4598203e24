// The player's panel: its sixteen controls made in code, their places after each size change,
// the faces that follow the player's state, the title line, and what the desktop's media controls
// ask of the window.
//
// The full-screen bars carry twins of some controls with the same ids, so that one command
// handler serves both. Every change of state is applied to the panel's control and to its
// twin; a twin is null while there are no bars, and is then passed over.
#include "player/CQKPlayerDlg.h"

#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "platform/QKFilePath.h"
#include "player/CQKLayerWndBottom.h"
#include "player/QKPanelLayout.h"
#include "player/QKPlayerOptions.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"
#include "toolkit/QKTheme.h"

#include <iterator>
#include <memory>

namespace {

using namespace QKPanelLayout;

std::unique_ptr<CQKButton> MakeControl(uint32_t nKind)
{
    switch (nKind) {
    case QKKIND_SLIDER: {
        auto pSlider = std::make_unique<CQKSlider>();
        pSlider->SetRange(0.0, 100.0);
        pSlider->EnableDragNotify();
        return pSlider;
    }
    case QKKIND_STATIC:
        return std::make_unique<CQKStatic>();
    default:
        return std::make_unique<CQKButton>();
    }
}

// Adds one control of the panel's table to `pManager`, set up as the panel has it; the bars
// leave the background cache off.
CQKButton* AddPanelControl(CQKUIManager* pManager, const tagQKPanelControl& entry, bool bBar)
{
    std::unique_ptr<CQKButton> pOwned = MakeControl(entry.nKind);
    CQKButton* p = pOwned.get();
    pManager->AddControl(entry.nID, std::move(pOwned), entry.nKind);
    p->SetFontID(entry.nFontID);
    p->EnableBackgroundCache(entry.bCacheBackground && !bBar);
    if (entry.pszToolTip)
        p->SetToolTip(QString::fromUtf16(entry.pszToolTip));
    if (entry.nKind == QKKIND_STATIC) {
        auto* pStatic = static_cast<CQKStatic*>(p);
        if (entry.nID == kIdTitle) {
            pStatic->SetTextAlign(2);
            pStatic->UseUIFont();
            pStatic->SetFontStyle(12);
        } else {
            pStatic->SetTextAlign(entry.nID == kIdTimeCurrent ? 0 : 1);
            pStatic->SetFontStyle(11);
            pStatic->SetText(QStringLiteral("00:00:00"), 0);
        }
    }
    if (entry.nID == kIdVolSlider)
        static_cast<CQKSlider*>(p)->SetPos(QKPlayerOptions::dVolumeScale, 0);
    return p;
}

// Gives a button a strip and a face index, and repaints it at once.
void GiveFace(CQKButton* pButton, const std::unique_ptr<QImage>& pStrip, int nIndex)
{
    if (!pButton)
        return;
    pButton->SetImage(pStrip.get());
    pButton->SetFaceIndex(nIndex);
    pButton->RepaintAlone();
}

} // namespace

void CQKPlayerDlg::CreateControls()
{
    CQKUIManager* pManager = pUIManager.get();
    if (!pManager)
        return;
    for (const tagQKPanelControl& entry : kControls) {
        RememberControl(entry.nID, AddPanelControl(pManager, entry, false), false);
    }
    m_faces.CreateFaces(pManager);
    // A player that starts muted shows it on the button from the first picture.
    if (QKPlayerOptions::bMute && m_pBtnMute)
        m_pBtnMute->SetImage(m_faces.faceMuted.get());
    if (m_barTitle && m_barBottom)
        CreateBarControls(m_barTitle->Manager(), m_barBottom->Manager(), m_barTitle->GetClientRect().width());
}

void CQKPlayerDlg::CreateBarControls(CQKUIManager* pTitleBar, CQKUIManager* pBottomBar, int W)
{
    for (const tagQKPanelControl& entry : kControls) {
        const QRect rc = PlaceOnBar(entry.nID, W);
        const bool bTitleRow = entry.nID == kIdOptions || entry.nID == kIdTitle || entry.nID == kIdMinimize || entry.nID == kIdMaximize || entry.nID == kIdClose;
        CQKUIManager* pManager = bTitleRow ? pTitleBar : pBottomBar;
        if (!pManager)
            continue;
        CQKButton* p = AddPanelControl(pManager, entry, !bTitleRow);
        p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        // The buttons show the same pictures as their panel buttons, except the maximise
        // button: in full screen the window counts as maximised, and the bar offers the way
        // back.
        const CQKButton* pMain = pUIManager ? pUIManager->FindControl(entry.nID, entry.nKind) : nullptr;
        if (pMain && entry.nKind == QKKIND_BUTTON)
            p->SetImage(pMain->pImage.get());
        if (entry.nID == kIdMaximize) {
            p->SetImage(m_faces.faceRestore.get());
            p->SetFaceIndex(1);
        } else if (entry.nID == kIdFullScreen) {
            p->SetToolTip(QStringLiteral("Exit Full Screen"));
        }
        RememberControl(entry.nID, p, true);
    }
    // The drawn faces, the bottom bar's full-screen arrow showing the way out only.
    m_faces.CreatePanelFaces(pTitleBar);
    m_faces.CreatePanelFaces(pBottomBar);
    CQKPlayerFaces::AddOptionsFace(pTitleBar, kIdOptions);
    CQKPlayerFaces::AddFullScreenFaces(pBottomBar, kIdFullScreen, true);
}

void CQKPlayerDlg::RememberControl(uint32_t nID, CQKButton* p, bool bBar)
{
    switch (nID) {
    case kIdPlay:
        (bBar ? m_pBarPlay : m_pBtnPlay) = p;
        break;
    case kIdMute:
        (bBar ? m_pBarMute : m_pBtnMute) = p;
        break;
    case kIdMaximize:
        (bBar ? m_pBarMaximize : m_pBtnMaximize) = p;
        break;
    case kIdPosSlider:
        (bBar ? m_pBarPosSlider : m_pPosSlider) = static_cast<CQKSlider*>(p);
        break;
    case kIdVolSlider:
        (bBar ? m_pBarVolSlider : m_pVolSlider) = static_cast<CQKSlider*>(p);
        break;
    case kIdTimeCurrent:
        (bBar ? m_pBarTimeCurrent : m_pTimeCurrent) = static_cast<CQKStatic*>(p);
        break;
    case kIdTimeTotal:
        (bBar ? m_pBarTimeTotal : m_pTimeTotal) = static_cast<CQKStatic*>(p);
        break;
    case kIdTitle:
        (bBar ? m_pBarTitleText : m_pTitleText) = static_cast<CQKStatic*>(p);
        break;
    default:
        break;
    }
}

void CQKPlayerDlg::LayoutControls()
{
    CQKUIManager* pManager = pUIManager.get();
    if (!pManager || !pManager->FindControl(kIdMinimize, QKKIND_BUTTON))
        return;
    const int w = GetClientRect().width();
    const int B = m_rcVideo.y() + m_rcVideo.height();
    for (const tagQKPanelControl& entry : kControls) {
        if (CQKButton* p = pManager->FindControl(entry.nID, entry.nKind)) {
            const QRect rc = Place(entry.nID, w, B);
            p->MoveTo(rc.x(), rc.y(), rc.width(), rc.height(), 0);
        }
    }
    UpdateVideoLayout();
}

void CQKPlayerDlg::UpdateTitle()
{
    const QString strAppTitle = QString::fromUtf16(kTitle);
    if (!m_pTitleText) {
        if (m_pTaskbarList)
            SetWindowText(strAppTitle);
        return;
    }
    if (!QKPathIsFile(m_strMediaPath)) {
        m_pTitleText->SetText(QString(), 1);
        if (m_pBarTitleText)
            m_pBarTitleText->SetText(QString(), 1);
        if (m_pTaskbarList)
            SetWindowText(strAppTitle);
        return;
    }
    QString strName = m_strMediaPath.mid(m_strMediaPath.lastIndexOf(QLatin1Char('/')) + 1);
    if (m_pTaskbarList)
        SetWindowText(strName);
    if (m_nVideoWidth >= 1 && m_nVideoHeight >= 1 && m_bHasVideo)
        strName += QStringLiteral("  (%1x%2)").arg(m_nVideoWidth).arg(m_nVideoHeight);
    m_pTitleText->SetText(strName, 1);
    if (m_pBarTitleText)
        m_pBarTitleText->SetText(strName, 1);
}

void CQKPlayerDlg::SetPlayFaces(bool bPlaying)
{
    const std::unique_ptr<QImage>& pStrip = bPlaying ? m_faces.facePause : m_faces.facePlay;
    GiveFace(m_pBtnPlay, pStrip, bPlaying ? 1 : 0);
    GiveFace(m_pBarPlay, pStrip, bPlaying ? 1 : 0);
}

void CQKPlayerDlg::SetMuteFaces()
{
    const std::unique_ptr<QImage>& pStrip = QKPlayerOptions::bMute ? m_faces.faceMuted : m_faces.faceSound;
    // The mute button keeps its face index: its strip alone shows the state.
    GiveFace(m_pBtnMute, pStrip, m_pBtnMute ? m_pBtnMute->nFaceIndex : 0);
    GiveFace(m_pBarMute, pStrip, m_pBarMute ? m_pBarMute->nFaceIndex : 0);
}

void CQKPlayerDlg::SetMaximizeFaces()
{
    const std::unique_ptr<QImage>& pStrip = m_bMaximized ? m_faces.faceRestore : m_faces.faceMaximize;
    GiveFace(m_pBtnMaximize, pStrip, m_bMaximized ? 1 : 0);
    GiveFace(m_pBarMaximize, pStrip, m_bMaximized ? 1 : 0);
}

void CQKPlayerDlg::SetTimeText(CQKStatic* pMain, CQKStatic* pTwin, const QString& strText)
{
    if (pMain)
        pMain->SetText(strText, 1);
    if (pTwin)
        pTwin->SetText(strText, 1);
}

void CQKPlayerDlg::OnThumbButton(uint32_t nAction)
{
    // Each of the desktop's buttons is one of the panel's commands.
    static constexpr uint32_t kCommands[] = { QKCMD_PREVFILE, QKCMD_PLAYPAUSE, QKCMD_NEXTFILE, QKCMD_STOP, QKCMD_CLOSE };
    if (nAction < std::size(kCommands))
        OnCommand(kCommands[nAction]);
}

void CQKPlayerDlg::OnDesktopVolume(double dVolume)
{
    // The volume slider moves as if the user had dragged it there, with all that follows.
    if (!m_pVolSlider)
        return;
    m_pVolSlider->SetPos(dVolume * m_pVolSlider->dMaxPos, 1);
    OnSliderChanged(m_pVolSlider);
}
