#include "player/QKVideoLayout.h"

#include <algorithm>

namespace QKVideoLayout {

QRect VideoRect(QSize szClient, bool bFullScreen)
{
    if (bFullScreen)
        return QRect(0, 0, szClient.width(), szClient.height());
    return QRect(kSideMargin, kTopMargin, szClient.width() - 2 * kSideMargin, szClient.height() - kOutsideHeight);
}

QRect PlacePicture(const QRect& rcVideo, int32_t nMode, int32_t nWidth, int32_t nHeight)
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

QRect FitWindowToVideo(const QRect& rcWindow, int32_t nWidth, int32_t nHeight, double dScale, const QRect& rcFree, QSize* pszVideo)
{
    const int nVideoW = std::max(static_cast<int>(nWidth * dScale), kMinVideoWidth);
    const int nVideoH = std::max(static_cast<int>(nHeight * dScale), kMinVideoHeight);
    if (pszVideo)
        *pszVideo = QSize(nVideoW, nVideoH);
    const int nw = nVideoW + 2 * kSideMargin;
    const int nh = nVideoH + kOutsideHeight;
    int x = std::max(rcWindow.left() + (rcWindow.width() - nw) / 2, rcFree.left());
    int y = std::max(rcWindow.top() + (rcWindow.height() - nh) / 2, rcFree.top());
    x = std::min(x, rcFree.left() + rcFree.width() - kOffScreenGuard);
    y = std::min(y, rcFree.top() + rcFree.height() - kOffScreenGuard);
    return QRect(x, y, nw, nh);
}

} // namespace QKVideoLayout
