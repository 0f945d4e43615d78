#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include "FeatureDescription.h"
#include "OtherFeatures.h"
#include <TarkaCPP/Sim/CameraRules.h>

#include <algorithm>
#include <functional>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

const long long SensorWidth = 2592;
const long long SensorHeight = 1944;
const std::vector<std::string> AutoModes = {"Off", "Once", "Continuous"};
// Out of the box the cameras expose automatically and show their region, so
// that the region's effect on the image is seen at once.
const std::string InitialAutoMode = "Continuous";
const std::string ExposureCategory = "/AcquisitionControl/ExposureControl";

// What sets one family of cameras apart from another.
struct Family
{
    FeatureDescriptions exposure;
    FeatureDescriptions region;
    std::function<void(Camera&)> addRules;
};

FeatureDescriptions ImageFeatures()
{
    const std::string c = "/ImageFormatControl";
    return {
        ReadOnly(IntFeature(c, "SensorWidth", SensorWidth, SensorWidth, SensorWidth)),
        ReadOnly(IntFeature(c, "SensorHeight", SensorHeight, SensorHeight, SensorHeight)),
        IntFeature(c, "Width", SensorWidth, 32, SensorWidth, 8),
        IntFeature(c, "Height", SensorHeight, 16, SensorHeight, 2),
        IntFeature(c, "OffsetX", 0, 0, 0, 8),
        IntFeature(c, "OffsetY", 0, 0, 0, 2),
    };
}

void AddImageRules(Camera& camera)
{
    camera.AddRule(KeepInside("OffsetX", "Width", "", "SensorWidth"));
    camera.AddRule(KeepInside("OffsetY", "Height", "", "SensorHeight"));
}

// Exposure in microseconds with floating auto limits kept in order.
FeatureDescriptions FloatExposureFeatures(const std::string& exposure, double limitIncrement)
{
    const std::string c = ExposureCategory;
    return {
        EnumFeature(c, "ExposureMode", {"Timed", "TriggerWidth"}, "Timed"),
        FloatFeature(c, exposure, 15000.0, 41.0, 60000000.0),
        EnumFeature(c, "ExposureAuto", AutoModes, InitialAutoMode),
        FloatFeature(c, "ExposureAutoMin", 41.0, 41.0, 60000000.0, limitIncrement),
        FloatFeature(c, "ExposureAutoMax", 500000.0, 41.0, 60000000.0, limitIncrement),
        IntFeature(c, "ExposureAutoTarget", 50, 0, 100),
    };
}

Family AutofunctionFamily()
{
    const std::string c = ExposureCategory;
    const std::string r = "/AutofunctionControl";
    Family family;
    family.exposure = {
        EnumFeature(c, "ExposureMode", {"Timed", "TriggerWidth"}, "Timed"),
        FloatFeature(c, "ExposureTime", 10000.0, 40.0, 10000000.0),
        EnumFeature(c, "ExposureAuto", AutoModes, InitialAutoMode),
        EnumFeature(c, "ExposureAutoTimebase", {"1us", "10us", "100us", "1ms"}, "10us"),
        IntFeature(c, "ExposureAutoMin", 10, 4, 1000000),
        IntFeature(c, "ExposureAutoMax", 50000, 4, 1000000),
        IntFeature(c, "ExposureAutoTarget", 50, 0, 100),
    };
    family.region = {
        IntFeature(r, "AutofunctionTargetIntensity", 128, 0, 255),
        BoolFeature(r, "AutofunctionAOIEnable", true),
        BoolFeature(r, "AutofunctionAOIShowArea", true),
        IntFeature(r, "AutofunctionAOIOffsetX", 648, 0, SensorWidth, 4),
        IntFeature(r, "AutofunctionAOIOffsetY", 486, 0, SensorHeight, 2),
        IntFeature(r, "AutofunctionAOIWidth", 1296, 64, SensorWidth, 4),
        IntFeature(r, "AutofunctionAOIHeight", 972, 64, SensorHeight, 2),
    };
    family.addRules = [](Camera& camera) {
        // The finest time base can't express the sensor's longest exposures.
        camera.SetEntryAvailable("ExposureAutoTimebase", "1us", false);
        camera.AddRule(LimitsInTimebase("ExposureAutoTimebase", "ExposureAutoMin",
                                        "ExposureAutoMax", "ExposureTime"));
        camera.AddRule(TieLimits("ExposureAutoMin", "ExposureAutoMax"));
        camera.AddRule(KeepInside("AutofunctionAOIOffsetX", "AutofunctionAOIWidth", "", "Width"));
        camera.AddRule(KeepInside("AutofunctionAOIOffsetY", "AutofunctionAOIHeight", "", "Height"));
    };
    return family;
}

