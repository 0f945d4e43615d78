#ifndef TARKACPP_MUTEX_H
#define TARKACPP_MUTEX_H

#include <atomic>

namespace KST {
namespace TrkAPI {

// The library's own lock, used by the reference counters of shared_ptr.
// Not recursive. It guards a few instructions at a time, so taking it free
// costs one atomic exchange, inline; a taken lock is waited for out of line.
class Mutex
{
public:
    // Starts locked when initiallyLocked is true.
    explicit Mutex(bool initiallyLocked) : m_Locked(initiallyLocked) {}
    ~Mutex() {}

    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock()
    {
        if (m_Locked.exchange(true, std::memory_order_acquire)) {
            WaitAndLock();
        }
    }
    void Unlock() { m_Locked.store(false, std::memory_order_release); }

private:
    void WaitAndLock();

    std::atomic<bool> m_Locked;
};

} // namespace TrkAPI
} // namespace KST

#endif
