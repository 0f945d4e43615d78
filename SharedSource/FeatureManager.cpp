#include "FeatureManager.h"

#include "DebugLine.h"
#include "FeatureText.h"
#include "Qt4Compat.h"
#include "Saturating.h"

#include <cmath>
#include <cstring>
#include <vector>

using KST::TrkAPI::Feature;

namespace {

// Lifts a quotient that rounding left just under a whole number.
const double QuotientGuard = 1.000000000001;
const double DefaultIntIncrement = 1.0;
const double DefaultFloatIncrement = 0.01;

// Empty, but not null: what the queries answer when they have no text.
QString EmptyText()
{
    return QString::fromLatin1("");
}

QString TextToQString(const std::string& text)
{
    return Qt4Compat::FromAscii(text.c_str(), static_cast<int>(text.size()));
}

// Empty text when there is no feature or the read fails.
QString TextOf(const FeaturePtr& feature, FeatureTextGetter getter)
{
    QString text = EmptyText();
    if (feature) {
        ReadFeatureText(*feature, getter, text);
    }
    return text;
}

// A failed numeric read yields -1 of the read's type, and false for a flag.
template <typename T>
T ReadFailure()
{
    return T(-1);
}

template <>
bool ReadFailure<bool>()
{
    return false;
}

template <typename T>
T ReadValue(const Feature& feature)
{
    T value;
    return feature.GetValue(value) == 0 ? value : ReadFailure<T>();
}

template <typename T>
void ReadRange(const Feature& feature, T& min, T& max)
{
    if (feature.GetRange(min, max) != 0) {
        min = ReadFailure<T>();
        max = ReadFailure<T>();
    }
}

template <typename T>
T ReadIncrement(const Feature& feature)
{
    T increment;
    return feature.GetIncrement(increment) == 0 ? increment : ReadFailure<T>();
}

// A number as the feature's own type: an integer is truncated toward zero,
// and limited to the integer range beyond it (a NaN becomes 0).
template <typename T>
T ToFeatureNumber(double value)
{
    return SaturatingCast<T>(value);
}

template <>
double ToFeatureNumber<double>(double value)
{
    return value;
}

// Writes value if the feature can be written now. A failed write is logged
// under the first name the caller gave, whichever name was found.
template <typename T>
void WriteIfWritable(Feature& feature, T value, const char* errorLabel, const QString& name)
{
    bool writable = false;
    if (feature.IsWritable(writable) != 0 || !writable) {
        return;
    }
    const TrkErrorType code = feature.SetValue(value);
    if (code != 0) {
        DebugLine() << errorLabel << name << " : " << code;
    }
}

// Aligns value down to the feature's grid, clamps it to the bounds, writes it
// and returns what the camera reads back. The bounds are taken as the library
// gives them: a failed read clamps to -1, and -1 is written.
template <typename T>
double WriteNumber(Feature& feature, const QString& name, double value, const char* errorLabel)
{
    T rawMin;
    T rawMax;
    ReadRange(feature, rawMin, rawMax);
    const double min = static_cast<double>(rawMin);
    const double max = static_cast<double>(rawMax);
    const double increment = static_cast<double>(ReadIncrement<T>(feature));

    const T alignedMax = ToFeatureNumber<T>(AlignDownToStep(min, max, increment));
    double target = AlignDownToStep(min, value, increment);
    if (target < min) {
        target = min;
    } else if (static_cast<double>(alignedMax) < target) {
        target = static_cast<double>(alignedMax);
    }
    WriteIfWritable(feature, ToFeatureNumber<T>(target), errorLabel, name);
    return static_cast<double>(ReadValue<T>(feature));
}

double WriteFlag(Feature& feature, const QString& name, double value)
{
    WriteIfWritable(feature, value > 0.0, "Error: FeatureManager::SetValue:Bool: ", name);
    return ReadValue<bool>(feature) ? 1.0 : 0.0;
}

// The name or display name of the first candidate that exists; the search
// ends there even if that read fails.
QString FirstExisting(FeatureManager& manager, const QStringList& names, FeatureTextGetter getter)
{
    for (const QString& name : names) {
        const FeaturePtr feature = manager.FindFeature(name);
        if (feature) {
            return TextOf(feature, getter);
        }
    }
    return EmptyText();
}

// Fills the outputs of a range query from a feature already found. writable
// may be null; the other outputs may not, though only the floating branch
// checks them.
double ReadValueRange(Feature& feature, bool* writable, double* min, double* max, double* increment)
{
    if (writable) {
        bool flag = false;
        *writable = feature.IsWritable(flag) == 0 && flag;
    }
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    ReadFeatureDataType(feature, type);

    if (type == TrkFeatureDataInt) {
        const long long value = ReadValue<long long>(feature);
        long long rawMin;
        long long rawMax;
        ReadRange(feature, rawMin, rawMax);
        *min = static_cast<double>(rawMin);
        *max = static_cast<double>(rawMax);
        *increment = static_cast<double>(ReadIncrement<long long>(feature));
        if (*increment > 0.0) {
            *max = AlignDownToStep(*min, *max, *increment);
        } else {
            *increment = DefaultIntIncrement;
        }
        return static_cast<double>(value);
    }

    if (type == TrkFeatureDataFloat) {
        const double value = ReadValue<double>(feature);
        Q_ASSERT(min);
        Q_ASSERT(max);
        ReadRange(feature, *min, *max);
        Q_ASSERT(increment);
        *increment = ReadIncrement<double>(feature);
        if (*increment > 0.0) {
            *max = AlignDownToStep(*min, *max, *increment);
        } else {
            *increment = DefaultFloatIncrement;
        }
        return value;
    }

    if (writable) {
        *writable = false;
    }
    *min = -1.0;
    *max = -1.0;
    *increment = -1.0;
    return -1.0;
}

} // namespace

