#include "CQKEngine.h"

#include <algorithm>
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
        cvSession.notify_all();
    }
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

bool CQKEngine::EnsureHandleLocked()
{
    if (pMpv)
        return true;
    if (bQuit)
        return false;
    // libmpv refuses to start with a numeric locale other than "C". Programs are asked to
    // set it themselves (qkplay.h); this only saves one that forgot.
    const char* pszLocale = std::setlocale(LC_NUMERIC, nullptr);
    if (!pszLocale || std::strcmp(pszLocale, "C") != 0)
        std::setlocale(LC_NUMERIC, "C");

    mpv_handle* pNew = mpv_create();
    if (!pNew)
        return false;
    QuietAlsa();
    for (const auto& option : kOptions)
        mpv_set_option_string(pNew, option[0], option[1]);
    double dInitialVolume = dVolume * 100.0;
    mpv_set_option(pNew, "volume", MPV_FORMAT_DOUBLE, &dInitialVolume);
    int nMute = bMute ? 1 : 0;
    mpv_set_option(pNew, "mute", MPV_FORMAT_FLAG, &nMute);
    std::string strFilter = ColorFilter(nColorY, nColorU, nColorV);
    if (!strFilter.empty()) {
        mpv_set_option_string(pNew, "vf", strFilter.c_str());
        mpv_set_option_string(pNew, "hwdec", "auto-copy-safe");
    }
    if (mpv_initialize(pNew) < 0) {
        mpv_terminate_destroy(pNew);
        return false;
    }
    mpv_observe_property(pNew, 0, "time-pos", MPV_FORMAT_DOUBLE);
    pMpv = pNew;
    eventThread = std::thread([this] { EventLoop(); });
    return true;
}

bool CQKEngine::Play(const std::string& strPath, qkplay_video* pVideo, const qkplay_notify* pNotify,
    int nMsg, bool bAudioOnly)
{
    std::unique_lock lk(mtx);
    if (!EnsureHandleLocked())
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
    SetAsyncFlag(pMpv, "pause", false);
    SetAsyncString(pMpv, "vo", bPicture ? "libmpv" : "null");
    SetAsyncString(pMpv, "vid", bAudioOnly ? "no" : "auto");
    const char* args[] = { "loadfile", strPath.c_str(), "replace", nullptr };
    if (mpv_command_async(pMpv, nMine, args) < 0) {
        bActive = false;
        return false;
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
    if (ev.reply_userdata == 0 || ev.reply_userdata != nSession || !bActive)
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
        std::lock_guard lk(mtx);
        if (pAttached || !EnsureHandleLocked())
            return false;
        pAttached = pVideo; // reserved while the context is made without the lock
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
    mpv_render_param params[] = {
        { MPV_RENDER_PARAM_OPENGL_FBO, &fbo },
        { MPV_RENDER_PARAM_FLIP_Y, &nFlipY },
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
