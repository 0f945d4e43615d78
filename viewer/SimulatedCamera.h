#ifndef SIMULATEDCAMERA_H
#define SIMULATEDCAMERA_H

#include <FeatureTypes.h>
#include <TarkaCPP/Frame.h>

#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <memory>

namespace KST {
namespace TrkAPI {
namespace Sim {
class Camera;
}
} // namespace TrkAPI
} // namespace KST

// One opened in-memory camera, as the viewer holds it: the camera object,
// which notifies observers while it lives, and its features in the form that
// tabs receive. Acquisition runs through the camera's own start and stop
// commands, as a viewer drives a real camera.
class SimulatedCamera
{
public:
    ~SimulatedCamera();

    // The names of the ready-made cameras, "autofunction" first.
    static QStringList Names();
    // The camera of that name, or null for a name that isn't one of Names().
    static std::unique_ptr<SimulatedCamera> Open(const QString& name);

    QString Name() const { return m_Name; }
    QSharedPointer<FeatureVector> Features() const { return m_Features; }

    bool CanAcquire() const;
    // False when the camera refused the command.
    bool SetAcquiring(bool acquiring);
    // See KST::TrkAPI::Device::SetFrameHandler.
    void SetFrameHandler(const KST::TrkAPI::FrameHandler& handler);

private:
    SimulatedCamera(const QString& name, std::unique_ptr<KST::TrkAPI::Sim::Camera> camera);

    QString m_Name;
    std::unique_ptr<KST::TrkAPI::Sim::Camera> m_Camera;
    QSharedPointer<FeatureVector> m_Features;
};

#endif
