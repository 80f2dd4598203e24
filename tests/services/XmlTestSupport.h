#pragma once
// Small helpers of the wide XML document tests: bytes of a file in each encoding, loading
// from exact-size heap buffers (so that the sanitizers see any read past the end), and
// readable forms of 16-bit text for the assertions.
#include "services/CQKXmlDocument.h"
#include "services/QKWideText.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace xmltest {

// The file bytes of a text in UTF-16LE behind the mark FF FE.
inline std::string Utf16Le(std::u16string_view text, bool bMark = true)
{
    std::string bytes = bMark ? std::string("\xFF\xFE", 2) : std::string();
    for (char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

// The same in UTF-16BE behind the mark FE FF.
inline std::string Utf16Be(std::u16string_view text)
{
    std::string bytes("\xFE\xFF", 2);
    for (char16_t c : text) {
        bytes += static_cast<char>(c >> 8);
        bytes += static_cast<char>(c & 0xFF);
    }
    return bytes;
}

// Loads raw file bytes through a heap copy of exactly their size, handed over to the document.
inline bool LoadBytes(CQKXmlDocument& doc, std::string_view bytes)
{
    auto* p = new uint8_t[bytes.size() ? bytes.size() : 1];
    if (!bytes.empty())
        std::memcpy(p, bytes.data(), bytes.size());
    return doc.LoadBuffer(p, bytes.size(), true);
}

// Loads 16-bit text as a file of the program's own encoding would hold it.
inline bool LoadText(CQKXmlDocument& doc, std::u16string_view text)
{
    return LoadBytes(doc, Utf16Le(text));
}

// 16-bit text as UTF-8, for readable assertions.
inline std::string U8(const char16_t* psz)
{
    return psz ? QKWideText::ToUtf8(psz) : std::string("(null)");
}

// The document's text as the writer gives it, without the declaration line.
inline std::string Body(const CQKXmlDocument& doc)
{
    std::u16string out;
    doc.WriteChildren(out, -1);
    return QKWideText::ToUtf8(out);
}

} // namespace xmltest
