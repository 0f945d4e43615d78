#include "ViewerWindow.h"

#include "CameraCatalog.h"
#include "CameraOpener.h"
#include "CameraSelector.h"
#include "FeatureTableModel.h"
#include "ImagePane.h"
#include "OpenedCamera.h"

#include <TabExtensionInterface.h>
#include <TabImageInterface.h>

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include <cstdio>

namespace {

// How often the feature table reads the camera again.
const int FeatureRefreshMs = 500;
// The window's first size, room for a tab beside the image and the features.
const QSize InitialSize(1440, 960);

// A tab installs a handler that drops every message; this one is installed
// after it in verbose runs, so that the tab's log lines reach stderr.
void PrintMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

void PrintLine(const QString& line)
{
    std::fprintf(stderr, "tabviewer: %s\n", qPrintable(line));
}

} // namespace

ViewerWindow::ViewerWindow(const QVector<LoadedTabPlugin>& plugins, bool verbose, QWidget* parent)
    : QMainWindow(parent), m_Plugins(plugins), m_Verbose(verbose), m_Opener(new CameraOpener(this))
{
    setWindowTitle(tr("Tab viewer"));
    BuildToolBar();

    m_Pages = new QTabWidget;
    m_Pages->setObjectName(QStringLiteral("pages"));
    QWidget* featurePane = BuildFeaturePane();
    QSplitter* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(m_Pages);
    splitter->addWidget(BuildImagePane(featurePane));
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({580, 860});
    setCentralWidget(splitter);
    resize(InitialSize);

    m_RefreshTimer = new QTimer(this);
    m_RefreshTimer->setInterval(FeatureRefreshMs);
    connect(m_RefreshTimer, &QTimer::timeout, m_FeatureModel, &FeatureTableModel::Refresh);
    m_RefreshTimer->start();

    connect(m_CameraSelector, &QComboBox::textActivated, this, &ViewerWindow::OnCameraSelected);
    connect(m_AcquisitionButton, &QPushButton::toggled, this, &ViewerWindow::OnAcquisitionToggled);
    // Queued: both report from threads of their own.
    connect(m_Opener, &CameraOpener::finished, this, &ViewerWindow::OnCameraOpened,
            Qt::QueuedConnection);
    connect(m_CameraSelector, &CameraSelector::devicesFound, this, &ViewerWindow::OnDevicesFound,
            Qt::QueuedConnection);

    // One connection per plug-in object: it relays the state to all its tabs.
    for (const LoadedTabPlugin& loaded : m_Plugins) {
        if (!loaded.plugin->ConnectStreamingSignal(this, SIGNAL(acquisitionChanged(bool)))) {
            PrintLine(tr("%1 did not take the acquisition signal").arg(loaded.fileName));
        }
    }
}

void ViewerWindow::BuildToolBar()
{
    QToolBar* toolBar = addToolBar(tr("Camera"));
    toolBar->setMovable(false);
    toolBar->addWidget(new QLabel(tr("Camera: ")));
    m_CameraSelector = new CameraSelector;
    m_CameraSelector->setObjectName(QStringLiteral("cameraSelector"));
    toolBar->addWidget(m_CameraSelector);
    toolBar->addSeparator();
    m_AcquisitionButton = new QPushButton;
    m_AcquisitionButton->setObjectName(QStringLiteral("acquisitionButton"));
    m_AcquisitionButton->setCheckable(true);
    toolBar->addWidget(m_AcquisitionButton);
    ShowAcquiring(false);
}

