#ifndef TARKACPP_DEVICE_H
#define TARKACPP_DEVICE_H

#include <TarkaCPP/Feature.h>
#include <TarkaCPP/Frame.h>

#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {

// One opened camera, whatever backend serves it: the owner of its features.
// A host holds the Device while the camera is open and hands the features on;
// FeaturePtrs stay usable after the Device is gone, but then they no longer
// reach the camera and notifications stop.
class Device
{
public:
    virtual ~Device() {}

    // The camera's features in the camera's own order.
    virtual std::vector<FeaturePtr> Features() const = 0;
    // The feature of that name, or an empty pointer if the camera has none.
    virtual FeaturePtr Find(const std::string& name) const = 0;
    // False once the camera stopped answering: its features then fail. A
    // camera that can't be lost, such as an in-memory one, is always connected.
    virtual bool IsConnected() const = 0;
    // True when another program controls the camera: its features read,
    // and every write fails.
    virtual bool IsReadOnly() const { return false; }

    // Frames go to handler while the camera acquires ("AcquisitionStart" to
    // "AcquisitionStop"); an empty handler takes none. Returns only after a
    // call of the previous handler still running has finished, so its owner
    // may be destroyed then; called from inside a handler it doesn't wait.
    virtual void SetFrameHandler(const FrameHandler& handler) = 0;
};

} // namespace TrkAPI
} // namespace KST

#endif
