#include "CQKEngine.h"

#include "CQKMediaLibraries.h"

#include <algorithm>
#include <chrono>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <mpv/render_gl.h>

namespace qkplay {

namespace {

// Options of the engine. The engine reads no configuration files, takes no keys and draws
// nothing of its own over the picture: the player owns all of that.
const char* const kOptions[][2] = {
    { "config", "no" },
    { "terminal", "no" },
    { "idle", "yes" },
    { "vo", "null" },
    { "hwdec", "auto-safe" },
    { "input-default-bindings", "no" },
    { "input-vo-keyboard", "no" },
    { "input-cursor", "no" },
    { "osc", "no" },
    { "osd-level", "0" },
    { "load-scripts", "no" },
    { "ytdl", "no" },
    { "load-stats-overlay", "no" },
    { "load-osd-console", "no" },
    { "resume-playback", "no" },
    { "keep-open", "no" },
    { "audio-fallback-to-null", "yes" },
    { "audio-client-name", "Orbel Player" },
};

void SetAsyncString(mpv_handle* pMpv, const char* pszName, const std::string& strValue)
{
    const char* psz = strValue.c_str();
    mpv_set_property_async(pMpv, 0, pszName, MPV_FORMAT_STRING, &psz);
}

void SetAsyncFlag(mpv_handle* pMpv, const char* pszName, bool bValue)
{
    int nFlag = bValue ? 1 : 0;
    mpv_set_property_async(pMpv, 0, pszName, MPV_FORMAT_FLAG, &nFlag);
}

void SetAsyncDouble(mpv_handle* pMpv, const char* pszName, double dValue)
{
    mpv_set_property_async(pMpv, 0, pszName, MPV_FORMAT_DOUBLE, &dValue);
}

// Reply tags of a prepared file's loadfile carry this bit, so that they never equal a Play's
// session number.
constexpr uint64_t kPrepareTag = 1ULL << 63;
// How long a prepared video waits for the video surface to attach, so that it opens with its
// picture output rather than without one (the surface attaches as the window comes up).
constexpr auto kSurfaceWait = std::chrono::milliseconds(500);

// One operand of the colour filter: "val+12", "val-7" or "val".
std::string Offset(int nDelta)
{
    if (nDelta == 0)
        return "val";
    return (nDelta > 0 ? "val+" : "val-") + std::to_string(std::abs(nDelta));
}

// ALSA prints a dozen lines to stderr each time a file looks for a sound card on a machine
// without one. The program keeps no log, so its messages are dropped. libmpv loads ALSA
// itself; the library is only looked up, never loaded for this.
void NoAlsaMessage(const char*, int, const char*, int, const char*, ...) { }

void QuietAlsa()
{
    using Handler = void (*)(const char*, int, const char*, int, const char*, ...);
    using SetHandler = int (*)(Handler);
    if (auto pSet = reinterpret_cast<SetHandler>(dlsym(RTLD_DEFAULT, "snd_lib_error_set_handler")))
        pSet(&NoAlsaMessage);
}

} // namespace

CQKEngine& CQKEngine::Instance()
{
    static CQKEngine engine;
    return engine;
}

CQKEngine::~CQKEngine()
{
    {
        std::lock_guard lk(mtx);
        bQuit = true;
        ++nPrepareGen;
        cvSession.notify_all();
        cvPrepare.notify_all();
    }
    if (prepareThread.joinable())
        prepareThread.join();
    if (!pMpv)
        return;
    mpv_wakeup(pMpv);
    if (eventThread.joinable())
        eventThread.join();
    // A render context must be freed with its OpenGL context current, which only the surface
    // can do. If a surface is still attached at exit the engine is left to the system.
    if (!pRender)
        mpv_terminate_destroy(pMpv);
}

bool CQKEngine::EnsureHandleLocked(std::unique_lock<std::mutex>& lk)
{
    // The instance is made without the lock, so that the player's calls (volume, state, a
    // close) never wait behind it; a second caller that needs it waits for the first.
    cvSession.wait(lk, [&] { return !bCreating || bQuit; });
    if (pMpv)
        return true;
    if (bQuit)
        return false;
    bCreating = true;
    const double dInitialVolume = dVolume * 100.0;
    const int nMute = bMute ? 1 : 0;
    const std::string strFilter = ColorFilter(nColorY, nColorU, nColorV);
    lk.unlock();
    mpv_handle* pNew = CreateHandle(dInitialVolume, nMute, strFilter);
    lk.lock();
    bCreating = false;
    cvSession.notify_all();
    if (!pNew)
        return false;
    pMpv = pNew;
    // What changed while the instance was made goes after it.
    if (dVolume * 100.0 != dInitialVolume)
        SetAsyncDouble(pMpv, "volume", dVolume * 100.0);
    if ((bMute ? 1 : 0) != nMute)
        SetAsyncFlag(pMpv, "mute", bMute);
    if (ColorFilter(nColorY, nColorU, nColorV) != strFilter)
        ApplyColorLocked();
    eventThread = std::thread([this] { EventLoop(); });
    return true;
}

mpv_handle* CQKEngine::CreateHandle(double dInitialVolume, int nMute, const std::string& strFilter)
{
    if (!CQKMediaLibraries::Instance().Load())
        return nullptr;
    // libmpv refuses to start with a numeric locale other than "C". Programs are asked to
    // set it themselves (qkplay.h); this only saves one that forgot.
    const char* pszLocale = std::setlocale(LC_NUMERIC, nullptr);
    if (!pszLocale || std::strcmp(pszLocale, "C") != 0)
        std::setlocale(LC_NUMERIC, "C");

    mpv_handle* pNew = mpv_create();
    if (!pNew)
        return nullptr;
    QuietAlsa();
    for (const auto& option : kOptions)
        mpv_set_option_string(pNew, option[0], option[1]);
    mpv_set_option(pNew, "volume", MPV_FORMAT_DOUBLE, &dInitialVolume);
    mpv_set_option(pNew, "mute", MPV_FORMAT_FLAG, &nMute);
    if (!strFilter.empty()) {
        mpv_set_option_string(pNew, "vf", strFilter.c_str());
        mpv_set_option_string(pNew, "hwdec", "auto-copy-safe");
    }
    if (mpv_initialize(pNew) < 0) {
        mpv_terminate_destroy(pNew);
        return nullptr;
    }
    mpv_observe_property(pNew, 0, "time-pos", MPV_FORMAT_DOUBLE);
    return pNew;
}

bool CQKEngine::Play(const std::string& strPath, qkplay_video* pVideo, const qkplay_notify* pNotify,
    int nMsg, bool bAudioOnly)
{
    std::unique_lock lk(mtx);
    if (!EnsureHandleLocked(lk))
        return false;

    // An earlier Play that still blocks returns now; what it reached is kept for its result.
    nSupersededSession = nSession;
    bSupersededLoaded = bActive && bEverLoaded && !bFailed;
    const uint64_t nMine = ++nSession;
    cvSession.notify_all();
    bActive = true;
    bStopRequested = bEnded = bFailed = bLoaded = bEverLoaded = bPaused = bPosted = false;
    bSeekPending = false;
    dPendingSeek = dLastSeek = dPos = 0.0;
    nEntryId = -1;
    notify = pNotify ? *pNotify : qkplay_notify { nullptr, nullptr };
    nNotifyMsg = nMsg;

    // Requests to the engine run in the order they were made, so these settings are in
    // force when the file opens, and a Stop or pause made meanwhile comes after them.
    const bool bPicture = pVideo && pVideo == pAttached && pRender;
    if (AdoptPreparedLocked(strPath, bPicture, bAudioOnly)) {
        // The prepared file is open already, paused: it only runs from here.
        SetAsyncFlag(pMpv, "pause", false);
        ReconcileLocked();
    } else {
        DiscardPreparedLocked();
        nLoadTag = nMine;
        SetAsyncFlag(pMpv, "pause", false);
        SetAsyncString(pMpv, "vo", bPicture ? "libmpv" : "null");
        SetAsyncString(pMpv, "vid", bAudioOnly ? "no" : "auto");
        const char* args[] = { "loadfile", strPath.c_str(), "replace", nullptr };
        if (mpv_command_async(pMpv, nMine, args) < 0) {
            bActive = false;
            return false;
        }
    }

    cvSession.wait(lk, [&] { return nSession != nMine || bStopRequested || bEnded || bQuit; });
    if (nSession != nMine)
        return nSupersededSession == nMine && bSupersededLoaded;
    bActive = false;
    bLoaded = false;
    dPos = 0.0;
    return bEverLoaded && !bFailed;
}

void CQKEngine::Stop()
{
    std::lock_guard lk(mtx);
    if (!bActive || bStopRequested)
        return;
    bStopRequested = true;
    bLoaded = false;
    dPos = 0.0;
    cvSession.notify_all();
    const char* args[] = { "stop", nullptr };
    mpv_command_async(pMpv, 0, args);
}

void CQKEngine::PauseOrResume()
{
    std::lock_guard lk(mtx);
    if (!SessionOpenLocked())
        return;
    bPaused = !bPaused;
    SetAsyncFlag(pMpv, "pause", bPaused);
}

bool CQKEngine::IsPlaying()
{
    std::lock_guard lk(mtx);
    return SessionOpenLocked() && bLoaded && !bPaused;
}

bool CQKEngine::IsReady()
{
    std::lock_guard lk(mtx);
    return SessionOpenLocked() && bLoaded;
}

double CQKEngine::GetCurrentPos()
{
    std::lock_guard lk(mtx);
    return SessionOpenLocked() && bLoaded ? dPos : 0.0;
}

double CQKEngine::GetLastSeekingPos()
{
    std::lock_guard lk(mtx);
    return SessionOpenLocked() ? dLastSeek : 0.0;
}

void CQKEngine::SetCurrentPos(double dTarget)
{
    if (std::isnan(dTarget))
        return;
    std::lock_guard lk(mtx);
    if (!SessionOpenLocked())
        return;
    dTarget = std::max(0.0, dTarget);
    dLastSeek = dTarget;
    if (bLoaded) {
        SendSeekLocked(dTarget);
    } else {
        // The engine cannot seek in a file that is still opening; the seek is sent as soon
        // as it is open.
        bSeekPending = true;
        dPendingSeek = dTarget;
    }
}

void CQKEngine::SendSeekLocked(double dTarget)
{
    mpv_node items[3];
    items[0].format = MPV_FORMAT_STRING;
    items[0].u.string = const_cast<char*>("seek");
    items[1].format = MPV_FORMAT_DOUBLE;
    items[1].u.double_ = dTarget;
    items[2].format = MPV_FORMAT_STRING;
    items[2].u.string = const_cast<char*>("absolute");
    mpv_node_list list { 3, items, nullptr };
    mpv_node command;
    command.format = MPV_FORMAT_NODE_ARRAY;
    command.u.list = &list;
    mpv_command_node_async(pMpv, 0, &command);
}

void CQKEngine::SetVolume(double dNew)
{
    if (std::isnan(dNew))
        return;
    std::lock_guard lk(mtx);
    dVolume = std::clamp(dNew, 0.0, 1.0);
    if (pMpv)
        SetAsyncDouble(pMpv, "volume", dVolume * 100.0);
}

void CQKEngine::SetMute(bool bNew)
{
    std::lock_guard lk(mtx);
    bMute = bNew;
    if (pMpv)
        SetAsyncFlag(pMpv, "mute", bMute);
}

void CQKEngine::AdjustColor(int nY, int nU, int nV)
{
    std::lock_guard lk(mtx);
    nColorY = std::clamp(nY, -255, 255);
    nColorU = std::clamp(nU, -255, 255);
    nColorV = std::clamp(nV, -255, 255);
    if (pMpv)
        ApplyColorLocked();
}

void CQKEngine::ApplyColorLocked()
{
    std::string strFilter = ColorFilter(nColorY, nColorU, nColorV);
    // Decoding in video memory cannot feed a software filter; while the offsets are in force
    // the decoder copies its frames back to main memory.
    SetAsyncString(pMpv, "hwdec", strFilter.empty() ? "auto-safe" : "auto-copy-safe");
    SetAsyncString(pMpv, "vf", strFilter);
}

std::string CQKEngine::ColorFilter(int nY, int nU, int nV)
{
    if (nY == 0 && nU == 0 && nV == 0)
        return {};
    return "@qkcolor:lavfi=[lutyuv=y=" + Offset(nY) + ":u=" + Offset(nU) + ":v=" + Offset(nV) + "]";
}

// ---- the event thread ----

void CQKEngine::EventLoop()
{
    for (;;) {
        // The quit flag is read before every wait: a wake-up that arrives while an event is
        // being handled would otherwise be lost.
        {
            std::lock_guard lk(mtx);
            if (bQuit)
                return;
        }
        mpv_event* pEvent = mpv_wait_event(pMpv, -1);
        if (pEvent->event_id == MPV_EVENT_SHUTDOWN)
            return;
        if (pEvent->event_id != MPV_EVENT_NONE)
            OnEvent(*pEvent);
    }
}

void CQKEngine::OnEvent(const mpv_event& ev)
{
    std::lock_guard lk(mtx);
    switch (ev.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        OnLoadfileReply(ev);
        break;
    case MPV_EVENT_START_FILE:
        nStartedEntry = static_cast<const mpv_event_start_file*>(ev.data)->playlist_entry_id;
        break;
    case MPV_EVENT_FILE_LOADED:
        nLoadedEntry = nStartedEntry;
        ReconcileLocked();
        break;
    case MPV_EVENT_END_FILE: {
        const auto* pEnd = static_cast<const mpv_event_end_file*>(ev.data);
        recentEnds[nNextEnd % std::size(recentEnds)] = { pEnd->playlist_entry_id, pEnd->reason };
        ++nNextEnd;
        ReconcileLocked();
        break;
    }
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto* pProp = static_cast<const mpv_event_property*>(ev.data);
        // Positions belong to the file that started last; only the current session's file
        // may move the shown position.
        if (std::strcmp(pProp->name, "time-pos") == 0 && pProp->format == MPV_FORMAT_DOUBLE
            && nEntryId >= 0 && nEntryId == nStartedEntry && SessionOpenLocked())
            dPos = *static_cast<const double*>(pProp->data);
        break;
    }
    default:
        break;
    }
}

