#include "CQKXmlDocument.h"

#include "QKWideText.h"

#include <atomic>
#include <bit>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Settings files are a few hundred bytes; anything past this is not one of them, and is
// refused rather than decoded into a buffer twice its size.
constexpr size_t kMaxFileBytes = size_t(64) << 20;

// The validity scan of files without a mark: lead bytes with their continuation bytes, all
// inside the buffer. Overlong forms are not looked for.
bool IsValidUtf8(const uint8_t* p, size_t n)
{
    size_t i = 0;
    while (i < n) {
        const uint8_t b = p[i++];
        size_t nFollow;
        if (b < 0x80)
            continue;
        if (b >= 0xC0 && b <= 0xDF)
            nFollow = 1;
        else if (b >= 0xE0 && b <= 0xEF)
            nFollow = 2;
        else if (b >= 0xF0 && b <= 0xF7)
            nFollow = 3;
        else
            return false;
        if (n - i < nFollow)
            return false;
        for (size_t k = 0; k < nFollow; ++k, ++i) {
            if (p[i] < 0x80 || p[i] > 0xBF)
                return false;
        }
    }
    return true;
}

// The decoder of UTF-8 files. It is deliberately weaker than the scan above, and files made
// by others depend on what it does, so it stays as it is:
// - a two-byte sequence gives ((b1 & 0x3F) << 5) | (b0 & 0x1F), the two bit fields in
//   swapped places, so C3 A9 reads as U+0523 and not as U+00E9;
// - a three-byte sequence gives the standard result;
// - any other lead byte (four-byte sequences and stray continuation bytes included), or a
//   sequence cut by the end of the input, ends the text silently there;
// - continuation bytes are not checked.
// Returns the number of units written; pOut has room for n units.
size_t DecodeUtf8(const uint8_t* p, size_t n, char16_t* pOut)
{
    size_t i = 0;
    size_t nOut = 0;
    while (i < n) {
        const uint8_t b0 = p[i];
        if (b0 < 0x80) {
            pOut[nOut++] = b0;
            i += 1;
        } else if (b0 >= 0xC0 && b0 <= 0xDF) {
            if (n - i < 2)
                break;
            pOut[nOut++] = static_cast<char16_t>(((p[i + 1] & 0x3F) << 5) | (b0 & 0x1F));
            i += 2;
        } else if (b0 >= 0xE0 && b0 <= 0xEF) {
            if (n - i < 3)
                break;
            pOut[nOut++] = static_cast<char16_t>(((b0 & 0x0F) << 12) | ((p[i + 1] & 0x3F) << 6) | (p[i + 2] & 0x3F));
            i += 3;
        } else {
            break;
        }
    }
    return nOut;
}

// The first unit c in [nFrom, nTo), or nTo.
size_t FindUnit(const char16_t* p, size_t nFrom, size_t nTo, char16_t c)
{
    while (nFrom < nTo && p[nFrom] != c)
        ++nFrom;
    return nFrom;
}

bool WriteAll(int fd, const uint8_t* p, size_t n)
{
    while (n > 0) {
        ssize_t nDone = ::write(fd, p, n);
        if (nDone < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += nDone;
        n -= size_t(nDone);
    }
    return true;
}

} // namespace

CQKXmlDocument::CQKXmlDocument()
    : CQKXmlNode(kTypeDocument)
{
}

CQKXmlDocument::~CQKXmlDocument()
{
    // The buffer goes first and the tree after it (in the base's destructor); the tree's
    // destruction frees only private copies and never reads loaded text.
    m_pBuffer.reset();
}

bool CQKXmlDocument::LoadFile(const char16_t* pszPath)
{
    DeleteAllChildren();
    m_pBuffer.reset();
    if (!pszPath || !*pszPath)
        return false;
    const std::string path = QKWideText::ToUtf8(pszPath);
    // Not blocking on open, so that a named pipe put where a settings file belongs cannot hang
    // the program; it is refused below as not a regular file.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return false;
    struct stat st
    { };
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || st.st_size < 0 || size_t(st.st_size) > kMaxFileBytes) {
        ::close(fd);
        return false;
    }
    const size_t nSize = size_t(st.st_size);
    // The bytes are read into a block of 16-bit units with room for a terminating unit, so that
    // a little-endian file (the program's own kind) is parsed where it lies, without a copy.
    std::unique_ptr<char16_t[]> block(new char16_t[nSize / 2 + 2]);
    auto* pBytes = reinterpret_cast<uint8_t*>(block.get());
    size_t nRead = 0;
    while (nRead < nSize) {
        ssize_t n = ::read(fd, pBytes + nRead, nSize - nRead);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            ::close(fd);
            return false;
        }
        if (n == 0)
            break;
        nRead += size_t(n);
    }
    ::close(fd);
    return LoadBytes(pBytes, nRead, &block);
}

