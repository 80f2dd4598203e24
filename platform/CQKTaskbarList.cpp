#include "platform/CQKTaskbarList.h"

#include "platform/CQKDesktopTaskbar.h"
#include "platform/QKSystem.h"

namespace {

std::function<std::unique_ptr<CQKTaskbarList>()>& Factory()
{
    static std::function<std::unique_ptr<CQKTaskbarList>()> fn;
    return fn;
}

} // namespace

CQKTaskbarList::~CQKTaskbarList() = default;

std::unique_ptr<CQKTaskbarList> CQKTaskbarList::Create()
{
    if (Factory())
        return Factory()();
    // The desktop's side is a session bus; without one the player has no counterpart.
    if (!QKHasSessionBus())
        return nullptr;
    return std::make_unique<CQKDesktopTaskbar>();
}

void CQKTaskbarList::ThumbBarAddButtons(CQKHostWnd*, uint32_t, const tagQKThumbButton*) { }

void CQKTaskbarList::ThumbBarUpdateButtons(CQKHostWnd*, uint32_t, const tagQKThumbButton*) { }

void CQKTaskbarList::SetOverlayIcon(CQKHostWnd*, uint32_t) { }

void CQKTaskbarList::SetProgressState(CQKHostWnd*, uint32_t) { }

void CQKTaskbarList::SetProgressValue(CQKHostWnd*, uint64_t, uint64_t) { }

void CQKTaskbarList::SetMedia(CQKHostWnd*, const QString&, double, bool) { }

void CQKTaskbarList::SetVolume(CQKHostWnd*, double) { }

void QKSetTaskbarFactory(std::function<std::unique_ptr<CQKTaskbarList>()> fnFactory)
{
    Factory() = std::move(fnFactory);
}
