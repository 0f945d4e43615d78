#include "EditorTestSupport.h"
#include "HostileFeature.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <random>
#include <string>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Op;

namespace {

typedef std::map<std::string, HostileFeature::Lies> LiesByName;

// The editor over camera, with the named features telling the given lies.
std::unique_ptr<EditorTab> LyingTab(std::unique_ptr<Camera> camera, const LiesByName& lies)
{
    Camera* made = camera.get();
    const auto random = std::make_shared<std::mt19937>();
    return std::unique_ptr<EditorTab>(
        new EditorTab(std::move(camera), [made, lies, random](const FeaturePtr& feature) {
            for (const auto& entry : lies) {
                if (made->Find(entry.first) == feature) {
                    return FeaturePtr(new HostileFeature(feature, entry.second, 0.0, random));
                }
            }
            return feature;
        }));
}

HostileFeature::Lies FloatLies(double value, double min, double max, double increment)
{
    HostileFeature::Lies lies;
    lies.replaceType = true;
    lies.type = TrkFeatureDataFloat;
    lies.replaceValue = true;
    lies.floatValue = value;
    lies.replaceRange = true;
    lies.floatMin = min;
    lies.floatMax = max;
    lies.replaceIncrement = true;
    lies.floatIncrement = increment;
    return lies;
}

const long long Lowest = std::numeric_limits<long long>::min();

} // namespace

// Each camera below ran into undefined behaviour once; under the sanitizers
// the test ends on the first. What is checked beyond that is the clamped
// result.
TEST(AutoROIWidgetHostile, ExtremeValuesAndStepsGiveDefinedResults)
{
    // The lowest height on a grid of -1 (a step that can't be read).
    HostileFeature::Lies lowestHeight;
    lowestHeight.replaceValue = true;
    lowestHeight.intValue = Lowest;
    HostileFeature::Lies noStep;
    noStep.replaceIncrement = true;
    noStep.intIncrement = -1;
    LyingTab(MakeTestCamera(Family::Autofunction),
             {{"Height", lowestHeight}, {"AutofunctionAOIHeight", noStep}});

    // A height and a step beyond every integer, and a width step of 0.
    HostileFeature::Lies zeroStep;
    zeroStep.replaceIncrement = true;
    zeroStep.intIncrement = 0;
    LyingTab(MakeTestCamera(Family::Autofunction),
             {{"Height", FloatLies(1e300, 0, 1e300, 1)},
              {"AutofunctionAOIHeight", FloatLies(16, 16, 800, 1e300)},
              {"AutofunctionAOIWidth", zeroStep}});

    // The drop's grid snap with a step beyond every int.
    std::unique_ptr<EditorTab> snap =
        LyingTab(MakeTestCamera(Family::Autofunction),
                 {{"AutofunctionAOIOffsetX", FloatLies(0, 0, 1000, 1e300)}});
    QMetaObject::invokeMethod(snap->widget, "OnSendGeometry", Q_ARG(int, 0), Q_ARG(int, 10),
                              Q_ARG(int, 100), Q_ARG(int, 100));
    EXPECT_EQ(1000.0 - INT_MAX, snap->Width()->maximum());

    // The presets after a failed "Width" read, which leaves the reference
    // width at the largest unsigned number: the size is the largest int.
    std::unique_ptr<Camera> unreadable = MakeTestCamera(Family::AutoMode);
    unreadable->SetFailure("Width", Op::GetValue);
    EditorTab presets(std::move(unreadable));
    presets.QuarterButton()->click();
    presets.SixteenthButton()->click();
    EXPECT_EQ(double(INT_MAX), presets.Width()->value());

    // Edges of a four-edge camera at the bottom of the integer range: the
    // preview's width from right minus left is limited to int.
    HostileFeature::Lies lowestLeft;
    lowestLeft.replaceValue = true;
    lowestLeft.intValue = Lowest;
    lowestLeft.replaceRange = true;
    lowestLeft.intMin = Lowest;
    lowestLeft.intMax = 1000;
    std::unique_ptr<EditorTab> edges =
        LyingTab(MakeTestCamera(Family::Dsp), {{"DSPSubregionLeft", lowestLeft}});
    edges->camera->SetFromCamera("DSPSubregionRight", 700);
    edges->Tick();
    EXPECT_EQ(700.0, edges->Right()->value());
}

// The dispatch that switches a region off runs no events of its own: a show,
// a hide or the host's deletion of the tab that waits for the event loop
// comes after it, not in the middle of it.
TEST(AutoROIWidgetHostile, NothingWaitingRunsInsideADispatch)
{
    EditorTab tab(MakeTestCamera(Family::Autofunction));
    tab.Show();
    // Each round makes the region too wide for the image, which switches it
    // off from inside the dispatch, with during() waiting to run.
    int offset = 600;
    auto tooWideWith = [&tab, &offset](const std::function<void()>& during) {
        tab.camera->SetFromCamera("AutofunctionAOIEnable", true);
        tab.camera->SetFromCamera("AutofunctionAOIOffsetX", offset += 4);
        tab.camera->WaitForNotifications();
        QCoreApplication::processEvents();
        QTimer::singleShot(0, during);
        QMetaObject::invokeMethod(tab.widget, "updateTimer");
        QCoreApplication::processEvents();
    };

    int observersSeen = -1;
    tooWideWith([&] { observersSeen = tab.camera->ObserverCount("AutofunctionAOIWidth"); });
    EXPECT_FALSE(tab.camera->BoolValue("AutofunctionAOIEnable"));
    EXPECT_EQ(1, observersSeen);

    tooWideWith([&] { tab.page.hide(); });
    EXPECT_EQ(0, tab.camera->ObserverCount("AutofunctionAOIWidth"));

    tab.page.show();
    QPointer<AutoROIWidget> widget = tab.widget;
    tooWideWith([&] { delete widget.data(); });
    EXPECT_TRUE(widget.isNull());
}

TEST(AutoROIWidgetHostile, ExposureLoadReadsBothRangesFirstAndTheTimebaseKeepsOnlyAscii)
{
    // The order of the range reads and the type questions of the limits.
    std::unique_ptr<Camera> camera = MakeTestCamera(Family::Dsp);
    camera->AddEnum("ExposureAutoTimebase", {"1us", "10\xc2\xb5s"}, "1us");
    Camera* made = camera.get();
    const auto journal = std::make_shared<std::vector<std::string>>();
    EditorTab tab(std::move(camera), [made, journal](const FeaturePtr& feature) {
        for (const char* name : {"ExposureAutoMin", "ExposureAutoMax"}) {
            if (made->Find(name) == feature) {
                return FeaturePtr(new HostileFeature(feature, name, journal));
            }
        }
        return feature;
    });
    const std::vector<std::string>& calls = *journal;
    const auto maxRange = std::find(calls.begin(), calls.end(), "ExposureAutoMax GetRange");
    ASSERT_NE(calls.end(), maxRange);
    EXPECT_EQ(std::count(calls.begin(), maxRange, "ExposureAutoMin GetDataType"),
              std::count(calls.begin(), calls.end(), "ExposureAutoMin GetDataType") - 1);

    // A time base outside ASCII doesn't reach the camera as it stands.
    QComboBox* timebase = tab.ExposureCell<QComboBox>(1, 6);
    ASSERT_EQ(2, timebase->count());
    timebase->setCurrentIndex(1);
    EXPECT_EQ("1us", tab.camera->TextValue("ExposureAutoTimebase"));
}
