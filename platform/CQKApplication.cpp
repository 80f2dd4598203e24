#include "platform/CQKApplication.h"

#include "platform/QKFilePath.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

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

void CQKApplication::EndProcess(int nCode)
{
#if defined(__SANITIZE_ADDRESS__)
    std::exit(nCode);
#else
    // Messages on the bus go out in order: once a call has its answer, every message sent
    // before it (a give-back of the sleep inhibition, say) has reached the bus.
    if (QDBusConnection::sessionBus().isConnected()) {
        if (QDBusConnectionInterface* pBus = QDBusConnection::sessionBus().interface())
            pBus->isServiceRegistered(QStringLiteral("org.freedesktop.DBus"));
    }
    std::fflush(nullptr);
    _exit(nCode);
#endif
}
