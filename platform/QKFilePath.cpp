#include "platform/QKFilePath.h"

#include <climits>
#include <cstring>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The length of the valid UTF-8 sequence at p (of n bytes), or 0 when there is none: no
// overlong forms, no surrogates, nothing above U+10FFFF.
int ValidSequence(const unsigned char* p, qsizetype n)
{
    const unsigned c = p[0];
    if (c < 0x80)
        return 1;
    int nLength = 0;
    char32_t cp = 0;
    if (c >= 0xC2 && c <= 0xDF) {
        nLength = 2;
        cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        nLength = 3;
        cp = c & 0x0F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        nLength = 4;
        cp = c & 0x07;
    } else {
        return 0;
    }
    if (n < nLength)
        return 0;
    for (int i = 1; i < nLength; ++i) {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (p[i] & 0x3F);
    }
    if ((nLength == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) || (nLength == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
        return 0;
    return nLength;
}

bool StatPath(const QString& path, struct stat& st)
{
    return !path.isEmpty() && ::stat(QKEncodePath(path).constData(), &st) == 0;
}

} // namespace

QString QKDecodePath(const QByteArray& bytes)
{
    QString text;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype n = bytes.size();
    // Runs of valid text are decoded in one go: the folder walk decodes every name of a folder.
    qsizetype nRun = 0;
    for (qsizetype i = 0; i < n;) {
        const int nLength = ValidSequence(p + i, n - i);
        if (nLength == 0) {
            text.append(QString::fromUtf8(bytes.constData() + nRun, i - nRun));
            text.append(QChar(static_cast<char16_t>(0xDC00 + p[i])));
            nRun = ++i;
            continue;
        }
        i += nLength;
    }
    if (nRun == 0)
        return QString::fromUtf8(bytes);
    text.append(QString::fromUtf8(bytes.constData() + nRun, n - nRun));
    return text;
}

QByteArray QKEncodePath(const QString& path)
{
    QByteArray bytes;
    const qsizetype n = path.size();
    qsizetype nStart = 0;
    // Runs of ordinary text go through the UTF-8 encoder; an escaped byte is put back as it was.
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t u = path.at(i).unicode();
        const bool bPaired = QChar::isLowSurrogate(u) && i > 0 && QChar::isHighSurrogate(path.at(i - 1).unicode());
        if (u >= 0xDC80 && u <= 0xDCFF && !bPaired) {
            bytes += path.mid(nStart, i - nStart).toUtf8();
            bytes += static_cast<char>(u - 0xDC00);
            nStart = i + 1;
        }
    }
    bytes += path.mid(nStart).toUtf8();
    return bytes;
}

QString QKAbsolutePath(const QString& path)
{
    if (path.isEmpty() || path.startsWith(QLatin1Char('/')))
        return path;
    // Qt's own file names would turn the bytes of a name that is not UTF-8 into U+FFFD, so
    // the working folder is read and joined here.
    std::string cwd(PATH_MAX, '\0');
    if (!::getcwd(cwd.data(), cwd.size()))
        return path;
    cwd.resize(std::strlen(cwd.c_str()));
    QString folder = QKDecodePath(QByteArray::fromStdString(cwd));
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder + path;
}

bool QKPathExists(const QString& path)
{
    struct stat st
    { };
    return StatPath(path, st);
}

bool QKPathIsFile(const QString& path)
{
    struct stat st
    { };
    return StatPath(path, st) && S_ISREG(st.st_mode);
}
