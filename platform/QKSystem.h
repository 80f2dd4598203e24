#pragma once
// Small services of the system that the program needs outside any window.
#include <QString>
#include <cstdint>
#include <functional>

// Milliseconds of a monotonic clock (it never goes back and does not follow the wall clock).
uint64_t QKGetTickCount();

// A D-Bus session bus answers. The taskbar counterpart (media controls and progress on the
// desktop) is used only then. The answer is found once and kept.
bool QKHasSessionBus();

// The clipboard's text, or an empty text.
QString QKGetClipboardText();
void QKSetClipboardText(const QString& text);

// Opens an address (web address, or a file or folder) with the desktop's default handler.
// False when nothing could take it.
bool QKOpenURL(const QString& address);

// The desktop ends a session with SIGTERM or SIGHUP, a terminal with SIGINT. From this call on,
// each of them calls fnOnSignal from the event loop of the calling thread instead of ending the
// process at once, so that the program can end the way its close command does. The signal
// handler itself only writes to a pipe. False when the pipe could not be made (the signals then
// keep their default action).
bool QKWatchEndSignals(std::function<void()> fnOnSignal);
// Gives the three signals their default action back and stops watching.
void QKStopWatchingEndSignals();

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
