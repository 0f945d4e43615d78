#include "ViewerOptions.h"

#include <QDir>

#include <gtest/gtest.h>

TEST(ViewerOptions, ReadsTheCommandLine)
{
    // Paths are fixed before the viewer changes its working directory; a
    // description file or a device names the camera instead.
    const QString here = QDir::current().path() + "/";
    const struct
    {
        QStringList arguments;
        bool accepted;
        QString camera;
        bool inMemory;
    } lines[] = {
        {{}, true, "autofunction", true},
        {{"--camera", "dsp"}, true, "dsp", true},
        {{"--genicam", "cameras/dsp.xml"}, true, here + "cameras/dsp.xml", false},
        {{"--device=Aravis-Fake-GV01"}, true, "Aravis-Fake-GV01", false},
        {{"--camera", "dsp", "--device", "one"}, false, QString(), false},
        {{"--colour", "red"}, false, QString(), false},
        {{"--camera"}, false, QString(), false},
        {{"dsp"}, false, QString(), false},
    };
    for (const auto& line : lines) {
        ViewerOptions options;
        EXPECT_EQ(options.Parse(QStringList("tabviewer") + line.arguments), line.accepted)
            << line.arguments.join(" ").toStdString();
        if (line.accepted) {
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
    ViewerOptions defaults;
    ASSERT_TRUE(defaults.Parse({"tabviewer"}));
    EXPECT_TRUE(defaults.PluginDirectory().isEmpty() && defaults.ScreenshotFile().isEmpty());
    EXPECT_FALSE(defaults.Verbose() || defaults.Acquire());
    EXPECT_FALSE(defaults.Parse({"tabviewer", "--colour", "red"}));
    EXPECT_TRUE(defaults.ErrorText().contains("colour"));
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
