#include "ViewerOptions.h"

#include <QDir>

#include <gtest/gtest.h>

TEST(ViewerOptions, ReadsTheCommandLine)
{
    ViewerOptions defaults;
    ASSERT_TRUE(defaults.Parse({"tabviewer"}));
    EXPECT_EQ(defaults.Camera(), "autofunction");
    EXPECT_TRUE(defaults.PluginDirectory().isEmpty());
    EXPECT_TRUE(defaults.ScreenshotFile().isEmpty());
    EXPECT_FALSE(defaults.Verbose());
    EXPECT_FALSE(defaults.Acquire());

    // Paths are fixed before the viewer changes its working directory.
    ViewerOptions given;
    ASSERT_TRUE(
        given.Parse({"tabviewer", "--camera", "dsp", "--plugins", "some/plugins/",
                     "--screenshot=shot.png", "--locale", "de_DE", "--verbose", "--acquire"}));
    EXPECT_EQ(given.Camera(), "dsp");
    EXPECT_EQ(given.PluginDirectory(), QDir::current().filePath("some/plugins"));
    EXPECT_EQ(given.ScreenshotFile(), QDir::current().filePath("shot.png"));
    EXPECT_TRUE(given.Verbose());
    EXPECT_TRUE(given.Acquire());

    // A description file or a device names the camera instead.
    ViewerOptions described;
    ASSERT_TRUE(described.Parse({"tabviewer", "--genicam", "cameras/dsp.xml"}));
    EXPECT_EQ(described.Camera(), QDir::current().filePath("cameras/dsp.xml"));
    EXPECT_FALSE(described.InMemoryCamera());
    ViewerOptions device;
    ASSERT_TRUE(device.Parse({"tabviewer", "--device=Aravis-Fake-GV01"}));
    EXPECT_EQ(device.Camera(), "Aravis-Fake-GV01");
    EXPECT_TRUE(defaults.InMemoryCamera());

    ViewerOptions wrong;
    EXPECT_FALSE(wrong.Parse({"tabviewer", "--camera", "dsp", "--device", "one"}));
    EXPECT_FALSE(wrong.Parse({"tabviewer", "--colour", "red"}));
    EXPECT_TRUE(wrong.ErrorText().contains("colour"));
    EXPECT_FALSE(wrong.Parse({"tabviewer", "--camera"}));
    EXPECT_FALSE(wrong.Parse({"tabviewer", "dsp"}));
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
