#include "platform/QKAppFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString g_overrideFolder;

QString WithSlash(QString s)
{
    if (!s.endsWith('/'))
        s += '/';
    return s;
}

} // namespace

QString QKAppFolder()
{
    if (!g_overrideFolder.isEmpty())
        return g_overrideFolder;
    // /proc/self/exe names the real file even when the program was started through a link
    // (the installed /usr/bin/orbel-player points into the program's own folder).
    static const QString folder = [] {
        QFileInfo exe(QStringLiteral("/proc/self/exe"));
        QString target = exe.symLinkTarget();
        if (target.isEmpty())
            return WithSlash(QDir::currentPath());
        return WithSlash(QFileInfo(target).absolutePath());
    }();
    return folder;
}

QString QKWritableSkinFolder()
{
    const QString local = QKAppFolder() + QStringLiteral("skin/");
    QFileInfo info(local);
    if (info.isDir() && info.isWritable())
        return local;
    QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty() || !QDir::isAbsolutePath(config))
        config = QDir::homePath() + QStringLiteral("/.config");
    const QString folder = WithSlash(config) + QStringLiteral("orbel-player/skin/");
    QDir().mkpath(folder);
    return folder;
}

void QKSetAppFolderForTesting(const QString& folder)
{
    g_overrideFolder = folder.isEmpty() ? QString() : WithSlash(folder);
}
