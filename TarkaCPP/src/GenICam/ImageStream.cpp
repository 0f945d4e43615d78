#include "ImageStream.h"

#include "Connection.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <algorithm>
#include <chrono>
#include <cstring>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

// Buffers the stream fills; frames the host may hold.
const int StreamBuffers = 4;
const size_t PoolFrames = 4;
// A stream is set up once per camera, and a GigE Vision device may first
// try out packet sizes: far longer than an answer takes.
const std::chrono::milliseconds StreamSetUpTimeout(5000);
// How long the thread waits for an image before it looks whether to stop.
const guint64 PopTimeoutUs = 100000;
// No image is larger: 64 megapixels of 32 bits.
const size_t LargestBuffer = static_cast<size_t>(256) << 20;

struct FormatOf
{
    ArvPixelFormat aravis;
    PixelFormat frame;
    // Significant bits of a 16-bit pixel, moved up to fill the word.
    int bits;
};

const FormatOf Formats[] = {
    {ARV_PIXEL_FORMAT_MONO_8, PixelFormat::Mono8, 8},
    {ARV_PIXEL_FORMAT_MONO_10, PixelFormat::Mono16, 10},
    {ARV_PIXEL_FORMAT_MONO_12, PixelFormat::Mono16, 12},
    {ARV_PIXEL_FORMAT_MONO_16, PixelFormat::Mono16, 16},
    {ARV_PIXEL_FORMAT_RGB_8_PACKED, PixelFormat::RGB8, 8},
    {ARV_PIXEL_FORMAT_BAYER_RG_8, PixelFormat::BayerRG8, 8},
    {ARV_PIXEL_FORMAT_BAYER_GR_8, PixelFormat::BayerGR8, 8},
    {ARV_PIXEL_FORMAT_BAYER_GB_8, PixelFormat::BayerGB8, 8},
    {ARV_PIXEL_FORMAT_BAYER_BG_8, PixelFormat::BayerBG8, 8},
};

const FormatOf* Find(ArvPixelFormat format)
{
    for (const FormatOf& known : Formats) {
        if (known.aravis == format) {
            return &known;
        }
    }
    return nullptr;
}

// The payload size the camera asks for now; 0 if it can't be read.
size_t Payload(Connection& connection)
{
    std::shared_ptr<guint> payload = std::make_shared<guint>(0);
    ArvCamera* camera = connection.AravisCamera();
    connection.Access([camera, payload](GError** error) {
        *payload = arv_camera_get_payload(camera, error);
        return Success;
    });
    return *payload;
}

} // namespace

std::unique_ptr<ImageStream> ImageStream::Open(const std::shared_ptr<Connection>& connection,
                                               FrameDispatch& frames, std::string* error)
{
    // Shared with the call, which may end after this function: a stream
    // made too late goes with the last reference.
    std::shared_ptr<ArvStream*> made(new ArvStream*(nullptr), [](ArvStream** slot) {
        if (*slot != nullptr) {
            g_object_unref(*slot);
        }
        delete slot;
    });
    ArvCamera* camera = connection->AravisCamera();
    // Not a read: a device slow to set up its stream is not lost for that.
    const TrkErrorType code = connection->Access(
        [camera, made](GError** failure) {
            *made = arv_camera_create_stream(camera, nullptr, nullptr, failure);
            return Success;
        },
        false, StreamSetUpTimeout);
    ArvStream* stream = code == Success ? *made : nullptr;
    if (stream == nullptr) {
        if (error) {
            *error = "the camera has no image stream";
        }
        return nullptr;
    }
    *made = nullptr;
    return std::unique_ptr<ImageStream>(new ImageStream(connection, frames, stream));
}

ImageStream::ImageStream(const std::shared_ptr<Connection>& connection, FrameDispatch& frames,
                         ArvStream* stream)
    : m_Connection(connection), m_Frames(frames), m_Stream(stream),
      m_Fake(connection->FakeCamera()), m_Pool(PoolFrames)
{
    const size_t payload = Payload(*m_Connection);
    for (int i = 0; i < StreamBuffers; ++i) {
        arv_stream_push_buffer(m_Stream, arv_buffer_new_allocate(payload));
    }
    m_Thread = std::thread(&ImageStream::Run, this);
}

ImageStream::~ImageStream()
{
    m_Stopping = true;
    m_Thread.join();
    // Releasing the stream ends Aravis's own thread and frees its buffers.
    std::lock_guard<std::timed_mutex> lock(m_Connection->AravisLock());
    g_object_unref(m_Stream);
}

