#include "player/CQKPreparedStart.h"

#include "engine/qkplay.h"
#include "platform/QKFilePath.h"

void CQKPreparedStart::Begin(const QString& strPath)
{
    if (strPath.isEmpty() || !QKPathIsFile(strPath))
        return;
    // The name's own bytes, as the play thread hands them over, so the engine knows it again.
    const QByteArray utf8Path = QKEncodePath(strPath);
    if (static_cast<size_t>(utf8Path.size()) >= QKPLAY_MAX_PATH)
        return;
    qkplay_prepare(utf8Path.constData());
    m_bPending = true;
}

void CQKPreparedStart::End(bool bPlayStarted)
{
    if (!m_bPending)
        return;
    m_bPending = false;
    // A playback that was started takes the prepared file over or replaces it itself; a
    // discard now could come before the play thread got to it.
    if (!bPlayStarted)
        qkplay_prepare(nullptr);
}
