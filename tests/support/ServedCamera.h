#ifndef SERVEDCAMERA_H
#define SERVEDCAMERA_H

#include "ServerProcess.h"
#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <sys/file.h>
#include <unistd.h>
#include <vector>

// A camera server that a test starts on loopback, with the id discovery
// gives its camera (empty if it stays silent). GigE Vision control goes to
// port 3956 of the camera's address, which only one server on 127.0.0.1 can
// hold, so while the object lives it holds a lock that every test process of
// the machine waits for: servers of runs side by side never answer for each
// other. One object at a time in a process.
class ServedCamera
{
public:
    // arguments gives the server's arguments for the serial it serves under.
    ServedCamera(const std::string& program,
                 const std::function<std::vector<std::string>(const std::string&)>& arguments)
        : m_Lock(open("/tmp/tab-gige-loopback.lock", O_RDWR | O_CREAT | O_CLOEXEC, 0666)),
          m_Serial(ServerProcess::UniqueSerial("C"))
    {
        flock(m_Lock, LOCK_EX);
        m_Server.reset(new ServerProcess(program, arguments(m_Serial)));
        const std::string wanted = "Aravis-Fake-" + m_Serial;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (m_Id.empty() && m_Server->IsRunning() &&
               std::chrono::steady_clock::now() < deadline) {
            const std::vector<std::string> ids = KST::TrkAPI::GenICam::Camera::DeviceIds();
            if (std::find(ids.begin(), ids.end(), wanted) != ids.end()) {
                m_Id = wanted;
            }
        }
    }
    ~ServedCamera()
    {
        m_Server.reset();
        close(m_Lock);
    }
    ServedCamera(const ServedCamera&) = delete;
    ServedCamera& operator=(const ServedCamera&) = delete;

    const std::string& Id() const { return m_Id; }
    ServerProcess& Server() { return *m_Server; }

private:
    int m_Lock;
    std::string m_Serial;
    std::unique_ptr<ServerProcess> m_Server;
    std::string m_Id;
};

// tabcamera's arguments for a camera of the family.
inline std::function<std::vector<std::string>(const std::string&)>
FamilyArguments(const std::string& family)
{
    return [family](const std::string& serial) {
        return std::vector<std::string>{"--family", family, "--serial", serial};
    };
}

#endif
