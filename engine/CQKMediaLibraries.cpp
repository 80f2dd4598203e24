#include "CQKMediaLibraries.h"

#include <dlfcn.h>
#include <string>

namespace qkplay {

namespace {

#define QK_STRING(x) #x
#define QK_VERSION_STRING(x) QK_STRING(x)

// The exact versions the engine was built against: a library of another major version has
// another interface. libmpv's file carries the major version of its client interface.
const std::string kLibraryNames[kMediaLibraryCount] = {
    "libmpv.so." + std::to_string(MPV_CLIENT_API_VERSION >> 16),
    "libavformat.so." QK_VERSION_STRING(LIBAVFORMAT_VERSION_MAJOR),
    "libavcodec.so." QK_VERSION_STRING(LIBAVCODEC_VERSION_MAJOR),
    "libavutil.so." QK_VERSION_STRING(LIBAVUTIL_VERSION_MAJOR),
};

struct tagImport
{
    int nLibrary;
    const char* pszName;
};

#define QK_MEDIA_IMPORT_ENTRY(lib, ret, name, params, args) { lib, #name },
const tagImport kImports[kMediaImportCount] = { QK_MEDIA_IMPORTS(QK_MEDIA_IMPORT_ENTRY) };
#undef QK_MEDIA_IMPORT_ENTRY

} // namespace

CQKMediaLibraries& CQKMediaLibraries::Instance()
{
    static auto* pInstance = new CQKMediaLibraries;
    return *pInstance;
}

bool CQKMediaLibraries::Load()
{
    std::unique_lock lk(m_mtx);
    if (m_state == State::NotStarted) {
        m_state = State::Loading;
        lk.unlock();
        const bool bOk = LoadNow();
        lk.lock();
        m_bOk = bOk;
        m_state = State::Done;
        m_cv.notify_all();
    }
    m_cv.wait(lk, [this] { return m_state == State::Done; });
    return m_bOk;
}

bool CQKMediaLibraries::LoadNow()
{
    // Global, as a library linked with the program would be: the engine quiets the sound
    // library's messages through a function it finds among all loaded libraries. Functions
    // are bound on their first call, as the program's own libraries are: binding all of
    // them at once made the load a half slower (105 against 70 ms).
    void* arrHandles[kMediaLibraryCount] {};
    for (int i = 0; i < kMediaLibraryCount; ++i) {
        arrHandles[i] = dlopen(kLibraryNames[i].c_str(), RTLD_LAZY | RTLD_GLOBAL);
        if (!arrHandles[i])
            return false;
    }
    for (int i = 0; i < kMediaImportCount; ++i) {
        m_arrFunctions[i] = dlsym(arrHandles[kImports[i].nLibrary], kImports[i].pszName);
        if (!m_arrFunctions[i])
            return false;
    }
    return true;
}

} // namespace qkplay
