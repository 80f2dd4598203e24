// The exported operations of libqkplay.so: argument checks and conversions, then the engine.
#include "qkplay.h"

#include "CQKEngine.h"
#include "CQKMediaLibraries.h"
#include "CQKMediaProbe.h"

#include <climits>
#include <cstdlib>
#include <cstring>

using qkplay::CQKEngine;
using qkplay::CQKMediaProbe;

static_assert(QKPLAY_MAX_PATH == PATH_MAX, "the path limit is the system's");

extern "C" {

QKPLAY_API int qkplaydll_GetMediaInfoEx(const char16_t* path, int* pnHasVideo, int* pnReservedInfo,
    int* pnWidth, int* pnHeight, double* pdDuration,
    double* pdReservedInfo)
{
    (void)pnReservedInfo;
    (void)pdReservedInfo;
    std::string strPath;
    // A name the play call would refuse is no playable file: the player's queue then moves on
    // to the next one.
    if (!CQKMediaProbe::Utf16ToUtf8(path, strPath) || strPath.size() >= QKPLAY_MAX_PATH)
        return 0;
    qkplay::tagQKMediaInfo info;
    // A file prepared for playing was probed already, or is being probed now.
    bool bPlayable = false;
    if (!CQKEngine::Instance().PreparedProbe(strPath, bPlayable, info))
        bPlayable = CQKMediaProbe::Probe(strPath, info);
    if (!bPlayable)
        return 0;
    if (pnHasVideo)
        *pnHasVideo = info.bHasVideo ? 1 : 0;
    if (pnWidth)
        *pnWidth = info.nWidth;
    if (pnHeight)
        *pnHeight = info.nHeight;
    if (pdDuration)
        *pdDuration = info.dDuration;
    return 1;
}

QKPLAY_API int qkplaydll_Play(const char* path, qkplay_video* video, qkplay_notify* notify,
    int nNotifyMsg, int nReserved1, double dReserved2, int nReserved3,
    intptr_t nReserved4, int bAudioOnly)
{
    (void)nReserved1;
    (void)dReserved2;
    (void)nReserved3;
    (void)nReserved4;
    if (!path)
        return 0;
    const size_t nLength = strnlen(path, QKPLAY_MAX_PATH);
    if (nLength == 0 || nLength >= QKPLAY_MAX_PATH)
        return 0;
    // The engine would read a relative name with a colon in it ("x:y.mkv") as a protocol;
    // "./" keeps every name a plain file.
    std::string strPath(path, nLength);
    if (strPath[0] != '/')
        strPath = "./" + strPath;
    return CQKEngine::Instance().Play(strPath, video, notify, nNotifyMsg, bAudioOnly != 0) ? 1 : 0;
}

QKPLAY_API void qkplay_prepare(const char* path)
{
    if (!path) {
        CQKEngine::Instance().Prepare(std::string());
        return;
    }
    const size_t nLength = strnlen(path, QKPLAY_MAX_PATH);
    if (nLength == 0 || nLength >= QKPLAY_MAX_PATH)
        return;
    CQKEngine::Instance().Prepare(std::string(path, nLength));
}

QKPLAY_API int qkplay_load_libraries(void)
{
    return qkplay::CQKMediaLibraries::Instance().Load() ? 1 : 0;
}

QKPLAY_API void qkplaydll_Stop(void)
{
    CQKEngine::Instance().Stop();
}

QKPLAY_API void qkplaydll_PauseOrResume(void)
{
    CQKEngine::Instance().PauseOrResume();
}

QKPLAY_API int qkplaydll_IsPlaying(void)
{
    return CQKEngine::Instance().IsPlaying() ? 1 : 0;
}

QKPLAY_API int qkplaydll_IsReady(void)
{
    return CQKEngine::Instance().IsReady() ? 1 : 0;
}

QKPLAY_API double qkplaydll_getCurrentPos(void)
{
    return CQKEngine::Instance().GetCurrentPos();
}

QKPLAY_API double qkplaydll_getLastSeekingPos(void)
{
    return CQKEngine::Instance().GetLastSeekingPos();
}

QKPLAY_API void qkplaydll_SetCurrentPos(double dPos)
{
    CQKEngine::Instance().SetCurrentPos(dPos);
}

QKPLAY_API void qkplaydll_SetVolume(double dVolume)
{
    CQKEngine::Instance().SetVolume(dVolume);
}

QKPLAY_API void qkplaydll_SetMute(int bMute)
{
    CQKEngine::Instance().SetMute(bMute != 0);
}

QKPLAY_API void qkplaydll_AdjustColor(int nY, int nU, int nV)
{
    CQKEngine::Instance().AdjustColor(nY, nU, nV);
}

QKPLAY_API int qkplay_video_attach(qkplay_video* video)
{
    return CQKEngine::Instance().AttachVideo(video) ? 1 : 0;
}

QKPLAY_API int qkplay_video_render(qkplay_video* video, int fbo, int width, int height)
{
    return CQKEngine::Instance().RenderVideo(video, fbo, width, height) ? 1 : 0;
}

QKPLAY_API void qkplay_video_swapped(qkplay_video* video)
{
    CQKEngine::Instance().ReportVideoSwap(video);
}

QKPLAY_API void qkplay_video_detach(qkplay_video* video)
{
    CQKEngine::Instance().DetachVideo(video);
}

QKPLAY_API char* qkplay_get_engine_property(const char* name)
{
    return CQKEngine::Instance().GetPropertyText(name);
}

QKPLAY_API void qkplay_free(char* text)
{
    std::free(text);
}

} // extern "C"
