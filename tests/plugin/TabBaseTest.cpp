#include "BaseTabPlugin.h"
#include "PluginFeatureObserver.h"
#include "SimFeatures.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMutex>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::Op;

namespace {

std::unique_ptr<Camera> MakeCamera()
{
    std::unique_ptr<Camera> camera(new Camera);
    camera->AddInteger("Width", 640, 16, 4096, 16);
    camera->AddFloat("Gain", 0.1, 0.0, 2000000.0);
    camera->AddEnum("Mode", {"Off", "Once", "Continuous"}, "Once");
    camera->AddBool("Flag", true);
    camera->AddString("Label", "front");
    camera->AddCommand("Start");
    camera->AddRaw("Blob");
    camera->AddInteger("Height", 480, 16, 4096, 16);
    return camera;
}

const QStringList Watched = {"Width", "Gain", "Mode", "Height"};

// A tab that records what each dispatch saw.
class ProbeTab : public BaseTabPluginWidget
{
public:
    struct Dispatch
    {
        QStringList names;
        int gainObservers;
        bool locked;
    };

    ProbeTab(const QSharedPointer<FeatureVector>& features, Camera* camera)
        : BaseTabPluginWidget(features, nullptr), m_Camera(camera)
    {
        m_ObservedFeatures << Watched << "height";
        RegisterObservers(false);
    }

    using BaseTabPluginWidget::FillComboBox;
    using BaseTabPluginWidget::m_ChangedFeatures;
    using BaseTabPluginWidget::m_UpdateTimer;
    using BaseTabPluginWidget::RegisterObservers;
    using BaseTabPluginWidget::UnregisterObservers;
    using BaseTabPluginWidget::updateTimer;

    QVector<Dispatch> m_Dispatches;
    std::function<void()> m_OnDispatch;

protected:
    void HandleChangedFeatures() override
    {
        const bool locked = !m_ChangeMutex->tryLock();
        if (!locked) {
            m_ChangeMutex->unlock();
        }
        const int observers = m_Camera ? m_Camera->ObserverCount("Gain") : 0;
        m_Dispatches.append({*m_ChangedFeatures, observers, locked});
        if (m_OnDispatch) {
            m_OnDispatch();
        }
    }

private:
    Camera* m_Camera;
};

QStringList g_Messages;

void CollectMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    g_Messages << message;
}

} // namespace

TEST(TabBase, ObserverBridgeGivesEveryTypeItsTextForm)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    camera->AddInteger("Negative", -1, -10, 10);
    camera->AddFloat("Large", 1234567.0, 0.0, 1e9);
    camera->ResetCalls();
    PluginFeatureObserver observer;
    QStringList seen;
    QObject::connect(&observer, &PluginFeatureObserver::setChangedFeature,
                     [&seen](QString name, QString value) { seen << name + "=" + value; });
    const auto notify = [&](std::initializer_list<const char*> names) {
        seen.clear();
        for (const char* name : names) {
            observer.FeatureChanged(camera->Find(name));
        }
        return seen;
    };

    EXPECT_EQ(notify({"Negative", "Gain", "Large", "Flag", "Mode", "Label", "Start", "Blob"}),
              QStringList({"Negative=-1", "Gain=0.1", "Large=1.23457e+06", "Flag=true", "Mode=Once",
                           "Label=front", "Start=[COMMAND]", "Blob=Click here to open"}));
    EXPECT_EQ(camera->Calls("Start", Op::GetValue), 0);

    camera->SetFromCamera("Flag", false);
    EXPECT_EQ(notify({"Flag"}), QStringList("Flag=false"));
    // Without a name or a type nothing is reported; an unreadable value is
    // reported as empty text.
    camera->SetFailure("Label", Op::GetName);
    camera->SetFailure("Blob", Op::GetDataType);
    for (const char* name : {"Width", "Gain", "Flag", "Mode"}) {
        camera->SetFailure(name, Op::GetValue);
    }
    observer.FeatureChanged(FeaturePtr());
    EXPECT_EQ(notify({"Width", "Gain", "Flag", "Mode", "Label", "Blob"}),
              QStringList({"Width=", "Gain=", "Flag=", "Mode="}));
}

