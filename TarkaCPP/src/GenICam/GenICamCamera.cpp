#include <TarkaCPP/GenICam/GenICamCamera.h>

#include "../FrameDispatch.h"
#include "Connection.h"
#include "GLibLog.h"
#include "GenICamFeature.h"
#include "ImageStream.h"
#include "Teardown.h"

#include <algorithm>
#include <fstream>

namespace KST {
namespace TrkAPI {
namespace GenICam {

const std::chrono::milliseconds Camera::PollPeriod(250);
const std::chrono::milliseconds Camera::CallTimeout(3000);

namespace {

// How often the notifier looks whether the device still answers.
const std::chrono::milliseconds WatchPeriod(25);

// Aravis's device list and the description file of its fake camera are
// global to the process.
std::mutex& SystemLock()
{
    static std::mutex lock;
    return lock;
}

const char FakeProtocol[] = "Fake";

std::unique_ptr<Camera> Fail(const std::string& reason, std::string* error)
{
    if (error) {
        *error = reason;
    }
    return nullptr;
}

// Takes the reference on camera; null with error set when it failed.
ArvCamera* Adopt(ArvCamera* camera, GError* failure, const GLibWarnings& warnings,
                 std::string* error)
{
    if (camera != nullptr && failure == nullptr &&
        ARV_IS_GC_CATEGORY(
            arv_gc_get_node(arv_device_get_genicam(arv_camera_get_device(camera)), "Root"))) {
        return camera;
    }
    if (error) {
        if (failure) {
            *error = failure->message;
        } else if (!camera) {
            *error = "no such camera";
        } else if (warnings.Seen()) {
            *error = "Aravis could not read the camera's description";
        } else {
            *error = "the camera's description has no category Root";
        }
    }
    if (failure) {
        g_error_free(failure);
    }
    if (camera) {
        g_object_unref(camera);
    }
    return nullptr;
}

} // namespace

Camera::Camera(const std::shared_ptr<Connection>& connection)
    : m_Connection(connection), m_Frames(new FrameDispatch)
{
    for (size_t index = 0; index < m_Connection->Nodes().size(); ++index) {
        m_Features.push_back(FeaturePtr(new GenICamFeature(m_Connection, index)));
    }
    m_Notifier = std::thread(&Camera::RunNotifier, this);
}

Camera::~Camera()
{
    m_Frames->SetHandler(FrameHandler());
    m_Connection->BeginClose();
    {
        std::lock_guard<std::mutex> lock(m_Connection->m_Lock);
        m_Connection->m_RefreshesDone = m_Connection->m_RefreshesRequested;
        m_Connection->m_Observers.Stop();
    }
    m_Notifier.join();
    // The stream's thread hands frames to m_Frames until it ends.
    std::shared_ptr<Connection> connection = m_Connection;
    std::shared_ptr<ImageStream> stream(std::move(m_Stream));
    std::shared_ptr<FrameDispatch> frames(std::move(m_Frames));
    Teardown::Run([connection, stream, frames]() mutable {
        stream.reset();
        frames.reset();
        connection->Release();
    });
}

std::unique_ptr<Camera> Camera::Open(const std::string& deviceId, std::string* error)
{
    if (deviceId.empty()) {
        return Fail("no device id given", error);
    }
    InstallGLibLog();
    std::lock_guard<std::mutex> system(SystemLock());
    GLibWarnings warnings;
    GError* failure = nullptr;
    ArvCamera* camera = Adopt(arv_camera_new(deviceId.c_str(), &failure), failure, warnings, error);
    if (!camera) {
        return nullptr;
    }
    return std::unique_ptr<Camera>(new Camera(std::make_shared<Connection>(camera)));
}

std::unique_ptr<Camera> Camera::OpenDescription(const std::string& file, std::string* error)
{
    if (!std::ifstream(file).good()) {
        return Fail("cannot read " + file, error);
    }
    InstallGLibLog();
    std::lock_guard<std::mutex> system(SystemLock());
    GLibWarnings warnings;
    arv_set_fake_camera_genicam_filename(file.c_str());
    GError* failure = nullptr;
    ArvDevice* device = arv_fake_device_new("GenICam", &failure);
    ArvCamera* camera = nullptr;
    // Powered up before the camera's first read, it renders the scene of the
    // in-memory cameras instead of the fake camera's own pattern.
    std::unique_ptr<SimulatedSensor> sensor;
    if (device != nullptr) {
        sensor.reset(new SimulatedSensor(arv_fake_device_get_fake_camera(ARV_FAKE_DEVICE(device))));
        camera = arv_camera_new_with_device(device, &failure);
        g_object_unref(device);
    }
    camera = Adopt(camera, failure, warnings, error);
    if (!camera) {
        return nullptr;
    }
    return std::unique_ptr<Camera>(
        new Camera(std::make_shared<Connection>(camera, std::move(sensor))));
}

std::vector<std::string> Camera::DeviceIds()
{
    InstallGLibLog();
    std::lock_guard<std::mutex> system(SystemLock());
    arv_update_device_list();
    std::vector<std::string> ids;
    for (unsigned int index = 0; index < arv_get_n_devices(); ++index) {
        const char* protocol = arv_get_device_protocol(index);
        const char* id = arv_get_device_id(index);
        if (id != nullptr && (protocol == nullptr || std::string(protocol) != FakeProtocol)) {
            ids.push_back(id);
        }
    }
    return ids;
}

std::vector<FeaturePtr> Camera::Features() const
{
    return m_Features;
}

FeaturePtr Camera::Find(const std::string& name) const
{
    size_t index = m_Connection->IndexOf(name);
    return index == Connection::NoFeature ? FeaturePtr() : m_Features[index];
}

bool Camera::IsConnected() const
{
    return m_Connection->IsConnected();
}

bool Camera::IsReadOnly() const
{
    return m_Connection->IsReadOnly();
}

void Camera::WaitForNotifications()
{
    Connection& connection = *m_Connection;
    std::unique_lock<std::mutex> lock(connection.m_Lock);
    ObserverRegistry& observers = connection.m_Observers;
    if (observers.OnNotifierThread()) {
        return;
    }
    unsigned long long target = ++connection.m_RefreshesRequested;
    connection.m_Signal.notify_all();
    connection.m_Signal.wait(lock, [&] {
        return observers.IsStopped() ||
               (connection.m_RefreshesDone >= target && observers.Done() >= observers.Queued());
    });
}

void Camera::RunNotifier()
{
    Connection& connection = *m_Connection;
    std::unique_lock<std::mutex> lock(connection.m_Lock);
    connection.m_Observers.SetNotifierThread();
    std::chrono::steady_clock::time_point nextPoll = std::chrono::steady_clock::now();
    while (!connection.m_Observers.IsStopped()) {
        connection.Watch();
        if (connection.m_Observers.HasQueued()) {
            connection.m_Observers.DeliverNext(lock, m_Features);
        } else if (connection.m_RefreshesRequested > connection.m_RefreshesDone ||
                   std::chrono::steady_clock::now() >= nextPoll) {
            Refresh(lock);
            nextPoll = std::chrono::steady_clock::now() + PollPeriod;
        } else {
            connection.m_Signal.wait_until(
                lock, std::min(nextPoll, std::chrono::steady_clock::now() + WatchPeriod));
        }
    }
}

void Camera::Refresh(std::unique_lock<std::mutex>& lock)
{
    Connection& connection = *m_Connection;
    unsigned long long target = connection.m_RefreshesRequested;
    std::set<size_t> written;
    written.swap(connection.m_Written);
    std::vector<size_t> watched = connection.m_Observers.Watched();
    lock.unlock();
    std::vector<std::string> signatures;
    connection.BypassRegisterCache(true);
    for (size_t index : watched) {
        signatures.push_back(connection.Signature(index));
    }
    connection.BypassRegisterCache(false);
    lock.lock();
    // The written features first, as the camera took them, then the others.
    std::vector<size_t> changed(written.begin(), written.end());
    for (size_t i = 0; i < watched.size(); ++i) {
        std::string& last = connection.m_Signatures[watched[i]];
        if (!signatures[i].empty() && last != signatures[i]) {
            last = signatures[i];
            if (written.count(watched[i]) == 0) {
                changed.push_back(watched[i]);
            }
        }
    }
    for (size_t index : changed) {
        connection.m_Observers.Queue(index);
    }
    connection.m_RefreshesDone = std::max(connection.m_RefreshesDone, target);
    connection.m_Signal.notify_all();
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
