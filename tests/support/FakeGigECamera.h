#ifndef FAKEGIGECAMERA_H
#define FAKEGIGECAMERA_H

#include "ServerProcess.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <memory>
#include <string>

// A GigE Vision camera on loopback, served by Aravis's fake camera from a
// description under a serial of its own, that a test can unplug and plug in
// again under the same id.
class FakeGigECamera
{
public:
    explicit FakeGigECamera(const std::string& description);

    // False when aravis-tools is not installed.
    static bool Available();
    // Starts the server and waits until discovery lists it; false if it
    // doesn't show up.
    bool Start();
    // Ends the server at once, as a camera that is unplugged.
    void Kill();
    // The id to open it by.
    const std::string& Id() const { return m_Id; }
    // Opens it, trying again as a user would when a busy loopback let
    // Aravis's search for the id miss it.
    std::unique_ptr<KST::TrkAPI::GenICam::Camera> Open(std::string* error = nullptr) const;

private:
    std::string m_Description;
    std::string m_Serial;
    std::string m_Id;
    std::unique_ptr<ServerProcess> m_Server;
};

#endif
