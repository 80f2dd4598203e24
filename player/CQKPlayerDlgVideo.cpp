// The video area inside the main window, the placing of the picture in it by the display
// ratio mode, and the window size modes that fit the window to a new video.
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "player/QKPlayerOptions.h"
#include "player/QKVideoLayout.h"

void CQKPlayerDlg::ComputeVideoRect()
{
    m_rcVideo = QKVideoLayout::VideoRect(GetClientRect().size(), m_bFullScreen != 0);
}

void CQKPlayerDlg::ApplyDisplayRatio()
{
    const QRect rc = QKVideoLayout::PlacePicture(m_rcVideo, QKPlayerOptions::dr, m_nVideoWidth, m_nVideoHeight);
    if (rc.isNull() || !m_wndPlay)
        return;
    m_wndPlay->MoveWindow(rc.x(), rc.y(), rc.width(), rc.height());
}

void CQKPlayerDlg::UpdateVideoLayout()
{
    if (m_bHasVideo && m_nVideoWidth && m_nVideoHeight)
        ApplyDisplayRatio();
}

void CQKPlayerDlg::ResizeToVideo(double dScale)
{
    if (!m_bHasVideo || !m_nVideoWidth || !m_nVideoHeight)
        return;
    const QRect wr = GetWindowRect();
    // A size command always cancels a chosen display ratio.
    bool bRatioChanged = false;
    if (QKPlayerOptions::dr != 0) {
        QKPlayerOptions::dr = 0;
        bRatioChanged = true;
    }
    QSize szVideo;
    const QRect rcNew = QKVideoLayout::FitWindowToVideo(wr, m_nVideoWidth, m_nVideoHeight, dScale, GetWorkArea(), &szVideo);
    m_rcVideo.setSize(szVideo);
    if (m_bMaximized) {
        // The size command takes the window out of maximised without going back.
        m_bMaximized = 0;
        m_rcRestore = QRect();
        SetMaximizeFaces();
    }
    if (m_bFullScreen) {
        // Full screen ends here without its own way out: the window does not go back to where
        // it stood, stays on top as full screen left it, and the bars' poll ends by itself at
        // its next tick.
        m_bFullScreen = 0;
        SetFullScreenFace();
        ShowPanelControls(true);
    }
    // A window in the window system's full-screen or maximised state would not move.
    if (IsFullScreen() || IsZoomed())
        ShowNormal();
    MoveWindow(rcNew, true);
    if (bRatioChanged)
        ApplyDisplayRatio();
}

void CQKPlayerDlg::ApplyWindowSizeMode()
{
    if (m_bMaximized || m_bFullScreen)
        return;
    switch (QKPlayerOptions::ds) {
    case 0:
        ResizeToVideo(2.0);
        break;
    case 1:
        ResizeToVideo(1.0);
        break;
    case 2:
        ResizeToVideo(0.5);
        break;
    default:
        break;
    }
}
