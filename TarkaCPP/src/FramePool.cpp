#include "FramePool.h"

namespace KST {
namespace TrkAPI {

std::shared_ptr<Frame> FramePool::Take()
{
    // Only the pool and its producer touch a frame nobody else holds, so a
    // count of one can't grow behind our back.
    for (const std::shared_ptr<Frame>& frame : m_Frames) {
        if (frame.use_count() == 1) {
            return frame;
        }
    }
    if (m_Frames.size() >= m_Size) {
        return nullptr;
    }
    m_Frames.push_back(std::make_shared<Frame>());
    return m_Frames.back();
}

} // namespace TrkAPI
} // namespace KST
