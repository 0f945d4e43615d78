#include "PowerUp.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <cmath>
#include <string>
#include <utility>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

const std::pair<const char*, const char*> FamilyFeatures[] = {
    {"AutofunctionAOIWidth", "autofunction"},
    {"AutoModeRegionWidth", "automode"},
    {"DSPSubregionLeft", "dsp"},
};
const char UnsupportedFamily[] = "unsupported";

std::string FamilyOf(ArvGc* genicam)
{
    for (const auto& family : FamilyFeatures) {
        if (arv_gc_get_node(genicam, family.first) != nullptr) {
            return family.second;
        }
    }
    return UnsupportedFamily;
}

// A text of the feature, read by the two-call protocol; empty when it fails.
std::string TextOf(const FeaturePtr& feature,
                   TrkErrorType (Feature::*read)(char*, unsigned int&) const)
{
    unsigned int length = 0;
    if (((*feature).*read)(nullptr, length) != 0 || length == 0) {
        return std::string();
    }
    std::string text(length, '\0');
    ((*feature).*read)(&text[0], length);
    return text.c_str();
}

// The value of an integer or float feature as a number.
bool NumberOf(const FeaturePtr& feature, double& number)
{
    long long integer = 0;
    if (feature->GetValue(integer) == 0) {
        number = static_cast<double>(integer);
        return true;
    }
    return feature->GetValue(number) == 0;
}

// Writes the model's value into the node when both are of one kind, numbers
// of either type being one.
void Copy(const FeaturePtr& feature, ArvGcNode* node, GError** error)
{
    double number = 0.0;
    bool flag = false;
    if (ARV_IS_GC_ENUMERATION(node)) {
        std::string entry = TextOf(feature, &Feature::GetValue);
        if (!entry.empty()) {
            arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(node), entry.c_str(), error);
        }
    } else if (ARV_IS_GC_BOOLEAN(node) && feature->GetValue(flag) == 0) {
        arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), flag, error);
    } else if (ARV_IS_GC_INTEGER(node) && NumberOf(feature, number)) {
        arv_gc_integer_set_value(ARV_GC_INTEGER(node), std::llround(number), error);
    } else if (ARV_IS_GC_FLOAT(node) && NumberOf(feature, number)) {
        arv_gc_float_set_value(ARV_GC_FLOAT(node), number, error);
    }
}

} // namespace

void PowerUp(ArvGc* genicam)
{
    std::unique_ptr<Sim::Camera> model = Sim::MakeCamera(FamilyOf(genicam));
    const std::vector<FeaturePtr> features = model->Features();
    for (bool enumerations : {true, false}) {
        for (const FeaturePtr& feature : features) {
            const std::string name = TextOf(feature, &Feature::GetName);
            ArvGcNode* node = arv_gc_get_node(genicam, name.c_str());
            if (!ARV_IS_GC_FEATURE_NODE(node) || ARV_IS_GC_ENUMERATION(node) != enumerations ||
                arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(node)) ==
                    ARV_GC_ACCESS_MODE_RO) {
                continue;
            }
            GError* error = nullptr;
            Copy(feature, node, &error);
            g_clear_error(&error);
        }
    }
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
