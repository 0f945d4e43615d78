#include "SimulatedCamera.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

namespace {
const char* const StartCommand = "AcquisitionStart";
const char* const StopCommand = "AcquisitionStop";
} // namespace

SimulatedCamera::SimulatedCamera(const QString& name,
                                 std::unique_ptr<KST::TrkAPI::Sim::Camera> camera)
    : m_Name(name), m_Camera(std::move(camera)), m_Features(new FeatureVector)
{
    for (const FeaturePtr& feature : m_Camera->Features()) {
        m_Features->append(feature);
    }
}

SimulatedCamera::~SimulatedCamera() = default;

QStringList SimulatedCamera::Names()
{
    QStringList names;
    for (const std::string& name : KST::TrkAPI::Sim::CameraNames()) {
        names << QString::fromStdString(name);
    }
    return names;
}

std::unique_ptr<SimulatedCamera> SimulatedCamera::Open(const QString& name)
{
    std::unique_ptr<KST::TrkAPI::Sim::Camera> camera =
        KST::TrkAPI::Sim::MakeCamera(name.toStdString());
    if (!camera) {
        return nullptr;
    }
    return std::unique_ptr<SimulatedCamera>(new SimulatedCamera(name, std::move(camera)));
}

bool SimulatedCamera::CanAcquire() const
{
    return m_Camera->Has(StartCommand) && m_Camera->Has(StopCommand);
}

bool SimulatedCamera::SetAcquiring(bool acquiring)
{
    const FeaturePtr command = m_Camera->Find(acquiring ? StartCommand : StopCommand);
    return command && command->RunCommand() == 0;
}

void SimulatedCamera::SetFrameHandler(const KST::TrkAPI::FrameHandler& handler)
{
    m_Camera->SetFrameHandler(handler);
}
