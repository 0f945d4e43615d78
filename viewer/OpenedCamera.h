#ifndef OPENEDCAMERA_H
#define OPENEDCAMERA_H

#include <FeatureTypes.h>
#include <TarkaCPP/Frame.h>

#include <QObject>
#include <QSharedPointer>
#include <QString>

#include <memory>

class QTimer;

namespace KST {
namespace TrkAPI {
class Device;
}
} // namespace KST

// One opened camera of any backend, as the viewer holds it: the camera
// object, which notifies observers while it lives, and its features in the
// form that tabs receive. Acquisition runs through the camera's own start
// and stop commands. It watches the connection and tells once when the
// camera is lost.
class OpenedCamera : public QObject
{
    Q_OBJECT

public:
    OpenedCamera(const QString& name, std::unique_ptr<KST::TrkAPI::Device> device);
    ~OpenedCamera() override;

    // The camera that CameraCatalog knows by that name: a ready-made
    // in-memory camera, a GenICam description file or a discovered device.
    // Null, with the reason in error, when it can't be opened. Slow for a
    // device: called on any thread but the GUI thread.
    static std::unique_ptr<KST::TrkAPI::Device> OpenDevice(const QString& name, QString* error);

    QString Name() const { return m_Name; }
    // See KST::TrkAPI::Device::IsReadOnly.
    bool IsReadOnly() const;
    QSharedPointer<FeatureVector> Features() const { return m_Features; }

    bool CanAcquire() const;
    // False when the camera refused the command.
    bool SetAcquiring(bool acquiring);
    // See KST::TrkAPI::Device::SetFrameHandler.
    void SetFrameHandler(const KST::TrkAPI::FrameHandler& handler);

signals:
    void connectionLost(const QString& message);

private slots:
    void OnConnectionCheck();

private:
    QString m_Name;
    std::unique_ptr<KST::TrkAPI::Device> m_Device;
    QSharedPointer<FeatureVector> m_Features;
    QTimer* m_ConnectionCheck;
};

#endif