Family AutoModeFamily()
{
    const std::string c = ExposureCategory;
    const std::string r = "/AutoModeControl";
    Family family;
    family.exposure = FloatExposureFeatures("ExposureTimeAbs", 1.0);
    family.exposure.push_back(IntFeature(c, "ExposureAutoAdjustTol", 5, 0, 50));
    family.exposure.push_back(IntFeature(c, "ExposureAutoRate", 100, 1, 100));
    family.exposure.push_back(IntFeature(c, "ExposureAutoOutliers", 0, 0, 1000));
    family.region = {
        IntFeature(r, "AutoModeRegionOffsetX", 648, 0, SensorWidth, 8),
        IntFeature(r, "AutoModeRegionOffsetY", 486, 0, SensorHeight, 2),
        IntFeature(r, "AutoModeRegionWidth", 1296, 64, SensorWidth, 8),
        IntFeature(r, "AutoModeRegionHeight", 972, 32, SensorHeight, 2),
    };
    family.addRules = [](Camera& camera) {
        camera.AddRule(TieLimits("ExposureAutoMin", "ExposureAutoMax"));
        camera.AddRule(
            KeepInside("AutoModeRegionOffsetX", "AutoModeRegionWidth", "OffsetX", "Width"));
        camera.AddRule(
            KeepInside("AutoModeRegionOffsetY", "AutoModeRegionHeight", "OffsetY", "Height"));
    };
    return family;
}

Family DspFamily()
{
    const std::string r = "/DSPSubregionControl";
    Family family;
    family.exposure = FloatExposureFeatures("ExposureTime", 0.0);
    family.region = {
        IntFeature(r, "DSPSubregionLeft", SensorWidth / 4, 0, SensorWidth, 2),
        IntFeature(r, "DSPSubregionTop", SensorHeight / 4, 0, SensorHeight, 2),
        IntFeature(r, "DSPSubregionRight", SensorWidth * 3 / 4, 0, SensorWidth, 2),
        IntFeature(r, "DSPSubregionBottom", SensorHeight * 3 / 4, 0, SensorHeight, 2),
    };
    family.addRules = [](Camera& camera) {
        camera.AddRule(TieLimits("ExposureAutoMin", "ExposureAutoMax"));
        camera.AddRule(KeepEdgesApart("DSPSubregionLeft", "DSPSubregionRight", "Width", 8));
        camera.AddRule(KeepEdgesApart("DSPSubregionTop", "DSPSubregionBottom", "Height", 8));
    };
    return family;
}

Family UnsupportedFamily()
{
    Family family;
    family.exposure = FloatExposureFeatures("ExposureTime", 0.0);
    family.addRules = [](Camera& camera) {
        camera.AddRule(TieLimits("ExposureAutoMin", "ExposureAutoMax"));
    };
    return family;
}

struct NamedFamily
{
    const char* name;
    Family (*make)();
};

const NamedFamily Families[] = {{"autofunction", AutofunctionFamily},
                                {"automode", AutoModeFamily},
                                {"dsp", DspFamily},
                                {"unsupported", UnsupportedFamily}};

const NamedFamily* FindFamily(const std::string& name)
{
    for (const NamedFamily& family : Families) {
        if (name == family.name) {
            return &family;
        }
    }
    return nullptr;
}

void InsertBefore(FeatureDescriptions& descriptions, const std::string& category,
                  const FeatureDescriptions& block)
{
    FeatureDescriptions::iterator at = std::find_if(
        descriptions.begin(), descriptions.end(), [&](const FeatureDescription& description) {
            return description.category.compare(0, category.size(), category) == 0;
        });
    descriptions.insert(at, block.begin(), block.end());
}

std::unique_ptr<Camera> Assemble(const Family& family, const FeatureDescriptions& descriptions)
{
    std::unique_ptr<Camera> camera(new Camera);
    AddFeatures(*camera, descriptions);
    AddImageRules(*camera);
    family.addRules(*camera);
    AddAcquisitionSimulation(*camera);
    return camera;
}

// The family's features among the others, where a camera lists them.
std::unique_ptr<Camera> AssembleAmongOthers(const Family& family)
{
    FeatureDescriptions descriptions = OtherFeatures();
    InsertBefore(descriptions, "/ImageFormatControl", ImageFeatures());
    InsertBefore(descriptions, "/LUTControl", family.exposure);
    InsertBefore(descriptions, "/EventControl", family.region);
    return Assemble(family, descriptions);
}

} // namespace

std::unique_ptr<Camera> MakeAutofunctionCamera()
{
    return AssembleAmongOthers(AutofunctionFamily());
}

std::unique_ptr<Camera> MakeAutoModeCamera()
{
    return AssembleAmongOthers(AutoModeFamily());
}

std::unique_ptr<Camera> MakeDspCamera()
{
    return AssembleAmongOthers(DspFamily());
}

std::unique_ptr<Camera> MakeUnsupportedCamera()
{
    return AssembleAmongOthers(UnsupportedFamily());
}

std::vector<std::string> CameraNames()
{
    std::vector<std::string> names;
    for (const NamedFamily& family : Families) {
        names.push_back(family.name);
    }
    return names;
}

std::unique_ptr<Camera> MakeCamera(const std::string& name)
{
    const NamedFamily* family = FindFamily(name);
    return family ? AssembleAmongOthers(family->make()) : nullptr;
}

std::unique_ptr<Camera> MakeCamera(const std::string& name, int otherFeatures)
{
    const NamedFamily* named = FindFamily(name);
    if (!named) {
        return nullptr;
    }
    Family family = named->make();
    FeatureDescriptions descriptions = FillerFeatures(otherFeatures);
    for (const FeatureDescriptions& block : {ImageFeatures(), family.exposure, family.region}) {
        descriptions.insert(descriptions.end(), block.begin(), block.end());
    }
    return Assemble(family, descriptions);
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
