#include "BenchTab.h"

#include "rubberbandlabel.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHideEvent>
#include <QMouseEvent>
#include <QRubberBand>
#include <QShowEvent>
#include <QThread>
#include <QVBoxLayout>

BenchTab::BenchTab(const QSharedPointer<FeatureVector>& features, QWidget* parent)
    : AutoROIWidget(features, parent)
{}

void BenchTab::Hide()
{
    QHideEvent event;
    hideEvent(&event);
}

void BenchTab::RefreshOnShow()
{
    QShowEvent event;
    showEvent(&event);
    StopUpdateTimer();
}

void BenchTab::RefreshOnTick(const KST::TrkAPI::Sim::Camera& camera)
{
    m_ChangedFeatures->clear();
    for (const QString& name : qAsConst(m_ObservedFeatures)) {
        if (camera.Has(name.toStdString())) {
            m_ChangedFeatures->append(name);
        }
    }
    updateTimer();
}

RubberBandLabel* BenchTab::Preview() const
{
    return findChild<RubberBandLabel*>();
}

// The host page's size, about that of the viewer's tab area.
const QSize PageSize(900, 700);

BenchPage::BenchPage(const QSharedPointer<FeatureVector>& features)
    : tab(new BenchTab(features, &page))
{
    QVBoxLayout* layout = new QVBoxLayout;
    layout->addWidget(tab);
    page.setLayout(layout);
    page.resize(PageSize);
    page.show();
    // The band's exact placement follows the first resize after 200 ms.
    RunEvents(300);
    tab->StopUpdateTimer();
}

void BenchPage::Mouse(int type, const QPoint& position)
{
    const QEvent::Type eventType = static_cast<QEvent::Type>(type);
    const Qt::MouseButton button = eventType == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        eventType == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(eventType, position, button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(tab->Preview(), &event);
}

QRect BenchPage::Band() const
{
    return tab->Preview()->findChild<QRubberBand*>()->geometry();
}

void RunEvents(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(2);
    }
}
