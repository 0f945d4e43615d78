#include "BaseTabPlugin.h"
#include "PluginFeatureObserver.h"
#include "SimFeatures.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMutex>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>

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
        m_ObservedFeatures << "Width"
                           << "Gain"
                           << "Mode"
                           << "Height"
                           << "height";
        RegisterObservers(false);
    }

    using BaseTabPluginWidget::FillComboBox;
    using BaseTabPluginWidget::m_ChangedFeatures;
    using BaseTabPluginWidget::m_UpdateTimer;
    using BaseTabPluginWidget::RegisterObservers;
    using BaseTabPluginWidget::UnregisterObservers;
    using BaseTabPluginWidget::updateTimer;

    KST::TrkAPI::shared_ptr<PluginFeatureObserver> Observer() const
    {
        return KST::TrkAPI::dynamic_pointer_cast<PluginFeatureObserver>(m_FeatureObserver);
    }

    QVector<Dispatch> m_Dispatches;
    std::function<void()> m_OnDispatch;

protected:
    void HandleChangedFeatures() override
    {
        const bool locked = !m_ChangeMutex->tryLock();
        if (!locked) {
            m_ChangeMutex->unlock();
        }
        m_Dispatches.append(
            {*m_ChangedFeatures, m_Camera ? m_Camera->ObserverCount("Gain") : 0, locked});
        if (m_OnDispatch) {
            m_OnDispatch();
        }
    }

private:
    Camera* m_Camera;
};

QStringList g_Messages;

void CollectMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtDebugMsg) {
        g_Messages << message;
    }
}

} // namespace

TEST(TabBase, ObserverBridgeGivesEveryTypeItsTextForm)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    camera->AddInteger("Negative", -1, -10, 10);
    camera->AddFloat("Large", 1234567.0, 0.0, 1e9);
    camera->AddBool("Cleared", false);
    PluginFeatureObserver observer;
    QStringList seen;
    QObject::connect(&observer, &PluginFeatureObserver::setChangedFeature,
                     [&seen](QString name, QString value) { seen << name + "=" + value; });

    for (const char* name :
         {"Negative", "Gain", "Large", "Flag", "Cleared", "Mode", "Label", "Start", "Blob"}) {
        observer.FeatureChanged(camera->Find(name));
    }
    EXPECT_EQ(seen, QStringList({"Negative=-1", "Gain=0.1", "Large=1.23457e+06", "Flag=true",
                                 "Cleared=false", "Mode=Once", "Label=front", "Start=[COMMAND]",
                                 "Blob=Click here to open"}));
    EXPECT_EQ(camera->Calls("Start", Op::GetValue), 0);

    // Without a name or a type nothing is reported; an unreadable value is
    // reported as empty text.
    seen.clear();
    camera->SetFailure("Label", Op::GetName);
    camera->SetFailure("Flag", Op::GetDataType);
    camera->SetFailure("Gain", Op::GetValue);
    camera->SetFailure("Mode", Op::GetValue);
    for (const char* name : {"Label", "Flag", "Gain", "Mode"}) {
        observer.FeatureChanged(camera->Find(name));
    }
    observer.FeatureChanged(FeaturePtr());
    EXPECT_EQ(seen, QStringList({"Gain=", "Mode="}));
}

TEST(TabBase, LibraryNotificationsArriveQueuedAndCollapse)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    QThread* emitter = nullptr;
    QObject::connect(tab.Observer().get(), &PluginFeatureObserver::setChangedFeature,
                     [&emitter] { emitter = QThread::currentThread(); });

    camera->SetFromCamera("Gain", 1.5);
    camera->SetFromCamera("Flag", false);
    camera->SetFromCamera("Gain", 2.5);
    camera->SetFromCamera("Width", 800);
    camera->WaitForNotifications();
    EXPECT_NE(emitter, QThread::currentThread());
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());

    QCoreApplication::processEvents();
    EXPECT_EQ(*tab.m_ChangedFeatures, QStringList({"Gain", "Width"}));
    EXPECT_TRUE(tab.m_Dispatches.isEmpty());
}

