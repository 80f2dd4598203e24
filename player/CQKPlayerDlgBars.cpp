// The full-screen bars: the top bar with the title strip's buttons and the bottom bar with the
// panel's, and the poll that shows them.
//
// In full screen the panel is hidden. Every 300 ms (timer 2) the window looks where the
// pointer is, the bottom bar first:
//
//   bar      | pointer on its strip, shown | pointer elsewhere, or hidden
//   ---------+-----------------------------+-----------------------------
//   hidden   | fades in                    | stays hidden
//   visible  | stays                       | fades out
//
// The pointer counts as hidden while the cursor auto-hide has hidden it: then no bar comes,
// and a visible one goes. A bar that starts a fade stops the poll, and restarts it when its
// fade has ended. Outside full screen the next tick fades out what is still visible and ends
// the poll.
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "player/CQKLayerWndBottom.h"
#include "player/CQKLayerWndTitle.h"

namespace {

constexpr int kTitleBarHeight = 30;
constexpr int kBottomBarHeight = 52;

// Makes one bar, hidden, over the owner: a tool window without a taskbar entry, above the
// full-screen window. The class name lets other programs (and tests) find it.
void MakeBar(CQKLayerWnd& bar, CQKPlayerDlg* pOwner, const QString& strClass, const QRect& rc)
{
    CQKHostCreate create;
    create.nStyle = QKHS_FRAMELESS | QKHS_TOOL | QKHS_TOPMOST;
    create.strClassName = strClass;
    create.pOwner = pOwner;
    create.rcWindow = rc;
    bar.Create(create);
}

} // namespace

void CQKPlayerDlg::CreateBars()
{
    // The bars stand on the screen that holds the window now and keep their size: their
    // controls are placed once, for this width.
    const QRect rcScreen = GetScreenRect();
    m_barTitle = std::make_unique<CQKLayerWndTitle>(*this);
    m_barBottom = std::make_unique<CQKLayerWndBottom>(*this);
    MakeBar(*m_barTitle, this, QStringLiteral("QKLayerWndTitle"), QRect(rcScreen.x(), rcScreen.y(), rcScreen.width(), kTitleBarHeight));
    MakeBar(*m_barBottom, this, QStringLiteral("QKLayerWndBottom"),
        QRect(rcScreen.x(), rcScreen.y() + rcScreen.height() - kBottomBarHeight, rcScreen.width(), kBottomBarHeight));
}

void CQKPlayerDlg::DestroyBars()
{
    // The twins go with the bars' managers.
    m_pBarPlay = m_pBarMute = m_pBarMaximize = nullptr;
    m_pBarPosSlider = m_pBarVolSlider = nullptr;
    m_pBarTimeCurrent = m_pBarTimeTotal = m_pBarTitleText = nullptr;
    m_barTitle.reset();
    m_barBottom.reset();
}

void CQKPlayerDlg::HideBars()
{
    if (m_barTitle)
        m_barTitle->ShowWindow(SW_HIDE);
    if (m_barBottom)
        m_barBottom->ShowWindow(SW_HIDE);
}

void CQKPlayerDlg::OnBarsTimer()
{
    if (!m_barTitle || !m_barBottom)
        return;
    if (!m_bFullScreen) {
        for (CQKLayerWnd* pBar : { static_cast<CQKLayerWnd*>(m_barTitle.get()), static_cast<CQKLayerWnd*>(m_barBottom.get()) })
            if (pBar->IsWindowVisible())
                pBar->ShowFade(false);
        KillTimer(QKTIMER_BARS);
        return;
    }
    const QPoint pt = GetCursorPos();
    for (CQKLayerWnd* pBar : { static_cast<CQKLayerWnd*>(m_barBottom.get()), static_cast<CQKLayerWnd*>(m_barTitle.get()) }) {
        const bool bInside = pBar->GetWindowRect().contains(pt);
        if (!pBar->IsWindowVisible() && m_bCursorVisible) {
            if (bInside)
                pBar->ShowFade(true);
        } else if (!(bInside && m_bCursorVisible) && pBar->IsWindowVisible()) {
            pBar->ShowFade(false);
        }
    }
}

bool CQKPlayerDlg::IsVideoWindowVisible() const
{
    return m_wndPlay && m_wndPlay->IsVisible();
}
