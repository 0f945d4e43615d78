#ifndef TARKACPP_FRAME_H
#define TARKACPP_FRAME_H

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace KST {
namespace TrkAPI {

// How the bytes of a frame's row encode its pixels. Mono16 holds one native
// 16-bit word per pixel; the Bayer formats name the colours of the top-left
// 2 x 2 cell, one byte per pixel.
enum class PixelFormat
{
    Mono8,
    Mono16,
    RGB8,
    BayerRG8,
    BayerGR8,
    BayerGB8,
    BayerBG8
};

// Bytes of one pixel in that format.
int BytesPerPixel(PixelFormat format);

// One image from the camera. Rows are stride bytes apart, stride at least
// width times the bytes of a pixel; id is the camera's number of the frame,
// counting up (a gap means frames were lost).
struct Frame
{
    int width = 0;
    int height = 0;
    PixelFormat format = PixelFormat::Mono8;
    std::size_t stride = 0;
    unsigned long long id = 0;
    std::vector<unsigned char> data;
};

// Frames are shared read-only: a host may keep one as long as it wants; the
// camera reuses a frame's memory only once nobody holds it any more.
typedef std::shared_ptr<const Frame> FramePtr;

// Called on a thread of the library for every frame; it should return
// quickly, since the camera drops frames while it runs.
typedef std::function<void(const FramePtr&)> FrameHandler;

} // namespace TrkAPI
} // namespace KST

#endif
