#include "PluginFeatureObserver.h"

#include "FeatureText.h"

using KST::TrkAPI::Feature;

PluginFeatureObserver::PluginFeatureObserver() : QObject(nullptr) {}

PluginFeatureObserver::~PluginFeatureObserver() {}

TrkErrorType PluginFeatureObserver::ReadName(const Feature& feature, QString& text)
{
    return ReadFeatureText(feature, &Feature::GetName, text);
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
        ReadFeatureText(feature, FeatureValueText, value);
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
