#include "player/CQKPlayerDlg.h"

#include "platform/CQKGraphics.h"
#include "platform/CQKPlayWnd.h"
#include "platform/QKKeys.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "player/CQKPlayerApp.h"
#include "player/QKPlayerOptions.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKTheme.h"

CQKPlayerDlg::CQKPlayerDlg()
{
    // Icons and the taskbar's buttons come with the frame and the taskbar.
    m_bHasTaskbarList = IsWindows7OrLater();
    // The twelve keys of the main window grow with the panel; these are the ones that need
    // no control.
    SetAccelerators({
        { 0, VK_SPACE, QKCMD_PLAYPAUSE },
        { QKMOD_CONTROL, 'S', QKCMD_STOP },
        { QKMOD_CONTROL, 'E', QKCMD_CLOSE },
        { 0, VK_ESCAPE, QKCMD_ESCAPE },
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
    // The full-screen bars come with full screen.
}

void CQKPlayerDlg::OnInitDialog()
{
    // Dropped files need no privilege filter here.
    // The smallest window size for dragging comes with the frame's grips.
    m_rcVideo = QRect(0, 0, 856, 480);
    // Start size, centred on the primary screen.
    const QRect rcScreen = GetPrimaryWorkArea();
    MoveWindow(rcScreen.x() + (rcScreen.width() - kStartWidth) / 2, rcScreen.y() + (rcScreen.height() - kStartHeight) / 2, kStartWidth, kStartHeight, false);
    if (QKPlayerOptions::bAlwaysOnTop)
        SetTopmost(true);
    DragAcceptFiles(true);
    ComputeVideoRect();
    if (pUIManager)
        pUIManager->LoadSkin(this);
    // The pictures are made once; the audio-only note of the video area is among them.
    m_faces.CreateFaces(pUIManager.get());
    g_clrToolTipText = g_clrText;
    // The controls and their layout come with the panel.
    SetWindowText(QString::fromUtf16(kTitle));
    qkplaydll_SetMute(QKPlayerOptions::bMute);
    qkplaydll_SetVolume(QKPlayerOptions::dVolumeScale / 100.0);
    SetTimer(QKTIMER_CURSOR, 100);
    SetTimer(QKTIMER_STARTUP, 100);
}

intptr_t CQKPlayerDlg::OnMessage(uint32_t msg, uintptr_t wParam, intptr_t lParam)
{
    switch (msg) {
    case WM_COMMAND:
        OnCommand(static_cast<uint32_t>(wParam));
        return 0;
    case QKM_PLAYEND:
        OnPlayEnd();
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
    case QKCMD_PLAYPAUSE:
        OnPlayPause();
        break;
    case QKCMD_STOP:
        OnStop();
        break;
    case QKCMD_ESCAPE:
        // Esc leaves full screen first; the window has no full screen yet.
        OnCancel();
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

void CQKPlayerDlg::OnTimer(uint32_t nID)
{
    switch (nID) {
    case QKTIMER_STARTUP:
        // A one-shot: the list is read once per start and once per wake-up.
        KillTimer(QKTIMER_STARTUP);
        theApp.ReadStartupFiles(*this);
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
    UpdateVideoLayout();
}

void CQKPlayerDlg::OnPaintBackground(CQKGraphics* pGraphics)
{
    PaintFrame(pGraphics);
}

void CQKPlayerDlg::OnClose()
{
    // The system's close goes the way of the close command.
    PostMessage(WM_COMMAND, QKCMD_CLOSE, 0);
}

void CQKPlayerDlg::OnCancel()
{
    m_nModalResult = static_cast<int>(QKCMD_CLOSE);
    EndModal(m_nModalResult);
}

void CQKPlayerDlg::OnDestroy()
{
    // The engine stops and its thread is joined before anything of the window goes.
    // Timer 4 is left alone: it dies with the window.
    KillTimer(QKTIMER_POSITION);
    KillTimer(QKTIMER_BARS);
    KillTimer(QKTIMER_CURSOR);
    StopAndJoinPlayThread();
    if (m_wndPlay) {
        m_wndPlay->Destroy();
        m_wndPlay.reset();
    }
    // The bars come with full screen. The manager goes with the host.
    CQKUIHostWnd::OnDestroy();
}
