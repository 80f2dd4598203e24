#pragma once
// QKRegisterControls: the one place where the control kinds are plugged into the toolkit.
//
// Every control class the skin can make offers `static tagQKControlKind KindHooks();`, and
// this function registers each of them for its kind (QKControlKinds.h). The program, the
// toolkit's example and the skin fuzzer call it once at start-up, before the first skin is
// read; calling it again registers the same hooks again.
void QKRegisterControls();
