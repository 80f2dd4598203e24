#include "platform/CQKMprisPlayer.h"

#include "platform/CQKDesktopTaskbar.h"

CQKMprisPlayer::CQKMprisPlayer(QObject* pObject, CQKDesktopTaskbar* pTaskbar)
    : QDBusAbstractAdaptor(pObject)
    , m_pTaskbar(pTaskbar)
{
}

QString CQKMprisPlayer::playbackStatus() const
{
    return m_pTaskbar->PlaybackStatus();
}

QVariantMap CQKMprisPlayer::metadata() const
{
    return m_pTaskbar->Metadata();
}

double CQKMprisPlayer::volume() const
{
    return m_pTaskbar->Volume();
}

void CQKMprisPlayer::setVolume(double dVolume)
{
    m_pTaskbar->RequestVolume(dVolume);
}

qlonglong CQKMprisPlayer::position() const
{
    return m_pTaskbar->PositionUs();
}

bool CQKMprisPlayer::canSeek() const
{
    return m_pTaskbar->CanSeek();
}

void CQKMprisPlayer::Next()
{
    m_pTaskbar->Command(QKTHB_NEXT);
}

void CQKMprisPlayer::Previous()
{
    m_pTaskbar->Command(QKTHB_PREV);
}

void CQKMprisPlayer::Pause()
{
    if (m_pTaskbar->PlaybackStatus() == QLatin1String("Playing"))
        m_pTaskbar->Command(QKTHB_PLAYPAUSE);
}

void CQKMprisPlayer::PlayPause()
{
    m_pTaskbar->Command(QKTHB_PLAYPAUSE);
}

void CQKMprisPlayer::Stop()
{
    m_pTaskbar->Command(QKTHB_STOP);
}

void CQKMprisPlayer::Play()
{
    if (m_pTaskbar->PlaybackStatus() != QLatin1String("Playing"))
        m_pTaskbar->Command(QKTHB_PLAYPAUSE);
}

void CQKMprisPlayer::Seek(qlonglong nOffset)
{
    m_pTaskbar->SeekBy(nOffset);
}

void CQKMprisPlayer::SetPosition(const QDBusObjectPath& trackId, qlonglong nPosition)
{
    m_pTaskbar->SeekTo(trackId, nPosition);
}

void CQKMprisPlayer::OpenUri(const QString&)
{
    // Files reach the player by its own ways (the open dialog, a drop, a later start); the
    // program names no URI scheme it would open from here beyond what SupportedUriSchemes
    // describes for the desktop's file associations.
}
