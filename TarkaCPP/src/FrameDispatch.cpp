#include "FrameDispatch.h"

namespace KST {
namespace TrkAPI {

void FrameDispatch::SetHandler(const FrameHandler& handler)
{
    FrameHandler previous;
    {
        std::unique_lock<std::mutex> lock(m_Lock);
        if (!m_Calling || m_CallingThread != std::this_thread::get_id()) {
            m_Idle.wait(lock, [this] { return !m_Calling; });
        }
        previous.swap(m_Handler);
        m_Handler = handler;
    }
    // The old handler's captures may hold the last references of something
    // that takes locks of its own: released without ours.
}

bool FrameDispatch::Deliver(const FramePtr& frame)
{
    FrameHandler handler;
    {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_Idle.wait(lock, [this] { return !m_Calling; });
        if (!m_Handler) {
            return false;
        }
        handler = m_Handler;
        m_Calling = true;
        m_CallingThread = std::this_thread::get_id();
    }
    try {
        handler(frame);
    } catch (...) {
        // A host's fault must not end the camera's frame thread.
    }
    handler = nullptr;
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Calling = false;
    }
    m_Idle.notify_all();
    return true;
}

} // namespace TrkAPI
} // namespace KST
