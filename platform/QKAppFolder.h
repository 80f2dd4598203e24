#pragma once
// Where the program's files are.
//
// The program reads its data (the skin folder) from beside its own executable, whatever the
// working directory. The two files it writes (the options and the start-up list) go to the
// skin folder beside the executable when that folder is writable, which keeps a portable copy
// self-contained, and otherwise to $XDG_CONFIG_HOME/orbel-player/skin/ (by default
// ~/.config/orbel-player/skin/), which is where an installed copy in a system folder writes.
#include <QString>

// The real folder of the running executable, with a trailing '/'. Cached after the first call.
QString QKAppFolder();

// The folder that files written by the program go to, with a trailing '/': "<app>/skin/" when
// that folder is writable, else the per-user folder, which is created on demand. Both files
// the program writes live directly in this folder.
QString QKWritableSkinFolder();

// Tests point the program's folder somewhere else (an empty text restores the real one).
void QKSetAppFolderForTesting(const QString& folder);
