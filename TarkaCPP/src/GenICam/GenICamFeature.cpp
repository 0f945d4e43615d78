#include "GenICamFeature.h"

#include "../FeatureValues.h"
#include "Connection.h"
#include "NodeAccess.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

template <class T, class Range>
TrkErrorType CheckNumber(const Range& range, T value)
{
    if (!(value >= range.min && value <= range.max)) {
        return ErrorOutOfRange;
    }
    return IsOnGrid(range.min, range.increment, value) ? Success : ErrorOffGrid;
}

int EntryIndex(const NodeInfo& info, const char* entry)
{
    if (entry == nullptr) {
        return -1;
    }
    std::vector<std::string>::const_iterator found =
        std::find(info.entries.begin(), info.entries.end(), entry);
    return found == info.entries.end() ? -1 : static_cast<int>(found - info.entries.begin());
}

} // namespace

GenICamFeature::GenICamFeature(const std::shared_ptr<Connection>& connection, size_t index)
    : m_Connection(connection), m_Index(index)
{}

const NodeInfo& GenICamFeature::Info() const
{
    return m_Connection->Nodes()[m_Index];
}

template <class Call>
TrkErrorType GenICamFeature::Read(TrkFeatureDataType type, TrkFeatureDataType alt, Call call) const
{
    if (Info().type != type && Info().type != alt) {
        return ErrorWrongType;
    }
    return m_Connection->Access(call);
}

template <class Check, class Store>
TrkErrorType GenICamFeature::Write(TrkFeatureDataType type, Check check, Store store)
{
    if (Info().type != type) {
        return ErrorWrongType;
    }
    TrkErrorType code = m_Connection->Access([&](GError** error) -> TrkErrorType {
        TrkErrorType refusal = check(error);
        if (refusal != Success || *error != nullptr) {
            return refusal;
        }
        bool writable = IsNodeWritable(Info().node, error);
        if (*error != nullptr) {
            return ErrorDevice;
        }
        if (!writable) {
            return ErrorNotWritable;
        }
        store(error);
        return Success;
    });
    if (code == Success) {
        {
            std::lock_guard<std::mutex> lock(m_Connection->m_Lock);
            m_Connection->RequestRefresh(m_Index);
        }
        m_Connection->m_Signal.notify_all();
    }
    return code;
}

TrkErrorType GenICamFeature::GetName(char* buffer, unsigned int& length) const
{
    return CopyText(Info().name, buffer, length, ErrorBufferTooSmall);
}

TrkErrorType GenICamFeature::GetDisplayName(char* buffer, unsigned int& length) const
{
    return CopyText(Info().displayName, buffer, length, ErrorBufferTooSmall);
}

TrkErrorType GenICamFeature::GetCategory(char* buffer, unsigned int& length) const
{
    return CopyText(Info().category, buffer, length, ErrorBufferTooSmall);
}

TrkErrorType GenICamFeature::GetDataType(TrkFeatureDataType& type) const
{
    type = Info().type;
    return Success;
}

TrkErrorType GenICamFeature::IsWritable(bool& writable)
{
    return m_Connection->Access([&](GError** error) -> TrkErrorType {
        writable = IsNodeWritable(Info().node, error);
        return Success;
    });
}

TrkErrorType GenICamFeature::GetValue(long long& value) const
{
    return Read(TrkFeatureDataInt, TrkFeatureDataInt, [&](GError** error) -> TrkErrorType {
        value = arv_gc_integer_get_value(ARV_GC_INTEGER(Info().node), error);
        return Success;
    });
}

TrkErrorType GenICamFeature::GetValue(double& value) const
{
    return Read(TrkFeatureDataFloat, TrkFeatureDataFloat, [&](GError** error) -> TrkErrorType {
        value = arv_gc_float_get_value(ARV_GC_FLOAT(Info().node), error);
        return Success;
    });
}

TrkErrorType GenICamFeature::GetValue(bool& value) const
{
    return Read(TrkFeatureDataBool, TrkFeatureDataBool, [&](GError** error) -> TrkErrorType {
        value = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(Info().node), error);
        return Success;
    });
}

TrkErrorType GenICamFeature::GetValue(char* buffer, unsigned int& length) const
{
    return Read(TrkFeatureDataEnum, TrkFeatureDataString, [&](GError** error) -> TrkErrorType {
        const char* text =
            Info().type == TrkFeatureDataEnum
                ? arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(Info().node), error)
                : arv_gc_string_get_value(ARV_GC_STRING(Info().node), error);
        return *error == nullptr ? CopyText(text ? text : "", buffer, length, ErrorBufferTooSmall)
                                 : ErrorDevice;
    });
}

TrkErrorType GenICamFeature::GetValues(char const** entries, unsigned int& count)
{
    const std::vector<std::string>& names = Info().entries;
    if (Info().type != TrkFeatureDataEnum) {
        return ErrorWrongType;
    }
    unsigned int needed = static_cast<unsigned int>(names.size());
    if (entries == nullptr) {
        count = needed;
        return Success;
    }
    if (count < needed) {
        return ErrorBufferTooSmall;
    }
    for (unsigned int i = 0; i < needed; ++i) {
        entries[i] = names[i].c_str();
    }
    count = needed;
    return Success;
}

