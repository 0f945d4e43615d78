#include "BaseTabPlugin.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTranslator>

#include <gtest/gtest.h>

#include <iostream>

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

// The system locale is fixed when the application starts, so each locale
// gets a process of its own: this test binary, running only the probe below.
QString Probe(const QString& workingDirectory, const QString& locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TAB_TRANSLATOR_PROBE", "1");
    environment.insert("LC_ALL", locale);
    environment.remove("LANGUAGE");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDirectory);
    process.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=TranslatorProbe.*"});
    process.waitForFinished(60000);
    for (const QString& line : QString::fromUtf8(process.readAllStandardOutput()).split('\n')) {
        if (line.startsWith("probe ")) {
            return line.mid(6);
        }
    }
    return QString();
}

} // namespace

TEST(TranslatorProbe, Report)
{
    if (qEnvironmentVariableIsEmpty("TAB_TRANSLATOR_PROBE")) {
        GTEST_SKIP() << "runs as the child of the Translator test";
    }
    const QTranslator* translator = BaseTabPluginWidget::LoadTranslator("tabextensionautoaoi");
    const QString full =
        translator->isEmpty() ? "empty" : translator->translate("AutoROIWidget", "Full");
    std::cout << "probe " << qPrintable(QLocale::system().name() + " " + full) << std::endl;
}

TEST(Translator, LooksForLanguageAndCountryThenLanguageUnderTheWorkingDirectory)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    MakeTranslation(dir.path(), "tabextensionautoaoi_de_DE", "Voll");
    MakeTranslation(dir.path(), "tabextensionautoaoi_de", "Ganz");
    MakeTranslation(dir.path(), "tabextensionautoaoi_ha", "Duka");

    EXPECT_EQ(Probe(dir.path(), "de_DE.UTF-8"), "de_DE Voll");
    EXPECT_EQ(Probe(dir.path(), "de_CH.UTF-8"), "de_CH Ganz");
    // A three-letter language is found only under its first two letters.
    EXPECT_EQ(Probe(dir.path(), "haw_US.UTF-8"), "haw_US Duka");
    EXPECT_EQ(Probe(dir.path(), "fr_FR.UTF-8"), "fr_FR empty");
    EXPECT_EQ(Probe(dir.path() + "/plugins", "de_DE.UTF-8"), "de_DE empty");
}
