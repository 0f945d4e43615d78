#include "FramePool.h"

namespace KST {
namespace TrkAPI {

FramePool::FramePool(size_t size) : m_Shelf(std::make_shared<Shelf>())
{
    m_Shelf->size = size;
    // Putting a frame back never allocates.
    m_Shelf->free.reserve(size);
}

std::shared_ptr<Frame> FramePool::Take()
{
    std::unique_ptr<Frame> frame;
    {
        std::lock_guard<std::mutex> lock(m_Shelf->lock);
        if (!m_Shelf->free.empty()) {
            frame = std::move(m_Shelf->free.back());
            m_Shelf->free.pop_back();
        } else if (m_Shelf->made < m_Shelf->size) {
            frame.reset(new Frame);
            ++m_Shelf->made;
        } else {
            return nullptr;
        }
    }
    // The host's last reference puts the frame back; the lock orders the
    // host's reads before the camera's next writes.
    std::shared_ptr<Shelf> shelf = m_Shelf;
    return std::shared_ptr<Frame>(frame.release(), [shelf](Frame* returned) {
        std::lock_guard<std::mutex> lock(shelf->lock);
        shelf->free.emplace_back(returned);
    });
}

} // namespace TrkAPI
} // namespace KST
