#include "CameraState.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

long long TopOfIntGrid(const FeatureEntry& entry)
{
    if (entry.intIncrement <= 0) {
        return entry.intMax;
    }
    return entry.intMin + (entry.intMax - entry.intMin) / entry.intIncrement * entry.intIncrement;
}

double TopOfFloatGrid(const FeatureEntry& entry)
{
    if (entry.floatIncrement <= 0.0) {
        return entry.floatMax;
    }
    double steps = std::floor((entry.floatMax - entry.floatMin) / entry.floatIncrement + 1e-9);
    return std::min(entry.floatMax, entry.floatMin + steps * entry.floatIncrement);
}

} // namespace

bool CameraAccess::Has(const std::string& name) const
{
    return m_State.IndexOf(name) != CameraState::NoFeature;
}

TrkFeatureDataType CameraAccess::Type(const std::string& name) const
{
    return m_State.Entry(name).type;
}

long long CameraAccess::Int(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).intValue;
}

long long CameraAccess::IntMin(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).intMin;
}

long long CameraAccess::IntMax(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).intMax;
}

long long CameraAccess::IntIncrement(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).intIncrement;
}

double CameraAccess::Float(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).floatValue;
}

double CameraAccess::FloatMin(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).floatMin;
}

double CameraAccess::FloatMax(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).floatMax;
}

bool CameraAccess::Bool(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataBool).boolValue;
}

std::string CameraAccess::Text(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataEnum, TrkFeatureDataString).text;
}

void CameraAccess::SetInt(const std::string& name, long long value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataInt);
    if (entry.intValue != value) {
        entry.intValue = value;
        m_State.Touch(entry);
    }
}

void CameraAccess::SetFloat(const std::string& name, double value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataFloat);
    if (entry.floatValue != value) {
        entry.floatValue = value;
        m_State.Touch(entry);
    }
}

void CameraAccess::SetBool(const std::string& name, bool value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataBool);
    if (entry.boolValue != value) {
        entry.boolValue = value;
        m_State.Touch(entry);
    }
}

void CameraAccess::SetText(const std::string& name, const std::string& value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataEnum, TrkFeatureDataString);
    if (entry.text != value) {
        entry.text = value;
        m_State.Touch(entry);
    }
}

void CameraAccess::SetIntRange(const std::string& name, long long min, long long max)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataInt);
    if (entry.intMin == min && entry.intMax == max) {
        return;
    }
    entry.intMin = min;
    entry.intMax = max;
    m_State.Touch(entry);
    if (entry.intValue < min) {
        entry.intValue = min;
    } else if (entry.intValue > max) {
        entry.intValue = TopOfIntGrid(entry);
    }
}

void CameraAccess::SetFloatRange(const std::string& name, double min, double max)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataFloat);
    if (entry.floatMin == min && entry.floatMax == max) {
        return;
    }
    entry.floatMin = min;
    entry.floatMax = max;
    m_State.Touch(entry);
    if (entry.floatValue < min) {
        entry.floatValue = min;
    } else if (entry.floatValue > max) {
        entry.floatValue = TopOfFloatGrid(entry);
    }
}

void CameraAccess::SetWritable(const std::string& name, bool writable)
{
    FeatureEntry& entry = m_State.Entry(name);
    if (entry.writable != writable) {
        entry.writable = writable;
        m_State.Touch(entry);
    }
}

void CameraAccess::SetEntryAvailable(const std::string& name, const std::string& entryName,
                                     bool available)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataEnum);
    if (std::find(entry.entries.begin(), entry.entries.end(), entryName) == entry.entries.end()) {
        throw std::invalid_argument("feature " + name + " has no entry " + entryName);
    }
    bool changed = available ? entry.unavailable.erase(entryName) > 0
                             : entry.unavailable.insert(entryName).second;
    if (changed) {
        m_State.Touch(entry);
    }
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
