#include "QKControlKinds.h"

#include "CQKButton.h"

#include <array>

namespace {

// The traits table: what the manager does with each kind, one row per kind.
//
//   font:    the font id AddControl gives (-1 keeps the control's own)
//   adopt:   AddControl gives the control its host, id, manager and font
//   wheel:   the focused control takes the wheel
//   mouse:   hears the host's mouse messages
//   activ:   is told of the host's activation
//   keys:    the focused control takes key messages
//   focus+:  is told when it gains the focus
//   focus-:  is told when it loses the focus
//   layout:  is told after the host's size changed
constexpr tagQKKindTraits kTraits[QKKIND_COUNT] = {
    //                                font adopt  wheel  mouse  activ  keys   focus+ focus- layout
    /* QKKIND_BUTTON              */ { -1, true, false, true, true, true, true, true, false },
    /* QKKIND_CHECK               */ { 6, true, false, true, true, true, true, true, false },
    /* QKKIND_RADIO               */ { 6, true, false, true, true, true, true, true, false },
    /* QKKIND_EDIT                */ { 3, true, true, true, true, true, true, true, false },
    /* QKKIND_PROGRESS            */ { 1, true, false, true, true, true, true, true, false },
    /* QKKIND_VLISTBOX            */ { 1, true, true, true, true, true, true, true, true },
    /* QKKIND_HLISTBOX            */ { 1, true, true, true, false, true, false, true, true },
    /* QKKIND_COMBOBOX            */ { 1, true, true, true, true, true, true, true, true },
    /* QKKIND_COMBOBOXLIST        */ { -1, false, true, true, true, true, true, true, true },
    /* QKKIND_MENUBUTTON          */ { -1, true, true, true, true, true, true, true, true },
    /* QKKIND_COLORBUTTON         */ { 1, true, true, true, true, true, true, true, true },
    /* QKKIND_SLIDER              */ { 1, true, true, true, true, true, true, true, true },
    /* QKKIND_LINKBUTTON          */ { 3, true, false, true, true, true, true, true, true },
    /* QKKIND_STATIC              */ { 6, true, false, true, true, true, true, true, true },
    /* QKKIND_LISTCTRL            */ { 3, true, true, true, true, true, true, true, true },
    /* QKKIND_TABLEBUTTON         */ { -1, true, false, true, true, true, true, true, true },
    /* QKKIND_TIMELINEEDITOR      */ { 1, true, true, true, true, true, true, true, true },
    /* QKKIND_TEXTBUTTON          */ { 1, true, false, true, true, true, true, true, true },
    /* QKKIND_TIMELINEFRAMEEDITOR */ { 1, true, false, true, true, true, true, true, true },
    /* QKKIND_TOOLBUTTON          */ { 1, true, false, true, true, true, true, true, true },
    /* QKKIND_EDITTIME            */ { 3, true, false, false, false, false, false, false, false },
    /* QKKIND_CONVERTWINDOW       */ { 1, true, false, true, true, false, true, true, true },
    /* QKKIND_ADLISTBOX           */ { 1, true, false, true, true, false, true, true, true },
    /* QKKIND_SHOWWAVEDATA        */ { 6, true, false, true, true, true, true, true, true },
};

// A kind out of range still hears the mouse and activation and is told when it loses the
// focus, but is given nothing else.
constexpr tagQKKindTraits kUnknownTraits { -1, false, false, true, true, false, false, true, false };

std::array<tagQKControlKind, QKKIND_COUNT>& Kinds()
{
    static std::array<tagQKControlKind, QKKIND_COUNT> kinds = [] {
        std::array<tagQKControlKind, QKKIND_COUNT> a {};
        a[QKKIND_BUTTON] = CQKButton::KindHooks();
        return a;
    }();
    return kinds;
}

} // namespace

const tagQKKindTraits& QKKindTraits(uint32_t kind)
{
    return kind < QKKIND_COUNT ? kTraits[kind] : kUnknownTraits;
}

int32_t QKDefaultFontID(uint32_t kind)
{
    return QKKindTraits(kind).nDefaultFont;
}

void QKRegisterControlKind(uint32_t kind, const tagQKControlKind& hooks)
{
    if (kind >= QKKIND_COUNT)
        return;
    Kinds()[kind] = hooks;
    if (kind == QKKIND_BUTTON && !hooks.pfnCreate)
        Kinds()[kind].pfnCreate = CQKButton::KindHooks().pfnCreate;
}

const tagQKControlKind& QKControlKind(uint32_t kind)
{
    static const tagQKControlKind empty {};
    return kind < QKKIND_COUNT ? Kinds()[kind] : empty;
}
