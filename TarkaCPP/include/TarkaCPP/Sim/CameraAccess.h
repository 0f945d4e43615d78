#ifndef TARKACPP_SIM_CAMERAACCESS_H
#define TARKACPP_SIM_CAMERAACCESS_H

#include <TarkaCPP/TrkTypes.h>

#include <string>

namespace KST {
namespace TrkAPI {
namespace Sim {

class CameraState;

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

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
