// Previous and next through a folder of 1,000, 10,000 and 100,000 files, beside what a sorted
// listing of the same folder costs (the way a player that loads the folder as a playlist, and
// a walk that sorted on each step, would see it).
//
// The folders are made once under $TMPDIR (or /tmp): empty files named "Clip 1.mkv",
// "clip 2.MP4", "CLIP 3.avi", ... with one in ten a ".txt" that the walk passes over. The walk
// starts from the file in the middle of the folder.
#include "player/QKFolderWalk.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

QString NameOf(int i)
{
    static const char* const kCases[] = { "Clip", "clip", "CLIP" };
    static const char* const kTypes[] = { "mkv", "MP4", "avi", "mp3", "Wav", "ts", "mpg", "flv", "wmv", "txt" };
    return QStringLiteral("%1 %2.%3").arg(QLatin1String(kCases[i % 3])).arg(i).arg(QLatin1String(kTypes[i % 10]));
}

// The folder of n files, made unless it is complete already.
QString Folder(int n)
{
    const char* pszTmp = std::getenv("TMPDIR");
    const QString folder = QStringLiteral("%1/orbel-bench-folderwalk-%2/%3/").arg(QString::fromLocal8Bit(pszTmp && *pszTmp ? pszTmp : "/tmp")).arg(::getuid()).arg(n);
    const QString done = folder + QStringLiteral(".complete");
    if (QFile::exists(done))
        return folder;
    QDir().mkpath(folder);
    for (int i = 1; i <= n; ++i) {
        const QByteArray path = QFile::encodeName(folder + NameOf(i));
        const int fd = ::open(path.constData(), O_CREAT | O_WRONLY, 0644);
        if (fd >= 0)
            ::close(fd);
    }
    QFile(done).open(QIODevice::WriteOnly);
    return folder;
}

void BM_Next(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const QString start = Folder(n) + NameOf(n / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(QKFolderWalk::FindNext(start));
}

void BM_Prev(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const QString start = Folder(n) + NameOf(n / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(QKFolderWalk::FindPrev(start));
}

// The folder's names listed and sorted in the natural order with the locale's collator,
// numbers by value and case aside.
void BM_ListAndSort(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    const QString folder = Folder(n);
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    for (auto _ : state) {
        QStringList names = QDir(folder).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Unsorted);
        std::sort(names.begin(), names.end(), collator);
        benchmark::DoNotOptimize(names.data());
    }
}

} // namespace

BENCHMARK(BM_Next)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Prev)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListAndSort)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
