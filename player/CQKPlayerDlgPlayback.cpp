// Play, pause, stop, the play thread and the end of media.
//
//   state    | how it is recognised                        | play thread | QKTIMER_POSITION
//   ---------+---------------------------------------------+-------------+-----------------
//   empty    | the current path is not an existing file    | none        | off
//   stopped  | existing file, engine not ready             | none        | off
//   playing  | qkplaydll_IsPlaying                         | running     | on
//   paused   | qkplaydll_IsReady and not playing           | running     | off
//
//   event           | from                     | to                  | action
//   ----------------+--------------------------+---------------------+-------------------
//   play            | stopped (good file)      | playing             | start
//   play            | playing                  | paused              | pause
//   play            | paused                   | playing             | resume
//   stop            | playing, paused          | stopped             | OnStop
//   new file        | any                      | playing             | OnStop, then start
//   end of media    | playing                  | stopped or next     | QKCMD_STOP (22) or
//                   |                          |                     | QKCMD_PLAYEND_NEXT (36)
#include "player/CQKPlayerDlg.h"

#include "platform/CQKPlayWnd.h"
#include "platform/QKFilePath.h"
#include "platform/QKMessages.h"
#include "player/QKPlayerOptions.h"
#include "player/QKWide.h"

#include <chrono>
#include <cstring>

namespace {

bool IsExistingFile(const QString& strPath)
{
    return QKPathIsFile(strPath);
}

} // namespace

bool CQKPlayerDlg::LoadMediaInfo()
{
    int nReserved = 0;
    double dReserved = 0.0;
    return qkplaydll_GetMediaInfoEx(QKWide(m_strMediaPath), &m_bHasVideo, &nReserved, &m_nVideoWidth, &m_nVideoHeight, &m_dDuration, &dReserved) != 0;
}

void CQKPlayerDlg::OnPlayPause()
{
    if (!IsExistingFile(m_strMediaPath)) {
        // The open-file dialog comes with the panel.
        return;
    }
    if (qkplaydll_IsPlaying()) {
        qkplaydll_PauseOrResume();
        KillTimer(QKTIMER_POSITION);
        return;
    }
    if (qkplaydll_IsReady()) {
        qkplaydll_PauseOrResume();
        SetTimer(QKTIMER_POSITION, 1000);
        return;
    }

    if (!m_bInfoLoaded) {
        if (!LoadMediaInfo()) {
            ShowMediaError();
            return;
        }
    }
    // A path the engine cannot take is refused here, where the user can be told, rather than
    // cut short on the play thread.
    if (static_cast<size_t>(QKEncodePath(m_strMediaPath).size()) >= QKPLAY_MAX_PATH) {
        ShowMediaError();
        return;
    }
    if (m_bHasVideo) {
        ApplyWindowSizeMode();
        ApplyDisplayRatio();
        m_bAudioOnly = 0;
        if (m_wndPlay)
            m_wndPlay->Show(true);
    } else {
        if (m_wndPlay)
            m_wndPlay->Show(false);
        m_bAudioOnly = 1;
        InvalidateRect(&m_rcVideo);
    }
    StartPlayThread();
    SetTimer(QKTIMER_POSITION, 1000);
}

void CQKPlayerDlg::OnStop()
{
    StopAndJoinPlayThread();
    KillTimer(QKTIMER_POSITION);
    if (m_wndPlay)
        m_wndPlay->Show(false);
    m_bAudioOnly = 0;
    InvalidateRect(&m_rcVideo);
}

void CQKPlayerDlg::OnPlayEnd()
{
    PostMessage(WM_COMMAND, QKPlayerOptions::bAutoPlayNext ? QKCMD_PLAYEND_NEXT : QKCMD_STOP, 0);
}

void CQKPlayerDlg::ShowMediaError()
{
    // The message dialog ("Tips", "Error Media File! Please Try Again.") comes with the
    // toolkit's dialogs; until then a bad file just does not play.
}

void CQKPlayerDlg::StartPlayThread()
{
    // A second start before the engine is ready would leave a running thread behind; the
    // old one is ended first so that no thread is ever lost.
    StopAndJoinPlayThread();
    // The thread gets its own copies: the start-up list may replace the path and the video
    // flag on this thread while the play call runs.
    // The name's own bytes, also where they are not valid UTF-8.
    QByteArray utf8Path = QKEncodePath(m_strMediaPath);
    qkplay_video* pVideo = m_wndPlay ? m_wndPlay->VideoTarget() : nullptr;
    const bool bAudioOnly = !m_bHasVideo;
    m_bPlayThreadDone = false;
    m_hPlayThread = std::make_unique<std::thread>(&CQKPlayerDlg::PlayThreadProc, this, std::move(utf8Path), pVideo, bAudioOnly);
}

void CQKPlayerDlg::StopAndJoinPlayThread()
{
    qkplaydll_Stop();
    if (!m_hPlayThread)
        return;
    // A stop that comes before the thread has entered the engine's play call finds nothing to
    // end, and the play call would then run to the end of the file. So the stop is repeated
    // until the thread is out; normally the first one is enough. There is no time limit.
    // Meanwhile the frames the engine still makes are taken off it here, as this thread
    // cannot paint them: otherwise the engine holds each one for a while before it stops.
    while (!m_bPlayThreadDone.load()) {
        if (m_wndPlay)
            m_wndPlay->TakeFrame();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        if (!m_bPlayThreadDone.load())
            qkplaydll_Stop();
    }
    m_hPlayThread->join();
    m_hPlayThread.reset();
}

void CQKPlayerDlg::PlayThreadProc(CQKPlayerDlg* pDlg, QByteArray utf8Path, qkplay_video* pVideo, bool bAudioOnly)
{
    // The engine takes the path in a buffer of fixed size; a longer one was refused before.
    char szPath[QKPLAY_MAX_PATH];
    std::memset(szPath, 0, sizeof(szPath));
    if (static_cast<size_t>(utf8Path.size()) < sizeof(szPath)) {
        std::memcpy(szPath, utf8Path.constData(), static_cast<size_t>(utf8Path.size()));
        qkplaydll_Play(szPath, pVideo, &pDlg->m_notify, QKM_PLAYEND, 1, 0.0, 0, 0, bAudioOnly ? 1 : 0);
    }
    pDlg->m_bPlayThreadDone = true;
}

void CQKPlayerDlg::PostFromEngine(void* pCtx, int nMessage)
{
    // The window may be gone by the time the engine posts; the static post checks. The
    // context was made from a CQKPlayerDlg pointer and is turned back into one before it
    // becomes a host pointer.
    CQKHostWnd::PostMessage(static_cast<CQKPlayerDlg*>(pCtx), static_cast<uint32_t>(nMessage), 0, 0);
}
