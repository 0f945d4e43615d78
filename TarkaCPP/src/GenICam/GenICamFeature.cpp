#include "GenICamFeature.h"

#include "../FeatureValues.h"
#include "Connection.h"
#include "NodeAccess.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

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

TrkErrorType GenICamFeature::Read(TrkFeatureDataType type, TrkFeatureDataType alt, unsigned kind,
                                  const ReadNode& read, Reading& answer) const
{
    if (Info().type != type && Info().type != alt) {
        return ErrorWrongType;
    }
    const NodeInfo* info = &Info();
    return m_Connection->Read(
        m_Index, kind,
        [info, read](Reading& reading, GError** error) { return read(*info, reading, error); },
        answer);
}

template <class T>
TrkErrorType GenICamFeature::ReadNumbers(unsigned kind, const ReadNode& read, T& first,
                                         T* second) const
{
    const TrkFeatureDataType type =
        std::is_same<T, double>::value ? TrkFeatureDataFloat : TrkFeatureDataInt;
    Reading answer;
    const TrkErrorType code = Read(type, type, kind, read, answer);
    first = answer.Numbers<T>()[0];
    if (second != nullptr) {
        *second = answer.Numbers<T>()[1];
    }
    return code;
}

TrkErrorType GenICamFeature::Write(TrkFeatureDataType type, const WriteNode& check,
                                   const WriteNode& store)
{
    if (Info().type != type) {
        return ErrorWrongType;
    }
    if (m_Connection->IsReadOnly()) {
        return ErrorReadOnlyAccess;
    }
    const NodeInfo* info = &Info();
    TrkErrorType code = m_Connection->Access(
        [info, check, store](GError** error) -> TrkErrorType {
            TrkErrorType refusal = check(*info, error);
            if (refusal != Success || *error != nullptr) {
                return refusal;
            }
            bool writable = IsNodeWritable(info->node, error);
            if (*error != nullptr) {
                return ErrorDevice;
            }
            if (!writable) {
                return ErrorNotWritable;
            }
            return store(*info, error);
        },
        false);
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
    if (m_Connection->IsReadOnly()) {
        writable = false;
        return Success;
    }
    Reading answer;
    TrkErrorType code = m_Connection->Read(
        m_Index, WritableRead,
        [node = Info().node](Reading& reading, GError** error) {
            reading.flag = IsNodeWritable(node, error);
            return Success;
        },
        answer);
    writable = answer.flag;
    return code;
}

TrkErrorType GenICamFeature::GetValue(long long& value) const
{
    return ReadNumbers(
        ValueRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            reading.integers[0] = arv_gc_integer_get_value(ARV_GC_INTEGER(info.node), error);
            return Success;
        },
        value);
}

TrkErrorType GenICamFeature::GetValue(double& value) const
{
    return ReadNumbers(
        ValueRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            reading.numbers[0] = arv_gc_float_get_value(ARV_GC_FLOAT(info.node), error);
            return Success;
        },
        value);
}

TrkErrorType GenICamFeature::GetValue(bool& value) const
{
    Reading answer;
    TrkErrorType code = Read(
        TrkFeatureDataBool, TrkFeatureDataBool, ValueRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            reading.flag = arv_gc_boolean_get_value(ARV_GC_BOOLEAN(info.node), error);
            return Success;
        },
        answer);
    value = answer.flag;
    return code;
}

TrkErrorType GenICamFeature::GetValue(char* buffer, unsigned int& length) const
{
    Reading answer;
    TrkErrorType code = Read(
        TrkFeatureDataEnum, TrkFeatureDataString, ValueRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            const char* text =
                info.type == TrkFeatureDataEnum
                    ? arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(info.node), error)
                    : arv_gc_string_get_value(ARV_GC_STRING(info.node), error);
            reading.text = text ? text : "";
            return *error == nullptr ? Success : static_cast<TrkErrorType>(ErrorDevice);
        },
        answer);
    return code == Success ? CopyText(answer.text, buffer, length, ErrorBufferTooSmall) : code;
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
    const int index = EntryIndex(Info(), entry);
    if (index < 0) {
        return ErrorInvalidArgument;
    }
    Reading answer;
    TrkErrorType code = Read(
        TrkFeatureDataEnum, TrkFeatureDataEnum, EntryRead + index,
        [index](const NodeInfo& info, Reading& reading, GError** error) {
            reading.flag = IsUsable(info.entryNodes[index], error);
            return Success;
        },
        answer);
    available = answer.flag;
    return code;
}

