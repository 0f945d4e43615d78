#ifndef TABEXTENSIONINTERFACE_H
#define TABEXTENSIONINTERFACE_H

#include "FeatureTypes.h"

#include <QObject>
#include <QSharedPointer>
#include <QtPlugin>

class QWidget;

// What a host asks of a tab extension plug-in: fill a page with one tab for
// one camera, and pass on the camera's streaming state. The order of the
// three operations is part of the binary contract with the host.
class TabExtensionInterface : public QObject
{
public:
    // Builds the tab for the camera with these features inside parent;
    // 0 on success, otherwise a code saying why no tab exists.
    virtual qint32 CreateTab(const QSharedPointer<FeatureVector>& features, QWidget* parent) = 0;
    // Kept for the host; always 0.
    virtual qint32 ReservedQuery() = 0;
    // Connects the host's streaming signal (as for QObject::connect) to the plug-in.
    virtual bool ConnectStreamingSignal(QObject* sender, const char* signal) = 0;
};

Q_DECLARE_INTERFACE(TabExtensionInterface, "com.trolltech.Plugin.TabExtensionInterface/1.0")

#endif
