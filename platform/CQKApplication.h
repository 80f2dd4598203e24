#pragma once
// CQKApplication: the window system connection of the process.
//
// main() makes one before anything else and keeps it until the end. It keeps Qt's widget
// classes out of the program's own folders: the player never sees the QApplication.
#include <QStringList>
#include <memory>

class QApplication;

class CQKApplication
{
public:
    // Connects to the window system. Afterwards the numeric locale is "C" again (Qt sets the
    // locale from the environment), as the engine and every number written to a file need.
    CQKApplication(int& argc, char** argv);
    ~CQKApplication();
    CQKApplication(const CQKApplication&) = delete;
    CQKApplication& operator=(const CQKApplication&) = delete;

    // The command line, every entry including the first, decoded as UTF-8 with the bytes of a
    // name that is not valid UTF-8 kept (QKDecodePath). Read before
    // the connection is made, so that the window system takes away no entry that looks like
    // one of its own switches: the program has none, and every entry is a file.
    static QStringList CommandLine(int argc, char** argv);

    // Ends the process with nCode once the program has done all of its own ending (options
    // saved, lock given back), without taking the libraries down one by one: the window
    // system, the playback engine and the session bus drop everything of a process that has
    // gone, and the long way costs a close tens of milliseconds. What was sent on the session
    // bus is delivered first. A sanitizer build takes the long way, so that its leak check runs.
    static void EndProcess(int nCode);

private:
    std::unique_ptr<QApplication> m_pApp;
};