TrkErrorType GenICamFeature::GetRange(long long& min, long long& max) const
{
    return ReadNumbers(
        RangeRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            IntRange range = ReadIntRange(ARV_GC_INTEGER(info.node), error);
            reading.integers[0] = range.min;
            reading.integers[1] = range.max;
            return Success;
        },
        min, &max);
}

TrkErrorType GenICamFeature::GetRange(double& min, double& max) const
{
    return ReadNumbers(
        RangeRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            FloatRange range = ReadFloatRange(ARV_GC_FLOAT(info.node), error);
            reading.numbers[0] = range.min;
            reading.numbers[1] = range.max;
            return Success;
        },
        min, &max);
}

TrkErrorType GenICamFeature::GetIncrement(long long& increment) const
{
    return ReadNumbers(
        IncrementRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            reading.integers[0] = arv_gc_integer_get_inc(ARV_GC_INTEGER(info.node), error);
            return reading.integers[0] > 0 ? Success : ErrorNoIncrement;
        },
        increment);
}

TrkErrorType GenICamFeature::GetIncrement(double& increment) const
{
    return ReadNumbers(
        IncrementRead,
        [](const NodeInfo& info, Reading& reading, GError** error) {
            reading.numbers[0] = ReadFloatRange(ARV_GC_FLOAT(info.node), error).increment;
            return reading.numbers[0] > 0.0 ? Success : ErrorNoIncrement;
        },
        increment);
}

TrkErrorType GenICamFeature::SetValue(long long const& value)
{
    const gint64 wanted = value;
    return Write(
        TrkFeatureDataInt,
        [wanted](const NodeInfo& info, GError** error) -> TrkErrorType {
            IntRange range = ReadIntRange(ARV_GC_INTEGER(info.node), error);
            return *error == nullptr ? CheckNumber(range, wanted) : Success;
        },
        [wanted](const NodeInfo& info, GError** error) {
            arv_gc_integer_set_value(ARV_GC_INTEGER(info.node), wanted, error);
            return Success;
        });
}

TrkErrorType GenICamFeature::SetValue(double const& value)
{
    const double wanted = value;
    return Write(
        TrkFeatureDataFloat,
        [wanted](const NodeInfo& info, GError** error) -> TrkErrorType {
            FloatRange range = ReadFloatRange(ARV_GC_FLOAT(info.node), error);
            return *error == nullptr ? CheckNumber(range, wanted) : Success;
        },
        [wanted](const NodeInfo& info, GError** error) {
            arv_gc_float_set_value(ARV_GC_FLOAT(info.node), wanted, error);
            return Success;
        });
}

TrkErrorType GenICamFeature::SetValue(bool value)
{
    return Write(
        TrkFeatureDataBool, [](const NodeInfo&, GError**) { return Success; },
        [value](const NodeInfo& info, GError** error) {
            arv_gc_boolean_set_value(ARV_GC_BOOLEAN(info.node), value, error);
            return Success;
        });
}

TrkErrorType GenICamFeature::SetValue(char const* value)
{
    if (Info().type == TrkFeatureDataString) {
        if (value == nullptr) {
            return m_Connection->IsReadOnly() ? static_cast<TrkErrorType>(ErrorReadOnlyAccess)
                                              : static_cast<TrkErrorType>(ErrorInvalidArgument);
        }
        const std::string text = value;
        return Write(
            TrkFeatureDataString, [](const NodeInfo&, GError**) { return Success; },
            [text](const NodeInfo& info, GError** error) {
                arv_gc_string_set_value(ARV_GC_STRING(info.node), text.c_str(), error);
                return Success;
            });
    }
    const int index = EntryIndex(Info(), value);
    const std::string entry = index < 0 ? std::string() : std::string(value);
    return Write(
        TrkFeatureDataEnum,
        [index](const NodeInfo& info, GError** error) -> TrkErrorType {
            if (index < 0) {
                return ErrorInvalidArgument;
            }
            bool usable = IsUsable(info.entryNodes[index], error);
            return *error == nullptr && !usable ? ErrorUnavailableEntry : Success;
        },
        [entry](const NodeInfo& info, GError** error) {
            arv_gc_enumeration_set_string_value(ARV_GC_ENUMERATION(info.node), entry.c_str(),
                                                error);
            return Success;
        });
}

TrkErrorType GenICamFeature::RunCommand()
{
    return Write(
        TrkFeatureDataCommand, [](const NodeInfo&, GError**) { return Success; },
        [](const NodeInfo& info, GError** error) {
            arv_gc_command_execute(ARV_GC_COMMAND(info.node), error);
            return Success;
        });
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
