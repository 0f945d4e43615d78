// The tab viewer: loads the tab extensions from a plugins folder and shows
// their tabs for a simulated or a real camera, as the camera viewer does.

#include "CameraCatalog.h"
#include "ImagePane.h"
#include "TabPluginLoader.h"
#include "ViewerOptions.h"
#include "ViewerWindow.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

namespace {

// The tab refreshes when shown and then every second; by this time after
// the window appears, its first refresh has been drawn.
const int ScreenshotDelayMs = 1500;
// While acquiring, the screenshot also waits for this many frames shown, so
// that automatic exposure has settled, but no longer than the time limit.
const quint64 ScreenshotFrames = 10;
const int ScreenshotTimeLimitMs = 20000;
const int ScreenshotPollMs = 100;

void SaveScreenshot(ViewerWindow& window, const QString& file)
{
    if (window.grab().save(file, "PNG")) {
        QApplication::exit(0);
    } else {
        std::fprintf(stderr, "tabviewer: could not write %s\n", qPrintable(file));
        QApplication::exit(1);
    }
}

int Fail(const QString& message, int code)
{
    std::fprintf(stderr, "tabviewer: %s\n", qPrintable(message));
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    if (ViewerOptions::ListDevices(argc, argv)) {
        for (const std::string& id : KST::TrkAPI::GenICam::Camera::DeviceIds()) {
            std::printf("%s\n", id.c_str());
        }
        return 0;
    }
    ViewerOptions::ApplyLocale(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tabviewer"));

    ViewerOptions options;
    if (!options.Parse(QApplication::arguments())) {
        return Fail(options.ErrorText(), 2);
    }
    const QStringList inMemory = CameraCatalog::InMemoryNames();
    if (options.InMemoryCamera() && !inMemory.contains(options.Camera())) {
        return Fail(QStringLiteral("unknown camera \"%1\"; the cameras are: %2")
                        .arg(options.Camera(), inMemory.join(QStringLiteral(", "))),
                    2);
    }

    const QString pluginDirectory =
        options.PluginDirectory().isEmpty()
            ? QDir(QApplication::applicationDirPath()).filePath(QStringLiteral("plugins"))
            : options.PluginDirectory();
    TabPluginLoader loader;
    const bool loaded = loader.Load(pluginDirectory);
    for (const QString& warning : loader.Warnings()) {
        std::fprintf(stderr, "tabviewer: skipped %s\n", qPrintable(warning));
    }
    if (!loaded) {
        return Fail(loader.ErrorText(), 1);
    }
    // A screenshot named relative to where the viewer was started lands
    // there, whatever the working directory becomes below.
    const QString screenshotFile = options.ScreenshotFile().isEmpty()
                                       ? QString()
                                       : QFileInfo(options.ScreenshotFile()).absoluteFilePath();
    // Tabs find their translations under "plugins/" relative to the working
    // directory, so it is the folder that holds the plug-in folder.
    QDir::setCurrent(QFileInfo(pluginDirectory).absolutePath());

    ViewerWindow window(loader.Plugins(), options.Verbose());
    QTimer* poll = new QTimer(&window);
    QElapsedTimer sinceShown;
    // Only the first opening decides whether the viewer starts; a camera
    // opened again after it was lost keeps the acquisition it was given.
    QObject::connect(&window, &ViewerWindow::cameraOpened, &window, [&](bool opened) {
        if (sinceShown.isValid()) {
            return;
        }
        if (!opened) {
            QApplication::exit(1);
            return;
        }
        sinceShown.start();
        if (options.Acquire()) {
            window.StartAcquisition();
        }
        if (!screenshotFile.isEmpty()) {
            poll->start(ScreenshotPollMs);
        }
    });
    QObject::connect(poll, &QTimer::timeout, &window, [&]() {
        const qint64 elapsed = sinceShown.elapsed();
        const bool framesDone = !options.Acquire() ||
                                window.Image()->FramesShown() >= ScreenshotFrames ||
                                elapsed >= ScreenshotTimeLimitMs;
        if (elapsed >= ScreenshotDelayMs && framesDone) {
            poll->stop();
            if (options.Acquire() && window.Image()->FramesShown() == 0) {
                std::fprintf(stderr, "tabviewer: no frame shown before the screenshot\n");
            }
            SaveScreenshot(window, screenshotFile);
        }
    });
    window.OpenCamera(options.Camera());
    window.show();
    return app.exec();
}
