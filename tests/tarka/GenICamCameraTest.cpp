// The GenICam backend over Aravis's fake cameras serving the descriptions of
// cameras/, their images, and one camera through GigE Vision over loopback.

#include "FrameCatcher.h"
#include "GenICam/Connection.h"
#include "ServedCamera.h"
#include "StdFeatureText.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>
#include <arv.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <mutex>
#include <thread>

using namespace KST::TrkAPI;
using namespace KST::TrkAPI::GenICam;

namespace {

using Clock = std::chrono::steady_clock;
// A lost device is found within a second; calls and closing stay well under
// what a network call that waits for a silent device takes.
const std::chrono::milliseconds LossLimit(1000);
const std::chrono::milliseconds CallLimit(500);
const std::chrono::milliseconds CloseLimit(500);
// Long enough for the fake camera to send a frame if it is acquiring.
const std::chrono::milliseconds FrameWait(250);
// A pixel inside the scene's first tile, away from its marks.
const int InsideTile = 100;

// A host's own GLib handler: counts its own messages and any others.
struct HostLog
{
    static constexpr const char* Domain = "Host";
    static void Handle(const gchar* domain, GLogLevelFlags, const gchar*, gpointer log)
    {
        HostLog& counts = *static_cast<HostLog*>(log);
        ++(domain != nullptr && std::string(domain) == Domain ? counts.host : counts.others);
    }
    int host = 0;
    int others = 0;
};

std::unique_ptr<Camera> OpenFamily(const std::string& family)
{
    std::string error;
    std::unique_ptr<Camera> camera =
        Camera::OpenDescription(std::string(TAB_CAMERAS_DIR) + "/" + family + ".xml", &error);
    EXPECT_TRUE(camera) << error;
    return camera;
}

long long Int(const FeaturePtr& feature)
{
    long long value = -1;
    EXPECT_EQ(feature->GetValue(value), 0);
    return value;
}

std::pair<long long, long long> Range(const FeaturePtr& feature)
{
    long long min = -1;
    long long max = -1;
    EXPECT_EQ(feature->GetRange(min, max), 0);
    return {min, max};
}

bool Writable(const FeaturePtr& feature)
{
    bool writable = false;
    EXPECT_EQ(feature->IsWritable(writable), 0);
    return writable;
}

// Records the names it is told of and whether any call came on the thread
// that wrote.
struct RecordingObserver : IFeatureObserver
{
    void FeatureChanged(const FeaturePtr& feature) override
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Names.push_back(FeatureText(feature, &Feature::GetName));
        m_OnWriter = m_OnWriter || std::this_thread::get_id() == m_Writer;
    }
    std::vector<std::string> Names()
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        std::vector<std::string> names;
        names.swap(m_Names);
        return names;
    }

    std::mutex m_Lock;
    std::vector<std::string> m_Names;
    std::thread::id m_Writer = std::this_thread::get_id();
    bool m_OnWriter = false;
};

// The names the observer is told of, once there are count or after a bound.
std::vector<std::string> AwaitNames(RecordingObserver& observer, size_t count)
{
    std::vector<std::string> names;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (names.size() < count && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(Camera::PollPeriod / 5);
        for (const std::string& name : observer.Names()) {
            names.push_back(name);
        }
    }
    return names;
}

} // namespace

TEST(GenICamCamera, ServesTheDescribedFeaturesAndRefusesWhatACameraRefuses)
{
    std::unique_ptr<Camera> camera = OpenFamily("autofunction");
    ASSERT_TRUE(camera);
    FeaturePtr minimum = camera->Find("ExposureAutoMin");
    EXPECT_EQ(FeatureText(minimum, &Feature::GetName), "ExposureAutoMin");
    EXPECT_EQ(FeatureText(minimum, &Feature::GetDisplayName), "Exposure Auto Min");
    EXPECT_EQ(FeatureText(minimum, &Feature::GetCategory), "/AcquisitionControl/ExposureControl");
    // Only what the categories list is a feature, in their order.
    EXPECT_EQ(FeatureText(camera->Features().front(), &Feature::GetName), "DeviceVendorName");
    EXPECT_EQ(camera->Features().size(), 32u);

    // Writes off the range or the grid, or of a feature that is read-only,
    // locked or unavailable, are refused.
    FeaturePtr offset = camera->Find("AutofunctionAOIOffsetX");
    EXPECT_EQ(Range(offset), std::make_pair(0LL, 1296LL));
    EXPECT_EQ(offset->SetValue(650LL), ErrorOffGrid);
    EXPECT_EQ(offset->SetValue(1300LL), ErrorOutOfRange);
    EXPECT_EQ(offset->SetValue(1.0), ErrorWrongType);
    EXPECT_EQ(offset->SetValue(1000LL), 0);
    EXPECT_EQ(Int(offset), 1000);

    // A float without an increment has none to tell.
    double step = 0.0;
    EXPECT_NE(camera->Find("ExposureTime")->GetIncrement(step), 0);
    FeaturePtr sensor = camera->Find("SensorWidth");
    EXPECT_FALSE(Writable(sensor));
    EXPECT_EQ(sensor->SetValue(2592LL), ErrorNotWritable);

    FeaturePtr timebase = camera->Find("ExposureAutoTimebase");
    bool available = true;
    EXPECT_EQ(timebase->IsValueAvailable("2us", available), ErrorInvalidArgument);
    EXPECT_EQ(timebase->SetValue("1us"), ErrorUnavailableEntry);
    EXPECT_EQ(timebase->SetValue("5us"), ErrorInvalidArgument);
    // A new time base converts the limits' range too.
    EXPECT_EQ(timebase->SetValue("100us"), 0);
    EXPECT_EQ(Range(camera->Find("ExposureAutoMax")).second, 100000);
}

