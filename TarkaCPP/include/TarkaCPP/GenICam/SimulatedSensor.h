#ifndef TARKACPP_GENICAM_SIMULATEDSENSOR_H
#define TARKACPP_GENICAM_SIMULATEDSENSOR_H

#include <memory>

typedef struct _ArvFakeCamera ArvFakeCamera;

namespace KST {
namespace TrkAPI {
namespace GenICam {

// The firmware of a simulated camera that Aravis's fake camera serves from
// one of the project's descriptions. At start it gives the description's
// features the values of the in-memory camera of the same family; from then
// on it renders every frame the fake camera sends with the sensor simulation
// of the in-memory cameras: the image format, the exposure and the region
// come from the camera's registers, and auto exposure steers the exposure
// there, so every client of the camera sees the same.
//
// The frames are rendered on the fake camera's own thread, the only one that
// uses the simulation once the object is made.
class SimulatedSensor
{
public:
    // Keeps a reference on the camera.
    explicit SimulatedSensor(ArvFakeCamera* camera);
    // Gives the camera back its own pattern; no frame is rendered afterwards.
    ~SimulatedSensor();

    SimulatedSensor(const SimulatedSensor&) = delete;
    SimulatedSensor& operator=(const SimulatedSensor&) = delete;

    // False when the camera's description couldn't be read: frames then stay
    // the fake camera's own.
    bool IsRunning() const { return m_Firmware != nullptr; }

    struct Firmware;

private:
    ArvFakeCamera* m_Camera;
    std::unique_ptr<Firmware> m_Firmware;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
