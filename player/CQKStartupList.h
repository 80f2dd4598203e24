#pragma once
// CQKStartupList: the list of files a start of the program hands to the player that shows
// them, skin/playercommand.dat.
//
// The file is a wide XML document with a root `startupfiles` and one `item` per file, whose
// attribute `file` holds the argument as it stood on the command line, a relative path made
// absolute against the working folder of the start that wrote it. It has no version, time stamp or owner mark, and it stays on disk
// after it was read; the next start replaces it.
#include <QString>
#include <QStringList>

class CQKXmlDocument;

class CQKStartupList
{
public:
    // Replaces the file at strPath: the old file is deleted first; with no arguments at all
    // nothing more happens. Otherwise every argument, the first included, that exists on disk
    // and is not the program's own path strModule (compared without regard to case) becomes
    // an item, in order. The file is written also when no argument was kept. Returns whether
    // a file was written; pWritten, when given, receives the entries as written.
    static bool Write(const QString& strPath, const QStringList& args, const QString& strModule, QStringList* pWritten = nullptr);

    // Reads the entries of the file at strPath into arrFiles, in order; an item without a
    // `file` attribute gives an empty entry. False, with arrFiles untouched, when the file
    // cannot be read. A document without a `startupfiles` root reads as a list without entries.
    static bool Read(const QString& strPath, QStringList& arrFiles);
    // The entries of a document already loaded.
    static QStringList Entries(const CQKXmlDocument& doc);
};
