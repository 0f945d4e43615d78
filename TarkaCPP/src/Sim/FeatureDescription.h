#ifndef TARKACPP_SIM_FEATUREDESCRIPTION_H
#define TARKACPP_SIM_FEATUREDESCRIPTION_H

#include <TarkaCPP/Sim/SimCamera.h>

#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace Sim {

// The value of a numeric feature with its inclusive bounds and its step,
// counted from the minimum; a step of 0 or less means none.
template <class T>
struct Number
{
    T value = 0;
    T min = 0;
    T max = 0;
    T increment = 0;
};

// The description of one feature, from which a camera adds it, so that
// cameras can be assembled from lists in any order.
struct FeatureDescription
{
    std::string category;
    std::string name;
    // Empty text shows the name.
    std::string displayName;
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    bool writable = true;
    Number<long long> integer;
    Number<double> real;
    bool boolValue = false;
    std::vector<std::string> entries;
    // The value of an enumeration or string feature.
    std::string text;
};

typedef std::vector<FeatureDescription> FeatureDescriptions;

FeatureDescription IntFeature(const std::string& category, const std::string& name, long long value,
                              long long min, long long max, long long increment = 1);
FeatureDescription FloatFeature(const std::string& category, const std::string& name, double value,
                                double min, double max, double increment = 0.0);
FeatureDescription BoolFeature(const std::string& category, const std::string& name, bool value);
FeatureDescription EnumFeature(const std::string& category, const std::string& name,
                               const std::vector<std::string>& entries, const std::string& current);
FeatureDescription StringFeature(const std::string& category, const std::string& name,
                                 const std::string& value);
FeatureDescription CommandFeature(const std::string& category, const std::string& name);
FeatureDescription RawFeature(const std::string& category, const std::string& name);
FeatureDescription ReadOnly(FeatureDescription description);

// Adds the features in order, with their category and a display name made
// of the name's words ("ExposureAutoMin" shows as "Exposure Auto Min").
void AddFeatures(Camera& camera, const FeatureDescriptions& descriptions);

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
