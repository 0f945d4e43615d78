#include "SimFeatures.h"
#include "TabExtensionInterface.h"
#include "TabImageInterface.h"
#include "UserInput.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QGroupBox>
#include <QLabel>
#include <QPluginLoader>
#include <QPushButton>
#include <QRubberBand>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

QObject* PluginObject()
{
    QPluginLoader loader(QStringLiteral(TAB_PLUGIN_FILE));
    QObject* object = loader.instance();
    EXPECT_NE(object, nullptr) << qPrintable(loader.errorString());
    return object;
}

TabExtensionInterface* Plugin()
{
    return qobject_cast<TabExtensionInterface*>(PluginObject());
}

using Setup = std::function<void(KST::TrkAPI::Sim::Camera&)>;

// A host's page with the tab for one ready-made camera, set up first.
struct Page
{
    explicit Page(const char* camera, const Setup& setup = Setup())
        : m_Camera(KST::TrkAPI::Sim::MakeCamera(camera))
    {
        if (setup) {
            setup(*m_Camera);
        }
        m_Result = Plugin()->CreateTab(MakeFeatureVector(*m_Camera), &m_Widget);
    }

    QGroupBox* Region() const { return m_Widget.findChild<QGroupBox*>("gb_AutoROI"); }

    std::unique_ptr<KST::TrkAPI::Sim::Camera> m_Camera;
    QWidget m_Widget;
    qint32 m_Result;
};

// The preview picture's pixels, the band left out, that the camera's dashed
// outline made black or white, for a scene exposed to lie well between.
QRect Outline(QLabel* preview, QWidget* band)
{
    band->hide();
    const QImage picture = preview->grab(QRect(QPoint(), preview->pixmap()->size())).toImage();
    band->show();
    QRect box;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int level = qGray(picture.pixel(x, y));
            if (level < 3 || level > 190) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

} // namespace

TEST(TabPlugin, AnswersToItsNamesAndPutsTheTabIntoItsPageOrLeavesThePageAlone)
{
    QObject* object = PluginObject();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->qt_metacast("TabExtensionPlugin"), object);
    EXPECT_EQ(object->qt_metacast("com.trolltech.Plugin.TabExtensionInterface/1.0"),
              static_cast<void*>(qobject_cast<TabExtensionInterface*>(object)));

    Page page("autofunction");
    EXPECT_EQ(page.m_Result, 0);
    QVBoxLayout* layout = qobject_cast<QVBoxLayout*>(page.m_Widget.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 1);
    EXPECT_EQ(layout->itemAt(0)->widget()->accessibleName(), "Autofunction AOI");

    Page refused("unsupported");
    EXPECT_EQ(refused.m_Result, 4);
    EXPECT_EQ(refused.m_Widget.layout(), nullptr);
    EXPECT_EQ(Plugin()->ReservedQuery(), 0);
}

TEST(TabPlugin, RelaysStreamingToEveryLivingTab)
{
    // Stands for the host's acquisition switch.
    QPushButton host;
    ASSERT_TRUE(Plugin()->ConnectStreamingSignal(&host, SIGNAL(toggled(bool))));
    Page first("automode");
    std::unique_ptr<Page> second(new Page("automode"));

    // A tab applies the state it had before each new one, so the second
    // "streaming" is the first to disable the region group.
    emit host.toggled(true);
    emit host.toggled(true);
    EXPECT_FALSE(first.Region()->isEnabled());
    EXPECT_FALSE(second->Region()->isEnabled());

    second.reset();
    emit host.toggled(false);
    emit host.toggled(false);
    EXPECT_TRUE(first.Region()->isEnabled());
}

// For each family: the camera's image lies under the band so that the band
// covers the outline the camera draws, before and after a drag of the band.
TEST(TabPlugin, TheBandLiesOnTheRegionTheCameraDrawsInItsImage)
{
    // Settings in sensor pixels; the AutoMode image starts at 64, 32.
    const std::pair<const char*, QString> families[] = {
        {"autofunction", "AutofunctionAOIOffsetX 160 AutofunctionAOIOffsetY 120 "
                         "AutofunctionAOIWidth 256 AutofunctionAOIHeight 160"},
        {"automode", "OffsetX 64 OffsetY 32 AutoModeRegionOffsetX 224 AutoModeRegionOffsetY 152 "
                     "AutoModeRegionWidth 256 AutoModeRegionHeight 160"},
        {"dsp", "DSPSubregionLeft 160 DSPSubregionTop 120 DSPSubregionRight 416 "
                "DSPSubregionBottom 280"}};
    TabImageInterface* images = qobject_cast<TabImageInterface*>(PluginObject());
    ASSERT_NE(images, nullptr);
    for (const auto& family : families) {
        SCOPED_TRACE(family.first);
        KST::TrkAPI::FramePtr frame;
        Page page(family.first, [&](KST::TrkAPI::Sim::Camera& camera) {
            const QStringList settings = ("Width 640 Height 480 " + family.second).split(' ');
            for (int at = 0; at + 1 < settings.size(); at += 2) {
                camera.SetFromCamera(settings[at].toStdString(), settings[at + 1].toLongLong());
            }
            camera.SetFromCamera("ExposureAuto", "Off");
            camera.SetFromCamera(camera.Has("ExposureTime") ? "ExposureTime" : "ExposureTimeAbs",
                                 5000.0);
            camera.SetFrameClock(false);
            camera.SetFrameHandler([&frame](const KST::TrkAPI::FramePtr& made) { frame = made; });
            camera.Find("AcquisitionStart")->RunCommand();
        });
        page.m_Widget.resize(600, 900);
        page.m_Widget.show();
        RunFor(300);
        QRubberBand* band = page.m_Widget.findChild<QRubberBand*>();
        ASSERT_NE(band, nullptr);
        QLabel* preview = qobject_cast<QLabel*>(band->parentWidget());
        const QSize size = images->TabImageSize(&page.m_Widget);
        ASSERT_FALSE(size.isEmpty());
        EXPECT_FALSE(Outline(preview, band).isValid());

        auto expectAgreement = [&]() {
            ASSERT_TRUE(page.m_Camera->ProduceFrame());
            const QImage image(frame->data.data(), frame->width, frame->height, int(frame->stride),
                               QImage::Format_Grayscale8);
            images->SetTabImage(&page.m_Widget,
                                image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation),
                                image.size());
            const QRect outline = Outline(preview, band);
            for (const QPoint& corner : {outline.topLeft() - band->geometry().topLeft(),
                                         outline.bottomRight() - band->geometry().bottomRight()}) {
                EXPECT_LE(qMax(std::abs(corner.x()), std::abs(corner.y())), 1);
            }
        };
        expectAgreement();
        // The camera takes the dropped region on its grid, and the band follows
        // at the next refresh.
        const QPoint from = band->geometry().center();
        SendMouse(preview, QEvent::MouseButtonPress, from);
        SendMouse(preview, QEvent::MouseMove, from + QPoint(30, 20));
        SendMouse(preview, QEvent::MouseButtonRelease, from + QPoint(30, 20));
        RunFor(1300);
        EXPECT_GE(band->geometry().center().x(), from.x() + 26);
        expectAgreement();
    }
}
