#include <TarkaCPP/Sim/SimCamera.h>

#include "../FrameDispatch.h"
#include "CameraState.h"
#include "SimFeature.h"

#include <algorithm>
#include <stdexcept>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

void RunDueActions(CameraState& state)
{
    std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now();
    for (PeriodicAction& periodic : state.m_PeriodicActions) {
        if (periodic.due <= now) {
            periodic.due = now + periodic.period;
            state.Apply(periodic.action, CameraState::NoFeature);
        }
    }
}

void WaitForWork(CameraState& state, std::unique_lock<std::mutex>& lock)
{
    if (state.m_PeriodicActions.empty()) {
        state.m_Signal.wait(lock);
        return;
    }
    std::chrono::steady_clock::time_point due = state.m_PeriodicActions.front().due;
    for (const PeriodicAction& periodic : state.m_PeriodicActions) {
        due = std::min(due, periodic.due);
    }
    state.m_Signal.wait_until(lock, due);
    RunDueActions(state);
}

} // namespace

Camera::Camera() : m_State(std::make_shared<CameraState>()), m_Frames(new FrameDispatch)
{
    m_Notifier = std::thread(&Camera::RunNotifier, this);
}

Camera::~Camera()
{
    std::vector<FeaturePtr> features;
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        m_State->m_Observers.Stop();
    }
    m_Notifier.join();
    if (m_FrameThread.joinable()) {
        m_FrameThread.join();
    }
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    features.swap(m_Features);
}

void Camera::RunNotifier()
{
    CameraState& state = *m_State;
    std::unique_lock<std::mutex> lock(state.m_Lock);
    state.m_Observers.SetNotifierThread();
    while (!state.m_Observers.IsStopped()) {
        if (state.m_Observers.HasQueued()) {
            state.m_Observers.DeliverNext(lock, m_Features);
        } else {
            WaitForWork(state, lock);
        }
    }
}

void Camera::RunFrames()
{
    CameraState& state = *m_State;
    std::chrono::steady_clock::time_point due = std::chrono::steady_clock::now();
    std::unique_lock<std::mutex> lock(state.m_Lock);
    while (!state.m_Observers.IsStopped()) {
        std::chrono::microseconds period(0);
        if (m_FrameClock) {
            period = m_Generator->Period(state.Access());
        }
        std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now();
        if (period.count() <= 0) {
            state.m_Signal.wait(lock);
            due = std::chrono::steady_clock::now();
        } else if (now < due) {
            state.m_Signal.wait_until(lock, due);
        } else {
            // A camera that falls behind drops frames rather than catching up.
            due = std::max(due + period, now);
            lock.unlock();
            ProduceFrame();
            lock.lock();
        }
    }
}

void Camera::Add(const FeatureDescription& description)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Add(description);
    m_Features.push_back(
        FeaturePtr(new SimFeature(m_State, m_Features.size(), *m_State->m_Entries.back())));
}

void Camera::AddInteger(const std::string& name, long long value, long long min, long long max,
                        long long increment)
{
    Add(IntFeature("/", name, value, min, max, increment));
}

void Camera::AddFloat(const std::string& name, double value, double min, double max,
                      double increment)
{
    Add(FloatFeature("/", name, value, min, max, increment));
}

void Camera::AddBool(const std::string& name, bool value)
{
    Add(BoolFeature("/", name, value));
}

void Camera::AddEnum(const std::string& name, const std::vector<std::string>& entries,
                     const std::string& current)
{
    Add(EnumFeature("/", name, entries, current));
}

void Camera::AddString(const std::string& name, const std::string& value)
{
    Add(StringFeature("/", name, value));
}

void Camera::AddCommand(const std::string& name)
{
    Add(CommandFeature("/", name));
}

void Camera::AddRaw(const std::string& name)
{
    Add(RawFeature("/", name));
}

void Camera::SetDisplayName(const std::string& name, const std::string& displayName)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name).displayName = displayName;
}

void Camera::SetCategory(const std::string& name, const std::string& category)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name).category = category;
}

void Camera::SetWritable(const std::string& name, bool writable)
{
    Change([&](CameraAccess& access) { access.SetWritable(name, writable); });
}

void Camera::SetEntryAvailable(const std::string& name, const std::string& entry, bool available)
{
    Change([&](CameraAccess& access) { access.SetEntryAvailable(name, entry, available); });
}

void Camera::AddRule(const Rule& rule)
{
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        m_State->m_Rules.push_back(rule);
        m_State->Apply([](CameraAccess&) {}, CameraState::NoFeature);
    }
    m_State->m_Signal.notify_all();
}

void Camera::SetCommandAction(const std::string& name, const Rule& action)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name, TrkFeatureDataCommand).commandAction = action;
}

void Camera::SetPeriodicAction(std::chrono::milliseconds period, const Rule& action)
{
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        PeriodicAction periodic = {period, std::chrono::steady_clock::now() + period, action};
        m_State->m_PeriodicActions.push_back(periodic);
    }
    m_State->m_Signal.notify_all();
}

void Camera::SetFrameGenerator(std::unique_ptr<FrameGenerator> generator)
{
    if (m_Generator) {
        throw std::logic_error("the camera has a frame generator already");
    }
    m_Generator = std::move(generator);
    m_FrameThread = std::thread(&Camera::RunFrames, this);
}

