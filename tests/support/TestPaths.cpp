#include "TestPaths.h"

#include <QtGlobal>

namespace orbeltest {

static QString FolderFromEnv(const char* name)
{
    QString s = qEnvironmentVariable(name);
    if (!s.isEmpty() && !s.endsWith('/'))
        s += '/';
    return s;
}

QString SourceDir()
{
    return FolderFromEnv("ORBEL_SOURCE_DIR");
}
QString BinDir()
{
    return FolderFromEnv("ORBEL_BIN_DIR");
}

} // namespace orbeltest
