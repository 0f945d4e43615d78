// What the user's actions cost on in-memory cameras of 50, 500 and 5,000
// other features, each beside its floor: the same library calls, recorded
// once and made again directly on the camera's features. CPU time is the GUI
// thread's, the time for which the tab holds the GUI.

#include "BenchMain.h"
#include "BenchTab.h"
#include "CallRecording.h"
#include "SimFeatures.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Op;

namespace {

const char* const Families[] = {"autofunction", "automode", "dsp"};

// A camera of the benchmark's family and size.
struct BenchCamera
{
    explicit BenchCamera(benchmark::State& state)
        : camera(KST::TrkAPI::Sim::MakeCamera(Families[state.range(0)],
                                              static_cast<int>(state.range(1)))),
          features(MakeFeatureVector(*camera))
    {
        state.SetLabel(Families[state.range(0)]);
        state.counters["features"] = features->size();
    }

    std::unique_ptr<Camera> camera;
    QSharedPointer<FeatureVector> features;
};

// The band's centre, where a press starts a move.
QPoint BandCentre(BenchPage& page)
{
    return page.Band().center();
}

// Presses on the band and moves it a little, so that a release writes.
void StartDrag(BenchPage& page, int step)
{
    const QPoint start = BandCentre(page);
    page.Mouse(QEvent::MouseButtonPress, start);
    page.Mouse(QEvent::MouseMove, start + QPoint(step, step));
}

// The steps of the actions measured below, on a shown tab.
void ShowStep(BenchPage& page, const Camera&, int)
{
    page.tab->RefreshOnShow();
}

void TickStep(BenchPage& page, const Camera& camera, int)
{
    page.tab->RefreshOnTick(camera);
}

// Back and forth, so that the band stays clear of the picture's edges.
void DragStep(BenchPage& page, const Camera&, int iteration)
{
    const int step = iteration % 2 == 0 ? 4 : -4;
    page.Mouse(QEvent::MouseMove, page.Band().center() + QPoint(step, step));
}

void ReleaseStep(BenchPage& page, const Camera&, int)
{
    page.Mouse(QEvent::MouseButtonRelease, BandCentre(page));
}

// What comes before each step, not measured.
void BeforeShow(BenchPage& page, int)
{
    page.tab->Hide();
}

void BeforeTick(BenchPage&, int) {}

void BeforeDragStep(BenchPage&, int) {}

void BeforeRelease(BenchPage& page, int iteration)
{
    page.tab->StopUpdateTimer();
    QCoreApplication::processEvents();
    StartDrag(page, iteration % 2 == 0 ? 8 : -8);
}

typedef void (*Step)(BenchPage&, const Camera&, int);
typedef void (*Prepare)(BenchPage&, int);

// A drag step needs the band held.
void Hold(BenchPage& page, Step step)
{
    if (step == DragStep) {
        StartDrag(page, 4);
    }
}

void Action(benchmark::State& state, Step step, Prepare prepare)
{
    BenchCamera bench(state);
    BenchPage page(bench.features);
    Hold(page, step);
    int iteration = 0;
    for (auto _ : state) {
        state.PauseTiming();
        prepare(page, iteration);
        QCoreApplication::processEvents();
        state.ResumeTiming();
        step(page, *bench.camera, iteration);
        ++iteration;
    }
    // Counted after the measurement: call counting is a test hook.
    bench.camera->ResetCalls();
    prepare(page, iteration);
    step(page, *bench.camera, iteration);
    bench.camera->WaitForNotifications();
    state.counters["writes"] = bench.camera->TotalCalls(Op::SetValue);
}

void Floor(benchmark::State& state, Step step, Prepare prepare)
{
    BenchCamera bench(state);
    CallRecording recording;
    {
        BenchPage page(recording.Wrap(*bench.features));
        Hold(page, step);
        prepare(page, 0);
        QCoreApplication::processEvents();
        recording.Start();
        step(page, *bench.camera, 0);
        recording.Stop();
    }
    recording.Replay();
    // Only showing registers observers that aren't registered yet.
    const bool undo = step == ShowStep;
    for (auto _ : state) {
        state.PauseTiming();
        if (undo) {
            recording.UndoRegistrations();
        }
        QCoreApplication::processEvents();
        state.ResumeTiming();
        recording.Replay();
    }
    state.counters["calls"] = recording.Size();
}

void P1_RefreshOnShow(benchmark::State& state)
{
    Action(state, ShowStep, BeforeShow);
}

void P1_RefreshOnShowFloor(benchmark::State& state)
{
    Floor(state, ShowStep, BeforeShow);
}

void P1_RefreshOnTick(benchmark::State& state)
{
    Action(state, TickStep, BeforeTick);
}

void P1_RefreshOnTickFloor(benchmark::State& state)
{
    Floor(state, TickStep, BeforeTick);
}

void P2_DragStep(benchmark::State& state)
{
    Action(state, DragStep, BeforeDragStep);
}

void P2_DragStepFloor(benchmark::State& state)
{
    Floor(state, DragStep, BeforeDragStep);
}

void P2_Release(benchmark::State& state)
{
    Action(state, ReleaseStep, BeforeRelease);
}

void P2_ReleaseFloor(benchmark::State& state)
{
    Floor(state, ReleaseStep, BeforeRelease);
}

// What CreateTab does, up to the first show of the host's page.
void P3_CreateTab(benchmark::State& state)
{
    BenchCamera bench(state);
    for (auto _ : state) {
        std::unique_ptr<QWidget> page(new QWidget);
        AutoROIWidget* tab = new AutoROIWidget(bench.features, page.get());
        QVBoxLayout* layout = new QVBoxLayout;
        layout->addWidget(tab, 0, Qt::Alignment());
        page->setLayout(layout);
        page->show();
        state.PauseTiming();
        page.reset();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

void Cameras(benchmark::internal::Benchmark* benchmark)
{
    for (int family = 0; family < 3; ++family) {
        for (int features : {50, 500, 5000}) {
            benchmark->Args({family, features});
        }
    }
    benchmark->ArgNames({"family", "features"})->Unit(benchmark::kMicrosecond);
}

} // namespace

BENCHMARK(P1_RefreshOnShow)->Apply(Cameras);
BENCHMARK(P1_RefreshOnShowFloor)->Apply(Cameras);
BENCHMARK(P1_RefreshOnTick)->Apply(Cameras);
BENCHMARK(P1_RefreshOnTickFloor)->Apply(Cameras);
BENCHMARK(P2_DragStep)->Apply(Cameras);
BENCHMARK(P2_DragStepFloor)->Apply(Cameras);
BENCHMARK(P2_Release)->Apply(Cameras);
BENCHMARK(P2_ReleaseFloor)->Apply(Cameras);
BENCHMARK(P3_CreateTab)->Apply(Cameras);

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
