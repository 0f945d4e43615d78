#ifndef TARKACPP_GENICAM_TEARDOWN_H
#define TARKACPP_GENICAM_TEARDOWN_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// The thread of the library that releases closed cameras: Aravis's objects
// of a device that no longer answers take seconds to let go, which no caller
// should wait for. What is queued when the process ends is still released.
class Teardown
{
public:
    // Queues task for the thread, which is started on first use.
    static void Run(std::function<void()> task);

    ~Teardown();
    Teardown(const Teardown&) = delete;
    Teardown& operator=(const Teardown&) = delete;

private:
    Teardown();
    void Serve();

    std::mutex m_Lock;
    std::condition_variable m_Signal;
    std::deque<std::function<void()>> m_Tasks;
    bool m_Ending = false;
    std::thread m_Thread;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
