#ifndef TABEXTENSIONPLUGIN_H
#define TABEXTENSIONPLUGIN_H

#include "TabExtensionInterface.h"
#include "TabImageInterface.h"

class AutoROIWidget;

// The object that a host finds in the plug-in: builds the auto AOI tab for a
// camera, relays the host's streaming state to every tab it built, and hands
// a tab the camera's image where the host offers one. It keeps no state of
// its own: a page's tab is found among the page's children.
class TabExtensionPlugin : public TabExtensionInterface, public TabImageInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.trolltech.Plugin.TabExtensionInterface/1.0")
    Q_INTERFACES(TabExtensionInterface TabImageInterface)

public:
    qint32 CreateTab(const QSharedPointer<FeatureVector>& features, QWidget* parent) override;
    qint32 ReservedQuery() override;
    bool ConnectStreamingSignal(QObject* sender, const char* signal) override;

    QSize TabImageSize(QWidget* page) override;
    void SetTabImage(QWidget* page, const QImage& image, const QSize& frameSize) override;

signals:
    void camStreaming(bool streaming);

public slots:
    void OnCamIsStreaming(bool streaming);

private:
    static AutoROIWidget* TabOf(QWidget* page);
};

#endif
