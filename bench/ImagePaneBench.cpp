// The viewer's live image under a camera at 30 frames per second: for 1, 5
// and 20 megapixels, how many frames the image pane shows per second and how
// much of the time the GUI thread is busy. Prints a table; never fails.

#include "ImagePane.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

using namespace KST::TrkAPI;

namespace {

const double FrameRate = 30.0;
const int SecondsPerSize = 4;
const int FramesInRotation = 3;

struct Size
{
    const char* name;
    int width;
    int height;
};

double ThreadSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec + now.tv_nsec * 1e-9;
}

// A few different frames, as a camera's buffers would be, with a gradient
// so that conversion reads real data.
std::vector<FramePtr> MakeFrames(const Size& size)
{
    std::vector<FramePtr> frames;
    for (int i = 0; i < FramesInRotation; ++i) {
        std::shared_ptr<Frame> frame = std::make_shared<Frame>();
        frame->width = size.width;
        frame->height = size.height;
        frame->format = PixelFormat::Mono8;
        frame->stride = size.width;
        frame->data.resize(static_cast<size_t>(size.width) * size.height);
        for (size_t p = 0; p < frame->data.size(); ++p) {
            frame->data[p] = static_cast<unsigned char>(p * (i + 1) / 7);
        }
        frames.push_back(frame);
    }
    return frames;
}

// The pane's size, about that of the viewer's image area.
const QSize PaneSize(860, 560);

void Measure(const Size& size)
{
    const std::vector<FramePtr> frames = MakeFrames(size);
    ImagePane pane;
    pane.resize(PaneSize);
    pane.show();
    QApplication::processEvents();
    const FrameHandler handler = pane.Handler();

    const int total = static_cast<int>(FrameRate * SecondsPerSize);
    QEventLoop loop;
    QElapsedTimer wall;
    wall.start();
    const double guiStart = ThreadSeconds();
    std::thread camera([&] {
        const auto period = std::chrono::duration<double>(1.0 / FrameRate);
        auto due = std::chrono::steady_clock::now();
        for (int i = 0; i < total; ++i) {
            std::this_thread::sleep_until(due);
            handler(frames[i % frames.size()]);
            due += std::chrono::duration_cast<std::chrono::steady_clock::duration>(period);
        }
        QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection);
    });
    loop.exec();
    camera.join();
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
