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

#include "controls/CQKSlider.h"
#include "controls/CQKStatic.h"
#include "platform/CQKPlayWnd.h"
#include "platform/QKFilePath.h"
#include "platform/QKMessages.h"
#include "platform/QKSystemDialogs.h"
#include "player/QKFolderWalk.h"
#include "player/QKPlayTime.h"
#include "player/QKPlayerOptions.h"
#include "player/QKWide.h"
#include "toolkit/CQKMessageDlg.h"

#include <chrono>
#include <cstring>

namespace {

bool IsExistingFile(const QString& strPath)
{
    return QKPathIsFile(strPath);
}

// The open dialog's filter: all media, video, audio, seven narrower groups, and all files.
constexpr const char16_t* kOpenFilter = u"Media Files (*.avi;*.ogg;*.ogm;*.wmv;*.asf;*.dic;*.mpg;*.mpeg;*.qt;*.mov;*.m1v;*.m2v;*.ts;*.mts;*.m2ts;*.mp4;*.3gp;*.3g2;*.flv;*.rv;*.rm;*.rmvb;*.mkv;*.pmp;*.nut;*.dsm;*.roq;*.divx;*.f4v;*.m4v;*.vob;*.dat;*.webm;*.gif;*.wav;*.ogg;*.wma;*.mpa;*.mp2;*.mp3;*.m4a;*.ac3;*.au;*.aif;*.aiff;*.snd;*.aac;*.amr)|*.avi;*.ogg;*.ogm;*.wmv;*.asf;*.dic;*.mpg;*.mpeg;*.qt;*.mov;*.m1v;*.m2v;*.ts;*.mts;*.m2ts;*.mp4;*.3gp;*.3g2;*.flv;*.rv;*.rm;*.rmvb;*.mkv;*.pmp;*.nut;*.dsm;*.roq;*.divx;*.f4v;*.m4v;*.vob;*.dat;*.webm;*.gif;*.wav;*.ogg;*.wma;*.mpa;*.mp2;*.mp3;*.m4a;*.ac3;*.au;*.aif;*.aiff;*.snd;*.aac;*.amr|"
                                        u"Video Files (*.avi;*.ogg;*.ogm;*.wmv;*.asf;*.dic;*.mpg;*.mpeg;*.qt;*.mov;*.m1v;*.m2v;*.ts;*.mts;*.m2ts;*.mp4;*.3gp;*.3g2;*.flv;*.rv;*.rm;*.rmvb;*.mkv;*.pmp;*.nut;*.dsm;*.roq;*.divx;*.f4v;*.m4v;*.vob;*.dat;*.webm)|*.avi;*.ogg;*.ogm;*.wmv;*.asf;*.dic;*.mpg;*.mpeg;*.qt;*.mov;*.m1v;*.m2v;*.ts;*.mts;*.m2ts;*.mp4;*.3gp;*.3g2;*.flv;*.rv;*.rm;*.rmvb;*.mkv;*.pmp;*.nut;*.dsm;*.roq;*.divx;*.f4v;*.m4v;*.vob;*.dat;*.webm|"
                                        u"Audio files (*.wav;*.flac;*.ape;*.dsf;*.ogg;*.wma;*.mpa;*.mp2;*.mp3;*.m4a;*.ac3;*.au;*.aif;*.aiff;*.snd;*.aac;*.amr)|*.wav;*.flac;*.ape;*.dsf;*.ogg;*.wma;*.mpa;*.mp2;*.mp3;*.m4a;*.ac3;*.au;*.aif;*.aiff;*.snd;*.aac;*.amr|"
                                        u"MPEG Files (*.mpg;*.mpeg;*.m2v;*.m1v;*.m2ts;*.mts;*.ts;*.vob)|*.mpg;*.mpeg;*.m2v;*.m1v;*.m2ts;*.mts;*.ts;*.vob|"
                                        u"Windows Media Files (*.asf; *.wmv)|*.asf; *.wmv|"
                                        u"ISO files (*.mp4;*.3gp;*.3g2)|*.mp4;*.3gp;*.3g2|"
                                        u"Flash Video files (*.flv;*.f4v;*.m4v)|*.flv;*.f4v;*.m4v|"
                                        u"Real Media (*.rv;*.rm;*.rmvb)|*.rv;*.rm;*.rmvb|"
                                        u"AVI files (*.avi)|*.avi|"
                                        u"MOV files (*.mov)|*.mov|"
                                        u"All Files (*.*)|*.*;|";

// The first index of the queue that names `strPath`, case aside; -1 for none.
int FindInQueue(const QStringList& arrFiles, const QString& strPath)
{
    for (int i = 0; i < arrFiles.size(); ++i)
        if (arrFiles[i].compare(strPath, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

} // namespace

bool CQKPlayerDlg::LoadMediaInfo()
{
    int nReserved = 0;
    double dReserved = 0.0;
    return qkplaydll_GetMediaInfoEx(QKWide(m_strMediaPath), &m_bHasVideo, &nReserved, &m_nVideoWidth, &m_nVideoHeight, &m_dDuration, &dReserved) != 0;
}

void CQKPlayerDlg::UpdateTaskbarPlayState(bool bPlaying, bool bPaused)
{
    if (!m_pTaskbarList)
        return;
    m_thumbButtons[1].hIcon = bPlaying ? QKICON_PAUSE : QKICON_PLAY;
    m_pTaskbarList->ThumbBarUpdateButtons(this, 1, &m_thumbButtons[1]);
    m_pTaskbarList->SetOverlayIcon(this, bPaused ? QKICON_PAUSE : QKICON_NONE);
    m_pTaskbarList->SetProgressState(this, bPaused ? TBPF_PAUSED : TBPF_NORMAL);
}

void CQKPlayerDlg::OnPlayPause()
{
    if (!IsExistingFile(m_strMediaPath)) {
        OnFileOpen();
        return;
    }
    if (qkplaydll_IsPlaying()) {
        SetPlayFaces(false);
        UpdateTaskbarPlayState(false, true);
        qkplaydll_PauseOrResume();
        KillTimer(QKTIMER_POSITION);
        return;
    }
    if (qkplaydll_IsReady()) {
        SetPlayFaces(true);
        UpdateTaskbarPlayState(true, false);
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
    SetTimeText(m_pTimeTotal, m_pBarTimeTotal, QKPlayTime::Format(m_dDuration));
    UpdateTitle();
    SetPlayFaces(true);
    if (m_pTaskbarList)
        m_pTaskbarList->SetMedia(this, m_strMediaPath, m_dDuration, !m_bAudioOnly);
    UpdateTaskbarPlayState(true, false);
}

void CQKPlayerDlg::OnStop()
{
    StopAndJoinPlayThread();
    KillTimer(QKTIMER_POSITION);
    if (m_wndPlay)
        m_wndPlay->Show(false);
    SetPlayFaces(false);
    UpdateTaskbarPlayState(false, false);
    // The bottom bar's seek bar keeps its place until the next playback moves it; only the
    // panel's goes back to the start.
    if (m_pPosSlider)
        m_pPosSlider->SetPos(0.0, 1);
    const QString strZero = QKPlayTime::Format(0.0);
    SetTimeText(m_pTimeCurrent, m_pTimeTotal, strZero);
    if (m_pTaskbarList) {
        SetWindowText(QString::fromUtf16(kTitle));
        m_pTaskbarList->SetProgressValue(this, 0, 1);
    }
    SetTimeText(m_pBarTimeCurrent, m_pBarTimeTotal, strZero);
    m_bAudioOnly = 0;
    InvalidateRect(&m_rcVideo);
}

void CQKPlayerDlg::OnPlayEnd()
{
    PostMessage(WM_COMMAND, QKPlayerOptions::bAutoPlayNext ? QKCMD_PLAYEND_NEXT : QKCMD_STOP, 0);
}

void CQKPlayerDlg::OnNextFile()
{
    SetCursor(IDC_WAIT);
    SelectNextFile();
    if (IsExistingFile(m_strMediaPath)) {
        OnStop();
        OnPlayPause();
    }
    SetCursor(IDC_ARROW);
}

void CQKPlayerDlg::OnPrevFile()
{
    SetCursor(IDC_WAIT);
    SelectPrevFile();
    if (IsExistingFile(m_strMediaPath)) {
        OnStop();
        OnPlayPause();
    }
    SetCursor(IDC_ARROW);
}

void CQKPlayerDlg::OnMute()
{
    QKPlayerOptions::bMute = !QKPlayerOptions::bMute;
    SetMuteFaces();
    qkplaydll_SetMute(QKPlayerOptions::bMute);
}

bool CQKPlayerDlg::IsHeld(const CQKSlider* pSlider)
{
    return pSlider && pSlider->hWndHost && GetCapture() == pSlider->hWndHost && pSlider->bFocused;
}

void CQKPlayerDlg::OnPositionTimer()
{
    const double dCurrent = qkplaydll_getCurrentPos();
    const double dSeeking = qkplaydll_getLastSeekingPos();
    // The larger of the two, read afresh: after a seek the engine's position lags behind.
    double p = dCurrent > dSeeking ? qkplaydll_getCurrentPos() : qkplaydll_getLastSeekingPos();
    p = QKPlayTime::Clamp(p, m_dDuration);
    const QString strTime = QKPlayTime::Format(p);
    if (!strTime.contains(QLatin1Char('-'))) {
        SetTimeText(m_pTimeCurrent, m_pBarTimeCurrent, strTime);
        for (CQKSlider* pSlider : { m_pPosSlider, m_pBarPosSlider }) {
            if (pSlider && !IsHeld(pSlider))
                pSlider->SetPos(QKPlayTime::ToSlider(p, m_dDuration, pSlider->dMaxPos), 1);
        }
    }
    if (m_pTaskbarList)
        m_pTaskbarList->SetProgressValue(this, QKPlayTime::ToHundredths(p), QKPlayTime::ToHundredths(m_dDuration));
}

void CQKPlayerDlg::OnSliderChanged(CQKSlider* pSlider)
{
    if (!pSlider)
        return;
    const double v = pSlider->GetPos();
    if (pSlider == m_pPosSlider || pSlider == m_pBarPosSlider) {
        if (!qkplaydll_IsReady()) {
            // Seeking needs an open file.
            for (CQKSlider* p : { m_pPosSlider, m_pBarPosSlider })
                if (p)
                    p->SetPos(0.0, 1);
            return;
        }
        if (CQKSlider* pTwin = pSlider == m_pPosSlider ? m_pBarPosSlider : m_pPosSlider)
            pTwin->SetPos(v, 1);
        qkplaydll_SetCurrentPos(v * m_dDuration / pSlider->dMaxPos);
        if (qkplaydll_IsPlaying())
            return;
        // While paused the label follows the bar at once, from the bar's own value read as
        // seconds, until the next tick after resuming puts the media time back.
        SetTimeText(m_pTimeCurrent, m_pBarTimeCurrent, QKPlayTime::Format(v));
        return;
    }
    if (pSlider == m_pVolSlider || pSlider == m_pBarVolSlider) {
        QKPlayerOptions::dVolumeScale = v;
        if (CQKSlider* pTwin = pSlider == m_pVolSlider ? m_pBarVolSlider : m_pVolSlider)
            pTwin->SetPos(v, 1);
        qkplaydll_SetVolume(v / pSlider->dMaxPos);
        if (m_pTaskbarList)
            m_pTaskbarList->SetVolume(this, v / pSlider->dMaxPos);
        // Moving the volume while a file is open lifts the mute; with none it does not.
        if (qkplaydll_IsReady() && QKPlayerOptions::bMute)
            OnMute();
    }
}

void CQKPlayerDlg::ShowMediaError()
{
    ::ShowMediaError();
}

void CQKPlayerDlg::OnFileOpen()
{
    const QStringList arrChosen = QKGetOpenFileNames(this, QString::fromUtf16(kOpenFilter), true);
    if (arrChosen.isEmpty())
        return;
    m_arrFiles = arrChosen;
    SelectFirstPlayable();
    if (IsExistingFile(m_strMediaPath)) {
        PlaySelectedFile();
    } else {
        ShowMediaError();
    }
}

void CQKPlayerDlg::OnDropFiles(const QStringList& paths)
{
    // The queue is emptied before the new files are probed, and what plays goes on playing
    // while they are: a drop of nothing playable ends with the message, an empty current path
    // and the old playback still running.
    m_arrFiles = paths;
    if (m_arrFiles.isEmpty())
        return;
    SelectFirstPlayable();
    if (IsExistingFile(m_strMediaPath))
        PlaySelectedFile();
    else
        ShowMediaError();
}

void CQKPlayerDlg::PlaySelectedFile()
{
    // The selection has just probed the file: its facts are not asked for again.
    m_bInfoLoaded = 1;
    OnStop();
    OnPlayPause();
    m_bInfoLoaded = 0;
}

void CQKPlayerDlg::SelectFirstPlayable()
{
    if (m_arrFiles.isEmpty())
        return;
    m_strMediaPath = m_arrFiles.first();
    while (!m_arrFiles.isEmpty()) {
        if (LoadMediaInfo())
            return;
        m_bHasVideo = 0;
        m_strMediaPath.clear();
        m_arrFiles.removeFirst();
        if (m_arrFiles.isEmpty())
            return;
        m_strMediaPath = m_arrFiles.first();
    }
}

void CQKPlayerDlg::SelectNextFile()
{
    SelectInQueue(1);
}

void CQKPlayerDlg::SelectPrevFile()
{
    SelectInQueue(-1);
}

void CQKPlayerDlg::SelectInQueue(int nStep)
{
    const int n = static_cast<int>(m_arrFiles.size());
    if (n == 0) {
        // A playback that runs is left running.
        m_strMediaPath.clear();
        UpdateTitle();
        return;
    }
    if (n == 1) {
        if (nStep > 0)
            FindNextInFolder();
        else
            FindPrevInFolder();
        return;
    }
    // The first entry that names the current file counts; the queue wraps both ways.
    const int i = FindInQueue(m_arrFiles, m_strMediaPath);
    if (i < 0)
        m_strMediaPath = m_arrFiles.first();
    else
        m_strMediaPath = m_arrFiles[(i + nStep + n) % n];
}

void CQKPlayerDlg::FindNextInFolder()
{
    m_strMediaPath = QKFolderWalk::FindNext(m_strMediaPath);
}

void CQKPlayerDlg::FindPrevInFolder()
{
    m_strMediaPath = QKFolderWalk::FindPrev(m_strMediaPath);
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
