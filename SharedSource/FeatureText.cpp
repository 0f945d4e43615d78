#include "FeatureText.h"

#include "Qt4Compat.h"

#include <new>
#include <vector>

TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             std::vector<char>& buffer)
{
    unsigned int length = 0;
    const TrkErrorType result = (feature.*getter)(nullptr, length);
    if (result != 0) {
        return result;
    }
    try {
        buffer.assign(static_cast<size_t>(length) + 1, '\0');
    } catch (const std::bad_alloc&) {
        return FeatureTextNoBuffer;
    }
    return length == 0 ? result : (feature.*getter)(buffer.data(), length);
}

TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             std::string& text)
{
    text.clear();
    try {
        std::vector<char> buffer;
        const TrkErrorType result = ReadFeatureText(feature, getter, buffer);
        if (result == 0) {
            text = buffer.data();
        }
        return result;
    } catch (const std::bad_alloc&) {
        text.clear();
        return FeatureTextNoBuffer;
    }
}

TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             QString& text)
{
    std::string ascii;
    const TrkErrorType result = ReadFeatureText(feature, getter, ascii);
    text = Qt4Compat::FromAscii(ascii.c_str(), static_cast<int>(ascii.size()));
    return result;
}

TrkErrorType ReadFeatureName(const KST::TrkAPI::Feature& feature, QString& name)
{
    return ReadFeatureText(feature, &KST::TrkAPI::Feature::GetName, name);
}

TrkErrorType ReadFeatureDataType(const KST::TrkAPI::Feature& feature, TrkFeatureDataType& type)
{
    const TrkErrorType result = feature.GetDataType(type);
    if (result != 0) {
        type = TrkFeatureDataUnknown;
    }
    return result;
}

// A value that can't be read, or a type without a text form, gives the empty
// text, which is not a null string.
QString FeatureValueAsText(const KST::TrkAPI::Feature& feature, TrkFeatureDataType type)
{
    const QString empty = QLatin1String("");
    switch (type) {
    case TrkFeatureDataInt: {
        long long value = 0;
        return feature.GetValue(value) == 0 ? QString::number(value) : empty;
    }
    case TrkFeatureDataFloat: {
        double value = 0.0;
        return feature.GetValue(value) == 0 ? QString::number(value, 'g', 6) : empty;
    }
    case TrkFeatureDataEnum:
    case TrkFeatureDataString: {
        QString value;
        ReadFeatureText(feature, FeatureValueText, value);
        return value;
    }
    case TrkFeatureDataBool: {
        bool value = false;
        if (feature.GetValue(value) != 0) {
            return empty;
        }
        return value ? QStringLiteral("true") : QStringLiteral("false");
    }
    case TrkFeatureDataCommand:
        return QStringLiteral("[COMMAND]");
    case TrkFeatureDataRaw:
        return QStringLiteral("Click here to open");
    default:
        return empty;
    }
}

std::vector<std::string> ReadFeatureEntries(KST::TrkAPI::Feature& feature)
{
    std::vector<std::string> entries;
    unsigned int count = 0;
    if (feature.GetValues(nullptr, count) != 0 || count == 0) {
        return entries;
    }
    try {
        std::vector<const char*> pointers(count, nullptr);
        unsigned int filled = count;
        if (feature.GetValues(pointers.data(), filled) != 0) {
            return entries;
        }
        entries.reserve(count);
        for (const char* entry : pointers) {
            entries.push_back(entry != nullptr ? entry : "");
        }
    } catch (const std::bad_alloc&) {
        entries.clear();
    }
    return entries;
}
