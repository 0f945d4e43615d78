#include "SensorSimulation.h"

#include "AccessControls.h"

#include <TarkaCPP/Sim/CameraRules.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

const double DefaultFrameRate = 14.0;
const double LowestFrameRate = 0.1;
// At this exposure a scene value comes out as the same 8-bit level.
const double ReferenceExposure = 10000.0;
const int TilesAcross = 12;
const unsigned char DiscValue = 250;
// Scene pixels metered at most, spread evenly over the metered rectangle.
const double MeteredSamples = 16384.0;
// Auto exposure leaves levels this close to the target alone, and moves by
// the square root of the needed ratio, within these bounds, per frame: the
// level closes in on the target without overshooting it.
const double TargetTolerance = 2.0;
const double FullRate = 0.5;
const double Percent = 100.0;
const double LargestStep = 2.0;
const int DashLength = 16;
// Scene values are bytes; pixels are words until a format narrows them.
const int SceneLevels = 256;
const double ByteMax = 255.0;
const unsigned short WordMax = 65535;
const double ByteToWord = 257.0;
const int WordToByteShift = 8;

PixelFormat FormatOf(const std::string& name)
{
    if (name == "Mono10" || name == "Mono12" || name == "Mono12Packed" || name == "Mono16") {
        return PixelFormat::Mono16;
    }
    if (name == "RGB8") {
        return PixelFormat::RGB8;
    }
    if (name == "BayerRG8") {
        return PixelFormat::BayerRG8;
    }
    if (name == "BayerGR8") {
        return PixelFormat::BayerGR8;
    }
    if (name == "BayerGB8") {
        return PixelFormat::BayerGB8;
    }
    if (name == "BayerBG8") {
        return PixelFormat::BayerBG8;
    }
    return PixelFormat::Mono8;
}

int IntOr(const SensorControls& access, const std::string& name, int fallback)
{
    return access.Has(name) ? static_cast<int>(access.Int(name)) : fallback;
}

bool HasAll(const SensorControls& access, const std::vector<std::string>& names)
{
    return std::all_of(names.begin(), names.end(),
                       [&](const std::string& name) { return access.Has(name); });
}

// The family's region in image coordinates, with whether the camera meters
// inside it and draws it.
void ReadRegion(const SensorControls& access, PixelRect& region, bool& meters, bool& shows)
{
    meters = true;
    shows = !access.Has("AutofunctionAOIShowArea") || access.Bool("AutofunctionAOIShowArea");
    if (HasAll(access, {"AutofunctionAOIOffsetX", "AutofunctionAOIOffsetY", "AutofunctionAOIWidth",
                        "AutofunctionAOIHeight"})) {
        region.x = IntOr(access, "AutofunctionAOIOffsetX", 0);
        region.y = IntOr(access, "AutofunctionAOIOffsetY", 0);
        region.width = IntOr(access, "AutofunctionAOIWidth", 0);
        region.height = IntOr(access, "AutofunctionAOIHeight", 0);
        meters = !access.Has("AutofunctionAOIEnable") || access.Bool("AutofunctionAOIEnable");
    } else if (HasAll(access, {"AutoModeRegionOffsetX", "AutoModeRegionOffsetY",
                               "AutoModeRegionWidth", "AutoModeRegionHeight"})) {
        region.x = IntOr(access, "AutoModeRegionOffsetX", 0) - IntOr(access, "OffsetX", 0);
        region.y = IntOr(access, "AutoModeRegionOffsetY", 0) - IntOr(access, "OffsetY", 0);
        region.width = IntOr(access, "AutoModeRegionWidth", 0);
        region.height = IntOr(access, "AutoModeRegionHeight", 0);
    } else if (HasAll(access, {"DSPSubregionLeft", "DSPSubregionTop", "DSPSubregionRight",
                               "DSPSubregionBottom"})) {
        region.x = IntOr(access, "DSPSubregionLeft", 0);
        region.y = IntOr(access, "DSPSubregionTop", 0);
        region.width = IntOr(access, "DSPSubregionRight", 0) - region.x;
        region.height = IntOr(access, "DSPSubregionBottom", 0) - region.y;
    } else {
        meters = false;
        shows = false;
    }
}

