#include "OpenAndWait.h"

#include "ImagePane.h"

#include <TabExtensionInterface.h>
#include <TabImageInterface.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTranslator>

#include <gtest/gtest.h>

namespace {

// How long frames must stay away once acquisition stopped.
const int StopWaitMs = 300;

// Stands in for a loaded plug-in: remembers the pages it was given, the
// streaming states it was told and the sizes of the images it got, and
// declines with the code of result unless it is 0.
class FakeTabPlugin : public TabExtensionInterface, public TabImageInterface
{
    Q_OBJECT
    Q_INTERFACES(TabExtensionInterface TabImageInterface)

public:
    explicit FakeTabPlugin(qint32 code) : result(code) {}

    qint32 CreateTab(const QSharedPointer<FeatureVector>& features, QWidget* parent) override
    {
        pages << parent;
        cameraFeatures = features->size();
        if (result == 0) {
            parent->setAccessibleName(QStringLiteral("Fake tab"));
        }
        return result;
    }
    qint32 ReservedQuery() override { return 0; }
    bool ConnectStreamingSignal(QObject* sender, const char* signal) override
    {
        return connect(sender, signal, this, SLOT(OnStreaming(bool)));
    }

    QSize TabImageSize(QWidget*) override { return QSize(120, 120); }
    void SetTabImage(QWidget* page, const QImage& image, const QSize& frameSize) override
    {
        EXPECT_TRUE(pages.contains(page));
        images << image.size() << frameSize;
    }

