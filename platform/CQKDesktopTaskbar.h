#pragma once
// CQKDesktopTaskbar: the player's counterpart on a Linux desktop, reached over the session bus.
//
// What the player tells CQKTaskbarList goes three ways:
//   - media controls (org.mpris.MediaPlayer2.orbelplayer at /org/mpris/MediaPlayer2): the
//     middle button's picture and the pause overlay become the playback status; the file,
//     its length, the position and the volume are readable there; the desktop's previous,
//     play, pause, stop, next, raise and quit come back to the window as the buttons' clicks
//     (WM_COMMAND with THBN_CLICKED), its volume as QKM_DESKTOPVOLUME; each change of a
//     property is announced by PropertiesChanged, a jump of the position by Seeked;
//   - the launcher's progress (the signal com.canonical.Unity.LauncherEntry.Update on
//     /org/orbelplayer/LauncherEntry for "application://orbel-player.desktop"), in step with
//     SetProgressValue, and hidden while nothing plays;
//   - a request that keeps the screen from blanking while a file with a picture plays
//     (CQKSleepInhibitor).
//
// Everything runs on the GUI thread; the bus's requests arrive through its event loop.
#include "platform/CQKSleepInhibitor.h"
#include "platform/CQKTaskbarList.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <memory>

class CQKMprisPlayer;

class CQKDesktopTaskbar : public CQKTaskbarList
{
public:
    // Takes the session bus; the media controls' name is taken here.
    CQKDesktopTaskbar();
    ~CQKDesktopTaskbar() override;

    void ThumbBarAddButtons(CQKHostWnd* pWnd, uint32_t nCount, const tagQKThumbButton* pButtons) override;
    void ThumbBarUpdateButtons(CQKHostWnd* pWnd, uint32_t nCount, const tagQKThumbButton* pButtons) override;
    void SetOverlayIcon(CQKHostWnd* pWnd, uint32_t hIcon) override;
    void SetProgressState(CQKHostWnd* pWnd, uint32_t nState) override;
    void SetProgressValue(CQKHostWnd* pWnd, uint64_t nCompleted, uint64_t nTotal) override;
    void SetMedia(CQKHostWnd* pWnd, const QString& strPath, double dDuration, bool bHasVideo) override;
    void SetVolume(CQKHostWnd* pWnd, double dVolume) override;

    // What the media controls read: "Playing", "Paused" or "Stopped"; the current file; the
    // volume (0 to 1); the position in microseconds; whether a seek can be made.
    QString PlaybackStatus() const;
    QVariantMap Metadata() const;
    double Volume() const { return m_dVolume; }
    qlonglong PositionUs() const;
    bool CanSeek() const;

    // What the media controls ask: one of the QKTHB_* actions posted to the window, raising
    // the window, a new volume, and seeks.
    void Command(uint32_t nAction);
    void Raise();
    void RequestVolume(double dVolume);
    void SeekBy(qlonglong nOffsetUs);
    void SeekTo(const QDBusObjectPath& trackId, qlonglong nPositionUs);

private:
    enum class Status { Stopped,
        Playing,
        Paused };
    QDBusObjectPath TrackId() const;
    // Sends PropertiesChanged for every property of the player whose value differs from the
    // one announced last.
    void Announce();
    void SendLauncherProgress(bool bVisible, double dProgress);
    void SeekToSeconds(double dSeconds);

    QDBusConnection m_bus;
    std::unique_ptr<QObject> m_pObject;
    CQKMprisPlayer* m_pPlayer { nullptr };
    CQKSleepInhibitor m_inhibitor;
    CQKHostWnd* m_pWnd { nullptr };

    uint32_t m_nMiddleIcon { QKICON_PLAY };
    uint32_t m_nOverlay { QKICON_NONE };
    Status m_status { Status::Stopped };
    QString m_strPath;
    double m_dDuration { 0.0 };
    bool m_bHasVideo { false };
    uint32_t m_nTrack { 0 };
    double m_dVolume { 1.0 };
    QVariantMap m_announced;
    // The launcher's last progress, so that a paused tick sends nothing new.
    bool m_bLauncherVisible { false };
    double m_dLauncherProgress { -1.0 };
    // Where playing on puts the position: m_dTickPos (seconds; -1 unknown) at m_nTickTime,
    // moving on only while playing, to see a jump that is no playing on. At the start of a file
    // the engine may take a while to begin, so only a jump ahead counts until the first tick.
    double m_dTickPos { -1.0 };
    uint64_t m_nTickTime { 0 };
    bool m_bTickFromStart { false };
};
