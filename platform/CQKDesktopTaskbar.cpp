#include "platform/CQKDesktopTaskbar.h"

#include "engine/qkplay.h"
#include "platform/CQKHostWnd.h"
#include "platform/CQKMprisPlayer.h"
#include "platform/CQKMprisRoot.h"
#include "platform/QKMessages.h"
#include "platform/QKSystem.h"

#include <QDBusMessage>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace {

const QString kServiceName = QStringLiteral("org.mpris.MediaPlayer2.orbelplayer");
const QString kObjectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString kPlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kLauncherPath = QStringLiteral("/org/orbelplayer/LauncherEntry");
const QString kLauncherUri = QStringLiteral("application://orbel-player.desktop");
// A position that differs from the expected one by more than this (seconds) was a seek.
constexpr double kJumpSeconds = 1.5;

} // namespace

CQKDesktopTaskbar::CQKDesktopTaskbar()
    : m_bus(QDBusConnection::sessionBus())
    , m_pObject(std::make_unique<QObject>())
    , m_inhibitor(m_bus)
{
    new CQKMprisRoot(m_pObject.get(), this);
    m_pPlayer = new CQKMprisPlayer(m_pObject.get(), this);
    m_bus.registerObject(kObjectPath, m_pObject.get(), QDBusConnection::ExportAdaptors);
    // A second player on the same bus (another user's session shares none) takes a name of
    // its own, as the media controls' naming rules ask.
    if (!m_bus.registerService(kServiceName))
        m_bus.registerService(kServiceName + QStringLiteral(".instance") + QString::number(getpid()));
    m_announced = { { QStringLiteral("PlaybackStatus"), PlaybackStatus() }, { QStringLiteral("Metadata"), Metadata() },
        { QStringLiteral("Volume"), m_dVolume }, { QStringLiteral("CanSeek"), CanSeek() } };
}

CQKDesktopTaskbar::~CQKDesktopTaskbar()
{
    // The screen may blank again; the launcher's bar goes with the player.
    m_inhibitor.Want(false);
    if (m_bLauncherVisible)
        SendLauncherProgress(false, 0.0);
    m_bus.unregisterObject(kObjectPath);
}

void CQKDesktopTaskbar::ThumbBarAddButtons(CQKHostWnd* pWnd, uint32_t, const tagQKThumbButton*)
{
    m_pWnd = pWnd;
}

void CQKDesktopTaskbar::ThumbBarUpdateButtons(CQKHostWnd* pWnd, uint32_t nCount, const tagQKThumbButton* pButtons)
{
    m_pWnd = pWnd;
    for (uint32_t i = 0; pButtons && i < nCount; ++i)
        if (pButtons[i].iId == QKTHB_PLAYPAUSE)
            m_nMiddleIcon = pButtons[i].hIcon;
}

void CQKDesktopTaskbar::SetOverlayIcon(CQKHostWnd*, uint32_t hIcon)
{
    m_nOverlay = hIcon;
}

void CQKDesktopTaskbar::SetProgressState(CQKHostWnd*, uint32_t nState)
{
    // The last of the three calls of a change: the middle button shows pause while a file
    // plays, the overlay and the paused state mark a pause, and the play picture without
    // them is a stop.
    const Status was = m_status;
    if (nState == TBPF_PAUSED || m_nOverlay == QKICON_PAUSE)
        m_status = Status::Paused;
    else if (m_nMiddleIcon == QKICON_PAUSE)
        m_status = Status::Playing;
    else
        m_status = Status::Stopped;
    // A pause holds the position where playing left it; playing goes on from there.
    const uint64_t nNow = QKGetTickCount();
    if (was == Status::Playing && m_status != Status::Playing && m_dTickPos >= 0.0)
        m_dTickPos += static_cast<double>(nNow - m_nTickTime) / 1000.0;
    if (m_status != was)
        m_nTickTime = nNow;
    if (m_status == Status::Stopped)
        m_dTickPos = -1.0;
    m_inhibitor.Want(m_status == Status::Playing && m_bHasVideo);
    Announce();
}