TEST(TabBase, TickHandsOnQueuedNamesWithObserversOffAndForgetsThem)
{
    // The observer passes skip an empty pointer in the host's list.
    std::unique_ptr<Camera> camera = MakeCamera();
    QSharedPointer<FeatureVector> features = MakeFeatureVector(*camera);
    features->insert(1, FeaturePtr());
    ProbeTab tab(features, camera.get());
    EXPECT_EQ(camera->ObserverCount("Height"), 1);

    // Changes reported on the library's thread are queued to this one,
    // collapse per name, and wait for the tab to be shown.
    camera->SetFromCamera("Gain", 1.5);
    camera->SetFromCamera("Flag", false);
    camera->SetFromCamera("Gain", 2.5);
    camera->SetFromCamera("Width", 800);
    camera->WaitForNotifications();
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(*tab.m_ChangedFeatures, QStringList({"Gain", "Width"}));
    EXPECT_TRUE(tab.m_Dispatches.isEmpty());

    tab.show();
    EXPECT_TRUE(tab.m_UpdateTimer->isActive());
    EXPECT_EQ(tab.m_UpdateTimer->interval(), 1000);
    tab.updateTimer();
    ASSERT_EQ(tab.m_Dispatches.size(), 2);
    for (const ProbeTab::Dispatch& dispatch : tab.m_Dispatches) {
        EXPECT_EQ(dispatch.names, QStringList({"Gain", "Width"}) + Watched);
        EXPECT_TRUE(dispatch.locked);
    }
    EXPECT_EQ(tab.m_Dispatches[0].gainObservers, 1);
    EXPECT_EQ(tab.m_Dispatches[1].gainObservers, 0);
    EXPECT_EQ(camera->ObserverCount("Gain"), 1);
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());

    tab.m_ChangedFeatures->append("Gain");
    tab.hide();
    EXPECT_FALSE(tab.m_UpdateTimer->isActive());
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());
    EXPECT_EQ(camera->ObserverCount("Gain"), 0);
    {
        ProbeTab destroyed(MakeFeatureVector(*camera), camera.get());
        ASSERT_EQ(camera->ObserverCount("Gain"), 1);
    }
    EXPECT_EQ(camera->ObserverCount("Gain"), 0);
}

TEST(TabBase, FillComboBoxSelectsTheCurrentEntryAndFollowsWritability)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    QComboBox combo;
    EXPECT_FALSE(tab.FillComboBox("Mode", nullptr, false));
    EXPECT_TRUE(tab.FillComboBox("Mode", &combo, false));
    EXPECT_TRUE(combo.isEnabled());

    // The list is filled anew; a value that isn't offered selects nothing.
    camera->SetEntryAvailable("Mode", "Once", false);
    camera->SetWritable("Mode", false);
    EXPECT_FALSE(tab.FillComboBox("Mode", &combo, false));
    EXPECT_FALSE(combo.isEnabled());
    EXPECT_EQ(combo.count(), 2);
    EXPECT_EQ(combo.currentIndex(), -1);
}

TEST(TabBase, SilencesMessagesAndLogsObserverFailures)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    qInstallMessageHandler(CollectMessage);
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    ProbeTab empty(QSharedPointer<FeatureVector>(new FeatureVector), nullptr);
    qDebug("dropped");
    EXPECT_TRUE(g_Messages.isEmpty());

    EXPECT_EQ(tab.UnregisterObservers(), 0);
    qInstallMessageHandler(CollectMessage);
    camera->SetFailure("Gain", Op::RegisterObserver, -7);
    EXPECT_EQ(tab.RegisterObservers(true), 0);
    EXPECT_EQ(*tab.m_ChangedFeatures, Watched);
    camera->SetFailure("Gain", Op::UnregisterObserver, -8);
    camera->SetFailure("Height", Op::GetName, -9);
    EXPECT_EQ(tab.UnregisterObservers(), -9);

    EXPECT_EQ(empty.RegisterObservers(true), -3);
    empty.m_ChangedFeatures->append("Gain");
    empty.updateTimer();
    ASSERT_EQ(empty.m_Dispatches.size(), 1);
    EXPECT_EQ(empty.m_Dispatches[0].names, QStringList("Gain"));
    EXPECT_TRUE(empty.m_ChangedFeatures->isEmpty());

    const QString noFeatures = "Could not get features. Error code:  -3 \n ";
    EXPECT_EQ(g_Messages, QStringList({"Could not register feature observer. Error code:  -7 \n ",
                                       "Could not unregister feature observer. Error code:  -8 \n ",
                                       noFeatures, noFeatures, noFeatures}));
    qInstallMessageHandler(nullptr);
}

// The dispatch may run processEvents with the mutex held, which delivers
// what waits in the queue on this same thread.
TEST(TabBase, EventsDeliveredInsideADispatchNeitherBlockNorGetLost)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    tab.m_OnDispatch = [&tab] {
        if (tab.m_Dispatches.size() == 1) {
            QCoreApplication::processEvents();
        }
    };
    camera->SetFromCamera("Gain", 1.5);
    camera->WaitForNotifications();
    QTimer::singleShot(0, &tab, SLOT(updateTimer()));

    // The name outlives the clearing; the tick runs once the dispatch is over.
    tab.updateTimer();
    ASSERT_EQ(tab.m_Dispatches.size(), 1);
    EXPECT_EQ(*tab.m_ChangedFeatures, QStringList("Gain"));
    QCoreApplication::processEvents();
    ASSERT_EQ(tab.m_Dispatches.size(), 2);
    EXPECT_EQ(tab.m_Dispatches[1].names, QStringList("Gain"));

    // At a show the observers stay on, so a notification made on this
    // thread enters directly.
    tab.m_OnDispatch = [&tab] {
        QMetaObject::invokeMethod(&tab, "OnFeatureChanged", Q_ARG(QString, "Flag"),
                                  Q_ARG(QString, QString()));
    };
    tab.show();
    EXPECT_TRUE(tab.m_ChangedFeatures->contains("Flag"));
}
