// The editor as the camera makes it: whether a camera gets the tab and under
// which name, the controls each family gets, how they are filled from
// in-memory cameras and what the exposure limits write, the red messages of
// a DSP region, the band's place and the preview rebuilt for a new image size.

#include "EditorTestSupport.h"
#include "SimFeatures.h"
#include "TabExtensionException.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QCheckBox>
#include <QComboBox>
#include <QPointer>

#include <gtest/gtest.h>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::CameraAccess;
using KST::TrkAPI::Sim::Op;

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
        try {
            new AutoROIWidget(MakeFeatureVector(camera), &page);
            EXPECT_FALSE(c.title.isEmpty()) << "accepted";
        } catch (const TENotSupported& refusal) {
            EXPECT_TRUE(c.title.isEmpty()) << "refused";
            EXPECT_EQ(refusal.m_Code, 4);
            EXPECT_EQ(refusal.m_Origin, "AutoROIWidget");
            EXPECT_EQ(refusal.m_Message, "camera does not support auto AOI, widget not created");
            EXPECT_TRUE(page.children().isEmpty());
        }
        EXPECT_EQ(page.accessibleName(), c.title);
    }

    std::unique_ptr<Camera> camera = KST::TrkAPI::Sim::MakeAutoModeCamera();
    AutoROIWidget orphan(MakeFeatureVector(*camera), nullptr);
    EXPECT_EQ(orphan.accessibleName(), "Autofunction ROI");
}

TEST(AutoROIWidget, EachFamilyGetsItsTitlesCaptionsAndEditablePair)
{
    struct Case
    {
        const char* camera;
        QString outerTitle, innerTitle, topCaption, leftCaption;
        // The one feature that the right and width spin boxes write between
        // them; the pair that doesn't write is disabled.
        const char* writtenByRightOrWidth;
    };
    const std::vector<Case> cases = {
        {"dsp", "Autofunction ROI", "DSPSubregion", "Top:", "Left:", "DSPSubregionRight"},
        {"autofunction", "Autofunction AOI", "Autofunction AOI",
         "OffsetY:", "OffsetX:", "AutofunctionAOIWidth"},
        {"automode", "AutoMode ROI", "AutoModeRegion",
         "OffsetY:", "OffsetX:", "AutoModeRegionWidth"},
    };
    for (const Case& c : cases) {
        EditorTab tab(KST::TrkAPI::Sim::MakeCamera(c.camera));
        SCOPED_TRACE(c.camera);
        EXPECT_EQ(tab.OuterGroup()->title(), c.outerTitle);
        EXPECT_EQ(tab.RegionGroup()->title(), c.innerTitle);
        EXPECT_EQ(tab.RegionCell<QLabel>(1, 1)->text(), c.topCaption);
        EXPECT_EQ(tab.RegionCell<QLabel>(1, 5)->text(), c.leftCaption);
        EXPECT_EQ(tab.OuterGroup()->maximumWidth(), 350);

        const bool edges = std::string(c.camera) == "dsp";
        EXPECT_EQ(tab.Right()->isEnabled(), edges);
        EXPECT_EQ(tab.Bottom()->isEnabled(), edges);
        EXPECT_EQ(tab.Width()->isEnabled(), !edges);
        EXPECT_EQ(tab.Height()->isEnabled(), !edges);
        const bool hasEnable = std::string(c.camera) == "autofunction";
        EXPECT_EQ(tab.RegionCell<QLabel>(0, 1) != nullptr, hasEnable);
        EXPECT_EQ(tab.RegionCell<QLabel>(0, 5) != nullptr, hasEnable);

        tab.camera->ResetCalls();
        tab.Right()->setValue(300);
        tab.Width()->setValue(300);
        EXPECT_EQ(tab.camera->Calls(c.writtenByRightOrWidth, Op::SetValue), 1);
        EXPECT_EQ(tab.camera->TotalCalls(Op::SetValue), 1);

        // Streaming locks an AutoMode region, from the next dispatch on.
        tab.Show();
        tab.widget->camIsStreaming(true);
        EXPECT_TRUE(tab.Left()->isEnabled());
        tab.Tick();
        EXPECT_EQ(tab.Left()->isEnabled(), std::string(c.camera) != "automode");
    }
}

