#ifndef TARKACPP_FRAMEPOOL_H
#define TARKACPP_FRAMEPOOL_H

#include <TarkaCPP/Frame.h>

#include <memory>
#include <mutex>
#include <vector>

namespace KST {
namespace TrkAPI {

// The frames a camera fills, a fixed number, each back on the shelf once the
// host lets go of it, so that a running camera doesn't allocate image memory
// again and a host that holds every frame makes the camera drop new ones.
// Frames may outlive the pool.
class FramePool
{
public:
    explicit FramePool(size_t size);

    // A frame nobody else holds, or null while the host holds them all.
    std::shared_ptr<Frame> Take();

private:
    struct Shelf
    {
        std::mutex lock;
        std::vector<std::unique_ptr<Frame>> free;
        size_t made = 0;
        size_t size = 0;
    };

    std::shared_ptr<Shelf> m_Shelf;
};

} // namespace TrkAPI
} // namespace KST

#endif
