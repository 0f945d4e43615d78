#include "PluginFeatureObserver.h"

#include "Qt4Compat.h"

#include <new>
#include <vector>

namespace {

using KST::TrkAPI::Feature;

typedef TrkErrorType (Feature::*TextGetter)(char*, unsigned int&) const;

// What a text read reports when its buffer can't be allocated.
const TrkErrorType NoBuffer = -14;

// The library's two-call text: the size first, then the bytes into a buffer
// one longer, so that the text always ends in a zero byte.
TrkErrorType ReadText(const Feature& feature, TextGetter getter, QString& text)
{
    text = QString();
    unsigned int length = 0;
    TrkErrorType result = (feature.*getter)(nullptr, length);
    if (result != 0 || length == 0) {
        return result;
    }
    try {
        std::vector<char> buffer(static_cast<size_t>(length) + 1, '\0');
        result = (feature.*getter)(buffer.data(), length);
        if (result == 0) {
            text = Qt4Compat::FromAscii(buffer.data());
        }
    } catch (const std::bad_alloc&) {
        return NoBuffer;
    }
    return result;
}

} // namespace

PluginFeatureObserver::PluginFeatureObserver() : QObject(nullptr) {}

PluginFeatureObserver::~PluginFeatureObserver() {}

TrkErrorType PluginFeatureObserver::ReadName(const Feature& feature, QString& text)
{
    return ReadText(feature, &Feature::GetName, text);
}

QString PluginFeatureObserver::ValueText(const Feature& feature, TrkFeatureDataType type)
{
    switch (type) {
    case TrkFeatureDataInt: {
        long long value = 0;
        return feature.GetValue(value) == 0 ? QString::number(value) : QString();
    }
    case TrkFeatureDataFloat: {
        double value = 0.0;
        return feature.GetValue(value) == 0 ? QString::number(value, 'g', 6) : QString();
    }
    case TrkFeatureDataEnum:
    case TrkFeatureDataString: {
        QString value;
        ReadText(feature, &Feature::GetValue, value);
        return value;
    }
    case TrkFeatureDataBool: {
        bool value = false;
        if (feature.GetValue(value) != 0) {
            return QString();
        }
        return value ? QStringLiteral("true") : QStringLiteral("false");
    }
    case TrkFeatureDataCommand:
        return QStringLiteral("[COMMAND]");
    case TrkFeatureDataRaw:
        return QStringLiteral("Click here to open");
    default:
        return QString();
    }
}

// Runs on a thread of the camera library: touches nothing but the feature.
// Without a name or a type there is nothing to report; a value that can't be
// read is reported as empty text, since the feature did change.
void PluginFeatureObserver::FeatureChanged(const FeaturePtr& feature)
{
    if (!feature) {
        return;
    }
    QString name;
    if (ReadName(*feature, name) != 0) {
        return;
    }
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    if (feature->GetDataType(type) != 0) {
        return;
    }
    emit setChangedFeature(name, ValueText(*feature, type));
}
