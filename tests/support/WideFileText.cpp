#include "support/WideFileText.h"

#include <QFile>

namespace orbeltest {

QString ReadWideFile(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("<missing>");
    const QByteArray bytes = f.readAll();
    if (bytes.size() < 2 || static_cast<uint8_t>(bytes[0]) != 0xFF || static_cast<uint8_t>(bytes[1]) != 0xFE)
        return QStringLiteral("<no mark>");
    QString text;
    for (qsizetype i = 2; i + 1 < bytes.size(); i += 2)
        text.append(QChar(static_cast<char16_t>(static_cast<uint8_t>(bytes[i]) | (static_cast<uint8_t>(bytes[i + 1]) << 8))));
    return text;
}

bool WriteWideFile(const QString& path, const QString& text)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    QByteArray bytes("\xFF\xFE", 2);
    for (QChar c : text) {
        bytes.append(static_cast<char>(c.unicode() & 0xFF));
        bytes.append(static_cast<char>(c.unicode() >> 8));
    }
    return f.write(bytes) == bytes.size();
}

} // namespace orbeltest
