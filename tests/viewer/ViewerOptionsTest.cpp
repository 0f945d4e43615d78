#include "ViewerOptions.h"

#include <QDir>

#include <gtest/gtest.h>

TEST(ViewerOptions, ReadsTheCommandLine)
{
    // Paths are fixed before the viewer changes its working directory; a
    // description file or a device names the camera instead.
    const QString here = QDir::current().path() + "/";
    // A refused line has an error text that names what is wrong.
    const struct
    {
        QStringList arguments;
        QString camera;
        bool inMemory;
        QString error;
    } lines[] = {
        {{}, "autofunction", true, QString()},
        {{"--camera", "dsp"}, "dsp", true, QString()},
        {{"--genicam", "cameras/dsp.xml"}, here + "cameras/dsp.xml", false, QString()},
        {{"--device=Aravis-Fake-GV01"}, "Aravis-Fake-GV01", false, QString()},
        {{"--camera", "dsp", "--device", "one"}, QString(), false, "--device"},
        {{"--colour", "red"}, QString(), false, "colour"},
        {{"--camera"}, QString(), false, "camera"},
        {{"dsp"}, QString(), false, "dsp"},
    };
    for (const auto& line : lines) {
        ViewerOptions options;
        EXPECT_EQ(options.Parse(QStringList("tabviewer") + line.arguments), line.error.isEmpty())
            << line.arguments.join(" ").toStdString();
        EXPECT_TRUE(options.ErrorText().contains(line.error)) << qPrintable(options.ErrorText());
        if (line.error.isEmpty()) {
            EXPECT_EQ(options.Camera(), line.camera);
            EXPECT_EQ(options.InMemoryCamera(), line.inMemory);
        }
    }
    ViewerOptions given;
    ASSERT_TRUE(given.Parse({"tabviewer", "--plugins", "some/plugins/", "--screenshot=shot.png",
                             "--locale", "de_DE", "--verbose", "--acquire"}));
    EXPECT_EQ(given.PluginDirectory(), here + "some/plugins");
    EXPECT_EQ(given.ScreenshotFile(), here + "shot.png");
    EXPECT_TRUE(given.Verbose() && given.Acquire());
}

TEST(ViewerOptions, LocaleGoesToTheEnvironmentWithAUtf8Codeset)
{
    const bool hadAll = qEnvironmentVariableIsSet("LC_ALL");
    const bool hadLang = qEnvironmentVariableIsSet("LANG");
    const QByteArray savedAll = qgetenv("LC_ALL");
    const QByteArray savedLang = qgetenv("LANG");

    char program[] = "tabviewer";
    char option[] = "--locale";
    char german[] = "de_DE";
    char* separate[] = {program, option, german};
    ViewerOptions::ApplyLocale(3, separate);
    EXPECT_EQ(qgetenv("LC_ALL"), "de_DE.UTF-8");
    EXPECT_EQ(qgetenv("LANG"), "de_DE.UTF-8");

    char joined[] = "--locale=fr_FR.ISO-8859-1";
    char* withEquals[] = {program, joined};
    ViewerOptions::ApplyLocale(2, withEquals);
    EXPECT_EQ(qgetenv("LC_ALL"), "fr_FR.ISO-8859-1");

    // A trailing option without a value changes nothing.
    char* dangling[] = {program, option};
    ViewerOptions::ApplyLocale(2, dangling);
    EXPECT_EQ(qgetenv("LC_ALL"), "fr_FR.ISO-8859-1");

    hadAll ? qputenv("LC_ALL", savedAll) : qunsetenv("LC_ALL");
    hadLang ? qputenv("LANG", savedLang) : qunsetenv("LANG");
}
