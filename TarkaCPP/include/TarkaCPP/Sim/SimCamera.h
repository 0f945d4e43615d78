#ifndef TARKACPP_SIM_SIMCAMERA_H
#define TARKACPP_SIM_SIMCAMERA_H

#include <TarkaCPP/Device.h>
#include <TarkaCPP/ErrorCode.h>
#include <TarkaCPP/Feature.h>
#include <TarkaCPP/Sim/CameraAccess.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace KST {
namespace TrkAPI {

class FrameDispatch;

namespace Sim {

class CameraState;
struct FeatureDescription;

// The operations of a feature, one per operation name whatever the overload;
// used to inject failures and to count calls.
enum class Op
{
    GetName,
    GetDisplayName,
    GetCategory,
    GetDataType,
    IsWritable,
    GetValue,
    GetValues,
    IsValueAvailable,
    GetRange,
    GetIncrement,
    SetValue,
    RunCommand,
    RegisterObserver,
    UnregisterObserver
};

// The in-memory backend's own result code, beside those of ErrorCode.
enum SimErrorCode : TrkErrorType
{
    // A failure that a test injected.
    ErrorInjected = -1011
};

// What a feature answers in place of the camera's state, as a broken camera
// might, for tests of callers: each answer that is set replaces the true one,
// whatever the feature's type. Writes, rules and observers still work on the
// state.
struct Misreport
{
    std::optional<TrkFeatureDataType> type;
    // A value, inside its range or not.
    std::optional<long long> intValue;
    std::optional<double> floatValue;
    // A range that lies: inverted, beside the value, or not a number.
    std::optional<std::pair<long long, long long>> intRange;
    std::optional<std::pair<double, double>> floatRange;
    // A step, zero or less as well.
    std::optional<long long> intIncrement;
    std::optional<double> floatIncrement;
    // A value that changes between two reads: the camera moves it a step on,
    // past the maximum back to the minimum, before each read, and notifies.
    bool unsteady = false;
};

// A rule recomputes what depends on other features, or an action changes the
// camera; both run with the camera's lock held and must not call features.
typedef std::function<void(CameraAccess&)> Rule;

// Makes a camera's frames. The camera calls Period and Prepare with its lock
// held, Render without it, then Finish with the lock again; one frame at a
// time. Like rules, the calls with the lock must not call features.
class FrameGenerator
{
public:
    virtual ~FrameGenerator() {}

    // Time from one frame to the next; zero while the camera doesn't acquire.
    virtual std::chrono::microseconds Period(const CameraAccess& access) const = 0;
    // Takes what the next frame depends on.
    virtual void Prepare(const CameraAccess& access) = 0;
    // The frame, or null to drop it.
    virtual FramePtr Render() = 0;
    // What the camera does after a frame, such as steering its exposure.
    virtual void Finish(CameraAccess& access) = 0;
};

// An in-memory camera: a list of features of every type, that refuses writes
// a camera would refuse, recomputes dependent limits after every write, and
// notifies observers from a notifier thread of its own.
//
// The features share the camera's state, so FeaturePtrs stay usable after
// the Camera object is gone; notifications then stop. The Camera object must
// not be destroyed from inside an observer callback.
class Camera : public Device
{
public:
    Camera();
    ~Camera() override;

    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    // Building. Names are unique; a repeated name throws std::invalid_argument.
    // An integer increment of 0 and a floating increment <= 0 mean no step:
    // GetIncrement then fails.
    void AddInteger(const std::string& name, long long value, long long min, long long max,
                    long long increment = 1);
    void AddFloat(const std::string& name, double value, double min, double max,
                  double increment = 0.0);
    void AddBool(const std::string& name, bool value);
    void AddEnum(const std::string& name, const std::vector<std::string>& entries,
                 const std::string& current);
    void AddString(const std::string& name, const std::string& value);
    void AddCommand(const std::string& name);
    void AddRaw(const std::string& name);

    // Without these the display name is the name and the category is "/".
    void SetDisplayName(const std::string& name, const std::string& displayName);
    void SetCategory(const std::string& name, const std::string& category);

