#include "BaseTabPlugin.h"

#include "DebugLine.h"
#include "FeatureManager.h"
#include "FeatureText.h"
#include "PluginFeatureObserver.h"
#include "Qt4Compat.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLocale>
#include <QMutex>
#include <QMutexLocker>
#include <QPointer>
#include <QTimer>
#include <QTranslator>

#include <vector>

namespace {

// The code logged and returned by an observer pass over an empty feature list.
const qint32 NoFeatures = -3;

// Milliseconds between two ticks while the tab is visible.
const int TickInterval = 1000;

// Greys the text of every disabled control of a tab.
const char* const DisabledControlsStyle =
    "QPushButton:disabled, QLineEdit:disabled, QComboBox:disabled, QDoubleSpinBox:disabled,       "
    "                                     QSpinBox:disabled, QwtSlider:disabled, "
    "QGroupBox:disabled, QLabel:disabled { color: gray }";

// Tabs keep the host's message output silent; a host that wants its
// messages back installs its own handler after the tab exists.
void DropMessage(QtMsgType, const char*) {}

} // namespace

BaseTabPluginWidget::BaseTabPluginWidget(const QSharedPointer<FeatureVector>& features,
                                         QWidget* parent)
    : QWidget(parent)
{
    // A Qt 5 message handler installed earlier would take precedence over
    // the Qt 4 one; it is reset so that the silence holds for the process.
    qInstallMessageHandler(nullptr);
    Qt4Compat::InstallMsgHandler(DropMessage);
    m_Features = features;
    m_FeatureManager = new FeatureManager(features);
    m_FeatureObserver = FeatureObserverPtr(new PluginFeatureObserver);
    {
        const KST::TrkAPI::shared_ptr<PluginFeatureObserver> observer =
            KST::TrkAPI::dynamic_pointer_cast<PluginFeatureObserver>(m_FeatureObserver);
        connect(observer.get(), SIGNAL(setChangedFeature(QString, QString)), this,
                SLOT(OnFeatureChanged(QString, QString)));
    }
    setFocusPolicy(Qt::StrongFocus);
    setStyleSheet(QLatin1String(DisabledControlsStyle));
    m_ChangeMutex = new QMutex(QMutex::NonRecursive);
    m_UpdateTimer = new QTimer(this);
    connect(m_UpdateTimer, SIGNAL(timeout()), this, SLOT(updateTimer()));
    m_ChangedFeatures = new QStringList;
}

// The members then go in reverse order of declaration: the observer, the
// features, the observed names; the timer goes with QWidget's children.
// m_FeatureManager stays allocated, and with it its reference to the features.
BaseTabPluginWidget::~BaseTabPluginWidget() noexcept
{
    UnregisterObservers();
    delete m_ChangedFeatures;
    delete m_ChangeMutex;
}

QTranslator* BaseTabPluginWidget::LoadTranslator(const QString& name)
{
    QTranslator* translator = new QTranslator;
    const QString locale = QLocale::system().name();
    const QString common = QLatin1String("plugins/") + name + QLatin1Char('_');
    if (!translator->load(common + locale, QString(), QString(), QString())) {
        translator->load(common + locale.left(2), QString(), QString(), QString());
    }
    return translator;
}

void BaseTabPluginWidget::showEvent(QShowEvent*)
{
    m_UpdateTimer->start(TickInterval);
    RegisterObservers(true);
    m_ChangeMutex->lock();
    m_InDispatch = true;
    HandleChangedFeatures();
    FinishDispatch();
    m_ChangeMutex->unlock();
}

void BaseTabPluginWidget::hideEvent(QHideEvent*)
{
    m_UpdateTimer->stop();
    m_ChangedFeatures->clear();
    UnregisterObservers();
}

qint32 BaseTabPluginWidget::RegisterObservers(bool fillChanged)
{
    return ObserverPass(&KST::TrkAPI::Feature::RegisterObserver,
                        "Could not register feature observer. Error code: ", fillChanged);
}

qint32 BaseTabPluginWidget::UnregisterObservers()
{
    return ObserverPass(&KST::TrkAPI::Feature::UnregisterObserver,
                        "Could not unregister feature observer. Error code: ", false);
}

