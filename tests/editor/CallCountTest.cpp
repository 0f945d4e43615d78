// The library calls that the tab's actions make on the ready-made cameras,
// pinned per operation. Every feature visit costs calls, so a change here is a
// change of the tab's sequence of calls, not of its speed.

#include "EditorTestSupport.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <map>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Op;

namespace KST {
namespace TrkAPI {
namespace Sim {

// Failures name the operations.
void PrintTo(Op op, std::ostream* out)
{
    static const char* const names[] = {
        "GetName",  "GetDisplayName", "GetCategory",      "GetDataType",       "IsWritable",
        "GetValue", "GetValues",      "IsValueAvailable", "GetRange",          "GetIncrement",
        "SetValue", "RunCommand",     "RegisterObserver", "UnregisterObserver"};
    *out << names[static_cast<int>(op)];
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

namespace {

typedef std::map<Op, int> Calls;

// The calls of every operation made since the last reset, once the
// notifications that they caused have been read by the tab's observer.
Calls TakeCalls(Camera& camera)
{
    camera.WaitForNotifications();
    Calls calls;
    for (int op = 0; op <= static_cast<int>(Op::UnregisterObserver); ++op) {
        const int count = camera.TotalCalls(static_cast<Op>(op));
        if (count != 0)
            calls[static_cast<Op>(op)] = count;
    }
    camera.ResetCalls();
    return calls;
}

struct Expected
{
    const char* camera;
    Calls create;
    Calls show;
    Calls dragStep;
    Calls release;
};

} // namespace

TEST(CallCount, CreateShowDragAndReleaseMakeTheirCalls)
{
    const Expected cases[] = {
        {"autofunction",
         {{Op::GetName, 13080},
          {Op::GetDataType, 18},
          {Op::IsWritable, 6},
          {Op::GetValue, 16},
          {Op::GetValues, 2},
          {Op::IsValueAvailable, 4},
          {Op::GetRange, 10},
          {Op::GetIncrement, 12},
          {Op::SetValue, 1},
          {Op::RegisterObserver, 11}},
         {{Op::GetName, 25776},
          {Op::GetDataType, 24},
          {Op::IsWritable, 3},
          {Op::GetValue, 28},
          {Op::GetValues, 6},
          {Op::IsValueAvailable, 12},
          {Op::GetRange, 12},
          {Op::GetIncrement, 14},
          {Op::RegisterObserver, 11}},
         {{Op::GetName, 1164}},
         {{Op::GetName, 4904},
          {Op::GetDataType, 10},
          {Op::IsWritable, 4},
          {Op::GetValue, 10},
          {Op::GetRange, 4},
          {Op::GetIncrement, 4},
          {Op::SetValue, 4}}},
        {"automode",
         {{Op::GetName, 21930},
          {Op::GetDataType, 12},
          {Op::IsWritable, 4},
          {Op::GetValue, 10},
          {Op::GetRange, 6},
          {Op::GetIncrement, 6},
          {Op::RegisterObserver, 8}},
         {{Op::GetName, 27956},
          {Op::GetDataType, 26},
          {Op::GetValue, 26},
          {Op::GetRange, 8},
          {Op::GetIncrement, 8},
          {Op::RegisterObserver, 8}},
         {{Op::GetName, 584}, {Op::GetDataType, 2}, {Op::GetValue, 2}},
         {{Op::GetName, 7200},
          {Op::GetDataType, 12},
          {Op::IsWritable, 4},
          {Op::GetValue, 12},
          {Op::GetRange, 4},
          {Op::GetIncrement, 4},
          {Op::SetValue, 4}}},
        {"dsp",
         {{Op::GetName, 14138},
          {Op::GetDataType, 34},
          {Op::IsWritable, 10},
          {Op::GetValue, 32},
          {Op::GetRange, 16},
          {Op::GetIncrement, 16},
          {Op::SetValue, 6},
          {Op::RegisterObserver, 8}},
         {{Op::GetName, 9260},
          {Op::GetDataType, 8},
          {Op::GetValue, 8},
          {Op::GetRange, 4},
          {Op::GetIncrement, 4},
          {Op::RegisterObserver, 8}},
         {{Op::GetName, 1148}},
         {{Op::GetName, 3914},
          {Op::GetDataType, 16},
          {Op::IsWritable, 4},
          {Op::GetValue, 16},
          {Op::GetRange, 4},
          {Op::GetIncrement, 4},
          {Op::SetValue, 4}}},
    };
    for (const Expected& c : cases) {
        SCOPED_TRACE(c.camera);
        std::unique_ptr<Camera> made = KST::TrkAPI::Sim::MakeCamera(c.camera);
        Camera& camera = *made;
        // The counts hold for a camera with automatic exposure off and the region
        // hidden, whatever the ready-made cameras start with.
        camera.SetFromCamera("ExposureAuto", "Off");
        if (camera.Has("AutofunctionAOIShowArea")) {
            camera.SetFromCamera("AutofunctionAOIShowArea", false);
        }
        camera.WaitForNotifications();
        camera.ResetCalls();
        EditorTab editor(std::move(made));
        EXPECT_EQ(TakeCalls(camera), c.create);

        editor.page.show();
        EXPECT_EQ(TakeCalls(camera), c.show);
        editor.Timer()->stop();
        editor.WaitForPreview();

        camera.ResetCalls();
        const QPoint start = editor.Band().center();
        editor.Mouse(QEvent::MouseButtonPress, start);
        editor.Mouse(QEvent::MouseMove, start + QPoint(5, 3));
        TakeCalls(camera);
        editor.Mouse(QEvent::MouseMove, start + QPoint(9, 6));
        EXPECT_EQ(TakeCalls(camera), c.dragStep);
        editor.Mouse(QEvent::MouseButtonRelease, start + QPoint(9, 6));
        EXPECT_EQ(TakeCalls(camera), c.release);
    }
}
