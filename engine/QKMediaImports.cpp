// The media libraries' functions that the engine calls, each forwarding to the library that
// CQKMediaLibraries loaded at run time. They are the engine's own, kept out of the exported
// set (qkplay.map), and are only reached after CQKMediaLibraries::Load returned true: every
// call needs a handle or context that only a loaded library gives.
#include "QKMediaImports.h"
#include "CQKMediaLibraries.h"

using qkplay::CQKMediaLibraries;

#define QK_MEDIA_FORWARD(lib, ret, name, params, args)                                                    \
    extern "C" ret name params                                                                            \
    {                                                                                                     \
        using Fn = ret(*) params;                                                                         \
        return reinterpret_cast<Fn>(CQKMediaLibraries::Instance().Function(qkplay::kImport_##name)) args; \
    }
QK_MEDIA_IMPORTS(QK_MEDIA_FORWARD)
#undef QK_MEDIA_FORWARD
