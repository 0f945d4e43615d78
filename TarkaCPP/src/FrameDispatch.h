#ifndef TARKACPP_FRAMEDISPATCH_H
#define TARKACPP_FRAMEDISPATCH_H

#include <TarkaCPP/Frame.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace KST {
namespace TrkAPI {

// Hands a camera's frames to the host's handler, one call at a time, and lets
// the host replace the handler once no call of the old one runs any more.
class FrameDispatch
{
public:
    // Waits for a running call to finish unless it is the caller's own.
    void SetHandler(const FrameHandler& handler);
    // Calls the handler, if any, with the frame; false if there was none.
    bool Deliver(const FramePtr& frame);

private:
    std::mutex m_Lock;
    std::condition_variable m_Idle;
    FrameHandler m_Handler;
    bool m_Calling = false;
    std::thread::id m_CallingThread;
};

} // namespace TrkAPI
} // namespace KST

#endif
