#pragma once
// The one playback of the process: a libmpv instance, the thread that reads its events, and
// the state that the twelve operations of qkplay.h show to the player.
//
// Events of a playback (each handled under the engine's mutex):
//
// | event                         | does                                                      |
// |-------------------------------|-----------------------------------------------------------|
// | Play                          | new session (supersedes an older one), loadfile queued    |
// | reply to loadfile             | session learns its playlist entry, or fails               |
// | file loaded (our entry)       | ready; a seek asked for while loading is sent now         |
// | end of file, end of media     | posts the notify message once (unless stopped), ends      |
// | end of file, error or stop    | ends the session without a message                        |
// | Stop                          | session stopped at once (not ready), stop queued          |
// | PauseOrResume                 | paused flag toggled at once, pause queued                 |
//
// A prepared file (Prepare) is opened paused, before any Play, by a thread of the engine's
// own: it is probed, the libmpv instance made and the file loaded with its own reply tag.
// A Play of the same file takes its playlist entry over instead of loading it again; any
// other Play, a discard or the engine's end replaces or closes it.
#include "CQKMediaProbe.h"
#include "qkplay.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mpv/client.h>
#include <mpv/render.h>
#include <mutex>
#include <string>
#include <thread>

namespace qkplay {

class CQKEngine
{
public:
    static CQKEngine& Instance();
    ~CQKEngine();

    CQKEngine(const CQKEngine&) = delete;
    CQKEngine& operator=(const CQKEngine&) = delete;

    bool Play(const std::string& strPath, qkplay_video* pVideo, const qkplay_notify* pNotify,
        int nNotifyMsg, bool bAudioOnly);
    void Stop();
    void PauseOrResume();
    bool IsPlaying();
    bool IsReady();
    double GetCurrentPos();
    double GetLastSeekingPos();
    void SetCurrentPos(double dPos);
    void SetVolume(double dVolume);
    void SetMute(bool bMute);
    void AdjustColor(int nY, int nU, int nV);

    // Starts preparing a file (UTF-8, as Play takes it); an empty path discards.
    void Prepare(const std::string& strPath);
    // The prepared probe's answer for this file, waiting for a probe under way. False when
    // the file was not prepared (or changed since), so that the caller probes it itself.
    bool PreparedProbe(const std::string& strPath, bool& bPlayable, tagQKMediaInfo& info);

    bool AttachVideo(qkplay_video* pVideo);
    bool RenderVideo(qkplay_video* pVideo, int nFbo, int nWidth, int nHeight);
    void ReportVideoSwap(qkplay_video* pVideo);
    void DetachVideo(qkplay_video* pVideo);

    // A copy of a property's text, allocated with malloc; null when unavailable.
    char* GetPropertyText(const char* pszName);

    // The video filter that applies the colour offsets; empty for (0, 0, 0).
    static std::string ColorFilter(int nY, int nU, int nV);

private:
    CQKEngine() = default;

    bool EnsureHandleLocked(std::unique_lock<std::mutex>& lk);
    static mpv_handle* CreateHandle(double dInitialVolume, int nMute, const std::string& strFilter);
    void EventLoop();
    void PrepareLoop();
    void DiscardPreparedLocked();
    bool AdoptPreparedLocked(const std::string& strPath, bool bPicture, bool bAudioOnly);
    void OnEvent(const mpv_event& ev);
    void OnLoadfileReply(const mpv_event& ev);
    void ReconcileLocked();
    void EndSessionLocked(bool bEndOfMedia, bool bError);
    void SendSeekLocked(double dPos);
    void ApplyColorLocked();
    bool SessionOpenLocked() const { return bActive && !bStopRequested && !bEnded; }

    static void OnRenderUpdate(void* pCtx);

    std::mutex mtx;
    std::condition_variable cvSession;
    mpv_handle* pMpv { nullptr };
    std::thread eventThread;
    bool bQuit { false };
    bool bCreating { false };

    // Settings that outlive a file.
    double dVolume { 1.0 };
    bool bMute { false };
    int nColorY { 0 };
    int nColorU { 0 };
    int nColorV { 0 };

    // The current session: one call of Play.
    uint64_t nSession { 0 };
    bool bActive { false };
    bool bStopRequested { false };
    bool bEnded { false };
    bool bFailed { false };
    bool bLoaded { false };
    bool bEverLoaded { false };
    bool bPaused { false };
    bool bPosted { false };
    bool bSeekPending { false };
    double dPendingSeek { 0.0 };
    double dLastSeek { 0.0 };
    double dPos { 0.0 };
    int64_t nEntryId { -1 };
    uint64_t nSupersededSession { 0 };
    bool bSupersededLoaded { false };
    qkplay_notify notify { nullptr, nullptr };
    int nNotifyMsg { 0 };

    // What the event thread saw of playlist entries, so that events that arrive before the
    // reply to loadfile are not lost.
    struct tagEnded
    {
        int64_t nId { -1 };
        int nReason { 0 };
    };
    int64_t nStartedEntry { -1 };
    int64_t nLoadedEntry { -1 };
    tagEnded recentEnds[8] {};
    unsigned nNextEnd { 0 };

    // Preparation: the job the prepare thread is asked for (a generation that any newer
    // request, Play or discard moves on, which cuts a probe under way short), the probe's
    // answer kept for GetMediaInfoEx, and the file loaded paused with its own reply tag.
    std::thread prepareThread;
    std::condition_variable cvPrepare;
    std::atomic<uint64_t> nPrepareGen { 0 };
    bool bPrepareWanted { false };
    std::string strPrepareJob;
    struct tagPreparedProbe
    {
        std::string strPath;
        bool bDone { false };
        bool bPlayable { false };
        tagQKMediaInfo info;
        int64_t nSize { -1 };
        int64_t nMtimeNs { -1 };
    } probe;
    struct tagPreparedFile
    {
        uint64_t nTag { 0 };
        std::string strPath;
        bool bPicture { false };
        bool bAudioOnly { false };
        int64_t nEntryId { -1 };
        bool bFailed { false };
    } prepared;
    uint64_t nLoadTag { 0 };

    // The attached video surface.
    qkplay_video* pAttached { nullptr };
    mpv_render_context* pRender { nullptr };
};

} // namespace qkplay
