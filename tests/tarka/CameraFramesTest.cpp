#include "FrameCatcher.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

using namespace KST::TrkAPI;
using namespace KST::TrkAPI::Sim;

namespace {

// The scene's tiles are a twelfth of the sensor's width; (2, 2) is bright,
// (3, 2) is dark, and the moving disc keeps to the top row.
const int Tile = 2592 / 12;

struct Rect
{
    int x, y, width, height;
};

const Rect BrightSpot = {2 * Tile + 16, 2 * Tile + 16, 160, 160};
const Rect DarkSpot = {3 * Tile + 16, 2 * Tile + 16, 160, 160};

// Writes the region, from the image's corner on so that no old value
// limits a new one.
void PlaceRegion(Camera& camera, const Rect& r)
{
    camera.SetFromCamera("AutofunctionAOIOffsetX", 0);
    camera.SetFromCamera("AutofunctionAOIOffsetY", 0);
    camera.SetFromCamera("AutofunctionAOIWidth", r.width);
    camera.SetFromCamera("AutofunctionAOIHeight", r.height);
    camera.SetFromCamera("AutofunctionAOIOffsetX", r.x);
    camera.SetFromCamera("AutofunctionAOIOffsetY", r.y);
}

double MeanInside(const Frame& frame, const Rect& r)
{
    double sum = 0.0;
    for (int y = r.y; y < r.y + r.height; ++y) {
        for (int x = r.x; x < r.x + r.width; ++x) {
            sum += frame.data[y * frame.stride + x];
        }
    }
    return sum / (r.width * r.height);
}

// The exposure after frames frames.
double Settle(Camera& camera, int frames)
{
    for (int i = 0; i < frames; ++i) {
        EXPECT_TRUE(camera.ProduceFrame());
    }
    return camera.FloatValue("ExposureTime");
}

TEST(CameraFramesTest, FramesComeWhileAcquiringInTheImageFormat)
{
    FrameCatcher catcher;
    std::unique_ptr<Camera> camera = MakeCamera("automode");
    camera->SetFrameClock(false);
    camera->SetFrameHandler(catcher.Handler());
    EXPECT_FALSE(camera->ProduceFrame());
    camera->Find("Width")->SetValue(640LL);
    camera->Find("Height")->SetValue(480LL);
    camera->Find("PixelFormat")->SetValue("Mono12");
    camera->Find("AcquisitionStart")->RunCommand();
    ASSERT_TRUE(camera->ProduceFrame());
    FramePtr frame = catcher.Last();
    ASSERT_TRUE(frame);
    EXPECT_EQ(640, frame->width);
    EXPECT_EQ(480, frame->height);
    EXPECT_EQ(PixelFormat::Mono16, frame->format);
    EXPECT_EQ(1280u, frame->stride);
    EXPECT_EQ(frame->stride * 480, frame->data.size());
    const unsigned long long id = frame->id;
    // Frames held by the host are never written again: the camera takes
    // others, and drops frames once the host holds them all.
    std::vector<FramePtr> held;
    for (int i = 0; i < 8; ++i) {
        camera->ProduceFrame();
        held.push_back(catcher.Last());
    }
    EXPECT_EQ(id, frame->id);
    EXPECT_LT(catcher.Count(), 9);
}

TEST(CameraFramesTest, AHandlerChangeWaitsForTheCallInProgress)
{
    std::unique_ptr<Camera> camera = MakeCamera("dsp");
    camera->Find("Width")->SetValue(256LL);
    camera->Find("Height")->SetValue(192LL);
    FrameCatcher catcher;
    std::atomic<bool> inside(false);
    camera->SetFrameHandler([&](const FramePtr& frame) {
        inside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        catcher.Handler()(frame);
        inside = false;
    });
    camera->Find("AcquisitionStart")->RunCommand();
    ASSERT_TRUE(catcher.AwaitCount(2));
    while (!inside) {
        std::this_thread::yield();
    }
    camera->SetFrameHandler(FrameHandler());
    EXPECT_FALSE(inside);
}

// Every family's region is read as the one the camera draws, which the
// plug-in's test matches to the band; one family stands for all here.
TEST(CameraFramesTest, AutoExposureSettlesOnTheRegionWithinItsLimits)
{
    FrameCatcher catcher;
    std::unique_ptr<Camera> camera = MakeCamera("autofunction");
    camera->SetFrameClock(false);
    camera->SetFrameHandler(catcher.Handler());
    camera->SetFromCamera("ExposureTime", 10000.0);
    camera->SetFromCamera("ExposureAuto", "Continuous");
    camera->Find("AcquisitionStart")->RunCommand();
    PlaceRegion(*camera, BrightSpot);
    const double bright = Settle(*camera, 20);
    EXPECT_LT(bright, 8000.0);
    EXPECT_NEAR(128.0, MeanInside(*catcher.Last(), BrightSpot), 6.0);
    PlaceRegion(*camera, DarkSpot);
    EXPECT_GT(Settle(*camera, 20), 5 * bright);
    EXPECT_NEAR(128.0, MeanInside(*catcher.Last(), DarkSpot), 6.0);

    // The limits hold, in the time base's units; a maximum lowered below the
    // settled exposure holds from the next frame.
    camera->SetFromCamera("ExposureAutoTimebase", "100us");
    camera->SetFromCamera("ExposureAutoMax", 300LL);
    EXPECT_DOUBLE_EQ(30000.0, Settle(*camera, 20));
    camera->SetFromCamera("ExposureAutoMax", 250LL);
    EXPECT_DOUBLE_EQ(25000.0, Settle(*camera, 1));
    camera->SetFromCamera("ExposureAutoMin", 200LL);
    PlaceRegion(*camera, BrightSpot);
    EXPECT_DOUBLE_EQ(20000.0, Settle(*camera, 20));
}

} // namespace
