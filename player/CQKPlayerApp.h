#pragma once
// CQKPlayerApp: the program from its start to its end.
//
// There is one application object, theApp. InitInstance brings everything up in a fixed order,
// runs the main window until it closes, and takes everything down again; the whole life of
// the program passes inside it. It also decides the role of the process:
//
//   role      | when                                   | what it does
//   ----------+----------------------------------------+--------------------------------------
//   first     | single instance on, lock was free      | runs the window, holds the lock until
//             |                                        | after the options are saved
//   second    | single instance on, lock is held       | rewrites the start-up list, wakes the
//             |                                        | running player, ends
//   free      | single instance off                    | no lock at all; runs its own window
//
// Files given on the command line travel through a file, skin/playercommand.dat (the
// start-up list), which every start writes before it decides its role. The player that runs
// the window reads it back about 100 ms after its window is up, and again 100 ms after each
// wake-up by a later start. A free player takes its own list, as it wrote it, instead of the
// file: another free player started just after it may have replaced the file already.
#include "player/CQKPreparedStart.h"

#include <QString>
#include <QStringList>
#include <memory>

class CQKPlayerDlg;
class CQKSingleInstance;

class CQKPlayerApp
{
public:
    CQKPlayerApp();
    ~CQKPlayerApp();
    CQKPlayerApp(const CQKPlayerApp&) = delete;
    CQKPlayerApp& operator=(const CQKPlayerApp&) = delete;

    // The command line exactly as the process got it, every entry including the first.
    void SetCommandLine(const QStringList& args) { m_arrCommandLine = args; }
    // Loads the engine's media libraries unless another player of this user runs, to which
    // this start will most likely hand its files. Called first of all, before the window
    // system: see the start of InitInstance.
    static void LoadEngineUnlessHandingOver();
    // Start-up, the main window's whole life, and the end. Returns false, always: there is
    // nothing to run after it.
    bool InitInstance();

    // The program's folder, with a trailing '/'.
    QString GetAppDirectory() const;
    // Where the start-up list and the options are written and read.
    QString GetStartupFilePath() const;
    QString GetOptionsPath() const;

    // Replaces the start-up list with the arguments that exist on disk (CQKStartupList).
    void WriteStartupFiles(const QStringList& args);
    // Reads the start-up list into the queue of dlg and starts its first playable entry.
    // A list that cannot be read changes nothing.
    void ReadStartupFiles(CQKPlayerDlg& dlg);
    // The first file of this start, readied while the window comes up.
    CQKPreparedStart& GetPreparedStart() { return m_preparedStart; }

    void LoadPlayerOptions();
    void SavePlayerOptions();

    // The main window while it exists.
    CQKPlayerDlg* GetMainWnd() const { return m_pMainWnd; }

private:
    // A later start woke this one: bring the window up and read the list again.
    void OnWakeUp();

    QStringList m_arrCommandLine;
    // The list this process wrote, and whether the next read takes it instead of the file
    // (the first read of a free player).
    QStringList m_arrOwnFiles;
    bool m_bOwnFilesWritten { false };
    bool m_bReadOwnFiles { false };
    std::unique_ptr<CQKSingleInstance> m_hInstanceMutex;
    CQKPreparedStart m_preparedStart;
    CQKPlayerDlg* m_pMainWnd { nullptr };
};

extern CQKPlayerApp theApp;
