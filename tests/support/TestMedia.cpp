#include "TestMedia.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QtGlobal>
#include <unistd.h>

namespace orbeltest {

namespace {

QString Seconds(double dSeconds)
{
    return QString::number(dSeconds, 'f', 3);
}

// Low rates and tiny pictures keep the files small and quick to decode, also in the
// sanitizer build.
const QStringList kVideoCodec { "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", "25" };
const QStringList kAudioCodec { "-c:a", "aac", "-b:a", "48k", "-ac", "2" };

QStringList Tone(double dSeconds)
{
    return { "-f", "lavfi", "-i", QString("sine=frequency=440:sample_rate=44100:duration=%1").arg(Seconds(dSeconds)) };
}

QStringList Picture(const QString& strSource)
{
    return { "-f", "lavfi", "-i", strSource };
}

} // namespace

QString TestMedia::Folder()
{
    static const QString folder = [] {
        QString base = qEnvironmentVariable("ORBEL_BIN_DIR");
        QString dir = base.isEmpty() ? QDir::tempPath() + QString("/orbel-testmedia-%1/").arg(getuid())
                                     : QDir(base).absoluteFilePath("../testmedia") + "/";
        QDir().mkpath(dir);
        return QDir::cleanPath(dir) + "/";
    }();
    return folder;
}

QString TestMedia::Make(const QString& fileName, const QStringList& args)
{
    // The arguments are part of the cached name, so that a changed recipe never returns an
    // old file.
    QByteArray key = args.join('\x1f').toUtf8();
    QString hash = QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(10);
    QFileInfo name(fileName);
    QString path = Folder() + name.completeBaseName() + "-" + hash + "." + name.suffix();
    if (QFileInfo::exists(path))
        return path;

    QString temp = Folder() + QString(".part-%1-%2.").arg(getpid()).arg(hash) + name.suffix();
    QProcess ffmpeg;
    QStringList all { "-y", "-nostdin", "-v", "error" };
    all << args << temp;
    ffmpeg.start("ffmpeg", all);
    if (!ffmpeg.waitForFinished(60000) || ffmpeg.exitStatus() != QProcess::NormalExit || ffmpeg.exitCode() != 0) {
        qWarning("ffmpeg failed for %s: %s", qPrintable(fileName), ffmpeg.readAllStandardError().constData());
        QFile::remove(temp);
        return {};
    }
    if (::rename(QFile::encodeName(temp).constData(), QFile::encodeName(path).constData()) != 0) {
        QFile::remove(temp);
        return QFileInfo::exists(path) ? path : QString();
    }
    return path;
}

QString TestMedia::VideoWithSound(double dSeconds)
{
    return Make("video-sound.mkv", Picture(QString("testsrc=size=160x120:rate=25:duration=%1").arg(Seconds(dSeconds))) + Tone(dSeconds) + kVideoCodec + kAudioCodec + QStringList { "-shortest" });
}

QString TestMedia::VideoOnly(double dSeconds)
{
    return Make("video-only.mkv",
        Picture(QString("testsrc=size=160x120:rate=25:duration=%1").arg(Seconds(dSeconds))) + kVideoCodec);
}

QString TestMedia::SoundOnly(double dSeconds)
{
    return Make("sound-only.mp3", Tone(dSeconds) + QStringList { "-c:a", "libmp3lame", "-b:a", "64k" });
}

QString TestMedia::SoundWithCover(double dSeconds)
{
    return Make("sound-cover.mp3", Tone(dSeconds) + Picture("color=c=orange:size=64x64:duration=1") + QStringList { "-frames:v", "1", "-map", "0:a", "-map", "1:v", "-c:a", "libmp3lame", "-b:a", "64k", "-c:v", "png", "-disposition:v", "attached_pic", "-id3v2_version", "3" });
}

QString TestMedia::SolidColor(const QString& strColor, double dSeconds, int nWidth, int nHeight, bool bSound)
{
    QString name = QString("solid-%1-%2x%3%4.mkv").arg(strColor).arg(nWidth).arg(nHeight).arg(bSound ? "-sound" : "");
    QStringList args = Picture(QString("color=c=%1:size=%2x%3:rate=25:duration=%4")
                                   .arg(strColor)
                                   .arg(nWidth)
                                   .arg(nHeight)
                                   .arg(Seconds(dSeconds)));
    if (bSound)
        args += Tone(dSeconds);
    args += kVideoCodec;
    if (bSound)
        args += kAudioCodec + QStringList { "-shortest" };
    return Make(name, args);
}

QString TestMedia::Sized(int nWidth, int nHeight, double dSeconds)
{
    // Odd sizes need a pixel format without subsampling; 4:4:4 H.264 carries any size.
    return Make(QString("sized-%1x%2.mkv").arg(nWidth).arg(nHeight),
        Picture(QString("testsrc=size=%1x%2:rate=10:duration=%3").arg(nWidth).arg(nHeight).arg(Seconds(dSeconds)))
            + QStringList { "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv444p" });
}

QString TestMedia::Anamorphic()
{
    return Make("anamorphic.mkv", Picture("testsrc=size=120x90:rate=25:duration=0.4") + QStringList { "-vf", "setsar=4/3" } + kVideoCodec);
}

QString TestMedia::NonAsciiName()
{
    QString source = VideoWithSound();
    if (source.isEmpty())
        return {};
    QString path = Folder() + QString::fromUtf8("Grüße ビデオ ♫ (1).mkv");
    if (!QFileInfo::exists(path)) {
        QString temp = path + QString(".part-%1").arg(getpid());
        if (!QFile::copy(source, temp) || ::rename(QFile::encodeName(temp).constData(), QFile::encodeName(path).constData()) != 0)
            return {};
    }
    return path;
}

QString TestMedia::WriteBytes(const QString& fileName, const QByteArray& bytes)
{
    QString path = Folder() + fileName;
    QString temp = path + QString(".part-%1").arg(getpid());
    QFile file(temp);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return {};
    file.close();
    if (::rename(QFile::encodeName(temp).constData(), QFile::encodeName(path).constData()) != 0)
        return {};
    return path;
}

QString TestMedia::ZeroBytes()
{
    return WriteBytes("empty.mp4", {});
}

QString TestMedia::Truncated()
{
    // MP4 keeps its index at the end unless told otherwise: the first half alone is not
    // playable.
    QString full = Make("whole.mp4", Picture("testsrc=size=160x120:rate=25:duration=1") + kVideoCodec);
    QFile file(full);
    if (full.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray bytes = file.readAll();
    return WriteBytes("truncated.mp4", bytes.left(bytes.size() / 2));
}

QString TestMedia::RandomBytes()
{
    QRandomGenerator random(20261122);
    QByteArray bytes(64 * 1024, Qt::Uninitialized);
    for (char& c : bytes)
        c = static_cast<char>(random.bounded(256));
    return WriteBytes("noise.mp4", bytes);
}

QString TestMedia::FolderNamedLikeMedia()
{
    QString path = Folder() + "folder.mkv";
    QDir().mkpath(path);
    return path;
}

std::string TestMedia::Utf8(const QString& strPath)
{
    return strPath.toUtf8().toStdString();
}

std::u16string TestMedia::Utf16(const QString& strPath)
{
    return strPath.toStdU16String();
}

} // namespace orbeltest
