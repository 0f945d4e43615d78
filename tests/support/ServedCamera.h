#ifndef SERVEDCAMERA_H
#define SERVEDCAMERA_H

#include "ServerProcess.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

// A camera server that a test starts on loopback under a serial of its own,
// and can unplug and plug in again under the same id. GigE Vision control
// goes to port 3956 of the camera's address, which only one server on an
// address can hold, so while the object lives it holds a lock that every
// test process of the machine waits for: where tests share the machine's
// loopback, servers of runs side by side never answer for each other.
class ServedCamera
{
public:
    // The server's arguments for the serial it serves under.
    typedef std::function<std::vector<std::string>(const std::string&)> Arguments;

    // Starts the server; Id() is empty if discovery doesn't find it.
    ServedCamera(const std::string& program, const Arguments& arguments);
    ~ServedCamera();
    ServedCamera(const ServedCamera&) = delete;
    ServedCamera& operator=(const ServedCamera&) = delete;

    // Starts the server again after Kill; false if discovery misses it.
    bool Start();
    // Ends the server at once, as a camera that is unplugged.
    void Kill();
    const std::string& Id() const { return m_Id; }
    // Opens the camera, trying again as a user would when a busy loopback
    // let Aravis's search for the id miss it.
    std::unique_ptr<KST::TrkAPI::GenICam::Camera> Open(std::string* error = nullptr) const;

private:
    int m_Lock;
    std::string m_Program;
    std::string m_Serial;
    std::vector<std::string> m_Arguments;
    std::string m_Id;
    std::unique_ptr<ServerProcess> m_Server;
};

// tabcamera's arguments for a camera of the family.
ServedCamera::Arguments FamilyArguments(const std::string& family);

#endif
