#include "Connection.h"

#include "NodeAccess.h"

#include <algorithm>
#include <sstream>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

const char RootCategory[] = "Root";

std::string Text(const char* text)
{
    return text ? std::string(text) : std::string();
}

// Appends what a signature holds of a node of the given type.
void Describe(std::ostream& out, const NodeInfo& info, GError** error)
{
    switch (info.type) {
    case TrkFeatureDataInt: {
        ArvGcInteger* node = ARV_GC_INTEGER(info.node);
        gint64 value = arv_gc_integer_get_value(node, error);
        if (*error == nullptr) {
            IntRange range = ReadIntRange(node, error);
            out << value << ' ' << range.min << ' ' << range.max << ' ' << range.increment;
        }
        break;
    }
    case TrkFeatureDataFloat: {
        ArvGcFloat* node = ARV_GC_FLOAT(info.node);
        double value = arv_gc_float_get_value(node, error);
        if (*error == nullptr) {
            FloatRange range = ReadFloatRange(node, error);
            out.precision(17);
            out << value << ' ' << range.min << ' ' << range.max << ' ' << range.increment;
        }
        break;
    }
    case TrkFeatureDataBool:
        out << arv_gc_boolean_get_value(ARV_GC_BOOLEAN(info.node), error);
        break;
    case TrkFeatureDataEnum:
        out << Text(arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(info.node), error));
        for (ArvGcFeatureNode* entry : info.entryNodes) {
            if (*error == nullptr) {
                out << ' ' << IsUsable(entry, error);
            }
        }
        break;
    case TrkFeatureDataString:
        out << Text(arv_gc_string_get_value(ARV_GC_STRING(info.node), error));
        break;
    default:
        break;
    }
}

} // namespace

Connection::Connection(ArvCamera* camera)
    : m_Camera(camera), m_Device(arv_camera_get_device(camera))
{
    ArvGc* genicam = arv_device_get_genicam(m_Device);
    arv_gc_set_range_check_policy(genicam, ARV_RANGE_CHECK_POLICY_ENABLE);
    arv_gc_set_access_check_policy(genicam, ARV_ACCESS_CHECK_POLICY_ENABLE);
    arv_gc_set_register_cache_policy(genicam, ARV_REGISTER_CACHE_POLICY_ENABLE);
    AddFeatures(genicam, RootCategory, std::string());
    m_Observers.Resize(m_Nodes.size());
    m_Signatures.resize(m_Nodes.size());
    if (g_signal_lookup("control-lost", G_OBJECT_TYPE(m_Device)) != 0) {
        m_ControlLostHandler =
            g_signal_connect(m_Device, "control-lost", G_CALLBACK(OnControlLost), this);
    }
}

Connection::~Connection()
{
    Close();
}

void Connection::AddFeatures(ArvGc* genicam, const std::string& category, const std::string& path)
{
    ArvGcNode* node = arv_gc_get_node(genicam, category.c_str());
    if (!ARV_IS_GC_CATEGORY(node)) {
        return;
    }
    for (const GSList* item = arv_gc_category_get_features(ARV_GC_CATEGORY(node)); item;
         item = item->next) {
        const std::string name = static_cast<const char*>(item->data);
        ArvGcNode* feature = arv_gc_get_node(genicam, name.c_str());
        if (ARV_IS_GC_CATEGORY(feature)) {
            AddFeatures(genicam, name, path + "/" + name);
            continue;
        }
        if (!ARV_IS_GC_FEATURE_NODE(feature) || IndexOf(name) != NoFeature) {
            continue;
        }
        NodeInfo info;
        info.name = name;
        info.node = ARV_GC_FEATURE_NODE(feature);
        info.displayName = Text(arv_gc_feature_node_get_display_name(info.node));
        if (info.displayName.empty()) {
            info.displayName = name;
        }
        info.category = path.empty() ? "/" : path;
        info.type = DataTypeOf(feature);
        if (info.type == TrkFeatureDataEnum) {
            for (const GSList* entry = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(feature));
                 entry; entry = entry->next) {
                ArvGcFeatureNode* entryNode = ARV_GC_FEATURE_NODE(entry->data);
                info.entries.push_back(Text(arv_gc_feature_node_get_name(entryNode)));
                info.entryNodes.push_back(entryNode);
            }
            // Aravis lists the entries last first.
            std::reverse(info.entries.begin(), info.entries.end());
            std::reverse(info.entryNodes.begin(), info.entryNodes.end());
        }
        m_Nodes.push_back(info);
    }
}

size_t Connection::IndexOf(const std::string& name) const
{
    for (size_t index = 0; index < m_Nodes.size(); ++index) {
        if (m_Nodes[index].name == name) {
            return index;
        }
    }
    return NoFeature;
}

void Connection::Close()
{
    std::lock_guard<std::timed_mutex> lock(m_AravisLock);
    if (m_Closed) {
        return;
    }
    m_Closed = true;
    if (m_ControlLostHandler != 0) {
        g_signal_handler_disconnect(m_Device, m_ControlLostHandler);
    }
    g_object_unref(m_Camera);
    m_Camera = nullptr;
    m_Device = nullptr;
}

void Connection::BypassRegisterCache(bool bypass)
{
    Access([&](GError**) -> TrkErrorType {
        arv_gc_set_register_cache_policy(arv_device_get_genicam(m_Device),
                                         bypass ? ARV_REGISTER_CACHE_POLICY_DISABLE
                                                : ARV_REGISTER_CACHE_POLICY_ENABLE);
        return Success;
    });
}

std::string Connection::Signature(size_t index)
{
    std::ostringstream out;
    TrkErrorType code = Access([&](GError** error) -> TrkErrorType {
        out << IsNodeWritable(m_Nodes[index].node, error) << ' ';
        if (*error == nullptr) {
            Describe(out, m_Nodes[index], error);
        }
        return Success;
    });
    return code == Success ? out.str() : std::string();
}

void Connection::RequestRefresh(size_t written)
{
    m_Written.insert(written);
    ++m_RefreshesRequested;
}

TrkErrorType Connection::CodeOf(const GError* error)
{
    if (error->domain == ARV_DEVICE_ERROR && (error->code == ARV_DEVICE_ERROR_TIMEOUT ||
                                              error->code == ARV_DEVICE_ERROR_NOT_CONNECTED)) {
        m_Lost = true;
        return ErrorDeviceLost;
    }
    return ErrorDevice;
}

void Connection::OnControlLost(ArvDevice*, gpointer connection)
{
    static_cast<Connection*>(connection)->MarkLost();
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
