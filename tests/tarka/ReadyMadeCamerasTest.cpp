#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

using namespace KST::TrkAPI;
using namespace KST::TrkAPI::Sim;

namespace {

std::vector<std::string> NamesOf(const Camera& camera)
{
    std::vector<std::string> names;
    for (const FeaturePtr& feature : camera.Features()) {
        unsigned int length = 0;
        feature->GetName(nullptr, length);
        std::string buffer(length, '\0');
        feature->GetName(&buffer[0], length);
        names.push_back(buffer.c_str());
    }
    return names;
}

long long MaxOf(const Camera& camera, const std::string& name)
{
    long long min = -1;
    long long max = -1;
    camera.Find(name)->GetRange(min, max);
    return max;
}

long long MinOf(const Camera& camera, const std::string& name)
{
    long long min = -1;
    long long max = -1;
    camera.Find(name)->GetRange(min, max);
    return min;
}

TEST(ReadyMadeCamerasTest, FamiliesSitAmongHundredsOfOtherFeatures)
{
    const std::vector<std::pair<std::string, std::string>> regionOf = {
        {"autofunction", "AutofunctionAOIHeight"},
        {"automode", "AutoModeRegionHeight"},
        {"dsp", "DSPSubregionBottom"}};
    for (const auto& family : regionOf) {
        std::unique_ptr<Camera> camera = MakeCamera(family.first);
        ASSERT_TRUE(camera) << family.first;
        std::vector<std::string> names = NamesOf(*camera);
        EXPECT_GT(names.size(), 250u);
        size_t region = std::find(names.begin(), names.end(), family.second) - names.begin();
        EXPECT_GT(region, 100u) << family.first;
        EXPECT_LT(region, names.size() - 100) << family.first;
        for (const char* common : {"Width", "Height", "ExposureAutoMin", "ExposureAutoMax"}) {
            EXPECT_TRUE(camera->Has(common)) << family.first << " " << common;
        }
    }
    EXPECT_TRUE(MakeAutofunctionCamera()->Has("AutofunctionAOIShowArea"));
    EXPECT_TRUE(MakeAutoModeCamera()->Has("ExposureTimeAbs"));

    std::unique_ptr<Camera> unsupported = MakeUnsupportedCamera();
    for (const std::string& name : NamesOf(*unsupported)) {
        EXPECT_EQ(std::string::npos, name.find("Region")) << name;
        EXPECT_EQ(std::string::npos, name.find("AOI")) << name;
    }
    EXPECT_TRUE(unsupported->Has("ExposureTime"));
    EXPECT_FALSE(MakeCamera("nonexistent"));
    EXPECT_EQ(4u, CameraNames().size());

    char display[64] = {};
    unsigned int length = sizeof display;
    ASSERT_EQ(0, unsupported->Find("ExposureAutoMin")->GetDisplayName(display, length));
    EXPECT_STREQ("Exposure Auto Min", display);
}

TEST(ReadyMadeCamerasTest, BenchmarkCamerasHaveExactlyTheFillerAsked)
{
    for (int count : {50, 500, 5000}) {
        std::unique_ptr<Camera> camera = MakeCamera("dsp", count);
        std::vector<std::string> names = NamesOf(*camera);
        size_t region = std::find(names.begin(), names.end(), "DSPSubregionLeft") - names.begin();
        size_t image = std::find(names.begin(), names.end(), "SensorWidth") - names.begin();
        EXPECT_EQ(static_cast<size_t>(count), image);
        EXPECT_LT(image, region);
        EXPECT_LT(region, names.size());
    }
    EXPECT_FALSE(MakeCamera("nonexistent", 50));
}

TEST(ReadyMadeCamerasTest, AutofunctionRegionStaysInsideTheImage)
{
    std::unique_ptr<Camera> camera = MakeAutofunctionCamera();
    EXPECT_EQ(2592 - 1296, MaxOf(*camera, "AutofunctionAOIOffsetX"));
    EXPECT_EQ(2592 - 648, MaxOf(*camera, "AutofunctionAOIWidth"));
    EXPECT_NE(0, camera->Find("AutofunctionAOIOffsetX")->SetValue(650LL));
    EXPECT_NE(0, camera->Find("AutofunctionAOIWidth")->SetValue(2592LL));

    EXPECT_EQ(0, camera->Find("Width")->SetValue(1600LL));
    EXPECT_EQ(1600 - 648, camera->IntValue("AutofunctionAOIWidth"));
    EXPECT_EQ(648, camera->IntValue("AutofunctionAOIOffsetX"));
    EXPECT_EQ(648, MaxOf(*camera, "AutofunctionAOIOffsetX"));
    EXPECT_EQ(0, camera->Find("OffsetX")->SetValue(992LL));
    EXPECT_EQ(992, MaxOf(*camera, "OffsetX"));
    EXPECT_EQ(2592 - 992, MaxOf(*camera, "Width"));
}

TEST(ReadyMadeCamerasTest, AutoModeRegionLiesInsideTheOffsetImage)
{
    std::unique_ptr<Camera> camera = MakeAutoModeCamera();
    EXPECT_EQ(0, camera->Find("Width")->SetValue(1024LL));
    EXPECT_EQ(1024 - 648, camera->IntValue("AutoModeRegionWidth"));
    EXPECT_EQ(0, camera->Find("OffsetX")->SetValue(800LL));
    EXPECT_EQ(800, MinOf(*camera, "AutoModeRegionOffsetX"));
    EXPECT_EQ(800, camera->IntValue("AutoModeRegionOffsetX"));
    EXPECT_EQ(0, camera->Find("AutoModeRegionWidth")->SetValue(512LL));
    EXPECT_EQ(800 + 1024 - 512, MaxOf(*camera, "AutoModeRegionOffsetX"));
    // The offset's grid counts from the image offset.
    EXPECT_EQ(0, camera->Find("AutoModeRegionOffsetX")->SetValue(808LL));
    EXPECT_NE(0, camera->Find("AutoModeRegionOffsetX")->SetValue(804LL));
}

TEST(ReadyMadeCamerasTest, DspEdgesStayApartAndInsideTheImage)
{
    std::unique_ptr<Camera> camera = MakeDspCamera();
    EXPECT_EQ(0, camera->Find("DSPSubregionLeft")->SetValue(1000LL));
    EXPECT_EQ(1008, MinOf(*camera, "DSPSubregionRight"));
    EXPECT_NE(0, camera->Find("DSPSubregionRight")->SetValue(1000LL));
    EXPECT_EQ(0, camera->Find("DSPSubregionRight")->SetValue(1200LL));
    EXPECT_EQ(1192, MaxOf(*camera, "DSPSubregionLeft"));

    EXPECT_EQ(0, camera->Find("Height")->SetValue(600LL));
    EXPECT_EQ(600, camera->IntValue("DSPSubregionBottom"));
    EXPECT_EQ(600, MaxOf(*camera, "DSPSubregionBottom"));
}

TEST(ReadyMadeCamerasTest, ExposureLimitsFollowTheTimebaseAndEachOther)
{
    std::unique_ptr<Camera> camera = MakeAutofunctionCamera();
    FeaturePtr timebase = camera->Find("ExposureAutoTimebase");
    bool available = true;
    EXPECT_EQ(0, timebase->IsValueAvailable("1us", available));
    EXPECT_FALSE(available);
    EXPECT_NE(0, timebase->SetValue("1us"));
    EXPECT_EQ(50000, MaxOf(*camera, "ExposureAutoMin"));
    EXPECT_EQ(10, MinOf(*camera, "ExposureAutoMax"));

    EXPECT_EQ(0, timebase->SetValue("100us"));
    EXPECT_EQ(1, camera->IntValue("ExposureAutoMin"));
    EXPECT_EQ(5000, camera->IntValue("ExposureAutoMax"));
    EXPECT_EQ(100000, MaxOf(*camera, "ExposureAutoMax"));
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
    FeaturePtr width = camera->Find("Width");
    EXPECT_EQ(0, camera->Find("ExposureAuto")->SetValue("Continuous"));
    EXPECT_EQ(0, camera->Find("ExposureAutoMax")->SetValue(2000.0));
    double before = camera->FloatValue("ExposureTimeAbs");
    EXPECT_EQ(0, camera->Find("AcquisitionStart")->RunCommand());
    EXPECT_TRUE(camera->BoolValue("AcquisitionStatus"));
    EXPECT_NE(0, width->SetValue(1024LL));

    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    double during = camera->FloatValue("ExposureTimeAbs");
    EXPECT_NE(before, during);
    EXPECT_GE(during, camera->FloatValue("ExposureAutoMin"));
    EXPECT_LE(during, 2000.0);

    EXPECT_EQ(0, camera->Find("AcquisitionStop")->RunCommand());
    EXPECT_EQ(0, width->SetValue(1024LL));
}

} // namespace
