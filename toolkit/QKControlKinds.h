#pragma once
// The control kinds of the toolkit and how the layers above plug their classes in.
//
// A control is known to its manager by the pair (id, kind). The kind decides what the manager
// does with the control (its default font, whether it hears the wheel, whether it is told of
// activation) and which skin element makes it. The classes of most kinds live in layers above
// the toolkit core (controls/), which the core cannot name; such a layer registers, once at
// start-up, what the core needs of its kinds: how to make one from the skin, and the few
// steps that the manager runs on certain kinds (the edit window's creation, the combo box's
// popup closing).
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
    // The creation step of the edit kinds (3 and 20), run by AddControl after the font id.
    void (*pfnCreateEditWindow)(CQKButton* pControl) { nullptr };
    // Closes the combo box's popup when the combo box loses the focus (kind 7).
    void (*pfnClosePopup)(CQKButton* pControl) { nullptr };
};

// Registers the hooks of a kind (replacing earlier ones; a default-made record removes them).
// Kind 0, the plain button, is made by the core itself.
void QKRegisterControlKind(uint32_t kind, const tagQKControlKind& hooks);
// The hooks of a kind; an empty record for kinds nobody registered.
const tagQKControlKind& QKControlKind(uint32_t kind);
