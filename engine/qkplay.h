/*
 * qkplay.h: the playback library of Orbel Player (libqkplay.so).
 *
 * Overview
 * --------
 *
 * The library plays one media file at a time for the whole process: there is no handle, the
 * current playback is the library's own. The player asks a file's properties with
 * qkplaydll_GetMediaInfoEx, then calls qkplaydll_Play on a thread of its own ("the play
 * thread"). qkplaydll_Play blocks until the playback is over, either because the file came to
 * its end or because another thread called qkplaydll_Stop. While it blocks, every other
 * operation may be called from the player's main thread.
 *
 * The end of the media is told by one message: the library calls the post function of the
 * notify target (qkplay_notify) with the message number given to qkplaydll_Play, from a
 * thread of its own, once per file that plays to its end. A stop never posts it.
 *
 * Threads
 * -------
 *
 *  - qkplaydll_Play: the play thread only; one at a time. A second qkplaydll_Play while the
 *    first still blocks ends the first (it returns as if stopped) and plays the new file.
 *  - Every other qkplaydll_* operation: any thread, normally the player's main thread. They
 *    never wait for the play thread or for decoding: they change state and return.
 *  - The library never waits for the player's main thread. The main thread may therefore
 *    call qkplaydll_Stop and then wait for the play thread without a time limit.
 *  - qkplay_video_*: the thread that owns the video surface's OpenGL context, with that
 *    context current (see "The video surface" below).
 *
 * Lifetime
 * --------
 *
 * Nothing needs to be set up. The library's media engine (one libmpv instance) is created on
 * first need, that is by the first qkplaydll_Play, qkplay_video_attach or qkplay_prepare, and lives until the
 * process exits. Volume, mute and colour offsets set before that are kept and are in force
 * from the first file on; they stay across files. The media libraries themselves are loaded
 * at run time, on first need or ahead of it by qkplay_load_libraries.
 *
 * The engine uses libmpv, which requires the C locale for LC_NUMERIC. A program that sets the
 * locale from the environment (as Qt does at start-up) must set LC_NUMERIC back to "C"
 * before the first qkplaydll_Play; the library does so itself if it finds another locale
 * when it creates its engine, but setlocale is not thread-safe, so do not rely on it.
 *
 * Sound goes to the system's default output. Without any sound device the file plays all the
 * same, silently, with the picture and the position running in real time.
 *
 * Misuse
 * ------
 *
 * Null pointers, values out of range and calls in the wrong state are ignored or clamped as
 * each operation says; no operation aborts the process for bad arguments.
 */
#ifndef ORBEL_QKPLAY_H
#define ORBEL_QKPLAY_H

#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#if defined(QKPLAY_BUILDING)
#define QKPLAY_API __attribute__((visibility("default")))
#else
#define QKPLAY_API
#endif

/*
 * The longest path the library takes, in bytes of UTF-8 with the terminator: the system's own
 * path limit (PATH_MAX on Linux). A longer name cannot be opened anyway, so
 * qkplaydll_GetMediaInfoEx refuses it like a file that does not play, and qkplaydll_Play
 * refuses it too (reading no further than this many bytes).
 */
