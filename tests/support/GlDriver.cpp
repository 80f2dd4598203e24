#include "support/GlDriver.h"

#include <dlfcn.h>
#include <initializer_list>

namespace orbeltest {

bool KeepGlDriverMapped()
{
    for (const char* pszPath : { "/usr/lib/x86_64-linux-gnu/dri/swrast_dri.so", "/usr/lib64/dri/swrast_dri.so" }) {
        if (dlopen(pszPath, RTLD_NOW | RTLD_NODELETE))
            return true;
    }
    return false;
}

} // namespace orbeltest
