// The editor as the camera makes it: whether a camera gets the tab and under
// which name, the controls each family gets and how they are filled from
// in-memory cameras, the red messages of a DSP region, the band's place and
// the preview rebuilt for a new image size.

#include "AutoROIWidget.h"
#include "SimFeatures.h"
#include "TabExtensionException.h"
#include "rubberbandlabel.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QRubberBand>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::CameraAccess;
using KST::TrkAPI::Sim::Op;

namespace {

enum Family
{
    Dsp,
    Autofunction,
    AutoMode
};

// An image of 1000 x 800 with exposure limits and one region family.
std::unique_ptr<Camera> MakeCamera(Family family)
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 1000, 8, 1000);
    camera->AddInteger("Height", 800, 8, 800);
    camera->AddFloat("ExposureAutoMin", 100.0, 0.0, 100000.0);
    camera->AddInteger("ExposureAutoMax", 50000, 10, 100000);
    if (family == Dsp) {
        camera->AddInteger("DSPSubregionTop", 100, 0, 800);
        camera->AddInteger("DSPSubregionLeft", 100, 0, 1000);
        camera->AddInteger("DSPSubregionRight", 600, 0, 1000);
        camera->AddInteger("DSPSubregionBottom", 500, 0, 800);
    } else if (family == Autofunction) {
        camera->AddInteger("AutofunctionAOIOffsetX", 0, 0, 1000);
        camera->AddInteger("AutofunctionAOIOffsetY", 0, 0, 800);
        camera->AddInteger("AutofunctionAOIWidth", 500, 16, 1000);
        camera->AddInteger("AutofunctionAOIHeight", 400, 16, 800);
        camera->AddBool("AutofunctionAOIEnable", true);
        camera->AddBool("AutofunctionAOIShowArea", false);
    } else {
        camera->AddInteger("OffsetX", 100, 0, 2000);
        camera->AddInteger("OffsetY", 0, 0, 2000);
        camera->AddInteger("AutoModeRegionOffsetX", 50, 0, 2000);
        camera->AddInteger("AutoModeRegionOffsetY", 0, 0, 2000);
        camera->AddInteger("AutoModeRegionWidth", 20, 16, 2000);
        camera->AddInteger("AutoModeRegionHeight", 400, 16, 2000);
    }
    return camera;
}

// A host page with the editor in it, and the editor's controls by their
// place in the form.
struct Tab
{
    explicit Tab(std::unique_ptr<Camera> made) : camera(std::move(made))
    {
        editor = new AutoROIWidget(MakeFeatureVector(*camera), &page);
    }

    QGridLayout* RegionGrid()
    {
        for (QGroupBox* group : editor->findChildren<QGroupBox*>()) {
            if (group->objectName().isEmpty())
                return static_cast<QGridLayout*>(group->layout());
        }
        return nullptr;
    }

    template <typename T>
    T* At(QGridLayout* grid, int row, int column)
    {
        QLayoutItem* item = grid->itemAtPosition(row, column);
        return item ? qobject_cast<T*>(item->widget()) : nullptr;
    }

    QDoubleSpinBox* Spin(int row, int column)
    {
        return At<QDoubleSpinBox>(RegionGrid(), row, column);
    }
    QDoubleSpinBox* Top() { return Spin(1, 2); }
    QDoubleSpinBox* Left() { return Spin(1, 6); }
    QDoubleSpinBox* Bottom() { return Spin(2, 2); }
    QDoubleSpinBox* Right() { return Spin(2, 6); }
    QDoubleSpinBox* Height() { return Spin(3, 2); }
    QDoubleSpinBox* Width() { return Spin(3, 6); }
    QString Text(int row, int column) { return At<QLabel>(RegionGrid(), row, column)->text(); }
    QGroupBox* Group(const char* name) { return editor->findChild<QGroupBox*>(name); }
    RubberBandLabel* Preview()
    {
        return At<RubberBandLabel>(editor->findChild<QGridLayout*>("grid_AutoROI"), 0, 0);
    }

    // Delivers what the camera has notified and runs one tick of the tab.
    void Tick()
    {
        camera->WaitForNotifications();
        QCoreApplication::processEvents();
        QMetaObject::invokeMethod(editor, "updateTimer");
    }

    std::unique_ptr<Camera> camera;
    QWidget page;
    AutoROIWidget* editor;
};

} // namespace

