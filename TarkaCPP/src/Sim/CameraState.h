#ifndef TARKACPP_SIM_CAMERASTATE_H
#define TARKACPP_SIM_CAMERASTATE_H

#include "../ObserverRegistry.h"
#include "FeatureDescription.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace Sim {

const int OpCount = static_cast<int>(Op::UnregisterObserver) + 1;

// Everything a camera knows about one feature: its description with the
// current values, and what changes at run time besides.
struct FeatureEntry : FeatureDescription
{
    std::set<std::string> unavailable;
    Rule commandAction;
    std::array<int, OpCount> calls{};
    std::map<Op, TrkErrorType> failures;
    Misreport misreport;
};

// An action that the notifier runs every period.
struct PeriodicAction
{
    std::chrono::milliseconds period;
    std::chrono::steady_clock::time_point due;
    Rule action;
};

// The state that a camera's features share with it and with its notifier
// thread. Every member is guarded by m_Lock, which is never held while an
// observer is called.
class CameraState
{
public:
    std::mutex m_Lock;
    // Signalled whenever the queue, a delivery or the stop flag changes.
    std::condition_variable m_Signal;

    std::vector<std::unique_ptr<FeatureEntry>> m_Entries;
    std::map<std::string, size_t> m_Index;
    std::vector<Rule> m_Rules;
    std::vector<PeriodicAction> m_PeriodicActions;

    ObserverRegistry m_Observers{m_Signal};

    // Features changed by the change in progress, with m_Lock held.
    std::set<size_t> m_Touched;
    unsigned long long m_ChangeCount = 0;
    bool m_Journaling = false;
    std::vector<std::pair<std::string, Op>> m_Journal;

    // These expect m_Lock to be held.
    size_t IndexOf(const std::string& name) const;
    FeatureEntry& Entry(const std::string& name);
    FeatureEntry& Entry(const std::string& name, TrkFeatureDataType type);
    FeatureEntry& Entry(const std::string& name, TrkFeatureDataType type, TrkFeatureDataType alt);
    void Add(const FeatureDescription& description);
    void Touch(const FeatureEntry& entry);
    // Reading and changing as the camera; changes are neither applied nor queued.
    CameraAccess Access() { return CameraAccess(*this); }

    // Counts the call and tells the injected failure, if any, once a test
    // hook is set.
    TrkErrorType Enter(size_t index, Op op);
    // Read without the lock: calls skip the bookkeeping until a hook is set.
    bool HooksActive() const { return m_HooksActive.load(std::memory_order_relaxed); }
    void ActivateHooks() { m_HooksActive.store(true, std::memory_order_relaxed); }

    // Runs change, then the rules until nothing moves, and queues the
    // written feature (if any) and every feature that changed.
    void Apply(const Rule& change, size_t written);
    void RunRules();
    void QueueTouched(size_t written);
    // Moves an unsteady value on before a read.
    void MoveOn(size_t index);

    // Writes through a feature: counted and failure-injected under op,
    // refused when check rejects it (for its type or value) or when read
    // only, then stored and applied as above.
    template <class Check, class Store>
    TrkErrorType Write(size_t index, Op op, Check check, Store store);

    static const size_t NoFeature = static_cast<size_t>(-1);

private:
    std::atomic<bool> m_HooksActive{false};
};

template <class Check, class Store>
TrkErrorType CameraState::Write(size_t index, Op op, Check check, Store store)
{
    std::unique_lock<std::mutex> lock(m_Lock);
    if (TrkErrorType code = Enter(index, op)) {
        return code;
    }
    FeatureEntry& entry = *m_Entries[index];
    if (TrkErrorType code = check(entry)) {
        return code;
    }
    if (!entry.writable) {
        return ErrorNotWritable;
    }
    Apply([&](CameraAccess& access) { store(entry, access); }, index);
    lock.unlock();
    m_Signal.notify_all();
    return Success;
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
