// The editor between user and camera: what user edits, drags and presets
// write to in-memory cameras, and what camera changes show once the tab's
// tick has run, with notifications coming from the camera's own thread.

#include "AutoROIWidget.h"
#include "SimFeatures.h"
#include "rubberbandlabel.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMouseEvent>
#include <QRubberBand>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::CameraAccess;
using KST::TrkAPI::Sim::Op;

namespace {

typedef std::vector<std::string> ChangeLog;

void AddExposure(Camera& camera)
{
    camera.AddFloat("ExposureAutoMin", 100.0, 0.0, 1000000.0, 0.001);
    camera.AddInteger("ExposureAutoMax", 50000, 10, 1000000);
    camera.AddFloat("ExposureTime", 5000.0, 10.0, 1000000.0);
}

// Records the order in which the camera takes new values for names.
std::shared_ptr<ChangeLog> LogChanges(Camera& camera, const std::vector<std::string>& names)
{
    auto log = std::make_shared<ChangeLog>();
    auto last = std::make_shared<std::map<std::string, long long>>();
    camera.AddRule([=](CameraAccess& access) {
        for (const std::string& name : names) {
            const long long value = access.Int(name);
            if (last->count(name) && last->at(name) != value)
                log->push_back(name);
            (*last)[name] = value;
        }
    });
    return log;
}

// Image 1000 x 800, region 500 x 400 at the origin, on grids of 4 and 2.
std::unique_ptr<Camera> MakeAutofunctionCamera()
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 1000, 8, 1000, 4);
    camera->AddInteger("Height", 800, 8, 800, 2);
    camera->AddInteger("AutofunctionAOIOffsetX", 0, 0, 1000, 4);
    camera->AddInteger("AutofunctionAOIOffsetY", 0, 0, 800, 2);
    camera->AddInteger("AutofunctionAOIWidth", 500, 16, 1000, 4);
    camera->AddInteger("AutofunctionAOIHeight", 400, 16, 800, 2);
    camera->AddBool("AutofunctionAOIEnable", true);
    camera->AddBool("AutofunctionAOIShowArea", false);
    AddExposure(*camera);
    return camera;
}

// Image 640 x 480 at 100, 50 of the sensor; the region counts on the sensor.
std::unique_ptr<Camera> MakeAutoModeCamera()
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 640, 8, 2000);
    camera->AddInteger("Height", 480, 8, 2000);
    camera->AddInteger("OffsetX", 100, 0, 2000);
    camera->AddInteger("OffsetY", 50, 0, 2000);
    camera->AddInteger("AutoModeRegionOffsetX", 100, 0, 2000);
    camera->AddInteger("AutoModeRegionOffsetY", 50, 0, 2000);
    camera->AddInteger("AutoModeRegionWidth", 640, 16, 2000);
    camera->AddInteger("AutoModeRegionHeight", 480, 16, 2000);
    AddExposure(*camera);
    return camera;
}

// Image 1000 x 800, region from 100, 100 to 600, 500.
std::unique_ptr<Camera> MakeDspCamera()
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 1000, 8, 1000);
    camera->AddInteger("Height", 800, 8, 800);
    camera->AddInteger("DSPSubregionTop", 100, 0, 800);
    camera->AddInteger("DSPSubregionLeft", 100, 0, 1000);
    camera->AddInteger("DSPSubregionRight", 600, 0, 1000);
    camera->AddInteger("DSPSubregionBottom", 500, 0, 800);
    AddExposure(*camera);
    return camera;
}

template <typename Predicate>
bool WaitFor(Predicate done, int milliseconds = 3000)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > milliseconds)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}

// Cells of the region grid and of the exposure grid, as the form lays them out.
enum RegionCell
{
    Top,
    Left,
    Bottom,
    Right,
    Height,
    Width,
    ErrorVertical,
    ErrorHorizontal,
    Full,
    Half,
    Quarter
};

