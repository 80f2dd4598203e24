#pragma once
// The player's ten persistent settings.
//
// They live in skin/playeroptions.dat, a wide XML document with one root element `options`
// whose attributes are the keys below, in this order when written. The file is read once at
// start and written once at a normal end; in between the values are plain process-wide
// variables that any part of the player reads and writes directly, on the main thread.
//
// The variables bear the names of their keys and sit in a namespace of their own, so that
// short names such as `dr` and `ds` do not clash with local names elsewhere.
#include <QString>
#include <cstdint>

class CQKXmlDocument;

namespace QKPlayerOptions {

// Built-in values, in force before the file is read and whenever it cannot be read.
inline constexpr int32_t kDefaultDr = 2;
inline constexpr int32_t kDefaultDs = 1;
inline constexpr double kDefaultVolumeScale = 90.0;

inline int32_t dr { kDefaultDr }; // display ratio mode, 0 to 7
inline int32_t ds { kDefaultDs }; // window size mode at the start of a video: 0 200%, 1 100%, 2 50%, 3 nothing
inline int32_t bAutoPlayNext { 0 }; // at the end of a file go on with the next one
inline int32_t bMute { 0 }; // sound muted
inline int32_t bOnlyOneInstance { 1 }; // a later start hands its files to the running player
inline double dVolumeScale { kDefaultVolumeScale }; // volume in percent; not clamped when read
inline int32_t bAlwaysOnTop { 0 }; // window stays on top
inline int32_t nYDel { 0 }; // colour adjustment: luma delta
inline int32_t nUDel { 0 }; // colour adjustment: first chroma delta
inline int32_t nVDel { 0 }; // colour adjustment: second chroma delta

// The file name of the options, inside the folder for written files.
inline constexpr char16_t kFileName[] = u"playeroptions.dat";

// Reads the options from the file at strPath. A missing or unreadable file, or one without
// an `options` root, leaves every value as it is. Of an existing `options` element, a missing
// key among the first five (dr, ds, bAutoPlayNext, bMute, bOnlyOneInstance) reads as 0, while
// a missing one among the last five keeps its value: a file without bOnlyOneInstance thus
// turns the single instance off. Values are not checked; text that is not a number reads 0.
void Load(const QString& strPath);
// The same for a document already loaded.
void Apply(const CQKXmlDocument& doc);

// Writes all ten keys to strPath, replacing the file. Integers are written with "%d" and the
// volume with "%g" (six significant digits: 33.33333 comes back as 33.3333). Returns false
// when the file could not be written; the caller says nothing about it.
bool Save(const QString& strPath);

// Puts every value back to its built-in value.
void ResetToDefaults();

} // namespace QKPlayerOptions
