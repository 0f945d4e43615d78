#ifndef TABEXTENSIONPLUGIN_H
#define TABEXTENSIONPLUGIN_H

#include "TabExtensionInterface.h"

// The object that a host finds in the plug-in: builds the auto AOI tab for a
// camera and relays the host's streaming state to every tab it built. It
// keeps no state of its own.
class TabExtensionPlugin : public TabExtensionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.trolltech.Plugin.TabExtensionInterface/1.0")
    Q_INTERFACES(TabExtensionInterface)

public:
    qint32 CreateTab(const QSharedPointer<FeatureVector>& features, QWidget* parent) override;
    qint32 ReservedQuery() override;
    bool ConnectStreamingSignal(QObject* sender, const char* signal) override;

signals:
    void camStreaming(bool streaming);

public slots:
    void OnCamIsStreaming(bool streaming);
};

#endif
