#include "ViewerOptions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <cstring>

namespace {
const char LocaleOption[] = "--locale";
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

bool ViewerOptions::Parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Loads the tab extensions and shows their tabs for a simulated camera."));
    parser.addHelpOption();
    const QCommandLineOption camera(
        QStringLiteral("camera"),
        QStringLiteral("The simulated camera: autofunction, automode, dsp or unsupported."),
        QStringLiteral("name"), QStringLiteral("autofunction"));
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
    parser.addOptions({camera, plugins, screenshot, locale, verbose, acquire});

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

    m_Camera = parser.value(camera);
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
