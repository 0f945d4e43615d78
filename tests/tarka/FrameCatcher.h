#ifndef FRAMECATCHER_H
#define FRAMECATCHER_H

#include <TarkaCPP/Frame.h>

#include <chrono>
#include <mutex>
#include <thread>

// A camera's frame handler that keeps the last frame and counts them all.
class FrameCatcher
{
public:
    KST::TrkAPI::FrameHandler Handler()
    {
        return [this](const KST::TrkAPI::FramePtr& frame) {
            std::lock_guard<std::mutex> guard(m_Lock);
            m_Last = frame;
            ++m_Count;
        };
    }
    KST::TrkAPI::FramePtr Last()
    {
        std::lock_guard<std::mutex> guard(m_Lock);
        return m_Last;
    }
    int Count()
    {
        std::lock_guard<std::mutex> guard(m_Lock);
        return m_Count;
    }
    // Whether count frames in all came within a bound.
    bool AwaitCount(int count)
    {
        const auto limit = std::chrono::steady_clock::now() + WaitLimit;
        while (Count() < count && std::chrono::steady_clock::now() < limit) {
            std::this_thread::sleep_for(PollInterval);
        }
        return Count() >= count;
    }

private:
    static constexpr std::chrono::seconds WaitLimit{30};
    static constexpr std::chrono::milliseconds PollInterval{10};

    std::mutex m_Lock;
    KST::TrkAPI::FramePtr m_Last;
    int m_Count = 0;
};

#endif
