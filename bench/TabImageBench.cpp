// The tab's preview fed with the live image, as the viewer feeds it, under a
// camera at 30 frames per second of 1, 5 and 20 megapixels: the GUI thread's
// time per image the tab takes, the frames shown per second, and the peak
// memory of the process against the same run without images for the tab.
// Each run is a process of its own, so that each peak is its own. Prints a
// Markdown section; never fails.

#include "BenchTab.h"
#include "ImagePane.h"
#include "SimFeatures.h"
#include "StreamedFrames.h"
#include "rubberbandlabel.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <sys/resource.h>

#include <cstdio>

using namespace KST::TrkAPI;

namespace {

const double KilobytesPerMegabyte = 1024.0;
const double GoalMilliseconds = 1.0;
const double GoalMegabytesAbove = 40.0;
// Frames shown per second with images for the tab, as a share of those shown
// without, that still count as the display keeping up.
const double KeepingUpShare = 0.95;

// One run: prints images taken by the tab, GUI ms per image, frames shown per
// second and the peak in MB.
void Run(const StreamSize& size, bool feedTab)
{
    const StreamedFrames frames(size.width, size.height);
    std::unique_ptr<Sim::Camera> camera = Sim::MakeCamera("autofunction");
    BenchPage page(MakeFeatureVector(*camera));
    ImagePane pane;
    pane.resize(StreamPaneSize);
    pane.show();
    QApplication::processEvents();

    // What the viewer does with each frame shown and each copy.
    int updates = 0;
    double updateSeconds = 0.0;
    if (feedTab) {
        QObject::connect(&pane, &ImagePane::frameShown,
                         [&] { pane.SetCopySize(page.tab->PreviewImageSize()); });
        QObject::connect(&pane, &ImagePane::copyShown,
                         [&](const QImage& copy, const QSize& frameSize) {
                             const double start = ThreadSeconds();
                             page.tab->ShowCameraImage(copy, frameSize);
                             // What the hand over left for later, run now: the
                             // repaint of all it invalidated, any new layout.
                             for (QWidget* widget = page.tab->Preview(); widget;
                                  widget = widget->parentWidget()) {
                                 QCoreApplication::sendPostedEvents(widget);
                             }
                             updateSeconds += ThreadSeconds() - start;
                             ++updates;
                         });
    }

    QElapsedTimer wall;
    wall.start();
    frames.Stream(pane.Handler(), StreamRate, static_cast<int>(StreamRate * StreamSeconds));
    const double seconds = wall.elapsed() / 1000.0;

    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%d %.3f %.1f %.1f\n", updates, updates ? 1000.0 * updateSeconds / updates : 0.0,
                pane.FramesShown() / seconds, usage.ru_maxrss / KilobytesPerMegabyte);
}

// The figures of one run in a process of its own.
QStringList RunApart(const char* program, int size, bool feedTab)
{
    QProcess run;
    run.start(QString::fromLocal8Bit(program),
              {QString::number(size), feedTab ? QStringLiteral("tab") : QStringLiteral("none")});
    run.waitForFinished(-1);
    return QString::fromLocal8Bit(run.readAllStandardOutput()).simplified().split(' ');
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (argc == 3) {
        QApplication app(argc, argv);
        Run(StreamSizes[atoi(argv[1])], qstrcmp(argv[2], "tab") == 0);
        return 0;
    }
    std::printf("## Live image in the tab's preview\n\n"
                "Goal: at most 1 ms of GUI thread per image the tab takes; the display keeping "
                "up at 20 MP; peak memory at 20 MP at most 40 MB above the run without images "
                "for the tab. Camera at %.0f frames/s for %d s, Mono8, image pane %d x %d, the "
                "tab of the Autofunction camera beside it. GUI ms is the thread's CPU time of "
                "handing the tab one image and running at once what that left for later: the "
                "repaint of all it invalidated, and any new layout of the tab.\n\n",
                StreamRate, StreamSeconds, StreamPaneSize.width(), StreamPaneSize.height());
    std::printf("| Frame | Images to the tab | GUI ms per image | Shown/s | Shown/s without | "
                "Peak MB | Peak MB without | Above |\n|---|---:|---:|---:|---:|---:|---:|---:|\n");
    const int largest = static_cast<int>(sizeof StreamSizes / sizeof StreamSizes[0]) - 1;
    bool met = true;
    for (int size = 0; size <= largest; ++size) {
        const QStringList with = RunApart(argv[0], size, true);
        const QStringList without = RunApart(argv[0], size, false);
        if (with.size() < 4 || without.size() < 4) {
            met = false;
            continue;
        }
        const double above = with[3].toDouble() - without[3].toDouble();
        std::printf("| %s | %s | %s | %s | %s | %s | %s | %.1f |\n", StreamSizes[size].name,
                    qPrintable(with[0]), qPrintable(with[1]), qPrintable(with[2]),
                    qPrintable(without[2]), qPrintable(with[3]), qPrintable(without[3]), above);
        met = met && with[1].toDouble() <= GoalMilliseconds &&
              (size < largest || (with[2].toDouble() >= KeepingUpShare * without[2].toDouble() &&
                                  above <= GoalMegabytesAbove));
    }
    std::printf("\nGoal met: %s.\n", met ? "yes" : "no");
    return 0;
}
