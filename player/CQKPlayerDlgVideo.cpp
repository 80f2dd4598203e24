// The video area inside the main window, the placing of the picture in it by the display
// ratio mode, and the window size modes that fit the window to a new video.
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "player/QKPlayerOptions.h"

#include <algorithm>

namespace {

// The video area leaves 5 pixels on each side, 31 above and 51 below.
constexpr int kSideMargin = 5;
constexpr int kTopMargin = 31;
constexpr int kOutsideHeight = 82;
// The smallest video area that fitting the window to a video makes.
constexpr int kMinVideoWidth = 320;
constexpr int kMinVideoHeight = 240;
// A window fitted to a video keeps at least this much of itself on the screen.
constexpr int kOffScreenGuard = 50;

} // namespace

void CQKPlayerDlg::ComputeVideoRect()
{
    const QRect rcClient = GetClientRect();
    if (m_bFullScreen)
        m_rcVideo = QRect(0, 0, rcClient.width(), rcClient.height());
    else
        m_rcVideo = QRect(kSideMargin, kTopMargin, rcClient.width() - 2 * kSideMargin, rcClient.height() - kOutsideHeight);
}

QRect CQKPlayerDlg::PlacePicture(const QRect& rcVideo, int32_t nMode, int32_t nWidth, int32_t nHeight)
{
    int nRatioW = 0;
    int nRatioH = 0;
    switch (nMode) {
    case 0:
    case 2:
        if (nWidth == 0 || nHeight == 0)
            return QRect();
        nRatioW = nWidth;
        nRatioH = nHeight;
        break;
    case 3:
        nRatioW = 1;
        nRatioH = 1;
        break;
    case 4:
        nRatioW = 4;
        nRatioH = 3;
        break;
    case 5:
        nRatioW = 5;
        nRatioH = 4;
        break;
    case 6:
        nRatioW = 16;
        nRatioH = 9;
        break;
    case 7:
        nRatioW = 16;
        nRatioH = 10;
        break;
    default:
        // Stretch, and any mode the program does not know, fill the whole area.
        return rcVideo;
    }
    const double r = static_cast<double>(nRatioW) / static_cast<double>(nRatioH);
    int w = rcVideo.width();
    int h = static_cast<int>(w / r);
    if (h > rcVideo.height()) {
        h = rcVideo.height();
        w = static_cast<int>(h * r);
    }
    return QRect(rcVideo.left() + (rcVideo.width() - w) / 2, rcVideo.top() + (rcVideo.height() - h) / 2, w, h);
}

void CQKPlayerDlg::ApplyDisplayRatio()
{
    const QRect rc = PlacePicture(m_rcVideo, QKPlayerOptions::dr, m_nVideoWidth, m_nVideoHeight);
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
    const int nVideoW = std::max(static_cast<int>(m_nVideoWidth * dScale), kMinVideoWidth);
    const int nVideoH = std::max(static_cast<int>(m_nVideoHeight * dScale), kMinVideoHeight);
    m_rcVideo.setWidth(nVideoW);
    m_rcVideo.setHeight(nVideoH);
    const int nw = nVideoW + 2 * kSideMargin;
    const int nh = nVideoH + kOutsideHeight;
    // Keep the window's centre, but not above or left of the screen, and not so far right
    // or down that less than a strip of it stays visible.
    int x = std::max(wr.left() + (wr.width() - nw) / 2, 0);
    int y = std::max(wr.top() + (wr.height() - nh) / 2, 0);
    const QRect rcScreen = GetPrimaryScreenRect();
    x = std::min(x, rcScreen.width() - kOffScreenGuard);
    y = std::min(y, rcScreen.height() - kOffScreenGuard);
    // Leaving the maximised and the full-screen state comes with those states.
    m_bMaximized = 0;
    MoveWindow(x, y, nw, nh, true);
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
