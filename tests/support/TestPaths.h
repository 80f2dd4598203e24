#pragma once
// Where the tests find the source tree, the built program and a private scratch folder.
#include <QString>

namespace orbeltest {

// The source tree (ORBEL_SOURCE_DIR, set by CTest), with a trailing '/'.
QString SourceDir();
// The folder of the built executables and of the copied skin (ORBEL_BIN_DIR), with a trailing '/'.
QString BinDir();

} // namespace orbeltest
