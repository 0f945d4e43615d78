#include "CameraSelector.h"

#include "CameraCatalog.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>

namespace {
// How long the search rests between two rounds.
const std::chrono::seconds DiscoveryPause(2);
} // namespace

CameraSelector::CameraSelector(QWidget* parent) : QComboBox(parent)
{
    addItems(CameraCatalog::InMemoryNames());
    addItems(CameraCatalog::DescriptionNames());
    // Queued: the search reports from its own thread.
    connect(this, &CameraSelector::devicesFound, this, &CameraSelector::OnDevicesFound,
            Qt::QueuedConnection);
    m_Discovery = std::thread(&CameraSelector::Discover, this);
}

CameraSelector::~CameraSelector()
{
    {
        std::lock_guard<std::mutex> lock(m_Lock);
        m_Stopping = true;
    }
    m_Signal.notify_all();
    m_Discovery.join();
}

void CameraSelector::Forget(const QString& id)
{
    const int index = findText(id);
    if (index >= 0) {
        removeItem(index);
    }
}

void CameraSelector::OnDevicesFound(const QStringList& ids)
{
    for (const QString& id : ids) {
        if (findText(id) < 0) {
            addItem(id);
        }
    }
}

void CameraSelector::Discover()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (!m_Stopping) {
        lock.unlock();
        QStringList ids;
        for (const std::string& id : KST::TrkAPI::GenICam::Camera::DeviceIds()) {
            ids << QString::fromStdString(id);
        }
        emit devicesFound(ids);
        lock.lock();
        m_Signal.wait_for(lock, DiscoveryPause, [this] { return m_Stopping; });
    }
}
