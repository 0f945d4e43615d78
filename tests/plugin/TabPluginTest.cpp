#include "SimFeatures.h"
#include "TabExtensionInterface.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QGroupBox>
#include <QLibrary>
#include <QPluginLoader>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace {

QObject* PluginObject()
{
    QPluginLoader loader(QStringLiteral(TAB_PLUGIN_FILE));
    QObject* object = loader.instance();
    EXPECT_NE(object, nullptr) << qPrintable(loader.errorString());
    return object;
}

TabExtensionInterface* Plugin()
{
    return qobject_cast<TabExtensionInterface*>(PluginObject());
}

// A host's page with the tab for one ready-made camera.
struct Page
{
    explicit Page(const char* camera) : m_Camera(KST::TrkAPI::Sim::MakeCamera(camera))
    {
        m_Result = Plugin()->CreateTab(MakeFeatureVector(*m_Camera), &m_Widget);
    }

    QGroupBox* Region() const { return m_Widget.findChild<QGroupBox*>("gb_AutoROI"); }

    std::unique_ptr<KST::TrkAPI::Sim::Camera> m_Camera;
    QWidget m_Widget;
    qint32 m_Result;
};

} // namespace

TEST(TabPlugin, AnswersToItsClassNameAndInterface)
{
    QObject* object = PluginObject();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->qt_metacast("TabExtensionPlugin"), object);
    EXPECT_EQ(object->qt_metacast("com.trolltech.Plugin.TabExtensionInterface/1.0"),
              static_cast<void*>(qobject_cast<TabExtensionInterface*>(object)));
    EXPECT_NE(
        QLibrary::resolve(QStringLiteral(TAB_PLUGIN_FILE), "qt_plugin_query_verification_data"),
        nullptr);
}

TEST(TabPlugin, PutsTheTabIntoItsPageOrLeavesThePageAlone)
{
    Page page("autofunction");
    EXPECT_EQ(page.m_Result, 0);
    QVBoxLayout* layout = qobject_cast<QVBoxLayout*>(page.m_Widget.layout());
    ASSERT_NE(layout, nullptr);
    ASSERT_EQ(layout->count(), 1);
    EXPECT_EQ(layout->itemAt(0)->widget()->accessibleName(), "Autofunction AOI");

    Page refused("unsupported");
    EXPECT_EQ(refused.m_Result, 4);
    EXPECT_EQ(refused.m_Widget.layout(), nullptr);
    EXPECT_EQ(Plugin()->ReservedQuery(), 0);
}

TEST(TabPlugin, RelaysStreamingToEveryLivingTab)
{
    // Stands for the host's acquisition switch.
    QPushButton host;
    ASSERT_TRUE(Plugin()->ConnectStreamingSignal(&host, SIGNAL(toggled(bool))));
    Page first("automode");
    std::unique_ptr<Page> second(new Page("automode"));

    // A tab applies the state it had before each new one, so the second
    // "streaming" is the first to disable the region group.
    emit host.toggled(true);
    emit host.toggled(true);
    EXPECT_FALSE(first.Region()->isEnabled());
    EXPECT_FALSE(second->Region()->isEnabled());

    second.reset();
    emit host.toggled(false);
    emit host.toggled(false);
    EXPECT_TRUE(first.Region()->isEnabled());
}
