#ifndef TARKACPP_SIM_SENSORCONTROLS_H
#define TARKACPP_SIM_SENSORCONTROLS_H

#include <string>

namespace KST {
namespace TrkAPI {
namespace Sim {

// The features a sensor simulation reads before a frame and steers after it,
// whether they live in an in-memory camera or in the registers of a device.
// A name the camera lacks, or a read that fails, gives zero or empty.
class SensorControls
{
public:
    virtual ~SensorControls() {}

    virtual bool Has(const std::string& name) const = 0;
    virtual long long Int(const std::string& name) const = 0;
    // The value of an integer or float feature.
    virtual double Number(const std::string& name) const = 0;
    virtual bool Bool(const std::string& name) const = 0;
    // Text of an enumeration or string feature.
    virtual std::string Text(const std::string& name) const = 0;
    virtual double FloatMin(const std::string& name) const = 0;
    virtual double FloatMax(const std::string& name) const = 0;

    virtual void SetFloat(const std::string& name, double value) = 0;
    virtual void SetText(const std::string& name, const std::string& value) = 0;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
