#ifndef TARKACPP_SIM_ACCESSCONTROLS_H
#define TARKACPP_SIM_ACCESSCONTROLS_H

#include "SensorControls.h"

#include <TarkaCPP/Sim/CameraAccess.h>

namespace KST {
namespace TrkAPI {
namespace Sim {

// The sensor controls of an in-memory camera, for the span of one call that
// received its CameraAccess.
class AccessControls : public SensorControls
{
public:
    // Controls that read only: steering them does nothing.
    explicit AccessControls(const CameraAccess& access) : m_Access(access) {}
    explicit AccessControls(CameraAccess& access) : m_Access(access), m_Writable(&access) {}

    bool Has(const std::string& name) const override;
    long long Int(const std::string& name) const override;
    double Number(const std::string& name) const override;
    bool Bool(const std::string& name) const override;
    std::string Text(const std::string& name) const override;
    double FloatMin(const std::string& name) const override;
    double FloatMax(const std::string& name) const override;

    void SetFloat(const std::string& name, double value) override;
    void SetText(const std::string& name, const std::string& value) override;

private:
    const CameraAccess& m_Access;
    CameraAccess* m_Writable = nullptr;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
