#ifndef TARKACPP_SIM_SIMCAMERA_H
#define TARKACPP_SIM_SIMCAMERA_H

#include <TarkaCPP/Device.h>
#include <TarkaCPP/Feature.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace KST {
namespace TrkAPI {
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

// Result codes of the in-memory backend. Callers only tell zero from
// non-zero; distinct codes make test failures readable.
enum ErrorCode : TrkErrorType
{
    Success = 0,
    ErrorWrongType = -1001,
    ErrorOutOfRange = -1002,
    ErrorOffGrid = -1003,
    ErrorNotWritable = -1004,
    ErrorBufferTooSmall = -1005,
    ErrorInvalidArgument = -1006,
    ErrorNoIncrement = -1007,
    ErrorAlreadyRegistered = -1008,
    ErrorNotRegistered = -1009,
    ErrorUnavailableEntry = -1010,
    ErrorInjected = -1011
};

// Reads and changes feature state as the camera itself would, without
// range, grid or writability checks. Handed to rules and actions, which run
// under the camera's lock: it must not outlive the call that received it.
// Every change of a value or range is recorded and notified afterwards.
// Names that don't exist, or of the wrong type, throw std::invalid_argument.
class CameraAccess
{
public:
    bool Has(const std::string& name) const;
    TrkFeatureDataType Type(const std::string& name) const;

    long long Int(const std::string& name) const;
    long long IntMin(const std::string& name) const;
    long long IntMax(const std::string& name) const;
    long long IntIncrement(const std::string& name) const;
    double Float(const std::string& name) const;
    double FloatMin(const std::string& name) const;
    double FloatMax(const std::string& name) const;
    bool Bool(const std::string& name) const;
    // Text of an enumeration or string feature.
    std::string Text(const std::string& name) const;

    void SetInt(const std::string& name, long long value);
    void SetFloat(const std::string& name, double value);
    void SetBool(const std::string& name, bool value);
    void SetText(const std::string& name, const std::string& value);

    // Sets new bounds. A value left outside is moved onto the nearest bound,
    // an integer one onto the grid below the maximum, as a camera does.
    void SetIntRange(const std::string& name, long long min, long long max);
    void SetFloatRange(const std::string& name, double min, double max);

    void SetWritable(const std::string& name, bool writable);
    void SetEntryAvailable(const std::string& name, const std::string& entry, bool available);

private:
    friend class CameraState;
    explicit CameraAccess(CameraState& state) : m_State(state) {}

    CameraState& m_State;
};

// A rule recomputes what depends on other features, or an action changes the
// camera; both run with the camera's lock held and must not call features.
typedef std::function<void(CameraAccess&)> Rule;

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

    // Test hooks. A failure makes that operation of that feature return code
    // until cleared. Calls are counted, whether they fail or not, from the
    // first ResetCalls or SetFailure on: until then the features skip the
    // bookkeeping, and Calls and TotalCalls throw std::logic_error.
    void SetFailure(const std::string& name, Op op, TrkErrorType code = ErrorInjected);
    void ClearFailure(const std::string& name, Op op);
    void ClearFailures();
    int Calls(const std::string& name, Op op) const;
    int TotalCalls(Op op) const;
    void ResetCalls();
    int ObserverCount(const std::string& name) const;

    // Returns once every notification queued before the call has been
    // delivered. Returns at once when called from the notifier thread.
    void WaitForNotifications();

private:
    // Ready-made cameras add features from their descriptions.
    friend void AddFeatures(Camera& camera, const std::vector<FeatureDescription>& descriptions);

    void Add(const FeatureDescription& description);
    // Applies change; name, if not empty, is notified even if unchanged.
    void ChangeAndNotify(const std::string& name, const Rule& change);
    void RunNotifier();
    // Throws std::logic_error while calls aren't being counted.
    void CheckCounting() const;

    std::shared_ptr<CameraState> m_State;
    // The camera's references on its features, guarded by the state's lock.
    std::vector<FeaturePtr> m_Features;
    std::thread m_Notifier;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
