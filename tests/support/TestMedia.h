#pragma once
// Media files for the tests, made with the ffmpeg command from lavfi sources (never
// downloaded). Each file is made once and kept in a cache folder shared by the test
// executables of one build (named after the ffmpeg arguments, written under a temporary name
// and renamed, so that tests running side by side never see half a file). Every function
// returns an absolute path, or an empty string when ffmpeg failed (tests then fail loudly
// through ASSERT_FALSE(path.isEmpty())).
#include <QString>
#include <QStringList>
#include <string>

namespace orbeltest {

class TestMedia
{
public:
    // The cache folder, with a trailing '/'. Under the build tree when ORBEL_BIN_DIR is set,
    // else in the system's temporary folder.
    static QString Folder();

    // Runs "ffmpeg -y -v error <args> <file>" into the cache unless the file is there already.
    // fileName decides the container by its extension.
    static QString Make(const QString& fileName, const QStringList& args);

    // A clip of a test picture with a tone; 160x120, 25 frames a second.
    static QString VideoWithSound(double dSeconds = 1.0);
    // The same picture without sound.
    static QString VideoOnly(double dSeconds = 1.0);
    // A tone without any picture, in an MP3 file.
    static QString SoundOnly(double dSeconds = 1.0);
    // A tone in an MP3 file that carries a cover picture (an attached picture stream).
    static QString SoundWithCover(double dSeconds = 1.0);
    // A clip of one colour (an ffmpeg colour name such as "red", "green", "blue", or
    // "0xRRGGBB"), with a tone when bSound is set.
    static QString SolidColor(const QString& strColor, double dSeconds = 1.0, int nWidth = 64,
        int nHeight = 48, bool bSound = false);
    // A clip of the given size in pixels (1x1 and 4096x2160 work).
    static QString Sized(int nWidth, int nHeight, double dSeconds = 0.4);
    // A clip stored 120x90 with a sample aspect ratio of 4:3: shown 160x90.
    static QString Anamorphic();
    // VideoWithSound under a name with accents, CJK and a symbol.
    static QString NonAsciiName();
    // An empty file with a media extension.
    static QString ZeroBytes();
    // The first part of an MP4 whose index lies at its end: nothing can be played.
    static QString Truncated();
    // 64 KiB of pseudo-random bytes named like a video.
    static QString RandomBytes();
    // A folder whose name ends like a media file.
    static QString FolderNamedLikeMedia();

    // Conversions for the engine's two kinds of path.
    static std::string Utf8(const QString& strPath);
    static std::u16string Utf16(const QString& strPath);

    // A file of these bytes in the media folder, for files that are no media.
    static QString WriteBytes(const QString& fileName, const QByteArray& bytes);
};

} // namespace orbeltest
