#include "SimFeatures.h"
#include "TabExtensionInterface.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QGroupBox>
#include <QLayout>
#include <QLibrary>
#include <QPluginLoader>
#include <QPointer>
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
        m_Widget.setAccessibleName(QStringLiteral("host"));
        m_Result = Plugin()->CreateTab(MakeFeatureVector(*m_Camera), &m_Widget);
    }

    QWidget* Tab() const
    {
        return m_Widget.layout() ? m_Widget.layout()->itemAt(0)->widget() : nullptr;
    }

    std::unique_ptr<KST::TrkAPI::Sim::Camera> m_Camera;
    QWidget m_Widget;
    qint32 m_Result;
};

class StreamingHost : public QObject
{
    Q_OBJECT

signals:
    void streamingChanged(bool streaming);
};

} // namespace

TEST(TabPlugin, LoadsAsOneObjectPerLoadAnsweringOnlyItsNames)
{
    QObject* object = PluginObject();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(PluginObject(), object);
    EXPECT_EQ(object->qt_metacast("TabExtensionPlugin"), object);
    EXPECT_EQ(object->qt_metacast("com.trolltech.Plugin.TabExtensionInterface/1.0"),
              static_cast<void*>(qobject_cast<TabExtensionInterface*>(object)));
    EXPECT_EQ(object->qt_metacast("TabExtensionInterface"), nullptr);

    // The host may delete the object; the next request makes a new one.
    QPointer<QObject> guard(object);
    delete object;
    ASSERT_TRUE(guard.isNull());
    QObject* replacement = PluginObject();
    ASSERT_NE(replacement, nullptr);
    EXPECT_EQ(PluginObject(), replacement);
}

TEST(TabPlugin, ExportsTheVerificationRecord)
{
    typedef const char* (*Query)();
    const Query query = reinterpret_cast<Query>(
        QLibrary::resolve(QStringLiteral(TAB_PLUGIN_FILE), "qt_plugin_query_verification_data"));
    ASSERT_NE(query, nullptr);
    const QString expected = QStringLiteral("pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=%1\n"
                                            "debug=true\nbuildkey=generic linux g++-%2 full-config")
                                 .arg(QStringLiteral(QT_VERSION_STR))
                                 .arg(__GNUC__);
    EXPECT_EQ(QString::fromLatin1(query()), expected);
}

TEST(TabPlugin, CreatesTabsForEachFamilyAndRefusesOthers)
{
    const struct
    {
        const char* camera;
        const char* name;
    } accepted[] = {{"autofunction", "Autofunction AOI"},
                    {"automode", "Autofunction ROI"},
                    {"dsp", "Autofunction ROI"}};
    for (const auto& row : accepted) {
        Page page(row.camera);
        EXPECT_EQ(page.m_Result, 0) << row.camera;
        EXPECT_EQ(page.m_Widget.accessibleName(), QLatin1String(row.name)) << row.camera;
        ASSERT_NE(page.Tab(), nullptr) << row.camera;
        EXPECT_EQ(page.Tab()->accessibleName(), QLatin1String(row.name)) << row.camera;
    }

    Page refused("unsupported");
    EXPECT_EQ(refused.m_Result, 4);
    EXPECT_EQ(refused.m_Widget.layout(), nullptr);
    EXPECT_TRUE(refused.m_Widget.children().isEmpty());
    EXPECT_EQ(refused.m_Widget.accessibleName(), QString());
    EXPECT_EQ(Plugin()->ReservedQuery(), 0);
}

TEST(TabPlugin, RelaysStreamingToEveryLivingTab)
{
    StreamingHost host;
    ASSERT_TRUE(Plugin()->ConnectStreamingSignal(&host, SIGNAL(streamingChanged(bool))));
    Page first("automode");
    std::unique_ptr<Page> second(new Page("automode"));
    ASSERT_EQ(first.m_Result, 0);
    ASSERT_EQ(second->m_Result, 0);

    // A tab applies the state it had before each new one, so the second
    // "streaming" is the first to disable the region group.
    emit host.streamingChanged(true);
    emit host.streamingChanged(true);
    for (Page* page : {&first, second.get()}) {
        QGroupBox* group = page->Tab()->findChild<QGroupBox*>(QStringLiteral("gb_AutoROI"));
        ASSERT_NE(group, nullptr);
        EXPECT_FALSE(group->isEnabled());
    }

    second.reset();
    emit host.streamingChanged(false);
    emit host.streamingChanged(false);
    EXPECT_TRUE(first.Tab()->findChild<QGroupBox*>(QStringLiteral("gb_AutoROI"))->isEnabled());
}

#include "TabPluginTest.moc"
