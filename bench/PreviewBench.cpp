// One resize of the area preview at reference sizes of 0.3, 5 and 20
// megapixels, with the process's peak memory. Run one size per process for
// an honest peak: --benchmark_filter=P4_Resize/0, /1 or /2.

#include "BenchMain.h"
#include "rubberbandlabel.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

struct ReferenceSize
{
    int width;
    int height;
};

const ReferenceSize Sizes[] = {{640, 480}, {2592, 1944}, {5472, 3648}};

// The preview's size before the drag, and how far the border moves.
const QSize PreviewSize(400, 300);
const int DragStep = 4;
const double KilobytesPerMegabyte = 1024.0;

double PeakMegabytes()
{
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / KilobytesPerMegabyte;
}

void P4_Resize(benchmark::State& state)
{
    const ReferenceSize size = Sizes[state.range(0)];
    const double before = PeakMegabytes();
    RubberBandLabel label(size.width, size.height, Qt::darkGreen, nullptr);
    label.SetBandGeometry(size.height / 4, size.width / 4, size.width / 2, size.height / 2);
    label.resize(PreviewSize);
    label.show();
    QCoreApplication::processEvents();
    int iteration = 0;
    for (auto _ : state) {
        // A border dragged by a few pixels at a time.
        const int grow = iteration++ % 2 == 0 ? DragStep : 0;
        label.resize(PreviewSize + QSize(grow, grow));
    }
    state.counters["megapixels"] = size.width * static_cast<double>(size.height) / 1e6;
    state.counters["peak_MB"] = PeakMegabytes();
    state.counters["peak_before_MB"] = before;
}

} // namespace

// Qt scales large pictures on threads of its own, for which the GUI thread waits.
BENCHMARK(P4_Resize)->DenseRange(0, 2)->ArgName("size")->MeasureProcessCPUTime()->Unit(
    benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return RunBenchmarks(argc, argv);
}
