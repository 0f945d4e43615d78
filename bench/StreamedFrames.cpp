#include "StreamedFrames.h"

#include <QEventLoop>

#include <chrono>
#include <ctime>
#include <memory>
#include <thread>

using namespace KST::TrkAPI;

namespace {
const int FramesInRotation = 3;
const int GradientDivisor = 7;
} // namespace

StreamedFrames::StreamedFrames(int width, int height)
{
    for (int i = 0; i < FramesInRotation; ++i) {
        std::shared_ptr<Frame> frame = std::make_shared<Frame>();
        frame->width = width;
        frame->height = height;
        frame->format = PixelFormat::Mono8;
        frame->stride = static_cast<size_t>(width);
        frame->data.resize(frame->stride * static_cast<size_t>(height));
        for (size_t p = 0; p < frame->data.size(); ++p) {
            frame->data[p] = static_cast<unsigned char>(p * (i + 1) / GradientDivisor);
        }
        m_Frames.push_back(frame);
    }
}

void StreamedFrames::Stream(const FrameHandler& handler, double rate, int count) const
{
    QEventLoop loop;
    std::thread camera([&] {
        const auto period = std::chrono::duration<double>(1.0 / rate);
        auto due = std::chrono::steady_clock::now();
        for (int i = 0; i < count; ++i) {
            std::this_thread::sleep_until(due);
            handler(m_Frames[static_cast<size_t>(i) % m_Frames.size()]);
            due += std::chrono::duration_cast<std::chrono::steady_clock::duration>(period);
        }
        QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection);
    });
    loop.exec();
    camera.join();
}

double ThreadSeconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec + now.tv_nsec * 1e-9;
}
