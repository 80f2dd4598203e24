#pragma once
// The wide XML document: the program's small settings files.
//
// Files are UTF-16LE with the mark FF FE, a fixed declaration, one element per line, tabs
// for depth and CR LF line ends. The loader also reads UTF-16BE with its mark and UTF-8
// with or without one, and parses in place: a loaded document keeps one text buffer, and
// the names and values of its nodes point into it. The parser forgives nearly anything; it
// fails only on a closing tag at the top level, on a "<!" tag shorter than five units, and
// on elements still open at the end. A failed load leaves an empty document, and every read
// then gives its default. See docs/SETTINGS-FILES.md for the format.
//
// Paths are 16-bit text (from a QString: `path.toStdU16String().c_str()`) and are converted to
// UTF-8 for the system.
#include "CQKXmlNode.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class CQKXmlDocument : public CQKXmlNode
{
public:
    // The first line of every file the program writes (41 units, CR LF included).
    static constexpr const char16_t* kDeclaration = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n";

    CQKXmlDocument();
    ~CQKXmlDocument();

    // Reads the whole file and loads it. False (with an empty document) when the file cannot
    // be opened or read, is not a regular file, or does not load.
    bool LoadFile(const char16_t* pszPath);
    // Detects the encoding, makes the wide buffer and parses it. With bOwn the document takes
    // the buffer, which must come from `new uint8_t[]`, and frees it.
    bool LoadBuffer(uint8_t* pData, size_t nSize, bool bOwn);
    // Writes the document: a new file beside the target, then renamed over it. False only when
    // the file cannot be written at all (missing folder, no permission, a read-only target,
    // a target that is not a plain file); the file on disk is then untouched.
    bool SaveFile(const char16_t* pszPath) const;
    // The whole text that SaveFile writes behind the mark: the declaration, then every child.
    void WriteDocument(std::u16string& out) const;
    bool HasBuffer() const { return m_pBuffer != nullptr; }

private:
    // Loads from bytes; pAdopt, when given, is a block that holds those very bytes with room
    // for one more unit, which a little-endian file can use in place.
    bool LoadBytes(const uint8_t* pData, size_t nSize, std::unique_ptr<char16_t[]>* pAdopt);
    // The grammar, over units [0, nCount) of a buffer that has one more unit behind them.
    bool ParseText(char16_t* pText, size_t nCount);
    // The head of an element (tag body without "<" and ">"); true for a self-closed tag.
    static bool ParseTag(CQKXmlNode* pNode, char16_t* pBody, size_t nLength);
    // Replaces a path that is a link (or a chain of them) by the name the last link points to,
    // existing or not. False for a loop or a link that cannot be read.
    static bool FollowLinks(std::string& strPath);
    // Removes what saves of strName by processes that have ended left in the open folder.
    static void RemoveStaleTemporaries(int nFolder, const std::string& strName);

    std::unique_ptr<char16_t[]> m_pBuffer;
};
