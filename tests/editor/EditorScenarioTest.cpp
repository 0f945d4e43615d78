// The editor's scenarios over every camera backend, which describe the same
// features: what the tab shows and writes must not depend on the backend.

#include "EditorTestSupport.h"
#include "ServedCamera.h"
#include "TabExtensionException.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>
#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QComboBox>

#include <gtest/gtest.h>

namespace {

class EditorScenario : public ::testing::TestWithParam<const char*>
{
protected:
    // The camera of a family ("autofunction", "automode", "dsp",
    // "unsupported") in the tab: in memory, a description simulated
    // in-process, or one served by tabcamera over GigE Vision on loopback.
    std::unique_ptr<EditorTab> Open(const std::string& family)
    {
        if (std::string(GetParam()) == "InMemory") {
            return std::unique_ptr<EditorTab>(new EditorTab(KST::TrkAPI::Sim::MakeCamera(family)));
        }
        using KST::TrkAPI::GenICam::Camera;
        std::string error;
        std::unique_ptr<Camera> camera;
        if (std::string(GetParam()) == "GenICam") {
            camera = Camera::OpenDescription(std::string(TAB_CAMERAS_DIR) + "/" + family + ".xml",
                                             &error);
        } else {
            // One server at a time: a camera opened before is lost.
            m_Server.reset();
            m_Server.reset(new ServedCamera(TAB_CAMERA_SERVER, FamilyArguments(family)));
            camera = m_Server->Open(&error);
        }
        if (!camera) {
            ADD_FAILURE() << error;
            return nullptr;
        }
        Camera* opened = camera.get();
        return std::unique_ptr<EditorTab>(
            new EditorTab(std::move(camera), [opened] { opened->WaitForNotifications(); }));
    }

    // A change made on the camera's side, not through the tab.
    static void SetFromCamera(EditorTab& tab, const std::string& name, long long value)
    {
        ASSERT_EQ(tab.device->Find(name)->SetValue(value), 0) << name;
    }

    // Outlives the tab over its camera.
    std::unique_ptr<ServedCamera> m_Server;
};

} // namespace

TEST_P(EditorScenario, EachFamilyLoadsItsRegionAndExposureLimits)
{
    std::unique_ptr<EditorTab> dsp = Open("dsp");
    ASSERT_TRUE(dsp);
    EXPECT_EQ(dsp->RegionGroup()->title(), "DSPSubregion");
    EXPECT_EQ(std::vector<double>({dsp->Top()->value(), dsp->Left()->value(), dsp->Right()->value(),
                                   dsp->Bottom()->value()}),
              std::vector<double>({486, 648, 1944, 1458}));
    EXPECT_TRUE(dsp->VerticalMessage()->isHidden());
    EXPECT_EQ(dsp->ExposureMax()->value(), 500000.0);

    std::unique_ptr<EditorTab> autofunction = Open("autofunction");
    EXPECT_EQ(autofunction->OuterGroup()->title(), "Autofunction AOI");
    EXPECT_EQ(
        std::vector<double>({autofunction->Top()->value(), autofunction->Left()->value(),
                             autofunction->Width()->value(), autofunction->Height()->value()}),
        std::vector<double>({486, 648, 1296, 972}));
    EXPECT_EQ(autofunction->Width()->singleStep(), 4.0);
    // The finest time base can't be chosen.
    QComboBox* timebase = autofunction->ExposureCell<QComboBox>(1, 6);
    EXPECT_EQ(timebase->count(), 3);
    EXPECT_EQ(timebase->currentText(), "10us");
    EXPECT_EQ(autofunction->ExposureMin()->value(), 10.0);

    std::unique_ptr<EditorTab> autoMode = Open("automode");
    EXPECT_EQ(autoMode->OuterGroup()->title(), "AutoMode ROI");
    EXPECT_EQ(autoMode->Width()->maximum(), 1944.0);

    EXPECT_THROW(Open("unsupported"), TENotSupported);
}

