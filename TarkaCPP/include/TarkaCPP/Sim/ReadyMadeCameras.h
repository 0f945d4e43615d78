#ifndef TARKACPP_SIM_READYMADECAMERAS_H
#define TARKACPP_SIM_READYMADECAMERAS_H

#include <TarkaCPP/Sim/SimCamera.h>

#include <memory>
#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace Sim {

// Cameras of each family with the few hundred other features a real camera
// carries, the family's features placed among them rather than in front.
//
// Every camera has the commands "AcquisitionStart" and "AcquisitionStop";
// while acquiring it delivers frames of a synthetic scene, and with
// "ExposureAuto" at "Continuous" it steers the exposure time within
// "ExposureAutoMin" and "ExposureAutoMax" toward the target level inside the
// auto-function region, whose outline it draws into the frames.

// Region "AutofunctionAOI*", with "AutofunctionAOIEnable" and
// "AutofunctionAOIShowArea", inside the image "Width" x "Height".
std::unique_ptr<Camera> MakeAutofunctionCamera();
// Region "AutoModeRegion*" in sensor coordinates, inside the image at
// "OffsetX", "OffsetY" of size "Width" x "Height".
std::unique_ptr<Camera> MakeAutoModeCamera();
// Region "DSPSubregion*" as four edges, inside the image.
std::unique_ptr<Camera> MakeDspCamera();
// Image and exposure features but no region family.
std::unique_ptr<Camera> MakeUnsupportedCamera();

// The names MakeCamera accepts: "autofunction", "automode", "dsp", "unsupported".
std::vector<std::string> CameraNames();
// The camera of that name, or null for an unknown name.
std::unique_ptr<Camera> MakeCamera(const std::string& name);
// The same with exactly otherFeatures filler features in front of the
// camera's own, for measuring lookups (e.g. 50, 500, 5000).
std::unique_ptr<Camera> MakeCamera(const std::string& name, int otherFeatures);

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
