#ifndef CAMERASELECTOR_H
#define CAMERASELECTOR_H

#include <QComboBox>

#include <condition_variable>
#include <mutex>
#include <thread>

// The viewer's choice of camera: the in-memory cameras and the description
// files at once, and the devices that Aravis discovers as soon as a search
// in the background, which takes a moment, has found them. The search is
// repeated every few seconds, so that a device plugged in later, or found
// back after it was lost, is offered too.
class CameraSelector : public QComboBox
{
    Q_OBJECT

public:
    explicit CameraSelector(QWidget* parent = nullptr);
    // Waits for a search under way.
    ~CameraSelector() override;

    // Offers the device no more, until a search finds it again.
    void Forget(const QString& id);

signals:
    // From the search's thread: the ids of the devices found now.
    void devicesFound(const QStringList& ids);

private:
    void OnDevicesFound(const QStringList& ids);
    void Discover();

    std::mutex m_Lock;
    std::condition_variable m_Signal;
    bool m_Stopping = false;
    std::thread m_Discovery;
};

#endif
