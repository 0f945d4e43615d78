#include <TarkaCPP/Sim/CameraAccess.h>

#include "CameraState.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

// Stores value, and records the change if it is one.
template <class T>
void Store(CameraState& state, FeatureEntry& entry, T& field, const T& value)
{
    if (field != value) {
        field = value;
        state.Touch(entry);
    }
}

long long TopOfGrid(const Number<long long>& number)
{
    if (number.increment <= 0) {
        return number.max;
    }
    return number.min + (number.max - number.min) / number.increment * number.increment;
}

double TopOfGrid(const Number<double>& number)
{
    if (number.increment <= 0.0) {
        return number.max;
    }
    double steps = std::floor((number.max - number.min) / number.increment + 1e-9);
    return std::min(number.max, number.min + steps * number.increment);
}

template <class T>
void StoreRange(CameraState& state, FeatureEntry& entry, Number<T>& number, T min, T max)
{
    if (number.min == min && number.max == max) {
        return;
    }
    number.min = min;
    number.max = max;
    state.Touch(entry);
    if (number.value < min) {
        number.value = min;
    } else if (number.value > max) {
        number.value = TopOfGrid(number);
    }
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
    return m_State.Entry(name, TrkFeatureDataInt).integer.value;
}

long long CameraAccess::IntMin(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).integer.min;
}

long long CameraAccess::IntMax(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).integer.max;
}

long long CameraAccess::IntIncrement(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataInt).integer.increment;
}

double CameraAccess::Float(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).real.value;
}

double CameraAccess::FloatMin(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).real.min;
}

double CameraAccess::FloatMax(const std::string& name) const
{
    return m_State.Entry(name, TrkFeatureDataFloat).real.max;
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
    Store(m_State, entry, entry.integer.value, value);
}

void CameraAccess::SetFloat(const std::string& name, double value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataFloat);
    Store(m_State, entry, entry.real.value, value);
}

void CameraAccess::SetBool(const std::string& name, bool value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataBool);
    Store(m_State, entry, entry.boolValue, value);
}

void CameraAccess::SetText(const std::string& name, const std::string& value)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataEnum, TrkFeatureDataString);
    Store(m_State, entry, entry.text, value);
}

void CameraAccess::SetIntRange(const std::string& name, long long min, long long max)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataInt);
    StoreRange(m_State, entry, entry.integer, min, max);
}

void CameraAccess::SetFloatRange(const std::string& name, double min, double max)
{
    FeatureEntry& entry = m_State.Entry(name, TrkFeatureDataFloat);
    StoreRange(m_State, entry, entry.real, min, max);
}

void CameraAccess::SetWritable(const std::string& name, bool writable)
{
    FeatureEntry& entry = m_State.Entry(name);
    Store(m_State, entry, entry.writable, writable);
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