TEST_P(EditorScenario, TypedValuesReachTheCameraOnItsGridAndLimitsFollow)
{
    std::unique_ptr<EditorTab> tab = Open("autofunction");
    tab->Show();
    QDoubleSpinBox* left = tab->Left();
    left->setValue(702);
    emit left->editingFinished();
    EXPECT_EQ(tab->Ints({"AutofunctionAOIOffsetX"}), std::vector<long long>({700}));
    tab->Tick();
    EXPECT_EQ(left->value(), 700.0);
    EXPECT_EQ(tab->Width()->maximum(), 2592.0 - 700.0);

    std::unique_ptr<EditorTab> dsp = Open("dsp");
    dsp->Show();
    dsp->Right()->setValue(1001);
    dsp->Tick();
    EXPECT_EQ(dsp->Ints({"DSPSubregionRight"}), std::vector<long long>({1000}));
    EXPECT_EQ(dsp->Width()->value(), 1000.0 - 648.0);
}

TEST_P(EditorScenario, PresetsCentreAShareOfTheImage)
{
    std::unique_ptr<EditorTab> tab = Open("autofunction");
    const std::vector<std::string> region = {"AutofunctionAOIOffsetX", "AutofunctionAOIOffsetY",
                                             "AutofunctionAOIWidth", "AutofunctionAOIHeight"};
    tab->SixteenthButton()->click();
    EXPECT_EQ(tab->Ints(region), std::vector<long long>({972, 728, 648, 486}));
    tab->RegionCell<QPushButton>(6, 2)->click();
    EXPECT_EQ(tab->Ints(region), std::vector<long long>({0, 0, 2592, 1944}));

    std::unique_ptr<EditorTab> autoMode = Open("automode");
    autoMode->SixteenthButton()->click();
    EXPECT_EQ(autoMode->Ints({"AutoModeRegionOffsetX", "AutoModeRegionOffsetY",
                              "AutoModeRegionWidth", "AutoModeRegionHeight"}),
              std::vector<long long>({968, 728, 648, 486}));

    std::unique_ptr<EditorTab> dsp = Open("dsp");
    dsp->QuarterButton()->click();
    EXPECT_EQ(dsp->Ints({"DSPSubregionLeft", "DSPSubregionTop", "DSPSubregionRight",
                         "DSPSubregionBottom"}),
              std::vector<long long>({648, 486, 1944, 1458}));
}

TEST_P(EditorScenario, ExposureLimitsFollowTheTimeBase)
{
    std::unique_ptr<EditorTab> tab = Open("autofunction");
    tab->Show();
    QComboBox* timebase = tab->ExposureCell<QComboBox>(1, 6);
    timebase->setCurrentText("100us");
    tab->Tick();
    EXPECT_EQ(tab->ExposureMax()->value(), 5000.0);
    EXPECT_EQ(tab->ExposureMin()->value(), 1.0);

    tab->ExposureMax()->setValue(4000);
    EXPECT_EQ(tab->Ints({"ExposureAutoMax"}), std::vector<long long>({4000}));
    // The lower limit can't pass the upper.
    tab->ExposureMin()->setValue(4500);
    EXPECT_EQ(tab->Ints({"ExposureAutoMin"}), std::vector<long long>({4000}));
}

TEST_P(EditorScenario, CameraSideChangesShowAtTheNextTick)
{
    std::unique_ptr<EditorTab> tab = Open("autofunction");
    tab->Show();
    SetFromCamera(*tab, "AutofunctionAOIHeight", 500);
    SetFromCamera(*tab, "ExposureAutoMax", 70000);
    tab->Tick();
    EXPECT_EQ(tab->Height()->value(), 500.0);
    EXPECT_EQ(tab->ExposureMax()->value(), 70000.0);

    // A smaller image rebuilds the preview and bounds the region anew.
    RubberBandLabel* preview = tab->Preview();
    SetFromCamera(*tab, "Width", 2000);
    tab->Tick();
    EXPECT_NE(tab->Preview(), preview);
    EXPECT_EQ(tab->Width()->maximum(), 2000.0 - 648.0);
    EXPECT_TRUE(tab->HorizontalMessage()->isHidden());
}

INSTANTIATE_TEST_SUITE_P(Backends, EditorScenario,
                         ::testing::Values("InMemory", "GenICam", "GigEVision"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             return std::string(info.param);
                         });
