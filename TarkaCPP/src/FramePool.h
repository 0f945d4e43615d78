#ifndef TARKACPP_FRAMEPOOL_H
#define TARKACPP_FRAMEPOOL_H

#include <TarkaCPP/Frame.h>

#include <memory>
#include <vector>

namespace KST {
namespace TrkAPI {

// The frames a camera fills, a fixed number, each reused once the host has
// let go of it, so that a running camera allocates nothing and a host that
// holds frames makes the camera drop new ones. For one producer thread.
class FramePool
{
public:
    explicit FramePool(size_t size) : m_Size(size) {}

    // A frame nobody else holds, or null while the host holds them all.
    std::shared_ptr<Frame> Take();

private:
    size_t m_Size;
    std::vector<std::shared_ptr<Frame>> m_Frames;
};

} // namespace TrkAPI
} // namespace KST

#endif
