#include "ObserverRegistry.h"

#include <TarkaCPP/ErrorCode.h>

#include <algorithm>

namespace KST {
namespace TrkAPI {

ObserverRegistry::ObserverRegistry(std::condition_variable& signal) : m_Signal(signal) {}

void ObserverRegistry::Resize(size_t featureCount)
{
    m_Observers.resize(featureCount);
}

bool ObserverRegistry::IsRegistered(size_t index, const IFeatureObserverPtr& observer) const
{
    const std::vector<IFeatureObserverPtr>& observers = m_Observers[index];
    return std::find(observers.begin(), observers.end(), observer) != observers.end();
}

std::vector<size_t> ObserverRegistry::Watched() const
{
    std::vector<size_t> watched;
    for (size_t index = 0; index < m_Observers.size(); ++index) {
        if (IsWatched(index)) {
            watched.push_back(index);
        }
    }
    return watched;
}

TrkErrorType ObserverRegistry::Register(size_t index, const IFeatureObserverPtr& observer)
{
    if (!observer) {
        return ErrorInvalidArgument;
    }
    if (IsRegistered(index, observer)) {
        return ErrorAlreadyRegistered;
    }
    m_Observers[index].push_back(observer);
    return Success;
}

TrkErrorType ObserverRegistry::Unregister(std::unique_lock<std::mutex>& lock, size_t index,
                                          const IFeatureObserverPtr& observer,
                                          IFeatureObserverPtr& removed)
{
    std::vector<IFeatureObserverPtr>& observers = m_Observers[index];
    std::vector<IFeatureObserverPtr>::iterator found =
        std::find(observers.begin(), observers.end(), observer);
    if (!observer || found == observers.end()) {
        return ErrorNotRegistered;
    }
    removed = *found;
    observers.erase(found);
    // The notifier itself can't wait for its own call to end.
    if (!OnNotifierThread()) {
        m_Signal.wait(lock, [&] { return m_Delivering != observer.get(); });
    }
    return Success;
}

void ObserverRegistry::Queue(size_t index)
{
    if (m_Stopped || !IsWatched(index)) {
        return;
    }
    m_Queue.push_back(Notification{index, m_Observers[index]});
    ++m_Queued;
}

void ObserverRegistry::DeliverNext(std::unique_lock<std::mutex>& lock,
                                   const std::vector<FeaturePtr>& features)
{
    Notification notification = std::move(m_Queue.front());
    m_Queue.pop_front();
    FeaturePtr feature = features[notification.index];
    for (const IFeatureObserverPtr& observer : notification.observers) {
        // Those unregistered since the change are no longer told.
        if (!IsRegistered(notification.index, observer)) {
            continue;
        }
        m_Delivering = observer.get();
        lock.unlock();
        try {
            observer->FeatureChanged(feature);
        } catch (...) {
            // An observer's fault must not stop the notifications of others.
        }
        lock.lock();
        m_Delivering = nullptr;
        m_Signal.notify_all();
    }
    // The last references may go here; never under the lock.
    lock.unlock();
    feature.reset();
    notification.observers.clear();
    lock.lock();
    ++m_Done;
    m_Signal.notify_all();
}

void ObserverRegistry::Stop(std::deque<Notification>& dropped)
{
    m_Stopped = true;
    dropped.swap(m_Queue);
    m_Done = m_Queued;
    m_Signal.notify_all();
}

} // namespace TrkAPI
} // namespace KST
