#include "player/CQKPlayerDlg.h"

#include "controls/CQKSlider.h"
#include "platform/CQKGraphics.h"
#include "platform/CQKPlayWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "player/CQKLayerWndBottom.h"
#include "player/CQKLayerWndTitle.h"
#include "player/CQKPlayerApp.h"
#include "player/QKPlayerOptions.h"
#include "services/CQKMenuEx.h"
#include "toolkit/CQKDialogBase.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

CQKPlayerDlg::CQKPlayerDlg()
{
    m_bHasTaskbarList = IsWindows7OrLater();
    // The desktop's three buttons, as they start: previous, play, next.
    m_thumbButtons[0] = { 0, QKICON_PREV, 0 };
    m_thumbButtons[1] = { 1, QKICON_PLAY, 0 };
    m_thumbButtons[2] = { 2, QKICON_NEXT, 0 };
    // The twelve keys of the main window, in this order. F3 is 200 % and F4 100 %: keys and
    // commands do not run in the same order.
    SetAccelerators({
        { QKMOD_CONTROL, 'O', QKCMD_OPEN },
        { 0, VK_SPACE, QKCMD_PLAYPAUSE },
        { 0, VK_F1 + 1, QKCMD_FULLSCREEN },
        { 0, VK_ESCAPE, QKCMD_ESCAPE },
        { QKMOD_CONTROL, 'M', QKCMD_MUTE },
        { QKMOD_CONTROL, 'S', QKCMD_STOP },
        { QKMOD_CONTROL, VK_LEFT, QKCMD_PREVFILE },
        { QKMOD_CONTROL, VK_RIGHT, QKCMD_NEXTFILE },
        { QKMOD_CONTROL, 'E', QKCMD_CLOSE },
        { 0, VK_F1 + 2, QKCMD_SIZE200 },
        { 0, VK_F1 + 3, QKCMD_SIZE100 },
        { 0, VK_F1 + 4, QKCMD_SIZE50 },
    });
    m_bCursorVisible = 1;
    m_dwLastMoveTick = QKGetTickCount();
    m_ptLastCursor = GetCursorPos();
    // Every run begins in the default display ratio, whatever the options file says: the
    // value read from the file never takes effect, and the run writes 0 at its end unless the
    // user chose another mode.
    QKPlayerOptions::dr = 0;
}

CQKPlayerDlg::~CQKPlayerDlg()
{
    if (IsWindow())
        DestroyWindow();
}

int CQKPlayerDlg::DoModal()
{
    CQKHostCreate create;
    create.nStyle = QKHS_FRAMELESS;
    create.strClassName = QString::fromUtf16(kClassName);
    create.strTitle = QString::fromUtf16(kTitle);
    create.rcWindow = QRect(0, 0, kStartWidth, kStartHeight);
    if (!Create(create))
        return -1;
    OnInitDialog();
    RunModal();
    if (IsWindow())
        DestroyWindow();
    return m_nModalResult;
}

void CQKPlayerDlg::OnCreate()
{
    // The video surface: a hidden child over the video area, painted by the engine alone.
    m_wndPlay = std::make_unique<CQKPlayWnd>();
    m_wndPlay->Create(this);
    CreateBars();
}

void CQKPlayerDlg::OnInitDialog()
{
    // The smallest window size for dragging comes with the frame's grips.
    m_rcVideo = QRect(0, 0, 856, 480);
    // Start size, centred on the primary screen.
    const QRect rcScreen = GetPrimaryWorkArea();
    MoveWindow(rcScreen.x() + (rcScreen.width() - kStartWidth) / 2, rcScreen.y() + (rcScreen.height() - kStartHeight) / 2, kStartWidth, kStartHeight, false);
    if (QKPlayerOptions::bAlwaysOnTop)
        SetTopmost(true);
    DragAcceptFiles(true);
    // A drop on any window of the program, the video surface and the bars too, is a drop here.
    CatchDroppedFiles(this);
    ComputeVideoRect();
    if (pUIManager)
        pUIManager->LoadSkin(this);
    g_clrToolTipText = g_clrText;
    // The controls with their pictures; the audio-only note of the video area is among them.
    CreateControls();
    LayoutControls();
    SetWindowText(QString::fromUtf16(kTitle));
    // The desktop's view of the player, where there is one, with its three buttons.
    if (m_bHasTaskbarList) {
        m_pTaskbarList = CQKTaskbarList::Create();
        if (m_pTaskbarList) {
            m_pTaskbarList->HrInit();
            m_pTaskbarList->ThumbBarAddButtons(this, 3, m_thumbButtons);
            m_pTaskbarList->SetVolume(this, QKPlayerOptions::dVolumeScale / 100.0);
        }
    }
    // Messages of the program go over this window.
    CQKDialogBase::SetDefaultOwner(this);
    qkplaydll_SetMute(QKPlayerOptions::bMute);
    qkplaydll_SetVolume(QKPlayerOptions::dVolumeScale / 100.0);
    SetTimer(QKTIMER_CURSOR, 100);
    SetTimer(QKTIMER_STARTUP, 100);
}