void CQKEngine::OnLoadfileReply(const mpv_event& ev)
{
    if (ev.reply_userdata == 0)
        return;
    if (ev.reply_userdata == prepared.nTag) {
        prepared.bFailed = ev.error < 0;
        const auto* pPrepared = static_cast<const mpv_event_command*>(ev.data);
        if (!prepared.bFailed && pPrepared && pPrepared->result.format == MPV_FORMAT_NODE_MAP) {
            const mpv_node_list* pMap = pPrepared->result.u.list;
            for (int i = 0; i < pMap->num; ++i) {
                if (std::strcmp(pMap->keys[i], "playlist_entry_id") == 0 && pMap->values[i].format == MPV_FORMAT_INT64)
                    prepared.nEntryId = pMap->values[i].u.int64;
            }
        }
        return;
    }
    if (ev.reply_userdata != nLoadTag || !bActive)
        return;
    if (ev.error < 0) {
        bFailed = true;
        EndSessionLocked(false, true);
        return;
    }
    const auto* pCommand = static_cast<const mpv_event_command*>(ev.data);
    if (pCommand && pCommand->result.format == MPV_FORMAT_NODE_MAP) {
        const mpv_node_list* pMap = pCommand->result.u.list;
        for (int i = 0; i < pMap->num; ++i) {
            if (std::strcmp(pMap->keys[i], "playlist_entry_id") == 0 && pMap->values[i].format == MPV_FORMAT_INT64)
                nEntryId = pMap->values[i].u.int64;
        }
    }
    if (nEntryId < 0) {
        bFailed = true;
        EndSessionLocked(false, true);
        return;
    }
    ReconcileLocked();
}

