#include "player/QKFolderWalk.h"

#include "platform/QKFilePath.h"

#include <array>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace QKFolderWalk {

namespace {

// The walk's media types, in the order they are tested.
constexpr std::array<QStringView, 24> kMediaTypes = { u"avi", u"mpg", u"mpeg", u"mp4", u"rv", u"rm",
    u"rmvb", u"mkv", u"flv", u"mts", u"ts", u"wmv", u"asf", u"ogg", u"vob", u"mp3", u"mp2", u"mpa",
    u"wma", u"wav", u"m4a", u"ac3", u"aac", u"amr" };

bool IsDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

char16_t Folded(QChar c)
{
    // Most names are ASCII; the table lookup is kept for the rest.
    const char16_t u = c.unicode();
    if (u < 0x80)
        return u >= u'A' && u <= u'Z' ? static_cast<char16_t>(u + 32) : u;
    return c.toCaseFolded().unicode();
}

// Digit runs by value, everything else by its case-folded code.
int CompareNatural(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i].unicode()) && IsDigit(b[j].unicode())) {
            // Leading zeros do not change the value; then the longer run is the larger number,
            // and runs of the same length compare digit by digit.
            while (i < a.size() && a[i] == u'0')
                ++i;
            while (j < b.size() && b[j] == u'0')
                ++j;
            qsizetype ie = i;
            qsizetype je = j;
            while (ie < a.size() && IsDigit(a[ie].unicode()))
                ++ie;
            while (je < b.size() && IsDigit(b[je].unicode()))
                ++je;
            if (ie - i != je - j)
                return ie - i < je - j ? -1 : 1;
            for (; i < ie; ++i, ++j)
                if (a[i] != b[j])
                    return a[i] < b[j] ? -1 : 1;
            continue;
        }
        const char16_t ca = Folded(a[i]);
        const char16_t cb = Folded(b[j]);
        if (ca != cb)
            return ca < cb ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < a.size())
        return 1;
    return j < b.size() ? -1 : 0;
}

// The current file itself: the same name, case aside.
bool IsSelf(QStringView strName, QStringView strCurrent)
{
    return strName.size() == strCurrent.size() && strName.compare(strCurrent, Qt::CaseInsensitive) == 0;
}

// One entry of a folder listing.
struct Entry
{
    QString strName;
    unsigned char nType; // the listing's d_type
};

// The folder of a path (up to and with its last '/'), the name after it, and the folder's
// listing, open for one pass.
class Listing
{
public:
    explicit Listing(const QString& strPath)
    {
        const qsizetype nSlash = strPath.lastIndexOf(u'/');
        if (nSlash < 0)
            return;
        strFolder = strPath.left(nSlash + 1);
        strCurrent = strPath.mid(nSlash + 1);
        pDir = ::opendir(QKEncodePath(strFolder).constData());
    }
    ~Listing()
    {
        if (pDir)
            ::closedir(pDir);
    }
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

    // False for a path without a '/'.
    bool HasFolder() const { return !strFolder.isNull(); }

    // Calls fn(entry) for each entry in the order the system lists them, "." and ".."
    // included; nothing when the folder cannot be read.
    template <typename Fn>
    void ForEach(Fn fn)
    {
        while (const dirent* pEntry = pDir ? ::readdir(pDir) : nullptr)
            fn(Entry { QKDecodePath(QByteArray::fromRawData(pEntry->d_name, static_cast<qsizetype>(std::strlen(pEntry->d_name)))), pEntry->d_type });
    }

    // A regular file, links followed. The listing's type answers without a look at the file
    // itself, except for links and on file systems that do not tell the type.
    bool IsRegularFile(const Entry& entry) const
    {
        if (entry.nType == DT_REG)
            return true;
        if (entry.nType != DT_LNK && entry.nType != DT_UNKNOWN)
            return false;
        struct stat st
        { };
        return ::fstatat(::dirfd(pDir), QKEncodePath(entry.strName).constData(), &st, 0) == 0 && S_ISREG(st.st_mode);
    }