void CQKDesktopTaskbar::SetProgressValue(CQKHostWnd*, uint64_t nCompleted, uint64_t nTotal)
{
    if (m_status == Status::Stopped) {
        // The stop empties the bar.
        SendLauncherProgress(false, 0.0);
        return;
    }
    const double dProgress = nTotal ? std::clamp(static_cast<double>(nCompleted) / static_cast<double>(nTotal), 0.0, 1.0) : 0.0;
    SendLauncherProgress(true, dProgress);

    // A tick far from where playing on would have led is a seek the user made on the panel.
    const double dPos = static_cast<double>(nCompleted) / 100.0;
    const uint64_t nNow = QKGetTickCount();
    if (m_dTickPos >= 0.0) {
        const double dExpected = m_dTickPos + (m_status == Status::Playing ? static_cast<double>(nNow - m_nTickTime) / 1000.0 : 0.0);
        const double dOff = dPos - dExpected;
        if ((dOff > kJumpSeconds || (dOff < -kJumpSeconds && !m_bTickFromStart)) && m_pPlayer)
            Q_EMIT m_pPlayer->Seeked(static_cast<qlonglong>(dPos * 1e6));
    }
    m_dTickPos = dPos;
    m_nTickTime = nNow;
    m_bTickFromStart = false;
}

void CQKDesktopTaskbar::SetMedia(CQKHostWnd* pWnd, const QString& strPath, double dDuration, bool bHasVideo)
{
    m_pWnd = pWnd;
    m_strPath = strPath;
    m_dDuration = dDuration > 0.0 && std::isfinite(dDuration) ? dDuration : 0.0;
    m_bHasVideo = bHasVideo;
    ++m_nTrack;
    // A file starts at its beginning.
    m_dTickPos = 0.0;
    m_nTickTime = QKGetTickCount();
    m_bTickFromStart = true;
    m_inhibitor.Want(m_status == Status::Playing && m_bHasVideo);
    Announce();
}

void CQKDesktopTaskbar::SetVolume(CQKHostWnd*, double dVolume)
{
    m_dVolume = std::clamp(dVolume, 0.0, 1.0);
    Announce();
}

QString CQKDesktopTaskbar::PlaybackStatus() const
{
    switch (m_status) {
    case Status::Playing:
        return QStringLiteral("Playing");
    case Status::Paused:
        return QStringLiteral("Paused");
    default:
        return QStringLiteral("Stopped");
    }
}

QDBusObjectPath CQKDesktopTaskbar::TrackId() const
{
    return QDBusObjectPath(QStringLiteral("/org/orbelplayer/track/%1").arg(m_nTrack));
}

QVariantMap CQKDesktopTaskbar::Metadata() const
{
    if (m_strPath.isEmpty())
        return {};
    QVariantMap map {
        { QStringLiteral("mpris:trackid"), QVariant::fromValue(TrackId()) },
        { QStringLiteral("xesam:title"), m_strPath.mid(m_strPath.lastIndexOf(QLatin1Char('/')) + 1) },
        { QStringLiteral("xesam:url"), QUrl::fromLocalFile(m_strPath).toString(QUrl::FullyEncoded) },
    };
    // A stream of unknown length has no length entry.
    if (m_dDuration > 0.0)
        map.insert(QStringLiteral("mpris:length"), static_cast<qlonglong>(std::llround(m_dDuration * 1e6)));
    return map;
}

qlonglong CQKDesktopTaskbar::PositionUs() const
{
    if (m_status == Status::Stopped || !qkplaydll_IsReady())
        return 0;
    double dPos = std::max(qkplaydll_getCurrentPos(), 0.0);
    if (m_dDuration > 0.0)
        dPos = std::min(dPos, m_dDuration);
    return static_cast<qlonglong>(dPos * 1e6);
}