// Acquiring locks the image format; frames of the simulated scene come in the
// camera's format while it acquires, none before or after.
TEST(GenICamCamera, AcquiringLocksTheImageFormatAndFramesComeInIt)
{
    std::unique_ptr<Camera> camera = OpenFamily("dsp");
    ASSERT_TRUE(camera);
    FrameCatcher catcher;
    camera->SetFrameHandler(catcher.Handler());
    std::this_thread::sleep_for(FrameWait);
    EXPECT_EQ(0, catcher.Count()) << "frames before acquisition";
    FeaturePtr width = camera->Find("Width");
    ASSERT_EQ(0, width->SetValue(640LL));
    ASSERT_EQ(0, camera->Find("Height")->SetValue(480LL));
    const std::pair<const char*, PixelFormat> formats[] = {{"Mono8", PixelFormat::Mono8},
                                                           {"BayerRG8", PixelFormat::BayerRG8},
                                                           {"Mono16", PixelFormat::Mono16}};
    for (const auto& format : formats) {
        SCOPED_TRACE(format.first);
        ASSERT_EQ(0, camera->Find("PixelFormat")->SetValue(format.first));
        const int before = catcher.Count();
        ASSERT_EQ(0, camera->Find("AcquisitionStart")->RunCommand());
        EXPECT_FALSE(Writable(width));
        EXPECT_EQ(width->SetValue(1024LL), ErrorNotWritable);
        ASSERT_TRUE(catcher.AwaitCount(before + 2));
        ASSERT_EQ(0, camera->Find("AcquisitionStop")->RunCommand());
        EXPECT_TRUE(Writable(width));
        // Images come at the described size: the fake camera's own registers.
        const FramePtr last = catcher.Last();
        EXPECT_EQ(640, last->width);
        EXPECT_EQ(480, last->height);
        EXPECT_EQ(format.second, last->format);
        EXPECT_EQ(last->stride * last->height, last->data.size());
        // The simulated scene, not the fake camera's ramp: neighbours inside
        // a tile are alike.
        const size_t pixel = last->stride / last->width;
        const unsigned char* line = last->data.data() + InsideTile * last->stride;
        EXPECT_EQ(0,
                  std::memcmp(line + InsideTile * pixel, line + (InsideTile + 1) * pixel, pixel));
    }
    // Images already on their way when the camera stopped may still come.
    std::this_thread::sleep_for(FrameWait);
    const int stopped = catcher.Count();
    std::this_thread::sleep_for(2 * FrameWait);
    EXPECT_EQ(stopped, catcher.Count());
    camera->SetFrameHandler(FrameHandler());
}

TEST(GenICamCamera, ObserversHearOfWrittenAndDependentFeaturesFromALibraryThread)
{
    std::unique_ptr<Camera> camera = OpenFamily("dsp");
    ASSERT_TRUE(camera);
    auto* raw = new RecordingObserver;
    IFeatureObserverPtr observer(raw);
    FeaturePtr left = camera->Find("DSPSubregionLeft");
    FeaturePtr right = camera->Find("DSPSubregionRight");
    FeaturePtr top = camera->Find("DSPSubregionTop");
    for (const FeaturePtr& feature : {left, right, top}) {
        ASSERT_EQ(feature->RegisterObserver(observer), 0);
    }
    EXPECT_EQ(left->RegisterObserver(observer), ErrorAlreadyRegistered);

    // The right edge's lower limit follows the left edge; the top stays.
    ASSERT_EQ(left->SetValue(100LL), 0);
    camera->WaitForNotifications();
    EXPECT_EQ(raw->Names(), std::vector<std::string>({"DSPSubregionLeft", "DSPSubregionRight"}));
    // A value written again unchanged is still told.
    ASSERT_EQ(left->SetValue(100LL), 0);
    camera->WaitForNotifications();
    EXPECT_EQ(raw->Names(), std::vector<std::string>({"DSPSubregionLeft"}));
    EXPECT_FALSE(raw->m_OnWriter);

    EXPECT_EQ(right->UnregisterObserver(observer), 0);
    EXPECT_EQ(right->UnregisterObserver(observer), ErrorNotRegistered);
    ASSERT_EQ(right->SetValue(1000LL), 0);
    camera->WaitForNotifications();
    EXPECT_EQ(raw->Names(), std::vector<std::string>({"DSPSubregionLeft"}));
}

