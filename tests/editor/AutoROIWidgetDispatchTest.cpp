// The editor between user and camera: what drags write to in-memory
// cameras, and what camera changes show once the tab's tick has run, with
// notifications coming from the camera's own thread.

#include "EditorTestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::CameraAccess;
using KST::TrkAPI::Sim::Op;

namespace {

typedef std::vector<std::string> ChangeLog;

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

} // namespace

TEST(AutoROIWidgetDispatch, CameraChangesShowWithoutWritesOrAreReported)
{
    EditorTab editor(MakeTestCamera(Family::Autofunction));
    editor.Show();
    Camera& camera = *editor.camera;
    camera.ResetCalls();
    // A region past the image is reported and, on a shown tab, switched off.
    camera.SetFromCamera("AutofunctionAOIOffsetX", 500);
    editor.Tick();
    EXPECT_TRUE(editor.HorizontalMessage()->isHidden());
    // Showing what the camera has writes nothing back.
    EXPECT_EQ(camera.TotalCalls(Op::SetValue), 0);
    camera.SetFromCamera("AutofunctionAOIOffsetX", 504);
    editor.Tick();
    EXPECT_FALSE(editor.HorizontalMessage()->isHidden());
    EXPECT_EQ(editor.HorizontalMessage()->text(), "Invalid settings: Width + OffsetX > AOI Width");
    EXPECT_FALSE(camera.BoolValue("AutofunctionAOIEnable"));

    EditorTab hidden(MakeTestCamera(Family::Autofunction));
    hidden.Tick();
    hidden.camera->SetFromCamera("AutofunctionAOIWidth", 1000);
    hidden.camera->SetFromCamera("AutofunctionAOIOffsetY", 600);
    hidden.Tick();
    EXPECT_EQ(hidden.VerticalMessage()->text(), "Invalid settings: Height + OffsetY > AOI Height");
    EXPECT_TRUE(hidden.camera->BoolValue("AutofunctionAOIEnable"));

    // The four-edge family is only told, with every reason in one line and
    // the camera's value rather than the clamped spin box.
    EditorTab dsp(MakeTestCamera(Family::Dsp));
    dsp.Show();
    dsp.camera->ResetCalls();
    dsp.camera->SetFromCamera("DSPSubregionTop", 900);
    dsp.Tick();
    EXPECT_EQ(dsp.VerticalMessage()->text(), "Invalid settings: Top > Bottom! Top > ROI Height! ");
    EXPECT_EQ(dsp.Height()->value(), 0);
    EXPECT_EQ(dsp.camera->TotalCalls(Op::SetValue), 0);
}

TEST(AutoROIWidgetDispatch, DragFollowsInSpinBoxesAndWritesOnceAtRelease)
{
    EditorTab editor(MakeTestCamera(Family::Autofunction));
    editor.Show();
    Camera& camera = *editor.camera;
    auto log = LogChanges(camera, {"AutofunctionAOIOffsetX", "AutofunctionAOIOffsetY",
                                   "AutofunctionAOIWidth", "AutofunctionAOIHeight"});
    editor.WaitForPreview();
    camera.ResetCalls();

    const QPoint start = editor.Band().center();
    editor.Mouse(QEvent::MouseButtonPress, start);
    editor.Mouse(QEvent::MouseMove, start + QPoint(15, 10));
    editor.Mouse(QEvent::MouseMove, start + QPoint(31, 21));
    const int draggedLeft = int(editor.Left()->value());
    const double draggedWidth = editor.Width()->value();

    // While the band is held, the camera neither is written nor moves it.
    camera.SetFromCamera("AutofunctionAOIWidth", 300);
    editor.Tick();
    EXPECT_EQ(editor.Width()->value(), draggedWidth);
    EXPECT_EQ(camera.TotalCalls(Op::SetValue), 0);

    log->clear();
    editor.Mouse(QEvent::MouseButtonRelease, start + QPoint(31, 21));
    // The offset goes up to its grid; the size follows the drag.
    EXPECT_EQ(camera.IntValue("AutofunctionAOIOffsetX"), (draggedLeft + 3) / 4 * 4);
    EXPECT_NEAR(camera.IntValue("AutofunctionAOIWidth"), draggedWidth, 4);
    // Offsets first, sizes last; the height only if the drag changed it.
    ASSERT_GE(log->size(), 3u);
    EXPECT_EQ(log->at(0), "AutofunctionAOIOffsetX");
    EXPECT_EQ(log->at(1), "AutofunctionAOIOffsetY");
    EXPECT_EQ(log->back(), "AutofunctionAOIWidth");

    // Four edges dragged towards larger values move the far edges first.
    EditorTab dsp(MakeTestCamera(Family::Dsp));
    dsp.Show();
    log = LogChanges(*dsp.camera, {"DSPSubregionTop", "DSPSubregionLeft", "DSPSubregionRight",
                                   "DSPSubregionBottom"});
    dsp.WaitForPreview();
    const QPoint centre = dsp.Band().center();
    dsp.Mouse(QEvent::MouseButtonPress, centre);
    dsp.Mouse(QEvent::MouseMove, centre + QPoint(20, 20));
    dsp.Mouse(QEvent::MouseButtonRelease, centre + QPoint(20, 20));
    EXPECT_EQ(*log, ChangeLog({"DSPSubregionRight", "DSPSubregionLeft", "DSPSubregionBottom",
                               "DSPSubregionTop"}));
    EXPECT_NEAR(dsp.camera->IntValue("DSPSubregionRight") -
                    dsp.camera->IntValue("DSPSubregionLeft"),
                500, 4);
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
            EditorTab editor(MakeTestCamera(Family::Autofunction));
            editor.Show();
            qInstallMessageHandler(PrintMessage);
            editor.camera->SetFailure("AutofunctionAOIWidth", Op::GetRange);
            editor.camera->SetFromCamera("AutofunctionAOIWidth", 300);
            editor.Tick();
        },
        "featureMin >= 0.0 && featureMin <= featureMax");
}
