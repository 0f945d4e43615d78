#ifndef VIEWERWINDOW_H
#define VIEWERWINDOW_H

#include "TabPluginLoader.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class CameraOpener;
class CameraSelector;
class FeatureTableModel;
class ImagePane;
class QLabel;
class QLineEdit;
class QPushButton;
class QSortFilterProxyModel;
class QTabWidget;
class QTableView;
class QTimer;
class OpenedCamera;
class TabImageInterface;

// The viewer's main window: a camera selector and an acquisition button on
// top, the tab extensions' pages for the opened camera on the left, and on
// the right the camera's live image above its features, as they are now,
// filtered by name; the status bar counts the frames. Each plug-in gets one
// page per camera; closing the camera destroys the pages and with them the
// tabs inside. Plug-ins that take images get a small copy of each one shown.
class ViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    ViewerWindow(const QVector<LoadedTabPlugin>& plugins, bool verbose, QWidget* parent = nullptr);
    ~ViewerWindow() override;

    // Closes the current camera and opens the named one (see CameraCatalog)
    // in the background; cameraOpened() tells the outcome. A camera that
    // can't be opened leaves none open, with the reason shown.
    void OpenCamera(const QString& name);
    // Starts acquisition as the acquisition button does.
    void StartAcquisition();
    ImagePane* Image() const { return m_ImagePane; }

signals:
    void acquisitionChanged(bool acquiring);
    // After each OpenCamera() carried out: whether the camera opened.
    void cameraOpened(bool opened);

private slots:
    void OnCameraSelected(const QString& name);
    void OnAcquisitionToggled(bool acquiring);
    void OnCameraLost(const QString& message);
    void AskTabImageSize();
    void OfferTabImage(const QImage& copy, const QSize& frameSize);
    void OnCameraOpened();
    void OnDevicesFound(const QStringList& ids);

private:
    void BuildToolBar();
    QWidget* BuildFeaturePane();
    QWidget* BuildImagePane(QWidget* featurePane);
    void CloseCamera();
    void CreateTabs();
    void ShowAcquiring(bool acquiring);
    void ForEachImageTab(const std::function<void(TabImageInterface*, QWidget*)>& visit);

    QVector<LoadedTabPlugin> m_Plugins;
    bool m_Verbose;
    std::unique_ptr<OpenedCamera> m_Camera;
    QStringList m_Refusals;
    CameraOpener* m_Opener;
    // A device that was lost, opened again when discovery finds it back.
    QString m_LostCamera;

    CameraSelector* m_CameraSelector;
    QPushButton* m_AcquisitionButton;
    QTabWidget* m_Pages;
    FeatureTableModel* m_FeatureModel;
    QSortFilterProxyModel* m_FeatureFilter;
    QLineEdit* m_FeatureFilterEdit;
    QTableView* m_FeatureView;
    QTimer* m_RefreshTimer;
    ImagePane* m_ImagePane;
    QLabel* m_FrameStatus;
};

#endif
