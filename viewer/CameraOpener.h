#ifndef CAMERAOPENER_H
#define CAMERAOPENER_H

#include <TarkaCPP/Frame.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace KST {
namespace TrkAPI {
class Device;
}
} // namespace KST

// Opens cameras on a thread of its own, one at a time, and reads the first
// rows of their feature table there, so that a device that is slow to answer
// never holds up the window. Of requests made while one runs, only the
// newest is carried out, and a camera opened while a newer request waits is
// closed again.
class CameraOpener : public QObject
{
    Q_OBJECT

public:
    // What one opening gave: the device, or the reason there is none.
    struct Result
    {
        QString name;
        std::unique_ptr<KST::TrkAPI::Device> device;
        QString error;
        QVector<QStringList> rows;
    };

    explicit CameraOpener(QObject* parent = nullptr);
    // Waits for an opening under way.
    ~CameraOpener() override;

    // The device gets frames as its first handler, since setting up its
    // image stream may take as long as opening it.
    void Open(const QString& name, const KST::TrkAPI::FrameHandler& frames);
    // The result that finished() told of; null if it was taken already.
    std::unique_ptr<Result> Take();

signals:
    // From the opener's thread.
    void finished();

private:
    void Serve();

    std::mutex m_Lock;
    std::condition_variable m_Signal;
    QString m_Pending;
    KST::TrkAPI::FrameHandler m_PendingFrames;
    bool m_Stopping = false;
    std::unique_ptr<Result> m_Result;
    std::thread m_Thread;
};

#endif
