#include "FeatureSpec.h"

#include <cctype>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

FeatureSpec Spec(const std::string& category, const std::string& name, TrkFeatureDataType type)
{
    FeatureSpec spec;
    spec.category = category;
    spec.name = name;
    spec.type = type;
    return spec;
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

FeatureSpec IntSpec(const std::string& category, const std::string& name, long long value,
                    long long min, long long max, long long increment)
{
    FeatureSpec spec = Spec(category, name, TrkFeatureDataInt);
    spec.integer = {value, min, max, increment};
    return spec;
}

FeatureSpec FloatSpec(const std::string& category, const std::string& name, double value,
                      double min, double max, double increment)
{
    FeatureSpec spec = Spec(category, name, TrkFeatureDataFloat);
    spec.real = {value, min, max, increment};
    return spec;
}

FeatureSpec BoolSpec(const std::string& category, const std::string& name, bool value)
{
    FeatureSpec spec = Spec(category, name, TrkFeatureDataBool);
    spec.boolValue = value;
    return spec;
}

FeatureSpec EnumSpec(const std::string& category, const std::string& name,
                     const std::vector<std::string>& entries, const std::string& current)
{
    FeatureSpec spec = Spec(category, name, TrkFeatureDataEnum);
    spec.entries = entries;
    spec.text = current;
    return spec;
}

FeatureSpec StringSpec(const std::string& category, const std::string& name,
                       const std::string& value)
{
    FeatureSpec spec = Spec(category, name, TrkFeatureDataString);
    spec.text = value;
    return spec;
}

FeatureSpec CommandSpec(const std::string& category, const std::string& name)
{
    return Spec(category, name, TrkFeatureDataCommand);
}

FeatureSpec RawSpec(const std::string& category, const std::string& name)
{
    return ReadOnly(Spec(category, name, TrkFeatureDataRaw));
}

FeatureSpec ReadOnly(FeatureSpec spec)
{
    spec.writable = false;
    return spec;
}

void AddFeatures(Camera& camera, const FeatureSpecs& specs)
{
    for (FeatureSpec spec : specs) {
        spec.displayName = DisplayNameOf(spec.name);
        camera.Add(spec);
    }
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
