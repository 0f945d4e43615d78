#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
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
    bool operator==(const Rect& other) const
    {
        return x == other.x && y == other.y && width == other.width && height == other.height;
    }
};

const Rect BrightSpot = {2 * Tile + 16, 2 * Tile + 16, 160, 160};
const Rect DarkSpot = {3 * Tile + 16, 2 * Tile + 16, 160, 160};

// Keeps the last frame and counts them all.
struct FrameCatcher
{
    FrameHandler Handler()
    {
        return [this](const FramePtr& frame) {
            std::lock_guard<std::mutex> guard(lock);
            last = frame;
            ++count;
        };
    }
    FramePtr Last()
    {
        std::lock_guard<std::mutex> guard(lock);
        return last;
    }
    int Count()
    {
        std::lock_guard<std::mutex> guard(lock);
        return count;
    }

    std::mutex lock;
    FramePtr last;
    int count = 0;
};

// Writes the region in the family's own terms, from the image's corner on so
// that no old value limits a new one; imageX is where the image starts on the
// sensor.
void PlaceRegion(Camera& camera, const std::string& family, const Rect& r, int imageX = 0)
{
    const bool edges = family == "dsp";
    const std::string prefix = edges                      ? "DSPSubregion"
                               : family == "autofunction" ? "AutofunctionAOI"
                                                          : "AutoModeRegion";
    const std::string x = prefix + (edges ? "Left" : "OffsetX");
    const std::string y = prefix + (edges ? "Top" : "OffsetY");
    camera.SetFromCamera(x, imageX);
    camera.SetFromCamera(y, 0);
    camera.SetFromCamera(prefix + (edges ? "Right" : "Width"), r.width + (edges ? r.x : 0));
    camera.SetFromCamera(prefix + (edges ? "Bottom" : "Height"), r.height + (edges ? r.y : 0));
    camera.SetFromCamera(x, r.x + imageX);
    camera.SetFromCamera(y, r.y);
}

std::string ExposureName(const Camera& camera)
{
    return camera.Has("ExposureTime") ? "ExposureTime" : "ExposureTimeAbs";
}

// A stepped camera of the family with automatic exposure on, acquiring.
std::unique_ptr<Camera> SteppedCamera(const std::string& family, FrameCatcher& catcher)
{
    std::unique_ptr<Camera> camera = MakeCamera(family);
    camera->SetFrameClock(false);
    camera->SetFrameHandler(catcher.Handler());
    camera->SetFromCamera(ExposureName(*camera), 10000.0);
    camera->SetFromCamera("ExposureAuto", "Continuous");
    camera->Find("AcquisitionStart")->RunCommand();
    return camera;
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
    return camera.FloatValue(ExposureName(camera));
}

// The bounds of the pixels at black or full white, which only the outline
// has at a low exposure.
Rect ExtremeBounds(const Frame& frame)
{
    int left = frame.width, top = frame.height, right = -1, bottom = -1;
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            unsigned char value = frame.data[y * frame.stride + x];
            if (value == 0 || value == 255) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return right < 0 ? Rect{0, 0, 0, 0} : Rect{left, top, right - left + 1, bottom - top + 1};
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
    held.clear();
    frame.reset();

    camera->Find("AcquisitionStop")->RunCommand();
    int count = catcher.Count();
    EXPECT_FALSE(camera->ProduceFrame());
    EXPECT_EQ(count, catcher.Count());
}

