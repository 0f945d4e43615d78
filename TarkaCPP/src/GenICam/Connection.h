#ifndef TARKACPP_GENICAM_CONNECTION_H
#define TARKACPP_GENICAM_CONNECTION_H

#include "../ObserverRegistry.h"
#include "CallQueue.h"
#include "GLibLog.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>
#include <TarkaCPP/GenICam/SimulatedSensor.h>

#include <arv.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
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

// What one read of a feature answered, kept as the last known answer.
struct Reading
{
    TrkErrorType code = Success;
    long long integers[2] = {0, 0};
    double numbers[2] = {0.0, 0.0};
    bool flag = false;
    std::string text;

    // integers or numbers, by type.
    template <class T>
    T* Numbers();
};

template <>
inline long long* Reading::Numbers<long long>()
{
    return integers;
}

template <>
inline double* Reading::Numbers<double>()
{
    return numbers;
}

// What a read asks for, per feature; an entry's availability adds the
// entry's index to EntryRead.
enum ReadKind : unsigned
{
    ValueRead,
    RangeRead,
    IncrementRead,
    WritableRead,
    EntryRead
};

// One opened Aravis camera, shared by the Camera object and its features.
//
// Every Aravis call goes through Access, which holds the Aravis lock for the
// call and turns GErrors and GLib warnings into codes. A device reached over
// a network is called on a CallQueue, so that one that stopped answering
// holds up no caller longer than AnswerTimeout; Aravis's in-process fake
// camera always answers and is called on the caller's thread. The observer
// state is guarded by m_Lock, which is never held during an Aravis call or
// while an observer is called.
class Connection
{
public:
    using DeviceCall = std::function<TrkErrorType(GError**)>;
    using ReadCall = std::function<TrkErrorType(Reading&, GError**)>;

    // How long a caller waits for a device's answer: 100 ms.
    static const std::chrono::milliseconds AnswerTimeout;
    // A read the device leaves unanswered this long, 550 ms, outlasts
    // Aravis's wait for one answer, so Aravis has asked again in vain: the
    // device is lost.
    static const std::chrono::milliseconds LossTimeout;
    // How often the device is asked whether it still answers: 100 ms.
    static const std::chrono::milliseconds ProbePeriod;

    // Takes over the reference on camera, and the sensor that renders the
    // frames of a camera simulated in process, if any.
    explicit Connection(ArvCamera* camera, std::unique_ptr<SimulatedSensor> sensor = nullptr);
    ~Connection();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Runs call(GError**) with the Aravis lock held. call returns a code and
    // stops at the first GError it gets; a GError or a GLib warning makes the
    // result ErrorDevice. A call that may run on the CallQueue owns what it
    // touches: its caller may have gone on when it runs. A read that times
    // out in Aravis marks the device lost; a write that does fails with
    // ErrorNoAnswer. A caller waits for the answer as long as wait.
    TrkErrorType Access(const DeviceCall& call, bool read = true,
                        std::chrono::milliseconds wait = AnswerTimeout);
    // Access for a read of a feature: what it answers is kept, and answered
    // again while the device doesn't answer or once it is lost, so that a
    // host sees the camera as it was last. Without one kept, the read fails
    // with ErrorNoAnswer or ErrorDeviceLost.
    TrkErrorType Read(size_t index, unsigned kind, const ReadCall& read, Reading& answer);

    // Every later call fails with ErrorClosed at once, waiting ones included.
    void BeginClose();
    // Waits for the calls running and releases the Aravis objects; slow for
    // a device that stopped answering.
    void Release();
    bool IsConnected() const { return !m_Lost && !m_Closed; }
    void MarkLost() { m_Lost = true; }
    // True when another program held the device's control channel at
    // opening: features read, writes fail with ErrorReadOnlyAccess.
    bool IsReadOnly() const { return m_ReadOnly; }
    // Asks the device now and then whether it still answers, and marks it
    // lost when a read has waited for longer than LossTimeout.
    void Watch();
    // Aravis's in-process fake camera, or null.
    ArvFakeCamera* FakeCamera() const { return m_Fake; }

    // For other parts of the backend: hold AravisLock() around any use of
    // these, and use them only inside Access.
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
    // Runs call on this thread with the Aravis lock held.
    TrkErrorType Execute(const DeviceCall& call, bool read);
    TrkErrorType CodeOf(const GError* error, bool read);
    static void OnControlLost(ArvDevice* device, gpointer connection);

    std::timed_mutex m_AravisLock;
    ArvCamera* m_Camera;
    ArvDevice* m_Device;
    ArvFakeCamera* m_Fake = nullptr;
    std::unique_ptr<SimulatedSensor> m_Sensor;
    gulong m_ControlLostHandler = 0;
    bool m_ReadOnly = false;
    std::atomic<bool> m_Lost{false};
    std::atomic<bool> m_Closed{false};
    std::vector<NodeInfo> m_Nodes;
    // Null for the in-process fake camera.
    std::unique_ptr<CallQueue> m_Calls;
    // The last answer to each read, by feature and ReadKind.
    std::mutex m_KnownLock;
    std::map<std::pair<size_t, unsigned>, Reading> m_Known;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