// Brings the session up to date with what the event thread saw of its playlist entry.
void CQKEngine::ReconcileLocked()
{
    if (!SessionOpenLocked() || nEntryId < 0)
        return;
    if (nLoadedEntry == nEntryId && !bLoaded) {
        bLoaded = bEverLoaded = true;
        if (bSeekPending) {
            bSeekPending = false;
            SendSeekLocked(dPendingSeek);
        }
    }
    for (const tagEnded& end : recentEnds) {
        if (end.nId == nEntryId) {
            EndSessionLocked(end.nReason == MPV_END_FILE_REASON_EOF, end.nReason == MPV_END_FILE_REASON_ERROR);
            return;
        }
    }
}

void CQKEngine::EndSessionLocked(bool bEndOfMedia, bool bError)
{
    if (bError && !bEverLoaded)
        bFailed = true;
    // The message goes out under the lock: a Stop either came first (no message) or finds
    // the file already ended. The notify target is valid until Play returns, which it cannot
    // do before this lock is released.
    if (bEndOfMedia && bEverLoaded && !bPosted && !bStopRequested && notify.post) {
        bPosted = true;
        notify.post(notify.ctx, nNotifyMsg);
    }
    bEnded = true;
    bLoaded = false;
    cvSession.notify_all();
}

// ---- preparation ----