double AlignDownToStep(double lower, double upper, double step)
{
    // A step of 0 makes the quotient infinite or NaN, and the candidate NaN.
    if (step == 0.0) {
        return upper;
    }
    const double quotient = std::floor((upper - lower) / step * QuotientGuard);
    const double candidate = lower + quotient * step;
    return candidate < upper ? candidate : upper;
}

FeatureManager::FeatureManager(const QSharedPointer<FeatureVector>& features) : m_Features(features)
{}

FeaturePtr FeatureManager::FindFeature(const std::string& name)
{
    if (!m_Features) {
        return FeaturePtr();
    }
    // A shallow copy keeps the list as it is for the whole walk. Every name is
    // read into one buffer and compared there: a walk allocates nothing per
    // feature. The buffer ends in a zero, so a name matches when its first
    // zero sits right after the wanted characters; no name we look for holds
    // a zero of its own.
    const FeatureVector features = *m_Features;
    const size_t size = name.size();
    std::vector<char> featureName;
    for (FeatureVector::const_iterator it = features.constBegin(); it != features.constEnd();
         ++it) {
        const FeaturePtr feature = *it;
        if (feature && ReadFeatureText(*feature, &Feature::GetName, featureName) == 0 &&
            featureName.size() > size && featureName[size] == '\0' &&
            std::memcmp(featureName.data(), name.data(), size) == 0) {
            return feature;
        }
    }
    return FeaturePtr();
}

FeaturePtr FeatureManager::FindFeature(const QString& name)
{
    const QByteArray ascii = Qt4Compat::ToAscii(name);
    return FindFeature(std::string(ascii.constData(), static_cast<size_t>(ascii.size())));
}

FeaturePtr FeatureManager::FindFeature(const QString& name, const QString& alt1)
{
    const FeaturePtr feature = FindFeature(name);
    if (alt1.isEmpty() || feature) {
        return feature;
    }
    return FindFeature(alt1);
}

FeaturePtr FeatureManager::FindFeature(const QString& name, const QString& alt1,
                                       const QString& alt2)
{
    const FeaturePtr feature = FindFeature(name, alt1);
    if (alt1.isEmpty() || feature) {
        return feature;
    }
    // Looks alt1 up once more although the two-name form just missed it. The
    // library calls of a lookup are part of its behaviour, so this walk is
    // kept on purpose; the FeatureManager test
    // LookupPrefersNamesInOrderAndRepeatsTheAlternativeWalk pins its count.
    const FeaturePtr alternative = FindFeature(alt1);
    if (alt2.isEmpty() || alternative) {
        return alternative;
    }
    return FindFeature(alt2);
}

bool FeatureManager::HasFeature(const QString& name)
{
    return HasFeature(name, QString(), QString());
}

bool FeatureManager::HasFeature(const QString& name, const QString& alt1)
{
    return HasFeature(name, alt1, QString());
}

bool FeatureManager::HasFeature(const QString& name, const QString& alt1, const QString& alt2)
{
    return static_cast<bool>(FindFeature(name, alt1, alt2));
}

bool FeatureManager::IsWritable(const QString& name)
{
    return IsWritable(name, QString(), QString());
}

bool FeatureManager::IsWritable(const QString& name, const QString& alt1)
{
    return IsWritable(name, alt1, QString());
}

bool FeatureManager::IsWritable(const QString& name, const QString& alt1, const QString& alt2)
{
    return IsWritableOf(FindFeature(name, alt1, alt2));
}

