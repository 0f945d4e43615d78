// The smallest host of a tab extension: loads the plug-in, opens a simulated
// camera and lets the plug-in fill a page with its tab for that camera.
//
//   examplehost PLUGIN [CAMERA]     CAMERA: autofunction (default), automode, dsp, unsupported

#include <TabExtensionInterface.h>
#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QApplication>
#include <QPluginLoader>
#include <QWidget>

#include <cstdio>
#include <memory>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: examplehost PLUGIN [CAMERA]\n");
        return 2;
    }
    QPluginLoader loader(QString::fromLocal8Bit(argv[1]));
    TabExtensionInterface* plugin = qobject_cast<TabExtensionInterface*>(loader.instance());
    if (plugin == nullptr) {
        std::fprintf(stderr, "examplehost: no tab extension: %s\n",
                     qPrintable(loader.errorString()));
        return 1;
    }
    const std::unique_ptr<KST::TrkAPI::Device> camera =
        KST::TrkAPI::Sim::MakeCamera(argc > 2 ? argv[2] : "autofunction");
    if (!camera) {
        std::fprintf(stderr, "examplehost: no camera named %s\n", argv[2]);
        return 1;
    }
    QSharedPointer<FeatureVector> features(new FeatureVector);
    for (const FeaturePtr& feature : camera->Features()) {
        features->append(feature);
    }
    // The page, and the tab in it, go before the camera whose features it uses.
    QWidget page;
    const qint32 result = plugin->CreateTab(features, &page);
    std::printf("CreateTab returned %d, tab \"%s\"\n", result, qPrintable(page.accessibleName()));
    return result == 0 ? 0 : 1;
}
