#ifndef EDITORTESTSUPPORT_H
#define EDITORTESTSUPPORT_H

// What the editor's tests share: in-memory cameras of each family made for
// readable numbers, an editor in a host page, its controls by their cells in
// the form, the tab's tick run on demand and mouse input on the preview.

#include "AutoROIWidget.h"
#include "UserInput.h"
#include "rubberbandlabel.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QDoubleSpinBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRubberBand>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>
#include <vector>

enum class Family
{
    Dsp,
    Autofunction,
    AutoMode
};

// An image of 1000 x 800 with a floating lower and a whole upper exposure
// limit, the current exposure time and the region of one family:
// - Dsp: edges from 100, 100 to 600, 500.
// - Autofunction: 500 x 400 at the origin, on grids of 4 across and 2 down,
//   switched on, its area not shown.
// - AutoMode: an image of 640 x 480 at 100, 50 of the sensor, which the
//   region covers in sensor coordinates.
std::unique_ptr<KST::TrkAPI::Sim::Camera> MakeTestCamera(Family family);

// The editor as the host holds it, in a page of its own.
struct EditorTab
{
    // Over a camera of any backend; settle returns once the camera has
    // delivered the notifications of its changes so far, which an in-memory
    // camera tells by itself.
    explicit EditorTab(std::unique_ptr<KST::TrkAPI::Device> opened,
                       const std::function<void()>& settle = nullptr);

    // Shows the page with the tab's own timer stopped, so that each test
    // decides when the dispatch runs, and takes in what loading wrote back.
    void Show();
    // Delivers what the camera has notified and runs one tick of the tab.
    void Tick();
    // Waits until the shown preview has placed the band and the placement
    // after its first resize has passed, so that a drag starts on the band.
    void WaitForPreview();
    // A left button press, move or release on the preview.
    void Mouse(QEvent::Type type, const QPoint& position) { SendMouse(Preview(), type, position); }
    // The camera's whole values of the named features, read through them.
    std::vector<long long> Ints(const std::vector<std::string>& names) const;

    template <typename T = QDoubleSpinBox>
    T* RegionCell(int row, int column) const
    {
        return Cell<T>(static_cast<QGridLayout*>(RegionGroup()->layout()), row, column);
    }
    template <typename T = QDoubleSpinBox>
    T* ExposureCell(int row, int column) const
    {
        return Cell<T>(Grid("grid_ImageFormat"), row, column);
    }
    QDoubleSpinBox* Top() const { return RegionCell(1, 2); }
    QDoubleSpinBox* Left() const { return RegionCell(1, 6); }
    QDoubleSpinBox* Bottom() const { return RegionCell(2, 2); }
    QDoubleSpinBox* Right() const { return RegionCell(2, 6); }
    QDoubleSpinBox* Height() const { return RegionCell(3, 2); }
    QDoubleSpinBox* Width() const { return RegionCell(3, 6); }
    QLabel* VerticalMessage() const { return RegionCell<QLabel>(4, 1); }
    QLabel* HorizontalMessage() const { return RegionCell<QLabel>(5, 1); }
    QPushButton* QuarterButton() const { return RegionCell<QPushButton>(6, 3); }
    QPushButton* SixteenthButton() const { return RegionCell<QPushButton>(6, 6); }
    QDoubleSpinBox* ExposureMin() const { return ExposureCell(1, 2); }
    QDoubleSpinBox* ExposureMax() const { return ExposureCell(2, 2); }

    QGroupBox* OuterGroup() const { return widget->findChild<QGroupBox*>("gb_AutoROI"); }
    QGroupBox* RegionGroup() const { return Cell<QGroupBox>(Grid("grid_AutoROI"), 1, 0); }
    RubberBandLabel* Preview() const { return Cell<RubberBandLabel>(Grid("grid_AutoROI"), 0, 0); }
    QRect Band() const { return Preview()->findChild<QRubberBand*>()->geometry(); }
    QTimer* Timer() const
    {
        return widget->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
    }

    QGridLayout* Grid(const char* name) const { return widget->findChild<QGridLayout*>(name); }
    template <typename T>
    static T* Cell(QGridLayout* grid, int row, int column)
    {
        QLayoutItem* item = grid->itemAtPosition(row, column);
        return item ? qobject_cast<T*>(item->widget()) : nullptr;
    }

    std::unique_ptr<KST::TrkAPI::Device> device;
    // The in-memory camera, for its test hooks; null over other backends.
    KST::TrkAPI::Sim::Camera* camera;
    std::function<void()> settle;
    QWidget page;
    AutoROIWidget* widget;
};

#endif
