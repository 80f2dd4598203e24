#include "player/QKPanelLayout.h"

namespace QKPanelLayout {

const tagQKPanelControl kControls[kControlCount] = {
    { kIdOptions, 0, 0, true, u"Options" },
    { kIdTitle, 13, 6, true, nullptr },
    { kIdMinimize, 0, 0, true, nullptr },
    { kIdMaximize, 0, 0, true, nullptr },
    { kIdClose, 0, 0, true, nullptr },
    { kIdTimeCurrent, 13, 6, false, nullptr },
    { kIdTimeTotal, 13, 6, false, nullptr },
    { kIdPosSlider, 11, 1, false, nullptr },
    { kIdOpen, 0, 0, false, u"Open" },
    { kIdPlay, 0, 0, false, nullptr },
    { kIdStop, 0, 0, false, nullptr },
    { kIdPrevious, 0, 0, false, nullptr },
    { kIdNext, 0, 0, false, nullptr },
    { kIdFullScreen, 0, 0, false, u"Enter Full Screen" },
    { kIdMute, 0, 0, false, nullptr },
    { kIdVolSlider, 11, 1, false, nullptr },
};

namespace {

// The title row is the same on the panel and on the title bar; only the width differs.
QRect PlaceInTitleRow(uint32_t nID, int w)
{
    switch (nID) {
    case kIdOptions:
        return QRect(122, 5, 20, 20);
    case kIdTitle:
        return QRect(150, 8, w - 275, 16);
    case kIdMinimize:
        return QRect(w - 69, 5, 20, 20);
    case kIdMaximize:
        return QRect(w - 47, 5, 20, 20);
    case kIdClose:
        return QRect(w - 25, 5, 20, 20);
    default:
        return QRect();
    }
}

// The seek and button rows below a line `B`, around the centre `c`.
QRect PlaceInLowerRows(uint32_t nID, int w, int B, int c)
{
    switch (nID) {
    case kIdTimeCurrent:
        return QRect(5, B + 2, 50, 16);
    case kIdPosSlider:
        return QRect(56, B + 2, w - 112, 16);
    case kIdTimeTotal:
        return QRect(w - 56, B + 2, 50, 16);
    case kIdOpen:
        return QRect(c - 70, B + 19, 25, 25);
    case kIdPrevious:
        return QRect(c - 35, B + 19, 25, 25);
    case kIdPlay:
        return QRect(c, B + 19, 25, 25);
    case kIdNext:
        return QRect(c + 35, B + 19, 25, 25);
    case kIdStop:
        return QRect(c + 70, B + 19, 25, 25);
    case kIdMute:
        return QRect(c + 105, B + 19, 25, 25);
    case kIdVolSlider:
        return QRect(c + 131, B + 24, 80, 16);
    case kIdFullScreen:
        return QRect(w - 25, B + 24, 20, 20);
    default:
        return QRect();
    }
}

} // namespace

int Centre(int w)
{
    const int c0 = (w - 25) / 2;
    return c0 + 221 > w - 31 ? w - 252 : c0;
}

QRect Place(uint32_t nID, int w, int B)
{
    const QRect rc = PlaceInTitleRow(nID, w);
    return rc.isNull() ? PlaceInLowerRows(nID, w, B, Centre(w)) : rc;
}

QRect PlaceOnBar(uint32_t nID, int W)
{
    // The bars are as wide as the screen, so their row never needs the shift.
    const QRect rc = PlaceInTitleRow(nID, W);
    return rc.isNull() ? PlaceInLowerRows(nID, W, 0, (W - 25) / 2) : rc;
}

} // namespace QKPanelLayout
