#include "ViewerOptions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <cstring>

namespace {

const char LocaleOption[] = "--locale";
const char ListDevicesOption[] = "--list-devices";

// The options of the viewer's command line, with their help texts.
struct OptionSet
{
    const QCommandLineOption camera{
        QStringLiteral("camera"),
        QStringLiteral("The simulated camera: autofunction, automode, dsp or unsupported."),
        QStringLiteral("name"), QStringLiteral("autofunction")};
    const QCommandLineOption genicam{
        QStringLiteral("genicam"),
        QStringLiteral("A camera simulated from its GenICam description, e.g. cameras/dsp.xml."),
        QStringLiteral("file")};
    const QCommandLineOption device{
        QStringLiteral("device"), QStringLiteral("A GigE Vision or USB3 Vision camera by its id."),
        QStringLiteral("id")};
    const QCommandLineOption listDevices{
        QStringLiteral("list-devices"),
        QStringLiteral("Print the ids of the cameras found, one a line, and quit.")};
    const QCommandLineOption plugins{QStringLiteral("plugins"),
                                     QStringLiteral("Folder of the plug-ins to load."),
                                     QStringLiteral("dir")};
    const QCommandLineOption screenshot{
        QStringLiteral("screenshot"),
        QStringLiteral("Save the window as a PNG once the tabs have refreshed, then quit."),
        QStringLiteral("file")};
    const QCommandLineOption locale{QStringLiteral("locale"),
                                    QStringLiteral("Run the tabs in this locale, e.g. de_DE."),
                                    QStringLiteral("name")};
    const QCommandLineOption verbose{QStringLiteral("verbose"),
                                     QStringLiteral("Print the tabs' log lines to stderr.")};
    const QCommandLineOption acquire{
        QStringLiteral("acquire"),
        QStringLiteral("Start acquisition at launch; a screenshot waits for the first frames.")};
};

// Parses arguments; what is wrong with them, or empty text. Shows the help
// and quits when asked to.
QString ParseError(QCommandLineParser& parser, const QStringList& arguments,
                   const OptionSet& options)
{
    if (!parser.parse(arguments)) {
        return parser.errorText();
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.showHelp();
    }
    if (!parser.positionalArguments().isEmpty()) {
        return QStringLiteral("unexpected argument %1").arg(parser.positionalArguments().first());
    }
    const int cameras = static_cast<int>(parser.isSet(options.camera)) +
                        static_cast<int>(parser.isSet(options.genicam)) +
                        static_cast<int>(parser.isSet(options.device));
    if (cameras > 1) {
        return QStringLiteral("--camera, --genicam and --device name one camera together");
    }
    return QString();
}

} // namespace

void ViewerOptions::ApplyLocale(int argc, char** argv)
{
    QByteArray locale;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == LocaleOption && i + 1 < argc) {
            locale = argv[i + 1];
        } else if (argument.startsWith(QByteArray(LocaleOption) + '=')) {
            locale = argument.mid(static_cast<int>(std::strlen(LocaleOption)) + 1);
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
    const OptionSet options;
    parser.addOptions({options.camera, options.genicam, options.device, options.listDevices,
                       options.plugins, options.screenshot, options.locale, options.verbose,
                       options.acquire});
    m_ErrorText = ParseError(parser, arguments, options);
    if (!m_ErrorText.isEmpty()) {
        return false;
    }
    m_Camera = parser.value(options.camera);
    m_InMemoryCamera = !parser.isSet(options.genicam) && !parser.isSet(options.device);
    if (parser.isSet(options.genicam)) {
        m_Camera = QFileInfo(parser.value(options.genicam)).absoluteFilePath();
    } else if (parser.isSet(options.device)) {
        m_Camera = parser.value(options.device);
    }
    m_Verbose = parser.isSet(options.verbose);
    m_Acquire = parser.isSet(options.acquire);
    if (parser.isSet(options.plugins)) {
        m_PluginDirectory =
            QDir::cleanPath(QFileInfo(parser.value(options.plugins)).absoluteFilePath());
    }
    if (parser.isSet(options.screenshot)) {
        m_ScreenshotFile = QFileInfo(parser.value(options.screenshot)).absoluteFilePath();
    }
    return true;
}
