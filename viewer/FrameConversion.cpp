#include "FrameConversion.h"

#include <algorithm>
#include <cstring>
#include <vector>

using KST::TrkAPI::Frame;
using KST::TrkAPI::PixelFormat;

namespace {

// Where red and blue sit in a Bayer format's 2 x 2 cell, as x + 2 y; green
// takes the other two places.
struct BayerCell
{
    int red;
    int blue;
};

BayerCell CellOf(PixelFormat format)
{
    switch (format) {
    case PixelFormat::BayerGR8:
        return {1, 2};
    case PixelFormat::BayerGB8:
        return {2, 1};
    case PixelFormat::BayerBG8:
        return {3, 0};
    default:
        return {0, 3};
    }
}

bool IsBayer(PixelFormat format)
{
    return format == PixelFormat::BayerRG8 || format == PixelFormat::BayerGR8 ||
           format == PixelFormat::BayerGB8 || format == PixelFormat::BayerBG8;
}

QRgb Gray(int value)
{
    return qRgb(value, value, value);
}

// One output row from the source row y, sampling the columns in columns.
void ConvertRow(const Frame& frame, int y, const std::vector<int>& columns, QRgb* out)
{
    const unsigned char* row = frame.data.data() + static_cast<size_t>(y) * frame.stride;
    const size_t width = columns.size();
    switch (frame.format) {
    case PixelFormat::Mono8:
        for (size_t i = 0; i < width; ++i) {
            out[i] = Gray(row[columns[i]]);
        }
        break;
    case PixelFormat::Mono16:
        // The upper byte of a native 16-bit word, whatever the byte order.
        for (size_t i = 0; i < width; ++i) {
            unsigned short value;
            std::memcpy(&value, row + 2 * columns[i], sizeof value);
            out[i] = Gray(value >> 8);
        }
        break;
    case PixelFormat::RGB8:
        for (size_t i = 0; i < width; ++i) {
            const unsigned char* pixel = row + 3 * columns[i];
            out[i] = qRgb(pixel[0], pixel[1], pixel[2]);
        }
        break;
    default: {
        const BayerCell cell = CellOf(frame.format);
        const int top = std::min(y & ~1, frame.height - 2);
        const unsigned char* rows[2] = {frame.data.data() + static_cast<size_t>(top) * frame.stride,
                                        frame.data.data() +
                                            static_cast<size_t>(top + 1) * frame.stride};
        for (size_t i = 0; i < width; ++i) {
            const int left = std::min(columns[i] & ~1, frame.width - 2);
            const int values[4] = {rows[0][left], rows[0][left + 1], rows[1][left],
                                   rows[1][left + 1]};
            const int green = (values[0] + values[1] + values[2] + values[3] - values[cell.red] -
                               values[cell.blue]) /
                              2;
            out[i] = qRgb(values[cell.red], green, values[cell.blue]);
        }
        break;
    }
    }
}

bool IsValid(const Frame& frame)
{
    const int minimum = IsBayer(frame.format) ? 2 : 1;
    return frame.width >= minimum && frame.height >= minimum &&
           frame.stride >= static_cast<size_t>(frame.width) *
                               static_cast<size_t>(KST::TrkAPI::BytesPerPixel(frame.format)) &&
           frame.data.size() >= frame.stride * static_cast<size_t>(frame.height);
}

} // namespace

QSize FitInto(const QSize& image, const QSize& bounds)
{
    if (image.isEmpty() || bounds.isEmpty()) {
        return QSize();
    }
    return image.scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QImage ConvertFrame(const Frame& frame, const QSize& bounds)
{
    const QSize size = FitInto(QSize(frame.width, frame.height), bounds);
    if (size.isEmpty() || !IsValid(frame)) {
        return QImage();
    }
    QImage image(size, QImage::Format_RGB32);
    std::vector<int> columns(size.width());
    for (int x = 0; x < size.width(); ++x) {
        columns[x] = static_cast<int>((x + 0.5) * frame.width / size.width());
    }
    for (int y = 0; y < size.height(); ++y) {
        const int source = static_cast<int>((y + 0.5) * frame.height / size.height());
        ConvertRow(frame, source, columns, reinterpret_cast<QRgb*>(image.scanLine(y)));
    }
    return image;
}