// An editor over a camera, with the tab's own tick stopped after its first
// run, so that each test decides when the dispatch runs.
struct Editor
{
    explicit Editor(std::unique_ptr<Camera> made, bool show = true)
        : camera(std::move(made)), widget(MakeFeatureVector(*camera), nullptr)
    {
        if (show) {
            widget.show();
            widget.findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly)->stop();
        }
        // What loading wrote back has been notified; take it in.
        Tick();
    }

    template <typename T = QDoubleSpinBox>
    T* Cell(RegionCell cell)
    {
        static const int position[][2] = {{1, 2}, {1, 6}, {2, 2}, {2, 6}, {3, 2}, {3, 6},
                                          {4, 1}, {5, 1}, {6, 2}, {6, 3}, {6, 6}};
        for (QGroupBox* group : widget.findChildren<QGroupBox*>()) {
            if (group->objectName().isEmpty()) {
                QLayoutItem* item = static_cast<QGridLayout*>(group->layout())
                                        ->itemAtPosition(position[cell][0], position[cell][1]);
                return qobject_cast<T*>(item->widget());
            }
        }
        return nullptr;
    }

    template <typename T>
    T* Exposure(int row, int column)
    {
        QGridLayout* grid = widget.findChild<QGridLayout*>("grid_ImageFormat");
        return qobject_cast<T*>(grid->itemAtPosition(row, column)->widget());
    }

    // Delivers what the camera has notified, then runs one tick.
    void Tick()
    {
        camera->WaitForNotifications();
        QCoreApplication::processEvents();
        QMetaObject::invokeMethod(&widget, "updateTimer");
    }

    void Mouse(QEvent::Type type, const QPoint& position)
    {
        RubberBandLabel* label = widget.findChild<RubberBandLabel*>();
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons held =
            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, position, button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(label, &event);
    }

    QRect Band()
    {
        return widget.findChild<RubberBandLabel*>()->findChild<QRubberBand*>()->geometry();
    }

    std::unique_ptr<Camera> camera;
    AutoROIWidget widget;
};

} // namespace

TEST(AutoROIWidgetDispatch, TypedValueReachesCameraOnItsGridAndCameraAnswersShow)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;
    QDoubleSpinBox* left = editor.Cell(Left);

    left->setValue(102);
    emit left->editingFinished();
    EXPECT_EQ(camera.IntValue("AutofunctionAOIOffsetX"), 100);
    ASSERT_TRUE(WaitFor([&] { return left->value() == 100; }, 1000));
    // A new offset leaves the width room up to the image's edge.
    EXPECT_EQ(editor.Cell(Width)->maximum(), 900);

    camera.ResetCalls();
    camera.SetFromCamera("AutofunctionAOIHeight", 300);
    camera.SetFromCamera("ExposureAutoMax", 70000);
    editor.Tick();
    EXPECT_EQ(editor.Cell(Height)->value(), 300);
    EXPECT_EQ(editor.Exposure<QDoubleSpinBox>(2, 2)->value(), 70000);
    // Showing what the camera has writes nothing back.
    EXPECT_EQ(camera.TotalCalls(Op::SetValue), 0);
}

TEST(AutoROIWidgetDispatch, DragFollowsInSpinBoxesAndWritesOnceAtRelease)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;
    auto log = LogChanges(camera, {"AutofunctionAOIOffsetX", "AutofunctionAOIOffsetY",
                                   "AutofunctionAOIWidth", "AutofunctionAOIHeight"});
    ASSERT_TRUE(WaitFor([&] { return editor.Band().width() > 20; }));
    // Let the preview's placement after its first resize pass.
    WaitFor([] { return false; }, 300);
    camera.ResetCalls();

    const QPoint start = editor.Band().center();
    editor.Mouse(QEvent::MouseButtonPress, start);
    editor.Mouse(QEvent::MouseMove, start + QPoint(15, 10));
    editor.Mouse(QEvent::MouseMove, start + QPoint(31, 21));
    const int draggedLeft = int(editor.Cell(Left)->value());
    const double draggedWidth = editor.Cell(Width)->value();
    EXPECT_GT(draggedLeft, 0);
    EXPECT_GT(editor.Cell(Top)->value(), 0);

    // While the band is held, the camera neither is written nor moves it.
    camera.SetFromCamera("AutofunctionAOIWidth", 300);
    editor.Tick();
    EXPECT_EQ(editor.Cell(Width)->value(), draggedWidth);
    EXPECT_EQ(camera.TotalCalls(Op::SetValue), 0);

    log->clear();
    editor.Mouse(QEvent::MouseButtonRelease, start + QPoint(31, 21));
    const long long offsetX = camera.IntValue("AutofunctionAOIOffsetX");
    EXPECT_EQ(offsetX % 4, 0);
    EXPECT_GE(offsetX, draggedLeft);
    EXPECT_LT(offsetX, draggedLeft + 4);
    EXPECT_NEAR(camera.IntValue("AutofunctionAOIWidth"), draggedWidth, 4);
    // Offsets first, sizes last; the height only if the drag changed it.
    ASSERT_GE(log->size(), 3u);
    EXPECT_EQ(log->at(0), "AutofunctionAOIOffsetX");
    EXPECT_EQ(log->at(1), "AutofunctionAOIOffsetY");
    EXPECT_EQ(log->back(), "AutofunctionAOIWidth");
}