TrkErrorType GenICamFeature::IsValueAvailable(char const* entry, bool& available) const
{
    if (Info().type != TrkFeatureDataEnum) {
        return ErrorWrongType;
    }
    int index = EntryIndex(Info(), entry);
    if (index < 0) {
        return ErrorInvalidArgument;
    }
    return m_Connection->Access([&](GError** error) -> TrkErrorType {
        available = IsUsable(Info().entryNodes[index], error);
        return Success;
    });
}

TrkErrorType GenICamFeature::GetRange(long long& min, long long& max) const
{
    return Read(TrkFeatureDataInt, TrkFeatureDataInt, [&](GError** error) -> TrkErrorType {
        IntRange range = ReadIntRange(ARV_GC_INTEGER(Info().node), error);
        min = range.min;
        max = range.max;
        return Success;
    });
}

TrkErrorType GenICamFeature::GetRange(double& min, double& max) const
{
    return Read(TrkFeatureDataFloat, TrkFeatureDataFloat, [&](GError** error) -> TrkErrorType {
        FloatRange range = ReadFloatRange(ARV_GC_FLOAT(Info().node), error);
        min = range.min;
        max = range.max;
        return Success;
    });
}

TrkErrorType GenICamFeature::GetIncrement(long long& increment) const
{
    return Read(TrkFeatureDataInt, TrkFeatureDataInt, [&](GError** error) -> TrkErrorType {
        increment = arv_gc_integer_get_inc(ARV_GC_INTEGER(Info().node), error);
        return increment > 0 ? Success : ErrorNoIncrement;
    });
}

TrkErrorType GenICamFeature::GetIncrement(double& increment) const
{
    return Read(TrkFeatureDataFloat, TrkFeatureDataFloat, [&](GError** error) -> TrkErrorType {
        increment = ReadFloatRange(ARV_GC_FLOAT(Info().node), error).increment;
        return increment > 0.0 ? Success : ErrorNoIncrement;
    });
}

TrkErrorType GenICamFeature::SetValue(long long const& value)
{
    return Write(
        TrkFeatureDataInt,
        [&](GError** error) -> TrkErrorType {
            IntRange range = ReadIntRange(ARV_GC_INTEGER(Info().node), error);
            return *error == nullptr ? CheckNumber(range, static_cast<gint64>(value)) : Success;
        },
        [&](GError** error) {
            arv_gc_integer_set_value(ARV_GC_INTEGER(Info().node), value, error);
        });
}

TrkErrorType GenICamFeature::SetValue(double const& value)
{
    return Write(
        TrkFeatureDataFloat,
        [&](GError** error) -> TrkErrorType {
            FloatRange range = ReadFloatRange(ARV_GC_FLOAT(Info().node), error);
            return *error == nullptr ? CheckNumber(range, value) : Success;
        },
        [&](GError** error) { arv_gc_float_set_value(ARV_GC_FLOAT(Info().node), value, error); });
}

TrkErrorType GenICamFeature::SetValue(bool value)
{
    return Write(
        TrkFeatureDataBool, [](GError**) -> TrkErrorType { return Success; },
        [&](GError** error) {
            arv_gc_boolean_set_value(ARV_GC_BOOLEAN(Info().node), value, error);
        });
}

TrkErrorType GenICamFeature::SetValue(char const* value)
{
    if (Info().type == TrkFeatureDataString) {
        return Write(
            TrkFeatureDataString,
            [&](GError**) -> TrkErrorType {
                return value == nullptr ? ErrorInvalidArgument : Success;
            },
            [&](GError** error) {
                arv_gc_string_set_value(ARV_GC_STRING(Info().node), value, error);
            });
    }
    int index = EntryIndex(Info(), value);
    return Write(
        TrkFeatureDataEnum,
        [&](GError** error) -> TrkErrorType {
            if (index < 0) {
                return ErrorInvalidArgument;
            }
            bool usable = IsUsable(Info().entryNodes[index], error);
            return *error == nullptr && !usable ? ErrorUnavailableEntry : Success;
        },
        [&](GError** error) {
            arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(Info().node), value, error);
        });
}

TrkErrorType GenICamFeature::RunCommand()
{
    return Write(
        TrkFeatureDataCommand, [](GError**) -> TrkErrorType { return Success; },
        [&](GError** error) { arv_gc_command_execute(ARV_GC_COMMAND(Info().node), error); });
}

TrkErrorType GenICamFeature::RegisterObserver(IFeatureObserverPtr const& observer)
{
    Connection& connection = *m_Connection;
    {
        std::lock_guard<std::mutex> lock(connection.m_Lock);
        if (!observer || connection.m_Observers.IsWatched(m_Index)) {
            return connection.m_Observers.Register(m_Index, observer);
        }
    }
    // The first observer needs the state that later changes are told from.
    std::string signature = connection.Signature(m_Index);
    std::lock_guard<std::mutex> lock(connection.m_Lock);
    if (!connection.m_Observers.IsWatched(m_Index)) {
        connection.m_Signatures[m_Index] = signature;
    }
    return connection.m_Observers.Register(m_Index, observer);
}

TrkErrorType GenICamFeature::UnregisterObserver(IFeatureObserverPtr const& observer)
{
    // Released after the lock: the library's reference may be the last one.
    IFeatureObserverPtr removed;
    std::unique_lock<std::mutex> lock(m_Connection->m_Lock);
    return m_Connection->m_Observers.Unregister(lock, m_Index, observer, removed);
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