bool FeatureManager::CanWrite(const QString& name)
{
    return IsWritable(name);
}

bool FeatureManager::CanWrite(const QString& name, const QString& alt1)
{
    return IsWritable(name, alt1);
}

bool FeatureManager::CanWrite(const QString& name, const QString& alt1, const QString& alt2)
{
    return IsWritable(name, alt1, alt2);
}

bool FeatureManager::IsFloat(const QString& name)
{
    return IsFloat(name, QString(), QString());
}

bool FeatureManager::IsFloat(const QString& name, const QString& alt1)
{
    return IsFloat(name, alt1, QString());
}

bool FeatureManager::IsFloat(const QString& name, const QString& alt1, const QString& alt2)
{
    return GetDataTypeOf(FindFeature(name, alt1, alt2)) == TrkFeatureDataFloat;
}

double FeatureManager::GetValue(const QString& name)
{
    return GetValue(name, QString(), QString());
}

double FeatureManager::GetValue(const QString& name, const QString& alt1)
{
    return GetValue(name, alt1, QString());
}

double FeatureManager::GetValue(const QString& name, const QString& alt1, const QString& alt2)
{
    const FeaturePtr feature = FindFeature(name, alt1, alt2);
    if (!feature) {
        return -1.0;
    }
    switch (GetDataTypeOf(feature)) {
    case TrkFeatureDataFloat:
        return ReadValue<double>(*feature);
    case TrkFeatureDataBool:
        return ReadValue<bool>(*feature) ? 1.0 : 0.0;
    case TrkFeatureDataInt:
        return static_cast<double>(ReadValue<long long>(*feature));
    default:
        return -1.0;
    }
}

QString FeatureManager::GetTextValue(const QString& name)
{
    return GetTextValue(name, QString());
}

QString FeatureManager::GetTextValue(const QString& name, const QString& alt1)
{
    const FeaturePtr feature = FindFeature(name, alt1);
    return feature ? GetTextValueOf(feature) : EmptyText();
}

QString FeatureManager::GetWritableTextValue(const QString& name)
{
    const FeaturePtr feature = FindFeature(name);
    return IsWritableOf(feature) ? GetTextValueOf(feature) : QString();
}

QString FeatureManager::GetDisplayName(const QString& name)
{
    return GetDisplayName(name, QString(), QString());
}

QString FeatureManager::GetDisplayName(const QString& name, const QString& alt1)
{
    return GetDisplayName(name, alt1, QString());
}

QString FeatureManager::GetDisplayName(const QString& name, const QString& alt1,
                                       const QString& alt2)
{
    return TextOf(FindFeature(name, alt1, alt2), &Feature::GetDisplayName);
}

QString FeatureManager::GetCategory(const QString& name)
{
    return TextOf(FindFeature(name), &Feature::GetCategory);
}

QString FeatureManager::FirstExistingName(const QStringList& names)
{
    return FirstExisting(*this, names, &Feature::GetName);
}

QString FeatureManager::FirstExistingDisplayName(const QStringList& names)
{
    return FirstExisting(*this, names, &Feature::GetDisplayName);
}

QString FeatureManager::GetTextValueOf(FeaturePtr feature)
{
    return TextOf(feature, FeatureValueText);
}

TrkFeatureDataType FeatureManager::GetDataTypeOf(FeaturePtr feature)
{
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    if (feature) {
        ReadFeatureDataType(*feature, type);
    }
    return type;
}

bool FeatureManager::IsWritableOf(FeaturePtr feature)
{
    bool writable = false;
    return feature && feature->IsWritable(writable) == 0 && writable;
}