// One pass over a fresh copy of the camera's features, in the camera's
// order, applying operation to each watched one. The result is that of the
// last feature, whatever failed before it.
qint32 BaseTabPluginWidget::ObserverPass(
    TrkErrorType (KST::TrkAPI::Feature::*operation)(const FeatureObserverPtr&),
    const char* failureText, bool fillChanged)
{
    const std::vector<FeaturePtr> features(m_Features->cbegin(), m_Features->cend());
    if (features.empty()) {
        DebugLine() << "Could not get features. Error code: " << NoFeatures << "\n";
        return NoFeatures;
    }
    qint32 result = 0;
    // Every name is read into one buffer and compared there: a pass
    // allocates only for the watched features.
    std::vector<char> name;
    for (const FeaturePtr& feature : features) {
        // The host's list may hold an empty pointer; it names no feature.
        if (!feature) {
            continue;
        }
        result = ReadFeatureText(*feature, &KST::TrkAPI::Feature::GetName, name);
        if (result != 0 || !IsObserved(name.data())) {
            continue;
        }
        result = ((*feature).*operation)(m_FeatureObserver);
        if (result != 0) {
            DebugLine() << failureText << result << "\n";
        }
        // The name asks for a refresh of the feature, whether or not the
        // observer now sits on it.
        if (fillChanged) {
            m_ChangedFeatures->append(Qt4Compat::FromAscii(name.data()));
        }
    }
    return result;
}

// Most names differ in length from most watched ones, which is the cheap test.
bool BaseTabPluginWidget::IsObserved(const char* name) const
{
    const QLatin1String text(name);
    for (const QString& observed : m_ObservedFeatures) {
        if (observed.size() == text.size() && observed == text) {
            return true;
        }
    }
    return false;
}

bool BaseTabPluginWidget::FillComboBox(const QString& name, QComboBox* combo, bool setToolTips)
{
    if (combo == nullptr) {
        return false;
    }
    const QString current = m_FeatureManager->GetTextValue(name);
    const QStringList entries = m_FeatureManager->GetAvailableEntries(name);
    combo->clear();
    combo->insertItems(combo->count(), entries);
    if (setToolTips) {
        for (int index = 0; index < combo->count(); ++index) {
            combo->setItemData(index, combo->itemText(index), Qt::ToolTipRole);
        }
    }
    combo->setCurrentIndex(entries.indexOf(current));
    const bool writable = m_FeatureManager->IsWritable(name);
    combo->setEnabled(writable);
    return writable;
}

void BaseTabPluginWidget::StartUpdateTimer()
{
    m_UpdateTimer->start();
}

void BaseTabPluginWidget::StopUpdateTimer()
{
    m_UpdateTimer->stop();
}

bool BaseTabPluginWidget::ProcessPendingEvents()
{
    if (m_InDispatch) {
        return true;
    }
    const QPointer<BaseTabPluginWidget> alive(this);
    QCoreApplication::processEvents();
    return !alive.isNull();
}

// The tick refreshes the tab with no observer registered, so that its own
// reads and writes raise no notifications, and forgets the names it handed on.
//
// HandleChangedFeatures may run QCoreApplication::processEvents with
// m_ChangeMutex held, and that can deliver a queued OnFeatureChanged or a
// due tick on this same thread. Both only ever run on the GUI thread, so
// m_InDispatch, set and read there alone, tells them that the mutex is
// already held by the dispatch below them: a name is then kept aside in
// m_LateChanges and joins the list after the clearing, and a tick is put
// off until the current dispatch is over. Outside a dispatch both take the
// mutex as usual.
void BaseTabPluginWidget::updateTimer()
{
    if (m_InDispatch) {
        m_TickDeferred = true;
        return;
    }
    UnregisterObservers();
    m_ChangeMutex->lock();
    m_InDispatch = true;
    HandleChangedFeatures();
    RegisterObservers(false);
    m_ChangedFeatures->clear();
    FinishDispatch();
    m_ChangeMutex->unlock();
}

void BaseTabPluginWidget::OnFeatureChanged(QString name, QString value)
{
    Q_UNUSED(value);
    if (m_InDispatch) {
        if (!m_LateChanges.contains(name)) {
            m_LateChanges.append(name);
        }
        return;
    }
    QMutexLocker locker(m_ChangeMutex);
    if (!m_ChangedFeatures->contains(name)) {
        m_ChangedFeatures->append(name);
    }
}

// Called with m_ChangeMutex held, at the end of a dispatch.
void BaseTabPluginWidget::FinishDispatch()
{
    m_InDispatch = false;
    for (const QString& name : qAsConst(m_LateChanges)) {
        if (!m_ChangedFeatures->contains(name)) {
            m_ChangedFeatures->append(name);
        }
    }
    m_LateChanges.clear();
    if (m_TickDeferred) {
        m_TickDeferred = false;
        QTimer::singleShot(0, this, SLOT(updateTimer()));
    }
}
