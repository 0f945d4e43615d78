#include "EditorTestSupport.h"

#include "SimFeatures.h"

#include <QVBoxLayout>

using KST::TrkAPI::Sim::Camera;

std::unique_ptr<Camera> MakeTestCamera(Family family)
{
    std::unique_ptr<Camera> camera(new Camera);
    if (family == Family::AutoMode) {
        camera->AddInteger("Width", 640, 8, 2000);
        camera->AddInteger("Height", 480, 8, 2000);
        camera->AddInteger("OffsetX", 100, 0, 2000);
        camera->AddInteger("OffsetY", 50, 0, 2000);
        camera->AddInteger("AutoModeRegionOffsetX", 100, 0, 2000);
        camera->AddInteger("AutoModeRegionOffsetY", 50, 0, 2000);
        camera->AddInteger("AutoModeRegionWidth", 640, 16, 2000);
        camera->AddInteger("AutoModeRegionHeight", 480, 16, 2000);
    } else if (family == Family::Autofunction) {
        camera->AddInteger("Width", 1000, 8, 1000, 4);
        camera->AddInteger("Height", 800, 8, 800, 2);
        camera->AddInteger("AutofunctionAOIOffsetX", 0, 0, 1000, 4);
        camera->AddInteger("AutofunctionAOIOffsetY", 0, 0, 800, 2);
        camera->AddInteger("AutofunctionAOIWidth", 500, 16, 1000, 4);
        camera->AddInteger("AutofunctionAOIHeight", 400, 16, 800, 2);
        camera->AddBool("AutofunctionAOIEnable", true);
        camera->AddBool("AutofunctionAOIShowArea", false);
    } else {
        camera->AddInteger("Width", 1000, 8, 1000);
        camera->AddInteger("Height", 800, 8, 800);
        camera->AddInteger("DSPSubregionTop", 100, 0, 800);
        camera->AddInteger("DSPSubregionLeft", 100, 0, 1000);
        camera->AddInteger("DSPSubregionRight", 600, 0, 1000);
        camera->AddInteger("DSPSubregionBottom", 500, 0, 800);
    }
    camera->AddFloat("ExposureAutoMin", 100.0, 0.0, 1000000.0, 0.001);
    camera->AddInteger("ExposureAutoMax", 50000, 10, 1000000);
    camera->AddFloat("ExposureTime", 5000.0, 10.0, 1000000.0);
    return camera;
}

namespace {

const int PreviewLimitMs = 3000;
// Past the placement that follows the preview's first resize.
const int SettleMs = 300;

} // namespace

EditorTab::EditorTab(std::unique_ptr<KST::TrkAPI::Device> opened,
                     const std::function<void()>& settle)
    : device(std::move(opened)), camera(dynamic_cast<Camera*>(device.get())), settle(settle)
{
    if (!this->settle) {
        this->settle = [this] { camera->WaitForNotifications(); };
    }
    widget = new AutoROIWidget(MakeFeatureVector(*device), &page);
    (new QVBoxLayout(&page))->addWidget(widget);
}

void EditorTab::Show()
{
    page.show();
    Timer()->stop();
    Tick();
}

void EditorTab::Tick()
{
    settle();
    QCoreApplication::processEvents();
    QMetaObject::invokeMethod(widget, "updateTimer");
}

void EditorTab::WaitForPreview()
{
    RunUntil([this] { return Band().width() > 20; }, PreviewLimitMs);
    RunFor(SettleMs);
}

std::vector<long long> EditorTab::Ints(const std::vector<std::string>& names) const
{
    std::vector<long long> values;
    for (const std::string& name : names) {
        long long value = -1;
        device->Find(name)->GetValue(value);
        values.push_back(value);
    }
    return values;
}