intptr_t CQKPlayerDlg::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    switch (msg) {
    case WM_COMMAND:
        // The desktop's buttons carry their action in the low word.
        if (QKHiWord(wParam) == THBN_CLICKED)
            OnThumbButton(QKLoWord(wParam));
        else
            OnCommand(static_cast<uint32_t>(wParam));
        return 0;
    case QKM_DESKTOPVOLUME:
        OnDesktopVolume(static_cast<double>(lParam) / 10000.0);
        return 0;
    case QKM_PLAYEND:
        OnPlayEnd();
        return 0;
    case QKM_SLIDERCHANGED:
        OnSliderChanged(reinterpret_cast<CQKSlider*>(wParam));
        return 0;
    case WM_SYSCOMMAND:
        return OnSysCommand(static_cast<uint32_t>(wParam & 0xFFF0), wParam, lParam);
    case QKM_WAKEUP:
        // The later start saved its list before it woke us; read it a little later, as the
        // first reading after start-up does.
        SetTimer(QKTIMER_STARTUP, 100);
        return 0;
    default:
        return CQKUIHostWnd::OnMessage(msg, wParam, lParam);
    }
}

void CQKPlayerDlg::OnCommand(uint32_t nCmd)
{
    switch (nCmd) {
    case QKCMD_CLOSE:
        OnCancel();
        break;
    case QKCMD_MINIMIZE:
        SendMessage(WM_SYSCOMMAND, SC_MINIMIZE);
        break;
    case QKCMD_MAXIMIZE:
        if (m_bFullScreen)
            OnFullScreen();
        else
            SendMessage(WM_SYSCOMMAND, m_bMaximized ? SC_RESTORE : SC_MAXIMIZE);
        break;
    case QKCMD_PLAYPAUSE:
        OnPlayPause();
        break;
    case QKCMD_STOP:
        OnStop();
        break;
    case QKCMD_PREVFILE:
        OnPrevFile();
        break;
    case QKCMD_NEXTFILE:
    case QKCMD_PLAYEND_NEXT:
        OnNextFile();
        break;
    case QKCMD_FULLSCREEN:
        OnFullScreen();
        break;
    case QKCMD_OPEN:
        OnFileOpen();
        break;
    case QKCMD_MUTE:
        OnMute();
        break;
    case QKCMD_OPTIONS:
        // The menu opens under the button, just inside its left and bottom edges.
        if (const CQKButton* p = pUIManager ? pUIManager->FindControl(QKCMD_OPTIONS, 0) : nullptr) {
            const QRect rc = p->GetRect();
            ShowContextMenu(ClientToScreen(QPoint(rc.left() + 1, rc.top() + rc.height() - 3)));
        }
        break;
    case QKCMD_ESCAPE:
        OnEscape();
        break;
    case QKCMD_SIZE200:
        ResizeToVideo(2.0);
        QKPlayerOptions::ds = 0;
        break;
    case QKCMD_SIZE100:
        ResizeToVideo(1.0);
        QKPlayerOptions::ds = 1;
        break;
    case QKCMD_SIZE50:
        ResizeToVideo(0.5);
        QKPlayerOptions::ds = 2;
        break;
    default:
        break;
    }
}

void CQKPlayerDlg::OnEscape()
{
    // Esc leaves full screen; outside it, it ends the program.
    if (m_bFullScreen)
        OnFullScreen();
    else
        OnCancel();
}

void CQKPlayerDlg::OnTimer(uint32_t nID)
{
    switch (nID) {
    case QKTIMER_POSITION:
        OnPositionTimer();
        break;
    case QKTIMER_BARS:
        OnBarsTimer();
        break;
    case QKTIMER_CURSOR:
        OnCursorTimer();
        break;
    case QKTIMER_STARTUP:
        // A one-shot: the list is read once per start and once per wake-up.
        KillTimer(QKTIMER_STARTUP);
        // A player on its way out reads no list: a start waiting on it gets no answer and
        // runs a window of its own once this one has ended.
        if (m_bClosing)
            break;
        theApp.ReadStartupFiles(*this);
        theApp.GetPreparedStart().End(m_hPlayThread != nullptr);
        break;
    default:
        break;
    }
}

void CQKPlayerDlg::OnLayout(int, int)
{
    if (m_bInMaximize)
        return;
    ComputeVideoRect();
    LayoutControls();
}

void CQKPlayerDlg::OnPaintBackground(CQKGraphics* pGraphics)
{
    PaintFrame(pGraphics);
}

void CQKPlayerDlg::OnClose()
{
    // The system's close goes the way of the close command, at once: a message posted now
    // would wait behind every frame already queued for the video surface.
    SendMessage(WM_COMMAND, QKCMD_CLOSE, 0);
}

void CQKPlayerDlg::OnCancel()
{
    // A close that comes while the context menu is open (a logout) closes the menu first.
    CQKMenuManager::EndMenuTracking();
    m_nModalResult = static_cast<int>(QKCMD_CLOSE);
    EndModal(m_nModalResult);
}

void CQKPlayerDlg::OnDestroy()
{
    // The engine stops and its thread is joined before anything of the window goes.
    // Timer 4 is left alone: it dies with the window.
    m_bClosing = true;
    // A file readied for the start and not played is closed without waiting.
    theApp.GetPreparedStart().End(false);
    KillTimer(QKTIMER_POSITION);
    KillTimer(QKTIMER_BARS);
    KillTimer(QKTIMER_CURSOR);
    StopAndJoinPlayThread();
    if (m_wndPlay) {
        m_wndPlay->Destroy();
        m_wndPlay.reset();
    }
    m_pContextMenu.reset();
    DestroyBars();
    // The manager goes with the host, and the controls with it.
    CQKUIHostWnd::OnDestroy();
    m_pBtnPlay = m_pBtnMute = m_pBtnMaximize = nullptr;
    m_pPosSlider = m_pVolSlider = nullptr;
    m_pTimeCurrent = m_pTimeTotal = m_pTitleText = nullptr;
    m_pTaskbarList.reset();
}
