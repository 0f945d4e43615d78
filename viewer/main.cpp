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
#include <QLocale>
#include <QTimer>
#include <QTranslator>

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

// The window's own texts in the language of the locale, from --locale or the
// system; the tabs load theirs themselves.
void InstallTranslation(QTranslator& translation)
{
    const QString folder =
        QDir(QApplication::applicationDirPath()).filePath(QStringLiteral("translations"));
    if (translation.load(QLocale(), QStringLiteral("tabviewer"), QStringLiteral("_"), folder)) {
        QApplication::installTranslator(&translation);
    }
}

void ListDevices()
{
    for (const std::string& id : KST::TrkAPI::GenICam::Camera::DeviceIds()) {
        std::printf("%s\n", id.c_str());
    }
}

// Loads the plug-ins of the folder the options name, or else of "plugins"
// beside the viewer, into loader; the folder, or empty text when none loaded.
QString LoadPlugins(const ViewerOptions& options, TabPluginLoader& loader)
{
    const QString pluginDirectory =
        options.PluginDirectory().isEmpty()
            ? QDir(QApplication::applicationDirPath()).filePath(QStringLiteral("plugins"))
            : options.PluginDirectory();
    const bool loaded = loader.Load(pluginDirectory);
    for (const QString& warning : loader.Warnings()) {
        std::fprintf(stderr, "tabviewer: skipped %s\n", qPrintable(warning));
    }
    return loaded ? pluginDirectory : QString();
}

// Saves the window into file once the tabs have refreshed and, while
// acquiring, the first frames are shown.
void ScheduleScreenshot(ViewerWindow& window, const QString& file, bool acquiring)
{
    QElapsedTimer sinceShown;
    sinceShown.start();
    QTimer* poll = new QTimer(&window);
    QObject::connect(poll, &QTimer::timeout, &window, [&window, file, acquiring, sinceShown, poll] {
        const qint64 elapsed = sinceShown.elapsed();
        const quint64 shown = window.Image()->FramesShown();
        const bool framesDone =
            !acquiring || shown >= ScreenshotFrames || elapsed >= ScreenshotTimeLimitMs;
        if (elapsed >= ScreenshotDelayMs && framesDone) {
            poll->stop();
            if (acquiring && shown == 0) {
                std::fprintf(stderr, "tabviewer: no frame shown before the screenshot\n");
            }
            SaveScreenshot(window, file);
        }
    });
    poll->start(ScreenshotPollMs);
}

} // namespace

int main(int argc, char** argv)
{
    if (ViewerOptions::ListDevices(argc, argv)) {
        ListDevices();
        return 0;
    }
    ViewerOptions::ApplyLocale(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tabviewer"));
    QTranslator translation;
    InstallTranslation(translation);

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
    TabPluginLoader loader;
    const QString pluginDirectory = LoadPlugins(options, loader);
    if (pluginDirectory.isEmpty()) {
        return Fail(loader.ErrorText(), 1);
    }
    // Tabs find their translations under "plugins/" relative to the working
    // directory, so it is the folder that holds the plug-in folder. The
    // options hold absolute paths already.
    QDir::setCurrent(QFileInfo(pluginDirectory).absolutePath());

    ViewerWindow window(loader.Plugins(), options.Verbose());
    bool started = false;
    // Only the first opening decides whether the viewer starts; a camera
    // opened again after it was lost keeps the acquisition it was given.
    QObject::connect(&window, &ViewerWindow::cameraOpened, &window, [&](bool opened) {
        if (started) {
            return;
        }
        started = true;
        if (!opened) {
            QApplication::exit(1);
            return;
        }
        if (options.Acquire()) {
            window.StartAcquisition();
        }
        if (!options.ScreenshotFile().isEmpty()) {
            ScheduleScreenshot(window, options.ScreenshotFile(), options.Acquire());
        }
    });
    window.OpenCamera(options.Camera());
    window.show();
    return app.exec();
}