// The feature table with its name filter above it.
QWidget* ViewerWindow::BuildFeaturePane()
{
    m_FeatureModel = new FeatureTableModel(this);
    m_FeatureFilter = new QSortFilterProxyModel(this);
    m_FeatureFilter->setSourceModel(m_FeatureModel);
    m_FeatureFilter->setFilterKeyColumn(FeatureTableModel::NameColumn);
    m_FeatureFilter->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_FeatureFilterEdit = new QLineEdit;
    m_FeatureFilterEdit->setPlaceholderText(tr("Filter features by name"));
    m_FeatureFilterEdit->setClearButtonEnabled(true);
    connect(m_FeatureFilterEdit, &QLineEdit::textChanged, m_FeatureFilter,
            &QSortFilterProxyModel::setFilterFixedString);
    m_FeatureView = new QTableView;
    m_FeatureView->setObjectName(QStringLiteral("features"));
    m_FeatureView->setModel(m_FeatureFilter);
    m_FeatureView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_FeatureView->verticalHeader()->hide();
    // Values and ranges can be long: the value column has a fixed start
    // width the user can change, and the range takes what is left.
    QHeaderView* header = m_FeatureView->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(FeatureTableModel::ValueColumn, QHeaderView::Interactive);
    header->resizeSection(FeatureTableModel::ValueColumn, 150);
    header->setSectionResizeMode(FeatureTableModel::RangeColumn, QHeaderView::Stretch);

    QWidget* featurePane = new QWidget;
    QVBoxLayout* featureLayout = new QVBoxLayout(featurePane);
    featureLayout->setContentsMargins(0, 0, 0, 0);
    featureLayout->addWidget(m_FeatureFilterEdit);
    featureLayout->addWidget(m_FeatureView);
    return featurePane;
}

// The live image above the feature pane, and the frame counts in the status bar.
QWidget* ViewerWindow::BuildImagePane(QWidget* featurePane)
{
    m_ImagePane = new ImagePane;
    m_FrameStatus = new QLabel(m_ImagePane->StatisticsText());
    statusBar()->addPermanentWidget(m_FrameStatus);
    connect(m_ImagePane, &ImagePane::statisticsChanged, m_FrameStatus, &QLabel::setText);
    connect(m_ImagePane, &ImagePane::frameShown, this, &ViewerWindow::AskTabImageSize);
    connect(m_ImagePane, &ImagePane::copyShown, this, &ViewerWindow::OfferTabImage);
    QSplitter* imageAndFeatures = new QSplitter(Qt::Vertical);
    imageAndFeatures->addWidget(m_ImagePane);
    imageAndFeatures->addWidget(featurePane);
    imageAndFeatures->setSizes({560, 340});
    return imageAndFeatures;
}

ViewerWindow::~ViewerWindow()
{
    CloseCamera();
}

void ViewerWindow::OpenCamera(const QString& name)
{
    CloseCamera();
    statusBar()->showMessage(tr("Opening camera %1...").arg(name));
    m_Opener->Open(name, m_ImagePane->Handler());
}

void ViewerWindow::OnCameraOpened()
{
    std::unique_ptr<CameraOpener::Result> result = m_Opener->Take();
    if (!result) {
        return;
    }
    CloseCamera();
    if (!result->device) {
        statusBar()->showMessage(result->error);
        PrintLine(result->error);
        emit cameraOpened(false);
        return;
    }
    const QString name = result->name;
    m_Camera.reset(new OpenedCamera(name, std::move(result->device)));
    // Queued: the slot closes the camera that sends the signal.
    connect(m_Camera.get(), &OpenedCamera::connectionLost, this, &ViewerWindow::OnCameraLost,
            Qt::QueuedConnection);
    if (m_CameraSelector->findText(name) < 0) {
        m_CameraSelector->addItem(name);
    }
    m_CameraSelector->setCurrentText(name);
    m_AcquisitionButton->setEnabled(m_Camera->CanAcquire());
    m_FeatureModel->SetFeatures(m_Camera->Features(), result->rows);
    CreateTabs();
    if (m_Camera->IsReadOnly()) {
        const QString notice =
            tr("Camera %1 is controlled by another program: its features can only be read")
                .arg(name);
        statusBar()->showMessage(notice);
        PrintLine(notice);
    }
    if (name == m_LostCamera) {
        m_LostCamera.clear();
    }
    emit cameraOpened(true);
}

void ViewerWindow::OnDevicesFound(const QStringList& ids)
{
    if (!m_LostCamera.isEmpty() && !m_Camera && ids.contains(m_LostCamera)) {
        PrintLine(tr("Camera %1 is back").arg(m_LostCamera));
        OpenCamera(m_LostCamera);
    }
}

void ViewerWindow::StartAcquisition()
{
    if (m_AcquisitionButton->isEnabled()) {
        m_AcquisitionButton->setChecked(true);
    }
}