PixelRect Clip(const PixelRect& rect, int width, int height)
{
    PixelRect clipped;
    clipped.x = std::max(0, rect.x);
    clipped.y = std::max(0, rect.y);
    clipped.width = std::min(width, rect.x + rect.width) - clipped.x;
    clipped.height = std::min(height, rect.y + rect.height) - clipped.y;
    return clipped;
}

// Writes a 16-bit level into one pixel, narrowed to the frame's format.
void Put(Frame& frame, int x, int y, unsigned short level)
{
    unsigned char* pixel = frame.data.data() + y * frame.stride;
    switch (frame.format) {
    case PixelFormat::Mono16:
        std::memcpy(pixel + x * 2, &level, sizeof level);
        break;
    case PixelFormat::RGB8:
        std::memset(pixel + x * 3, level >> 8, 3);
        break;
    default:
        pixel[x] = static_cast<unsigned char>(level >> 8);
        break;
    }
}

} // namespace

std::chrono::microseconds SensorSimulation::Period(const CameraAccess& access) const
{
    if (!access.Has("AcquisitionStatus") || !access.Bool("AcquisitionStatus")) {
        return std::chrono::microseconds(0);
    }
    return FramePeriod(AccessControls(access));
}

std::chrono::microseconds SensorSimulation::FramePeriod(const SensorControls& controls)
{
    double rate = controls.Has("AcquisitionFrameRate") ? controls.Number("AcquisitionFrameRate")
                                                       : DefaultFrameRate;
    return std::chrono::microseconds(std::llround(1e6 / std::max(LowestFrameRate, rate)));
}

void SensorSimulation::Prepare(const CameraAccess& access)
{
    Prepare(AccessControls(access));
}

void SensorSimulation::Prepare(const SensorControls& access)
{
    Settings settings;
    settings.width = IntOr(access, "Width", 0);
    settings.height = IntOr(access, "Height", 0);
    settings.offsetX = IntOr(access, "OffsetX", 0);
    settings.offsetY = IntOr(access, "OffsetY", 0);
    if (access.Has("PixelFormat")) {
        settings.format = FormatOf(access.Text("PixelFormat"));
    }
    ReadExposure(access, settings);
    ReadRegion(access, settings.region, settings.metersRegion, settings.showsRegion);
    settings.region = Clip(settings.region, settings.width, settings.height);

    int sceneWidth = IntOr(access, "SensorWidth", settings.offsetX + settings.width);
    int sceneHeight = IntOr(access, "SensorHeight", settings.offsetY + settings.height);
    if (sceneWidth != m_SceneWidth || sceneHeight != m_SceneHeight) {
        BuildScene(sceneWidth, sceneHeight);
    }
    // The image never reaches past the sensor, whatever the features say.
    settings.width = std::min(settings.width, m_SceneWidth - std::max(0, settings.offsetX));
    settings.height = std::min(settings.height, m_SceneHeight - std::max(0, settings.offsetY));
    m_Settings = settings;
}

void SensorSimulation::ReadExposure(const SensorControls& access, Settings& settings)
{
    settings.exposureName = access.Has("ExposureTime") ? "ExposureTime" : "ExposureTimeAbs";
    settings.exposure = access.Has(settings.exposureName) ? access.Number(settings.exposureName)
                                                          : ReferenceExposure;
    if (access.Has("ExposureAuto") && access.Has("ExposureAutoMin") &&
        access.Has("ExposureAutoMax")) {
        settings.autoMode = access.Text("ExposureAuto");
        double unit = access.Has("ExposureAutoTimebase")
                          ? TimebaseUnit(access.Text("ExposureAutoTimebase"))
                          : 1.0;
        settings.autoLower = access.Number("ExposureAutoMin") * unit;
        settings.autoUpper = access.Number("ExposureAutoMax") * unit;
    }
    if (access.Has("AutofunctionTargetIntensity")) {
        settings.target = access.Int("AutofunctionTargetIntensity");
    } else {
        settings.target = IntOr(access, "ExposureAutoTarget", 50) * ByteMax / Percent;
    }
    settings.tolerance = access.Has("ExposureAutoAdjustTol")
                             ? settings.target * access.Int("ExposureAutoAdjustTol") / Percent
                             : TargetTolerance;
    settings.rate =
        FullRate *
        (access.Has("ExposureAutoRate") ? access.Int("ExposureAutoRate") / Percent : 1.0);
}

