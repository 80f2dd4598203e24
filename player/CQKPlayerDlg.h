#pragma once
// CQKPlayerDlg: the main window of the player.
//
// A frameless window of class "QKOrbelPlayerGuiFrame" that holds the video surface over its
// video area and drives the engine. Its operations are split over units by concern:
//
//   CQKPlayerDlg.cpp          construction, window creation, initialisation, messages,
//                             timers, keys and the end of the window
//   CQKPlayerDlgPlayback.cpp  play, pause, stop, seek, volume, mute, next and previous,
//                             the position display, the play thread and the end of media
//   CQKPlayerDlgPanel.cpp     the panel's controls, their places, the faces that follow the
//                             player's state, the title line and the desktop's view
//   CQKPlayerDlgVideo.cpp     the video area, display ratio and window size modes
//   CQKPlayerDlgFrame.cpp     the hand-made frame: its painting, moving by the title strip,
//                             the resize grips, and maximising to the work area
//   CQKPlayerDlgBars.cpp      the full-screen bars: making and ending them, and the poll of
//                             the pointer that fades them in and out
//   CQKPlayerDlgScreen.cpp    full screen, the pointer's auto-hide, and the window states
//                             that the window system reports
//
// Whether something plays is asked of the engine each time; the window keeps only what the
// engine cannot tell (the queue, the current path and the facts of the current file).
//
// Threads: everything runs on the GUI thread except PlayThreadProc, which only carries the
// blocking qkplaydll_Play. The thread works on copies of the path and the video flag, so the
// GUI thread may change them at any time; OnStop joins it, and it never waits for the GUI
// thread.
#include "engine/qkplay.h"
#include "platform/CQKTaskbarList.h"
#include "player/CQKPlayerFaces.h"
#include "toolkit/CQKUIHostWnd.h"

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

class CQKButton;
class CQKMenuEx;
class CQKGraphics;
class CQKLayerWndBottom;
class CQKLayerWndTitle;
class CQKPlayWnd;
class CQKSlider;
class CQKStatic;
class CQKUIManager;

// Commands of the main window (WM_COMMAND ids). The panel's controls post their own ids, which
// are the same numbers.
enum : uint32_t {
    QKCMD_CLOSE = 2,
    QKCMD_MINIMIZE = 16,
    QKCMD_MAXIMIZE = 17,
    QKCMD_PLAYPAUSE = 21,
    QKCMD_STOP = 22,
    QKCMD_PREVFILE = 23,
    QKCMD_NEXTFILE = 24,
    QKCMD_FULLSCREEN = 25,
    QKCMD_OPEN = 26,
    QKCMD_MUTE = 27,
    QKCMD_OPTIONS = 29,
    QKCMD_ESCAPE = 32,
    QKCMD_SIZE100 = 33,
    QKCMD_SIZE200 = 34,
    QKCMD_SIZE50 = 35,
    QKCMD_PLAYEND_NEXT = 36,
};

// Timers of the main window.
enum : uint32_t {
    QKTIMER_POSITION = 1, // 1000 ms while playing
    QKTIMER_BARS = 2, // 300 ms in full screen
    QKTIMER_CURSOR = 3, // 100 ms, cursor auto-hide
    QKTIMER_STARTUP = 4, // 100 ms, one shot: read the start-up list
};

class CQKPlayerDlg : public CQKUIHostWnd
{
public:
    // The window class and title of the main window.
    static constexpr const char16_t* kClassName = u"QKOrbelPlayerGuiFrame";
    static constexpr const char16_t* kTitle = u"Orbel Player";
    // Start size of the window and of its video area.
    static constexpr int kStartWidth = 866;
    static constexpr int kStartHeight = 562;

    CQKPlayerDlg();
    ~CQKPlayerDlg() override;

    // Creates the window, runs it until it closes, and destroys it. Returns the command that
    // ended it.
    int DoModal();
    // The window has been made; sizes, skin and timers come here.
    void OnInitDialog();

