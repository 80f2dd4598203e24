#pragma once
// Reads what the player needs to know of a media file (video or not, picture size, length)
// with libavformat, without starting the playback engine.
#include <atomic>
#include <cstdint>
#include <string>

namespace qkplay {

struct tagQKMediaInfo
{
    bool bHasVideo { false };
    int nWidth { 0 };
    int nHeight { 0 };
    double dDuration { 0.0 };
};

class CQKMediaProbe
{
public:
    // Probes the file named by a UTF-8 path. Returns false, leaving info alone, when the file
    // is missing, not a regular file, empty, barely recognised as media (a program, a text
    // file), or holds nothing that can be decoded. A probe is cut short, with false, once
    // *pnGen differs from nGen (a newer request made it useless).
    static bool Probe(const std::string& strPath, tagQKMediaInfo& info, const std::atomic<uint64_t>* pnGen = nullptr, uint64_t nGen = 0);

    // The size and modification time of a file, to tell whether it changed since a probe;
    // false when it cannot be read.
    static bool Identity(const std::string& strPath, int64_t& nSize, int64_t& nMtimeNs);

    // Converts a zero-terminated UTF-16 string to UTF-8. A lone unit U+DC80 to U+DCFF stands
    // for the byte 0x80 to 0xFF of a file name that is not valid UTF-8 and becomes that byte.
    // Returns false for other unpaired surrogates and for names longer than nMaxUnits units.
    static bool Utf16ToUtf8(const char16_t* psz, std::string& strOut, size_t nMaxUnits = 32768);

private:
    static int OnInterrupt(void* pOpaque);
};

} // namespace qkplay
