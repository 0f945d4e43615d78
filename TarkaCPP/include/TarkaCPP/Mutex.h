#ifndef TARKACPP_MUTEX_H
#define TARKACPP_MUTEX_H

namespace KST {
namespace TrkAPI {

// The library's own lock, used by the reference counters of shared_ptr.
// Not recursive.
class Mutex
{
public:
    // Starts locked when initiallyLocked is true.
    explicit Mutex(bool initiallyLocked);
    ~Mutex();

    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void Lock();
    void Unlock();

private:
    void* m_Handle;
};

} // namespace TrkAPI
} // namespace KST

#endif
