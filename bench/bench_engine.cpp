// The playback library against peers on the same files:
//  - qkplaydll_GetMediaInfoEx in the process, beside the ffprobe command (a whole process);
//  - qkplaydll_Play until the engine reports the file open (IsReady) and until the position
//    first moves (the first frame decoded and presented), beside the mpv command playing one
//    frame to a null output (a whole process: start, open, first frame, exit).
// The media are made with the ffmpeg command into a temporary folder at start.
#include "engine/qkplay.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

// Runs a command with its output thrown away and waits for it; false on failure.
bool Run(std::vector<std::string> args)
{
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    int nErr = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (nErr != 0)
        return false;
    int nStatus = 0;
    waitpid(pid, &nStatus, 0);
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

struct Media
{
    const char* pszName;
    std::string strPath;
};

std::vector<Media>& AllMedia()
{
    static std::vector<Media> media;
    return media;
}

void MakeMedia()
{
    const char* pszTmp = std::getenv("TMPDIR");
    std::string strDir = std::string(pszTmp ? pszTmp : "/tmp") + "/orbel-bench-engine-" + std::to_string(getuid());
    Run({ "mkdir", "-p", strDir });
    struct Recipe
    {
        const char* pszName;
        const char* pszFile;
        std::vector<std::string> args;
    };
    const std::vector<std::string> h264 { "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p" };
    std::vector<Recipe> recipes {
        { "h264+aac 640x360 10s", "video.mkv",
            { "-f", "lavfi", "-i", "testsrc=size=640x360:rate=25:duration=10", "-f", "lavfi", "-i",
                "sine=duration=10", "-c:a", "aac" } },
        { "h264 1920x1080 10s", "hd.mp4", { "-f", "lavfi", "-i", "testsrc=size=1920x1080:rate=25:duration=10" } },
        { "mp3 10s", "sound.mp3", { "-f", "lavfi", "-i", "sine=duration=10", "-c:a", "libmp3lame" } },
    };
    for (Recipe& r : recipes) {
        std::string strPath = strDir + "/" + r.pszFile;
        if (access(strPath.c_str(), R_OK) != 0) {
            std::vector<std::string> cmd { "ffmpeg", "-y", "-nostdin", "-v", "error" };
            cmd.insert(cmd.end(), r.args.begin(), r.args.end());
            if (std::string(r.pszFile) != "sound.mp3")
                cmd.insert(cmd.end(), h264.begin(), h264.end());
            cmd.push_back(strPath);
            if (!Run(cmd)) {
                std::fprintf(stderr, "ffmpeg failed for %s\n", r.pszFile);
                std::exit(1);
            }
        }
        AllMedia().push_back({ r.pszName, strPath });
    }
}

std::u16string Wide(const std::string& str)
{
    // The bench paths are ASCII.
    return std::u16string(str.begin(), str.end());
}

void BM_GetMediaInfoEx(benchmark::State& state)
{
    const Media& m = AllMedia()[state.range(0)];
    std::u16string wide = Wide(m.strPath);
    state.SetLabel(m.pszName);
    for (auto _ : state) {
        int nHasVideo = 0, nReserved = 0, nWidth = 0, nHeight = 0;
        double dDuration = 0, dReserved = 0;
        int n = qkplaydll_GetMediaInfoEx(wide.c_str(), &nHasVideo, &nReserved, &nWidth, &nHeight, &dDuration, &dReserved);
        benchmark::DoNotOptimize(n);
    }
}

void BM_FfprobeProcess(benchmark::State& state)
{
    const Media& m = AllMedia()[state.range(0)];
    state.SetLabel(m.pszName);
    for (auto _ : state) {
        if (!Run({ "ffprobe", "-v", "error", "-show_format", "-show_streams", m.strPath }))
            state.SkipWithError("ffprobe failed");
    }
}

// Plays the file on a thread and times, from the call of qkplaydll_Play, the moment the
// engine reports the file open and the moment the position first moves.
void BM_PlayUntilReady(benchmark::State& state)
{
    const Media& m = AllMedia()[state.range(0)];
    const bool bFirstFrame = state.range(1) != 0;
    state.SetLabel(std::string(m.pszName) + (bFirstFrame ? ", position moving" : ", ready"));
    for (auto _ : state) {
        auto tStart = Clock::now();
        std::thread play([&] { qkplaydll_Play(m.strPath.c_str(), nullptr, nullptr, 1524, 1, 0.0, 0, 0, 0); });
        while (bFirstFrame ? qkplaydll_getCurrentPos() <= 0.0 : !qkplaydll_IsReady()) {
            if (Clock::now() - tStart > std::chrono::seconds(10)) {
                state.SkipWithError("no playback");
                break;
            }
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        auto elapsed = std::chrono::duration<double>(Clock::now() - tStart).count();
        state.SetIterationTime(elapsed);
        qkplaydll_Stop();
        play.join();
    }
}

void BM_MpvProcessFirstFrame(benchmark::State& state)
{
    const Media& m = AllMedia()[state.range(0)];
    state.SetLabel(m.pszName);
    for (auto _ : state) {
        // One video frame shown, or 40 ms of sound for a file without video.
        const bool bSound = state.range(0) == 2;
        if (!Run({ "mpv", "--no-config", "--really-quiet", "--vo=null", "--ao=null", bSound ? "--end=0.04" : "--frames=1",
                m.strPath }))
            state.SkipWithError("mpv failed");
    }
}

} // namespace

BENCHMARK(BM_GetMediaInfoEx)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FfprobeProcess)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_PlayUntilReady)
    ->ArgsProduct({ { 0, 1, 2 }, { 0, 1 } })
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(20);
BENCHMARK(BM_MpvProcessFirstFrame)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

int main(int argc, char** argv)
{
    MakeMedia();
    // Warm the engine once so that the first timed Play does not include creating it; the
    // creation is timed on its own in the first line of the output.
    auto tCreate = Clock::now();
    std::thread warm([] { qkplaydll_Play(AllMedia()[2].strPath.c_str(), nullptr, nullptr, 1524, 1, 0.0, 0, 0, 1); });
    while (!qkplaydll_IsReady() && Clock::now() - tCreate < std::chrono::seconds(10))
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    std::printf("first Play to ready, engine creation included: %.1f ms\n",
        std::chrono::duration<double, std::milli>(Clock::now() - tCreate).count());
    qkplaydll_Stop();
    warm.join();

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
