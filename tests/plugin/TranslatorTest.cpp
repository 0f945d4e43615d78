#include "BaseTabPlugin.h"

#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTranslator>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Compiles a translation of "Full" into dir/plugins/<base>.qm.
void MakeTranslation(const QString& dir, const QString& base, const QString& full)
{
    const QString source = dir + "/" + base + ".ts";
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
    QTextStream(&file) << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                       << "<TS version=\"2.1\"><context><name>AutoROIWidget</name>"
                       << "<message><source>Full</source><translation>" << full
                       << "</translation></message></context></TS>\n";
    file.close();
    QDir(dir).mkpath("plugins");
    const int exitCode = QProcess::execute(
        TAB_LRELEASE, {"-silent", source, "-qm", dir + "/plugins/" + base + ".qm"});
    ASSERT_EQ(exitCode, 0);
}

// Prints the locale and what the loaded translator makes of "Full", and ends
// the process at once.
void ReportTranslation()
{
    const QTranslator* translator = BaseTabPluginWidget::LoadTranslator("tabextensionautoaoi");
    const QString full =
        translator->isEmpty() ? "empty" : translator->translate("AutoROIWidget", "Full");
    std::fprintf(stderr, "%s\n", qPrintable(QLocale::system().name() + " " + full));
    std::_Exit(0);
}

} // namespace

TEST(Translator, LooksForLanguageAndCountryThenLanguageUnderTheWorkingDirectory)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    MakeTranslation(dir.path(), "tabextensionautoaoi_de_DE", "Voll");
    MakeTranslation(dir.path(), "tabextensionautoaoi_de", "Ganz");
    MakeTranslation(dir.path(), "tabextensionautoaoi_ha", "Duka");
    // The system locale is fixed when a process starts: each locale gets a
    // child started with it, which reports from the given working directory.
    qunsetenv("LANGUAGE");
    const auto expectReport = [](const QString& directory, const char* locale, const char* report) {
        qputenv("LC_ALL", locale);
        QDir::setCurrent(directory);
        EXPECT_EXIT(ReportTranslation(), ::testing::ExitedWithCode(0), report);
    };
    expectReport(dir.path(), "de_DE.UTF-8", "de_DE Voll");
    expectReport(dir.path(), "de_CH.UTF-8", "de_CH Ganz");
    // A three-letter language is found only under its first two letters.
    expectReport(dir.path(), "haw_US.UTF-8", "haw_US Duka");
    expectReport(dir.path(), "fr_FR.UTF-8", "fr_FR empty");
    expectReport(dir.path() + "/plugins", "de_DE.UTF-8", "de_DE empty");
}
