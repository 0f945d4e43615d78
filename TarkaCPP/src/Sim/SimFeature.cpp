#include "SimFeature.h"

#include "../FeatureValues.h"
#include "CameraState.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

TrkErrorType CheckType(const FeatureEntry& entry, TrkFeatureDataType type)
{
    return entry.type == type ? Success : ErrorWrongType;
}

bool IsText(const FeatureEntry& entry)
{
    return entry.type == TrkFeatureDataEnum || entry.type == TrkFeatureDataString;
}

bool HasEntry(const FeatureEntry& entry, const std::string& name)
{
    return std::find(entry.entries.begin(), entry.entries.end(), name) != entry.entries.end();
}

template <class T>
TrkErrorType CheckNumber(const FeatureEntry& entry, TrkFeatureDataType type,
                         const Number<T>& number, T value)
{
    if (TrkErrorType code = CheckType(entry, type)) {
        return code;
    }
    if (!(value >= number.min && value <= number.max)) {
        return ErrorOutOfRange;
    }
    return IsOnGrid(number.min, number.increment, value) ? Success : ErrorOffGrid;
}

// Reading a step of 0 or less fails: the feature has none.
template <class T>
TrkErrorType ReadIncrement(const FeatureEntry& entry, TrkFeatureDataType type,
                           const Number<T>& number, T& increment)
{
    if (TrkErrorType code = CheckType(entry, type)) {
        return code;
    }
    increment = number.increment;
    return increment > 0 ? Success : ErrorNoIncrement;
}

// Answers from the misreport when it has the answer, or else by read.
template <class T, class Out, class Read>
TrkErrorType Report(const std::optional<T>& misreport, Out&& out, Read read)
{
    if (!misreport) {
        return read();
    }
    out = *misreport;
    return Success;
}

} // namespace

SimFeature::SimFeature(const std::shared_ptr<CameraState>& state, size_t index,
                       const FeatureEntry& entry)
    : m_State(state), m_Index(index), m_Entry(entry)
{}

template <class T>
TrkErrorType SimFeature::SetNumber(TrkFeatureDataType type, Number<T> FeatureDescription::*number,
                                   T value)
{
    return m_State->Write(
        m_Index, Op::SetValue,
        [&](const FeatureEntry& entry) { return CheckNumber(entry, type, entry.*number, value); },
        [&](FeatureEntry& entry, CameraAccess&) { (entry.*number).value = value; });
}

template <class Read>
TrkErrorType SimFeature::Query(Op op, Read read) const
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    if (TrkErrorType code = m_State->Enter(m_Index, op)) {
        return code;
    }
    return read(static_cast<const FeatureEntry&>(*m_State->m_Entries[m_Index]));
}

// Every lookup reads every name: without a test hook, the name is copied
// without the camera's lock, as nothing changes it.
TrkErrorType SimFeature::GetName(char* buffer, unsigned int& length) const
{
    if (!m_State->HooksActive()) {
        return CopyText(m_Entry.name, buffer, length, ErrorBufferTooSmall);
    }
    return GetNameCounted(buffer, length);
}

// Kept out of GetName, so that the plain read stays a short leaf function.
TrkErrorType SimFeature::GetNameCounted(char* buffer, unsigned int& length) const
{
    return Query(Op::GetName, [&](const FeatureEntry& entry) -> TrkErrorType {
        return CopyText(entry.name, buffer, length, ErrorBufferTooSmall);
    });
}

TrkErrorType SimFeature::GetDisplayName(char* buffer, unsigned int& length) const
{
    return Query(Op::GetDisplayName, [&](const FeatureEntry& entry) -> TrkErrorType {
        return CopyText(entry.displayName, buffer, length, ErrorBufferTooSmall);
    });
}

TrkErrorType SimFeature::GetCategory(char* buffer, unsigned int& length) const
{
    return Query(Op::GetCategory, [&](const FeatureEntry& entry) -> TrkErrorType {
        return CopyText(entry.category, buffer, length, ErrorBufferTooSmall);
    });
}

TrkErrorType SimFeature::GetDataType(TrkFeatureDataType& type) const
{
    return Query(Op::GetDataType, [&](const FeatureEntry& entry) -> TrkErrorType {
        return Report(entry.misreport.type, type, [&]() -> TrkErrorType {
            type = entry.type;
            return Success;
        });
    });
}

TrkErrorType SimFeature::IsWritable(bool& writable)
{
    return Query(Op::IsWritable, [&](const FeatureEntry& entry) -> TrkErrorType {
        writable = entry.writable;
        return Success;
    });
}

TrkErrorType SimFeature::GetValue(long long& value) const
{
    return Query(Op::GetValue, [&](const FeatureEntry& entry) -> TrkErrorType {
        return Report(entry.misreport.intValue, value, [&]() -> TrkErrorType {
            value = entry.integer.value;
            return CheckType(entry, TrkFeatureDataInt);
        });
    });
}

TrkErrorType SimFeature::GetValue(double& value) const
{
    return Query(Op::GetValue, [&](const FeatureEntry& entry) -> TrkErrorType {
        return Report(entry.misreport.floatValue, value, [&]() -> TrkErrorType {
            value = entry.real.value;
            return CheckType(entry, TrkFeatureDataFloat);
        });
    });
}

TrkErrorType SimFeature::GetValue(bool& value) const
{
    return Query(Op::GetValue, [&](const FeatureEntry& entry) -> TrkErrorType {
        value = entry.boolValue;
        return CheckType(entry, TrkFeatureDataBool);
    });
}