double FeatureManager::GetValueRange(const QString& name, bool* writable, double* min, double* max,
                                     double* increment)
{
    return GetValueRange(name, QString(), QString(), writable, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, bool* writable,
                                     double* min, double* max, double* increment)
{
    return GetValueRange(name, alt1, QString(), writable, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, const QString& alt2,
                                     bool* writable, double* min, double* max, double* increment)
{
    const FeaturePtr feature = FindFeature(name, alt1, alt2);
    if (!feature) {
        return -1.0;
    }
    return ReadValueRange(*feature, writable, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, double* min, double* max,
                                     double* increment)
{
    return GetValueRange(name, QString(), QString(), nullptr, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, double* min,
                                     double* max, double* increment)
{
    return GetValueRange(name, alt1, QString(), nullptr, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, const QString& alt2,
                                     double* min, double* max, double* increment)
{
    return GetValueRange(name, alt1, alt2, nullptr, min, max, increment);
}

double FeatureManager::GetValueRange(const QString& name, double* min, double* max)
{
    return GetValueRange(name, QString(), QString(), min, max);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, double* min,
                                     double* max)
{
    return GetValueRange(name, alt1, QString(), min, max);
}

double FeatureManager::GetValueRange(const QString& name, const QString& alt1, const QString& alt2,
                                     double* min, double* max)
{
    // The step is read all the same, for aligning max, but not reported.
    double increment = -1.0;
    return GetValueRange(name, alt1, alt2, nullptr, min, max, &increment);
}

double FeatureManager::GetIncrement(const QString& name)
{
    return GetIncrement(name, QString());
}

double FeatureManager::GetIncrement(const QString& name, const QString& alt1)
{
    const FeaturePtr feature = FindFeature(name, alt1);
    if (!feature) {
        return -1.0;
    }
    switch (GetDataTypeOf(feature)) {
    case TrkFeatureDataInt:
        return static_cast<double>(ReadIncrement<long long>(*feature));
    case TrkFeatureDataFloat:
        return ReadIncrement<double>(*feature);
    default:
        return -1.0;
    }
}

double FeatureManager::SetValue(const QString& name, double value)
{
    return SetValue(name, QString(), QString(), value);
}

double FeatureManager::SetValue(const QString& name, const QString& alt1, double value)
{
    return SetValue(name, alt1, QString(), value);
}

double FeatureManager::SetValue(const QString& name, const QString& alt1, const QString& alt2,
                                double value)
{
    const FeaturePtr feature = FindFeature(name, alt1, alt2);
    if (!feature) {
        return value;
    }
    // The feature's own name, which is the alternative's if one was found.
    std::string featureName;
    ReadFeatureText(*feature, &Feature::GetName, featureName);
    DebugLine() << "Set " << featureName.c_str() << " = " << value;

    switch (GetDataTypeOf(feature)) {
    case TrkFeatureDataFloat:
        return WriteNumber<double>(*feature, name, value,
                                   "Error: FeatureManager::SetValue:Double: ");
    case TrkFeatureDataBool:
        return WriteFlag(*feature, name, value);
    case TrkFeatureDataInt:
        return WriteNumber<long long>(*feature, name, value,
                                      "Error: FeatureManager::SetValue:Int: ");
    default:
        return value;
    }
}

QString FeatureManager::SetValue(const QString& name, const QString& value)
{
    return SetValue(name, QString(), QString(), value);
}

QString FeatureManager::SetValue(const QString& name, const QString& alt1, const QString& value)
{
    return SetValue(name, alt1, QString(), value);
}

QString FeatureManager::SetValue(const QString& name, const QString& alt1, const QString& alt2,
                                 const QString& value)
{
    const FeaturePtr feature = FindFeature(name, alt1, alt2);
    if (!feature) {
        return value;
    }
    feature->SetValue(Qt4Compat::ToAscii(value).constData());
    // Looks for a feature named like the written text and reads it. The
    // library calls of a write are part of its behaviour, so this lookup is
    // kept on purpose; the FeatureManager test
    // TextWritesCommandsAndEntriesReportAsStated pins it.
    GetTextValue(value);
    return value;
}

bool FeatureManager::RunCommand(const QString& name)
{
    const FeaturePtr feature = FindFeature(name);
    return feature && feature->RunCommand() != 0;
}

QStringList FeatureManager::GetEntriesOf(FeaturePtr feature)
{
    QStringList result;
    if (!feature) {
        return result;
    }
    const std::vector<std::string> entries = ReadFeatureEntries(*feature);
    for (const std::string& entry : entries) {
        result.append(TextToQString(entry));
    }
    return result;
}

bool FeatureManager::IsEntryAvailableOf(FeaturePtr feature, const QString& entry)
{
    bool available = false;
    return feature &&
           feature->IsValueAvailable(Qt4Compat::ToAscii(entry).constData(), available) == 0 &&
           available;
}

QStringList FeatureManager::GetAvailableEntries(const QString& name)
{
    return GetAvailableEntries(name, QString());
}

QStringList FeatureManager::GetAvailableEntries(const QString& name, const QString& alt1)
{
    QStringList result;
    const FeaturePtr feature = FindFeature(name, alt1);
    if (!feature) {
        return result;
    }
    const QStringList entries = GetEntriesOf(feature);
    for (const QString& entry : entries) {
        if (IsEntryAvailableOf(feature, entry)) {
            result.append(entry);
        }
    }
    return result;
}

bool FeatureManager::IsEntryAvailable(const QString& name, const QString& entry)
{
    return IsEntryAvailableOf(FindFeature(name), entry);
}
