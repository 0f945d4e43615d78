#ifndef TARKACPP_GENICAM_GENICAMCAMERA_H
#define TARKACPP_GENICAM_GENICAMCAMERA_H

#include <TarkaCPP/Device.h>
#include <TarkaCPP/ErrorCode.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace KST {
namespace TrkAPI {

class FrameDispatch;

namespace GenICam {

class Connection;
class ImageStream;

// The GenICam backend's own result codes, beside those of ErrorCode: the
// failures of a device.
enum GenICamErrorCode : TrkErrorType
{
    // Aravis reported an error, or GLib a warning, for the call.
    ErrorDevice = -2011,
    // Another call held the camera longer than CallTimeout.
    ErrorBusy = -2012,
    // The device stopped answering, or Aravis lost its control channel;
    // nothing reaches it any more.
    ErrorDeviceLost = -2013,
    // The Camera object is gone.
    ErrorClosed = -2014,
    // The device didn't answer this call in time; it may still answer later
    // ones. A write may or may not have taken effect.
    ErrorNoAnswer = -2015,
    // Another program controls the device; this one may only read it.
    ErrorReadOnlyAccess = -2016
};

// A camera described by GenICam, reached through Aravis: a real GigE Vision
// or USB3 Vision device, or Aravis's in-process simulation of a description
// file. Every feature that the description's categories list, from "Root"
// down, is served as a Feature in that order; its category is the path of
// categories below "Root", e.g. "/AcquisitionControl/ExposureControl".
//
// Writes off the range or the increment grid, and writes to features that are
// read-only, locked or unavailable, are refused as a camera does. A device
// whose control channel another program holds opens for reading only
// (IsReadOnly()): its writes fail with ErrorReadOnlyAccess. While a call of
// the backend runs, the messages of Aravis's log domains become the call's
// codes instead of output; every other message, and Aravis's at any other
// time, goes where it would without the backend.
//
// GenICam has no change notification, so observers are served in two ways,
// both from a notifier thread of the camera: after every write or command
// each watched feature whose value, range, increment, writability or entry
// availability changed is notified, and so is the written one; and watched
// features are read every PollPeriod for changes made elsewhere.
//
// Aravis objects aren't thread-safe: one lock per camera serialises every
// Aravis call. A device reached over a network is called from a thread of
// the camera, and a caller waits for its answer no longer than 100 ms: a
// call left unanswered fails with ErrorNoAnswer, a read answers instead
// what the device last answered to it. The device counts as lost when
// Aravis loses its control channel or a read stays unanswered for more than
// Aravis's wait for one answer, so that Aravis has asked again in vain; the
// device is asked every 100 ms, so a loss is found within a second. From then on reads answer the
// last answers known, so that a host sees a camera that stands still until it closes it, and writes
// fail with ErrorDeviceLost.
//
// Destroying the Camera object returns at once: Aravis's objects and
// threads are released on a thread of the library. FeaturePtrs stay safe
// after the Camera object is gone; their calls then fail with ErrorClosed
// and notifications stop. The Camera object must not be destroyed from
// inside an observer callback.
class Camera : public Device
{
public:
    // How often watched features are read: 250 ms.
    static const std::chrono::milliseconds PollPeriod;
    // How long a call waits for another call on the same camera: 3 s.
    static const std::chrono::milliseconds CallTimeout;

    ~Camera() override;

    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    // Opens the device of that Aravis id, as DeviceIds() lists them; null,
    // with the reason in error if given, when it can't be opened.
    static std::unique_ptr<Camera> Open(const std::string& deviceId, std::string* error = nullptr);
    // Opens a simulation of the GenICam description file through Aravis's
    // in-process fake camera.
    static std::unique_ptr<Camera> OpenDescription(const std::string& file,
                                                   std::string* error = nullptr);
    // The ids of the GigE Vision and USB3 Vision devices found now.
    static std::vector<std::string> DeviceIds();

    std::vector<FeaturePtr> Features() const override;
    FeaturePtr Find(const std::string& name) const override;
    bool IsConnected() const override;
    bool IsReadOnly() const override;
    // The first handler opens the camera's image stream (see ImageStream),
    // which stays open until the camera is closed. Setting up the stream may
    // take seconds: set the first handler where opening the camera runs.
    void SetFrameHandler(const FrameHandler& handler) override;

    // Returns once the watched features have been read and every change found
    // so far delivered. Returns at once when called from the notifier thread.
    void WaitForNotifications();

    // The camera's Aravis connection with its lock, for other parts of the
    // backend, such as a stream of images, to build on.
    const std::shared_ptr<Connection>& GetConnection() const { return m_Connection; }

private:
    explicit Camera(const std::shared_ptr<Connection>& connection);
    void RunNotifier();
    // Reads the watched features and queues what changed, with m_Lock of
    // the connection held on entry and on return.
    void Refresh(std::unique_lock<std::mutex>& lock);

    std::shared_ptr<Connection> m_Connection;
    std::vector<FeaturePtr> m_Features;
    std::thread m_Notifier;

    std::unique_ptr<FrameDispatch> m_Frames;
    // Guards m_Stream, which is made by the first handler.
    std::mutex m_StreamLock;
    std::unique_ptr<ImageStream> m_Stream;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
