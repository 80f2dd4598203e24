#include "platform/CQKApplication.h"

#include "platform/QKFilePath.h"

#include <QApplication>
#include <clocale>

CQKApplication::CQKApplication(int& argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("orbel-player"));
    QGuiApplication::setDesktopFileName(QStringLiteral("orbel-player"));
    m_pApp = std::make_unique<QApplication>(argc, argv);
    // The program ends when its main window's loop ends, not when a last window closes.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    std::setlocale(LC_NUMERIC, "C");
}

CQKApplication::~CQKApplication() = default;

QStringList CQKApplication::CommandLine(int argc, char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args.append(QKDecodePath(QByteArray(argv[i])));
    return args;
}
