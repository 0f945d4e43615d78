#include <TarkaCPP/Mutex.h>

#include <thread>

namespace KST {
namespace TrkAPI {

namespace {

// Spins this often before giving the processor away; holders keep the lock
// for a count update only.
const int SpinsBeforeYield = 64;

} // namespace

void Mutex::WaitAndLock()
{
    int spins = 0;
    do {
        while (m_Locked.load(std::memory_order_relaxed)) {
            if (++spins >= SpinsBeforeYield) {
                spins = 0;
                std::this_thread::yield();
            }
        }
    } while (m_Locked.exchange(true, std::memory_order_acquire));
}

} // namespace TrkAPI
} // namespace KST