TEST(AutoROIWidget, AcceptsTheThreeFamiliesUnderTheirNamesAndRefusesOthers)
{
    struct Case
    {
        std::vector<std::string> names;
        QString title;
    };
    const std::vector<Case> cases = {
        {{"DSPSubregionLeft"}, "Autofunction ROI"},
        {{"AutoModeRegionHeight"}, "Autofunction ROI"},
        {{"AutofunctionAOIOffsetX"}, "Autofunction AOI"},
        {{"DSPSubregionLeft", "AutofunctionAOIOffsetX"}, "Autofunction AOI"},
        {{"DSPSubregionTop"}, QString()},
        {{"AutoModeRegionWidth", "AutofunctionAOIWidth"}, QString()},
    };
    for (const Case& c : cases) {
        Camera camera;
        camera.AddInteger("Width", 640, 8, 640);
        camera.AddInteger("Height", 480, 8, 480);
        for (const std::string& name : c.names)
            camera.AddInteger(name, 0, 0, 640);
        QWidget page;
        page.setAccessibleName("before");
        SCOPED_TRACE(c.names.front());
        if (c.title.isEmpty()) {
            try {
                new AutoROIWidget(MakeFeatureVector(camera), &page);
                ADD_FAILURE() << "accepted";
            } catch (const TENotSupported& refusal) {
                EXPECT_EQ(refusal.m_Code, 4);
                EXPECT_EQ(refusal.m_Origin, "AutoROIWidget");
                EXPECT_EQ(refusal.m_Message,
                          "camera does not support auto AOI, widget not created");
            }
            EXPECT_EQ(page.accessibleName(), "");
            EXPECT_TRUE(page.children().isEmpty());
        } else {
            AutoROIWidget* editor = new AutoROIWidget(MakeFeatureVector(camera), &page);
            EXPECT_EQ(page.accessibleName(), c.title);
            EXPECT_EQ(editor->accessibleName(), c.title);
        }
    }

    std::unique_ptr<Camera> camera = MakeCamera(AutoMode);
    AutoROIWidget orphan(MakeFeatureVector(*camera), nullptr);
    EXPECT_EQ(orphan.accessibleName(), "Autofunction ROI");
}

TEST(AutoROIWidget, EachFamilyGetsItsTitlesCaptionsAndEditablePair)
{
    struct Case
    {
        Family family;
        QString outerTitle, innerTitle, topCaption, leftCaption;
        // The spin boxes that write to the camera; the other pair is disabled.
        bool edgesEdited;
        const char* width;
    };
    const std::vector<Case> cases = {
        {Dsp, "Autofunction ROI", "DSPSubregion", "Top:", "Left:", true, nullptr},
        {Autofunction, "Autofunction AOI", "Autofunction AOI", "OffsetY:", "OffsetX:", false,
         "AutofunctionAOIWidth"},
        {AutoMode, "AutoMode ROI", "AutoModeRegion", "OffsetY:", "OffsetX:", false,
         "AutoModeRegionWidth"},
    };
    for (const Case& c : cases) {
        Tab tab(MakeCamera(c.family));
        SCOPED_TRACE(c.innerTitle.toStdString());
        EXPECT_EQ(tab.Group("gb_AutoROI")->title(), c.outerTitle);
        EXPECT_EQ(tab.RegionGrid()->parentWidget()->property("title").toString(), c.innerTitle);
        EXPECT_EQ(tab.Text(1, 1), c.topCaption);
        EXPECT_EQ(tab.Text(1, 5), c.leftCaption);
        EXPECT_EQ(tab.Group("gb_AutoROI")->maximumWidth(), 350);

        EXPECT_EQ(tab.Right()->isEnabled(), c.edgesEdited);
        EXPECT_EQ(tab.Bottom()->isEnabled(), c.edgesEdited);
        EXPECT_EQ(tab.Width()->isEnabled(), !c.edgesEdited);
        EXPECT_EQ(tab.Height()->isEnabled(), !c.edgesEdited);
        const bool hasEnable = c.family == Autofunction;
        EXPECT_EQ(tab.At<QLabel>(tab.RegionGrid(), 0, 1) != nullptr, hasEnable);
        EXPECT_EQ(tab.At<QLabel>(tab.RegionGrid(), 0, 5) != nullptr, hasEnable);

        // Only the edited pair is connected: the disabled one writes nothing.
        tab.camera->ResetCalls();
        tab.Right()->setValue(300);
        tab.Width()->setValue(300);
        EXPECT_EQ(tab.camera->Calls(c.edgesEdited ? "DSPSubregionRight" : c.width, Op::SetValue),
                  1);
        EXPECT_EQ(tab.camera->TotalCalls(Op::SetValue), 1);
    }
}

