// The whole player as a person meets it, beside mpv and VLC on the same clips:
//  - time to first picture: from starting the command with a file argument until the screen
//    shows the clip's (solid red) picture, found by polling the X root window;
//  - time to close: from a close request (WM_DELETE_WINDOW, as a window manager's close
//    button sends it) until the process has ended;
//  - memory while playing: PSS and RSS from /proc/<pid>/smaps_rollup 5 s after the first
//    picture of a 1920x1080 H.264 + AAC clip;
//  - CPU while playing: utime + stime from /proc/<pid>/stat over the 10 s that follow, as a
//    percentage of one core, with the X server's share over the same time beside it.
// Every run is a first start: each player gets a new home, configuration and runtime folder,
// and ours runs from a private copy of its folder (executable, engine, skin). The clips are
// made with the ffmpeg command into a temporary folder. The program needs an X display
// (scripts/bench-startup.sh runs it under its own Xvfb) and prints Markdown tables.
//
// Sections:
//  - Options and small helpers: clocks, PATH look-up, running a command.
//  - Clips: the two clips, made with ffmpeg once and kept in a temporary folder.
//  - Players and sandboxes: the commands, the private folders of a run, starting and ending
//    a player's process (as another user for VLC when run as root).
//  - RootWatcher: looking at the screen (red points, a fingerprint of the picture, a
//    process's window, a close request).
//  - /proc readers: CPU ticks, PSS and RSS, the X server's pid.
//  - Runs: one start run and one playing run of a player.
//  - Tables and main: medians and ranges, the command line, the order of the runs.
#include "support/X11Screen.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Settings from the command line.
struct Options
{
    int nStartRuns { 10 };
    int nPlayRuns { 5 };
    std::vector<std::string> players { "ours", "mpv", "mpv-gl", "vlc", "vlc-dummy" };
    std::string strAppDir;
    // A second build of ours to measure beside the first in the same run (--base).
    std::string strBaseDir;
    std::string strVlcUser { "nobody" };
    std::string strLogDir;
};

double MsSince(Clock::time_point t)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - t).count();
}

void SleepMs(int nMs)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(nMs));
}

void SleepUntil(Clock::time_point t)
{
    std::this_thread::sleep_until(t);
}

std::string TempRoot()
{
    const char* pszTmp = std::getenv("TMPDIR");
    return pszTmp && *pszTmp ? pszTmp : "/tmp";
}

// The full path of a program found on PATH, or an empty string.
std::string FindInPath(const std::string& strName)
{
    const char* pszPath = std::getenv("PATH");
    std::stringstream path(pszPath ? pszPath : "/usr/bin:/bin");
    std::string strDir;
    while (std::getline(path, strDir, ':')) {
        const std::string strFull = strDir + "/" + strName;
        if (access(strFull.c_str(), X_OK) == 0)
            return strFull;
    }
    return std::string();
}

