#pragma once
// The walk through the current file's folder behind previous and next, when the queue holds a
// single file.
//
// The folder is seen in natural order, as a file manager lists it: letters without regard to
// case, runs of digits by their value ("clip 2" before "clip 10"). The listing is never
// sorted: the next entry is the smallest one above the current file, the previous the largest
// below it, so each step costs one pass over the folder, whatever its size.
//
// An entry counts as media when its name ends in one of the walk's 24 types (fewer than the
// open dialog offers: a ".mov" file is opened but never walked to). Folders and other entries
// count too when their names say so; they are only refused at the end, where a candidate must
// be an existing regular file. The entry whose name equals the current one (case aside) is the
// current file itself, whatever its type, so that a file of another type still marks its place.
//
//   walk      | candidate                                | wrap, when there is none or it is no file
//   ----------+------------------------------------------+-------------------------------------------
//   next      | smallest media entry above the current   | smallest media file other than the
//             | one (none when the current file is gone) | current one, below the candidate if any
//   previous  | largest media entry below the current    | largest media entry of all, the current
//             | one (of all when the current one is gone)| file included, if it is a file
//
// So a lone file is its own previous, and next from it finds nothing; both leave the path as it
// was. Next stops at its candidate: a wrap never reaches past it.
#include <QString>
#include <QStringView>

namespace QKFolderWalk {

// The natural order of two names: negative, 0 or positive. Digits (0-9) compare by the value
// of their run, other characters by their case-folded code; names that tie there fall back to
// the case-folded text itself ("clip 01" before "clip 1"), then to the exact code units
// ("Clip" before "clip"). Only equal names give 0, so the order is total.
int NaturalCompare(QStringView a, QStringView b);

// The name ends in one of the walk's media types, case aside ("x.AVI" does).
bool IsMediaName(QStringView strName);

// The file after or before strPath in its folder by the rules above, or strPath itself when
// there is none (no '/' in it, a folder that cannot be read, no other media file).
QString FindNext(const QString& strPath);
QString FindPrev(const QString& strPath);

} // namespace QKFolderWalk