TEST(AutoROIWidget, ExposureAutoGroupHoldsLimitsAndTimeBaseOrPlaceholders)
{
    std::unique_ptr<Camera> camera = MakeCamera(Dsp);
    camera->AddEnum("ExposureAutoTimebase", {"1us", "10us", "100us"}, "10us");
    Tab withTimebase(std::move(camera));
    QGridLayout* grid = withTimebase.editor->findChild<QGridLayout*>("grid_ImageFormat");
    QLabel* timebase = withTimebase.At<QLabel>(grid, 1, 5);
    EXPECT_EQ(timebase->text(), "Timeb.:");
    EXPECT_EQ(timebase->toolTip(), "Timebase");
    QComboBox* combo = withTimebase.At<QComboBox>(grid, 1, 6);
    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->currentText(), "10us");

    // A fractional limit is rounded while the spin box has no decimals yet,
    // and a step below 1 is raised to 1.
    camera = MakeCamera(Autofunction);
    camera->Change([](CameraAccess& access) { access.SetFloat("ExposureAutoMin", 12.5); });
    Tab plain(std::move(camera));
    grid = plain.editor->findChild<QGridLayout*>("grid_ImageFormat");
    QDoubleSpinBox* minimum = plain.At<QDoubleSpinBox>(grid, 1, 2);
    EXPECT_EQ(minimum->decimals(), 2);
    EXPECT_EQ(minimum->value(), 13.0);
    EXPECT_EQ(minimum->singleStep(), 1.0);
    QDoubleSpinBox* maximum = plain.At<QDoubleSpinBox>(grid, 2, 2);
    EXPECT_EQ(maximum->decimals(), 0);
    EXPECT_EQ(maximum->maximum(), 100000.0);
    EXPECT_EQ(maximum->value(), 50000.0);

    EXPECT_EQ(plain.At<QLabel>(grid, 1, 5)->text(), "");
    QComboBox* placeholder = plain.At<QComboBox>(grid, 1, 6);
    ASSERT_NE(placeholder, nullptr);
    EXPECT_TRUE(placeholder->isHidden());
}

TEST(AutoROIWidget, OffsetFamiliesLoadRangesStepsAndStepGridReferenceSize)
{
    // The reference width counts from the minimum Y offset, the height from
    // the minimum X offset and off its step's grid from the image's minimum.
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 1000, 8, 1000);
    camera->AddInteger("Height", 802, 2, 802);
    camera->AddInteger("AutofunctionAOIOffsetX", 6, 6, 1000, 2);
    camera->AddInteger("AutofunctionAOIOffsetY", 200, 3, 800, 1);
    camera->AddInteger("AutofunctionAOIWidth", 500, 16, 1000, 8);
    camera->AddInteger("AutofunctionAOIHeight", 300, 16, 800, 4);
    camera->AddBool("AutofunctionAOIEnable", false);
    Tab tab(std::move(camera));

    EXPECT_EQ(tab.Width()->maximum(), 1003.0);
    EXPECT_EQ(tab.Height()->maximum(), 806.0);
    EXPECT_EQ(tab.Width()->singleStep(), 8.0);
    EXPECT_EQ(tab.Height()->value(), 300.0);
    EXPECT_EQ(tab.Top()->value(), 200.0);
    EXPECT_EQ(tab.Left()->singleStep(), 2.0);
    // Bottom and right add the offset's minimum, not its value.
    EXPECT_EQ(tab.Bottom()->value(), 303.0);
    EXPECT_EQ(tab.Right()->value(), 506.0);
    EXPECT_EQ(tab.Bottom()->maximum(), 806.0 + 800.0);

    // The region is off: its controls are, while the group stays usable.
    EXPECT_EQ(tab.At<QCheckBox>(tab.RegionGrid(), 0, 2)->checkState(), Qt::Unchecked);
    EXPECT_FALSE(tab.Top()->isEnabled());
    EXPECT_FALSE(tab.Preview()->isEnabled());
    EXPECT_TRUE(tab.Group("gb_AutoROI")->isEnabled());
}