bool CQKXmlDocument::LoadBuffer(uint8_t* pData, size_t nSize, bool bOwn)
{
    const bool bLoaded = LoadBytes(pData, pData ? nSize : 0, nullptr);
    if (bOwn)
        delete[] pData;
    return bLoaded;
}

bool CQKXmlDocument::LoadBytes(const uint8_t* p, size_t n, std::unique_ptr<char16_t[]>* pAdopt)
{
    DeleteAllChildren();
    m_pBuffer.reset();
    // Below 3 bytes there is no text behind a mark; a file of only FF FE fails here.
    if (n < 3)
        return false;
    char16_t* pText = nullptr;
    size_t nCount = 0;
    if (p[0] == 0xFE && p[1] == 0xFF) {
        nCount = (n - 2) / 2;
        m_pBuffer.reset(new char16_t[nCount + 1]);
        pText = m_pBuffer.get();
        for (size_t i = 0; i < nCount; ++i)
            pText[i] = static_cast<char16_t>((p[2 + 2 * i] << 8) | p[3 + 2 * i]);
    } else if (p[0] == 0xFF && p[1] == 0xFE) {
        nCount = (n - 2) / 2;
        if (pAdopt && *pAdopt) {
            m_pBuffer = std::move(*pAdopt);
            pText = m_pBuffer.get() + 1;
            if constexpr (std::endian::native == std::endian::big) {
                for (size_t i = 0; i < nCount; ++i)
                    pText[i] = static_cast<char16_t>((pText[i] << 8) | (pText[i] >> 8));
            }
        } else {
            m_pBuffer.reset(new char16_t[nCount + 1]);
            pText = m_pBuffer.get();
            for (size_t i = 0; i < nCount; ++i)
                pText[i] = static_cast<char16_t>(p[2 + 2 * i] | (p[3 + 2 * i] << 8));
        }
    } else {
        size_t nStart = 0;
        if (p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF)
            nStart = 3;
        else if (!IsValidUtf8(p, n))
            return false; // Neither marked nor UTF-8: a legacy code page, which is not read.
        m_pBuffer.reset(new char16_t[n - nStart + 1]);
        pText = m_pBuffer.get();
        nCount = DecodeUtf8(p + nStart, n - nStart, pText);
    }
    pText[nCount] = 0;
    if (ParseText(pText, nCount))
        return true;
    // The partly built tree of a failed load is never shown to anyone.
    DeleteAllChildren();
    m_pBuffer.reset();
    return false;
}

