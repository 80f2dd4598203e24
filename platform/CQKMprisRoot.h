#pragma once
// CQKMprisRoot: the media controls' description of the program (org.mpris.MediaPlayer2): its
// name, its desktop entry, what it opens, and the two requests of the whole program, raise
// and quit. The properties never change while the program runs.
#include <QDBusAbstractAdaptor>
#include <QStringList>

class CQKDesktopTaskbar;

class CQKMprisRoot : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ canQuit)
    Q_PROPERTY(bool CanRaise READ canRaise)
    Q_PROPERTY(bool HasTrackList READ hasTrackList)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ supportedUriSchemes)
    Q_PROPERTY(QStringList SupportedMimeTypes READ supportedMimeTypes)

public:
    CQKMprisRoot(QObject* pObject, CQKDesktopTaskbar* pTaskbar);

    bool canQuit() const { return true; }
    bool canRaise() const { return true; }
    bool hasTrackList() const { return false; }
    QString identity() const;
    QString desktopEntry() const;
    QStringList supportedUriSchemes() const;
    // The types the desktop entry offers the program for.
    QStringList supportedMimeTypes() const;

public Q_SLOTS:
    void Raise();
    void Quit();

private:
    CQKDesktopTaskbar* m_pTaskbar;
};