    QString strFolder;
    QString strCurrent;

private:
    DIR* pDir { nullptr };
};

} // namespace

int NaturalCompare(QStringView a, QStringView b)
{
    if (const int n = CompareNatural(a, b))
        return n;
    if (const int n = a.compare(b, Qt::CaseInsensitive))
        return n < 0 ? -1 : 1;
    if (const int n = a.compare(b, Qt::CaseSensitive))
        return n < 0 ? -1 : 1;
    return 0;
}

bool IsMediaName(QStringView strName)
{
    const qsizetype nDot = strName.lastIndexOf(u'.');
    if (nDot < 0)
        return false;
    const QStringView strType = strName.mid(nDot + 1);
    if (strType.size() < 2 || strType.size() > 4)
        return false;
    // The type folded once, so that each of the 24 tests is a plain comparison.
    std::array<char16_t, 4> folded {};
    for (qsizetype i = 0; i < strType.size(); ++i)
        folded[static_cast<size_t>(i)] = Folded(strType[i]);
    const QStringView strFolded(folded.data(), strType.size());
    for (const QStringView strMedia : kMediaTypes)
        if (strFolded == strMedia)
            return true;
    return false;
}

QString FindNext(const QString& strPath)
{
    Listing dir(strPath);
    if (!dir.HasFolder())
        return strPath;
    bool bSelfSeen = false;
    QString strNext; // the smallest media entry above the current one
    QString strFirst; // the smallest media file that is not the current one
    dir.ForEach([&](const Entry& entry) {
        if (IsSelf(entry.strName, dir.strCurrent)) {
            bSelfSeen = true;
            return;
        }
        if (!IsMediaName(entry.strName))
            return;
        if (NaturalCompare(entry.strName, dir.strCurrent) > 0 && (strNext.isNull() || NaturalCompare(entry.strName, strNext) < 0))
            strNext = entry.strName;
        if ((strFirst.isNull() || NaturalCompare(entry.strName, strFirst) < 0) && dir.IsRegularFile(entry))
            strFirst = entry.strName;
    });
    // Without the current file in the folder there is no place to go on from: only the wrap.
    if (bSelfSeen && !strNext.isNull()) {
        if (QKPathIsFile(dir.strFolder + strNext))
            return dir.strFolder + strNext;
        // The walk ends at its candidate even when that is no file (a folder named like
        // media): the wrap can only reach what lies before it.
        if (!strFirst.isNull() && NaturalCompare(strFirst, strNext) > 0)
            strFirst.clear();
    }
    return strFirst.isNull() ? strPath : dir.strFolder + strFirst;
}

QString FindPrev(const QString& strPath)
{
    Listing dir(strPath);
    if (!dir.HasFolder())
        return strPath;
    bool bSelfSeen = false;
    QString strPrev; // the largest media entry below the current one
    QString strLast; // the largest media entry of all, the current one included
    dir.ForEach([&](const Entry& entry) {
        const bool bSelf = IsSelf(entry.strName, dir.strCurrent);
        bSelfSeen = bSelfSeen || bSelf;
        if (!IsMediaName(entry.strName))
            return;
        if (strLast.isNull() || NaturalCompare(entry.strName, strLast) > 0)
            strLast = entry.strName;
        if (!bSelf && NaturalCompare(entry.strName, dir.strCurrent) < 0 && (strPrev.isNull() || NaturalCompare(entry.strName, strPrev) > 0))
            strPrev = entry.strName;
    });
    // Without the current file in the folder, every media entry lies before it.
    if (!bSelfSeen)
        strPrev = strLast;
    if (!strPrev.isNull() && QKPathIsFile(dir.strFolder + strPrev))
        return dir.strFolder + strPrev;
    if (!strLast.isNull() && QKPathIsFile(dir.strFolder + strLast))
        return dir.strFolder + strLast;
    return strPath;
}

} // namespace QKFolderWalk
