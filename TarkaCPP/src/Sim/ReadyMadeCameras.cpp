#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include "FeatureSpec.h"
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
const std::string ExposureCategory = "/AcquisitionControl/ExposureControl";

// What sets one family of cameras apart from another.
struct Family
{
    FeatureSpecs exposure;
    FeatureSpecs region;
    std::function<void(Camera&)> addRules;
};

FeatureSpecs ImageFeatures()
{
    const std::string c = "/ImageFormatControl";
    return {
        ReadOnly(IntSpec(c, "SensorWidth", SensorWidth, SensorWidth, SensorWidth)),
        ReadOnly(IntSpec(c, "SensorHeight", SensorHeight, SensorHeight, SensorHeight)),
        IntSpec(c, "Width", SensorWidth, 32, SensorWidth, 8),
        IntSpec(c, "Height", SensorHeight, 16, SensorHeight, 2),
        IntSpec(c, "OffsetX", 0, 0, 0, 8),
        IntSpec(c, "OffsetY", 0, 0, 0, 2),
    };
}

void AddImageRules(Camera& camera)
{
    camera.AddRule(KeepInside("OffsetX", "Width", "", "SensorWidth"));
    camera.AddRule(KeepInside("OffsetY", "Height", "", "SensorHeight"));
}

// Exposure in microseconds with floating auto limits kept in order.
FeatureSpecs FloatExposureFeatures(const std::string& exposure, double limitIncrement)
{
    const std::string c = ExposureCategory;
    return {
        EnumSpec(c, "ExposureMode", {"Timed", "TriggerWidth"}, "Timed"),
        FloatSpec(c, exposure, 15000.0, 41.0, 60000000.0),
        EnumSpec(c, "ExposureAuto", AutoModes, "Off"),
        FloatSpec(c, "ExposureAutoMin", 41.0, 41.0, 60000000.0, limitIncrement),
        FloatSpec(c, "ExposureAutoMax", 500000.0, 41.0, 60000000.0, limitIncrement),
        IntSpec(c, "ExposureAutoTarget", 50, 0, 100),
    };
}

Family AutofunctionFamily()
{
    const std::string c = ExposureCategory;
    const std::string r = "/AutofunctionControl";
    Family family;
    family.exposure = {
        EnumSpec(c, "ExposureMode", {"Timed", "TriggerWidth"}, "Timed"),
        FloatSpec(c, "ExposureTime", 10000.0, 40.0, 10000000.0),
        EnumSpec(c, "ExposureAuto", AutoModes, "Off"),
        EnumSpec(c, "ExposureAutoTimebase", {"1us", "10us", "100us", "1ms"}, "10us"),
        IntSpec(c, "ExposureAutoMin", 10, 4, 1000000),
        IntSpec(c, "ExposureAutoMax", 50000, 4, 1000000),
        IntSpec(c, "ExposureAutoTarget", 50, 0, 100),
    };
    family.region = {
        IntSpec(r, "AutofunctionTargetIntensity", 128, 0, 255),
        BoolSpec(r, "AutofunctionAOIEnable", true),
        BoolSpec(r, "AutofunctionAOIShowArea", false),
        IntSpec(r, "AutofunctionAOIOffsetX", 648, 0, SensorWidth, 4),
        IntSpec(r, "AutofunctionAOIOffsetY", 486, 0, SensorHeight, 2),
        IntSpec(r, "AutofunctionAOIWidth", 1296, 64, SensorWidth, 4),
        IntSpec(r, "AutofunctionAOIHeight", 972, 64, SensorHeight, 2),
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
    family.exposure.push_back(IntSpec(c, "ExposureAutoAdjustTol", 5, 0, 50));
    family.exposure.push_back(IntSpec(c, "ExposureAutoRate", 100, 1, 100));
    family.exposure.push_back(IntSpec(c, "ExposureAutoOutliers", 0, 0, 1000));
    family.region = {
        IntSpec(r, "AutoModeRegionOffsetX", 648, 0, SensorWidth, 8),
        IntSpec(r, "AutoModeRegionOffsetY", 486, 0, SensorHeight, 2),
        IntSpec(r, "AutoModeRegionWidth", 1296, 64, SensorWidth, 8),
        IntSpec(r, "AutoModeRegionHeight", 972, 32, SensorHeight, 2),
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
        IntSpec(r, "DSPSubregionLeft", SensorWidth / 4, 0, SensorWidth, 2),
        IntSpec(r, "DSPSubregionTop", SensorHeight / 4, 0, SensorHeight, 2),
        IntSpec(r, "DSPSubregionRight", SensorWidth * 3 / 4, 0, SensorWidth, 2),
        IntSpec(r, "DSPSubregionBottom", SensorHeight * 3 / 4, 0, SensorHeight, 2),
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

void InsertBefore(FeatureSpecs& specs, const std::string& category, const FeatureSpecs& block)
{
    FeatureSpecs::iterator at =
        std::find_if(specs.begin(), specs.end(), [&](const FeatureSpec& spec) {
            return spec.category.compare(0, category.size(), category) == 0;
        });
    specs.insert(at, block.begin(), block.end());
}

std::unique_ptr<Camera> Assemble(const Family& family, const FeatureSpecs& specs)
{
    std::unique_ptr<Camera> camera(new Camera);
    AddFeatures(*camera, specs);
    AddImageRules(*camera);
    family.addRules(*camera);
    AddAcquisitionSimulation(*camera);
    return camera;
}

// The family's features among the others, where a camera lists them.
std::unique_ptr<Camera> AssembleAmongOthers(const Family& family)
{
    FeatureSpecs specs = OtherFeatures();
    InsertBefore(specs, "/ImageFormatControl", ImageFeatures());
    InsertBefore(specs, "/LUTControl", family.exposure);
    InsertBefore(specs, "/EventControl", family.region);
    return Assemble(family, specs);
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
    FeatureSpecs specs = FillerFeatures(otherFeatures);
    for (const FeatureSpecs& block : {ImageFeatures(), family.exposure, family.region}) {
        specs.insert(specs.end(), block.begin(), block.end());
    }
    return Assemble(family, specs);
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
