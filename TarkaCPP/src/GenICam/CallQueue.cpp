#include "CallQueue.h"

namespace KST {
namespace TrkAPI {
namespace GenICam {

struct CallQueue::Job
{
    Call call;
    bool watched = false;
    bool done = false;
};

CallQueue::CallQueue() : m_Thread(&CallQueue::Serve, this) {}

CallQueue::~CallQueue()
{
    Stop();
    Join();
}

CallQueue::Outcome CallQueue::Run(const Call& call, bool watched, std::chrono::milliseconds timeout)
{
    std::shared_ptr<Job> job = std::make_shared<Job>();
    job->call = call;
    job->watched = watched;
    std::unique_lock<std::mutex> lock(m_Lock);
    if (m_Stopping) {
        return Stopped;
    }
    if (m_Running && Clock::now() - m_Started >= timeout) {
        return NoAnswer;
    }
    m_Jobs.push_back(job);
    m_Signal.notify_all();
    // The call that runs, this one or one before it, has timeout to end.
    while (!job->done && !m_Stopping) {
        const Clock::time_point deadline = (m_Running ? m_Started : Clock::now()) + timeout;
        if (m_Signal.wait_until(lock, deadline) == std::cv_status::timeout &&
            (!m_Running || Clock::now() - m_Started >= timeout)) {
            break;
        }
    }
    if (job->done) {
        return Answered;
    }
    // Not started yet: it never will be.
    for (auto queued = m_Jobs.begin(); queued != m_Jobs.end(); ++queued) {
        if (*queued == job) {
            m_Jobs.erase(queued);
            break;
        }
    }
    return m_Stopping ? Stopped : NoAnswer;
}

void CallQueue::PostEvery(const Call& call, std::chrono::milliseconds period)
{
    std::lock_guard<std::mutex> lock(m_Lock);
    const Clock::time_point now = Clock::now();
    if (m_Stopping || (m_Posted && !m_Posted->done) || now - m_LastPosted < period) {
        return;
    }
    m_Posted = std::make_shared<Job>();
    m_Posted->call = call;
    m_Posted->watched = true;
    m_LastPosted = now;
    m_Jobs.push_back(m_Posted);
    m_Signal.notify_all();
}

CallQueue::Clock::duration CallQueue::Stalled()
{
    std::lock_guard<std::mutex> lock(m_Lock);
    return m_Running && m_Running->watched ? Clock::now() - m_Started : Clock::duration::zero();
}

void CallQueue::Stop()
{
    std::lock_guard<std::mutex> lock(m_Lock);
    m_Stopping = true;
    m_Jobs.clear();
    m_Signal.notify_all();
}

void CallQueue::Join()
{
    if (m_Thread.joinable()) {
        m_Thread.join();
    }
}

void CallQueue::Serve()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (true) {
        m_Signal.wait(lock, [this] { return m_Stopping || !m_Jobs.empty(); });
        if (m_Stopping) {
            return;
        }
        m_Running = m_Jobs.front();
        m_Jobs.pop_front();
        m_Started = Clock::now();
        m_Signal.notify_all();
        lock.unlock();
        m_Running->call();
        lock.lock();
        m_Running->done = true;
        // The call's captures go here, with the lock released.
        std::shared_ptr<Job> finished;
        finished.swap(m_Running);
        m_Signal.notify_all();
        lock.unlock();
        finished.reset();
        lock.lock();
    }
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
