#include "player/CQKPlayerApp.h"

#include "platform/CQKSingleInstance.h"
#include "platform/QKAppFolder.h"
#include "platform/QKFilePath.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"
#include "player/CQKPlayerDlg.h"
#include "player/CQKStartupList.h"
#include "player/QKPlayerOptions.h"
#include "toolkit/QKTheme.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

CQKPlayerApp theApp;

namespace {

// The name of the per-user lock that tells a first start from a later one.
const QString kMutexName = QStringLiteral("{6F1D3A94-2C7B-4E58-9B06-D41C7E82A5F3}x64");
// The name of the socket a later start wakes the running player through: the main window's
// class name.
const QString kServerName = QStringLiteral("QKOrbelPlayerGuiFrame");
const QString kStartupFileName = QStringLiteral("playercommand.dat");
// How long a start waits for a player that is ending to let go of the lock.
constexpr qint64 kTakeOverMs = 20000;

} // namespace

CQKPlayerApp::CQKPlayerApp() = default;
CQKPlayerApp::~CQKPlayerApp() = default;

QString CQKPlayerApp::GetAppDirectory() const
{
    return QKAppFolder();
}

QString CQKPlayerApp::GetStartupFilePath() const
{
    return QKWritableSkinFolder() + kStartupFileName;
}

QString CQKPlayerApp::GetOptionsPath() const
{
    return QKWritableSkinFolder() + QString::fromUtf16(QKPlayerOptions::kFileName);
}

void CQKPlayerApp::LoadPlayerOptions()
{
    // An installed copy writes its options to the user's folder; until it has done so, a file
    // shipped in the program's own skin folder gives the starting values.
    QString strPath = GetOptionsPath();
    if (!QFileInfo::exists(strPath))
        strPath = GetAppDirectory() + QStringLiteral("skin/") + QString::fromUtf16(QKPlayerOptions::kFileName);
    QKPlayerOptions::Load(strPath);
}

void CQKPlayerApp::SavePlayerOptions()
{
    // A failure to save is not reported: the run's changes are lost, nothing else.
    QKPlayerOptions::Save(GetOptionsPath());
}

void CQKPlayerApp::LoadEngineUnlessHandingOver()
{
    // The media libraries are more than the rest of the program's together. Loaded before the
    // window system's own libraries, the loader searches fewer libraries for each of their
    // symbols; a start that hands its files to a running player never needs them at all.
    if (!CQKSingleInstance(kMutexName, kServerName).HasListener())
        qkplay_load_libraries();
}

