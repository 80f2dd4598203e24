#pragma once
// Every function of the media libraries that the engine calls, once: the library it comes
// from, its result, name, parameters and the arguments that forward them. CQKMediaLibraries
// looks them up by these names; QKMediaImports.cpp defines each as a forwarder to the loaded
// library. A call to a function missing here fails at link time, and a signature that
// differs from the library's header fails to compile.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
#include <libavutil/display.h>
#include <libavutil/log.h>
}
#include <mpv/client.h>
#include <mpv/render.h>

namespace qkplay {

enum EQKMediaLibrary { kLibMpv,
    kLibAvFormat,
    kLibAvCodec,
    kLibAvUtil,
    kMediaLibraryCount };

} // namespace qkplay

// clang-format off
#define QK_MEDIA_IMPORTS(X) \
    X(kLibMpv, mpv_handle*, mpv_create, (void), ()) \
    X(kLibMpv, int, mpv_initialize, (mpv_handle* ctx), (ctx)) \
    X(kLibMpv, void, mpv_terminate_destroy, (mpv_handle* ctx), (ctx)) \
    X(kLibMpv, int, mpv_set_option, (mpv_handle* ctx, const char* name, mpv_format format, void* data), (ctx, name, format, data)) \
    X(kLibMpv, int, mpv_set_option_string, (mpv_handle* ctx, const char* name, const char* data), (ctx, name, data)) \
    X(kLibMpv, int, mpv_observe_property, (mpv_handle* mpv, uint64_t reply_userdata, const char* name, mpv_format format), (mpv, reply_userdata, name, format)) \
    X(kLibMpv, int, mpv_command_async, (mpv_handle* ctx, uint64_t reply_userdata, const char** args), (ctx, reply_userdata, args)) \
    X(kLibMpv, int, mpv_command_node_async, (mpv_handle* ctx, uint64_t reply_userdata, mpv_node* args), (ctx, reply_userdata, args)) \
    X(kLibMpv, int, mpv_set_property_async, (mpv_handle* ctx, uint64_t reply_userdata, const char* name, mpv_format format, void* data), (ctx, reply_userdata, name, format, data)) \
    X(kLibMpv, char*, mpv_get_property_string, (mpv_handle* ctx, const char* name), (ctx, name)) \
    X(kLibMpv, void, mpv_free, (void* data), (data)) \
    X(kLibMpv, mpv_event*, mpv_wait_event, (mpv_handle* ctx, double timeout), (ctx, timeout)) \
    X(kLibMpv, void, mpv_wakeup, (mpv_handle* ctx), (ctx)) \
    X(kLibMpv, int, mpv_render_context_create, (mpv_render_context** res, mpv_handle* mpv, mpv_render_param* params), (res, mpv, params)) \
    X(kLibMpv, void, mpv_render_context_set_update_callback, (mpv_render_context* ctx, mpv_render_update_fn callback, void* callback_ctx), (ctx, callback, callback_ctx)) \
    X(kLibMpv, uint64_t, mpv_render_context_update, (mpv_render_context* ctx), (ctx)) \
    X(kLibMpv, int, mpv_render_context_render, (mpv_render_context* ctx, mpv_render_param* params), (ctx, params)) \
    X(kLibMpv, void, mpv_render_context_report_swap, (mpv_render_context* ctx), (ctx)) \
    X(kLibMpv, void, mpv_render_context_free, (mpv_render_context* ctx), (ctx)) \
    X(kLibAvFormat, AVFormatContext*, avformat_alloc_context, (void), ()) \
    X(kLibAvFormat, int, avformat_open_input, (AVFormatContext** ps, const char* url, const AVInputFormat* fmt, AVDictionary** options), (ps, url, fmt, options)) \
    X(kLibAvFormat, int, avformat_find_stream_info, (AVFormatContext* ic, AVDictionary** options), (ic, options)) \
    X(kLibAvFormat, void, avformat_close_input, (AVFormatContext** s), (s)) \
    X(kLibAvFormat, AVRational, av_guess_sample_aspect_ratio, (AVFormatContext* format, AVStream* stream, AVFrame* frame), (format, stream, frame)) \
    X(kLibAvFormat, uint8_t*, av_stream_get_side_data, (const AVStream* stream, enum AVPacketSideDataType type, size_t* size), (stream, type, size)) \
    X(kLibAvCodec, const AVCodec*, avcodec_find_decoder, (enum AVCodecID id), (id)) \
    X(kLibAvUtil, int, av_dict_set, (AVDictionary** pm, const char* key, const char* value, int flags), (pm, key, value, flags)) \
    X(kLibAvUtil, void, av_dict_free, (AVDictionary** m), (m)) \
    X(kLibAvUtil, double, av_display_rotation_get, (const int32_t matrix[9]), (matrix)) \
    X(kLibAvUtil, void, av_log_set_level, (int level), (level))
// clang-format on

namespace qkplay {

#define QK_MEDIA_IMPORT_INDEX(lib, ret, name, params, args) kImport_##name,
enum EQKMediaImport { QK_MEDIA_IMPORTS(QK_MEDIA_IMPORT_INDEX) kMediaImportCount };
#undef QK_MEDIA_IMPORT_INDEX

} // namespace qkplay
