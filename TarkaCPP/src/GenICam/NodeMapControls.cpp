#include "NodeMapControls.h"

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

// Runs read(GError**) and gives fallback when it fails: a simulated sensor
// goes on with what it can read.
template <class Result, class Read>
Result OrFallback(Read read, Result fallback)
{
    GError* error = nullptr;
    Result result = read(&error);
    if (error != nullptr) {
        g_error_free(error);
        return fallback;
    }
    return result;
}

} // namespace

ArvGcNode* NodeMapControls::Node(const std::string& name) const
{
    ArvGcNode* node = arv_gc_get_node(m_Genicam, name.c_str());
    return ARV_IS_GC_FEATURE_NODE(node) ? node : nullptr;
}

bool NodeMapControls::Has(const std::string& name) const
{
    ArvGcNode* node = Node(name);
    return node != nullptr &&
           OrFallback<gboolean>(
               [&](GError** error) {
                   return arv_gc_feature_node_is_implemented(ARV_GC_FEATURE_NODE(node), error);
               },
               FALSE);
}

long long NodeMapControls::Int(const std::string& name) const
{
    ArvGcNode* node = Node(name);
    if (!ARV_IS_GC_INTEGER(node)) {
        return 0;
    }
    return OrFallback<gint64>(
        [&](GError** error) { return arv_gc_integer_get_value(ARV_GC_INTEGER(node), error); }, 0);
}

double NodeMapControls::Number(const std::string& name) const
{
    return ARV_IS_GC_FLOAT(Node(name)) ? FloatRead(name, arv_gc_float_get_value)
                                       : static_cast<double>(Int(name));
}

bool NodeMapControls::Bool(const std::string& name) const
{
    ArvGcNode* node = Node(name);
    if (!ARV_IS_GC_BOOLEAN(node)) {
        return false;
    }
    return OrFallback<gboolean>(
        [&](GError** error) { return arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), error); },
        FALSE);
}

std::string NodeMapControls::Text(const std::string& name) const
{
    ArvGcNode* node = Node(name);
    const char* text = nullptr;
    if (ARV_IS_GC_ENUMERATION(node)) {
        text = OrFallback<const char*>(
            [&](GError** error) {
                return arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(node), error);
            },
            nullptr);
    } else if (ARV_IS_GC_STRING(node)) {
        text = OrFallback<const char*>(
            [&](GError** error) { return arv_gc_string_get_value(ARV_GC_STRING(node), error); },
            nullptr);
    }
    return text != nullptr ? text : std::string();
}

double NodeMapControls::FloatMin(const std::string& name) const
{
    return FloatRead(name, arv_gc_float_get_min);
}

double NodeMapControls::FloatMax(const std::string& name) const
{
    return FloatRead(name, arv_gc_float_get_max);
}

double NodeMapControls::FloatRead(const std::string& name,
                                  double (*read)(ArvGcFloat*, GError**)) const
{
    ArvGcNode* node = Node(name);
    if (!ARV_IS_GC_FLOAT(node)) {
        return 0.0;
    }
    return OrFallback<double>([&](GError** error) { return read(ARV_GC_FLOAT(node), error); }, 0.0);
}

void NodeMapControls::SetFloat(const std::string& name, double value)
{
    ArvGcNode* node = Node(name);
    if (ARV_IS_GC_FLOAT(node)) {
        OrFallback<bool>(
            [&](GError** error) {
                arv_gc_float_set_value(ARV_GC_FLOAT(node), value, error);
                return true;
            },
            false);
    }
}

void NodeMapControls::SetText(const std::string& name, const std::string& value)
{
    ArvGcNode* node = Node(name);
    if (ARV_IS_GC_ENUMERATION(node)) {
        OrFallback<bool>(
            [&](GError** error) {
                return arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(node), value.c_str(),
                                                           error) != FALSE;
            },
            false);
    }
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
