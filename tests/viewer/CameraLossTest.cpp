// The viewer with the real tab on a GigE Vision camera that is unplugged and
// plugged in again.

#include "ImagePane.h"
#include "OpenAndWait.h"
#include "ServedCamera.h"
#include "TabPluginLoader.h"

#include <QRubberBand>
#include <QStatusBar>
#include <QTabWidget>

#include <gtest/gtest.h>

namespace {

// The status bar tells of the loss within this, which a window that froze
// on the lost camera for as long can't do.
const int LossReportLimitMs = 1000;
const int FrameWaitMs = 3000;
const int OpenAttempts = 3;

} // namespace

TEST(CameraLoss, AnUnpluggedCameraIsReportedAtOnceWithoutBlockingAndOpensAgainWhenBack)
{
    TabPluginLoader loader;
    ASSERT_TRUE(loader.Load(QStringLiteral(TAB_PLUGIN_DIR)));
    ServedCamera device(TAB_CAMERA_SERVER, FamilyArguments("automode"));
    ASSERT_FALSE(device.Id().empty()) << "tabcamera's camera was not discovered";
    const QString id = QString::fromStdString(device.Id());
    // The tab refreshes every second while shown, in each of these too.
    for (const bool dragging : {false, true}) {
        SCOPED_TRACE(dragging ? "during a drag" : "during acquisition");
        ViewerWindow window(loader.Plugins(), false);
        window.show();
        ASSERT_TRUE(OpenAndWait(window, id, OpenAttempts));
        QTabWidget* pages = window.findChild<QTabWidget*>("pages");
        ASSERT_EQ(pages->count(), 1);
        if (!dragging) {
            // Over a busy loopback whole images may never arrive; the stream
            // runs either way.
            window.StartAcquisition();
            RunUntil([&] { return window.Image()->FramesShown() > 0; }, FrameWaitMs);
        }
        // The band's parent is the tab's preview.
        QRubberBand* band = pages->findChild<QRubberBand*>();
        ASSERT_NE(band, nullptr);
        QWidget* preview = band->parentWidget();
        QPoint at = preview->rect().center();
        if (dragging) {
            SendMouse(preview, QEvent::MouseButtonPress, at);
        }

        QElapsedTimer sinceKill;
        device.Kill();
        sinceKill.start();
        const bool reported = RunUntil([&] {
            if (dragging && pages->count() > 0) {
                at += QPoint(1, 1);
                SendMouse(preview, QEvent::MouseMove, at);
            }
            return window.statusBar()->currentMessage().contains("was lost");
        });
        EXPECT_TRUE(reported);
        EXPECT_LT(sinceKill.elapsed(), LossReportLimitMs);
        EXPECT_EQ(pages->count(), 0);
        EXPECT_EQ(window.Image()->FramesShown(), 0u);
        ASSERT_TRUE(device.Start());
    }

    // Plugged in again under the same id, it is found and opened again.
    ViewerWindow window(loader.Plugins(), false);
    ASSERT_TRUE(OpenAndWait(window, id, OpenAttempts));
    device.Kill();
    ASSERT_TRUE(
        RunUntil([&] { return window.statusBar()->currentMessage().contains("was lost"); }));
    ASSERT_TRUE(device.Start());
    EXPECT_TRUE(WaitForOpening(window));
    EXPECT_EQ(window.findChild<QTabWidget*>("pages")->count(), 1);
}
