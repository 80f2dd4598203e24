#pragma once
// CQKTaskbarList: the desktop's view of the player outside its window: three buttons
// (previous, play or pause, next), an overlay that marks a pause, and the playing position as
// progress.
//
// The player speaks to it in the calls below, in the order its playback control makes them;
// what carries them to the desktop (media controls on the session bus, the launcher's
// progress) lives behind this interface. Create() gives the desktop's counterpart when a
// session bus answers and null otherwise, and then every one of these steps falls away. The
// results of the calls are never looked at.
//
// Tests replace the counterpart by a recorder through QKSetTaskbarFactory().
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

class CQKHostWnd;

// The pictures the buttons and the overlay show.
enum : uint32_t {
    QKICON_NONE = 0,
    QKICON_PREV = 129,
    QKICON_NEXT = 130,
    QKICON_PAUSE = 131,
    QKICON_PLAY = 132,
};

// Progress states.
enum : uint32_t {
    TBPF_NOPROGRESS = 0,
    TBPF_NORMAL = 2,
    TBPF_PAUSED = 8,
};

// A click on one of the buttons comes to the window as WM_COMMAND with THBN_CLICKED in the high
// word of wParam and the action in the low word: the buttons' ids 0 to 2, and the two actions
// the desktop's media controls have beyond them.
inline constexpr uint32_t THBN_CLICKED = 0x1800;
enum : uint32_t {
    QKTHB_PREV = 0,
    QKTHB_PLAYPAUSE = 1,
    QKTHB_NEXT = 2,
    QKTHB_STOP = 3,
    QKTHB_CLOSE = 4,
};

// One of the three buttons: its id (0 previous, 1 play or pause, 2 next) and its picture.
struct tagQKThumbButton
{
    uint32_t iId { 0 };
    uint32_t hIcon { QKICON_NONE };
    uint32_t dwFlags { 0 };
};

class CQKTaskbarList
{
public:
    virtual ~CQKTaskbarList();

    // The desktop's counterpart, or null where there is none.
    static std::unique_ptr<CQKTaskbarList> Create();

    virtual void HrInit() { }
    // The buttons, each time the desktop (re)makes the window's entry.
    virtual void ThumbBarAddButtons(CQKHostWnd* pWnd, uint32_t nCount, const tagQKThumbButton* pButtons);
    // A button changed its picture.
    virtual void ThumbBarUpdateButtons(CQKHostWnd* pWnd, uint32_t nCount, const tagQKThumbButton* pButtons);
    // QKICON_PAUSE while paused, QKICON_NONE otherwise.
    virtual void SetOverlayIcon(CQKHostWnd* pWnd, uint32_t hIcon);
    virtual void SetProgressState(CQKHostWnd* pWnd, uint32_t nState);
    // The position as `nCompleted` out of `nTotal` (both hundredths of seconds); 0 out of 1
    // empties it.
    virtual void SetProgressValue(CQKHostWnd* pWnd, uint64_t nCompleted, uint64_t nTotal);

    // What the desktop's media controls show beyond the buttons. A file starts playing: its
    // path, its length in seconds (0 when unknown) and whether it has a picture (a playing
    // picture keeps the screen from blanking).
    virtual void SetMedia(CQKHostWnd* pWnd, const QString& strPath, double dDuration, bool bHasVideo);
    // The volume slider stands at this fraction of its scale (0 to 1).
    virtual void SetVolume(CQKHostWnd* pWnd, double dVolume);
};

// Replaces what Create() makes (tests); an empty function puts the desktop's back.
void QKSetTaskbarFactory(std::function<std::unique_ptr<CQKTaskbarList>()> fnFactory);
