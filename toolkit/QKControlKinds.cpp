#include "QKControlKinds.h"

#include "CQKButton.h"

#include <array>

namespace {

// Default font ids by kind; -1 leaves the control's own.
constexpr int32_t kDefaultFonts[QKKIND_COUNT] = {
    -1, 6, 6, 3, 1, 1, 1, 1, -1, -1, 1, 1, 3, 6, 3, -1, 1, 1, 1, 1, 3, 1, 1, 6
};

CQKButton* CreatePlainButton()
{
    return new CQKButton();
}

std::array<tagQKControlKind, QKKIND_COUNT>& Kinds()
{
    static std::array<tagQKControlKind, QKKIND_COUNT> kinds = [] {
        std::array<tagQKControlKind, QKKIND_COUNT> a {};
        a[QKKIND_BUTTON].pfnCreate = CreatePlainButton;
        return a;
    }();
    return kinds;
}

} // namespace

int32_t QKDefaultFontID(uint32_t kind)
{
    return kind < QKKIND_COUNT ? kDefaultFonts[kind] : -1;
}

void QKRegisterControlKind(uint32_t kind, const tagQKControlKind& hooks)
{
    if (kind >= QKKIND_COUNT)
        return;
    Kinds()[kind] = hooks;
    if (kind == QKKIND_BUTTON && !hooks.pfnCreate)
        Kinds()[kind].pfnCreate = CreatePlainButton;
}

const tagQKControlKind& QKControlKind(uint32_t kind)
{
    static const tagQKControlKind empty {};
    return kind < QKKIND_COUNT ? Kinds()[kind] : empty;
}
