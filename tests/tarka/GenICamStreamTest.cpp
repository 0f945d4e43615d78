// Images from the GenICam backend through Aravis's fake camera: frames of the
// camera's format while it acquires, none after.

#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>

using namespace KST::TrkAPI;

namespace {

// Keeps the last frame and counts them all.
struct FrameLog
{
    std::mutex lock;
    FramePtr last;
    int count = 0;

    int Count()
    {
        std::lock_guard<std::mutex> guard(lock);
        return count;
    }
};

TEST(GenICamStream, FramesOfTheCamerasFormatComeWhileItAcquires)
{
    std::string error;
    std::unique_ptr<GenICam::Camera> camera =
        GenICam::Camera::OpenDescription(std::string(TAB_CAMERAS_DIR) + "/dsp.xml", &error);
    ASSERT_TRUE(camera) << error;
    FrameLog log;
    camera->SetFrameHandler([&log](const FramePtr& frame) {
        std::lock_guard<std::mutex> guard(log.lock);
        log.last = frame;
        ++log.count;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(0, log.Count()) << "frames before acquisition";
    ASSERT_EQ(0, camera->Find("Width")->SetValue(640LL));
    ASSERT_EQ(0, camera->Find("Height")->SetValue(480LL));

    const std::pair<const char*, PixelFormat> formats[] = {{"Mono8", PixelFormat::Mono8},
                                                           {"BayerRG8", PixelFormat::BayerRG8},
                                                           {"Mono16", PixelFormat::Mono16}};
    for (const auto& format : formats) {
        SCOPED_TRACE(format.first);
        ASSERT_EQ(0, camera->Find("PixelFormat")->SetValue(format.first));
        const int before = log.Count();
        ASSERT_EQ(0, camera->Find("AcquisitionStart")->RunCommand());
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (log.Count() < before + 2 && std::chrono::steady_clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ASSERT_GE(log.Count(), before + 2);
        ASSERT_EQ(0, camera->Find("AcquisitionStop")->RunCommand());
        // Images come at the described size: the fake camera's own registers.
        std::lock_guard<std::mutex> guard(log.lock);
        EXPECT_EQ(640, log.last->width);
        EXPECT_EQ(480, log.last->height);
        EXPECT_EQ(format.second, log.last->format);
        EXPECT_EQ(log.last->stride * log.last->height, log.last->data.size());
    }

    // Images already on their way when the camera stopped may still come.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    const int stopped = log.Count();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(stopped, log.Count());
    camera->SetFrameHandler(FrameHandler());
}

} // namespace
