#ifndef CAMERASELECTOR_H
#define CAMERASELECTOR_H

#include <QComboBox>

#include <thread>

// The viewer's choice of camera: the in-memory cameras and the description
// files at once, and the devices that Aravis discovers as soon as a search
// in the background, which takes a moment, has found them.
class CameraSelector : public QComboBox
{
    Q_OBJECT

public:
    explicit CameraSelector(QWidget* parent = nullptr);
    ~CameraSelector() override;

signals:
    void devicesFound(const QStringList& ids);

private slots:
    void OnDevicesFound(const QStringList& ids);

private:
    std::thread m_Discovery;
};

#endif