void ImageStream::Run()
{
    while (!m_Stopping) {
        ArvBuffer* buffer = arv_stream_timeout_pop_buffer(m_Stream, PopTimeoutUs);
        if (buffer == nullptr) {
            continue;
        }
        const ArvBufferStatus status = arv_buffer_get_status(buffer);
        if (status == ARV_BUFFER_STATUS_SIZE_MISMATCH) {
            Replace(buffer);
            continue;
        }
        FramePtr frame =
            status == ARV_BUFFER_STATUS_SUCCESS && Acquiring() ? Copy(buffer) : nullptr;
        arv_stream_push_buffer(m_Stream, buffer);
        if (frame) {
            m_Frames.Deliver(frame);
        }
    }
}

FramePtr ImageStream::Copy(ArvBuffer* buffer)
{
    const ArvBufferPayloadType payload = arv_buffer_get_payload_type(buffer);
    if (payload != ARV_BUFFER_PAYLOAD_TYPE_IMAGE &&
        payload != ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA) {
        return nullptr;
    }
    const FormatOf* format = Find(arv_buffer_get_image_pixel_format(buffer));
    const int width = arv_buffer_get_image_width(buffer);
    const int height = arv_buffer_get_image_height(buffer);
    if (format == nullptr || width <= 0 || height <= 0) {
        return nullptr;
    }
    gint paddingX = 0;
    gint paddingY = 0;
    arv_buffer_get_image_padding(buffer, &paddingX, &paddingY);
    const size_t row = static_cast<size_t>(width) * BytesPerPixel(format->frame);
    const size_t sourceStride = row + std::max(0, paddingX);
    size_t size = 0;
    const unsigned char* data =
        static_cast<const unsigned char*>(arv_buffer_get_image_data(buffer, &size));
    // The in-process fake stream tells the image's size only for its own
    // pattern; a buffer it fills without a size mismatch holds the image.
    const bool whole =
        size >= sourceStride * (height - 1) + row || (size == 0 && m_Fake != nullptr);
    if (data == nullptr || !whole) {
        return nullptr;
    }
    std::shared_ptr<Frame> frame = m_Pool.Take();
    if (!frame) {
        return nullptr;
    }
    frame->width = width;
    frame->height = height;
    frame->format = format->frame;
    frame->stride = row;
    frame->id = arv_buffer_get_frame_id(buffer);
    frame->data.resize(row * height);
    for (int y = 0; y < height; ++y) {
        std::memcpy(frame->data.data() + y * row, data + y * sourceStride, row);
    }
    if (format->bits < 16 && format->frame == PixelFormat::Mono16) {
        const int shift = 16 - format->bits;
        for (size_t at = 0; at + 1 < frame->data.size(); at += 2) {
            unsigned short value;
            std::memcpy(&value, &frame->data[at], sizeof value);
            value = static_cast<unsigned short>(value << shift);
            std::memcpy(&frame->data[at], &value, sizeof value);
        }
    }
    return frame;
}

void Camera::SetFrameHandler(const FrameHandler& handler)
{
    m_Frames->SetHandler(handler);
    if (!handler) {
        return;
    }
    std::lock_guard<std::mutex> lock(m_StreamLock);
    if (!m_Stream && m_Connection->IsConnected()) {
        m_Stream = ImageStream::Open(m_Connection, *m_Frames);
    }
}

bool ImageStream::Acquiring()
{
    if (m_Fake == nullptr) {
        return true;
    }
    std::shared_ptr<guint32> status = std::make_shared<guint32>(0);
    ArvFakeCamera* fake = m_Fake;
    m_Connection->Access([fake, status](GError**) {
        *status = arv_fake_camera_get_acquisition_status(fake);
        return Success;
    });
    return *status != 0;
}

void ImageStream::Replace(ArvBuffer* buffer)
{
    // The image grew since the buffers were made, or the camera's payload
    // size tells less than it sends: the new buffer is at least twice as
    // large, so that a few rounds find the size that fits.
    size_t size = 0;
    arv_buffer_get_data(buffer, &size);
    g_object_unref(buffer);
    const size_t grown = std::max(Payload(*m_Connection), 2 * size);
    if (grown <= LargestBuffer) {
        arv_stream_push_buffer(m_Stream, arv_buffer_new_allocate(grown));
    }
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
