// The library calls that the tab's actions make on the ready-made cameras,
// pinned per operation. Every feature visit costs calls, so a change here is a
// change of the tab's sequence of calls, not of its speed.

#include "EditorTestSupport.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <gtest/gtest.h>

#include <string>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Op;

namespace {

// The calls of every operation made since the last reset, as "GetName 3,
// GetValue 1", once the notifications that they caused have been read by the
// tab's observer.
std::string TakeCalls(Camera& camera)
{
    static const char* const names[] = {
        "GetName",  "GetDisplayName", "GetCategory",      "GetDataType",       "IsWritable",
        "GetValue", "GetValues",      "IsValueAvailable", "GetRange",          "GetIncrement",
        "SetValue", "RunCommand",     "RegisterObserver", "UnregisterObserver"};
    camera.WaitForNotifications();
    std::string calls;
    for (int op = 0; op <= static_cast<int>(Op::UnregisterObserver); ++op) {
        const int count = camera.TotalCalls(static_cast<Op>(op));
        if (count != 0) {
            calls +=
                (calls.empty() ? "" : ", ") + std::string(names[op]) + " " + std::to_string(count);
        }
    }
    camera.ResetCalls();
    return calls;
}

struct Expected
{
    const char* camera;
    const char* create;
    const char* show;
    const char* dragStep;
    const char* release;
};

} // namespace

TEST(CallCount, CreateShowDragAndReleaseMakeTheirCalls)
{
    const Expected cases[] = {
        {"autofunction",
         "GetName 13080, GetDataType 18, IsWritable 6, GetValue 16, GetValues 2, "
         "IsValueAvailable 4, GetRange 10, GetIncrement 12, SetValue 1, RegisterObserver 11",
         "GetName 25776, GetDataType 24, IsWritable 3, GetValue 28, GetValues 6, "
         "IsValueAvailable 12, GetRange 12, GetIncrement 14, RegisterObserver 11",
         "GetName 1164",
         "GetName 4904, GetDataType 10, IsWritable 4, GetValue 10, GetRange 4, GetIncrement 4, "
         "SetValue 4"},
        {"automode",
         "GetName 21930, GetDataType 12, IsWritable 4, GetValue 10, GetRange 6, GetIncrement 6, "
         "RegisterObserver 8",
         "GetName 27956, GetDataType 26, GetValue 26, GetRange 8, GetIncrement 8, "
         "RegisterObserver 8",
         "GetName 584, GetDataType 2, GetValue 2",
         "GetName 7200, GetDataType 12, IsWritable 4, GetValue 12, GetRange 4, GetIncrement 4, "
         "SetValue 4"},
        {"dsp",
         "GetName 14138, GetDataType 34, IsWritable 10, GetValue 32, GetRange 16, "
         "GetIncrement 16, SetValue 6, RegisterObserver 8",
         "GetName 9260, GetDataType 8, GetValue 8, GetRange 4, GetIncrement 4, "
         "RegisterObserver 8",
         "GetName 1148",
         "GetName 3914, GetDataType 16, IsWritable 4, GetValue 16, GetRange 4, GetIncrement 4, "
         "SetValue 4"},
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
