#include "CameraSelector.h"

#include "CameraCatalog.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>

CameraSelector::CameraSelector(QWidget* parent) : QComboBox(parent)
{
    addItems(CameraCatalog::InMemoryNames());
    addItems(CameraCatalog::DescriptionNames());
    // Queued: the search reports from its own thread.
    connect(this, &CameraSelector::devicesFound, this, &CameraSelector::OnDevicesFound,
            Qt::QueuedConnection);
    m_Discovery = std::thread([this] {
        QStringList ids;
        for (const std::string& id : KST::TrkAPI::GenICam::Camera::DeviceIds()) {
            ids << QString::fromStdString(id);
        }
        emit devicesFound(ids);
    });
}

CameraSelector::~CameraSelector()
{
    m_Discovery.join();
}

void CameraSelector::OnDevicesFound(const QStringList& ids)
{
    for (const QString& id : ids) {
        if (findText(id) < 0) {
            addItem(id);
        }
    }
}
