#include "StdFeatureText.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace KST::TrkAPI;
using namespace KST::TrkAPI::Sim;

namespace {

// The names of the camera's features, in its order.
std::vector<std::string> NamesOf(const Camera& camera)
{
    std::vector<std::string> names;
    for (const FeaturePtr& feature : camera.Features()) {
        names.push_back(FeatureText(feature));
    }
    return names;
}

size_t PositionOf(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) - names.begin();
}

TEST(ReadyMadeCamerasTest, FamiliesSitAmongHundredsOfOtherFeatures)
{
    const std::pair<std::string, std::string> regionOf[] = {
        {"autofunction", "AutofunctionAOIShowArea"},
        {"automode", "AutoModeRegionHeight"},
        {"dsp", "DSPSubregionBottom"}};
    for (const auto& family : regionOf) {
        std::unique_ptr<Camera> camera = MakeCamera(family.first);
        ASSERT_TRUE(camera) << family.first;
        std::vector<std::string> names = NamesOf(*camera);
        size_t region = PositionOf(names, family.second);
        EXPECT_GT(region, 100u) << family.first;
        EXPECT_LT(region + 100, names.size()) << family.first;
        EXPECT_TRUE(camera->Has("Width") && camera->Has("ExposureAutoMin")) << family.first;
    }
    EXPECT_EQ(4u, CameraNames().size());
    EXPECT_FALSE(MakeCamera("nonexistent"));
    EXPECT_FALSE(MakeCamera("nonexistent", 50));

    char display[64] = {};
    unsigned int length = sizeof display;
    ASSERT_EQ(0, MakeUnsupportedCamera()->Find("ExposureAutoMin")->GetDisplayName(display, length));
    EXPECT_STREQ("Exposure Auto Min", display);

    for (int count : {50, 500, 5000}) {
        std::vector<std::string> names = NamesOf(*MakeCamera("dsp", count));
        EXPECT_EQ(static_cast<size_t>(count), PositionOf(names, "SensorWidth"));
        EXPECT_LT(PositionOf(names, "SensorWidth"), PositionOf(names, "DSPSubregionLeft"));
        EXPECT_LT(PositionOf(names, "DSPSubregionLeft"), names.size());
    }
}

TEST(ReadyMadeCamerasTest, AcquisitionLocksTheImageAndMovesTheAutoExposure)
{
    std::unique_ptr<Camera> camera = MakeAutoModeCamera();
    camera->SetFrameClock(false);
    FeaturePtr width = camera->Find("Width");
    EXPECT_EQ(0, camera->Find("ExposureAuto")->SetValue("Continuous"));
    EXPECT_EQ(0, camera->Find("ExposureAutoMax")->SetValue(2000.0));
    double before = camera->FloatValue("ExposureTimeAbs");
    EXPECT_EQ(0, camera->Find("AcquisitionStart")->RunCommand());
    EXPECT_TRUE(camera->BoolValue("AcquisitionStatus"));
    EXPECT_NE(0, width->SetValue(1024LL));

    EXPECT_TRUE(camera->ProduceFrame());
    double during = camera->FloatValue("ExposureTimeAbs");
    EXPECT_NE(before, during);
    EXPECT_GE(during, camera->FloatValue("ExposureAutoMin"));
    EXPECT_LE(during, 2000.0);

    EXPECT_EQ(0, camera->Find("AcquisitionStop")->RunCommand());
    EXPECT_EQ(0, width->SetValue(1024LL));
}

} // namespace
