#include "ViewerOptions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <cstring>

namespace {
const char LocaleOption[] = "--locale";
const char ListDevicesOption[] = "--list-devices";
} // namespace

void ViewerOptions::ApplyLocale(int argc, char** argv)
{
    QByteArray locale;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == LocaleOption && i + 1 < argc) {
            locale = argv[i + 1];
        } else if (argument.startsWith(QByteArray(LocaleOption) + '=')) {
            locale = argument.mid(int(std::strlen(LocaleOption)) + 1);
        }
    }
    if (locale.isEmpty()) {
        return;
    }
    // Qt wants a UTF-8 codeset; a bare "de_DE" would fall back to ASCII.
    if (!locale.contains('.') && locale != "C" && locale != "POSIX") {
        locale += ".UTF-8";
    }
    qputenv("LC_ALL", locale);
    qputenv("LANG", locale);
}

bool ViewerOptions::ListDevices(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], ListDevicesOption) == 0) {
            return true;
        }
    }
    return false;
}

bool ViewerOptions::Parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Loads the tab extensions and shows their tabs for a camera."));
    parser.addHelpOption();
    const QCommandLineOption camera(
        QStringLiteral("camera"),
        QStringLiteral("The simulated camera: autofunction, automode, dsp or unsupported."),
        QStringLiteral("name"), QStringLiteral("autofunction"));
    const QCommandLineOption genicam(
        QStringLiteral("genicam"),
        QStringLiteral("A camera simulated from its GenICam description, e.g. cameras/dsp.xml."),
        QStringLiteral("file"));
    const QCommandLineOption device(
        QStringLiteral("device"), QStringLiteral("A GigE Vision or USB3 Vision camera by its id."),
        QStringLiteral("id"));
    const QCommandLineOption listDevices(
        QStringLiteral("list-devices"),
        QStringLiteral("Print the ids of the cameras found, one a line, and quit."));
    const QCommandLineOption plugins(QStringLiteral("plugins"),
                                     QStringLiteral("Folder of the plug-ins to load."),
                                     QStringLiteral("dir"));
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Save the window as a PNG once the tabs have refreshed, then quit."),
        QStringLiteral("file"));
    const QCommandLineOption locale(QStringLiteral("locale"),
                                    QStringLiteral("Run the tabs in this locale, e.g. de_DE."),
                                    QStringLiteral("name"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Print the tabs' log lines to stderr."));
    const QCommandLineOption acquire(
        QStringLiteral("acquire"),
        QStringLiteral("Start acquisition at launch; a screenshot waits for the first frames."));
    parser.addOptions(
        {camera, genicam, device, listDevices, plugins, screenshot, locale, verbose, acquire});

    if (!parser.parse(arguments)) {
        m_ErrorText = parser.errorText();
        return false;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.showHelp();
    }
    if (!parser.positionalArguments().isEmpty()) {
        m_ErrorText =
            QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().first());
        return false;
    }

    if (int(parser.isSet(camera)) + int(parser.isSet(genicam)) + int(parser.isSet(device)) > 1) {
        m_ErrorText = QStringLiteral("--camera, --genicam and --device name one camera together");
        return false;
    }
    m_Camera = parser.value(camera);
    m_InMemoryCamera = !parser.isSet(genicam) && !parser.isSet(device);
    if (parser.isSet(genicam)) {
        m_Camera = QFileInfo(parser.value(genicam)).absoluteFilePath();
    } else if (parser.isSet(device)) {
        m_Camera = parser.value(device);
    }
    m_Verbose = parser.isSet(verbose);
    m_Acquire = parser.isSet(acquire);
    if (parser.isSet(plugins)) {
        m_PluginDirectory = QDir::cleanPath(QFileInfo(parser.value(plugins)).absoluteFilePath());
    }
    if (parser.isSet(screenshot)) {
        m_ScreenshotFile = QFileInfo(parser.value(screenshot)).absoluteFilePath();
    }
    return true;
}
