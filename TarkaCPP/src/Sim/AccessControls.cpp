#include "AccessControls.h"

#include <TarkaCPP/Sim/CameraRules.h>

namespace KST {
namespace TrkAPI {
namespace Sim {

bool AccessControls::Has(const std::string& name) const
{
    return m_Access.Has(name);
}

long long AccessControls::Int(const std::string& name) const
{
    return m_Access.Has(name) ? m_Access.Int(name) : 0;
}

double AccessControls::Number(const std::string& name) const
{
    return m_Access.Has(name) ? NumberValue(m_Access, name) : 0.0;
}

bool AccessControls::Bool(const std::string& name) const
{
    return m_Access.Has(name) && m_Access.Bool(name);
}

std::string AccessControls::Text(const std::string& name) const
{
    return m_Access.Has(name) ? m_Access.Text(name) : std::string();
}

double AccessControls::FloatMin(const std::string& name) const
{
    return m_Access.FloatMin(name);
}

double AccessControls::FloatMax(const std::string& name) const
{
    return m_Access.FloatMax(name);
}

void AccessControls::SetFloat(const std::string& name, double value)
{
    if (m_Writable != nullptr) {
        m_Writable->SetFloat(name, value);
    }
}

void AccessControls::SetText(const std::string& name, const std::string& value)
{
    if (m_Writable != nullptr) {
        m_Writable->SetText(name, value);
    }
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