FramePtr SensorSimulation::Render()
{
    ++m_FrameCount;
    if (m_Settings.width <= 0 || m_Settings.height <= 0) {
        return nullptr;
    }
    m_Levels.resize(SceneLevels);
    double gain = m_Settings.exposure / ReferenceExposure * ByteToWord;
    for (int value = 0; value < SceneLevels; ++value) {
        m_Levels[value] = static_cast<unsigned short>(
            std::min(static_cast<double>(WordMax), std::round(value * gain)));
    }
    m_MeanLevel = MeanLevel();
    std::shared_ptr<Frame> frame = m_Pool.Take();
    if (!frame) {
        return nullptr;
    }
    frame->width = m_Settings.width;
    frame->height = m_Settings.height;
    frame->format = m_Settings.format;
    frame->stride = static_cast<size_t>(m_Settings.width) * BytesPerPixel(m_Settings.format);
    frame->id = m_FrameCount;
    frame->data.resize(frame->stride * m_Settings.height);
    Shade(*frame);
    DrawDisc(*frame);
    if (m_Settings.showsRegion && !m_Settings.region.IsEmpty()) {
        DrawOutline(*frame);
    }
    return frame;
}

void SensorSimulation::Finish(CameraAccess& access)
{
    AccessControls controls(access);
    Finish(controls);
}

void SensorSimulation::Finish(SensorControls& controls)
{
    const Settings& s = m_Settings;
    bool once = s.autoMode == "Once";
    if ((!once && s.autoMode != "Continuous") || !controls.Has(s.exposureName)) {
        m_OnceFrames = 0;
        return;
    }
    double level = std::max(1.0, m_MeanLevel);
    bool reached = std::fabs(level - s.target) <= s.tolerance;
    double step = reached ? 1.0 : std::pow(std::max(0.0, s.target) / level, s.rate);
    step = std::max(1.0 / LargestStep, std::min(LargestStep, step));
    double lower = std::max(s.autoLower, controls.FloatMin(s.exposureName));
    double upper = std::min(s.autoUpper, controls.FloatMax(s.exposureName));
    // Within limits at every frame, also when the level needs no correction.
    double exposure = std::max(lower, std::min(upper, std::round(s.exposure * step)));
    if (exposure != s.exposure) {
        controls.SetFloat(s.exposureName, exposure);
    }
    bool pinned = (step > 1.0 && exposure >= upper) || (step < 1.0 && exposure <= lower);
    if (once && (reached || pinned || ++m_OnceFrames >= OnceFrames)) {
        controls.SetText("ExposureAuto", "Off");
        m_OnceFrames = 0;
    }
}

void SensorSimulation::BuildScene(int width, int height)
{
    m_SceneWidth = std::max(0, width);
    m_SceneHeight = std::max(0, height);
    m_Tile = std::max(16, m_SceneWidth / TilesAcross);
    m_Scene.assign(static_cast<size_t>(m_SceneWidth) * m_SceneHeight, 0);
    for (int y = 0; y < m_SceneHeight; ++y) {
        int row = y / m_Tile;
        // A soft light falling off toward the bottom.
        int shade = 16 * y / std::max(1, m_SceneHeight);
        unsigned char* line = m_Scene.data() + static_cast<size_t>(y) * m_SceneWidth;
        for (int x = 0; x < m_SceneWidth; ++x) {
            int column = x / m_Tile;
            bool bright = (row + column) % 2 == 0;
            int value = bright ? 200 + 10 * ((column * 7 + row * 3) % 4) - shade
                               : 12 + 6 * ((column * 5 + row * 11) % 4);
            line[x] = static_cast<unsigned char>(value);
        }
    }
}

