#include <TarkaCPP/Sim/CameraRules.h>

#include "SensorSimulation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

bool IsInteger(const CameraAccess& access, const std::string& name)
{
    return access.Type(name) == TrkFeatureDataInt;
}

double NumberMin(const CameraAccess& access, const std::string& name)
{
    return IsInteger(access, name) ? access.IntMin(name) : access.FloatMin(name);
}

double NumberMax(const CameraAccess& access, const std::string& name)
{
    return IsInteger(access, name) ? access.IntMax(name) : access.FloatMax(name);
}

void SetNumberRange(CameraAccess& access, const std::string& name, double min, double max)
{
    if (IsInteger(access, name)) {
        access.SetIntRange(name, std::llround(min), std::llround(max));
    } else {
        access.SetFloatRange(name, min, max);
    }
}

void SetAcquiring(CameraAccess& access, bool acquiring)
{
    static const char* const locked[] = {"Width",
                                         "Height",
                                         "OffsetX",
                                         "OffsetY",
                                         "PixelFormat",
                                         "BinningHorizontal",
                                         "BinningVertical",
                                         "DecimationHorizontal",
                                         "DecimationVertical"};
    if (access.Has("AcquisitionStatus")) {
        access.SetBool("AcquisitionStatus", acquiring);
    }
    for (const char* name : locked) {
        if (access.Has(name)) {
            access.SetWritable(name, !acquiring);
        }
    }
}

} // namespace

double NumberValue(const CameraAccess& access, const std::string& name)
{
    return IsInteger(access, name) ? access.Int(name) : access.Float(name);
}

Rule KeepInside(const std::string& offset, const std::string& size, const std::string& origin,
                const std::string& extent)
{
    return [=](CameraAccess& access) {
        long long start = origin.empty() ? 0 : access.Int(origin);
        long long end = start + access.Int(extent);
        long long minSize = access.IntMin(size);
        access.SetIntRange(size, minSize, std::max(minSize, end - access.Int(offset)));
        access.SetIntRange(offset, start, std::max(start, end - access.Int(size)));
    };
}

Rule KeepEdgesApart(const std::string& first, const std::string& second, const std::string& extent,
                    long long gap)
{
    return [=](CameraAccess& access) {
        long long secondMin = access.Int(first) + gap;
        access.SetIntRange(second, secondMin, std::max(secondMin, access.Int(extent)));
        long long firstMin = access.IntMin(first);
        access.SetIntRange(first, firstMin, std::max(firstMin, access.Int(second) - gap));
    };
}

Rule TieLimits(const std::string& lower, const std::string& upper)
{
    return [=](CameraAccess& access) {
        double lowerMin = NumberMin(access, lower);
        SetNumberRange(access, lower, lowerMin, std::max(lowerMin, NumberValue(access, upper)));
        double upperMax = NumberMax(access, upper);
        SetNumberRange(access, upper, std::min(NumberValue(access, lower), upperMax), upperMax);
    };
}

long long TimebaseUnit(const std::string& entry)
{
    long long count = std::atoll(entry.c_str());
    bool millis = entry.size() >= 2 && entry.compare(entry.size() - 2, 2, "ms") == 0;
    return std::max(1LL, millis ? count * 1000 : count);
}

Rule LimitsInTimebase(const std::string& timebase, const std::string& lower,
                      const std::string& upper, const std::string& exposure)
{
    std::shared_ptr<long long> unitInUse = std::make_shared<long long>(0);
    return [=](CameraAccess& access) {
        long long unit = TimebaseUnit(access.Text(timebase));
        if (*unitInUse != 0 && *unitInUse != unit) {
            for (const std::string& limit : {lower, upper}) {
                access.SetInt(limit, std::max(1LL, access.Int(limit) * *unitInUse / unit));
            }
        }
        *unitInUse = unit;
        long long lowest = std::max(1LL, std::llround(std::ceil(access.FloatMin(exposure) / unit)));
        long long highest = std::max(lowest, std::llround(access.FloatMax(exposure)) / unit);
        access.SetIntRange(lower, lowest, std::max(lowest, access.IntMax(lower)));
        access.SetIntRange(upper, std::min(access.IntMin(upper), highest), highest);
    };
}

void AddAcquisitionSimulation(Camera& camera)
{
    if (camera.Has("AcquisitionStart")) {
        camera.SetCommandAction("AcquisitionStart",
                                [](CameraAccess& access) { SetAcquiring(access, true); });
    }
    for (const char* stop : {"AcquisitionStop", "AcquisitionAbort"}) {
        if (camera.Has(stop)) {
            camera.SetCommandAction(stop,
                                    [](CameraAccess& access) { SetAcquiring(access, false); });
        }
    }
    camera.SetFrameGenerator(std::unique_ptr<FrameGenerator>(new SensorSimulation));
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
