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

QRgb Rgb(quint64 red, quint64 green, quint64 blue)
{
    return qRgb(static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue));
}

QRgb Gray(quint64 value)
{
    return Rgb(value, value, value);
}

// The source units that one output pixel covers along an axis: all of them
// when shrinking, so that they are averaged, and at least one when enlarging.
struct Span
{
    int first;
    int count;
};

std::vector<Span> SpansOf(int units, int outputs)
{
    std::vector<Span> spans(static_cast<size_t>(outputs));
    for (int o = 0; o < outputs; ++o) {
        const int first = static_cast<int>(qint64(o) * units / outputs);
        const int end = static_cast<int>(qint64(o + 1) * units / outputs);
        spans[static_cast<size_t>(o)] = {first, std::max(1, end - first)};
    }
    return spans;
}

// Colour sums of the units of one output pixel.
struct Sums
{
    quint64 red = 0;
    quint64 green = 0;
    quint64 blue = 0;
};

// The units of each format: a pixel, or for Bayer the 2 x 2 cell, which
// keeps the colours in place also in the last row and column of a frame of
// odd size (its lone pixels are left out). Add() sums unit u of the unit row
// whose source lines are given; Pixel() averages count units.
struct Mono8Unit
{
    static const int Size = 1;
    void Add(const unsigned char* const* lines, int u, Sums& sums) const
    {
        sums.red += lines[0][u];
    }
    QRgb Pixel(const Sums& sums, quint64 count) const { return Gray(sums.red / count); }
};

struct Mono16Unit
{
    static const int Size = 1;
    // The upper byte of a native 16-bit word, whatever the byte order.
    void Add(const unsigned char* const* lines, int u, Sums& sums) const
    {
        unsigned short value;
        std::memcpy(&value, lines[0] + 2 * u, sizeof value);
        sums.red += value;
    }
    QRgb Pixel(const Sums& sums, quint64 count) const { return Gray(sums.red / count >> 8); }
};

struct Rgb8Unit
{
    static const int Size = 1;
    void Add(const unsigned char* const* lines, int u, Sums& sums) const
    {
        const unsigned char* pixel = lines[0] + 3 * u;
        sums.red += pixel[0];
        sums.green += pixel[1];
        sums.blue += pixel[2];
    }
    QRgb Pixel(const Sums& sums, quint64 count) const
    {
        return Rgb(sums.red / count, sums.green / count, sums.blue / count);
    }
};

struct BayerUnit
{
    static const int Size = 2;
    BayerCell cell;
    // Green takes both of the cell's greens, so it counts twice.
    void Add(const unsigned char* const* lines, int u, Sums& sums) const
    {
        const int values[4] = {lines[0][2 * u], lines[0][2 * u + 1], lines[1][2 * u],
                               lines[1][2 * u + 1]};
        sums.red += values[cell.red];
        sums.blue += values[cell.blue];
        sums.green +=
            values[0] + values[1] + values[2] + values[3] - values[cell.red] - values[cell.blue];
    }
    QRgb Pixel(const Sums& sums, quint64 count) const
    {
        return Rgb(sums.red / count, sums.green / (2 * count), sums.blue / count);
    }
};

// Each output pixel is the mean of the units it covers.
template <typename Unit>
void Resample(const Frame& frame, const Unit& unit, QImage& image)
{
    const std::vector<Span> across = SpansOf(frame.width / Unit::Size, image.width());
    const std::vector<Span> down = SpansOf(frame.height / Unit::Size, image.height());
    std::vector<Sums> sums(across.size());
    for (int y = 0; y < image.height(); ++y) {
        std::fill(sums.begin(), sums.end(), Sums());
        const Span rows = down[static_cast<size_t>(y)];
        for (int v = rows.first; v < rows.first + rows.count; ++v) {
            const unsigned char* top =
                frame.data.data() + static_cast<size_t>(v) * Unit::Size * frame.stride;
            const unsigned char* lines[2] = {top, top + (Unit::Size - 1) * frame.stride};
            for (size_t x = 0; x < across.size(); ++x) {
                Sums sum = sums[x];
                for (int u = across[x].first; u < across[x].first + across[x].count; ++u) {
                    unit.Add(lines, u, sum);
                }
                sums[x] = sum;
            }
        }
        QRgb* out = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (size_t x = 0; x < across.size(); ++x) {
            out[x] = unit.Pixel(sums[x], quint64(across[x].count) * quint64(rows.count));
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
    switch (frame.format) {
    case PixelFormat::Mono8:
        Resample(frame, Mono8Unit(), image);
        break;
    case PixelFormat::Mono16:
        Resample(frame, Mono16Unit(), image);
        break;
    case PixelFormat::RGB8:
        Resample(frame, Rgb8Unit(), image);
        break;
    default:
        Resample(frame, BayerUnit{CellOf(frame.format)}, image);
        break;
    }
    return image;
}