#define QKPLAY_MAX_PATH 4096

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The notify target of qkplaydll_Play. post(ctx, message) is called from a thread of the
 * library (never from the caller's thread) and must be thread-safe and quick: queue the
 * message and return. It must not call back into the library. The struct and ctx must stay
 * valid until qkplaydll_Play has returned.
 */
typedef struct qkplay_notify
{
    void (*post)(void* ctx, int message);
    void* ctx;
} qkplay_notify;

/*
 * The video target of qkplaydll_Play: a video surface that draws the frames with OpenGL.
 * The surface fills the three first fields and calls qkplay_video_attach; priv belongs to the
 * library and must be zero before the attach.
 *
 * get_proc_address(ctx, name) returns the address of an OpenGL function of the surface's
 * context. update(ctx) is called from a thread of the library each time a new frame is
 * ready; it must only arrange a repaint on the surface's own thread (for example by posting
 * an event), never render or call the library from inside the callback.
 */
typedef struct qkplay_video
{
    void* (*get_proc_address)(void* ctx, const char* name);
    void (*update)(void* ctx);
    void* ctx;
    void* priv;
} qkplay_video;

/*
 * Probes a file with libavformat, without the playback engine.
 *
 * path: the file name as a zero-terminated UTF-16 string. A name longer than QKPLAY_MAX_PATH
 *     bytes in UTF-8 with its terminator gives 0.
 * pnHasVideo: set to 1 when the file has a real video stream (a cover picture inside a
 *     sound file does not count), else 0.
 * pnReservedInfo, pdReservedInfo: not written; they keep the caller's values.
 * pnWidth, pnHeight: the picture's size in pixels as it is shown, that is with the sample
 *     aspect ratio applied to the width and a rotation of 90 or 270 degrees applied; 0 for
 *     a file without video.
 * pdDuration: the length in seconds, 0.0 when the file does not tell it.
 *
 * Result: non-zero when the file can be played (it has a video or sound stream that can be
 * decoded), else 0 with the outputs untouched. A missing file, a folder, an empty, truncated
 * or foreign file gives 0 without delay, and so does a file that the demuxers recognise only
 * barely (a program, a text file, which some raw format would take for a stream). Any output
 * pointer may be null.
 *
 * Thread: any; callable before any other operation and while another file plays.
 */
QKPLAY_API int qkplaydll_GetMediaInfoEx(const char16_t* path, int* pnHasVideo,
    int* pnReservedInfo, int* pnWidth, int* pnHeight,
    double* pdDuration, double* pdReservedInfo);

/*
 * Plays a file and blocks until the playback is over.
 *
 * path: the file name in UTF-8, zero-terminated. A name that does not fit QKPLAY_MAX_PATH
 *     bytes with its terminator is refused (the library reads no further than that).
 * video: the video surface, or null for no picture. With null, or with a surface that is not
 *     attached, the file plays with sound and a running position but without a picture.
 * notify: the notify target; may be null, then nothing is posted.
 * nNotifyMsg: the message number passed to notify->post at the end of the media (1524).
 * nReserved1, dReserved2, nReserved3, nReserved4: always 1, 0.0, 0, 0; not used.
 * bAudioOnly: non-zero when the file has no video; then any cover picture is not shown.
 *
 * The call returns
 *  - when the file came to its end, after notify->post(ctx, nNotifyMsg) was called once;
 *  - when qkplaydll_Stop was called during it (nothing is posted);
 *  - when another qkplaydll_Play started (nothing is posted);
 *  - at once when the file cannot be opened or played (nothing is posted, IsReady stays 0).
 * Result: 1 when the file was opened and played, 0 when it was refused or failed.
 *
 * Each call starts with the position at 0, not paused, the last seek target at 0.0.
 * A qkplaydll_Stop that returned before the play thread entered qkplaydll_Play has no effect
 * on that call.
 *
 * Thread: the play thread.
 */
QKPLAY_API int qkplaydll_Play(const char* path, qkplay_video* video, qkplay_notify* notify,
    int nNotifyMsg, int nReserved1, double dReserved2, int nReserved3,
    intptr_t nReserved4, int bAudioOnly);

/*
 * Prepares the playback of a file that is about to be played, in the background: the media
 * engine is created, the file is probed (a later qkplaydll_GetMediaInfoEx of the same file
 * takes that answer instead of probing again) and opened paused, so that its sound output and
 * decoders are ready. A qkplaydll_Play of the same file, with the same video target and
 * audio-only flag, then starts from there; a Play of another file replaces the prepared one.
 * Nothing of the prepared file is seen or heard before that Play.
 *
 * path: the file name in UTF-8, as for qkplaydll_Play; null discards what was prepared (the
 *     file is closed, a probe or opening still under way is cut short).
 *
 * Ignored while a playback runs (it is never replaced by a prepared file) and for a name that
 * qkplaydll_Play would refuse. A second call replaces the first one's file.
 *
 * Thread: any; never waits for the preparation, which runs on a thread of the library. The
 * library ends that thread itself, also when the process exits with a file still prepared.
 */
QKPLAY_API void qkplay_prepare(const char* path);

/*
 * Loads the media libraries under the engine (libmpv and FFmpeg, some two hundred shared
 * libraries in all) and returns once they are loaded. The library is not linked with them:
 * the first operation that needs them (a Play, a probe, a prepare, a video attach) loads them,
 * or waits for a load under way. A program that has no use for the engine in a given run (a
 * start that only hands its files to another) never pays for them; one that will play calls
 * this early, at a moment of its choosing.
 *
 * Result: 1 when they are loaded; 0 when they cannot be. Then every file is refused; nothing
 * aborts. A failed load is not tried again.
 *
 * Thread: any. Calls after the first find the load done, or wait for it.
 */
QKPLAY_API int qkplay_load_libraries(void);

/*
 * Ends the current playback: a blocked qkplaydll_Play returns promptly, in every state
 * (loading, playing, paused, seeking, at the end). Does nothing when nothing plays.
 * Thread: any; does not wait for the play thread.
 */
QKPLAY_API void qkplaydll_Stop(void);

/*
 * Toggles between running and paused. Also works while the file is still loading (the file
 * then opens paused). Does nothing when nothing plays.
 */
QKPLAY_API void qkplaydll_PauseOrResume(void);

/* Non-zero while a file is open and not paused. */
QKPLAY_API int qkplaydll_IsPlaying(void);

/*
 * Non-zero while a file is open, running or paused. 0 while nothing plays, while a file is
 * still loading and after a failure.
 */
QKPLAY_API int qkplaydll_IsReady(void);

/* The position of the current playback in seconds; 0.0 when nothing is open. */
QKPLAY_API double qkplaydll_getCurrentPos(void);

/*
 * The target of the last qkplaydll_SetCurrentPos of the current playback in seconds, at once,
 * while the decoder may still report the old position; 0.0 before the first seek.
 */
QKPLAY_API double qkplaydll_getLastSeekingPos(void);

/*
 * Seeks to dPos seconds from the start (negative values count as 0, beyond the end ends the
 * file). Ignored when nothing plays or dPos is not a number. Does not wait for the seek.
 */
QKPLAY_API void qkplaydll_SetCurrentPos(double dPos);

/*
 * Sets the volume, 0.0 (silent) to 1.0 (full); values outside are clamped, not-a-number is
 * ignored. Kept for every later file, also when set before the first one.
 */
QKPLAY_API void qkplaydll_SetVolume(double dVolume);

/* Mutes (non-zero) or unmutes (0) the sound. Kept like the volume. */
QKPLAY_API void qkplaydll_SetMute(int bMute);

/*
 * Adds nY, nU, nV to the Y, U and V planes of the picture, each clamped to -255..255; results
 * are kept in the planes' range. Takes effect at once during playback and stays for the
 * next files. (0, 0, 0) removes the adjustment completely: it then costs nothing.
 */
QKPLAY_API void qkplaydll_AdjustColor(int nY, int nU, int nV);

/*
 * The video surface
 * -----------------
 *
 * A surface draws the frames on its own thread (the GUI thread) with its OpenGL context.
 * One surface can be attached at a time.
 *
 *  1. With the context current: qkplay_video_attach(video). From now on video->update may be
 *     called from a library thread at any time, until qkplay_video_detach returns.
 *  2. On each repaint, context current: qkplay_video_render(video, fbo, width, height) draws
 *     the latest frame scaled into the framebuffer object fbo (0 is the default framebuffer).
 *     A surface that draws into a window's own buffers calls qkplay_video_swapped(video) each
 *     time it has swapped them, so that the library times the next frames by the display.
 *  3. Before the context is destroyed, context current: qkplay_video_detach(video). A file
 *     that plays goes on without a picture.
 *
 * None of the three waits for the play thread; they may be called while qkplaydll_Play
 * blocks on another thread. The library does not wait for the surface's thread without end:
 * a new frame that nobody renders is held for up to about 200 ms and then dropped. A surface
 * thread that waits for the play thread (to stop it, say) should go on rendering meanwhile,
 * into a buffer of its own if it cannot paint, or the stop waits out that hold.
 */

/* Attaches a surface. Result 1 on success, 0 when another surface is attached or OpenGL
 * setup failed. */
QKPLAY_API int qkplay_video_attach(qkplay_video* video);

/* Draws the latest frame into fbo, of width by height pixels. The picture keeps its aspect
 * ratio and is centred on black. Result 1 when drawn, 0 when the surface is not attached. */
QKPLAY_API int qkplay_video_render(qkplay_video* video, int fbo, int width, int height);

/* Tells the library that the frame just rendered is now on the screen (after the buffer swap).
 * Nothing when the surface is not attached. */
QKPLAY_API void qkplay_video_swapped(qkplay_video* video);

/* Detaches a surface; does nothing for a surface that is not attached. */
QKPLAY_API void qkplay_video_detach(qkplay_video* video);

/*
 * Diagnostics
 * -----------
 *
 * Reads a property of the media engine as text (for instance "volume", "mute", "vf", "ao",
 * "pause"), for tests and for a person tracking down a problem. Result: a new string that the
 * caller frees with qkplay_free, or null when the engine was not created yet or the property
 * is not available. Thread: any; may wait briefly for the engine.
 */
QKPLAY_API char* qkplay_get_engine_property(const char* name);

/* Frees a string returned by qkplay_get_engine_property; null is allowed. */
QKPLAY_API void qkplay_free(char* text);

#ifdef __cplusplus
}
#endif

#endif