    // Playback (CQKPlayerDlgPlayback.cpp).
    // Probes the current path into the video flag, size and duration. False when the file
    // does not play; the fields then keep their values.
    bool LoadMediaInfo();
    // Play, pause or resume by what the engine says; with no file, the open dialog.
    void OnPlayPause();
    void OnStop();
    // The engine reached the end of the file (message 1524).
    void OnPlayEnd();
    void OnNextFile();
    void OnPrevFile();
    void OnMute();
    // A slider of the panel or of the bottom bar moved (message 2027): seek or volume.
    void OnSliderChanged(CQKSlider* pSlider);
    // Timer 1: the position as time, on the seek bars and on the desktop's progress.
    void OnPositionTimer();
    // "Error Media File! Please Try Again." under "Tips", until the user closes it.
    void ShowMediaError();

    // Files (CQKPlayerDlgPlayback.cpp). The open dialog fills the queue and plays its first
    // playable file; Select* only choose the current file and play nothing.
    void OnFileOpen();
    void SelectFirstPlayable();
    // Stops what plays and starts the file the selection chose, with the facts it read.
    void PlaySelectedFile();
    void SelectNextFile();
    void SelectPrevFile();
    // One step (1 next, -1 previous) through the queue; a queue of one walks the folder.
    void SelectInQueue(int nStep);
    // The walks of the current file's folder, for a queue of one file.
    void FindNextInFolder();
    void FindPrevInFolder();

    // The panel (CQKPlayerDlgPanel.cpp).
    // Makes the sixteen controls of the panel on the window's manager, their faces, and the
    // bars' controls where the bars exist.
    void CreateControls();
    // The full-screen bars' twin controls, on the bars' own managers, for bars `W` wide.
    void CreateBarControls(CQKUIManager* pTitleBar, CQKUIManager* pBottomBar, int W);
    // Places the panel's controls for the current client size; nothing before they exist.
    void LayoutControls();
    // The title line (and the window's text where the desktop shows it): the file's name, and
    // the video's size after it.
    void UpdateTitle();
    // The faces that follow the player's state, on the panel's control and its bar twin.
    void SetPlayFaces(bool bPlaying);
    void SetMuteFaces();
    void SetMaximizeFaces();

    // Full screen (CQKPlayerDlgScreen.cpp) and Esc.
    void OnFullScreen();
    void OnEscape();

    // The context menu (CQKPlayerDlgMenu.cpp): opened at a screen point, built at the first
    // opening, its check marks set from the options each time; blocks until it closes and
    // then does what was chosen.
    void ShowContextMenu(QPoint ptScreen);
    void OnContextMenuChoice(int nChoice);
    // A right button released at a client point: on the video, on the title strip off its
    // buttons, or in the video area it opens the menu (true); elsewhere false.
    bool OnContextButtonUp(QPoint pt);

    // Video area and window sizes (CQKPlayerDlgVideo.cpp).
    void ComputeVideoRect();
    void ApplyDisplayRatio();
    void UpdateVideoLayout();
    void ResizeToVideo(double dScale);
    void ApplyWindowSizeMode();

    // Screen states (CQKPlayerDlgScreen.cpp). Timer 3: hides the pointer over the video.
    void OnCursorTimer();
    // Shows or hides the sixteen controls of the panel, without a repaint.
    void ShowPanelControls(bool bShow);
    // The full-screen button's picture for the current state, without a repaint.
    void SetFullScreenFace();

    // The frame (CQKPlayerDlgFrame.cpp): ground, title icon and caption, outline, the video
    // area in black with its border, and the audio-only picture.
    void PaintFrame(CQKGraphics* pGraphics);
    // The pointer is over one of the title strip's buttons, or over a control of the panel
    // below the video area.
    bool IsOverTitleControl(QPoint pt) const;
    bool IsOverBarControl(QPoint pt) const;

