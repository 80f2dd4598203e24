#pragma once
// Small services of the system that the program needs outside any window.
#include <QString>
#include <cstdint>

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
