#pragma once
// File names as the program keeps them (Qt Core only, so that the readers of the program's
// files can be built and fuzzed without a window system).
#include <QByteArray>
#include <QString>

// File names on Linux are bytes, and not every name is valid UTF-8. A name is decoded as UTF-8
// where it is valid; each byte that does not belong to a valid sequence becomes the lone unit
// U+DC80 + (byte - 0x80), which no valid text holds. QKEncodePath turns such a text back into
// the very bytes it came from (valid text gives its UTF-8), and the engine reads such a path in
// the same way, so the name survives from the command line to the play call.
QString QKDecodePath(const QByteArray& bytes);
QByteArray QKEncodePath(const QString& path);
// The name (in the form above) made absolute against the working folder of this process.
QString QKAbsolutePath(const QString& path);
// The name (in the form above) exists / is a regular file, links followed.
bool QKPathExists(const QString& path);
bool QKPathIsFile(const QString& path);