bool CQKDesktopTaskbar::CanSeek() const
{
    return m_status != Status::Stopped && m_dDuration > 0.0;
}

void CQKDesktopTaskbar::Command(uint32_t nAction)
{
    // The same way as a click on one of the buttons, so that the window handles it as its own
    // command, in its own turn.
    if (m_pWnd)
        CQKHostWnd::PostMessage(m_pWnd, WM_COMMAND, (static_cast<uintptr_t>(THBN_CLICKED) << 16) | nAction, 0);
}

void CQKDesktopTaskbar::Raise()
{
    if (m_pWnd)
        m_pWnd->SetForegroundWindow();
}

void CQKDesktopTaskbar::RequestVolume(double dVolume)
{
    // The slider moves and tells back through SetVolume; a value out of range is taken as the
    // nearest end, as the slider itself does.
    if (!m_pWnd || !std::isfinite(dVolume))
        return;
    const intptr_t nTenThousandths = std::lround(std::clamp(dVolume, 0.0, 1.0) * 10000.0);
    CQKHostWnd::PostMessage(m_pWnd, QKM_DESKTOPVOLUME, 0, nTenThousandths);
}

void CQKDesktopTaskbar::SeekBy(qlonglong nOffsetUs)
{
    if (!CanSeek())
        return;
    const double dTarget = static_cast<double>(PositionUs() + nOffsetUs) / 1e6;
    // Past the end is the next file, as the media controls' rules ask.
    if (dTarget > m_dDuration) {
        Command(QKTHB_NEXT);
        return;
    }
    SeekToSeconds(std::max(dTarget, 0.0));
}

void CQKDesktopTaskbar::SeekTo(const QDBusObjectPath& trackId, qlonglong nPositionUs)
{
    // A request for another file than the current one, or outside it, is ignored.
    if (!CanSeek() || trackId != TrackId() || nPositionUs < 0 || static_cast<double>(nPositionUs) > m_dDuration * 1e6)
        return;
    SeekToSeconds(static_cast<double>(nPositionUs) / 1e6);
}

void CQKDesktopTaskbar::SeekToSeconds(double dSeconds)
{
    if (!qkplaydll_IsReady())
        return;
    // The position display and the seek bars follow at the next tick.
    qkplaydll_SetCurrentPos(dSeconds);
    m_dTickPos = dSeconds;
    m_nTickTime = QKGetTickCount();
    if (m_pPlayer)
        Q_EMIT m_pPlayer->Seeked(static_cast<qlonglong>(dSeconds * 1e6));
}

void CQKDesktopTaskbar::Announce()
{
    const QVariantMap current { { QStringLiteral("PlaybackStatus"), PlaybackStatus() }, { QStringLiteral("Metadata"), Metadata() },
        { QStringLiteral("Volume"), m_dVolume }, { QStringLiteral("CanSeek"), CanSeek() } };
    QVariantMap changed;
    for (auto it = current.cbegin(); it != current.cend(); ++it)
        if (m_announced.value(it.key()) != it.value())
            changed.insert(it.key(), it.value());
    if (changed.isEmpty())
        return;
    m_announced = current;
    QDBusMessage signal = QDBusMessage::createSignal(kObjectPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
    signal << kPlayerInterface << changed << QStringList();
    m_bus.send(signal);
}

void CQKDesktopTaskbar::SendLauncherProgress(bool bVisible, double dProgress)
{
    if (bVisible == m_bLauncherVisible && (!bVisible || dProgress == m_dLauncherProgress))
        return;
    m_bLauncherVisible = bVisible;
    m_dLauncherProgress = dProgress;
    QDBusMessage signal = QDBusMessage::createSignal(kLauncherPath, QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    signal << kLauncherUri << QVariantMap { { QStringLiteral("progress"), dProgress }, { QStringLiteral("progress-visible"), bVisible } };
    m_bus.send(signal);
}