bool CQKPlayerApp::InitInstance()
{
    m_hInstanceMutex.reset();
    // The options first: they say whether this start hands its files over.
    LoadPlayerOptions();
    // Every start writes its list, before it knows whether another player runs.
    WriteStartupFiles(m_arrCommandLine);

    if (QKPlayerOptions::bOnlyOneInstance) {
        m_hInstanceMutex = std::make_unique<CQKSingleInstance>(kMutexName, kServerName);
        QElapsedTimer clock;
        clock.start();
        while (!m_hInstanceMutex->Acquire()) {
            // Another player runs: wake it and end once it has read the list this start
            // wrote. Such a start saves no options.
            if (m_hInstanceMutex->WakeRunningInstance()) {
                m_hInstanceMutex.reset();
                return false;
            }
            // Nobody took the list: the other player is on its way out and lets go of the
            // lock once it has saved its options. This start waits for that and runs the
            // window itself. A player that holds the lock and never answers (hung) makes
            // this start end silently after a while, its list left on disk.
            if (clock.elapsed() > kTakeOverMs) {
                m_hInstanceMutex.reset();
                return false;
            }
            QThread::msleep(50);
        }
        m_hInstanceMutex->Listen([this] { OnWakeUp(); });
    } else {
        m_bReadOwnFiles = true;
    }

    // A start that runs the window needs the engine's media libraries. Most such starts have
    // loaded them already (LoadEngineUnlessHandingOver); one that found another player and
    // then did not hand over (a player on its way out, one instance not asked for) loads them
    // here, before the window, and not beside it: the system lets one thread at a time load a
    // library or start a thread, so a window built meanwhile would mostly wait.
    qkplay_load_libraries();
    // The window acts on the list 100 ms after it came up; the list's first file is readied
    // meanwhile, from here on, so that the engine is made while the window is.
    if (m_bOwnFilesWritten && !m_arrOwnFiles.isEmpty())
        m_preparedStart.Begin(m_arrOwnFiles.first());

    // Common controls, the framework's own start, OLE, the shell manager, the registry key
    // and the graphics library need nothing here.

    // A logout (SIGTERM, SIGHUP) or Ctrl+C in a terminal (SIGINT) ends the player the way the
    // close command does, so the options are saved and the lock goes only after that.
    QKWatchEndSignals([this] {
        if (m_pMainWnd && m_pMainWnd->IsWindow())
            m_pMainWnd->PostMessage(WM_COMMAND, QKCMD_CLOSE, 0);
    });

    // The theme: colours first, then the fonts.
    LoadUIColors();
    LoadBigFontFile();

    {
        CQKPlayerDlg dlg;
        m_pMainWnd = &dlg;
        // The window carries the class name "QKOrbelPlayerGuiFrame" from its creation.
        dlg.DoModal();
        m_pMainWnd = nullptr;
        QKStopWatchingEndSignals();
        // Options are saved by a player that ran its window, before the lock goes, so that a
        // start that comes at this moment still hands over rather than runs beside us.
        SavePlayerOptions();
        if (m_hInstanceMutex)
            m_hInstanceMutex.reset();
    }
    return false;
}

void CQKPlayerApp::OnWakeUp()
{
    CQKPlayerDlg* pDlg = m_pMainWnd;
    // Before the window exists there is nothing to bring up; the window reads the list on
    // its own 100 ms after it came up.
    if (!pDlg || !pDlg->IsWindow())
        return;
    if (pDlg->IsIconic())
        pDlg->ShowWindow(SW_RESTORE);
    pDlg->SetForegroundWindow();
    pDlg->PostMessage(QKM_WAKEUP, 0, 0);
}

void CQKPlayerApp::WriteStartupFiles(const QStringList& args)
{
    m_arrOwnFiles.clear();
    m_bOwnFilesWritten = CQKStartupList::Write(GetStartupFilePath(), args, QCoreApplication::applicationFilePath(), &m_arrOwnFiles);
}

void CQKPlayerApp::ReadStartupFiles(CQKPlayerDlg& dlg)
{
    QStringList arrFiles;
    bool bRead = false;
    if (m_bReadOwnFiles) {
        // A free player's first read: its own list, not what another start wrote since.
        m_bReadOwnFiles = false;
        bRead = m_bOwnFilesWritten;
        arrFiles = m_arrOwnFiles;
    } else {
        bRead = CQKStartupList::Read(GetStartupFilePath(), arrFiles);
    }
    // The starts that woke us learn that the list was taken (also when it could not be read:
    // it is the newest one, and nobody else would read it).
    if (m_hInstanceMutex)
        m_hInstanceMutex->Acknowledge();
    if (!bRead)
        return;
    // The queue and the current path are replaced, but a running playback goes on: with an
    // empty list the player forgets which file it plays, and Play then asks for a file.
    dlg.m_arrFiles = arrFiles;
    dlg.m_strMediaPath.clear();
    if (dlg.m_arrFiles.isEmpty())
        return;
    dlg.SelectFirstPlayable();
    // No message on this way: a list without a playable file just plays nothing.
    if (dlg.m_strMediaPath.isEmpty() || !QKPathIsFile(dlg.m_strMediaPath))
        return;
    dlg.PlaySelectedFile();
}