void ViewerWindow::OnCameraSelected(const QString& name)
{
    if (!m_Camera || m_Camera->Name() != name) {
        OpenCamera(name);
    }
}

void ViewerWindow::OnAcquisitionToggled(bool acquiring)
{
    if (m_Camera && !m_Camera->SetAcquiring(acquiring)) {
        statusBar()->showMessage(acquiring ? tr("The camera refused to start acquisition")
                                           : tr("The camera refused to stop acquisition"));
    }
    ShowAcquiring(acquiring);
    emit acquisitionChanged(acquiring);
    m_FeatureModel->Refresh();
}

void ViewerWindow::OnCameraLost(const QString& message)
{
    const QString name = m_Camera ? m_Camera->Name() : QString();
    // The tabs can't work without their camera; the message stays.
    CloseCamera();
    statusBar()->showMessage(message);
    PrintLine(message);
    if (CameraCatalog::KindOf(name) == CameraCatalog::Discovered) {
        m_LostCamera = name;
        m_CameraSelector->Forget(name);
    }
}

// Every page goes to every plug-in that takes images; a plug-in passes over
// the pages of others.
void ViewerWindow::ForEachImageTab(const std::function<void(TabImageInterface*, QWidget*)>& visit)
{
    for (const LoadedTabPlugin& loaded : m_Plugins) {
        TabImageInterface* images = qobject_cast<TabImageInterface*>(loaded.plugin);
        for (int index = 0; images && index < m_Pages->count(); ++index) {
            visit(images, m_Pages->widget(index));
        }
    }
}

// Copies are made for the largest image a tab wants; the tabs may be resized
// between frames, so they are asked at each one.
void ViewerWindow::AskTabImageSize()
{
    QSize largest;
    ForEachImageTab([&largest](TabImageInterface* images, QWidget* page) {
        largest = largest.expandedTo(images->TabImageSize(page));
    });
    m_ImagePane->SetCopySize(largest);
}

void ViewerWindow::OfferTabImage(const QImage& copy, const QSize& frameSize)
{
    ForEachImageTab([&](TabImageInterface* images, QWidget* page) {
        images->SetTabImage(page, copy, frameSize);
    });
}

void ViewerWindow::CloseCamera()
{
    if (m_AcquisitionButton->isChecked()) {
        m_AcquisitionButton->setChecked(false);
    }
    // The pages go first: each tab unregisters its observers from the camera.
    while (m_Pages->count() > 0) {
        QWidget* page = m_Pages->widget(0);
        m_Pages->removeTab(0);
        delete page;
    }
    m_Refusals.clear();
    m_FeatureModel->SetFeatures(QSharedPointer<FeatureVector>());
    if (m_Camera) {
        m_Camera->SetFrameHandler(KST::TrkAPI::FrameHandler());
    }
    m_Camera.reset();
    m_ImagePane->Clear();
    statusBar()->clearMessage();
}

void ViewerWindow::CreateTabs()
{
    for (const LoadedTabPlugin& loaded : m_Plugins) {
        QWidget* page = new QWidget;
        const qint32 result = loaded.plugin->CreateTab(m_Camera->Features(), page);
        if (m_Verbose) {
            qInstallMessageHandler(PrintMessage);
        }
        if (result != 0) {
            delete page;
            m_Refusals << tr("%1 declined camera %2 with code %3")
                              .arg(loaded.fileName, m_Camera->Name())
                              .arg(result);
            PrintLine(m_Refusals.last());
            continue;
        }
        m_Pages->addTab(page, page->accessibleName());
    }
    if (m_Pages->count() == 0) {
        QLabel* none = new QLabel(tr("No tab for this camera."));
        none->setAlignment(Qt::AlignCenter);
        m_Pages->addTab(none, tr("None"));
    }
    if (!m_Refusals.isEmpty()) {
        statusBar()->showMessage(m_Refusals.join(QStringLiteral("; ")));
    }
}

void ViewerWindow::ShowAcquiring(bool acquiring)
{
    m_AcquisitionButton->setText(acquiring ? tr("Stop acquisition") : tr("Start acquisition"));
}