void CQKEngine::Prepare(const std::string& strPath)
{
    std::lock_guard lk(mtx);
    if (bQuit)
        return;
    if (strPath.empty()) {
        DiscardPreparedLocked();
        return;
    }
    // A file that plays is never replaced by one that waits.
    if (bActive)
        return;
    DiscardPreparedLocked();
    bPrepareWanted = true;
    strPrepareJob = strPath;
    // From now on GetMediaInfoEx of this file waits for the prepared probe.
    probe = {};
    probe.strPath = strPath;
    if (!prepareThread.joinable())
        prepareThread = std::thread([this] { PrepareLoop(); });
    cvPrepare.notify_all();
}

void CQKEngine::DiscardPreparedLocked()
{
    // A job under way sees the generation move on and gives up; its probe stops at once.
    ++nPrepareGen;
    bPrepareWanted = false;
    if (!probe.bDone)
        probe.strPath.clear();
    cvPrepare.notify_all();
    if (prepared.nTag == 0)
        return;
    prepared = {};
    // The prepared file is closed unless a playback has replaced it already.
    if (pMpv && !bActive) {
        const char* args[] = { "stop", nullptr };
        mpv_command_async(pMpv, 0, args);
    }
}

bool CQKEngine::AdoptPreparedLocked(const std::string& strPath, bool bPicture, bool bAudioOnly)
{
    if (prepared.nTag == 0 || prepared.bFailed || prepared.strPath != strPath || prepared.bPicture != bPicture
        || prepared.bAudioOnly != bAudioOnly)
        return false;
    // The reply to the prepared loadfile may still be on its way; the session then waits for
    // that tag, as for its own.
    nLoadTag = prepared.nTag;
    nEntryId = prepared.nEntryId;
    prepared = {};
    ++nPrepareGen;
    bPrepareWanted = false;
    return true;
}