TEST(AutoROIWidgetDispatch, DspDragTowardsLargerValuesMovesFarEdgesFirst)
{
    Editor editor(MakeDspCamera());
    Camera& camera = *editor.camera;
    auto log = LogChanges(
        camera, {"DSPSubregionTop", "DSPSubregionLeft", "DSPSubregionRight", "DSPSubregionBottom"});
    ASSERT_TRUE(WaitFor([&] { return editor.Band().width() > 20; }));
    WaitFor([] { return false; }, 300);

    const QPoint start = editor.Band().center();
    editor.Mouse(QEvent::MouseButtonPress, start);
    editor.Mouse(QEvent::MouseMove, start + QPoint(20, 20));
    editor.Mouse(QEvent::MouseButtonRelease, start + QPoint(20, 20));

    EXPECT_EQ(*log, ChangeLog({"DSPSubregionRight", "DSPSubregionLeft", "DSPSubregionBottom",
                               "DSPSubregionTop"}));
    EXPECT_NEAR(camera.IntValue("DSPSubregionRight") - camera.IntValue("DSPSubregionLeft"), 500, 4);
}

TEST(AutoROIWidgetDispatch, PresetsCentreAShareOfTheImage)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;
    auto region = [&] {
        return std::vector<long long>{
            camera.IntValue("AutofunctionAOIOffsetX"), camera.IntValue("AutofunctionAOIOffsetY"),
            camera.IntValue("AutofunctionAOIWidth"), camera.IntValue("AutofunctionAOIHeight")};
    };
    editor.Cell<QAbstractButton>(Half)->click();
    EXPECT_EQ(region(), std::vector<long long>({248, 200, 500, 400}));
    editor.Cell<QAbstractButton>(Quarter)->click();
    EXPECT_EQ(region(), std::vector<long long>({372, 300, 248, 200}));
    editor.Cell<QAbstractButton>(Full)->click();
    EXPECT_EQ(region(), std::vector<long long>({0, 0, 1000, 800}));

    // Four edges: the right and bottom edges carry the size.
    Editor dsp(MakeDspCamera());
    dsp.Cell<QAbstractButton>(Half)->click();
    EXPECT_EQ(dsp.camera->IntValue("DSPSubregionLeft"), 250);
    EXPECT_EQ(dsp.camera->IntValue("DSPSubregionRight"), 750);
    EXPECT_EQ(dsp.camera->IntValue("DSPSubregionTop"), 200);
    EXPECT_EQ(dsp.camera->IntValue("DSPSubregionBottom"), 600);

    // Sensor coordinates: the image's own offset is added.
    Editor autoMode(MakeAutoModeCamera());
    autoMode.Cell<QAbstractButton>(Half)->click();
    EXPECT_EQ(autoMode.camera->IntValue("AutoModeRegionOffsetX"), 260);
    EXPECT_EQ(autoMode.camera->IntValue("AutoModeRegionOffsetY"), 170);
    EXPECT_EQ(autoMode.camera->IntValue("AutoModeRegionWidth"), 320);
}

