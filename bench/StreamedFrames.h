#ifndef STREAMEDFRAMES_H
#define STREAMEDFRAMES_H

#include <TarkaCPP/Frame.h>

#include <QSize>

#include <vector>

// What the live-image benchmarks stream: a camera at this rate, for this
// long at each frame size, into a pane about the viewer's image area.
const double StreamRate = 30.0;
const int StreamSeconds = 4;
const QSize StreamPaneSize(860, 560);

struct StreamSize
{
    const char* name;
    int width;
    int height;
};

const StreamSize StreamSizes[] = {{"1 MP", 1280, 800}, {"5 MP", 2592, 1944}, {"20 MP", 5472, 3648}};

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
