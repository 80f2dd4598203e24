#pragma once
// The control kinds of the toolkit and how the layers above plug their classes in.
//
// A control is known to its manager by the pair (id, kind). The kind decides what the manager
// does with the control, and all of it stands in one row of the traits table in
// QKControlKinds.cpp: the default font, whether the control hears the wheel, the mouse,
// activation and keys, whether it is told of focus changes and of layout changes. A person
// adding a kind reads and writes that one row.
//
// The classes of most kinds live in layers above the toolkit core (controls/), which the core
// cannot name. Each such class offers `static tagQKControlKind KindHooks();`, and
// QKRegisterControls() (controls/QKRegisterControls.h) registers them all once at start-up:
// how to make one from the skin, and the steps the manager runs on certain kinds (the edit
// window's creation for QKKIND_EDIT and QKKIND_EDITTIME, the popup closing of
// QKKIND_COMBOBOX).
#include <cstdint>

namespace tinyxml2 {
class XMLElement;
} // namespace tinyxml2

class CQKButton;
class CQKSkinReader;

// The kinds, as the manager's records store them.
enum : uint32_t {
    QKKIND_BUTTON = 0,
    QKKIND_CHECK = 1,
    QKKIND_RADIO = 2,
    QKKIND_EDIT = 3,
    QKKIND_PROGRESS = 4,
    QKKIND_VLISTBOX = 5,
    QKKIND_HLISTBOX = 6,
    QKKIND_COMBOBOX = 7,
    QKKIND_COMBOBOXLIST = 8,
    QKKIND_MENUBUTTON = 9,
    QKKIND_COLORBUTTON = 10,
    QKKIND_SLIDER = 11,
    QKKIND_LINKBUTTON = 12,
    QKKIND_STATIC = 13,
    QKKIND_LISTCTRL = 14,
    QKKIND_TABLEBUTTON = 15,
    QKKIND_TIMELINEEDITOR = 16,
    QKKIND_TEXTBUTTON = 17,
    QKKIND_TIMELINEFRAMEEDITOR = 18,
    QKKIND_TOOLBUTTON = 19,
    QKKIND_EDITTIME = 20,
    QKKIND_CONVERTWINDOW = 21,
    QKKIND_ADLISTBOX = 22,
    QKKIND_SHOWWAVEDATA = 23,
    QKKIND_COUNT = 24,
};

// What the manager does with a control of one kind: one row of the traits table.
struct tagQKKindTraits
{
    // The font id AddControl gives the control, or -1 where the control keeps its own.
    int32_t nDefaultFont { -1 };
    // AddControl gives the control its host, id, manager and font (QKKIND_COMBOBOXLIST's
    // owner does that itself).
    bool bAdopted { true };
    // The wheel goes to the control while it holds the focus.
    bool bWheel { false };
    // The control hears the host's mouse messages (QKKIND_EDITTIME hears its edit window only).
    bool bMouse { true };
    // The control is told when the host is activated or deactivated.
    bool bActivation { true };
    // Key messages go to the control while it holds the focus.
    bool bKeys { true };
    // The control is told when it gains the focus, and when it loses it.
    bool bSetFocus { true };
    bool bKillFocus { true };
    // The control is told after the host's size changed, to lay itself out again.
    bool bLayout { false };
};

// The row of a kind; kinds out of range get a row that hears nothing and is adopted by nobody.
const tagQKKindTraits& QKKindTraits(uint32_t kind);
// The font id AddControl gives a control of this kind, or -1 where the kind keeps its own.
int32_t QKDefaultFontID(uint32_t kind);

// What a layer registers for one kind. Every member may be null.
struct tagQKControlKind
{
    // Makes a new control of the kind with its constructor's defaults (the skin reader's use).
    CQKButton* (*pfnCreate)() { nullptr };
    // After the skin reader has read the common attributes and child elements: reads the
    // kind's own attributes through the reader (so that they share its scratch number) and
    // runs the kind's creation step.
    void (*pfnFinishSkin)(CQKSkinReader& reader, const tinyxml2::XMLElement* pElement, CQKButton* pControl) { nullptr };
    // A combo box's skin `height` is 22 for the control and the rest for its drop-down list:
    // this receives the list's part.
    void (*pfnSetListHeight)(CQKButton* pControl, int32_t nListHeight) { nullptr };
    // A creation step that AddControl runs after the font id on any kind that registers one:
    // the edit window of QKKIND_EDIT and QKKIND_EDITTIME.
    void (*pfnCreateEditWindow)(CQKButton* pControl) { nullptr };
    // Run by SetFocusControl when a control of the kind loses the focus: closes the popup of
    // QKKIND_COMBOBOX.
    void (*pfnClosePopup)(CQKButton* pControl) { nullptr };
};

// Registers the hooks of a kind (replacing earlier ones; a default-made record removes them).
// QKKIND_BUTTON, the plain button, is made by the core itself.
void QKRegisterControlKind(uint32_t kind, const tagQKControlKind& hooks);
// The hooks of a kind; an empty record for kinds nobody registered.
const tagQKControlKind& QKControlKind(uint32_t kind);
