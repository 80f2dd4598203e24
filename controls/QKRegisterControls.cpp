#include "QKRegisterControls.h"

#include "toolkit/CQKButton.h"
#include "toolkit/QKControlKinds.h"

void QKRegisterControls()
{
    QKRegisterControlKind(QKKIND_BUTTON, CQKButton::KindHooks());
}
