// libqkplay.so exports exactly the operations of qkplay.h: the player finds them by their
// names, and nothing of the engine's inside may leak out to clash with other libraries.
#include <QProcess>
#include <QSet>
#include <QString>
#include <gtest/gtest.h>

TEST(EngineExportsTest, ExportsExactlyTheDocumentedOperations)
{
    QProcess nm;
    nm.start("nm", { "-D", "--defined-only", QStringLiteral(QKPLAY_LIBRARY_FILE) });
    ASSERT_TRUE(nm.waitForFinished(30000));
    ASSERT_EQ(nm.exitCode(), 0) << nm.readAllStandardError().toStdString();

    QSet<QString> exported;
    for (const QByteArray& line : nm.readAllStandardOutput().split('\n')) {
        QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 3)
            continue;
        // Symbols of the linker (_end, __bss_start, ...) are absolute or data markers, not code.
        if (fields[1] == "T" || fields[1] == "W" || fields[1] == "i" || fields[1] == "u" || fields[1] == "D"
            || fields[1] == "V")
            exported.insert(QString::fromLatin1(fields[2]));
    }
    exported.remove("_edata");
    exported.remove("_end");
    exported.remove("__bss_start");

    const QSet<QString> expected {
        "qkplaydll_GetMediaInfoEx",
        "qkplaydll_Play",
        "qkplaydll_Stop",
        "qkplaydll_PauseOrResume",
        "qkplaydll_IsPlaying",
        "qkplaydll_IsReady",
        "qkplaydll_getCurrentPos",
        "qkplaydll_getLastSeekingPos",
        "qkplaydll_SetCurrentPos",
        "qkplaydll_SetVolume",
        "qkplaydll_SetMute",
        "qkplaydll_AdjustColor",
        "qkplay_video_attach",
        "qkplay_video_render",
        "qkplay_video_detach",
        "qkplay_get_engine_property",
        "qkplay_free",
    };
    for (const QString& name : exported)
        EXPECT_TRUE(expected.contains(name)) << "exported but not documented: " << name.toStdString();
    for (const QString& name : expected)
        EXPECT_TRUE(exported.contains(name)) << "documented but not exported: " << name.toStdString();
}
