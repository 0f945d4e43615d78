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

std::vector<Registration>::const_iterator
ObserverRegistry::Find(size_t index, const IFeatureObserverPtr& observer) const
{
    const std::vector<Registration>& registrations = m_Observers[index];
    return std::find_if(registrations.begin(), registrations.end(),
                        [&](const Registration& entry) { return entry.observer == observer; });
}

IFeatureObserverPtr ObserverRegistry::Current(size_t index, unsigned long long number) const
{
    for (const Registration& entry : m_Observers[index]) {
        if (entry.number == number) {
            return entry.observer;
        }
    }
    return IFeatureObserverPtr();
}

bool ObserverRegistry::IsRegistered(size_t index, const IFeatureObserverPtr& observer) const
{
    return Find(index, observer) != m_Observers[index].end();
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
    m_Observers[index].push_back(Registration{++m_Registrations, observer});
    return Success;
}

TrkErrorType ObserverRegistry::Unregister(std::unique_lock<std::mutex>& lock, size_t index,
                                          const IFeatureObserverPtr& observer,
                                          IFeatureObserverPtr& removed)
{
    std::vector<Registration>::const_iterator found = Find(index, observer);
    if (!observer || found == m_Observers[index].end()) {
        return ErrorNotRegistered;
    }
    removed = found->observer;
    m_Observers[index].erase(found);
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
    Notification notification{index, {}};
    for (const Registration& entry : m_Observers[index]) {
        notification.registrations.push_back(entry.number);
    }
    m_Queue.push_back(std::move(notification));
    ++m_Queued;
}

void ObserverRegistry::DeliverNext(std::unique_lock<std::mutex>& lock,
                                   const std::vector<FeaturePtr>& features)
{
    Notification notification = std::move(m_Queue.front());
    m_Queue.pop_front();
    FeaturePtr feature = features[notification.index];
    for (unsigned long long number : notification.registrations) {
        // Those unregistered since the change are no longer told.
        IFeatureObserverPtr observer = Current(notification.index, number);
        if (!observer) {
            continue;
        }
        m_Delivering = observer.get();
        lock.unlock();
        try {
            observer->FeatureChanged(feature);
        } catch (...) {
            // An observer's fault must not stop the notifications of others.
        }
        // Not the last reference: unregistering holds one until m_Delivering
        // is cleared, unless the observer unregistered itself on this thread.
        observer.reset();
        lock.lock();
        m_Delivering = nullptr;
        m_Signal.notify_all();
    }
    lock.unlock();
    feature.reset();
    lock.lock();
    ++m_Done;
    m_Signal.notify_all();
}

void ObserverRegistry::Stop()
{
    m_Stopped = true;
    m_Queue.clear();
    m_Done = m_Queued;
    m_Signal.notify_all();
}
} // namespace TrkAPI
} // namespace KST
