#pragma once
// The settings files and the engine's probe take text as zero-terminated 16-bit units; a
// QString holds exactly such units. The pointer lives as long as the string is not changed.
#include <QString>

inline const char16_t* QKWide(const QString& s)
{
    return reinterpret_cast<const char16_t*>(s.utf16());
}