    qint32 result;
    QVector<QPointer<QWidget>> pages;
    int cameraFeatures = 0;
    QVector<bool> streaming;
    QVector<QSize> images;

public slots:
    void OnStreaming(bool acquiring) { streaming << acquiring; }
};

QString FeatureValue(ViewerWindow& window, const QString& name)
{
    const QAbstractItemModel* model = window.findChild<QTableView*>("features")->model();
    const QModelIndexList found =
        model->match(model->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    return found.isEmpty() ? QString() : found.first().siblingAtColumn(1).data().toString();
}

} // namespace

TEST(ViewerWindow, PagesLiveAsLongAsTheirCamera)
{
    FakeTabPlugin accepting(0);
    ViewerWindow window({LoadedTabPlugin{"libfake.so", &accepting}}, false);
    QTabWidget* pages = window.findChild<QTabWidget*>("pages");

    ASSERT_TRUE(OpenAndWait(window, "dsp"));
    ASSERT_EQ(accepting.pages.size(), 1);
    EXPECT_GT(accepting.cameraFeatures, 0);
    ASSERT_EQ(pages->count(), 1);
    EXPECT_EQ(pages->tabText(0), "Fake tab");
    EXPECT_EQ(pages->widget(0), accepting.pages.at(0).data());
    EXPECT_EQ(FeatureValue(window, "DSPSubregionTop").isEmpty(), false);

    // Choosing the shown camera again keeps its page.
    QComboBox* selector = window.findChild<QComboBox*>("cameraSelector");
    emit selector->textActivated("dsp");
    EXPECT_EQ(accepting.pages.size(), 1);
    emit selector->textActivated("automode");
    ASSERT_TRUE(WaitForOpening(window));
    ASSERT_EQ(accepting.pages.size(), 2);
    EXPECT_TRUE(accepting.pages.at(0).isNull());
    EXPECT_FALSE(accepting.pages.at(1).isNull());
    EXPECT_EQ(selector->currentText(), "automode");
    EXPECT_TRUE(FeatureValue(window, "DSPSubregionTop").isEmpty());

    // The descriptions of the cameras folder are there to choose.
    ASSERT_NE(selector->findText("dsp.xml"), -1);
    emit selector->textActivated("dsp.xml");
    ASSERT_TRUE(WaitForOpening(window));
    ASSERT_EQ(accepting.pages.size(), 3);
    EXPECT_EQ(FeatureValue(window, "DSPSubregionTop"), "486");

    EXPECT_FALSE(OpenAndWait(window, "mono"));
    EXPECT_TRUE(accepting.pages.at(2).isNull());
    EXPECT_EQ(pages->count(), 0);
    EXPECT_TRUE(window.statusBar()->currentMessage().contains("mono"));
}

TEST(ViewerWindow, RefusalsAreShownAndAcquisitionReachesThePlugins)
{
    FakeTabPlugin declining(4);
    FakeTabPlugin accepting(0);
    ViewerWindow window(
        {LoadedTabPlugin{"libno.so", &declining}, LoadedTabPlugin{"libyes.so", &accepting}}, false);
    QTabWidget* pages = window.findChild<QTabWidget*>("pages");

    ASSERT_TRUE(OpenAndWait(window, "autofunction"));
    EXPECT_EQ(pages->count(), 1);
    EXPECT_EQ(pages->tabText(0), "Fake tab");
    EXPECT_TRUE(declining.pages.at(0).isNull());
    EXPECT_EQ(window.statusBar()->currentMessage(),
              "libno.so declined camera autofunction with code 4");

    QPushButton* acquisition = window.findChild<QPushButton*>("acquisitionButton");
    ASSERT_TRUE(acquisition->isEnabled());
    acquisition->click();
    EXPECT_EQ(accepting.streaming, QVector<bool>({true}));
    EXPECT_EQ(declining.streaming, QVector<bool>({true}));
    EXPECT_EQ(FeatureValue(window, "AcquisitionStatus"), "true");
    EXPECT_EQ(acquisition->text(), "Stop acquisition");

    // A new camera starts stopped, and the tabs hear of it before they go;
    // one that every plug-in declines gets a placeholder page.
    accepting.result = 7;
    ASSERT_TRUE(OpenAndWait(window, "unsupported"));
    EXPECT_EQ(accepting.streaming, QVector<bool>({true, false}));
    EXPECT_EQ(FeatureValue(window, "AcquisitionStatus"), "false");
    EXPECT_FALSE(acquisition->isChecked());
    EXPECT_EQ(acquisition->text(), "Start acquisition");
    ASSERT_EQ(pages->count(), 1);
    EXPECT_EQ(pages->tabText(0), "None");
    EXPECT_TRUE(window.statusBar()->currentMessage().endsWith("with code 7"));
}

TEST(ViewerWindow, AcquisitionShowsTheLiveImageAndStoppingEndsTheFrames)
{
    FakeTabPlugin accepting(0);
    ViewerWindow window({LoadedTabPlugin{"libfake.so", &accepting}}, false);
    window.show();
    ASSERT_TRUE(OpenAndWait(window, "dsp"));
    window.StartAcquisition();
    EXPECT_EQ(accepting.streaming, QVector<bool>({true}));
    ImagePane* image = window.Image();
    ASSERT_TRUE(RunUntil([&] { return image->FramesShown() >= 2 && !accepting.images.isEmpty(); }));
    // Once the pane knows the size the tab asks for, copies follow the frames.
    ASSERT_GE(accepting.images.size(), 2);
    EXPECT_EQ(accepting.images.at(0), QSize(120, 90));
    EXPECT_EQ(accepting.images.at(1), QSize(2592, 1944));

    window.findChild<QPushButton*>("acquisitionButton")->click();
    EXPECT_EQ(accepting.streaming, QVector<bool>({true, false}));
    // A frame the camera had made before the command may still come.
    const quint64 received = image->FramesReceived();
    EXPECT_FALSE(RunUntil([&] { return image->FramesReceived() > received + 1; }, StopWaitMs));
    EXPECT_TRUE(window.statusBar()->findChild<QLabel*>()->text().startsWith("Frames received"));
}

// The window's own words for a camera the plug-in declines.
static QStringList WindowTexts()
{
    FakeTabPlugin declining(7);
    ViewerWindow window({LoadedTabPlugin{"libno.so", &declining}}, false);
    window.OpenCamera("dsp");
    QStringList texts{window.windowTitle(), window.statusBar()->currentMessage()};
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        for (const char* property : {"text", "placeholderText", "windowTitle"}) {
            texts << widget->property(property).toString();
        }
    }
    texts.removeAll(QString());
    return texts;
}

TEST(ViewerWindow, InGermanNoEnglishTextOfItsOwnRemains)
{
    const QStringList english = WindowTexts();
    QTranslator german;
    ASSERT_TRUE(german.load("tabviewer_de", TAB_TRANSLATIONS_DIR));
    QCoreApplication::installTranslator(&german);
    for (const QString& text : WindowTexts()) {
        EXPECT_FALSE(english.contains(text)) << qPrintable(text);
    }
    QCoreApplication::removeTranslator(&german);
}

#include "ViewerWindowTest.moc"
