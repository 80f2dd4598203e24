#pragma once
// CQKMprisPlayer: the media controls of the player (org.mpris.MediaPlayer2.Player): the
// playback state, the current file, position and volume, and the requests that stand for the
// player's buttons. Everything is read from and handed to CQKDesktopTaskbar, which announces
// the changes.
#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

class CQKDesktopTaskbar;

class CQKMprisPlayer : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ rate)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ canControl)
    Q_PROPERTY(bool CanGoPrevious READ canControl)
    Q_PROPERTY(bool CanPlay READ canControl)
    Q_PROPERTY(bool CanPause READ canControl)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ canControl)

public:
    CQKMprisPlayer(QObject* pObject, CQKDesktopTaskbar* pTaskbar);

    QString playbackStatus() const;
    // The player plays at its normal speed only.
    double rate() const { return 1.0; }
    QVariantMap metadata() const;
    double volume() const;
    void setVolume(double dVolume);
    // Microseconds.
    qlonglong position() const;
    bool canSeek() const;
    bool canControl() const { return true; }

public Q_SLOTS:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong nOffset);
    void SetPosition(const QDBusObjectPath& trackId, qlonglong nPosition);
    void OpenUri(const QString& strUri);

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    CQKDesktopTaskbar* m_pTaskbar;
};
