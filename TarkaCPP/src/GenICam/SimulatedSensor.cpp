#include <TarkaCPP/GenICam/SimulatedSensor.h>

#include "../Sim/SensorSimulation.h"
#include "FakeCameraDevice.h"
#include "NodeMapControls.h"
#include "PowerUp.h"

#include <arv.h>

#include <algorithm>
#include <cstring>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// The camera's own node map over its memory, and the simulation it drives.
struct SimulatedSensor::Firmware
{
    Firmware(ArvFakeCamera* camera, ArvDevice* device, ArvGc* genicam)
        : camera(camera), device(device), genicam(genicam), controls(genicam)
    {}
    ~Firmware()
    {
        g_object_unref(genicam);
        g_object_unref(device);
    }

    ArvFakeCamera* camera;
    ArvDevice* device;
    ArvGc* genicam;
    NodeMapControls controls;
    Sim::SensorSimulation simulation;
};

namespace {

// Copies the frame into the buffer, which the fake camera sized by its
// "Height" register, line by line; what the frame doesn't cover stays black.
void CopyFrame(const Frame* frame, ArvFakeCamera* camera, ArvBuffer* buffer)
{
    // The buffer holds at least the payload; its received size is set later.
    size_t size = arv_fake_camera_get_payload(camera);
    auto* out =
        static_cast<unsigned char*>(const_cast<void*>(arv_buffer_get_data(buffer, nullptr)));
    std::memset(out, 0, size);
    guint32 height = 0;
    arv_fake_camera_read_register(camera, ARV_FAKE_CAMERA_REGISTER_HEIGHT, &height);
    if (frame == nullptr || height == 0) {
        return;
    }
    size_t stride = size / height;
    size_t line = std::min(stride, frame->stride);
    for (int y = 0; y < std::min(static_cast<int>(height), frame->height); ++y) {
        std::memcpy(out + y * stride, frame->data.data() + y * frame->stride, line);
    }
}

void Fill(ArvBuffer* buffer, void* data, guint32, guint32, ArvPixelFormat)
{
    auto* firmware = static_cast<SimulatedSensor::Firmware*>(data);
    firmware->simulation.Prepare(firmware->controls);
    FramePtr frame = firmware->simulation.Render();
    CopyFrame(frame.get(), firmware->camera, buffer);
    frame.reset();
    firmware->simulation.Finish(firmware->controls);
}

} // namespace

SimulatedSensor::SimulatedSensor(ArvFakeCamera* camera)
    : m_Camera(ARV_FAKE_CAMERA(g_object_ref(camera)))
{
    size_t size = 0;
    const char* xml = arv_fake_camera_get_genicam_xml(camera, &size);
    if (xml == nullptr || size == 0) {
        return;
    }
    ArvDevice* device = NewFakeCameraDevice(camera);
    ArvGc* genicam = arv_gc_new(device, xml, size);
    m_Firmware.reset(new Firmware(camera, device, genicam));
    PowerUp(genicam);
    arv_fake_camera_write_register(
        camera, ARV_FAKE_CAMERA_REGISTER_ACQUISITION_FRAME_PERIOD_US,
        static_cast<guint32>(Sim::SensorSimulation::FramePeriod(m_Firmware->controls).count()));
    arv_fake_camera_set_fill_pattern(camera, Fill, m_Firmware.get());
}

SimulatedSensor::~SimulatedSensor()
{
    if (m_Firmware != nullptr) {
        arv_fake_camera_set_fill_pattern(m_Camera, nullptr, nullptr);
    }
    g_object_unref(m_Camera);
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