bool CQKEngine::PreparedProbe(const std::string& strPath, bool& bPlayable, tagQKMediaInfo& info)
{
    std::unique_lock lk(mtx);
    if (strPath.empty() || probe.strPath != strPath)
        return false;
    cvPrepare.wait(lk, [&] { return probe.bDone || probe.strPath != strPath || bQuit; });
    if (!probe.bDone || probe.strPath != strPath)
        return false;
    int64_t nSize = -1;
    int64_t nMtime = -1;
    if (!CQKMediaProbe::Identity(strPath, nSize, nMtime) || nSize != probe.nSize || nMtime != probe.nMtimeNs)
        return false;
    bPlayable = probe.bPlayable;
    info = probe.info;
    return true;
}

void CQKEngine::PrepareLoop()
{
    std::unique_lock lk(mtx);
    for (;;) {
        cvPrepare.wait(lk, [&] { return bQuit || bPrepareWanted; });
        if (bQuit)
            return;
        bPrepareWanted = false;
        const uint64_t nGen = nPrepareGen.load();
        const std::string strPath = strPrepareJob;
        auto bStale = [&] { return bQuit || bActive || nPrepareGen.load() != nGen; };

        // The probe runs without the lock; GetMediaInfoEx of the same file waits for it.
        probe = {};
        probe.strPath = strPath;
        lk.unlock();
        int64_t nSize = -1;
        int64_t nMtime = -1;
        tagQKMediaInfo info;
        const bool bKnown = CQKMediaProbe::Identity(strPath, nSize, nMtime);
        const bool bPlayable = bKnown && CQKMediaProbe::Probe(strPath, info, &nPrepareGen, nGen);
        lk.lock();
        if (nPrepareGen.load() != nGen || bQuit) {
            // Cut short: the answer says nothing about the file.
            if (probe.strPath == strPath && !probe.bDone)
                probe.strPath.clear();
            cvPrepare.notify_all();
            continue;
        }
        probe.bDone = true;
        probe.bPlayable = bPlayable;
        probe.info = info;
        probe.nSize = nSize;
        probe.nMtimeNs = nMtime;
        cvPrepare.notify_all();
        if (!bPlayable || bStale() || !EnsureHandleLocked(lk) || bStale())
            continue;
        // A video opens best with its picture output from the start; the surface attaches
        // as the window comes up.
        if (info.bHasVideo)
            cvPrepare.wait_for(lk, kSurfaceWait, [&] { return pRender || bStale(); });
        if (bStale())
            continue;
        const std::string strLoad = strPath[0] == '/' ? strPath : "./" + strPath;
        prepared = {};
        prepared.nTag = kPrepareTag | nGen;
        prepared.strPath = strLoad;
        prepared.bPicture = pRender != nullptr;
        prepared.bAudioOnly = !info.bHasVideo;
        SetAsyncFlag(pMpv, "pause", true);
        SetAsyncString(pMpv, "vo", prepared.bPicture ? "libmpv" : "null");
        SetAsyncString(pMpv, "vid", prepared.bAudioOnly ? "no" : "auto");
        const char* args[] = { "loadfile", strLoad.c_str(), "replace", nullptr };
        if (mpv_command_async(pMpv, prepared.nTag, args) < 0)
            prepared = {};
    }
}

