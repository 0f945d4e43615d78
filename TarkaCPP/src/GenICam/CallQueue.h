#ifndef TARKACPP_GENICAM_CALLQUEUE_H
#define TARKACPP_GENICAM_CALLQUEUE_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// The thread that talks to a device over the network, one call at a time.
// A device that stopped answering holds a call for seconds, so a caller
// waits for its answer only so long and then goes on without it; a call
// that has not started by then is dropped. Calls therefore own everything
// they touch. While one call hangs, later calls don't wait at all.
class CallQueue
{
public:
    using Call = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    CallQueue();
    // Stops and joins the thread.
    ~CallQueue();
    CallQueue(const CallQueue&) = delete;
    CallQueue& operator=(const CallQueue&) = delete;

    enum Outcome
    {
        Answered,
        NoAnswer,
        Stopped
    };
    // Runs call on the thread and waits for it to end until the call that
    // runs, this one or one queued before it, has run for timeout. A watched
    // call counts towards Stalled() while it runs.
    Outcome Run(const Call& call, bool watched, std::chrono::milliseconds timeout);
    // Queues a watched call without waiting for it, at most once a period
    // and not while the last one waits or runs.
    void PostEvery(const Call& call, std::chrono::milliseconds period);
    // How long the watched call running now has run; zero without one.
    Clock::duration Stalled();

    // Ends every wait at once; the thread ends after the call it runs.
    void Stop();
    // Waits for the thread to end; after Stop() only.
    void Join();

private:
    struct Job;
    void Serve();

    std::mutex m_Lock;
    std::condition_variable m_Signal;
    std::deque<std::shared_ptr<Job>> m_Jobs;
    std::shared_ptr<Job> m_Running;
    Clock::time_point m_Started;
    std::shared_ptr<Job> m_Posted;
    Clock::time_point m_LastPosted;
    bool m_Stopping = false;
    std::thread m_Thread;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