TrkErrorType SimFeature::GetValue(char* buffer, unsigned int& length) const
{
    return Query(Op::GetValue, [&](const FeatureEntry& entry) -> TrkErrorType {
        return IsText(entry) ? CopyText(entry.text, buffer, length, ErrorBufferTooSmall)
                             : ErrorWrongType;
    });
}

TrkErrorType SimFeature::GetValues(char const** entries, unsigned int& count)
{
    return Query(Op::GetValues, [&](const FeatureEntry& entry) -> TrkErrorType {
        if (entry.type != TrkFeatureDataEnum) {
            return ErrorWrongType;
        }
        unsigned int needed = static_cast<unsigned int>(entry.entries.size());
        if (entries == nullptr) {
            count = needed;
            return Success;
        }
        if (count < needed) {
            return ErrorBufferTooSmall;
        }
        for (unsigned int i = 0; i < needed; ++i) {
            entries[i] = entry.entries[i].c_str();
        }
        count = needed;
        return Success;
    });
}

TrkErrorType SimFeature::IsValueAvailable(char const* name, bool& available) const
{
    return Query(Op::IsValueAvailable, [&](const FeatureEntry& entry) -> TrkErrorType {
        if (entry.type != TrkFeatureDataEnum) {
            return ErrorWrongType;
        }
        if (name == nullptr || !HasEntry(entry, name)) {
            return ErrorInvalidArgument;
        }
        available = entry.unavailable.count(name) == 0;
        return Success;
    });
}

TrkErrorType SimFeature::GetRange(long long& min, long long& max) const
{
    return Query(Op::GetRange, [&](const FeatureEntry& entry) -> TrkErrorType {
        return Report(entry.misreport.intRange, std::tie(min, max), [&]() -> TrkErrorType {
            min = entry.integer.min;
            max = entry.integer.max;
            return CheckType(entry, TrkFeatureDataInt);
        });
    });
}

TrkErrorType SimFeature::GetRange(double& min, double& max) const
{
    return Query(Op::GetRange, [&](const FeatureEntry& entry) -> TrkErrorType {
        return Report(entry.misreport.floatRange, std::tie(min, max), [&]() -> TrkErrorType {
            min = entry.real.min;
            max = entry.real.max;
            return CheckType(entry, TrkFeatureDataFloat);
        });
    });
}

TrkErrorType SimFeature::GetIncrement(long long& increment) const
{
    return Query(Op::GetIncrement, [&](const FeatureEntry& entry) {
        return Report(entry.misreport.intIncrement, increment, [&]() -> TrkErrorType {
            return ReadIncrement(entry, TrkFeatureDataInt, entry.integer, increment);
        });
    });
}

TrkErrorType SimFeature::GetIncrement(double& increment) const
{
    return Query(Op::GetIncrement, [&](const FeatureEntry& entry) {
        return Report(entry.misreport.floatIncrement, increment, [&]() -> TrkErrorType {
            return ReadIncrement(entry, TrkFeatureDataFloat, entry.real, increment);
        });
    });
}

TrkErrorType SimFeature::SetValue(long long const& value)
{
    return SetNumber(TrkFeatureDataInt, &FeatureEntry::integer, value);
}

TrkErrorType SimFeature::SetValue(double const& value)
{
    return SetNumber(TrkFeatureDataFloat, &FeatureEntry::real, value);
}

TrkErrorType SimFeature::SetValue(bool value)
{
    return m_State->Write(
        m_Index, Op::SetValue,
        [&](const FeatureEntry& entry) -> TrkErrorType {
            return CheckType(entry, TrkFeatureDataBool);
        },
        [&](FeatureEntry& entry, CameraAccess&) { entry.boolValue = value; });
}

TrkErrorType SimFeature::SetValue(char const* value)
{
    return m_State->Write(
        m_Index, Op::SetValue,
        [&](const FeatureEntry& entry) -> TrkErrorType {
            if (!IsText(entry)) {
                return ErrorWrongType;
            }
            if (value == nullptr) {
                return ErrorInvalidArgument;
            }
            if (entry.type == TrkFeatureDataEnum) {
                if (!HasEntry(entry, value)) {
                    return ErrorInvalidArgument;
                }
                if (entry.unavailable.count(value) != 0) {
                    return ErrorUnavailableEntry;
                }
            }
            return Success;
        },
        [&](FeatureEntry& entry, CameraAccess&) { entry.text = value; });
}

TrkErrorType SimFeature::RunCommand()
{
    return m_State->Write(
        m_Index, Op::RunCommand,
        [&](const FeatureEntry& entry) -> TrkErrorType {
            return CheckType(entry, TrkFeatureDataCommand);
        },
        [&](FeatureEntry& entry, CameraAccess& access) {
            if (entry.commandAction) {
                entry.commandAction(access);
            }
        });
}

TrkErrorType SimFeature::RegisterObserver(IFeatureObserverPtr const& observer)
{
    std::lock_guard<std::mutex> lock(m_State->m_Lock);
    if (TrkErrorType code = m_State->Enter(m_Index, Op::RegisterObserver)) {
        return code;
    }
    return m_State->m_Observers.Register(m_Index, observer);
}

TrkErrorType SimFeature::UnregisterObserver(IFeatureObserverPtr const& observer)
{
    // Released after the lock: the library's reference may be the last one.
    IFeatureObserverPtr removed;
    std::unique_lock<std::mutex> lock(m_State->m_Lock);
    if (TrkErrorType code = m_State->Enter(m_Index, Op::UnregisterObserver)) {
        return code;
    }
    return m_State->m_Observers.Unregister(lock, m_Index, observer, removed);
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
