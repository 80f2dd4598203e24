#pragma once
// Small services of the system that the program needs outside any window.
#include <QString>
#include <cstdint>
#include <functional>

class QUrl;

// Milliseconds of a monotonic clock (it never goes back and does not follow the wall clock).
uint64_t QKGetTickCount();
// The longest time in milliseconds between two presses that make a double click, as the
// desktop sets it.
uint64_t QKGetDoubleClickTime();

// A D-Bus session bus answers. The taskbar counterpart (media controls and progress on the
// desktop) is used only then. The answer is found once and kept.
bool QKHasSessionBus();

// The clipboard's text, or an empty text.
QString QKGetClipboardText();
void QKSetClipboardText(const QString& text);

// Opens an address (web address, or a file or folder) with the desktop's default handler.
// False when nothing could take it.
bool QKOpenURL(const QString& address);
// The link control's way to a browser: opens a web address with the desktop's default
// handler, as QKOpenURL does, and returns whether it could. An empty address opens nothing.
bool OpenURL(const QString& address);
// Replaces what hands an address to the desktop (tests: no browser is started); an empty
// function puts the desktop's handler back. The function gets the address as resolved.
void QKSetUrlOpener(std::function<bool(const QUrl&)> opener);

// The desktop ends a session with SIGTERM or SIGHUP, a terminal with SIGINT. From this call on,
// each of them calls fnOnSignal from the event loop of the calling thread instead of ending the
// process at once, so that the program can end the way its close command does. The signal
// handler itself only writes to a pipe. False when the pipe could not be made (the signals then
// keep their default action).
bool QKWatchEndSignals(std::function<void()> fnOnSignal);
// Gives the three signals their default action back and stops watching.
void QKStopWatchingEndSignals();
