#ifndef TARKACPP_GENICAM_CONNECTION_H
#define TARKACPP_GENICAM_CONNECTION_H

#include "../ObserverRegistry.h"
#include "GLibLog.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <arv.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// What never changes about a feature node while the camera is open.
struct NodeInfo
{
    std::string name;
    std::string displayName;
    std::string category;
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    ArvGcFeatureNode* node = nullptr;
    // Entry names of an enumeration, with their nodes.
    std::vector<std::string> entries;
    std::vector<ArvGcFeatureNode*> entryNodes;
};

// One opened Aravis camera, shared by the Camera object and its features.
//
// Every Aravis call goes through Access, which holds the Aravis lock for the
// call and turns GErrors and GLib warnings into codes. The observer state is
// guarded by m_Lock, which is never held during an Aravis call or while an
// observer is called.
class Connection
{
public:
    // Takes over the reference on camera.
    explicit Connection(ArvCamera* camera);
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Runs call(GError**) with the Aravis lock held. call returns a code and
    // stops at the first GError it gets; a GError or a GLib warning makes the
    // result ErrorDevice, and a timeout marks the device lost.
    template <class Call>
    TrkErrorType Access(Call call);

    // Releases the Aravis objects; every later call fails with ErrorClosed.
    void Close();
    bool IsConnected() const { return !m_Lost && !m_Closed; }
    void MarkLost() { m_Lost = true; }

    // For other parts of the backend: hold AravisLock() around any use of
    // these, and use them only while IsConnected().
    std::timed_mutex& AravisLock() { return m_AravisLock; }
    ArvCamera* AravisCamera() const { return m_Camera; }
    ArvDevice* AravisDevice() const { return m_Device; }

    // The served features, in order.
    const std::vector<NodeInfo>& Nodes() const { return m_Nodes; }
    size_t IndexOf(const std::string& name) const;

    // Registers are cached, so that a refresh reads each from the device at
    // most once; while bypassed, as during a poll, every read goes to the
    // device and refreshes the cache with what other clients wrote.
    void BypassRegisterCache(bool bypass);

    // Text that changes whenever the feature's value, range, increment,
    // writability or entry availability does; read under the Aravis lock.
    // Empty when it can't be read: a failure is no change to tell.
    std::string Signature(size_t index);

    // Observer state, guarded by m_Lock.
    std::mutex m_Lock;
    // Signalled whenever the queue, a delivery, a request or the stop flag changes.
    std::condition_variable m_Signal;
    ObserverRegistry m_Observers{m_Signal};
    // The last signature of each watched feature.
    std::vector<std::string> m_Signatures;
    // Written features, notified at the next refresh whether changed or not.
    std::set<size_t> m_Written;
    unsigned long long m_RefreshesRequested = 0;
    unsigned long long m_RefreshesDone = 0;

    // With m_Lock held: asks the notifier for a refresh after a write.
    void RequestRefresh(size_t written);

    static const size_t NoFeature = static_cast<size_t>(-1);

private:
    void AddFeatures(ArvGc* genicam, const std::string& category, const std::string& path);
    TrkErrorType CodeOf(const GError* error);
    static void OnControlLost(ArvDevice* device, gpointer connection);

    std::timed_mutex m_AravisLock;
    ArvCamera* m_Camera;
    ArvDevice* m_Device;
    gulong m_ControlLostHandler = 0;
    std::atomic<bool> m_Lost{false};
    std::atomic<bool> m_Closed{false};
    std::vector<NodeInfo> m_Nodes;
};

template <class Call>
TrkErrorType Connection::Access(Call call)
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
        code = CodeOf(error);
        g_error_free(error);
    } else if (code == Success && warnings.Seen()) {
        code = ErrorDevice;
    }
    return code;
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