// Runs a command with its output thrown away and waits for it; false on failure.
bool Run(const std::vector<std::string>& args)
{
    pid_t pid = fork();
    if (pid < 0)
        return false;
    if (pid == 0) {
        int fd = open("/dev/null", O_RDWR);
        dup2(fd, 0);
        dup2(fd, 1);
        dup2(fd, 2);
        std::vector<char*> argv;
        for (const std::string& a : args)
            argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    int nStatus = 0;
    waitpid(pid, &nStatus, 0);
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

// The two clips. The playing clip begins with one second of solid red over the test pattern,
// so that its first picture can be found on the screen the same way as the start-up clip's.
struct Clips
{
    std::string strRed;
    std::string strPlaying;
};

Clips MakeClips()
{
    const std::string strDir = TempRoot() + "/orbel-bench-startup-media-" + std::to_string(getuid());
    fs::create_directories(strDir);
    // Players that run as another user must be able to read the clips.
    chmod(strDir.c_str(), 0755);
    const std::vector<std::string> encode { "-c:v", "libx264", "-preset", "veryfast", "-pix_fmt", "yuv420p", "-c:a", "aac",
        "-shortest" };
    struct Recipe
    {
        std::string strFile;
        std::string strVideo;
    };
    const std::vector<Recipe> recipes {
        { "red-1280x720-30s.mp4", "color=c=red:size=1280x720:rate=30:duration=30" },
        { "testsrc2-1920x1080-30s.mp4",
            "testsrc2=size=1920x1080:rate=30:duration=30,drawbox=color=red:t=fill:enable='lt(t,1)'" },
    };
    std::vector<std::string> paths;
    for (const Recipe& r : recipes) {
        const std::string strPath = strDir + "/" + r.strFile;
        if (access(strPath.c_str(), R_OK) != 0) {
            std::fprintf(stderr, "making %s with ffmpeg\n", strPath.c_str());
            std::vector<std::string> cmd { "ffmpeg", "-y", "-nostdin", "-v", "error", "-f", "lavfi", "-i", r.strVideo, "-f",
                "lavfi", "-i", "sine=frequency=440:duration=30" };
            cmd.insert(cmd.end(), encode.begin(), encode.end());
            cmd.push_back(strPath + ".part.mp4");
            if (!Run(cmd) || rename((strPath + ".part.mp4").c_str(), strPath.c_str()) != 0) {
                std::fprintf(stderr, "ffmpeg could not make %s\n", strPath.c_str());
                std::exit(1);
            }
        }
        chmod(strPath.c_str(), 0644);
        paths.push_back(strPath);
    }
    return { paths[0], paths[1] };
}

// One player: how to start it and as whom.
struct Player
{
    std::string strKey;
    std::string strName;
    std::string strProgram;
    std::vector<std::string> args;
    // Ours: the folder the private copy is made from.
    std::string strAppDir;
    bool bOwnCopy { false };
    // Ours in full screen: its key (F2) is typed once the first picture is on the screen.
    bool bFullScreenKey { false };
    // Measured in the playing runs only (the full-screen keys: they start as their window).
    bool bPlayOnly { false };
    bool bOtherUser { false };
    uid_t uid { 0 };
    gid_t gid { 0 };
};

// A private folder for one run: home, configuration, runtime folder and, for ours, a copy of
// the program's folder. Removed when the run ends.
class Sandbox
{
public:
    explicit Sandbox(const Player& player)
    {
        const std::string& strAppDir = player.strAppDir;
        char szTemplate[4096];
        std::snprintf(szTemplate, sizeof szTemplate, "%s/orbel-bench-startup-XXXXXX", TempRoot().c_str());
        if (!mkdtemp(szTemplate))
            return;
        root = szTemplate;
        chmod(szTemplate, 0755);
        std::error_code ec;
        fs::create_directories(root / "home/.config", ec);
        fs::create_directories(root / "run", ec);
        chmod((root / "run").c_str(), 0700);
        strProgram = player.strProgram;
        if (player.bOwnCopy) {
            fs::create_directories(root / "app", ec);
            fs::copy_file(fs::path(strAppDir) / "orbel-player", root / "app/orbel-player", ec);
            if (!ec)
                fs::copy_file(fs::path(strAppDir) / "libqkplay.so", root / "app/libqkplay.so", ec);
            if (!ec)
                fs::copy(fs::path(strAppDir) / "skin", root / "app/skin", fs::copy_options::recursive, ec);
            if (ec)
                return;
            strProgram = (root / "app/orbel-player").string();
        }
        env = BaseEnvironment();
        Set("HOME", (root / "home").string());
        Set("XDG_CONFIG_HOME", (root / "home/.config").string());
        Set("XDG_RUNTIME_DIR", (root / "run").string());
        if (player.bOtherUser) {
            // The other user needs its own folders and its own copy of the X authority file.
            for (const char* pszSub : { "home", "home/.config", "run" })
                if (chown((root / pszSub).c_str(), player.uid, player.gid) != 0)
                    return;
            const char* pszAuth = std::getenv("XAUTHORITY");
            if (pszAuth && *pszAuth) {
                fs::copy_file(pszAuth, root / "Xauthority", ec);
                if (ec || chown((root / "Xauthority").c_str(), player.uid, player.gid) != 0)
                    return;
                Set("XAUTHORITY", (root / "Xauthority").string());
            }
            const passwd* pPw = getpwuid(player.uid);
            if (pPw) {
                Set("USER", pPw->pw_name);
                Set("LOGNAME", pPw->pw_name);
            }
        }
        bValid = true;
    }

    ~Sandbox()
    {
        std::error_code ec;
        if (!root.empty())
            fs::remove_all(root, ec);
    }

    bool IsValid() const { return bValid; }
    const std::string& Program() const { return strProgram; }
    const std::vector<std::string>& Environment() const { return env; }
    fs::path Root() const { return root; }

private:
    static std::vector<std::string> BaseEnvironment()
    {
        std::vector<std::string> vars;
        for (char** p = environ; *p; ++p) {
            // A platform chosen for tests (offscreen) would hide the windows.
            if (std::strncmp(*p, "QT_QPA_PLATFORM=", 16) != 0)
                vars.emplace_back(*p);
        }
        return vars;
    }

    void Set(const std::string& strName, const std::string& strValue)
    {
        const std::string strPrefix = strName + "=";
        std::erase_if(env, [&](const std::string& s) { return s.starts_with(strPrefix); });
        env.push_back(strPrefix + strValue);
    }

    fs::path root;
    std::string strProgram;
    std::vector<std::string> env;
    bool bValid { false };
};

// Starts the player in its own process group with its output in a log file; returns the
// pid of the player itself (for the other user, the user is changed before the exec, so no
// helper process stands between).
pid_t Start(const Player& player, const Sandbox& box, const std::string& strClip, const std::string& strLog)
{
    std::vector<std::string> args { box.Program() };
    args.insert(args.end(), player.args.begin(), player.args.end());
    args.push_back(strClip);
    std::vector<char*> argv;
    for (const std::string& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (const std::string& e : box.Environment())
        envp.push_back(const_cast<char*>(e.c_str()));
    envp.push_back(nullptr);
    const std::string strCwd = (box.Root() / "home").string();
    int fdLog = open(strLog.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    int fdNull = open("/dev/null", O_RDONLY | O_CLOEXEC);
    pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0);
        dup2(fdNull, 0);
        dup2(fdLog >= 0 ? fdLog : fdNull, 1);
        dup2(fdLog >= 0 ? fdLog : fdNull, 2);
        if (chdir(strCwd.c_str()) != 0)
            _exit(126);
        if (player.bOtherUser && (setgroups(0, nullptr) != 0 || setgid(player.gid) != 0 || setuid(player.uid) != 0))
            _exit(126);
        execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    if (fdLog >= 0)
        close(fdLog);
    if (fdNull >= 0)
        close(fdNull);
    return pid;
}

// Waits up to nTimeoutMs for the process to end; true when it has (and is reaped).
bool WaitForEnd(pid_t pid, int nTimeoutMs)
{
    auto tStart = Clock::now();
    for (;;) {
        int nStatus = 0;
        pid_t r = waitpid(pid, &nStatus, WNOHANG);
        if (r == pid || (r < 0 && errno == ECHILD))
            return true;
        if (MsSince(tStart) > nTimeoutMs)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
}

bool HasEnded(pid_t pid)
{
    int nStatus = 0;
    pid_t r = waitpid(pid, &nStatus, WNOHANG);
    return r == pid || (r < 0 && errno == ECHILD);
}

// Ends the player and anything it started: a polite request first, then a kill.
void EndProcessGroup(pid_t pid)
{
    kill(-pid, SIGTERM);
    if (!WaitForEnd(pid, 3000)) {
        kill(-pid, SIGKILL);
        WaitForEnd(pid, 3000);
    }
    kill(-pid, SIGKILL);
}

// The X screen, looked at through the root window. Windows vanish while they are looked
// at; such errors are expected and ignored.
class RootWatcher : public orbeltest::X11Screen
{
public:
    RootWatcher()
        : X11Screen(true)
    {
    }

    // How many points of a grid with nStep pixels between them show red. One row of the
    // screen is read per grid line, so a look costs a few dozen small requests.
    int CountRed() const
    {
        int nRed = 0;
        for (int y = nStep / 2; y < Height(); y += nStep) {
            const std::vector<uint32_t> row = Read(0, y, Width(), 1);
            if (row.empty())
                continue;
            for (int x = nStep / 2; x < Width(); x += nStep) {
                const uint32_t px = row[static_cast<size_t>(x)];
                const unsigned r = (px >> 16) & 0xFF, g = (px >> 8) & 0xFF, b = px & 0xFF;
                if (r > 150 && g < 90 && b < 90)
                    ++nRed;
            }
        }
        return nRed;
    }

    // A hash of what the screen shows along rows 64 pixels apart: it changes whenever a
    // player puts a new picture of the moving test pattern on the screen.
    uint64_t Fingerprint() const
    {
        uint64_t nHash = 1469598103934665603ull;
        for (int y = 32; y < Height(); y += 64) {
            const std::vector<uint32_t> row = Read(0, y, Width(), 1);
            for (size_t x = 0; x < row.size(); x += 2)
                nHash = (nHash ^ row[x]) * 1099511628211ull;
        }
        return nHash;
    }

    // The largest mapped top-level window of the process (by _NET_WM_PID), or 0.
    Window MainWindowOf(pid_t pid) const
    {
        Window best = 0;
        long nBestArea = 0;
        for (const unsigned long w : ViewableWindows()) {
            XWindowAttributes attr {};
            if (Property32(w, "_NET_WM_PID", "CARDINAL") != pid || !XGetWindowAttributes(Connection(), w, &attr))
                continue;
            const long nArea = static_cast<long>(attr.width) * attr.height;
            if (nArea > nBestArea) {
                best = w;
                nBestArea = nArea;
            }
        }
        return best;
    }

    // The size of a window as "width x height", or an empty string.
    std::string SizeOf(Window window) const
    {
        XWindowAttributes attr {};
        if (!window || !XGetWindowAttributes(Connection(), window, &attr))
            return std::string();
        return std::to_string(attr.width) + "x" + std::to_string(attr.height);
    }

    // The grid has 60 by 34 points on a 1920x1080 screen; a picture counts as shown when
    // about 4 % of a 1280x720 picture is red.
    static constexpr int nStep { 32 };
    static constexpr int nMinRed { 40 };
};

// Waits until the clip's red picture shows; returns the time since tStart in ms, or a
// negative value when the process ended or nothing showed within nTimeoutMs.
double WaitForPicture(const RootWatcher& screen, pid_t pid, Clock::time_point tStart, int nTimeoutMs)
{
    for (;;) {
        if (screen.CountRed() >= RootWatcher::nMinRed)
            return MsSince(tStart);
        if (MsSince(tStart) > nTimeoutMs || HasEnded(pid))
            return -1;
        SleepMs(3);
    }
}

// Waits until no red is left on the screen from an earlier run.
void WaitForClearScreen(const RootWatcher& screen)
{
    auto tStart = Clock::now();
    while (screen.CountRed() > 0 && MsSince(tStart) < 5000)
        SleepMs(20);
    SleepMs(300);
}

// utime + stime of a process in clock ticks, or -1.
long CpuTicks(pid_t pid)
{
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string strLine;
    if (!std::getline(file, strLine))
        return -1;
    // Fields after the command name, which is in parentheses and may hold spaces: state is
    // the third field, utime the 14th and stime the 15th.
    const size_t nClose = strLine.rfind(')');
    if (nClose == std::string::npos)
        return -1;
    std::istringstream rest(strLine.substr(nClose + 2));
    std::string strField;
    long nUser = -1, nSystem = -1;
    for (int nField = 3; rest >> strField; ++nField) {
        if (nField == 14)
            nUser = std::atol(strField.c_str());
        if (nField == 15) {
            nSystem = std::atol(strField.c_str());
            break;
        }
    }
    return nUser < 0 || nSystem < 0 ? -1 : nUser + nSystem;
}

// Pss and Rss of a process in kB from smaps_rollup; false when unreadable.
bool Memory(pid_t pid, long& nPss, long& nRss)
{
    std::ifstream file("/proc/" + std::to_string(pid) + "/smaps_rollup");
    std::string strLine;
    nPss = nRss = -1;
    while (std::getline(file, strLine)) {
        if (strLine.starts_with("Rss:"))
            nRss = std::atol(strLine.c_str() + 4);
        else if (strLine.starts_with("Pss:"))
            nPss = std::atol(strLine.c_str() + 4);
    }
    return nPss >= 0 && nRss >= 0;
}

// The pid of the Xvfb server of our display, or 0 when it is not one we can see.
pid_t XServerPid()
{
    const char* pszDisplay = std::getenv("DISPLAY");
    if (!pszDisplay)
        return 0;
    const std::string strDisplay = std::string(pszDisplay).substr(0, std::string(pszDisplay).find('.'));
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", ec)) {
        const std::string strPid = entry.path().filename().string();
        if (strPid.empty() || !std::all_of(strPid.begin(), strPid.end(), [](unsigned char c) { return c >= '0' && c <= '9'; }))
            continue;
        std::ifstream cmdline(entry.path() / "cmdline");
        std::string strArg;
        bool bXvfb = false;
        for (int i = 0; std::getline(cmdline, strArg, '\0'); ++i) {
            if (i == 0)
                bXvfb = fs::path(strArg).filename() == "Xvfb";
            else if (bXvfb && strArg == strDisplay)
                return static_cast<pid_t>(std::atol(strPid.c_str()));
        }
    }
    return 0;
}

// Figures of one player, one value per successful run.
struct Figures
{
    std::vector<double> firstPicture;
    std::vector<double> close;
    std::vector<double> pss;
    std::vector<double> rss;
    std::vector<double> cpu;
    std::vector<double> xserverCpu;
    std::vector<double> fps;
    std::string strWindow;
    int nStartFailures { 0 };
    int nCloseFailures { 0 };
    int nPlayFailures { 0 };
};

std::string LogPath(const Options& opt, const Player& player, const char* pszKind, int nRun)
{
    return opt.strLogDir + "/" + player.strKey + "-" + pszKind + "-" + std::to_string(nRun) + ".log";
}

// One start with the red clip: time to the first picture, a second of playing, then a close
// request and the time until the process has ended.
void StartRun(const Options& opt, const RootWatcher& screen, const Player& player, const Clips& clips, int nRun, Figures& fig)
{
    Sandbox box(player);
    if (!box.IsValid()) {
        ++fig.nStartFailures;
        return;
    }
    WaitForClearScreen(screen);
    const auto tStart = Clock::now();
    const pid_t pid = Start(player, box, clips.strRed, LogPath(opt, player, "start", nRun));
    if (pid < 0) {
        ++fig.nStartFailures;
        return;
    }
    const double dFirst = WaitForPicture(screen, pid, tStart, 20000);
    if (dFirst < 0) {
        ++fig.nStartFailures;
        EndProcessGroup(pid);
        return;
    }
    fig.firstPicture.push_back(dFirst);
    SleepMs(1000);
    const Window window = screen.MainWindowOf(pid);
    if (window) {
        const auto tClose = Clock::now();
        screen.RequestClose(window);
        if (WaitForEnd(pid, 10000))
            fig.close.push_back(MsSince(tClose));
        else
            ++fig.nCloseFailures;
    } else {
        ++fig.nCloseFailures;
    }
    EndProcessGroup(pid);
}

// One start with the playing clip: memory 5 s after the first picture, CPU over the 10 s
// after that.
void PlayRun(const Options& opt, const RootWatcher& screen, const Player& player, const Clips& clips, int nRun, pid_t xserver,
    Figures& fig)
{
    Sandbox box(player);
    if (!box.IsValid()) {
        ++fig.nPlayFailures;
        return;
    }
    WaitForClearScreen(screen);
    const auto tStart = Clock::now();
    const pid_t pid = Start(player, box, clips.strPlaying, LogPath(opt, player, "play", nRun));
    if (pid < 0) {
        ++fig.nPlayFailures;
        return;
    }
    const double dFirst = WaitForPicture(screen, pid, tStart, 20000);
    if (dFirst < 0) {
        ++fig.nPlayFailures;
        EndProcessGroup(pid);
        return;
    }
    const auto tFirst = tStart + std::chrono::microseconds(static_cast<long>(dFirst * 1000));
    if (player.bFullScreenKey) {
        // As a person does: the window gets the keyboard, then the key goes through XTEST.
        const std::string strKeys = "xdotool windowfocus " + std::to_string(screen.MainWindowOf(pid)) + " key F2 >/dev/null 2>&1";
        if (std::system(strKeys.c_str()) != 0)
            std::fprintf(stderr, "could not type F2 into %s\n", player.strName.c_str());
    }
    SleepUntil(tFirst + std::chrono::seconds(5));
    long nPss = 0, nRss = 0;
    const bool bMemory = Memory(pid, nPss, nRss);
    const std::string strWindow = screen.SizeOf(screen.MainWindowOf(pid));
    if (!strWindow.empty())
        fig.strWindow = strWindow;
    const long nTicks0 = CpuTicks(pid);
    const long nXTicks0 = xserver ? CpuTicks(xserver) : -1;
    const auto t0 = Clock::now();
    SleepUntil(t0 + std::chrono::seconds(10));
    const long nTicks1 = CpuTicks(pid);
    const long nXTicks1 = xserver ? CpuTicks(xserver) : -1;
    const double dSeconds = MsSince(t0) / 1000.0;
    // Pictures that reached the screen per second, over 3 s after the CPU was measured (the
    // looking costs the X server some time, which must not count above).
    const auto tFps = Clock::now();
    uint64_t nLast = screen.Fingerprint();
    int nChanges = 0;
    while (MsSince(tFps) < 3000) {
        SleepMs(4);
        const uint64_t n = screen.Fingerprint();
        nChanges += n != nLast;
        nLast = n;
    }
    const double dFps = nChanges / (MsSince(tFps) / 1000.0);
    const bool bAlive = !HasEnded(pid);
    EndProcessGroup(pid);
    if (!bAlive || !bMemory || nTicks0 < 0 || nTicks1 < 0) {
        ++fig.nPlayFailures;
        return;
    }
    const double dTick = static_cast<double>(sysconf(_SC_CLK_TCK));
    fig.pss.push_back(nPss / 1024.0);
    fig.rss.push_back(nRss / 1024.0);
    fig.cpu.push_back(100.0 * (nTicks1 - nTicks0) / dTick / dSeconds);
    fig.fps.push_back(dFps);
    if (nXTicks0 >= 0 && nXTicks1 >= 0)
        fig.xserverCpu.push_back(100.0 * (nXTicks1 - nXTicks0) / dTick / dSeconds);
}

// "median (min–max)" with the given number of decimals, or "–" without values.
std::string Summary(std::vector<double> values, int nDecimals)
{
    if (values.empty())
        return "–";
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    const double dMedian = n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
    char sz[128];
    std::snprintf(sz, sizeof sz, "%.*f (%.*f–%.*f)", nDecimals, dMedian, nDecimals, values.front(), nDecimals, values.back());
    return sz;
}

std::string RunsNote(size_t nGood, int nFailed)
{
    std::string s = std::to_string(nGood);
    if (nFailed > 0)
        s += " (" + std::to_string(nFailed) + " failed)";
    return s;
}

void PrintTables(const std::vector<Player>& players, const std::vector<Figures>& figures)
{
    std::printf("\n### Time to first picture and to close (ms, median (min–max))\n\n");
    std::printf("| player | first picture | runs | close request to exit | runs |\n|---|---|---|---|---|\n");
    for (size_t i = 0; i < players.size(); ++i) {
        const Figures& f = figures[i];
        std::printf("| %s | %s | %s | %s | %s |\n", players[i].strName.c_str(), Summary(f.firstPicture, 0).c_str(),
            RunsNote(f.firstPicture.size(), f.nStartFailures).c_str(), Summary(f.close, 0).c_str(),
            RunsNote(f.close.size(), f.nCloseFailures).c_str());
    }
    std::printf("\n### While playing 1920x1080 H.264 + AAC (median (min–max))\n\n");
    std::printf("| player | window | PSS (MiB) | RSS (MiB) | CPU (%% of one core) | X server CPU (%%) | pictures/s | runs |\n|---|---|---|---|---|---|---|---|\n");
    for (size_t i = 0; i < players.size(); ++i) {
        const Figures& f = figures[i];
        std::printf("| %s | %s | %s | %s | %s | %s | %s | %s |\n", players[i].strName.c_str(),
            f.strWindow.empty() ? "–" : f.strWindow.c_str(), Summary(f.pss, 1).c_str(),
            Summary(f.rss, 1).c_str(), Summary(f.cpu, 1).c_str(), Summary(f.xserverCpu, 1).c_str(), Summary(f.fps, 0).c_str(),
            RunsNote(f.pss.size(), f.nPlayFailures).c_str());
    }
    std::fflush(stdout);
}

std::string OwnFolder()
{
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string(".") : exe.parent_path().string();
}

void Usage()
{
    std::fprintf(stderr,
        "usage: bench_startup [--runs N] [--play-runs N] [--players ours,mpv,mpv-gl,vlc,vlc-dummy] [--app DIR] [--base DIR]\n"
        "                     (more keys: ours-fs, ours-base-fs, mpv-gl-fs: the same in full screen)\n"
        "                     [--vlc-user USER]\n"
        "  --runs       starts with the red clip per player (default 10)\n"
        "  --play-runs  starts with the playing clip per player (default 5; 0 skips memory and CPU)\n"
        "  --app        folder with orbel-player, libqkplay.so and skin/ (default: this program's folder)\n"
        "  --base       such a folder of another build, measured beside ours in the same run (player key ours-base)\n"
        "  --vlc-user   the user VLC runs as, since it refuses to run as root (default nobody)\n");
}

bool ParseOptions(int argc, char** argv, Options& opt)
{
    opt.strAppDir = OwnFolder();
    for (int i = 1; i < argc; ++i) {
        const std::string strArg = argv[i];
        const char* pszValue = i + 1 < argc ? argv[i + 1] : nullptr;
        if (!pszValue)
            return false;
        if (strArg == "--runs")
            opt.nStartRuns = std::max(0, std::atoi(pszValue));
        else if (strArg == "--play-runs")
            opt.nPlayRuns = std::max(0, std::atoi(pszValue));
        else if (strArg == "--app")
            opt.strAppDir = pszValue;
        else if (strArg == "--base")
            opt.strBaseDir = pszValue;
        else if (strArg == "--vlc-user")
            opt.strVlcUser = pszValue;
        else if (strArg == "--players") {
            opt.players.clear();
            std::stringstream list(pszValue);
            std::string strName;
            while (std::getline(list, strName, ','))
                opt.players.push_back(strName);
        } else
            return false;
        ++i;
    }
    // A base build is measured right after ours unless the list places it.
    if (!opt.strBaseDir.empty() && std::find(opt.players.begin(), opt.players.end(), "ours-base") == opt.players.end()) {
        auto it = std::find(opt.players.begin(), opt.players.end(), "ours");
        opt.players.insert(it == opt.players.end() ? opt.players.begin() : it + 1, "ours-base");
    }
    return true;
}

// The players that can run here, in the order of the tables; a missing one is reported and
// left out.
std::vector<Player> FindPlayers(const Options& opt)
{
    std::vector<Player> players;
    for (const std::string& strKey : opt.players) {
        Player p;
        p.strKey = strKey;
        if (strKey == "ours" || strKey == "ours-base" || strKey == "ours-fs" || strKey == "ours-base-fs") {
            const bool bBase = strKey.rfind("ours-base", 0) == 0;
            p.bFullScreenKey = strKey.size() > 3 && strKey.compare(strKey.size() - 3, 3, "-fs") == 0;
            if (bBase && opt.strBaseDir.empty()) {
                std::fprintf(stderr, "ours-base left out: no --base folder\n");
                continue;
            }
            p.strName = bBase ? "Orbel Player, base build" : "Orbel Player";
            if (p.bFullScreenKey) {
                p.strName += ", full screen";
                p.bPlayOnly = true;
            }
            p.strAppDir = bBase ? opt.strBaseDir : opt.strAppDir;
            p.strProgram = p.strAppDir + "/orbel-player";
            p.bOwnCopy = true;
        } else if (strKey == "mpv") {
            // What a user gets without a configuration file.
            p.strName = "mpv";
            p.strProgram = FindInPath("mpv");
            p.args = { "--no-config" };
        } else if (strKey == "mpv-gl" || strKey == "mpv-gl-fs") {
            // mpv set up as our engine is: its OpenGL renderer even on a software driver
            // (which it otherwise refuses, falling back to a slower output), and decoded sound
            // sent to the null output when no sound device opens.
            p.strName = "mpv, OpenGL + null sound";
            p.strProgram = FindInPath("mpv");
            p.args = { "--no-config", "--gpu-sw=yes", "--audio-fallback-to-null=yes" };
            if (strKey == "mpv-gl-fs") {
                p.strName += ", full screen";
                p.bPlayOnly = true;
                p.args.push_back("--fs");
            }
        } else if (strKey == "vlc" || strKey == "vlc-dummy") {
            p.strName = strKey == "vlc" ? "VLC" : "VLC, dummy sound";
            p.strProgram = FindInPath("vlc");
            // The first start of the Qt interface asks about network access; that dialog
            // would stand in front of the picture.
            p.args = { "--no-qt-privacy-ask" };
            // Without a sound device VLC tries to open one again for every block of sound;
            // the dummy output takes the sound as a working device would.
            if (strKey == "vlc-dummy")
                p.args.push_back("--aout=dummy");
            if (geteuid() == 0) {
                const passwd* pPw = getpwnam(opt.strVlcUser.c_str());
                if (!pPw) {
                    std::fprintf(stderr, "VLC left out: there is no user %s to run it as\n", opt.strVlcUser.c_str());
                    continue;
                }
                p.bOtherUser = true;
                p.uid = pPw->pw_uid;
                p.gid = pPw->pw_gid;
            }
        } else {
            std::fprintf(stderr, "unknown player %s\n", strKey.c_str());
            continue;
        }
        if (p.strProgram.empty() || access(p.strProgram.c_str(), X_OK) != 0) {
            std::fprintf(stderr, "%s left out: no program found\n", p.strName.c_str());
            continue;
        }
        players.push_back(p);
    }
    return players;
}

} // namespace

int main(int argc, char** argv)
{
    Options opt;
    if (!ParseOptions(argc, argv, opt)) {
        Usage();
        return 2;
    }
    RootWatcher screen;
    if (!screen.IsOpen()) {
        std::fprintf(stderr, "no X display: run under Xvfb (scripts/bench-startup.sh does)\n");
        return 1;
    }
    const std::vector<Player> players = FindPlayers(opt);
    if (players.empty())
        return 1;
    const Clips clips = MakeClips();
    opt.strLogDir = TempRoot() + "/orbel-bench-startup-logs-" + std::to_string(getuid());
    std::error_code ec;
    fs::remove_all(opt.strLogDir, ec);
    fs::create_directories(opt.strLogDir, ec);
    chmod(opt.strLogDir.c_str(), 0755);
    const pid_t xserver = XServerPid();

    // The players take turns within each round, so that a slow spell of the machine touches
    // all of them alike.
    std::vector<Figures> figures(players.size());
    for (int nRun = 0; nRun < opt.nStartRuns; ++nRun) {
        for (size_t i = 0; i < players.size(); ++i) {
            // A full-screen player starts as its window does: only its playing runs differ.
            if (players[i].bPlayOnly)
                continue;
            const size_t nBefore = figures[i].firstPicture.size();
            StartRun(opt, screen, players[i], clips, nRun, figures[i]);
            const bool bShown = figures[i].firstPicture.size() > nBefore;
            std::fprintf(stderr, "start run %d, %s: first picture %s\n", nRun + 1, players[i].strName.c_str(),
                bShown ? (std::to_string(static_cast<int>(figures[i].firstPicture.back())) + " ms").c_str() : "failed");
        }
    }
    for (int nRun = 0; nRun < opt.nPlayRuns; ++nRun) {
        for (size_t i = 0; i < players.size(); ++i) {
            const size_t nBefore = figures[i].cpu.size();
            PlayRun(opt, screen, players[i], clips, nRun, xserver, figures[i]);
            const bool bMeasured = figures[i].cpu.size() > nBefore;
            std::fprintf(stderr, "play run %d, %s: %s\n", nRun + 1, players[i].strName.c_str(),
                bMeasured ? (std::to_string(static_cast<int>(figures[i].cpu.back())) + " % CPU").c_str() : "failed");
        }
    }
    PrintTables(players, figures);
    std::printf("\nThe players' own output of every run is in %s\n", opt.strLogDir.c_str());
    return 0;
}
