#pragma once
// The program's settings files are UTF-16LE with a byte order mark. The tests write such files
// by hand and read the program's own back through these two helpers.
#include <QString>

namespace orbeltest {

// The text of a file after its FF FE mark; "<missing>" when the file cannot be read and
// "<no mark>" when it does not start with the mark.
QString ReadWideFile(const QString& path);

// Writes FF FE and the text in UTF-16LE, replacing the file. False if it cannot be written.
bool WriteWideFile(const QString& path, const QString& text);

} // namespace orbeltest