// ---- the video surface ----

void CQKEngine::OnRenderUpdate(void* pCtx)
{
    auto* pVideo = static_cast<qkplay_video*>(pCtx);
    if (pVideo->update)
        pVideo->update(pVideo->ctx);
}

bool CQKEngine::AttachVideo(qkplay_video* pVideo)
{
    if (!pVideo || !pVideo->get_proc_address)
        return false;
    mpv_handle* pHandle = nullptr;
    {
        std::unique_lock lk(mtx);
        if (pAttached)
            return false;
        pAttached = pVideo; // reserved while the context is made without the lock
        if (!EnsureHandleLocked(lk)) {
            pAttached = nullptr;
            return false;
        }
        pHandle = pMpv;
    }
    mpv_opengl_init_params glInit { pVideo->get_proc_address, pVideo->ctx };
    const char* pszApi = MPV_RENDER_API_TYPE_OPENGL;
    mpv_render_param params[] = {
        { MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(pszApi) },
        { MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &glInit },
        { MPV_RENDER_PARAM_INVALID, nullptr },
    };
    mpv_render_context* pContext = nullptr;
    const bool bOk = mpv_render_context_create(&pContext, pHandle, params) >= 0;
    if (bOk)
        mpv_render_context_set_update_callback(pContext, &CQKEngine::OnRenderUpdate, pVideo);

    std::lock_guard lk(mtx);
    if (!bOk) {
        pAttached = nullptr;
        return false;
    }
    pRender = pContext;
    pVideo->priv = pContext;
    cvPrepare.notify_all();
    return true;
}