TEST(GenICamCamera, UnreadableDescriptionsAreRefusedAndAHostsGLibHandlerKeepsItsMessages)
{
    const std::string broken = testing::TempDir() + "broken-host-camera.xml";
    std::ofstream(broken) << "<RegisterDescription><Integer Name=\"Width\"><Value>x";
    std::vector<std::string> outcomes;
    // The first round's handler comes before the process's first opening,
    // the second's after it.
    std::string error;
    for (int round = 0; round < 2; ++round) {
        HostLog log;
        g_log_set_default_handler(HostLog::Handle, &log);
        testing::internal::CaptureStderr();
        g_log(HostLog::Domain, G_LOG_LEVEL_WARNING, "host warning %d", round);
        EXPECT_FALSE(Camera::OpenDescription(broken, &error));
        EXPECT_FALSE(error.empty());
        std::unique_ptr<Camera> camera = OpenFamily("automode");
        const TrkErrorType refused = camera->Find("AutoModeRegionWidth")->SetValue(3LL);
        g_log(HostLog::Domain, G_LOG_LEVEL_MESSAGE, "host message %d", round);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(log.host, 2);
        EXPECT_EQ(log.others, 0);
        outcomes.push_back(error + " " + std::to_string(refused));
    }
    g_log_set_default_handler(g_log_default_handler, nullptr);
    EXPECT_EQ(outcomes.at(0), outcomes.at(1));
    std::remove(broken.c_str());
    EXPECT_FALSE(Camera::OpenDescription("/nonexistent/camera.xml", &error));
    EXPECT_NE(error.find("/nonexistent/camera.xml"), std::string::npos);
    EXPECT_FALSE(Camera::Open("", &error));
}

