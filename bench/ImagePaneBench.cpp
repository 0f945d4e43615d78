// The viewer's live image under a camera at 30 frames per second: for 1, 5
// and 20 megapixels, how many frames the image pane shows per second and how
// much of the time the GUI thread is busy. Prints a table; never fails.

#include "ImagePane.h"
#include "StreamedFrames.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace {

const double FrameRate = 30.0;
const int SecondsPerSize = 4;

struct Size
{
    const char* name;
    int width;
    int height;
};

// The pane's size, about that of the viewer's image area.
const QSize PaneSize(860, 560);

void Measure(const Size& size)
{
    const StreamedFrames frames(size.width, size.height);
    ImagePane pane;
    pane.resize(PaneSize);
    pane.show();
    QApplication::processEvents();

    QElapsedTimer wall;
    wall.start();
    const double guiStart = ThreadSeconds();
    frames.Stream(pane.Handler(), FrameRate, static_cast<int>(FrameRate * SecondsPerSize));
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
    std::printf("Image pane at %.0f frames/s for %d s, Mono8, pane 860 x 560\n", FrameRate,
                SecondsPerSize);
    std::printf("%-6s %13s %8s %8s %10s %11s\n", "size", "pixels", "received", "shown", "shown/s",
                "GUI busy");
    const Size sizes[] = {{"1 MP", 1280, 800}, {"5 MP", 2592, 1944}, {"20 MP", 5472, 3648}};
    for (const Size& size : sizes) {
        Measure(size);
    }
    return 0;
}
