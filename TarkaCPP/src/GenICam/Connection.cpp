#include "Connection.h"

#include "GLibLog.h"
#include "NodeAccess.h"
#include "Teardown.h"

#include <algorithm>
#include <sstream>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

// Far longer than the rest of a signal's emission after its handlers.
const std::chrono::milliseconds EmissionEnd(200);

const char RootCategory[] = "Root";
// The first bootstrap register, which every GigE Vision and USB3 Vision
// device answers: a read that tells whether the device still answers.
const guint64 ProbeAddress = 0;

// Codes that tell of no answer from the device rather than its answer.
bool Unanswered(TrkErrorType code)
{
    return code == ErrorNoAnswer || code == ErrorDeviceLost || code == ErrorClosed ||
           code == ErrorBusy || code == ErrorDevice;
}

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

const std::chrono::milliseconds Connection::AnswerTimeout(100);
const std::chrono::milliseconds Connection::LossTimeout(550);
const std::chrono::milliseconds Connection::ProbePeriod(100);

Connection::Connection(ArvCamera* camera, std::unique_ptr<SimulatedSensor> sensor)
    : m_Camera(camera), m_Device(arv_camera_get_device(camera)), m_Sensor(std::move(sensor))
{
    if (ARV_IS_FAKE_DEVICE(m_Device)) {
        m_Fake = arv_fake_device_get_fake_camera(ARV_FAKE_DEVICE(m_Device));
    } else {
        m_Calls.reset(new CallQueue);
    }
    m_ReadOnly =
        ARV_IS_GV_DEVICE(m_Device) && !arv_gv_device_is_controller(ARV_GV_DEVICE(m_Device));
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
    BeginClose();
    Release();
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

void Connection::BeginClose()
{
    m_Closed = true;
    if (m_Calls) {
        m_Calls->Stop();
    }
}

void Connection::Release()
{
    if (m_Calls) {
        m_Calls->Join();
    }
    std::lock_guard<std::timed_mutex> lock(m_AravisLock);
    if (m_Camera == nullptr) {
        return;
    }
    if (m_ControlLostHandler != 0) {
        g_signal_handler_disconnect(m_Device, m_ControlLostHandler);
    }
    // No frame is rendered once the device is released.
    m_Sensor.reset();
    g_object_unref(m_Camera);
    m_Camera = nullptr;
    m_Device = nullptr;
}

void Connection::BypassRegisterCache(bool bypass)
{
    // By value: a call that outlasts its caller's wait still runs later.
    Access([this, bypass](GError**) -> TrkErrorType {
        arv_gc_set_register_cache_policy(arv_device_get_genicam(m_Device),
                                         bypass ? ARV_REGISTER_CACHE_POLICY_DISABLE
                                                : ARV_REGISTER_CACHE_POLICY_ENABLE);
        return Success;
    });
}

TrkErrorType Connection::Access(const DeviceCall& call, bool read, std::chrono::milliseconds wait)
{
    if (m_Closed) {
        return ErrorClosed;
    }
    if (m_Lost) {
        return ErrorDeviceLost;
    }
    if (!m_Calls) {
        return Execute(call, read);
    }
    std::shared_ptr<TrkErrorType> code = std::make_shared<TrkErrorType>(ErrorNoAnswer);
    switch (m_Calls->Run([this, call, read, code] { *code = Execute(call, read); }, read, wait)) {
    case CallQueue::Answered:
        return *code;
    case CallQueue::Stopped:
        return ErrorClosed;
    default:
        return m_Lost ? ErrorDeviceLost : ErrorNoAnswer;
    }
}

TrkErrorType Connection::Execute(const DeviceCall& call, bool read)
{
    std::unique_lock<std::timed_mutex> lock(m_AravisLock, std::defer_lock);
    if (!lock.try_lock_for(Camera::CallTimeout)) {
        return ErrorBusy;
    }
    if (m_Closed) {
        return ErrorClosed;
    }
    if (m_Lost) {
        return ErrorDeviceLost;
    }
    GLibWarnings warnings;
    GError* error = nullptr;
    TrkErrorType code = call(&error);
    if (error != nullptr) {
        code = CodeOf(error, read);
        g_error_free(error);
    } else if (code == Success && warnings.Seen()) {
        code = ErrorDevice;
    }
    return code;
}

TrkErrorType Connection::Read(size_t index, unsigned kind, const ReadCall& read, Reading& answer)
{
    std::shared_ptr<Reading> reading = std::make_shared<Reading>();
    const TrkErrorType code =
        Access([read, reading](GError** error) { return read(*reading, error); });
    const std::pair<size_t, unsigned> key(index, kind);
    std::lock_guard<std::mutex> lock(m_KnownLock);
    if (!Unanswered(code)) {
        reading->code = code;
        m_Known[key] = *reading;
        answer = *reading;
        return code;
    }
    std::map<std::pair<size_t, unsigned>, Reading>::const_iterator known = m_Known.find(key);
    if ((code != ErrorNoAnswer && code != ErrorDeviceLost) || known == m_Known.end()) {
        return code;
    }
    answer = known->second;
    return answer.code;
}

void Connection::Watch()
{
    if (!m_Calls || !IsConnected()) {
        return;
    }
    if (m_Calls->Stalled() > LossTimeout) {
        MarkLost();
        return;
    }
    m_Calls->PostEvery(
        [this] {
            Execute(
                [this](GError** error) {
                    guint32 value = 0;
                    arv_device_read_register(m_Device, ProbeAddress, &value, error);
                    return Success;
                },
                true);
        },
        ProbePeriod);
}

std::string Connection::Signature(size_t index)
{
    std::shared_ptr<std::ostringstream> out = std::make_shared<std::ostringstream>();
    const NodeInfo* info = &m_Nodes[index];
    TrkErrorType code = Access([info, out](GError** error) -> TrkErrorType {
        *out << IsNodeWritable(info->node, error) << ' ';
        if (*error == nullptr) {
            Describe(*out, *info, error);
        }
        return Success;
    });
    return code == Success ? out->str() : std::string();
}

void Connection::RequestRefresh(size_t written)
{
    m_Written.insert(written);
    ++m_RefreshesRequested;
}

TrkErrorType Connection::CodeOf(const GError* error, bool read)
{
    if (error->domain != ARV_DEVICE_ERROR) {
        return ErrorDevice;
    }
    // Aravis reports a timeout after asking the device several times.
    if (error->code == ARV_DEVICE_ERROR_NOT_CONNECTED ||
        (read && error->code == ARV_DEVICE_ERROR_TIMEOUT)) {
        m_Lost = true;
        return ErrorDeviceLost;
    }
    return error->code == ARV_DEVICE_ERROR_TIMEOUT ? ErrorNoAnswer : ErrorDevice;
}

void Connection::OnControlLost(ArvDevice* device, gpointer connection)
{
    // The signal comes on the device's heartbeat thread, and its emission
    // holds a reference: were that the last one, the device's finalization
    // would wait for the very thread it runs on. This reference outlasts the
    // emission and is released on the teardown thread.
    g_object_ref(device);
    Teardown::Run([device] {
        std::this_thread::sleep_for(EmissionEnd);
        g_object_unref(device);
    });
    static_cast<Connection*>(connection)->MarkLost();
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
