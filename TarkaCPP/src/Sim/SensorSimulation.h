#ifndef TARKACPP_SIM_SENSORSIMULATION_H
#define TARKACPP_SIM_SENSORSIMULATION_H

#include "../FramePool.h"
#include "SensorControls.h"
#include <TarkaCPP/Sim/SimCamera.h>

#include <memory>
#include <string>
#include <vector>

namespace KST {
namespace TrkAPI {
namespace Sim {

// A rectangle of the image in pixels, [x, x + width) x [y, y + height).
struct PixelRect
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool IsEmpty() const { return width <= 0 || height <= 0; }
};

// The sensor of a ready-made camera: it looks at a fixed scene of bright and
// dark tiles with a bright disc drifting along the top row, brightens it in
// proportion to the exposure time up to saturation, meters the mean level in
// the auto-function region and steers the exposure toward the target level.
//
// The region is the family's: "AutofunctionAOI*" inside the image, metered
// only while "AutofunctionAOIEnable" is on (if the camera has it);
// "AutoModeRegion*" in sensor coordinates, shifted by "OffsetX", "OffsetY";
// "DSPSubregion*" as four edges. Families without an enable feature always
// meter inside their region, as such cameras do. The outline is drawn while
// "AutofunctionAOIShowArea" is on, and always on a camera without that
// feature, so that the region can be seen on every family.
//
// Auto exposure keeps the exposure within "ExposureAutoMin" and
// "ExposureAutoMax" at every frame; "Once" returns to "Off" when the level
// is within tolerance of the target, when the exposure is pinned at a limit,
// or after a bounded number of frames. "ExposureAutoAdjustTol" (percent of
// the target) and "ExposureAutoRate" (percent of the correction per frame)
// shape it where the camera has them.
//
// The same simulation serves in-memory cameras, through CameraAccess, and
// devices that hold their features in registers, through SensorControls.
class SensorSimulation : public FrameGenerator
{
public:
    // "Once" ends after at most this many frames.
    static const int OnceFrames = 60;

    std::chrono::microseconds Period(const CameraAccess& access) const override;
    void Prepare(const CameraAccess& access) override;
    FramePtr Render() override;
    void Finish(CameraAccess& access) override;

    // Time between frames at the camera's frame rate, acquiring or not.
    static std::chrono::microseconds FramePeriod(const SensorControls& controls);
    void Prepare(const SensorControls& controls);
    void Finish(SensorControls& controls);

private:
    struct Settings
    {
        int width = 0;
        int height = 0;
        int offsetX = 0;
        int offsetY = 0;
        PixelFormat format = PixelFormat::Mono8;
        std::string exposureName;
        double exposure = 0.0;
        std::string autoMode;
        double autoLower = 0.0;
        double autoUpper = 0.0;
        double target = 0.0;
        double tolerance = 0.0;
        // Exponent of the needed ratio applied per frame.
        double rate = 0.0;
        PixelRect region;
        bool metersRegion = false;
        bool showsRegion = false;
    };

    static void ReadExposure(const SensorControls& access, Settings& settings);
    void BuildScene(int width, int height);
    void Shade(Frame& frame) const;
    void DrawDisc(Frame& frame) const;
    void DrawOutline(Frame& frame) const;
    double MeanLevel() const;

    Settings m_Settings;
    int m_SceneWidth = 0;
    int m_SceneHeight = 0;
    int m_Tile = 0;
    std::vector<unsigned char> m_Scene;
    // Output level per scene value at the current exposure.
    std::vector<unsigned short> m_Levels;
    // Four frames for the host; while it holds all of them, frames drop.
    FramePool m_Pool{4};
    unsigned long long m_FrameCount = 0;
    double m_MeanLevel = 0.0;
    int m_OnceFrames = 0;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
