#ifndef FRAMEWORKER_H
#define FRAMEWORKER_H

#include <TarkaCPP/Frame.h>

#include <QImage>
#include <QObject>
#include <QSize>

#include <condition_variable>
#include <mutex>
#include <thread>

// Turns a camera's frames into images for the display on a thread of its
// own. It keeps only the newest frame that waits and converts the next one
// only once the display has taken the last image, so a slow display drops
// frames instead of queueing them, and neither the camera's thread nor the
// GUI thread ever waits for a conversion. With each image it can also make a
// smaller copy, for those who show the camera's image in little.
class FrameWorker : public QObject
{
    Q_OBJECT

public:
    explicit FrameWorker(QObject* parent = nullptr);
    ~FrameWorker() override;

    // From any thread, typically the camera's.
    void Offer(const KST::TrkAPI::FramePtr& frame);
    // Images are scaled to fit into this size.
    void SetTargetSize(const QSize& size);
    // Each image comes with a copy scaled to fit into this size; none while
    // it is empty.
    void SetCopySize(const QSize& size);
    // The display has taken the last image and can take the next.
    void TakeImage();
    // Forgets a waiting frame and the count of frames received, and starts
    // a new generation: images of an older one are on their way to no one.
    void Reset();

    quint64 FramesReceived() const;
    quint64 Generation() const;

signals:
    // frameSize is the size of the frame the image and its copy were made of.
    void imageConverted(const QImage& image, const QImage& copy, const QSize& frameSize,
                        quint64 generation);

private:
    void Run();

    mutable std::mutex m_Lock;
    std::condition_variable m_Wake;
    KST::TrkAPI::FramePtr m_Waiting;
    QSize m_TargetSize;
    QSize m_CopySize;
    quint64 m_Generation = 0;
    bool m_ImageOut = false;
    bool m_Stopping = false;
    quint64 m_Received = 0;
    std::thread m_Thread;
};

#endif
