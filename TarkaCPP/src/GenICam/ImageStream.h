#ifndef TARKACPP_GENICAM_IMAGESTREAM_H
#define TARKACPP_GENICAM_IMAGESTREAM_H

#include "../FrameDispatch.h"
#include "../FramePool.h"

#include <arv.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace KST {
namespace TrkAPI {
namespace GenICam {

class Connection;

// The images of one opened camera: an Aravis stream with a few buffers, and a
// thread that copies each filled buffer into a frame for the host's handler
// and gives the buffer back to the stream at once. With every buffer waiting
// for the thread, or every frame held by the host, new images are dropped
// rather than queued. Images arrive while the camera acquires.
//
// The stream is made and released under the camera's Aravis lock; its queues
// of buffers are the part of Aravis made for other threads, and are used
// without it, so that waiting for an image never holds up a feature call.
class ImageStream
{
public:
    // Null, with the reason in error if given, when the camera has no stream.
    static std::unique_ptr<ImageStream> Open(const std::shared_ptr<Connection>& connection,
                                             FrameDispatch& frames, std::string* error = nullptr);
    ~ImageStream();

    ImageStream(const ImageStream&) = delete;
    ImageStream& operator=(const ImageStream&) = delete;

private:
    ImageStream(const std::shared_ptr<Connection>& connection, FrameDispatch& frames,
                ArvStream* stream);
    void Run();
    // The buffer's image as a frame, or null for an image of a format that
    // isn't served or while the host holds every frame.
    FramePtr Copy(ArvBuffer* buffer);
    // Gives the stream a larger buffer instead.
    void Replace(ArvBuffer* buffer);
    // False while the camera doesn't acquire; see m_Fake.
    bool Acquiring();

    std::shared_ptr<Connection> m_Connection;
    FrameDispatch& m_Frames;
    ArvStream* m_Stream;
    // Aravis's fake camera fills buffers whether it acquires or not; its
    // images are passed on only while its acquisition register is set, as a
    // real camera sends them. Null for any other camera.
    ArvFakeCamera* m_Fake;
    FramePool m_Pool;
    std::atomic<bool> m_Stopping{false};
    std::thread m_Thread;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
