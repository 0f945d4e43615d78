#include "FeatureDescription.h"

#include <cctype>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

FeatureDescription Describe(const std::string& category, const std::string& name,
                            TrkFeatureDataType type)
{
    FeatureDescription description;
    description.category = category;
    description.name = name;
    description.type = type;
    return description;
}

// A blank goes before each capital that starts a word: after a lower-case
// letter or a digit, or before the last capital of an acronym ("LUTValue").
std::string DisplayNameOf(const std::string& name)
{
    std::string result;
    for (size_t i = 0; i < name.size(); ++i) {
        unsigned char current = name[i];
        if (i > 0 && std::isupper(current)) {
            unsigned char previous = name[i - 1];
            bool nextIsLower = i + 1 < name.size() && std::islower(name[i + 1]);
            if (std::islower(previous) || std::isdigit(previous) ||
                (std::isupper(previous) && nextIsLower)) {
                result += ' ';
            }
        }
        result += name[i];
    }
    return result;
}

} // namespace

FeatureDescription IntFeature(const std::string& category, const std::string& name, long long value,
                              long long min, long long max, long long increment)
{
    FeatureDescription description = Describe(category, name, TrkFeatureDataInt);
    description.integer = {value, min, max, increment};
    return description;
}

FeatureDescription FloatFeature(const std::string& category, const std::string& name, double value,
                                double min, double max, double increment)
{
    FeatureDescription description = Describe(category, name, TrkFeatureDataFloat);
    description.real = {value, min, max, increment};
    return description;
}

FeatureDescription BoolFeature(const std::string& category, const std::string& name, bool value)
{
    FeatureDescription description = Describe(category, name, TrkFeatureDataBool);
    description.boolValue = value;
    return description;
}

FeatureDescription EnumFeature(const std::string& category, const std::string& name,
                               const std::vector<std::string>& entries, const std::string& current)
{
    FeatureDescription description = Describe(category, name, TrkFeatureDataEnum);
    description.entries = entries;
    description.text = current;
    return description;
}

FeatureDescription StringFeature(const std::string& category, const std::string& name,
                                 const std::string& value)
{
    FeatureDescription description = Describe(category, name, TrkFeatureDataString);
    description.text = value;
    return description;
}

FeatureDescription CommandFeature(const std::string& category, const std::string& name)
{
    return Describe(category, name, TrkFeatureDataCommand);
}

FeatureDescription RawFeature(const std::string& category, const std::string& name)
{
    return ReadOnly(Describe(category, name, TrkFeatureDataRaw));
}

FeatureDescription ReadOnly(FeatureDescription description)
{
    description.writable = false;
    return description;
}

void AddFeatures(Camera& camera, const FeatureDescriptions& descriptions)
{
    for (FeatureDescription description : descriptions) {
        description.displayName = DisplayNameOf(description.name);
        camera.Add(description);
    }
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
