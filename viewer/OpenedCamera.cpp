#include "OpenedCamera.h"

#include "CameraCatalog.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>
#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QTimer>

namespace {
const char* const StartCommand = "AcquisitionStart";
const char* const StopCommand = "AcquisitionStop";
// How often the connection is checked; a lost camera is told within this.
const int ConnectionCheckMs = 50;
} // namespace

OpenedCamera::OpenedCamera(const QString& name, std::unique_ptr<KST::TrkAPI::Device> device)
    : m_Name(name), m_Device(std::move(device)), m_Features(new FeatureVector),
      m_ConnectionCheck(new QTimer(this))
{
    for (const FeaturePtr& feature : m_Device->Features()) {
        m_Features->append(feature);
    }
    m_ConnectionCheck->setInterval(ConnectionCheckMs);
    connect(m_ConnectionCheck, &QTimer::timeout, this, &OpenedCamera::OnConnectionCheck);
    m_ConnectionCheck->start();
}

OpenedCamera::~OpenedCamera() = default;

std::unique_ptr<KST::TrkAPI::Device> OpenedCamera::OpenDevice(const QString& name, QString* error)
{
    std::unique_ptr<KST::TrkAPI::Device> device;
    std::string reason;
    switch (CameraCatalog::KindOf(name)) {
    case CameraCatalog::InMemory:
        device = KST::TrkAPI::Sim::MakeCamera(name.toStdString());
        break;
    case CameraCatalog::Description:
        device = KST::TrkAPI::GenICam::Camera::OpenDescription(
            CameraCatalog::DescriptionFile(name).toStdString(), &reason);
        break;
    case CameraCatalog::Discovered:
        device = KST::TrkAPI::GenICam::Camera::Open(name.toStdString(), &reason);
        break;
    }
    if (!device) {
        *error = reason.empty()
                     ? tr("No camera named %1").arg(name)
                     : tr("Cannot open camera %1: %2").arg(name, QString::fromStdString(reason));
    }
    return device;
}

bool OpenedCamera::IsReadOnly() const
{
    return m_Device->IsReadOnly();
}

bool OpenedCamera::CanAcquire() const
{
    return m_Device->Find(StartCommand) && m_Device->Find(StopCommand);
}

bool OpenedCamera::SetAcquiring(bool acquiring)
{
    const FeaturePtr command = m_Device->Find(acquiring ? StartCommand : StopCommand);
    return command && command->RunCommand() == 0;
}

void OpenedCamera::SetFrameHandler(const KST::TrkAPI::FrameHandler& handler)
{
    m_Device->SetFrameHandler(handler);
}

void OpenedCamera::OnConnectionCheck()
{
    if (!m_Device->IsConnected()) {
        m_ConnectionCheck->stop();
        emit connectionLost(tr("Camera %1 was lost: it no longer answers").arg(m_Name));
    }
}
