#include "PluginFeatureObserver.h"

#include "FeatureText.h"

using KST::TrkAPI::Feature;

PluginFeatureObserver::PluginFeatureObserver() : QObject(nullptr) {}

PluginFeatureObserver::~PluginFeatureObserver() {}

TrkErrorType PluginFeatureObserver::ReadName(const Feature& feature, QString& text)
{
    return ReadFeatureText(feature, &Feature::GetName, text);
}

// A value that can't be read, or a type without a text form, gives the empty
// text, which is not a null string.
QString PluginFeatureObserver::ValueText(const Feature& feature, TrkFeatureDataType type)
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
