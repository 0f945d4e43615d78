#include "StdFeatureText.h"

#include <TarkaCPP/Sim/CameraRules.h>
#include <TarkaCPP/Sim/SimCamera.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

using namespace KST::TrkAPI;
using namespace KST::TrkAPI::Sim;

namespace {

// Long enough that an unregistration that doesn't wait returns before the call.
const std::chrono::milliseconds SlowCall(100);

// Records the names it is told of, read once the notifications are
// delivered; an optional action runs inside the call.
struct RecordingObserver : IFeatureObserver
{
    void FeatureChanged(const FeaturePtr& feature) override
    {
        if (m_Action) {
            m_Action(feature);
        }
        m_Names.push_back(FeatureText(feature));
    }

    std::function<void(const FeaturePtr&)> m_Action;
    std::vector<std::string> m_Names;
};

struct Observed
{
    RecordingObserver* raw = new RecordingObserver;
    IFeatureObserverPtr ptr{raw};
};

// A small camera with numbers, and a region tied to the image width.
class SimCameraTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_Camera->AddInteger("Width", 640, 16, 1024, 8);
        m_Camera->AddInteger("RegionOffsetX", 0, 0, 0, 4);
        m_Camera->AddInteger("RegionWidth", 320, 32, 640, 4);
        m_Camera->AddFloat("Gamma", 1.0, 0.5, 2.0);
        m_Camera->AddRule(KeepInside("RegionOffsetX", "RegionWidth", "", "Width"));
    }

    FeaturePtr F(const std::string& name) { return m_Camera->Find(name); }

    std::unique_ptr<Camera> m_Camera{new Camera};
};

TEST_F(SimCameraTest, DependentLimitsFollowEveryWriteAndAreNotifiedFromAnotherThread)
{
    Observed width;
    Observed offset;
    std::thread::id notifier;
    // Reading the feature from inside the callback must not deadlock.
    offset.raw->m_Action = [&](const FeaturePtr& feature) {
        long long value = 0;
        feature->GetValue(value);
        notifier = std::this_thread::get_id();
    };
    ASSERT_EQ(0, F("Width")->RegisterObserver(width.ptr));
    ASSERT_EQ(0, F("RegionOffsetX")->RegisterObserver(offset.ptr));
    long long min = -1;
    long long max = -1;
    ASSERT_EQ(0, F("RegionOffsetX")->GetRange(min, max));
    EXPECT_EQ(320, max);
    EXPECT_EQ(0, F("RegionOffsetX")->SetValue(300LL));
    EXPECT_NE(0, F("RegionWidth")->SetValue(344LL));
    m_Camera->WaitForNotifications();
    offset.raw->m_Names.clear();

    // A smaller image pushes the region back inside, the size first, onto
    // the grid below the new maximum; a refused write notifies nobody, an
    // unchanged value written is notified.
    EXPECT_EQ(0, F("Width")->SetValue(336LL));
    EXPECT_NE(0, F("Width")->SetValue(337LL));
    EXPECT_EQ(0, F("Width")->SetValue(336LL));
    EXPECT_EQ(36, m_Camera->IntValue("RegionWidth"));
    EXPECT_EQ(300, m_Camera->IntValue("RegionOffsetX"));
    m_Camera->SetFromCamera("Width", 64);
    EXPECT_EQ(32, m_Camera->IntValue("RegionOffsetX"));
    m_Camera->WaitForNotifications();
    EXPECT_EQ(3u, width.raw->m_Names.size());
    EXPECT_EQ(std::vector<std::string>(2, "RegionOffsetX"), offset.raw->m_Names);
    EXPECT_NE(std::this_thread::get_id(), notifier);
    EXPECT_EQ(0, F("Width")->UnregisterObserver(width.ptr));
    EXPECT_EQ(1, width.ptr.use_count());

    // Features stay usable after the camera.
    FeaturePtr region = F("RegionOffsetX");
    m_Camera.reset();
    EXPECT_EQ(0, region->SetValue(4LL));
    long long value = 0;
    EXPECT_EQ(0, region->GetValue(value));
    EXPECT_EQ(4, value);
    EXPECT_EQ(0, region->UnregisterObserver(offset.ptr));
}

TEST_F(SimCameraTest, UnregisterWaitsForTheCallInProgressUnlessFromInsideIt)
{
    std::atomic<bool> inside(false);
    std::atomic<bool> finished(false);
    Observed slow;
    slow.raw->m_Action = [&](const FeaturePtr&) {
        inside = true;
        std::this_thread::sleep_for(SlowCall);
        finished = true;
    };
    ASSERT_EQ(0, F("Gamma")->RegisterObserver(slow.ptr));
    m_Camera->SetFromCamera("Gamma", 1.5);
    while (!inside) {
        std::this_thread::yield();
    }
    EXPECT_EQ(0, F("Gamma")->UnregisterObserver(slow.ptr));
    EXPECT_TRUE(finished);

    Observed selfRemoving;
    selfRemoving.raw->m_Action = [&](const FeaturePtr& feature) {
        EXPECT_EQ(0, feature->UnregisterObserver(selfRemoving.ptr));
    };
    ASSERT_EQ(0, F("Gamma")->RegisterObserver(selfRemoving.ptr));
    m_Camera->SetFromCamera("Gamma", 1.75);
    m_Camera->SetFromCamera("Gamma", 2.0);
    m_Camera->WaitForNotifications();
    EXPECT_EQ(1u, selfRemoving.raw->m_Names.size());
    EXPECT_EQ(0, m_Camera->ObserverCount("Gamma"));
}

} // namespace