    // Writability and entry availability, both changeable at run time; a
    // change is notified.
    void SetWritable(const std::string& name, bool writable);
    void SetEntryAvailable(const std::string& name, const std::string& entry, bool available);

    // Adds a rule that runs now and after every change, until nothing moves.
    void AddRule(const Rule& rule);
    // Runs action on a successful RunCommand of the command feature name.
    void SetCommandAction(const std::string& name, const Rule& action);
    // Runs action on the notifier thread every period while the camera exists.
    void SetPeriodicAction(std::chrono::milliseconds period, const Rule& action);
    // Makes frames with generator from a thread of the camera, at the
    // generator's period while it tells one. Set once, while building.
    void SetFrameGenerator(std::unique_ptr<FrameGenerator> generator);

    // Reading from the outside; unknown names or wrong types throw
    // std::invalid_argument.
    bool Has(const std::string& name) const;
    long long IntValue(const std::string& name) const;
    double FloatValue(const std::string& name) const;
    bool BoolValue(const std::string& name) const;
    std::string TextValue(const std::string& name) const;

    // Changing as the camera does: no range, grid or writability check; the
    // rules run afterwards and every feature that changed is notified. A
    // whole number may go to a floating feature as well.
    void SetFromCamera(const std::string& name, int value);
    void SetFromCamera(const std::string& name, long long value);
    void SetFromCamera(const std::string& name, double value);
    void SetFromCamera(const std::string& name, bool value);
    void SetFromCamera(const std::string& name, const char* value);
    void SetFromCamera(const std::string& name, const std::string& value);
    // Any change through CameraAccess, with the rules and notifications.
    void Change(const Rule& change);

    // The features in the camera's order, and one by name (empty if absent).
    std::vector<FeaturePtr> Features() const override;
    FeaturePtr Find(const std::string& name) const override;
    bool IsConnected() const override { return true; }
    void SetFrameHandler(const FrameHandler& handler) override;

    // Test hooks. A failure makes that operation of that feature return code
    // until cleared. Calls are counted, whether they fail or not, from the
    // first ResetCalls, SetFailure, SetMisreport or StartJournal on: until then the features skip
    // the bookkeeping, and Calls and TotalCalls throw std::logic_error.
    void SetFailure(const std::string& name, Op op, TrkErrorType code = ErrorInjected);
    void ClearFailure(const std::string& name, Op op);
    void ClearFailures();
    void SetMisreport(const std::string& name, const Misreport& misreport);
    // Every call from now on in order, as feature name and operation.
    void StartJournal();
    std::vector<std::pair<std::string, Op>> Journal() const;
    int Calls(const std::string& name, Op op) const;
    int TotalCalls(Op op) const;
    void ResetCalls();
    int ObserverCount(const std::string& name) const;

    // Returns once every notification queued before the call has been
    // delivered. Returns at once when called from the notifier thread.
    void WaitForNotifications();

    // Frames step by step: with the clock stopped the camera's thread makes
    // no frames; ProduceFrame makes one now, on the calling thread, and
    // hands it to the frame handler; false, with no frame, unless acquiring.
    // ProduceFrame must not be called from inside a frame handler.
    void SetFrameClock(bool running);
    bool ProduceFrame();

private:
    // Ready-made cameras add features from their descriptions.
    friend void AddFeatures(Camera& camera, const std::vector<FeatureDescription>& descriptions);

    void Add(const FeatureDescription& description);
    // Applies change; name, if not empty, is notified even if unchanged.
    void ChangeAndNotify(const std::string& name, const Rule& change);
    void RunNotifier();
    void RunFrames();
    // Throws std::logic_error while calls aren't being counted.
    void CheckCounting() const;

    std::shared_ptr<CameraState> m_State;
    // The camera's references on its features, guarded by the state's lock.
    std::vector<FeaturePtr> m_Features;
    std::thread m_Notifier;

    std::unique_ptr<FrameGenerator> m_Generator;
    std::unique_ptr<FrameDispatch> m_Frames;
    // Held while a frame is made, so that frames come one at a time.
    std::mutex m_FrameLock;
    // Guarded by the state's lock.
    bool m_FrameClock = true;
    std::thread m_FrameThread;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