    // The full-screen bars (CQKPlayerDlgBars.cpp). They are made hidden with the window, as
    // wide as the screen it stands on, and end with it.
    void CreateBars();
    void DestroyBars();
    // Hides both bars at once; a fade that runs goes on, unseen, and ends by itself.
    void HideBars();
    // Timer 2: fades a bar in while the pointer is on its strip, and out once it has left.
    void OnBarsTimer();
    // The video surface shows (it takes its own right clicks and double clicks).
    bool IsVideoWindowVisible() const;
    // The ground of a window `w` by `h` with its outline, and with the program's icon and name
    // when `bCaption`: the window's own frame and the bars' (CQKPlayerDlgFrame.cpp).
    void PaintGround(CQKGraphics* pGraphics, int w, int h, bool bCaption);

    // Ends the program the way every close command does.
    void OnCancel();

protected:
    void OnCreate() override;
    intptr_t OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam) override;
    void OnTimer(uint32_t nID) override;
    void OnPaintBackground(CQKGraphics* pGraphics) override;
    void OnLayout(int w, int h) override;
    void OnClose() override;
    void OnDestroy() override;
    // The frame's mouse handling (CQKPlayerDlgFrame.cpp).
    bool OnSetCursor(QPoint pt) override;
    void OnLeftButtonDown(QPoint pt, uint32_t keys) override;
    void OnMouseMessage(uint32_t msg, QPoint pt, uint32_t keys) override;
    // A window manager's maximise and restore, the taskbar's restore (CQKPlayerDlgScreen.cpp).
    void OnWindowStateChange(uint32_t nOldState, uint32_t nNewState) override;
    // Files dropped on any window of the program (CQKPlayerDlgPlayback.cpp).
    void OnDropFiles(const QStringList& paths) override;

private:
    void OnCommand(uint32_t nCmd);
    void BuildContextMenu();
    void UpdateContextMenuChecks();
    // Keeps the pointer to a panel control (or, with `bBar`, to its bar twin) that the player
    // reaches again.
    void RememberControl(uint32_t nID, CQKButton* pControl, bool bBar);
    // The desktop's buttons and overlay for playing (or not).
    void UpdateTaskbarPlayState(bool bPlaying, bool bPaused);
    // A click on one of the desktop's buttons (QKTHB_*), and the volume the desktop chose
    // (0 to 1) (CQKPlayerDlgPanel.cpp).
    void OnThumbButton(uint32_t nAction);
    void OnDesktopVolume(double dVolume);
    // Sets the time text on the panel's static and its twin, repainting.
    static void SetTimeText(CQKStatic* pMain, CQKStatic* pTwin, const QString& strText);
    // The slider follows the user's drag: its host holds the capture and it has the focus.
    static bool IsHeld(const CQKSlider* pSlider);
    // Maximise and restore of our own (CQKPlayerDlgFrame.cpp); other commands go to the
    // default handling.
    intptr_t OnSysCommand(uint32_t nCmd, uintptr_t wParam, intptr_t lParam);
    // The window in front is this one or a bar of it: the pointer may hide.
    bool IsPlayerForeground() const;
    // A double click on the video (or, without a picture, on the video area): full screen.
    bool OnVideoDoubleClick(QPoint pt);
    // One mouse move of a grip drag, and of a press on the title strip.
    void DragResizeWindow(QPoint ptClient);
    void OnTitleDrag(QPoint pt);
    // Starts the play thread on m_strMediaPath.
    void StartPlayThread();
    // qkplaydll_Stop, then waits without limit for the play thread to end.
    void StopAndJoinPlayThread();
    // Runs on the play thread with copies taken on the GUI thread; of the window it reads only
    // the notify target, which lives as long as the window.
    static void PlayThreadProc(CQKPlayerDlg* pDlg, QByteArray utf8Path, qkplay_video* pVideo, bool bAudioOnly);
    // The engine's end-of-media notice, posted from its own thread.
    static void PostFromEngine(void* pCtx, int nMessage);

