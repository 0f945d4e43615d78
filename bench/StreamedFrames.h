#ifndef STREAMEDFRAMES_H
#define STREAMEDFRAMES_H

#include <TarkaCPP/Frame.h>

#include <vector>

// A camera for the live-image benchmarks: a few different Mono8 frames, as a
// camera's buffers would be, with a gradient so that conversion reads real
// data, handed out at a steady rate from a thread of their own.
class StreamedFrames
{
public:
    StreamedFrames(int width, int height);

    // Hands handler count frames at rate per second while the calling
    // thread runs its event loop; returns once the last one is handed over.
    void Stream(const KST::TrkAPI::FrameHandler& handler, double rate, int count) const;

private:
    std::vector<KST::TrkAPI::FramePtr> m_Frames;
};

// CPU seconds of the calling thread.
double ThreadSeconds();

#endif
