#ifndef PLUGINFEATUREOBSERVER_H
#define PLUGINFEATUREOBSERVER_H

#include "FeatureTypes.h"

#include <QObject>
#include <QString>

// Bridge from the camera library's change callbacks, which arrive on a thread
// of the library, to a Qt signal carrying the feature's name and value text.
class PluginFeatureObserver : public QObject, public KST::TrkAPI::IFeatureObserver
{
    Q_OBJECT

public:
    PluginFeatureObserver();
    ~PluginFeatureObserver() override;

    void FeatureChanged(const FeaturePtr& feature) override;

signals:
    void setChangedFeature(QString featureName, QString sValue);
};

#endif
