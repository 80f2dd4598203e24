#pragma once
// The media libraries under the engine (libmpv and FFmpeg's libavformat, libavcodec and
// libavutil), loaded at run time instead of with the program.
//
// Together they pull in some two hundred shared libraries, which take the dynamic loader
// longer than the rest of the player's start-up before its window. Loaded at run time, they
// cost nothing to a start that has no use for them. Every entry of the engine that needs them
// calls Load first, which waits for a load under way or loads them there and then. The
// calls themselves (mpv_*, av*) go through QKMediaImports.cpp, which forwards each to the
// loaded library.
//
// A machine without these libraries still starts the player: Load is then false, and every
// file is refused as the engine refuses a file it cannot open.
#include "QKMediaImports.h"

#include <condition_variable>
#include <mutex>

namespace qkplay {

class CQKMediaLibraries
{
public:
    // The one instance; never destroyed, so that an engine taken down at exit can still call.
    static CQKMediaLibraries& Instance();

    CQKMediaLibraries(const CQKMediaLibraries&) = delete;
    CQKMediaLibraries& operator=(const CQKMediaLibraries&) = delete;

    // True when every library and function is there, loading them first or waiting for a
    // load under way. Thread: any.
    bool Load();

    // A function of the loaded libraries (an EQKMediaImport), for the forwarders; only
    // valid after Load returned true.
    void* Function(int nImport) const { return m_arrFunctions[nImport]; }

private:
    CQKMediaLibraries() = default;
    // Opens the libraries and looks every function up.
    bool LoadNow();

    enum class State { NotStarted,
        Loading,
        Done };
    std::mutex m_mtx;
    std::condition_variable m_cv;
    State m_state { State::NotStarted };
    bool m_bOk { false };
    void* m_arrFunctions[kMediaImportCount] {};
};

} // namespace qkplay