TEST(AutoROIWidget, DspRegionShowsRedMessagesAndIsRepairedWhenInvalid)
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 1000, 8, 1000);
    camera->AddInteger("Height", 800, 8, 800);
    camera->AddInteger("DSPSubregionTop", 900, 0, 2000);
    camera->AddInteger("DSPSubregionLeft", 10, 0, 2000);
    camera->AddInteger("DSPSubregionRight", 1200, 0, 2000);
    camera->AddInteger("DSPSubregionBottom", 100, 0, 2000);
    Tab crossed(std::move(camera));

    QLabel* vertical = crossed.At<QLabel>(crossed.RegionGrid(), 4, 1);
    QLabel* horizontal = crossed.At<QLabel>(crossed.RegionGrid(), 5, 1);
    EXPECT_EQ(vertical->text(), "Invalid settings: Top > Bottom! Top > ROI Height! ");
    EXPECT_FALSE(vertical->isHidden());
    EXPECT_EQ(horizontal->text(), "Invalid settings: Right > ROI Width! ");
    EXPECT_FALSE(horizontal->isHidden());
    // Beyond the image, the far edge raises its own limit to stay shown.
    EXPECT_EQ(crossed.Right()->maximum(), 1200.0);
    EXPECT_EQ(crossed.Top()->maximum(), 800.0);

    // The constructor set the invalid region to the whole image.
    EXPECT_EQ(crossed.camera->IntValue("DSPSubregionTop"), 0);
    EXPECT_EQ(crossed.camera->IntValue("DSPSubregionLeft"), 0);
    EXPECT_EQ(crossed.camera->IntValue("DSPSubregionRight"), 1000);
    EXPECT_EQ(crossed.camera->IntValue("DSPSubregionBottom"), 800);

    // No height is invalid too, though it gets no message; a region within
    // the image is left as the camera has it.
    for (long long bottom : {100LL, 500LL}) {
        camera = MakeCamera(Dsp);
        camera->SetFromCamera("DSPSubregionBottom", bottom);
        Tab tab(std::move(camera));
        EXPECT_TRUE(tab.At<QLabel>(tab.RegionGrid(), 4, 1)->isHidden());
        // The sizes are derived in this family and get no value from the camera.
        EXPECT_EQ(tab.Width()->value(), bottom == 100 ? 1000.0 : 0.0);
        EXPECT_EQ(tab.camera->IntValue("DSPSubregionBottom"), bottom == 100 ? 800 : 500);
        EXPECT_EQ(tab.camera->IntValue("DSPSubregionTop"), bottom == 100 ? 0 : 100);
    }
}

TEST(AutoROIWidget, BandStandsRelativeToTheImageOffset)
{
    // Region at 50 on the sensor, image at 100: the band starts before the picture.
    Tab tab(MakeCamera(AutoMode));
    tab.page.resize(600, 900);
    tab.page.show();
    QRubberBand* band = tab.Preview()->findChild<QRubberBand*>();
    ASSERT_NE(band, nullptr);
    const double scale = double(tab.Preview()->GetFittedWidth()) / 1000.0;
    // Placed with rounding at the first show and truncated after a resize.
    EXPECT_LT(band->geometry().left(), 0);
    EXPECT_NEAR(band->geometry().left(), scale * -50, 1.0);
    EXPECT_NEAR(band->geometry().width(), scale * 20, 1.0);
}

TEST(AutoROIWidget, PreviewIsRebuiltOnlyForANewReferenceSize)
{
    Tab tab(MakeCamera(Autofunction));
    tab.page.show();
    QTimer* tick = tab.editor->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    QPointer<RubberBandLabel> first = tab.Preview();
    QMetaObject::invokeMethod(first, "GeometryChangeStarted");
    EXPECT_FALSE(tick->isActive());
    tick->start();

    // A new range of the same image size keeps the preview.
    tab.camera->Change([](CameraAccess& access) { access.SetIntRange("Width", 8, 2000); });
    tab.Tick();
    EXPECT_EQ(tab.Preview(), first.data());

    tab.camera->SetFromCamera("Width", 640);
    tab.Tick();
    RubberBandLabel* rebuilt = tab.Preview();
    ASSERT_NE(rebuilt, first.data());
    EXPECT_EQ(tab.Width()->maximum(), 640.0);

    // The old label is out of the way at once and freed later; it reports
    // nothing any more, and the new one no longer reports a drag's start.
    if (first) {
        EXPECT_TRUE(first->isHidden());
        tab.camera->ResetCalls();
        QMetaObject::invokeMethod(first, "SendGeometry", Q_ARG(int, 0), Q_ARG(int, 0),
                                  Q_ARG(int, 100), Q_ARG(int, 100));
        EXPECT_EQ(tab.camera->TotalCalls(Op::SetValue), 0);
    }
    QMetaObject::invokeMethod(rebuilt, "GeometryChangeStarted");
    EXPECT_TRUE(tick->isActive());
}