// The whole grammar. A tag runs from "<" to the first ">" (quotes play no part), except a
// comment, which runs to "-->". Dispatch on the first unit of the tag body:
//
//   "!"   a comment; its text is the body from offset 3 to two units before the end.
//         Fails when the body is shorter than 5 units.
//   "/"   closes the current element, whatever name follows. Fails at the top level.
//         An element without children takes the raw text before it as its value.
//   "?"   ignored (the declaration, wherever it stands).
//   else  a new element; it becomes current unless its tag closes itself.
//
// A "<" without a ">" (or a comment without "-->") ends the parse, and so does an empty tag
// "<>": what follows is dropped. Text that is not a childless element's content is ignored.
// The parse succeeds exactly when no element is left open at the end.
bool CQKXmlDocument::ParseText(char16_t* pText, size_t nCount)
{
    CQKXmlNode* pCurrent = this;
    int64_t nDepth = 0;
    size_t nCursor = 0;
    while (nCount > 0 && nCursor < nCount) {
        const size_t nTextStart = nCursor;
        const size_t nOpen = FindUnit(pText, nCursor, nCount, u'<');
        if (nOpen == nCount)
            break;
        const size_t nBody = nOpen + 1;
        char16_t* pBody = pText + nBody;
        size_t nLength = 0;
        if (nCount - nBody >= 7 && pBody[0] == u'!' && pBody[1] == u'-' && pBody[2] == u'-') {
            // Searched behind the opening "!--", at positions with room for all three units.
            size_t nEnd = nCount;
            for (size_t i = nBody + 3; i + 3 <= nCount; ++i) {
                if (pText[i] == u'-' && pText[i + 1] == u'-' && pText[i + 2] == u'>') {
                    nEnd = i;
                    break;
                }
            }
            if (nEnd == nCount)
                break;
            nLength = nEnd - nBody + 2;
            nCursor = nEnd + 3;
        } else {
            const size_t nClose = FindUnit(pText, nBody, nCount, u'>');
            if (nClose == nCount || nClose == nBody)
                break;
            nLength = nClose - nBody;
            nCursor = nClose + 1;
        }

        switch (pBody[0]) {
        case u'!': {
            if (nLength < 5)
                return false;
            CQKXmlNode* pComment = pCurrent->AddChild(nullptr, kTypeComment);
            pBody[nLength - 2] = 0;
            pComment->PointNameAt(pBody + 3);
            break;
        }
        case u'/':
            if (nDepth < 1)
                return false;
            if (pCurrent->m_nType == kTypeElement && pCurrent->m_listChildren.IsEmpty()) {
                pText[nOpen] = 0;
                pCurrent->PointValueAt(pText + nTextStart);
            }
            pCurrent = pCurrent->m_pParent;
            --nDepth;
            break;
        case u'?':
            break;
        default: {
            CQKXmlNode* pElement = pCurrent->AddChild(nullptr, kTypeElement);
            if (!ParseTag(pElement, pBody, nLength)) {
                pCurrent = pElement;
                ++nDepth;
            }
            break;
        }
        }
    }
    return nDepth == 0;
}

// An element's head: the name up to the first space, "/" or ">" (only the space unit 20 hex
// separates; tab, CR and LF belong to the name), then attributes. An attribute is a name up
// to a space, "=", "/" or ">", and the next double-quoted text after it, whatever stands
// between: so `b = "1"` and `b "1"` both set b, and in `<a b c="1">` b takes "1" and c is lost.
// An attribute without quotes is dropped; an unterminated quote drops it and leaves the tag
// open. The unit pBody[nLength] is the tag's ">" and is free to be overwritten.
bool CQKXmlDocument::ParseTag(CQKXmlNode* pNode, char16_t* pBody, size_t nLength)
{
    auto isStop = [](char16_t c, bool bAttribute) {
        return c == u' ' || c == u'/' || c == u'>' || (bAttribute && c == u'=');
    };
    size_t i = 0;
    while (i < nLength && !isStop(pBody[i], false))
        ++i;
    char16_t cStop = pBody[i];
    pBody[i] = 0;
    pNode->PointNameAt(pBody);
    if (cStop != u' ')
        return cStop == u'/';
    ++i;
    for (;;) {
        if (i >= nLength)
            return cStop == u'/';
        while (i < nLength && pBody[i] == u' ')
            ++i;
        const size_t nName = i;
        while (i < nLength && !isStop(pBody[i], true))
            ++i;
        const size_t nStop = i;
        cStop = pBody[nStop];
        const size_t nQuote = FindUnit(pBody, nStop, nLength, u'"');
        if (nQuote == nLength)
            return cStop == u'/';
        const size_t nEndQuote = FindUnit(pBody, nQuote + 1, nLength, u'"');
        if (nEndQuote == nLength)
            return false;
        pBody[nStop] = 0;
        pBody[nEndQuote] = 0;
        auto* pAttribute = new CQKXmlAttribute;
        pAttribute->PointNameAt(pBody + nName);
        pAttribute->PointValueAt(pBody + nQuote + 1);
        pNode->m_listAttributes.AddTail(pAttribute);
        i = nEndQuote + 1;
    }
}

void CQKXmlDocument::WriteDocument(std::u16string& out) const
{
    out += kDeclaration;
    WriteChildren(out, -1);
}

