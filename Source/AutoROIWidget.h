#ifndef AUTOROIWIDGET_H
#define AUTOROIWIDGET_H

#include "AutoROIWidgetForm.h"
#include "BaseTabPlugin.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QPushButton;
class QSpinBoxMouseEventFilter;
class RubberBandLabel;
struct RegionAxis;

// The auto AOI tab. It edits the region on which a camera's automatic
// functions work, as offset and size or as four edges according to the
// camera's family, and the limits and time base of automatic exposure. All
// state lies in the camera: the tab writes what the user sets and shows what
// the camera reports back through the tick of its base.
class AutoROIWidget : public BaseTabPluginWidget
{
    Q_OBJECT

public:
    // Throws TENotSupported for a camera of no family.
    AutoROIWidget(const QSharedPointer<FeatureVector>& features, QWidget* parent);
    ~AutoROIWidget() override;

    // The size in pixels at which the preview draws the camera's image; empty
    // while the preview isn't shown.
    QSize PreviewImageSize() const;
    // Shows the camera's image, made from a frame of frameSize pixels, under
    // the band until the next one comes.
    void ShowCameraImage(const QImage& image, const QSize& frameSize);

protected:
    void HandleChangedFeatures() override;

private slots:
    void OnSpinTopValueChanged(double value);
    void OnSpinLeftValueChanged(double value);
    void OnSpinRightValueChanged(double value);
    void OnSpinBottomValueChanged(double value);
    void OnSpinWidthValueChanged(double value);
    void OnSpinHeightValueChanged(double value);
    void OnSpinEditingFinished();
    void OnEnableStateChanged(int state);
    void OnShowAreaStateChanged(int state);
    void OnGeometryChangeStarted();
    void OnSendGeometry(int top, int left, int width, int height);
    void OnUpdateGeometry(int top, int left, int width, int height);
    void SetFullArea();
    void OnROIFull();
    void OnROIHalf();
    void OnROIQuarter();
    void OnResetTrustedUpdate();
    void OnSpinExpAutoMinChanged(double value);
    void OnSpinExpAutoMaxChanged(double value);
    void OnExpAutoTimebaseChanged(QString value);
    void OnBtnExpAutoMinCurrentClicked();
    void OnBtnExpAutoMaxCurrentClicked();

public slots:
    void camIsStreaming(bool streaming);

private:
    // Construction.
    void AcceptCamera(QWidget* parent);
    void WatchFeatures();

    // Form and controls.
    void BuildRegionGroup();
    QGroupBox* MakeRegionGroupBox();
    void MakeRegionControls();
    QGridLayout* MakeRegionGrid();
    void ConnectRegionControls();
    void BuildExposureAutoGroup();
    void SetupControl(QWidget* control);
    void SetupSpinBox(QDoubleSpinBox* spin);
    quint64 GetROIWidth();
    quint64 GetROIHeight();
    void MakePreview();

    // Loading from the camera.
    bool IsDSPRegionValid();
    void BlockControlSignals(bool block);
    void LoadExposureAuto();
    void LoadRegion();
    void LoadEdgeRegion();
    void LoadOffsetRegion();
    void PlaceOffsetBand(double top, double left, double width, double height, int offsetX,
                         int offsetY);
    void LoadEnableState();
    void LoadShowAreaState();
    void SetControlsEnabled(bool enabled);
    void UpdatePreviewFromSpinBoxes();
    void RebuildPreview();

    // Recalculation from the camera's answers.
    void DispatchRegionChanges(const QStringList& changed);
    void DispatchExposureAutoChanges(const QStringList& changed);
    void ReloadExposureAutoRanges();
    void UpdateWidthFromFeature();
    void UpdateLeftFromFeature();
    void UpdateRightFromFeature();
    void UpdateHeightFromFeature();
    void UpdateTopFromFeature();
    void UpdateBottomFromFeature();
    RegionAxis HorizontalAxis() const;
    RegionAxis VerticalAxis() const;
    int ImageOffset(const RegionAxis& axis);
    void UpdateSizeFromFeature(const RegionAxis& axis);
    void UpdateOffsetFromFeature(const RegionAxis& axis);
    void UpdateFarEdgeFromFeature(const RegionAxis& axis);
    void CheckRegionSize(const RegionAxis& axis, double size, double offset, int imageOffset);
    void ShowEdgeMessages(const RegionAxis& axis, double offset, double farForOrder,
                          double farEdge);
    void RefreshExposureLimit(const char* limit, QDoubleSpinBox* spin);

    // User edits and presets.
    void SetRegionSpinBoxes(int top, int left, int width, int height, int offsetX, int offsetY);
    void SetCentredArea(double sideFactor);

    AutoROIWidgetForm ui;
    bool m_TrustedUpdate = false;
    bool m_CamIsStreaming = false;
    quint64 m_ROIWidth = 0;
    quint64 m_ROIHeight = 0;
    QCheckBox* m_CheckEnable = nullptr;
    QCheckBox* m_CheckShowArea = nullptr;
    QDoubleSpinBox* m_SpinTop = nullptr;
    QDoubleSpinBox* m_SpinLeft = nullptr;
    QDoubleSpinBox* m_SpinRight = nullptr;
    QDoubleSpinBox* m_SpinBottom = nullptr;
    QDoubleSpinBox* m_SpinWidth = nullptr;
    QDoubleSpinBox* m_SpinHeight = nullptr;
    QLabel* m_LabelEnable = nullptr;
    QLabel* m_LabelShowArea = nullptr;
    QLabel* m_LabelTop = nullptr;
    QLabel* m_LabelLeft = nullptr;
    QLabel* m_LabelRight = nullptr;
    QLabel* m_LabelBottom = nullptr;
    QLabel* m_LabelWidth = nullptr;
    QLabel* m_LabelHeight = nullptr;
    QLabel* m_LabelErrorVertical = nullptr;
    QLabel* m_LabelErrorHorizontal = nullptr;
    QPushButton* m_BtnFull = nullptr;
    QPushButton* m_BtnHalf = nullptr;
    QPushButton* m_BtnQuarter = nullptr;
    RubberBandLabel* m_RubberBandLabel = nullptr;
    QSpinBoxMouseEventFilter* m_FilterTop = nullptr;
    QSpinBoxMouseEventFilter* m_FilterLeft = nullptr;
    QSpinBoxMouseEventFilter* m_FilterWidth = nullptr;
    QSpinBoxMouseEventFilter* m_FilterHeight = nullptr;
    QDoubleSpinBox* m_SpinExpAutoMin = nullptr;
    QDoubleSpinBox* m_SpinExpAutoMax = nullptr;
    QComboBox* m_ComboExpAutoTimebase = nullptr;
    QLabel* m_LabelExpAutoMin = nullptr;
    QLabel* m_LabelExpAutoMax = nullptr;
    QLabel* m_LabelExpAutoTimebase = nullptr;
    QPushButton* m_BtnExpAutoMinCurrent = nullptr;
    QPushButton* m_BtnExpAutoMaxCurrent = nullptr;
};

#endif