TEST(CameraFramesTest, AHandlerChangeWaitsForTheCallInProgress)
{
    std::unique_ptr<Camera> camera = MakeCamera("dsp");
    camera->Find("Width")->SetValue(256LL);
    camera->Find("Height")->SetValue(192LL);
    std::atomic<int> calls(0);
    std::atomic<bool> inside(false);
    camera->SetFrameHandler([&](const FramePtr&) {
        inside = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ++calls;
        inside = false;
    });
    camera->Find("AcquisitionStart")->RunCommand();
    std::chrono::steady_clock::time_point limit =
        std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (calls < 2 && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_GE(calls, 2);
    while (!inside && std::chrono::steady_clock::now() < limit) {
        std::this_thread::yield();
    }
    camera->SetFrameHandler(FrameHandler());
    EXPECT_FALSE(inside);
}

TEST(CameraFramesTest, AutoExposureSettlesOnTheRegionOfEachFamily)
{
    for (const std::string family : {"autofunction", "automode", "dsp"}) {
        SCOPED_TRACE(family);
        FrameCatcher catcher;
        std::unique_ptr<Camera> camera = SteppedCamera(family, catcher);
        PlaceRegion(*camera, family, BrightSpot);
        double bright = Settle(*camera, 20);
        EXPECT_LT(bright, 8000.0);
        EXPECT_NEAR(128.0, MeanInside(*catcher.Last(), BrightSpot), 6.0);

        PlaceRegion(*camera, family, DarkSpot);
        double dark = Settle(*camera, 20);
        EXPECT_GT(dark, 5 * bright);
        EXPECT_NEAR(128.0, MeanInside(*catcher.Last(), DarkSpot), 6.0);
    }

    // The limits hold, in the time base's units.
    FrameCatcher catcher;
    std::unique_ptr<Camera> camera = SteppedCamera("autofunction", catcher);
    camera->SetFromCamera("ExposureAutoTimebase", "100us");
    camera->SetFromCamera("ExposureAutoMax", 300LL);
    PlaceRegion(*camera, "autofunction", DarkSpot);
    EXPECT_DOUBLE_EQ(30000.0, Settle(*camera, 20));
    camera->SetFromCamera("ExposureAutoMin", 200LL);
    PlaceRegion(*camera, "autofunction", BrightSpot);
    EXPECT_DOUBLE_EQ(20000.0, Settle(*camera, 20));
}

TEST(CameraFramesTest, WithTheRegionOffTheWholeImageDecides)
{
    FrameCatcher catcher;
    std::unique_ptr<Camera> camera = SteppedCamera("autofunction", catcher);
    camera->SetFromCamera("AutofunctionAOIEnable", false);
    std::vector<double> settled;
    for (const Rect& spot : {BrightSpot, DarkSpot}) {
        camera->SetFromCamera("ExposureTime", 10000.0);
        PlaceRegion(*camera, "autofunction", spot);
        settled.push_back(Settle(*camera, 20));
    }
    EXPECT_EQ(settled[0], settled[1]);
    const Frame& frame = *catcher.Last();
    EXPECT_NEAR(128.0, MeanInside(frame, Rect{0, 0, frame.width, frame.height}), 8.0);

    camera->SetFromCamera("AutofunctionAOIEnable", true);
    EXPECT_GT(Settle(*camera, 20), settled[0] * 2);
}

TEST(CameraFramesTest, TheOutlineFollowsTheRegion)
{
    const Rect first = {400, 500, 320, 240};
    const Rect second = {1200, 800, 480, 360};
    for (const std::string family : {"autofunction", "automode", "dsp"}) {
        SCOPED_TRACE(family);
        FrameCatcher catcher;
        std::unique_ptr<Camera> camera = SteppedCamera(family, catcher);
        camera->SetFromCamera("ExposureAuto", "Off");
        camera->SetFromCamera(ExposureName(*camera), 9000.0);
        int imageX = 0;
        if (family == "automode") {
            // This family counts its region on the sensor, the image's offset included.
            camera->Find("AcquisitionStop")->RunCommand();
            camera->SetFromCamera("Width", 2000LL);
            camera->SetFromCamera("OffsetX", 96LL);
            camera->Find("AcquisitionStart")->RunCommand();
            imageX = 96;
        }
        if (family == "autofunction") {
            camera->SetFromCamera("AutofunctionAOIShowArea", false);
            PlaceRegion(*camera, family, first);
            camera->ProduceFrame();
            EXPECT_EQ(0, ExtremeBounds(*catcher.Last()).width) << "drawn with Show Area off";
            camera->SetFromCamera("AutofunctionAOIShowArea", true);
        }
        for (const Rect& region : {first, second}) {
            PlaceRegion(*camera, family, region, imageX);
            camera->ProduceFrame();
            EXPECT_EQ(region, ExtremeBounds(*catcher.Last()));
        }
    }
}

} // namespace

TEST(CameraFramesTest, AutoExposureHoldsItsLimitsEveryFrameAndOnceEnds)
{
    FrameCatcher catcher;
    std::unique_ptr<Camera> camera = SteppedCamera("autofunction", catcher);
    PlaceRegion(*camera, "autofunction", BrightSpot);
    const double settled = Settle(*camera, 20);
    // Settled within tolerance, a maximum below the exposure holds at once.
    const long long lowered = static_cast<long long>(settled / 10 / 2);
    camera->SetFromCamera("ExposureAutoMax", lowered);
    EXPECT_DOUBLE_EQ(lowered * 10.0, Settle(*camera, 1));

    // "Once" ends when pinned at a limit, and when the target is reached;
    // the level never overshoots the target on the way.
    struct Case
    {
        Rect spot;
        long long max;
    };
    for (const Case& c :
         {Case{DarkSpot, lowered}, Case{BrightSpot, 50000}, Case{DarkSpot, 50000}}) {
        camera->SetFromCamera("ExposureAutoMax", c.max);
        camera->SetFromCamera("ExposureAuto", "Once");
        PlaceRegion(*camera, "autofunction", c.spot);
        double side = 0.0;
        for (int frame = 0; frame < 30 && camera->TextValue("ExposureAuto") == "Once"; ++frame) {
            Settle(*camera, 1);
            const double offTarget = MeanInside(*catcher.Last(), c.spot) - 128.0;
            side = frame == 0 ? (offTarget < 0.0 ? -1.0 : 1.0) : side;
            EXPECT_GE(offTarget * side, -6.0) << "overshoot at frame " << frame;
        }
        EXPECT_EQ("Off", camera->TextValue("ExposureAuto"));
    }
}
