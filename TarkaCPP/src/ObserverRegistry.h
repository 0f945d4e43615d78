#ifndef TARKACPP_OBSERVERREGISTRY_H
#define TARKACPP_OBSERVERREGISTRY_H

#include <TarkaCPP/Feature.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace KST {
namespace TrkAPI {

// An observer as registered, numbered so that a notification can name it
// without keeping it alive.
struct Registration
{
    unsigned long long number;
    IFeatureObserverPtr observer;
};

// A change waiting for the notifier, with the registrations current when it
// happened; those removed since are skipped. It holds no references, so an
// observer is never released by the notifier after its owner let it go.
struct Notification
{
    size_t index;
    std::vector<unsigned long long> registrations;
};

// The observers of a camera's features, by feature index, and the
// notifications waiting for them: the features register and unregister, the
// camera queues changes, and its notifier thread delivers them.
//
// Guarded by the lock of the camera's state, which every member function
// expects held and which is never held while an observer is called; the
// registry notifies the camera's signal whenever a delivery ends or it stops.
class ObserverRegistry
{
public:
    explicit ObserverRegistry(std::condition_variable& signal);

    void Resize(size_t featureCount);
    bool IsWatched(size_t index) const { return !m_Observers[index].empty(); }
    bool IsRegistered(size_t index, const IFeatureObserverPtr& observer) const;
    int Count(size_t index) const { return static_cast<int>(m_Observers[index].size()); }
    std::vector<size_t> Watched() const;

    TrkErrorType Register(size_t index, const IFeatureObserverPtr& observer);
    // Hands the library's reference over in removed, for the caller to drop
    // after the lock; waits for a call to the observer in progress, unless
    // called from the notifier thread itself.
    TrkErrorType Unregister(std::unique_lock<std::mutex>& lock, size_t index,
                            const IFeatureObserverPtr& observer, IFeatureObserverPtr& removed);

    // Queues a change of the feature for its observers now, if any.
    void Queue(size_t index);
    bool HasQueued() const { return !m_Queue.empty(); }
    // Calls the observers of the oldest notification with its feature from
    // features; the lock is released during the calls and while the last
    // references may go.
    void DeliverNext(std::unique_lock<std::mutex>& lock, const std::vector<FeaturePtr>& features);
    // Every notification queued so far, and every one delivered or dropped.
    unsigned long long Queued() const { return m_Queued; }
    unsigned long long Done() const { return m_Done; }

    // Called by the notifier thread as it starts.
    void SetNotifierThread() { m_NotifierThread = std::this_thread::get_id(); }
    bool OnNotifierThread() const { return std::this_thread::get_id() == m_NotifierThread; }
    // Drops what waits and queues nothing more.
    void Stop();
    bool IsStopped() const { return m_Stopped; }

private:
    std::vector<Registration>::const_iterator Find(size_t index,
                                                   const IFeatureObserverPtr& observer) const;
    IFeatureObserverPtr Current(size_t index, unsigned long long number) const;

    std::condition_variable& m_Signal;
    std::vector<std::vector<Registration>> m_Observers;
    unsigned long long m_Registrations = 0;
    std::deque<Notification> m_Queue;
    unsigned long long m_Queued = 0;
    unsigned long long m_Done = 0;
    bool m_Stopped = false;
    std::thread::id m_NotifierThread;
    // The observer being called right now, so that unregistering can wait.
    IFeatureObserver* m_Delivering = nullptr;
};

} // namespace TrkAPI
} // namespace KST

#endif
