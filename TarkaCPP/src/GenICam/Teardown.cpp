#include "Teardown.h"

namespace KST {
namespace TrkAPI {
namespace GenICam {

void Teardown::Run(std::function<void()> task)
{
    static Teardown thread;
    {
        std::lock_guard<std::mutex> lock(thread.m_Lock);
        thread.m_Tasks.push_back(std::move(task));
    }
    thread.m_Signal.notify_all();
}

Teardown::Teardown() : m_Thread(&Teardown::Serve, this) {}

Teardown::~Teardown()
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Ending = true;
    }
    m_Signal.notify_all();
    m_Thread.join();
}

void Teardown::Serve()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (true) {
        m_Signal.wait(lock, [this] { return m_Ending || !m_Tasks.empty(); });
        if (m_Tasks.empty()) {
            return;
        }
        std::function<void()> task = std::move(m_Tasks.front());
        m_Tasks.pop_front();
        lock.unlock();
        task();
        // The task's captures go before the next one starts.
        task = nullptr;
        lock.lock();
    }
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
