// The main window's screen states: full screen, the hiding of the pointer over the video, and
// what the window system reports of its own accord (a window manager's maximise, a restore from
// the taskbar).
//
// Full screen is the window system's full-screen state, so that the window covers the
// desktop's panels on every desktop; where the program may place its windows, it also moves
// itself over the whole screen it stands on, which is all there is to full screen without a
// window manager. The state handling around it (the saved rectangle, the faces, the hidden
// panel, the topmost state, the bars' poll) is the program's own.
//
// The pointer's auto-hide, on timer 3 every 100 ms:
//
//   window state            | pointer                          | what happens
//   ------------------------+----------------------------------+------------------------------
//   normal                  | anywhere                         | shown, the wait starts anew
//   maximised or full       | outside the video area, or moved | shown at this tick, the wait
//   screen                  | since the last tick              | starts anew
//                           | at rest over the video for 3 s,  | hidden (one step of the hide
//                           | the player in front              | counter)
//                           | at rest, another window in front | the wait starts anew
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "platform/QKSystem.h"
#include "player/QKPanelLayout.h"
#include "player/QKPlayerOptions.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKControlKinds.h"

#include <utility>

namespace {

using namespace QKPanelLayout;

// The sixteen controls of the panel in the order they are shown and hidden.
constexpr std::pair<uint32_t, uint32_t> kPanelOrder[] = {
    { kIdOptions, QKKIND_BUTTON },
    { kIdMinimize, QKKIND_BUTTON },
    { kIdMaximize, QKKIND_BUTTON },
    { kIdClose, QKKIND_BUTTON },
    { kIdTimeCurrent, QKKIND_STATIC },
    { kIdPosSlider, QKKIND_SLIDER },
    { kIdTimeTotal, QKKIND_STATIC },
    { kIdOpen, QKKIND_BUTTON },
    { kIdPrevious, QKKIND_BUTTON },
    { kIdPlay, QKKIND_BUTTON },
    { kIdStop, QKKIND_BUTTON },
    { kIdNext, QKKIND_BUTTON },
    { kIdMute, QKKIND_BUTTON },
    { kIdVolSlider, QKKIND_SLIDER },
    { kIdFullScreen, QKKIND_BUTTON },
    { kIdTitle, QKKIND_STATIC },
};

// The pointer hides after resting this long over the video.
constexpr uint64_t kCursorHideDelayMs = 3000;

} // namespace

void CQKPlayerDlg::OnFullScreen()
{
    // Where the window stood before full screen. There is one main window, so one rectangle.
    static QRect s_rcSaved;
    if (!m_bFullScreen)
        s_rcSaved = GetWindowRect();
    m_bFullScreen = !m_bFullScreen;
    SetFullScreenFace();
    ShowPanelControls(!m_bFullScreen);
    // A window that the program moves leaves the window system's states, so it moves before
    // it takes full screen and after it has left it. A window that the window manager
    // maximised is not moved at all: it stays maximised under full screen, and the window
    // manager puts it back where it stood.
    if (m_bFullScreen) {
        if (CanPlaceWindows() && !IsZoomed())
            MoveWindow(GetScreenRect(), true);
        ShowFullScreen();
    } else {
        // The bars go at once; a fade that runs ends by itself, unseen.
        HideBars();
        EndFullScreen();
        if (CanPlaceWindows() && !IsZoomed())
            MoveWindow(s_rcSaved, true);
        else
            InvalidateRect();
    }
    // Full screen is always on top; afterwards the user's choice holds again.
    SetTopmost(m_bFullScreen || QKPlayerOptions::bAlwaysOnTop);
    UpdateVideoLayout();
    if (m_bFullScreen)
        SetTimer(QKTIMER_BARS, 300);
    else
        KillTimer(QKTIMER_BARS);
}

void CQKPlayerDlg::SetFullScreenFace()
{
    CQKButton* pButton = pUIManager ? pUIManager->FindControl(kIdFullScreen, QKKIND_BUTTON) : nullptr;
    if (pButton)
        pButton->SetImage(m_bFullScreen ? m_faces.faceExitFull.get() : m_faces.faceEnterFull.get());
}

void CQKPlayerDlg::ShowPanelControls(bool bShow)
{
    if (!pUIManager)
        return;
    for (const auto& [nID, nKind] : kPanelOrder) {
        if (CQKButton* p = pUIManager->FindControl(nID, nKind))
            p->Show(bShow ? 1 : 0, 0);
    }
}

void CQKPlayerDlg::OnCursorTimer()
{
    const bool bShowing = IsCursorShowing();
    const QPoint p = GetCursorPos();
    const uint64_t dwNow = QKGetTickCount();
    // The pointer is brought back at once; a cursor that another part of the program hid is
    // counted as hidden here as well, and one step of the counter shows it.
    auto showAgain = [&] {
        if (!bShowing) {
            m_bCursorVisible = 1;
            ShowCursor(true);
        }
    };
    if (!m_bFullScreen && !m_bMaximized) {
        m_bCursorVisible = 1;
        m_dwLastMoveTick = dwNow;
        showAgain();
        return;
    }
    if (!m_rcVideo.contains(ScreenToClient(p)) || p != m_ptLastCursor) {
        m_ptLastCursor = p;
        m_dwLastMoveTick = dwNow;
        showAgain();
        return;
    }
    if (dwNow - m_dwLastMoveTick < kCursorHideDelayMs)
        return;
    if (bShowing && !IsIconic() && IsPlayerForeground()) {
        m_bCursorVisible = 0;
        ShowCursor(false);
        return;
    }
    m_dwLastMoveTick = dwNow;
}

bool CQKPlayerDlg::IsPlayerForeground() const
{
    // The video surface belongs to this window; the full-screen bars are windows that this
    // one owns. A dialog it owns (the media error) runs modally and does not count.
    const CQKHostWnd* pForeground = GetForegroundWindow();
    if (pForeground == this)
        return true;
    return pForeground && pForeground->GetOwner() == this && !pForeground->IsModalRunning();
}

void CQKPlayerDlg::OnWindowStateChange(uint32_t nOldState, uint32_t nNewState)
{
    const uint32_t nGained = nNewState & ~nOldState;
    const uint32_t nLost = nOldState & ~nNewState;
    if ((nLost & QKWS_FULLSCREEN) && m_bFullScreen && !(nNewState & QKWS_MINIMIZED)) {
        // The desktop took full screen away: the window leaves it as by its own command.
        OnFullScreen();
        return;
    }
    if (m_bFullScreen)
        return;
    if (nGained & QKWS_MAXIMIZED) {
        // The window manager maximised the window to the screen's free area; the window keeps
        // that state and gives it back to the window manager on restore. Only a window that
        // the program had maximised already keeps its own rectangle to go back to.
        if (!m_bMaximized)
            m_rcRestore = QRect();
        m_bMaximized = 1;
        SetMaximizeFaces();
    } else if ((nLost & QKWS_MAXIMIZED) && !(nNewState & QKWS_MINIMIZED)) {
        m_bMaximized = 0;
        SetMaximizeFaces();
        // The window manager put the window back to the program's maximised rectangle; the
        // program takes it on to where it stood before.
        if (const QRect rcRestore = std::exchange(m_rcRestore, QRect()); rcRestore.isValid() && CanPlaceWindows())
            MoveWindow(rcRestore, true);
    } else if ((nLost & QKWS_MINIMIZED) && m_bMaximized && !IsZoomed() && CanPlaceWindows()) {
        // Back from the taskbar, a window maximised by the program fills the free area again.
        MoveWindow(GetWorkArea(), true);
    }
}
