#include "platform/CQKMprisRoot.h"

#include "platform/CQKDesktopTaskbar.h"

CQKMprisRoot::CQKMprisRoot(QObject* pObject, CQKDesktopTaskbar* pTaskbar)
    : QDBusAbstractAdaptor(pObject)
    , m_pTaskbar(pTaskbar)
{
}

QString CQKMprisRoot::identity() const
{
    return QStringLiteral("Orbel Player");
}

QString CQKMprisRoot::desktopEntry() const
{
    return QStringLiteral("orbel-player");
}

QStringList CQKMprisRoot::supportedUriSchemes() const
{
    return { QStringLiteral("file") };
}

QStringList CQKMprisRoot::supportedMimeTypes() const
{
    // The same list as the MimeType line of packaging/orbel-player.desktop.
    return QStringLiteral("video/x-matroska;video/mp4;video/x-msvideo;video/vnd.avi;video/quicktime;video/x-ms-wmv;video/x-flv;video/webm;video/mpeg;video/mp2t;video/3gpp;video/ogg;video/x-theora+ogg;application/vnd.rn-realmedia;"
                          "audio/mpeg;audio/x-wav;audio/wav;audio/x-ms-wma;audio/flac;audio/x-flac;audio/aac;audio/ogg;audio/x-vorbis+ogg;audio/mp4;audio/x-m4a;audio/x-ape")
        .split(QLatin1Char(';'));
}

void CQKMprisRoot::Raise()
{
    m_pTaskbar->Raise();
}

void CQKMprisRoot::Quit()
{
    m_pTaskbar->Command(QKTHB_CLOSE);
}
