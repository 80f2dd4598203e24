#pragma once
// Mesa unloads its software driver when the last OpenGL context goes; what the driver keeps
// would then be reported as leaks of an unknown module, which the suppressions for system
// libraries cannot name. Tests that make OpenGL contexts keep the driver mapped until exit so
// that its leaks can be told apart from ours.

namespace orbeltest {

// Maps the software driver for good; false when it is not installed where Debian puts it.
bool KeepGlDriverMapped();

} // namespace orbeltest