public:
    // State of the media. The application's start-up reading fills the queue and the current
    // file directly, as the window's own units do.
    QString m_strMediaPath;
    QStringList m_arrFiles;
    int32_t m_bHasVideo { 1 };
    int32_t m_nVideoWidth { 0 };
    int32_t m_nVideoHeight { 0 };
    double m_dDuration { 0.0 };
    int32_t m_bInfoLoaded { 0 };
    int32_t m_bAudioOnly { 0 };

    // State of the window.
    QRect m_rcVideo { 0, 0, 856, 480 };
    int32_t m_bFullScreen { 0 };
    int32_t m_bMaximized { 0 };
    int32_t m_bInMaximize { 0 };
    int32_t m_bCursorVisible { 1 };
    uint64_t m_dwLastMoveTick { 0 };
    QPoint m_ptLastCursor;
    int32_t m_bHasTaskbarList { 0 };
    // The desktop's view of the player; null where the desktop has none.
    std::unique_ptr<CQKTaskbarList> m_pTaskbarList;
    tagQKThumbButton m_thumbButtons[3];

    // The panel's controls that the player reaches again (owned by the manager), and their
    // twins on the full-screen bars (null while there are no bars).
    CQKButton* m_pBtnPlay { nullptr };
    CQKButton* m_pBtnMute { nullptr };
    CQKButton* m_pBtnMaximize { nullptr };
    CQKSlider* m_pPosSlider { nullptr };
    CQKSlider* m_pVolSlider { nullptr };
    CQKStatic* m_pTimeCurrent { nullptr };
    CQKStatic* m_pTimeTotal { nullptr };
    CQKStatic* m_pTitleText { nullptr };
    CQKButton* m_pBarPlay { nullptr };
    CQKButton* m_pBarMute { nullptr };
    CQKButton* m_pBarMaximize { nullptr };
    CQKSlider* m_pBarPosSlider { nullptr };
    CQKSlider* m_pBarVolSlider { nullptr };
    CQKStatic* m_pBarTimeCurrent { nullptr };
    CQKStatic* m_pBarTimeTotal { nullptr };
    CQKStatic* m_pBarTitleText { nullptr };

    // State of the frame. The grip under the pointer is found anew on each move, so it is 0
    // while maximised, in full screen and while another capture runs.
    int32_t m_nHitZone { 0 };
    int32_t m_bResizing { 0 };
    QPoint m_ptResizeStart; // screen pixels: the drag's anchor
    // A press on the title strip, and the move that the program does itself where no window
    // manager takes it: the grab point in client pixels.
    int32_t m_bTitleDrag { 0 };
    int32_t m_bMovingSelf { 0 };
    QPoint m_ptMoveGrab;
    // Where the window stood before the program maximised it; empty when the window manager
    // maximised a normal window (it keeps that rectangle itself).
    QRect m_rcRestore;
    // The panel's pictures, among them the audio-only note.
    CQKPlayerFaces m_faces;
    // The full-screen bars, null before the window is made and after it ended.
    std::unique_ptr<CQKLayerWndTitle> m_barTitle;
    std::unique_ptr<CQKLayerWndBottom> m_barBottom;

private:
    std::unique_ptr<CQKPlayWnd> m_wndPlay;
    // The context menu, built at its first opening and kept for the window's life.
    std::unique_ptr<CQKMenuEx> m_pContextMenu;
    // The title icon, read at the first paint; stays null-sized when the file is missing.
    std::unique_ptr<QImage> m_pAppIconBitmap;
    std::unique_ptr<std::thread> m_hPlayThread;
    // Set by the play thread as its last act.
    std::atomic<bool> m_bPlayThreadDone { true };
    qkplay_notify m_notify { &CQKPlayerDlg::PostFromEngine, this };
    int m_nModalResult { 0 };
    // Set once the window is being destroyed: from then on no start-up list is read.
    bool m_bClosing { false };
};
