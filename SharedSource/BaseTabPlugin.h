#ifndef BASETABPLUGIN_H
#define BASETABPLUGIN_H

#include "FeatureTypes.h"

#include <QSharedPointer>
#include <QStringList>
#include <QWidget>

class FeatureManager;
class QComboBox;
class QMutex;
class QTimer;
class QTranslator;

// Shared base of tab extensions: holds a camera's features and a
// FeatureManager over them, watches the features that the subclass names in
// m_ObservedFeatures, collects the names that changed and hands them to
// HandleChangedFeatures once a second while the tab is visible.
class BaseTabPluginWidget : public QWidget
{
    Q_OBJECT

public:
    BaseTabPluginWidget(const QSharedPointer<FeatureVector>& features, QWidget* parent);
    ~BaseTabPluginWidget() noexcept override;

    // A translator for plugins/<name>_<locale>, or for the language alone;
    // empty when neither file exists. The caller owns it.
    static QTranslator* LoadTranslator(const QString& name);

signals:
    // Declared for hosts that connect to it by name; never emitted.
    void resetFPS();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    // Puts the observer on every watched feature of the camera; with
    // fillChanged the watched names are also queued as changed. The result is
    // that of the camera's last feature.
    qint32 RegisterObservers(bool fillChanged);
    // Takes the observer off every watched feature; result as above.
    qint32 UnregisterObservers();

    // Fills combo with the entries of the enumeration name and selects its
    // current value; returns whether the feature is writable.
    bool FillComboBox(const QString& name, QComboBox* combo, bool setToolTips);

    void StartUpdateTimer();
    void StopUpdateTimer();

    // Runs the events that wait, as QCoreApplication::processEvents does, but
    // not inside a dispatch, where a show, a hide or the host's deletion of
    // the page would run with the dispatch half done. Returns false if this
    // tab was deleted meanwhile; the caller must then return at once.
    bool ProcessPendingEvents();

    // Refreshes the tab for the names in m_ChangedFeatures. Runs on the GUI
    // thread with m_ChangeMutex held; leaves the list to the base.
    virtual void HandleChangedFeatures() = 0;

protected slots:
    void updateTimer();

private slots:
    void OnFeatureChanged(QString name, QString value);

protected:
    FeatureManager* m_FeatureManager = nullptr;
    QStringList* m_ChangedFeatures = nullptr;
    QStringList m_ObservedFeatures;
    QSharedPointer<FeatureVector> m_Features;
    QTimer* m_UpdateTimer = nullptr;
    QMutex* m_ChangeMutex = nullptr;
    FeatureObserverPtr m_FeatureObserver;

private:
    qint32 ObserverPass(TrkErrorType (KST::TrkAPI::Feature::*operation)(const FeatureObserverPtr&),
                        const char* failureText, bool fillChanged);
    void FinishDispatch();
    // Whether m_ObservedFeatures holds the ASCII name, exactly.
    bool IsObserved(const char* name) const;

    // Set while a dispatch holds m_ChangeMutex; see updateTimer().
    bool m_InDispatch = false;
    bool m_TickDeferred = false;
    QStringList m_LateChanges;
};

#endif
