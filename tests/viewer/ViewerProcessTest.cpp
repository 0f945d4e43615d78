#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// What one headless run of the viewer left behind.
struct ViewerRun
{
    int exitCode = -1;
    QString errors;
};

ViewerRun RunViewer(const QStringList& arguments)
{
    QProcess viewer;
    viewer.setProgram(QStringLiteral(TABVIEWER_PATH));
    viewer.setArguments(arguments);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    viewer.setProcessEnvironment(environment);
    viewer.start();
    ViewerRun run;
    if (!viewer.waitForFinished(60000)) {
        viewer.kill();
        viewer.waitForFinished();
        run.errors = QStringLiteral("viewer did not finish");
        return run;
    }
    run.exitCode = viewer.exitStatus() == QProcess::NormalExit ? viewer.exitCode() : -1;
    run.errors = QString::fromLocal8Bit(viewer.readAllStandardError());
    return run;
}

} // namespace

TEST(ViewerProcess, EachFamilyCameraGetsATabAndAScreenshotOfItsLiveImage)
{
    QTemporaryDir output;
    ASSERT_TRUE(output.isValid());
    // The in-memory camera, and the same described in GenICam.
    for (const QString family : {"autofunction", "automode", "dsp"}) {
        for (const QStringList& camera :
             {QStringList{"--camera", family},
              QStringList{"--genicam", QStringLiteral(TAB_CAMERAS_DIR) + "/" + family + ".xml"}}) {
            SCOPED_TRACE(camera.join(" ").toStdString());
            const QString file = output.filePath(family + ".png");
            const ViewerRun run =
                RunViewer(camera + QStringList{"--acquire", "--screenshot", file});
            EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
            // The plug-in folder also holds translations, which are no plug-ins.
            for (const char* error : {"no frame", "declined", "skipped"}) {
                EXPECT_FALSE(run.errors.contains(error)) << run.errors.toStdString();
            }
            const QImage image(file);
            EXPECT_GE(image.width(), 800);
            EXPECT_GE(image.height(), 600);
        }
    }
}

TEST(ViewerProcess, RefusalsEndWithTheirStatusAndSayWhy)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString plugins = QStringLiteral(TAB_PLUGIN_DIR);
    const QString file = folder.filePath("unsupported.png");
    const QString missing = folder.filePath("missing");
    const QString none = folder.filePath("none.xml");
    // A file named like a library that isn't one is reported and skipped.
    QDir(folder.path()).mkdir("broken");
    QFile fake(folder.filePath("broken/libbroken.so"));
    ASSERT_TRUE(fake.open(QIODevice::WriteOnly));
    fake.write("not a library");
    fake.close();
    const struct
    {
        QStringList arguments;
        int exitCode;
        QString error;
    } runs[] = {
        {{"--camera=unsupported", "--screenshot", file},
         0,
         "libtabextensionautoaoi.so declined camera unsupported with code 4"},
        {{"--plugins", missing}, 1, "plug-in folder " + missing + " does not exist"},
        {{"--plugins", folder.filePath("broken")}, 1, "skipped libbroken.so"},
        {{"--plugins", folder.filePath("broken")}, 1, "no tab extension plug-in found in "},
        {{"--plugins", plugins, "--camera", "mono"}, 2, "unknown camera \"mono\""},
        {{"--plugins", plugins, "--genicam", none}, 1, "cannot read " + none},
        // Listing the devices needs no display; finding none is no error.
        {{"--list-devices"}, 0, QString()},
    };
    for (const auto& expected : runs) {
        const ViewerRun run = RunViewer(expected.arguments);
        EXPECT_EQ(run.exitCode, expected.exitCode) << expected.arguments.join(" ").toStdString();
        EXPECT_TRUE(expected.error.isEmpty() ? run.errors.isEmpty()
                                             : run.errors.contains(expected.error))
            << run.errors.toStdString();
    }
    EXPECT_TRUE(QFile::exists(file));
}
