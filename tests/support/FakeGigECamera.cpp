#include "FakeGigECamera.h"

#include <QStandardPaths>

#include <algorithm>
#include <chrono>

namespace {
const char ServerProgram[] = "arv-fake-gv-camera-0.8";
// The server needs a moment before it answers discovery.
const std::chrono::seconds DiscoveryLimit(30);
const int OpenAttempts = 3;
} // namespace

FakeGigECamera::FakeGigECamera(const std::string& description)
    : m_Description(description), m_Serial(ServerProcess::UniqueSerial("T")),
      m_Id("Aravis-Fake-" + m_Serial)
{}

bool FakeGigECamera::Available()
{
    return !QStandardPaths::findExecutable(ServerProgram).isEmpty();
}

bool FakeGigECamera::Start()
{
    m_Server.reset(
        new ServerProcess(ServerProgram, {"-i", "127.0.0.1", "-s", m_Serial, "-g", m_Description}));
    const auto deadline = std::chrono::steady_clock::now() + DiscoveryLimit;
    while (m_Server->IsRunning() && std::chrono::steady_clock::now() < deadline) {
        const std::vector<std::string> ids = KST::TrkAPI::GenICam::Camera::DeviceIds();
        if (std::find(ids.begin(), ids.end(), m_Id) != ids.end()) {
            return true;
        }
    }
    return false;
}

void FakeGigECamera::Kill()
{
    m_Server->Kill();
}

std::unique_ptr<KST::TrkAPI::GenICam::Camera> FakeGigECamera::Open(std::string* error) const
{
    std::unique_ptr<KST::TrkAPI::GenICam::Camera> camera;
    for (int attempt = 0; !camera && attempt < OpenAttempts; ++attempt) {
        camera = KST::TrkAPI::GenICam::Camera::Open(m_Id, error);
    }
    return camera;
}
