#include "QKRegisterControls.h"

#include "controls/CQKLinkButton.h"
#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKCheck.h"
#include "toolkit/CQKRadio.h"
#include "toolkit/CQKTextButton.h"
#include "toolkit/QKControlKinds.h"

void QKRegisterControls()
{
    QKRegisterControlKind(QKKIND_BUTTON, CQKButton::KindHooks());
    QKRegisterControlKind(QKKIND_CHECK, CQKCheck::KindHooks());
    QKRegisterControlKind(QKKIND_RADIO, CQKRadio::KindHooks());
    QKRegisterControlKind(QKKIND_TEXTBUTTON, CQKTextButton::KindHooks());
    QKRegisterControlKind(QKKIND_SLIDER, CQKSlider::KindHooks());
    QKRegisterControlKind(QKKIND_LINKBUTTON, CQKLinkButton::KindHooks());
    QKRegisterControlKind(QKKIND_STATIC, CQKStatic::KindHooks());
}
