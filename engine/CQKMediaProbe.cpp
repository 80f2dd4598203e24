#include "CQKMediaProbe.h"

#include "CQKMediaLibraries.h"

#include "services/QKWideText.h"

#include <chrono>
#include <cmath>
#include <cstring>
#include <mutex>
#include <sys/stat.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/log.h>
}

namespace qkplay {

namespace {

// A probe never takes longer than this, whatever a broken or hostile file does to the
// demuxer: the player calls the probe on its main thread.
constexpr auto kProbeBudget = std::chrono::seconds(3);

// A file that the demuxers recognise no better than this (on a scale to 100) is no media
// file: an executable or a text file that some raw format takes for a stream of its own. The
// playback engine refuses such files too, so the probe refuses them at once instead of
// decoding garbage.
constexpr int kLowestProbeScore = AVPROBE_SCORE_RETRY;

struct tagDeadline
{
    std::chrono::steady_clock::time_point tEnd;
    const std::atomic<uint64_t>* pnGen { nullptr };
    uint64_t nGen { 0 };
};

// Closes the demuxer context on every way out of Probe.
struct CloseInput
{
    AVFormatContext* pCtx { nullptr };
    ~CloseInput()
    {
        if (pCtx)
            avformat_close_input(&pCtx);
    }
};

bool IsRealVideo(const AVStream* pStream)
{
    // A cover picture of a sound file is stored as a video stream with this disposition;
    // it is not a video to the player.
    return pStream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO
        && !(pStream->disposition & AV_DISPOSITION_ATTACHED_PIC)
        && pStream->codecpar->width > 0 && pStream->codecpar->height > 0;
}

bool CanDecode(const AVStream* pStream)
{
    return avcodec_find_decoder(pStream->codecpar->codec_id) != nullptr;
}

// The size of the picture as it is shown: the sample aspect ratio stretches the width, and a
// rotation by a quarter turn exchanges width and height.
void ShownSize(AVFormatContext* pCtx, AVStream* pStream, int& nWidth, int& nHeight)
{
    const AVCodecParameters* par = pStream->codecpar;
    double dWidth = par->width;
    AVRational sar = av_guess_sample_aspect_ratio(pCtx, pStream, nullptr);
    if (sar.num > 0 && sar.den > 0)
        dWidth = dWidth * sar.num / sar.den;
    nWidth = static_cast<int>(std::lround(dWidth));
    if (nWidth < 1)
        nWidth = 1;
    nHeight = par->height;

    const uint8_t* pMatrix = av_stream_get_side_data(pStream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (pMatrix) {
        double dRotation = av_display_rotation_get(reinterpret_cast<const int32_t*>(pMatrix));
        if (!std::isnan(dRotation)) {
            long nQuarter = std::lround(std::fabs(dRotation) / 90.0);
            if (nQuarter % 2 == 1)
                std::swap(nWidth, nHeight);
        }
    }
}

double Duration(const AVFormatContext* pCtx)
{
    if (pCtx->duration != AV_NOPTS_VALUE && pCtx->duration > 0)
        return static_cast<double>(pCtx->duration) / AV_TIME_BASE;
    double dLongest = 0.0;
    for (unsigned i = 0; i < pCtx->nb_streams; ++i) {
        const AVStream* st = pCtx->streams[i];
        if (st->duration != AV_NOPTS_VALUE && st->duration > 0)
            dLongest = std::max(dLongest, st->duration * av_q2d(st->time_base));
    }
    return dLongest;
}

} // namespace

int CQKMediaProbe::OnInterrupt(void* pOpaque)
{
    auto* pDeadline = static_cast<tagDeadline*>(pOpaque);
    if (pDeadline->pnGen && pDeadline->pnGen->load() != pDeadline->nGen)
        return 1;
    return std::chrono::steady_clock::now() > pDeadline->tEnd ? 1 : 0;
}

bool CQKMediaProbe::Identity(const std::string& strPath, int64_t& nSize, int64_t& nMtimeNs)
{
    struct stat st
    { };
    if (strPath.empty() || ::stat(strPath.c_str(), &st) != 0)
        return false;
    nSize = st.st_size;
    nMtimeNs = static_cast<int64_t>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    return true;
}

bool CQKMediaProbe::Probe(const std::string& strPath, tagQKMediaInfo& info, const std::atomic<uint64_t>* pnGen, uint64_t nGen)
{
    // Folders, devices and pipes would make the demuxer wait or fail in odd ways: only a
    // regular file with content is worth opening.
    struct stat st
    { };
    if (strPath.empty() || ::stat(strPath.c_str(), &st) != 0 || !S_ISREG(st.st_mode) || st.st_size == 0)
        return false;
    if (!CQKMediaLibraries::Instance().Load())
        return false;

    // The program keeps no log; the demuxer's complaints about broken files would only
    // clutter the terminal. The playback engine routes its own messages separately.
    static std::once_flag quiet;
    std::call_once(quiet, [] { av_log_set_level(AV_LOG_QUIET); });

    tagDeadline deadline { std::chrono::steady_clock::now() + kProbeBudget, pnGen, nGen };
    CloseInput input;
    input.pCtx = avformat_alloc_context();
    if (!input.pCtx)
        return false;
    input.pCtx->interrupt_callback.callback = &CQKMediaProbe::OnInterrupt;
    input.pCtx->interrupt_callback.opaque = &deadline;

    // Only local files: a name that looks like another protocol is still a file name here.
    std::string strUrl = "file:" + strPath;
    AVDictionary* pOptions = nullptr;
    av_dict_set(&pOptions, "protocol_whitelist", "file", 0);
    int nErr = avformat_open_input(&input.pCtx, strUrl.c_str(), nullptr, &pOptions);
    av_dict_free(&pOptions);
    if (nErr < 0) {
        input.pCtx = nullptr; // freed by avformat_open_input on failure
        return false;
    }
    // Text is no media, even where a demuxer would show it as a picture of its characters.
    if (input.pCtx->probe_score <= kLowestProbeScore || std::strcmp(input.pCtx->iformat->name, "tty") == 0)
        return false;
    if (avformat_find_stream_info(input.pCtx, nullptr) < 0)
        return false;

    const AVStream* pVideo = nullptr;
    bool bAudio = false;
    for (unsigned i = 0; i < input.pCtx->nb_streams; ++i) {
        AVStream* pStream = input.pCtx->streams[i];
        if (!CanDecode(pStream))
            continue;
        if (!pVideo && IsRealVideo(pStream))
            pVideo = pStream;
        else if (pStream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO && pStream->codecpar->sample_rate > 0
            && pStream->codecpar->ch_layout.nb_channels > 0)
            bAudio = true;
    }
    if (!pVideo && !bAudio)
        return false;

    tagQKMediaInfo result;
    result.bHasVideo = pVideo != nullptr;
    if (pVideo)
        ShownSize(input.pCtx, const_cast<AVStream*>(pVideo), result.nWidth, result.nHeight);
    result.dDuration = Duration(input.pCtx);
    info = result;
    return true;
}

bool CQKMediaProbe::Utf16ToUtf8(const char16_t* psz, std::string& strOut, size_t nMaxUnits)
{
    strOut.clear();
    if (!psz)
        return false;
    for (size_t i = 0; psz[i]; ++i) {
        if (i >= nMaxUnits)
            return false;
        char32_t c = psz[i];
        if (c >= 0xD800 && c <= 0xDBFF) {
            char32_t low = psz[i + 1];
            if (low < 0xDC00 || low > 0xDFFF)
                return false;
            c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
            ++i;
        } else if (c >= 0xDC80 && c <= 0xDCFF) {
            // A byte of a file name that is not valid UTF-8, kept by the player as this lone
            // unit: it goes back into the name as the byte it was.
            strOut += static_cast<char>(c - 0xDC00);
            continue;
        } else if (c >= 0xDC00 && c <= 0xDFFF) {
            return false;
        }
        QKWideText::AppendUtf8(strOut, c);
    }
    return true;
}

} // namespace qkplay
