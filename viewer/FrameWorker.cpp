#include "FrameWorker.h"

#include "FrameConversion.h"

FrameWorker::FrameWorker(QObject* parent) : QObject(parent)
{
    m_Thread = std::thread(&FrameWorker::Run, this);
}

FrameWorker::~FrameWorker()
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Stopping = true;
    }
    m_Wake.notify_all();
    m_Thread.join();
}

void FrameWorker::Offer(const KST::TrkAPI::FramePtr& frame)
{
    KST::TrkAPI::FramePtr dropped;
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        dropped.swap(m_Waiting);
        m_Waiting = frame;
        ++m_Received;
    }
    m_Wake.notify_all();
}

void FrameWorker::SetTargetSize(const QSize& size)
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_TargetSize = size;
    }
    m_Wake.notify_all();
}

void FrameWorker::SetCopySize(const QSize& size)
{
    std::lock_guard<std::mutex> lock(m_Lock);
    m_CopySize = size;
}

void FrameWorker::TakeImage()
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_ImageOut = false;
    }
    m_Wake.notify_all();
}

void FrameWorker::Reset()
{
    KST::TrkAPI::FramePtr dropped;
    std::lock_guard<std::mutex> lock(m_Lock);
    dropped.swap(m_Waiting);
    m_Received = 0;
    ++m_Generation;
}

quint64 FrameWorker::FramesReceived() const
{
    std::lock_guard<std::mutex> lock(m_Lock);
    return m_Received;
}

quint64 FrameWorker::Generation() const
{
    std::lock_guard<std::mutex> lock(m_Lock);
    return m_Generation;
}

void FrameWorker::Run()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (true) {
        m_Wake.wait(lock, [this] {
            return m_Stopping || (m_Waiting && !m_ImageOut && !m_TargetSize.isEmpty());
        });
        if (m_Stopping) {
            return;
        }
        KST::TrkAPI::FramePtr frame;
        frame.swap(m_Waiting);
        const QSize size = m_TargetSize;
        const QSize copySize = m_CopySize;
        const quint64 generation = m_Generation;
        m_ImageOut = true;
        lock.unlock();
        const QImage image = ConvertFrame(*frame, size);
        const QSize frameSize(frame->width, frame->height);
        // The camera may reuse the frame's memory from here on.
        frame.reset();
        if (image.isNull()) {
            lock.lock();
            m_ImageOut = false;
            continue;
        }
        // Qt's smooth shrinking averages too; from the display's image it
        // costs little whatever the camera's size.
        QImage copy;
        if (!copySize.isEmpty()) {
            copy = image.scaled(copySize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        }
        emit imageConverted(image, copy, frameSize, generation);
        lock.lock();
    }
}
