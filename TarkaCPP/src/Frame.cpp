#include <TarkaCPP/Frame.h>

namespace KST {
namespace TrkAPI {

int BytesPerPixel(PixelFormat format)
{
    switch (format) {
    case PixelFormat::Mono16:
        return 2;
    case PixelFormat::RGB8:
        return 3;
    default:
        return 1;
    }
}

} // namespace TrkAPI
} // namespace KST
