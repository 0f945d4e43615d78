#include "tabextensionplugin.h"

#include "AutoROIWidget.h"
#include "TabExtensionException.h"

#include <QVBoxLayout>

// A tab that can't exist for this camera throws from its constructor; its
// code is the result, and parent is left without layout or tab.
qint32 TabExtensionPlugin::CreateTab(const QSharedPointer<FeatureVector>& features, QWidget* parent)
{
    try {
        AutoROIWidget* tab = new AutoROIWidget(features, parent);
        connect(this, SIGNAL(camStreaming(bool)), tab, SLOT(camIsStreaming(bool)));
        QVBoxLayout* layout = new QVBoxLayout;
        layout->addWidget(tab, 0, Qt::Alignment());
        parent->setLayout(layout);
        return 0;
    } catch (const TabExtensionException& exception) {
        return exception.m_Code;
    }
}

qint32 TabExtensionPlugin::ReservedQuery()
{
    return 0;
}

bool TabExtensionPlugin::ConnectStreamingSignal(QObject* sender, const char* signal)
{
    return connect(sender, signal, this, SLOT(OnCamIsStreaming(bool)));
}

void TabExtensionPlugin::OnCamIsStreaming(bool streaming)
{
    emit camStreaming(streaming);
}

AutoROIWidget* TabExtensionPlugin::TabOf(QWidget* page)
{
    return page ? page->findChild<AutoROIWidget*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

QSize TabExtensionPlugin::TabImageSize(QWidget* page)
{
    AutoROIWidget* tab = TabOf(page);
    return tab ? tab->PreviewImageSize() : QSize();
}

void TabExtensionPlugin::SetTabImage(QWidget* page, const QImage& image, const QSize& frameSize)
{
    if (AutoROIWidget* tab = TabOf(page)) {
        tab->ShowCameraImage(image, frameSize);
    }
}

#define TAB_PLUGIN_STRINGIFY(x) #x
#define TAB_PLUGIN_TO_TEXT(x) TAB_PLUGIN_STRINGIFY(x)

// The record by which a host's Qt checks that the plug-in was built against
// a compatible Qt with the same build key.
extern "C" Q_DECL_EXPORT const char* qt_plugin_query_verification_data()
{
    static const char record[] __attribute__((section(".qtplugin"))) =
        "pattern=QT_PLUGIN_VERIFICATION_DATA\n"
        "version=" QT_VERSION_STR "\n"
        "debug=true\n"
        "buildkey=generic linux g++-" TAB_PLUGIN_TO_TEXT(__GNUC__) " full-config";
    return record;
}
