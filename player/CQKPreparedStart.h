#pragma once
// CQKPreparedStart: the first file of a start readied by the engine while the main window
// comes up, before the start-up list is acted on.
//
// The list is read 100 ms after the window came up, and only then does its first playable
// file start. That time is not lost: the engine is made, the sound output opened and the
// file probed and opened paused meanwhile, on a thread of the engine (qkplay_prepare). What
// a person sees and hears does not change: the prepared file stays paused and hidden until
// the list is read and starts the same file; a list that starts another file, or none,
// closes it. Nothing here ever waits for the engine.
#include <QString>

class CQKPreparedStart
{
public:
    // Readies strPath, the first entry of the list this start wrote, when it is a file.
    void Begin(const QString& strPath);
    // The list was acted on. bPlayStarted: a playback was started by it (of the prepared
    // file or another, which replaces it); otherwise what was prepared is closed.
    void End(bool bPlayStarted);
    bool IsPending() const { return m_bPending; }

private:
    bool m_bPending { false };
};
