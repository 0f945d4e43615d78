#include "EditorTestSupport.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <string>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Misreport;
using KST::TrkAPI::Sim::Op;

namespace {

// The editor over camera, with the named features telling the given lies.
std::unique_ptr<EditorTab> LyingTab(std::unique_ptr<Camera> camera,
                                    const std::map<std::string, Misreport>& lies)
{
    for (const auto& lie : lies) {
        camera->SetMisreport(lie.first, lie.second);
    }
    return std::unique_ptr<EditorTab>(new EditorTab(std::move(camera)));
}

Misreport FloatLie(double value, double min, double max, double increment)
{
    Misreport lie;
    lie.type = TrkFeatureDataFloat;
    lie.floatValue = value;
    lie.floatRange = std::make_pair(min, max);
    lie.floatIncrement = increment;
    return lie;
}

const long long Lowest = std::numeric_limits<long long>::min();

} // namespace

// Each camera below ran into undefined behaviour once; under the sanitizers
// the test ends on the first. What is checked beyond that is the clamped
// result.
TEST(AutoROIWidgetHostile, ExtremeValuesAndStepsGiveDefinedResults)
{
    // The lowest height on a grid of -1 (a step that can't be read).
    Misreport lowestHeight;
    lowestHeight.intValue = Lowest;
    Misreport noStep;
    noStep.intIncrement = -1;
    LyingTab(MakeTestCamera(Family::Autofunction),
             {{"Height", lowestHeight}, {"AutofunctionAOIHeight", noStep}});

    // A height and a step beyond every integer, and a width step of 0.
    Misreport zeroStep;
    zeroStep.intIncrement = 0;
    LyingTab(MakeTestCamera(Family::Autofunction),
             {{"Height", FloatLie(1e300, 0, 1e300, 1)},
              {"AutofunctionAOIHeight", FloatLie(16, 16, 800, 1e300)},
              {"AutofunctionAOIWidth", zeroStep}});

    // The drop's grid snap with a step beyond every int.
    std::unique_ptr<EditorTab> snap =
        LyingTab(MakeTestCamera(Family::Autofunction),
                 {{"AutofunctionAOIOffsetX", FloatLie(0, 0, 1000, 1e300)}});
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
    Misreport lowestLeft;
    lowestLeft.intValue = Lowest;
    lowestLeft.intRange = std::make_pair(Lowest, 1000LL);
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
    camera->StartJournal();
    EditorTab tab(std::move(camera));
    const auto calls = tab.camera->Journal();
    const auto call = [](const char* name, Op op) { return std::make_pair(std::string(name), op); };
    const auto maxRange =
        std::find(calls.begin(), calls.end(), call("ExposureAutoMax", Op::GetRange));
    ASSERT_NE(calls.end(), maxRange);
    const auto minType = call("ExposureAutoMin", Op::GetDataType);
    EXPECT_EQ(std::count(calls.begin(), maxRange, minType),
              std::count(calls.begin(), calls.end(), minType) - 1);

    // A time base outside ASCII doesn't reach the camera as it stands.
    QComboBox* timebase = tab.ExposureCell<QComboBox>(1, 6);
    ASSERT_EQ(2, timebase->count());
    timebase->setCurrentIndex(1);
    EXPECT_EQ("1us", tab.camera->TextValue("ExposureAutoTimebase"));
}
