#include "CameraOpener.h"

#include "FeatureTableModel.h"
#include "OpenedCamera.h"

#include <TarkaCPP/Device.h>

CameraOpener::CameraOpener(QObject* parent) : QObject(parent), m_Thread(&CameraOpener::Serve, this)
{}

CameraOpener::~CameraOpener()
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Stopping = true;
    }
    m_Signal.notify_all();
    m_Thread.join();
}

void CameraOpener::Open(const QString& name, const KST::TrkAPI::FrameHandler& frames)
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Pending = name;
        m_PendingFrames = frames;
    }
    m_Signal.notify_all();
}

std::unique_ptr<CameraOpener::Result> CameraOpener::Take()
{
    std::lock_guard<std::mutex> lock(m_Lock);
    return std::move(m_Result);
}

void CameraOpener::Serve()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (true) {
        m_Signal.wait(lock, [this] { return m_Stopping || !m_Pending.isEmpty(); });
        if (m_Stopping) {
            return;
        }
        std::unique_ptr<Result> result(new Result);
        result->name = m_Pending;
        m_Pending.clear();
        const KST::TrkAPI::FrameHandler frames = m_PendingFrames;
        lock.unlock();
        result->device = OpenedCamera::OpenDevice(result->name, &result->error);
        if (result->device) {
            result->device->SetFrameHandler(frames);
            QSharedPointer<FeatureVector> features(new FeatureVector);
            for (const FeaturePtr& feature : result->device->Features()) {
                features->append(feature);
            }
            result->rows = FeatureTableModel::ReadRows(features);
        }
        lock.lock();
        if (!m_Pending.isEmpty()) {
            // Superseded: closed outside the lock.
            lock.unlock();
            result.reset();
            lock.lock();
            continue;
        }
        m_Result = std::move(result);
        lock.unlock();
        emit finished();
        lock.lock();
    }
}