bool Camera::Has(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->IndexOf(name) != CameraState::NoFeature;
}

long long Camera::IntValue(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->Entry(name, TrkFeatureDataInt).integer.value;
}

double Camera::FloatValue(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->Entry(name, TrkFeatureDataFloat).real.value;
}

bool Camera::BoolValue(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->Entry(name, TrkFeatureDataBool).boolValue;
}

std::string Camera::TextValue(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->Entry(name, TrkFeatureDataEnum, TrkFeatureDataString).text;
}

void Camera::SetFromCamera(const std::string& name, int value)
{
    SetFromCamera(name, static_cast<long long>(value));
}

void Camera::SetFromCamera(const std::string& name, long long value)
{
    ChangeAndNotify(name, [&](CameraAccess& access) {
        if (access.Type(name) == TrkFeatureDataFloat) {
            access.SetFloat(name, static_cast<double>(value));
        } else {
            access.SetInt(name, value);
        }
    });
}

void Camera::SetFromCamera(const std::string& name, double value)
{
    ChangeAndNotify(name, [&](CameraAccess& access) { access.SetFloat(name, value); });
}

void Camera::SetFromCamera(const std::string& name, bool value)
{
    ChangeAndNotify(name, [&](CameraAccess& access) { access.SetBool(name, value); });
}

void Camera::SetFromCamera(const std::string& name, const char* value)
{
    SetFromCamera(name, std::string(value));
}

void Camera::SetFromCamera(const std::string& name, const std::string& value)
{
    ChangeAndNotify(name, [&](CameraAccess& access) { access.SetText(name, value); });
}

void Camera::Change(const Rule& change)
{
    ChangeAndNotify(std::string(), change);
}

void Camera::ChangeAndNotify(const std::string& name, const Rule& change)
{
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        m_State->Apply(change, name.empty() ? CameraState::NoFeature : m_State->IndexOf(name));
    }
    m_State->m_Signal.notify_all();
}

std::vector<FeaturePtr> Camera::Features() const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_Features;
}

FeaturePtr Camera::Find(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    size_t index = m_State->IndexOf(name);
    return index == CameraState::NoFeature ? FeaturePtr() : m_Features[index];
}

void Camera::SetFrameHandler(const FrameHandler& handler)
{
    m_Frames->SetHandler(handler);
}

void Camera::SetFailure(const std::string& name, Op op, TrkErrorType code)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name).failures[op] = code;
    m_State->ActivateHooks();
}

void Camera::ClearFailure(const std::string& name, Op op)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name).failures.erase(op);
}

void Camera::ClearFailures()
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    for (const std::unique_ptr<FeatureEntry>& entry : m_State->m_Entries) {
        entry->failures.clear();
    }
}

void Camera::SetMisreport(const std::string& name, const Misreport& misreport)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->Entry(name).misreport = misreport;
    m_State->ActivateHooks();
}

void Camera::StartJournal()
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    m_State->m_Journaling = true;
    m_State->m_Journal.clear();
    m_State->ActivateHooks();
}

std::vector<std::pair<std::string, Op>> Camera::Journal() const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->m_Journal;
}

int Camera::Calls(const std::string& name, Op op) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    CheckCounting();
    return m_State->Entry(name).calls[static_cast<int>(op)];
}

int Camera::TotalCalls(Op op) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    CheckCounting();
    int total = 0;
    for (const std::unique_ptr<FeatureEntry>& entry : m_State->m_Entries) {
        total += entry->calls[static_cast<int>(op)];
    }
    return total;
}

void Camera::ResetCalls()
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    for (const std::unique_ptr<FeatureEntry>& entry : m_State->m_Entries) {
        entry->calls.fill(0);
    }
    m_State->ActivateHooks();
}

void Camera::CheckCounting() const
{
    if (!m_State->HooksActive()) {
        throw std::logic_error("calls are counted from the first ResetCalls on");
    }
}

int Camera::ObserverCount(const std::string& name) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    return m_State->m_Observers.Count(m_State->IndexOf(m_State->Entry(name).name));
}

void Camera::WaitForNotifications()
{
    std::unique_lock<std::mutex> lock(m_State->m_Lock);
    ObserverRegistry& observers = m_State->m_Observers;
    if (observers.OnNotifierThread()) {
        return;
    }
    unsigned long long target = observers.Queued();
    m_State->m_Signal.wait(lock, [&] { return observers.Done() >= target; });
}

void Camera::SetFrameClock(bool running)
{
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        m_FrameClock = running;
    }
    m_State->m_Signal.notify_all();
}

bool Camera::ProduceFrame()
{
    if (!m_Generator) {
        return false;
    }
    std::lock_guard<std::mutex> producing(m_FrameLock);
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        CameraAccess access = m_State->Access();
        if (m_State->m_Observers.IsStopped() || m_Generator->Period(access).count() <= 0) {
            return false;
        }
        m_Generator->Prepare(access);
    }
    FramePtr frame = m_Generator->Render();
    {
        std::lock_guard<std::mutex> lock(m_State->m_Lock);
        m_State->Apply([this](CameraAccess& access) { m_Generator->Finish(access); },
                       CameraState::NoFeature);
    }
    m_State->m_Signal.notify_all();
    if (frame) {
        m_Frames->Deliver(frame);
    }
    return true;
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
