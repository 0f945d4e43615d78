#include "PluginFeatureObserver.h"

#include "FeatureText.h"

PluginFeatureObserver::PluginFeatureObserver() : QObject(nullptr) {}

PluginFeatureObserver::~PluginFeatureObserver() {}

// Runs on a thread of the camera library: touches nothing but the feature.
// Without a name or a type there is nothing to report; a value that can't be
// read is reported as empty text, since the feature did change.
void PluginFeatureObserver::FeatureChanged(const FeaturePtr& feature)
{
    if (!feature) {
        return;
    }
    QString name;
    if (ReadFeatureName(*feature, name) != 0) {
        return;
    }
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    if (ReadFeatureDataType(*feature, type) != 0) {
        return;
    }
    emit setChangedFeature(name, FeatureValueAsText(*feature, type));
}
