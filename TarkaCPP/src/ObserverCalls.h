#ifndef TARKACPP_OBSERVERCALLS_H
#define TARKACPP_OBSERVERCALLS_H

#include <TarkaCPP/Feature.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <vector>

namespace KST {
namespace TrkAPI {

// Calls each observer of a notification that current, the feature's observers
// now, still holds. lock is held on entry and on return but not during a
// call; delivering names the observer being called, so that unregistering
// can wait for it, and signal tells when that call is over.
inline void CallObservers(std::unique_lock<std::mutex>& lock, std::condition_variable& signal,
                          IFeatureObserver*& delivering,
                          const std::vector<IFeatureObserverPtr>& observers,
                          const std::vector<IFeatureObserverPtr>& current,
                          const FeaturePtr& feature)
{
    for (const IFeatureObserverPtr& observer : observers) {
        if (std::find(current.begin(), current.end(), observer) == current.end()) {
            continue;
        }
        delivering = observer.get();
        lock.unlock();
        try {
            observer->FeatureChanged(feature);
        } catch (...) {
            // An observer's fault must not stop the notifications of others.
        }
        lock.lock();
        delivering = nullptr;
        signal.notify_all();
    }
}

} // namespace TrkAPI
} // namespace KST

#endif