TEST(TabBase, TickDispatchesWithObserversOffAndForgetsTheNames)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    tab.show();
    ASSERT_EQ(tab.m_Dispatches.size(), 1);
    EXPECT_EQ(tab.m_Dispatches[0].names, Watched);
    EXPECT_EQ(tab.m_Dispatches[0].gainObservers, 1);
    EXPECT_TRUE(tab.m_Dispatches[0].locked);
    EXPECT_TRUE(tab.m_UpdateTimer->isActive());
    EXPECT_EQ(tab.m_UpdateTimer->interval(), 1000);

    // The first tick hands the names of the show over once more.
    tab.updateTimer();
    ASSERT_EQ(tab.m_Dispatches.size(), 2);
    EXPECT_EQ(tab.m_Dispatches[1].names, Watched);
    EXPECT_EQ(tab.m_Dispatches[1].gainObservers, 0);
    EXPECT_TRUE(tab.m_Dispatches[1].locked);
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());
    EXPECT_EQ(camera->ObserverCount("Gain"), 1);

    camera->SetFromCamera("Mode", "Continuous");
    camera->WaitForNotifications();
    QCoreApplication::processEvents();
    tab.updateTimer();
    tab.updateTimer();
    ASSERT_EQ(tab.m_Dispatches.size(), 4);
    EXPECT_EQ(tab.m_Dispatches[2].names, QStringList("Mode"));
    EXPECT_TRUE(tab.m_Dispatches[3].names.isEmpty());

    tab.m_ChangedFeatures->append("Gain");
    tab.hide();
    EXPECT_FALSE(tab.m_UpdateTimer->isActive());
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());
    for (const QString& name : Watched) {
        EXPECT_EQ(camera->ObserverCount(name.toStdString()), 0) << qPrintable(name);
    }
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
    EXPECT_EQ(tab.UnregisterObservers(), 0);
    camera->SetFailure("Height", Op::GetName, -9);
    tab.m_ChangedFeatures->clear();
    EXPECT_EQ(tab.RegisterObservers(true), -9);
    EXPECT_EQ(*tab.m_ChangedFeatures, QStringList({"Width", "Gain", "Mode"}));

    EXPECT_EQ(empty.RegisterObservers(true), -3);
    EXPECT_TRUE(empty.m_ChangedFeatures->isEmpty());
    empty.m_ChangedFeatures->append("Gain");
    empty.updateTimer();
    ASSERT_EQ(empty.m_Dispatches.size(), 1);
    EXPECT_EQ(empty.m_Dispatches[0].names, QStringList("Gain"));
    EXPECT_TRUE(empty.m_ChangedFeatures->isEmpty());

    const QString noFeatures = "Could not get features. Error code:  -3 \n ";
    EXPECT_EQ(g_Messages, QStringList({"Could not register feature observer. Error code:  -7 \n ",
                                       "Could not unregister feature observer. Error code:  -8 \n ",
                                       "Could not register feature observer. Error code:  -7 \n ",
                                       noFeatures, noFeatures, noFeatures}));
    qInstallMessageHandler(nullptr);
}

TEST(TabBase, FillComboBoxShowsEntriesCurrentValueAndWritability)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    QComboBox combo;
    EXPECT_FALSE(tab.FillComboBox("Mode", nullptr, false));

    EXPECT_TRUE(tab.FillComboBox("Mode", &combo, true));
    EXPECT_EQ(combo.count(), 3);
    EXPECT_EQ(combo.currentText(), QString("Once"));
    EXPECT_EQ(combo.itemData(2, Qt::ToolTipRole).toString(), QString("Continuous"));
    EXPECT_TRUE(combo.isEnabled());

    camera->SetEntryAvailable("Mode", "Once", false);
    camera->SetWritable("Mode", false);
    EXPECT_FALSE(tab.FillComboBox("Mode", &combo, false));
    EXPECT_EQ(combo.count(), 2);
    EXPECT_EQ(combo.currentIndex(), -1);
    EXPECT_FALSE(combo.itemData(0, Qt::ToolTipRole).isValid());
    EXPECT_FALSE(combo.isEnabled());
}

// The dispatch may run processEvents with the mutex held, which delivers
// what waits in the queue on this same thread.
TEST(TabBase, EventsDeliveredInsideADispatchNeitherBlockNorGetLost)
{
    std::unique_ptr<Camera> camera = MakeCamera();
    ProbeTab tab(MakeFeatureVector(*camera), camera.get());
    const KST::TrkAPI::shared_ptr<PluginFeatureObserver> observer = tab.Observer();
    tab.m_OnDispatch = [&tab] {
        if (tab.m_Dispatches.size() == 1) {
            QCoreApplication::processEvents();
        }
    };
    std::thread([&] { observer->FeatureChanged(camera->Find("Gain")); }).join();
    QTimer::singleShot(0, &tab, SLOT(updateTimer()));
    tab.m_ChangedFeatures->append("Width");

    tab.updateTimer();
    ASSERT_EQ(tab.m_Dispatches.size(), 1);
    EXPECT_EQ(tab.m_Dispatches[0].names, QStringList("Width"));
    EXPECT_EQ(*tab.m_ChangedFeatures, QStringList("Gain"));

    QCoreApplication::processEvents();
    ASSERT_EQ(tab.m_Dispatches.size(), 2);
    EXPECT_EQ(tab.m_Dispatches[1].names, QStringList("Gain"));
    EXPECT_TRUE(tab.m_ChangedFeatures->isEmpty());

    // At a show the observers stay on, so a notification made on this
    // thread enters directly.
    tab.m_OnDispatch = [&] { observer->FeatureChanged(camera->Find("Flag")); };
    tab.show();
    EXPECT_TRUE(tab.m_ChangedFeatures->contains("Flag"));
}
