// Benchmarks of the toolkit core: the full repaint of a main-window-sized host, one control's
// lone repaint, and the reading of the default skin.
#include "controls/CQKSlider.h"
#include "platform/CQKHostWnd.h"
#include "platform/QKAppFolder.h"
#include "player/CQKPlayerFaces.h"
#include "toolkit/CQKButton.h"
#include "toolkit/CQKUIHostWnd.h"
#include "toolkit/CQKUIManager.h"
#include "toolkit/QKFonts.h"
#include "toolkit/QKTheme.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

// A host of 866 by 562, the main window's size, with twenty controls: drawn faces, picture
// strips and text buttons, some of them keeping their background.
class BenchHost : public CQKUIHostWnd
{
public:
    BenchHost()
    {
        CQKHostCreate create;
        create.rcWindow = QRect(0, 0, 866, 562);
        Create(create);
        ShowWindow(SW_SHOW);
        Manager()->LoadSkin(this);
        QImage strip(100, 25, QImage::Format_ARGB32_Premultiplied);
        strip.fill(0xFF406080);
        const int faces[] = { 0, 1, 2, 3, 8, 10, 28, 29 };
        for (int i = 0; i < 20; ++i) {
            auto pOwned = std::make_unique<CQKButton>();
            CQKButton* p = pOwned.get();
            Manager()->AddControl(100 + i, std::move(pOwned), 0);
            p->MoveTo(10 + (i % 10) * 80, 450 + (i / 10) * 40, 70, 30, 0);
            if (i < 8) {
                p->SetFace(faces[i]);
            } else if (i < 14) {
                p->SetImage(&strip);
            } else {
                p->SetFontID(1);
                p->SetText(QStringLiteral("Button %1").arg(i), 0);
                p->SetHoverFrame(true);
            }
            p->EnableBackgroundCache(i % 2 == 0);
        }
    }
};

void BM_PaintAll(benchmark::State& state)
{
    BenchHost host;
    for (auto _ : state)
        host.Manager()->PaintAll();
}
BENCHMARK(BM_PaintAll)->Unit(benchmark::kMicrosecond);

void BM_RenderToBitmap(benchmark::State& state)
{
    BenchHost host;
    for (auto _ : state)
        benchmark::DoNotOptimize(host.Manager()->RenderToBitmap());
}
BENCHMARK(BM_RenderToBitmap)->Unit(benchmark::kMicrosecond);

// A hover change: one control repaints alone over its saved background. Argument: the
// control's id (104 the play face, 114 a text button).
void BM_LoneRepaint(benchmark::State& state)
{
    BenchHost host;
    host.Manager()->PaintAll();
    CQKButton* p = host.Manager()->FindControl(static_cast<uint32_t>(state.range(0)), 0);
    for (auto _ : state) {
        p->nState = p->nState == 1 ? 0 : 1;
        p->RepaintAlone();
    }
}
BENCHMARK(BM_LoneRepaint)->Arg(104)->Arg(114)->Unit(benchmark::kMicrosecond);

// A drag step of a seek bar (600 by 16, over its saved background): the position moves and
// the slider repaints itself alone, as it does on every pointer move of a drag.
void BM_SliderDragStep(benchmark::State& state)
{
    BenchHost host;
    auto* slider = new CQKSlider();
    host.Manager()->AddControl(200, std::unique_ptr<CQKButton>(slider), QKKIND_SLIDER);
    slider->MoveTo(130, 400, 600, 16, 0);
    slider->EnableBackgroundCache(true);
    host.Manager()->PaintAll();
    double dPos = 40.0;
    for (auto _ : state) {
        dPos = dPos == 40.0 ? 60.0 : 40.0;
        slider->SetPos(dPos, 1);
    }
}
BENCHMARK(BM_SliderDragStep)->Unit(benchmark::kMicrosecond);

// Reading the default skin into a fresh manager (the font table is emptied with it).
void BM_LoadDefaultSkin(benchmark::State& state)
{
    BenchHost host;
    for (auto _ : state) {
        CQKUIManager manager;
        benchmark::DoNotOptimize(manager.LoadSkin(&host));
    }
}
BENCHMARK(BM_LoadDefaultSkin)->Unit(benchmark::kMicrosecond);

// Making the panel's face strips and the audio note from the theme, once at start-up.
void BM_CreateFaces(benchmark::State& state)
{
    CQKPlayerFaces faces;
    for (auto _ : state)
        faces.CreateFaces(nullptr);
}
BENCHMARK(BM_CreateFaces)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // The default skin beside the built program.
    QKSetAppFolderForTesting(QCoreApplication::applicationDirPath() + QLatin1Char('/'));
    LoadUIColors();
    LoadBigFontFile();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