TEST(AutoROIWidgetDispatch, RegionPastTheImageIsReportedAndSwitchedOffOnlyWhenVisible)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;
    QLabel* message = editor.Cell<QLabel>(ErrorHorizontal);

    camera.SetFromCamera("AutofunctionAOIOffsetX", 500);
    editor.Tick();
    EXPECT_TRUE(message->isHidden());
    EXPECT_TRUE(camera.BoolValue("AutofunctionAOIEnable"));

    camera.SetFromCamera("AutofunctionAOIOffsetX", 504);
    editor.Tick();
    EXPECT_FALSE(message->isHidden());
    EXPECT_EQ(message->text(), "Invalid settings: Width + OffsetX > AOI Width");
    EXPECT_FALSE(camera.BoolValue("AutofunctionAOIEnable"));

    // The four-edge family is only told, with every reason in one line and
    // the camera's value rather than the clamped spin box.
    Editor dsp(MakeDspCamera());
    dsp.camera->ResetCalls();
    dsp.camera->SetFromCamera("DSPSubregionTop", 900);
    dsp.Tick();
    EXPECT_EQ(dsp.Cell<QLabel>(ErrorVertical)->text(),
              "Invalid settings: Top > Bottom! Top > ROI Height! ");
    EXPECT_FALSE(dsp.Cell<QLabel>(ErrorVertical)->isHidden());
    EXPECT_EQ(dsp.Cell(Height)->value(), 0);
    EXPECT_EQ(dsp.camera->TotalCalls(Op::SetValue), 0);

    Editor hidden(MakeAutofunctionCamera(), false);
    hidden.camera->SetFromCamera("AutofunctionAOIWidth", 1000);
    hidden.camera->SetFromCamera("AutofunctionAOIOffsetY", 600);
    hidden.Tick();
    EXPECT_EQ(hidden.Cell<QLabel>(ErrorVertical)->text(),
              "Invalid settings: Height + OffsetY > AOI Height");
    EXPECT_TRUE(hidden.camera->BoolValue("AutofunctionAOIEnable"));
}

TEST(AutoROIWidgetDispatch, SwitchOffInsideTheDispatchLosesNoQueuedChange)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;

    camera.SetFromCamera("AutofunctionAOIOffsetX", 800);
    camera.WaitForNotifications();
    QCoreApplication::processEvents();
    // Waiting in the queue when the dispatch switches the region off: a
    // camera change and a due early tick.
    camera.SetFromCamera("ExposureAutoMax", 60000);
    camera.WaitForNotifications();
    QTimer::singleShot(0, &editor.widget, SLOT(updateTimer()));

    QMetaObject::invokeMethod(&editor.widget, "updateTimer");
    EXPECT_FALSE(camera.BoolValue("AutofunctionAOIEnable"));
    QDoubleSpinBox* max = editor.Exposure<QDoubleSpinBox>(2, 2);
    EXPECT_TRUE(WaitFor([&] {
        editor.Tick();
        return max->value() == 60000;
    }));
}

TEST(AutoROIWidgetDispatch, StreamingDisablesAutoModeControlsOneDispatchLate)
{
    Editor autoMode(MakeAutoModeCamera());
    QDoubleSpinBox* left = autoMode.Cell(Left);
    autoMode.widget.camIsStreaming(true);
    EXPECT_TRUE(left->isEnabled());
    autoMode.Tick();
    EXPECT_FALSE(left->isEnabled());
    autoMode.widget.camIsStreaming(false);
    EXPECT_FALSE(left->isEnabled());
    autoMode.Tick();
    EXPECT_TRUE(left->isEnabled());

    Editor autofunction(MakeAutofunctionCamera());
    autofunction.widget.camIsStreaming(true);
    autofunction.Tick();
    EXPECT_TRUE(autofunction.Cell(Left)->isEnabled());
}

TEST(AutoROIWidgetDispatch, ExposureLimitsFromCurrentButtonsAndTypedValues)
{
    Editor editor(MakeAutofunctionCamera());
    Camera& camera = *editor.camera;
    camera.ResetCalls();

    editor.Exposure<QAbstractButton>(2, 4)->click();
    EXPECT_EQ(camera.IntValue("ExposureAutoMax"), 5000);
    editor.Exposure<QAbstractButton>(2, 4)->click();
    EXPECT_EQ(camera.Calls("ExposureAutoMax", Op::SetValue), 1);

    // A floating limit with decimals goes over half a last decimal higher,
    // through single precision.
    editor.Exposure<QDoubleSpinBox>(1, 2)->setValue(12.5);
    EXPECT_NEAR(camera.FloatValue("ExposureAutoMin"), 12.505, 1e-9);
}

namespace {

void PrintMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

TEST(AutoROIWidgetDispatchDeathTest, UnreadableRangeEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            Editor editor(MakeAutofunctionCamera());
            qInstallMessageHandler(PrintMessage);
            editor.camera->SetFailure("AutofunctionAOIWidth", Op::GetRange);
            editor.camera->SetFromCamera("AutofunctionAOIWidth", 300);
            editor.Tick();
        },
        "featureMin >= 0.0 && featureMin <= featureMax");
}
