#include "NodeAccess.h"

#include <cfloat>

namespace KST {
namespace TrkAPI {
namespace GenICam {

TrkFeatureDataType DataTypeOf(ArvGcNode* node)
{
    // Enumerations, strings and booleans may also be integers or registers
    // underneath, so the narrower kinds are asked first.
    if (ARV_IS_GC_ENUMERATION(node)) {
        return TrkFeatureDataEnum;
    }
    if (ARV_IS_GC_COMMAND(node)) {
        return TrkFeatureDataCommand;
    }
    if (ARV_IS_GC_BOOLEAN(node)) {
        return TrkFeatureDataBool;
    }
    if (ARV_IS_GC_STRING(node)) {
        return TrkFeatureDataString;
    }
    if (ARV_IS_GC_INTEGER(node)) {
        return TrkFeatureDataInt;
    }
    if (ARV_IS_GC_FLOAT(node)) {
        return TrkFeatureDataFloat;
    }
    if (ARV_IS_GC_REGISTER(node)) {
        return TrkFeatureDataRaw;
    }
    return TrkFeatureDataUnknown;
}

bool IsUsable(ArvGcFeatureNode* node, GError** error)
{
    bool implemented = arv_gc_feature_node_is_implemented(node, error);
    if (*error != nullptr || !implemented) {
        return false;
    }
    return arv_gc_feature_node_is_available(node, error);
}

bool IsNodeWritable(ArvGcFeatureNode* node, GError** error)
{
    ArvGcAccessMode mode = arv_gc_feature_node_get_actual_access_mode(node);
    if (mode != ARV_GC_ACCESS_MODE_RW && mode != ARV_GC_ACCESS_MODE_WO) {
        return false;
    }
    if (!IsUsable(node, error)) {
        return false;
    }
    return !arv_gc_feature_node_is_locked(node, error);
}

IntRange ReadIntRange(ArvGcInteger* node, GError** error)
{
    IntRange range;
    range.min = arv_gc_integer_get_min(node, error);
    if (*error == nullptr) {
        range.max = arv_gc_integer_get_max(node, error);
    }
    if (*error == nullptr) {
        range.increment = arv_gc_integer_get_inc(node, error);
    }
    return range;
}

FloatRange ReadFloatRange(ArvGcFloat* node, GError** error)
{
    FloatRange range;
    range.min = arv_gc_float_get_min(node, error);
    if (*error == nullptr) {
        range.max = arv_gc_float_get_max(node, error);
    }
    if (*error == nullptr) {
        // Aravis gives the smallest double for a node without an increment,
        // and an error for one whose value is a register that has none.
        double increment = arv_gc_float_get_inc(node, error);
        if (*error != nullptr && (*error)->domain == ARV_GC_ERROR &&
            (*error)->code == ARV_GC_ERROR_PROPERTY_NOT_DEFINED) {
            g_clear_error(error);
            increment = 0.0;
        }
        range.increment = increment > DBL_MIN ? increment : 0.0;
    }
    return range;
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
