#ifndef TARKACPP_SIM_CAMERARULES_H
#define TARKACPP_SIM_CAMERARULES_H

#include <TarkaCPP/Sim/SimCamera.h>

// Rules and actions that ready-made cameras are built from, for cameras
// of one's own as well.

#include <string>

namespace KST {
namespace TrkAPI {
namespace Sim {

// The value of an integer or floating feature.
double NumberValue(const CameraAccess& access, const std::string& name);

// Keeps the span [offset, offset + size) inside [origin, origin + extent):
// the offset runs from the origin's value (0 if origin is empty) up to what
// the size leaves, and the size from its own minimum up to what the offset
// leaves. Values pushed outside move back in.
Rule KeepInside(const std::string& offset, const std::string& size, const std::string& origin,
                const std::string& extent);

// Keeps the integer edges first and second at least gap apart, second at
// most the value of extent.
Rule KeepEdgesApart(const std::string& first, const std::string& second, const std::string& extent,
                    long long gap);

// Keeps lower at most upper: lower's maximum is upper's value and upper's
// minimum is lower's value. Works for integer and floating features.
Rule TieLimits(const std::string& lower, const std::string& upper);

// Microseconds per unit of an exposure time base entry such as "10us".
long long TimebaseUnit(const std::string& entry);

// Integer exposure limits counted in units of the time base: a new time base
// converts both values, and the outer bounds follow from the exposure's
// floating range in microseconds.
Rule LimitsInTimebase(const std::string& timebase, const std::string& lower,
                      const std::string& upper, const std::string& exposure);

// "AcquisitionStart", "AcquisitionStop" and "AcquisitionAbort" set
// "AcquisitionStatus" and lock the image format while acquiring; while
// acquiring, the camera makes frames of "Width" x "Height" at
// "AcquisitionFrameRate" (see SensorSimulation: a scene whose brightness
// follows the exposure time, the auto-function region drawn in it, and
// automatic exposure toward the target level in that region while
// "ExposureAuto" is "Continuous" or, until it is reached, "Once").
void AddAcquisitionSimulation(Camera& camera);

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
