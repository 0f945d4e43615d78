#include "FeatureText.h"

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

std::pair<long long, long long> RangeOf(const Camera& camera, const std::string& name)
{
    std::pair<long long, long long> range(-1, -1);
    camera.Find(name)->GetRange(range.first, range.second);
    return range;
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

TEST(ReadyMadeCamerasTest, RegionsStayInsideTheImage)
{
    std::unique_ptr<Camera> autofunction = MakeAutofunctionCamera();
    EXPECT_EQ(2592 - 1296, RangeOf(*autofunction, "AutofunctionAOIOffsetX").second);
    EXPECT_NE(0, autofunction->Find("AutofunctionAOIWidth")->SetValue(2592LL));
    EXPECT_EQ(0, autofunction->Find("Width")->SetValue(1600LL));
    EXPECT_EQ(1600 - 648, autofunction->IntValue("AutofunctionAOIWidth"));
    EXPECT_EQ(0, autofunction->Find("OffsetX")->SetValue(992LL));
    EXPECT_EQ(2592 - 992, RangeOf(*autofunction, "Width").second);

    // The auto mode region lies in sensor coordinates, its offset's grid
    // counting from the image offset.
    std::unique_ptr<Camera> automode = MakeAutoModeCamera();
    EXPECT_EQ(0, automode->Find("Width")->SetValue(1024LL));
    EXPECT_EQ(0, automode->Find("OffsetX")->SetValue(800LL));
    EXPECT_EQ(800, automode->IntValue("AutoModeRegionOffsetX"));
    EXPECT_EQ(0, automode->Find("AutoModeRegionWidth")->SetValue(512LL));
    EXPECT_EQ(std::make_pair(800LL, 800LL + 1024 - 512),
              RangeOf(*automode, "AutoModeRegionOffsetX"));
    EXPECT_EQ(0, automode->Find("AutoModeRegionOffsetX")->SetValue(808LL));
    EXPECT_NE(0, automode->Find("AutoModeRegionOffsetX")->SetValue(804LL));

    std::unique_ptr<Camera> dsp = MakeDspCamera();
    EXPECT_EQ(0, dsp->Find("DSPSubregionLeft")->SetValue(1000LL));
    EXPECT_NE(0, dsp->Find("DSPSubregionRight")->SetValue(1000LL));
    EXPECT_EQ(0, dsp->Find("DSPSubregionRight")->SetValue(1200LL));
    EXPECT_EQ(1192, RangeOf(*dsp, "DSPSubregionLeft").second);
    EXPECT_EQ(0, dsp->Find("Height")->SetValue(600LL));
    EXPECT_EQ(600, dsp->IntValue("DSPSubregionBottom"));
}

TEST(ReadyMadeCamerasTest, ExposureLimitsFollowTheTimebaseAndEachOther)
{
    std::unique_ptr<Camera> camera = MakeAutofunctionCamera();
    FeaturePtr timebase = camera->Find("ExposureAutoTimebase");
    EXPECT_NE(0, timebase->SetValue("1us"));
    EXPECT_EQ(50000, RangeOf(*camera, "ExposureAutoMin").second);
    EXPECT_EQ(10, RangeOf(*camera, "ExposureAutoMax").first);

    EXPECT_EQ(0, timebase->SetValue("100us"));
    EXPECT_EQ(1, camera->IntValue("ExposureAutoMin"));
    EXPECT_EQ(5000, camera->IntValue("ExposureAutoMax"));
    EXPECT_EQ(100000, RangeOf(*camera, "ExposureAutoMax").second);
    EXPECT_EQ(0, timebase->SetValue("10us"));
    EXPECT_EQ(50000, camera->IntValue("ExposureAutoMax"));

    std::unique_ptr<Camera> automode = MakeAutoModeCamera();
    EXPECT_EQ(0, automode->Find("ExposureAutoMax")->SetValue(1000.0));
    EXPECT_NE(0, automode->Find("ExposureAutoMin")->SetValue(1001.0));
    EXPECT_NE(0, automode->Find("ExposureAutoMin")->SetValue(100.5));
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