bool CQKEngine::RenderVideo(qkplay_video* pVideo, int nFbo, int nWidth, int nHeight)
{
    // Attach, render and detach all run on the surface's thread, so the context cannot go
    // away during this call.
    if (!pVideo || !pVideo->priv || nWidth <= 0 || nHeight <= 0)
        return false;
    auto* pContext = static_cast<mpv_render_context*>(pVideo->priv);
    mpv_opengl_fbo fbo { nFbo, nWidth, nHeight, 0 };
    int nFlipY = 1;
    // A frame drawn while a stop is under way is only taken off the engine, so that it lets
    // go (the surface's thread waits for the play thread meanwhile): it need not wait for its
    // time.
    int nWaitForTime = 1;
    {
        std::lock_guard lk(mtx);
        if (!bActive || bStopRequested || bEnded)
            nWaitForTime = 0;
    }
    mpv_render_param params[] = {
        { MPV_RENDER_PARAM_OPENGL_FBO, &fbo },
        { MPV_RENDER_PARAM_FLIP_Y, &nFlipY },
        { MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &nWaitForTime },
        { MPV_RENDER_PARAM_INVALID, nullptr },
    };
    return mpv_render_context_render(pContext, params) >= 0;
}

void CQKEngine::ReportVideoSwap(qkplay_video* pVideo)
{
    // Like RenderVideo, on the surface's thread, so the context cannot go meanwhile.
    if (pVideo && pVideo->priv)
        mpv_render_context_report_swap(static_cast<mpv_render_context*>(pVideo->priv));
}

void CQKEngine::DetachVideo(qkplay_video* pVideo)
{
    mpv_render_context* pContext = nullptr;
    {
        std::lock_guard lk(mtx);
        if (!pVideo || pVideo != pAttached || !pRender)
            return;
        pContext = pRender;
        pRender = nullptr;
        pAttached = nullptr;
        pVideo->priv = nullptr;
    }
    // The free waits until libmpv's video output has let go of the context. An output that
    // has just handed over a frame waits up to about 200 ms for it to be drawn and shown,
    // which nobody does any more; so a frame that is waiting is taken here first, into a
    // single pixel of the current framebuffer, without waiting for its time.
    mpv_opengl_fbo fbo { 0, 1, 1, 0 };
    int nNoWait = 0;
    mpv_render_param params[] = {
        { MPV_RENDER_PARAM_OPENGL_FBO, &fbo },
        { MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &nNoWait },
        { MPV_RENDER_PARAM_INVALID, nullptr },
    };
    if (mpv_render_context_update(pContext) & MPV_RENDER_UPDATE_FRAME) {
        mpv_render_context_render(pContext, params);
        mpv_render_context_report_swap(pContext);
    }
    mpv_render_context_free(pContext);
}

char* CQKEngine::GetPropertyText(const char* pszName)
{
    if (!pszName)
        return nullptr;
    mpv_handle* pHandle = nullptr;
    {
        std::lock_guard lk(mtx);
        pHandle = pMpv;
    }
    if (!pHandle)
        return nullptr;
    char* pszValue = mpv_get_property_string(pHandle, pszName);
    if (!pszValue)
        return nullptr;
    char* pszCopy = strdup(pszValue);
    mpv_free(pszValue);
    return pszCopy;
}

} // namespace qkplay