bool CQKXmlDocument::SaveFile(const char16_t* pszPath) const
{
    if (!pszPath || !*pszPath)
        return false;
    std::u16string text;
    WriteDocument(text);
    std::string bytes;
    bytes.reserve(2 + text.size() * 2);
    bytes += '\xFF';
    bytes += '\xFE';
    for (char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }

    std::string target = QKWideText::ToUtf8(pszPath);
    // A link to a settings file stays a link: the file it points to is replaced, or made when
    // the link dangles (settings kept in a dotfiles folder before their first save).
    if (!FollowLinks(target))
        return false;
    struct stat st
    { };
    const bool bExists = ::stat(target.c_str(), &st) == 0;
    // What could not be opened for writing is not replaced either: a folder, a read-only file.
    // Nor is anything that is not a plain file (a device, a pipe), which a rename would destroy.
    if (bExists && (!S_ISREG(st.st_mode) || ::access(target.c_str(), W_OK) != 0))
        return false;

    // The text goes to a new file in the same folder, which is flushed to the disk and then
    // renamed over the target. A rename within a folder is atomic, so a crash or a full disk
    // during a save leaves either the old settings or the new ones, never half a file.
    const size_t nSlash = target.rfind('/');
    const std::string folder = nSlash == std::string::npos ? std::string(".") : target.substr(0, nSlash + 1);
    const std::string name = nSlash == std::string::npos ? target : target.substr(nSlash + 1);
    static std::atomic<unsigned> s_nSerial { 0 };
    std::string temp;
    int fd = -1;
    for (int nTry = 0; nTry < 100 && fd < 0; ++nTry) {
        temp = (nSlash == std::string::npos ? std::string() : folder) + "." + name + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(s_nSerial++);
        fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST)
            break;
    }
    if (fd < 0)
        return false;
    if (bExists) {
        // The new file takes the old one's place with its permissions and, where the system
        // allows it, its owner.
        ::fchmod(fd, st.st_mode & 07777);
        if (::fchown(fd, st.st_uid, st.st_gid) != 0) {
            // Only the owner may give a file away; a file of one's own keeps its owner anyway.
        }
    }
    const bool bWritten = WriteAll(fd, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()) && ::fsync(fd) == 0;
    const bool bClosed = ::close(fd) == 0;
    if (!bWritten || !bClosed) {
        // SaveFile's answer says whether the file could be opened for writing, and it could,
        // so the save counts as done; the old file is kept rather than replaced by a partial
        // one.
        ::unlink(temp.c_str());
        return true;
    }
    if (::rename(temp.c_str(), target.c_str()) != 0) {
        ::unlink(temp.c_str());
        return false;
    }
    // The rename itself reaches the disk with the folder's entry.
    const int nFolder = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (nFolder >= 0) {
        ::fsync(nFolder);
        RemoveStaleTemporaries(nFolder, name);
        ::close(nFolder);
    }
    return true;
}

bool CQKXmlDocument::FollowLinks(std::string& strPath)
{
    // As many links in a chain as the system itself follows; a loop cannot be written through.
    for (int nHop = 0; nHop < 40; ++nHop) {
        struct stat st
        { };
        if (::lstat(strPath.c_str(), &st) != 0 || !S_ISLNK(st.st_mode))
            return true;
        std::string link(PATH_MAX, '\0');
        const ssize_t n = ::readlink(strPath.c_str(), link.data(), link.size());
        if (n <= 0 || static_cast<size_t>(n) >= link.size())
            return false;
        link.resize(static_cast<size_t>(n));
        // A relative link is read from the folder the link stands in.
        const size_t nSlash = strPath.rfind('/');
        if (link[0] != '/' && nSlash != std::string::npos)
            link = strPath.substr(0, nSlash + 1) + link;
        strPath = link;
    }
    return false;
}

void CQKXmlDocument::RemoveStaleTemporaries(int nFolder, const std::string& strName)
{
    // A run killed between writing and renaming leaves ".<name>.tmp-<pid>-<n>" behind. Such a
    // file is removed once its process is gone; one of a running process may be its save
    // under way.
    const int nDup = ::dup(nFolder);
    if (nDup < 0)
        return;
    DIR* pDir = ::fdopendir(nDup);
    if (!pDir) {
        ::close(nDup);
        return;
    }
    const std::string prefix = "." + strName + ".tmp-";
    while (const dirent* pEntry = ::readdir(pDir)) {
        const char* pszName = pEntry->d_name;
        if (std::strncmp(pszName, prefix.c_str(), prefix.size()) != 0)
            continue;
        char* pszEnd = nullptr;
        const long nPid = std::strtol(pszName + prefix.size(), &pszEnd, 10);
        if (nPid <= 0 || nPid > INT_MAX || !pszEnd || *pszEnd != '-' || nPid == ::getpid())
            continue;
        if (::kill(static_cast<pid_t>(nPid), 0) != 0 && errno == ESRCH)
            ::unlinkat(nFolder, pszName, 0);
    }
    ::closedir(pDir);
}
