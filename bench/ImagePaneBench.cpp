// The viewer's live image under a camera at 30 frames per second: for 1, 5
// and 20 megapixels, how many frames the image pane shows per second and how
// much of the time the GUI thread is busy. Prints a table; never fails.

#include "ImagePane.h"
#include "StreamedFrames.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace {

void Measure(const StreamSize& size)
{
    const StreamedFrames frames(size.width, size.height);
    ImagePane pane;
    pane.resize(StreamPaneSize);
    pane.show();
    QApplication::processEvents();

    QElapsedTimer wall;
    wall.start();
    const double guiStart = ThreadSeconds();
    frames.Stream(pane.Handler(), StreamRate, static_cast<int>(StreamRate * StreamSeconds));
    const double seconds = wall.elapsed() / 1000.0;
    const double guiBusy = ThreadSeconds() - guiStart;

    std::printf("%-6s %5d x %-5d %8llu %8llu %10.1f %10.1f%%\n", size.name, size.width, size.height,
                static_cast<unsigned long long>(pane.FramesReceived()),
                static_cast<unsigned long long>(pane.FramesShown()), pane.FramesShown() / seconds,
                100.0 * guiBusy / seconds);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    std::printf("Image pane at %.0f frames/s for %d s, Mono8, pane %d x %d\n", StreamRate,
                StreamSeconds, StreamPaneSize.width(), StreamPaneSize.height());
    std::printf("%-6s %13s %8s %8s %10s %11s\n", "size", "pixels", "received", "shown", "shown/s",
                "GUI busy");
    for (const StreamSize& size : StreamSizes) {
        Measure(size);
    }
    return 0;
}