void SensorSimulation::Shade(Frame& frame) const
{
    unsigned char levels8[SceneLevels];
    for (int value = 0; value < SceneLevels; ++value) {
        levels8[value] = static_cast<unsigned char>(m_Levels[value] >> WordToByteShift);
    }
    for (int y = 0; y < frame.height; ++y) {
        const unsigned char* scene = m_Scene.data() +
                                     static_cast<size_t>(m_Settings.offsetY + y) * m_SceneWidth +
                                     m_Settings.offsetX;
        unsigned char* out = frame.data.data() + y * frame.stride;
        if (frame.format == PixelFormat::Mono16) {
            for (int x = 0; x < frame.width; ++x) {
                std::memcpy(out + 2 * x, &m_Levels[scene[x]], 2);
            }
        } else if (frame.format == PixelFormat::RGB8) {
            for (int x = 0; x < frame.width; ++x) {
                std::memset(out + 3 * x, levels8[scene[x]], 3);
            }
        } else {
            for (int x = 0; x < frame.width; ++x) {
                out[x] = levels8[scene[x]];
            }
        }
    }
}

void SensorSimulation::DrawDisc(Frame& frame) const
{
    // Drifts one tile in about four seconds at the default frame rate.
    int radius = m_Tile * 35 / 100;
    long long travel = static_cast<long long>(m_FrameCount) * m_Tile / 56;
    int centerX = static_cast<int>(travel % std::max(1, m_SceneWidth)) - m_Settings.offsetX;
    int centerY = m_Tile / 2 - m_Settings.offsetY;
    int top = std::max(0, centerY - radius);
    int bottom = std::min(frame.height, centerY + radius + 1);
    int left = std::max(0, centerX - radius);
    int right = std::min(frame.width, centerX + radius + 1);
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            int dx = x - centerX;
            int dy = y - centerY;
            if (dx * dx + dy * dy <= radius * radius) {
                Put(frame, x, y, m_Levels[DiscValue]);
            }
        }
    }
}

void SensorSimulation::DrawOutline(Frame& frame) const
{
    // Thick enough to survive the downscaling of a viewer; dashed black and
    // white so that it shows on dark and saturated parts alike.
    const PixelRect& r = m_Settings.region;
    int thickness = std::max(2, std::min(frame.width, frame.height) / 200);
    for (int y = r.y; y < r.y + r.height; ++y) {
        bool edgeRow = y < r.y + thickness || y >= r.y + r.height - thickness;
        for (int x = r.x; x < r.x + r.width; ++x) {
            if (edgeRow || x < r.x + thickness || x >= r.x + r.width - thickness) {
                Put(frame, x, y, (x + y) / DashLength % 2 ? WordMax : 0);
            } else {
                x = r.x + r.width - thickness - 1;
            }
        }
    }
}

double SensorSimulation::MeanLevel() const
{
    PixelRect metered = m_Settings.region;
    if (!m_Settings.metersRegion || metered.IsEmpty()) {
        metered = PixelRect{0, 0, m_Settings.width, m_Settings.height};
    }
    double area = static_cast<double>(metered.width) * metered.height;
    int step = std::max(1, static_cast<int>(std::sqrt(area / MeteredSamples)));
    double sum = 0.0;
    long long count = 0;
    for (int y = metered.y; y < metered.y + metered.height; y += step) {
        const unsigned char* scene = m_Scene.data() +
                                     static_cast<size_t>(m_Settings.offsetY + y) * m_SceneWidth +
                                     m_Settings.offsetX;
        for (int x = metered.x; x < metered.x + metered.width; x += step) {
            sum += m_Levels[scene[x]] >> 8;
            ++count;
        }
    }
    return count > 0 ? sum / count : 0.0;
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