// tabcamera's device is shared: what the backend writes, a client through
// Aravis reads, and the other way round, while a second program may only
// read; its frames come through the backend at the described size with the
// region's outline, and auto exposure follows it. Unplugged, it is lost
// within a second.
TEST(GenICamCamera, ServedCameraIsSharedRendersTheSceneAndIsLostWhenUnplugged)
{
    ServedCamera server(TAB_CAMERA_SERVER, FamilyArguments("autofunction"));
    std::string error;
    std::unique_ptr<Camera> camera = server.Open(&error);
    ASSERT_TRUE(camera && camera->Find("AutofunctionAOIOffsetX")) << server.Id() << ": " << error;
    EXPECT_FALSE(camera->IsReadOnly());
    std::unique_ptr<Camera> monitor = server.Open();
    ASSERT_TRUE(monitor && monitor->Find("AutofunctionAOIWidth"));
    EXPECT_TRUE(monitor->IsReadOnly());
    EXPECT_EQ(monitor->Find("AutofunctionAOIWidth")->SetValue(640LL), ErrorReadOnlyAccess);
    EXPECT_EQ(monitor->Find("AcquisitionStart")->RunCommand(), ErrorReadOnlyAccess);
    EXPECT_FALSE(Writable(monitor->Find("AutofunctionAOIWidth")));
    EXPECT_EQ(FeatureText(camera->Find("DeviceVendorName"), &Feature::GetValue), "Aravis");
    ArvCamera* other = arv_camera_new(server.Id().c_str(), nullptr);
    ASSERT_NE(other, nullptr);
    const std::pair<const char*, long long> values[] = {{"AutofunctionAOIWidth", 640},
                                                        {"AutofunctionAOIHeight", 480},
                                                        {"AutofunctionAOIOffsetX", 200},
                                                        {"AutofunctionAOIOffsetY", 500},
                                                        {"Width", 1024},
                                                        {"Height", 768}};
    for (const auto& value : values) {
        EXPECT_EQ(camera->Find(value.first)->SetValue(value.second), 0);
        EXPECT_EQ(arv_camera_get_integer(other, value.first, nullptr), value.second) << value.first;
    }

    // A dim fixed exposure: only the outline is black or white.
    FrameCatcher catcher;
    camera->SetFrameHandler(catcher.Handler());
    FeaturePtr exposure = camera->Find("ExposureTime");
    EXPECT_EQ(camera->Find("ExposureAuto")->SetValue("Off"), 0);
    EXPECT_EQ(exposure->SetValue(2000.0), 0);
    EXPECT_EQ(camera->Find("AcquisitionStart")->RunCommand(), 0);
    ASSERT_TRUE(catcher.AwaitCount(1));
    const FramePtr frame = catcher.Last();
    EXPECT_EQ(frame->width, 1024);
    EXPECT_EQ(frame->height, 768);
    const auto at = [&](int x, int y) { return frame->data[y * frame->stride + x]; };
    for (const std::pair<int, int>& corner : {std::make_pair(200, 500), std::make_pair(839, 979)}) {
        EXPECT_TRUE(at(corner.first, std::min(corner.second, 767)) % 255 == 0);
    }
    EXPECT_FALSE(at(150, 450) % 255 == 0);
    // The acquisition register lives in the device.
    bool acquiring = false;
    EXPECT_EQ(monitor->Find("AcquisitionStatus")->GetValue(acquiring), 0);
    EXPECT_TRUE(acquiring);

    // Onto a bright tile, the exposure drops within a bounded time.
    const std::pair<const char*, long long> brightTile[] = {
        {"AutofunctionAOIWidth", 160},
        {"AutofunctionAOIHeight", 160},
        {"AutofunctionAOIOffsetX", 2 * 216 + 16},
        {"AutofunctionAOIOffsetY", 2 * 216 + 16}};
    for (const auto& value : brightTile) {
        EXPECT_EQ(camera->Find(value.first)->SetValue(value.second), 0) << value.first;
    }
    EXPECT_EQ(exposure->SetValue(10000.0), 0);
    EXPECT_EQ(camera->Find("ExposureAuto")->SetValue("Continuous"), 0);
    double time = 10000.0;
    for (int frames = 0; frames < 30 && time >= 8000.0; ++frames) {
        catcher.AwaitCount(catcher.Count() + 1);
        EXPECT_EQ(exposure->GetValue(time), 0);
    }
    EXPECT_LT(time, 8000.0);
    EXPECT_EQ(camera->Find("AcquisitionStop")->RunCommand(), 0);
    camera->SetFrameHandler(FrameHandler());

    // What the other client writes, the backend's poll finds.
    FeaturePtr offset = camera->Find("AutofunctionAOIOffsetX");
    auto* raw = new RecordingObserver;
    IFeatureObserverPtr observer(raw);
    ASSERT_EQ(offset->RegisterObserver(observer), 0);
    camera->WaitForNotifications();
    raw->Names();
    // GigE Vision lets one client control a camera: the backend's lends it.
    ArvGvDevice* own = ARV_GV_DEVICE(camera->GetConnection()->AravisDevice());
    ArvGvDevice* others = ARV_GV_DEVICE(arv_camera_get_device(other));
    const auto lend = [&](ArvGvDevice* from, ArvGvDevice* to) {
        std::lock_guard<std::timed_mutex> lock(camera->GetConnection()->AravisLock());
        EXPECT_TRUE(arv_gv_device_leave_control(from, nullptr));
        EXPECT_TRUE(arv_gv_device_take_control(to, nullptr));
    };
    lend(own, others);
    arv_camera_set_integer(other, "AutofunctionAOIOffsetX", 200, nullptr);
    EXPECT_EQ(AwaitNames(*raw, 1).size(), 1u);
    EXPECT_EQ(Int(offset), 200);
    arv_camera_set_integer(other, "Width", 800, nullptr);
    EXPECT_EQ(AwaitNames(*raw, 1).size(), 1u);
    EXPECT_EQ(Range(offset).second, 800 - 160);
    lend(others, own);
    g_object_unref(other);
    // The reader beside it isn't lost.
    std::this_thread::sleep_for(LossLimit);
    EXPECT_TRUE(monitor->IsConnected());
    EXPECT_TRUE(camera->IsConnected());

    // Until it is found lost and after, its reads answer what the device
    // answered last, and no call waits long.
    const std::pair<long long, long long> range = Range(offset);
    const long long last = Int(offset);
    const Clock::time_point killed = Clock::now();
    server.Kill();
    Clock::duration longest = Clock::duration::zero();
    while (camera->IsConnected() && Clock::now() - killed < 2 * LossLimit) {
        const Clock::time_point start = Clock::now();
        EXPECT_EQ(Range(offset), range);
        EXPECT_EQ(Int(offset), last);
        longest = std::max(longest, Clock::now() - start);
    }
    EXPECT_FALSE(camera->IsConnected());
    EXPECT_LT(Clock::now() - killed, LossLimit);
    EXPECT_LT(longest, CallLimit);
    EXPECT_EQ(Int(offset), last);
    EXPECT_EQ(offset->SetValue(last), ErrorDeviceLost);
    const Clock::time_point closing = Clock::now();
    camera.reset();
    EXPECT_LT(Clock::now() - closing, CloseLimit);
    long long value = 0;
    EXPECT_EQ(offset->GetValue(value), ErrorClosed);
}
