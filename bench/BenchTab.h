#ifndef BENCHTAB_H
#define BENCHTAB_H

#include "AutoROIWidget.h"

#include <QWidget>

#include <memory>

namespace KST {
namespace TrkAPI {
namespace Sim {
class Camera;
}
} // namespace TrkAPI
} // namespace KST

class RubberBandLabel;

// The editor as a host shows it, in a page of its own, with the tab's own
// timer stopped so that each benchmark decides when a refresh runs.
class BenchTab : public AutoROIWidget
{
public:
    BenchTab(const QSharedPointer<FeatureVector>& features, QWidget* parent);

    // The refresh that showing the tab runs, after hiding it again.
    void Hide();
    void RefreshOnShow();
    // One tick with every watched feature of camera reported as changed.
    void RefreshOnTick(const KST::TrkAPI::Sim::Camera& camera);

    RubberBandLabel* Preview() const;

    using BaseTabPluginWidget::StopUpdateTimer;
};

// A page with a shown tab over features, its preview settled.
struct BenchPage
{
    explicit BenchPage(const QSharedPointer<FeatureVector>& features);

    // A left button press, move or release on the preview.
    void Mouse(int type, const QPoint& position);
    QRect Band() const;

    QWidget page;
    BenchTab* tab;
};

// Runs the event loop for about milliseconds.
void RunEvents(int milliseconds);

#endif
