#include "ServedCamera.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <sstream>
#include <sys/file.h>
#include <unistd.h>

namespace {
const char LockFile[] = "/tmp/tab-gige-loopback.lock";
const mode_t LockMode = 0666;
// The server needs a moment before it answers discovery.
const std::chrono::seconds DiscoveryLimit(30);
const int OpenAttempts = 3;

// A serial no other test, and no other run beside this one, gives its
// server: this process's id and a count.
std::string UniqueSerial()
{
    static std::atomic<unsigned> count{0};
    std::ostringstream serial;
    serial << 'C' << std::uppercase << std::hex << getpid() << 'N' << count++;
    return serial.str();
}
} // namespace

ServedCamera::ServedCamera(const std::string& program, const Arguments& arguments)
    : m_Lock(open(LockFile, O_RDWR | O_CREAT | O_CLOEXEC, LockMode)), m_Program(program),
      m_Serial(UniqueSerial()), m_Arguments(arguments(m_Serial))
{
    flock(m_Lock, LOCK_EX);
    if (!Start()) {
        m_Id.clear();
    }
}

ServedCamera::~ServedCamera()
{
    m_Server.reset();
    close(m_Lock);
}

bool ServedCamera::Start()
{
    m_Id = "Aravis-Fake-" + m_Serial;
    m_Server.reset(new ServerProcess(m_Program, m_Arguments));
    const auto deadline = std::chrono::steady_clock::now() + DiscoveryLimit;
    while (m_Server->IsRunning() && std::chrono::steady_clock::now() < deadline) {
        const std::vector<std::string> ids = KST::TrkAPI::GenICam::Camera::DeviceIds();
        if (std::find(ids.begin(), ids.end(), m_Id) != ids.end()) {
            return true;
        }
    }
    return false;
}

void ServedCamera::Kill()
{
    m_Server->Kill();
}

std::unique_ptr<KST::TrkAPI::GenICam::Camera> ServedCamera::Open(std::string* error) const
{
    std::unique_ptr<KST::TrkAPI::GenICam::Camera> camera;
    for (int attempt = 0; !camera && attempt < OpenAttempts; ++attempt) {
        camera = KST::TrkAPI::GenICam::Camera::Open(m_Id, error);
    }
    return camera;
}

ServedCamera::Arguments FamilyArguments(const std::string& family)
{
    return [family](const std::string& serial) {
        return std::vector<std::string>{"--family", family, "--serial", serial};
    };
}