TEST(AutoROIWidget, ExposureAutoGroupHoldsLimitsAndTimeBaseOrPlaceholders)
{
    EditorTab withTimebase(KST::TrkAPI::Sim::MakeAutofunctionCamera());
    QLabel* timebase = withTimebase.ExposureCell<QLabel>(1, 5);
    EXPECT_EQ(timebase->text(), "Timeb.:");
    EXPECT_EQ(timebase->toolTip(), "Timebase");

    // A fractional limit is rounded while the spin box has no decimals yet,
    // and a step below 1 is raised to 1.
    std::unique_ptr<Camera> camera = MakeTestCamera(Family::Autofunction);
    camera->SetFromCamera("ExposureAutoMin", 12.5);
    EditorTab plain(std::move(camera));
    EXPECT_EQ(plain.ExposureMin()->decimals(), 2);
    EXPECT_EQ(plain.ExposureMin()->value(), 13.0);
    EXPECT_EQ(plain.ExposureMin()->singleStep(), 1.0);
    EXPECT_EQ(plain.ExposureMax()->decimals(), 0);
    EXPECT_EQ(plain.ExposureMax()->value(), 50000.0);

    EXPECT_EQ(plain.ExposureCell<QLabel>(1, 5)->text(), "");
    QComboBox* placeholder = plain.ExposureCell<QComboBox>(1, 6);
    ASSERT_NE(placeholder, nullptr);
    EXPECT_TRUE(placeholder->isHidden());

    // Current takes the exposure time, once; a floating limit with decimals
    // goes over half a last decimal higher, through single precision.
    plain.camera->ResetCalls();
    plain.ExposureCell<QPushButton>(2, 4)->click();
    plain.ExposureCell<QPushButton>(2, 4)->click();
    EXPECT_EQ(plain.camera->IntValue("ExposureAutoMax"), 5000);
    EXPECT_EQ(plain.camera->Calls("ExposureAutoMax", Op::SetValue), 1);
    plain.ExposureMin()->setValue(12.5);
    EXPECT_NEAR(plain.camera->FloatValue("ExposureAutoMin"), 12.505, 1e-9);
}

TEST(AutoROIWidget, OffsetFamiliesLoadRangesStepsReferenceSizeAndBand)
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
    EditorTab tab(std::move(camera));

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
    EXPECT_EQ(tab.RegionCell<QCheckBox>(0, 2)->checkState(), Qt::Unchecked);
    EXPECT_FALSE(tab.Top()->isEnabled());
    EXPECT_FALSE(tab.Preview()->isEnabled());
    EXPECT_TRUE(tab.OuterGroup()->isEnabled());

    // An AutoMode region at 50 on the sensor, its image at 100: the band
    // starts before the picture, placed with rounding at the first show.
    camera = MakeTestCamera(Family::AutoMode);
    camera->SetFromCamera("AutoModeRegionOffsetX", 50);
    camera->SetFromCamera("AutoModeRegionWidth", 20);
    EditorTab autoMode(std::move(camera));
    autoMode.Show();
    const double scale = double(autoMode.Preview()->GetFittedWidth()) / 640.0;
    EXPECT_LT(autoMode.Band().left(), 0);
    EXPECT_NEAR(autoMode.Band().left(), scale * -50, 1.0);
    EXPECT_NEAR(autoMode.Band().width(), scale * 20, 1.0);
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
    EditorTab crossed(std::move(camera));

    EXPECT_EQ(crossed.VerticalMessage()->text(),
              "Invalid settings: Top > Bottom! Top > ROI Height! ");
    EXPECT_FALSE(crossed.VerticalMessage()->isHidden());
    EXPECT_EQ(crossed.HorizontalMessage()->text(), "Invalid settings: Right > ROI Width! ");
    // Beyond the image, the far edge raises its own limit to stay shown.
    EXPECT_EQ(crossed.Right()->maximum(), 1200.0);
    EXPECT_EQ(crossed.Top()->maximum(), 800.0);

    // The constructor set the invalid region to the whole image.
    EXPECT_EQ(crossed.Ints({"DSPSubregionTop", "DSPSubregionLeft", "DSPSubregionRight",
                            "DSPSubregionBottom"}),
              std::vector<long long>({0, 0, 1000, 800}));

    // No height is invalid too, though it gets no message; a region within
    // the image is left as the camera has it.
    for (long long bottom : {100LL, 500LL}) {
        camera = MakeTestCamera(Family::Dsp);
        camera->SetFromCamera("DSPSubregionBottom", bottom);
        EditorTab tab(std::move(camera));
        EXPECT_TRUE(tab.VerticalMessage()->isHidden());
        // The sizes are derived in this family and get no value from the camera.
        EXPECT_EQ(tab.Width()->value(), bottom == 100 ? 1000.0 : 0.0);
        EXPECT_EQ(tab.camera->IntValue("DSPSubregionBottom"), bottom == 100 ? 800 : 500);
    }
}

TEST(AutoROIWidget, PreviewIsRebuiltOnlyForANewReferenceSize)
{
    EditorTab tab(MakeTestCamera(Family::Autofunction));
    tab.Show();
    tab.Timer()->start();
    QPointer<RubberBandLabel> first = tab.Preview();
    QMetaObject::invokeMethod(first, "GeometryChangeStarted");
    EXPECT_FALSE(tab.Timer()->isActive());
    tab.Timer()->start();

    // A new range of the same image size keeps the preview.
    tab.camera->Change([](CameraAccess& access) { access.SetIntRange("Width", 8, 2000); });
    tab.Tick();
    EXPECT_EQ(tab.Preview(), first.data());

    tab.camera->SetFromCamera("Width", 640);
    tab.Tick();
    RubberBandLabel* rebuilt = tab.Preview();
    ASSERT_NE(rebuilt, first.data());

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
    EXPECT_TRUE(tab.Timer()->isActive());
}
