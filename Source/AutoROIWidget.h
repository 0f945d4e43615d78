#ifndef AUTOROIWIDGET_H
#define AUTOROIWIDGET_H

#include "AutoROIWidgetForm.h"
#include "BaseTabPlugin.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
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
    virtual ~AutoROIWidget();

protected:
    virtual void HandleChangedFeatures();

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
    // Form and controls.
    void BuildRegionGroup();
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
    bool m_TrustedUpdate;
    bool m_CamIsStreaming;
    quint64 m_ROIWidth;
    quint64 m_ROIHeight;
    QCheckBox* m_CheckEnable;
    QCheckBox* m_CheckShowArea;
    QDoubleSpinBox* m_SpinTop;
    QDoubleSpinBox* m_SpinLeft;
    QDoubleSpinBox* m_SpinRight;
    QDoubleSpinBox* m_SpinBottom;
    QDoubleSpinBox* m_SpinWidth;
    QDoubleSpinBox* m_SpinHeight;
    QLabel* m_LabelEnable;
    QLabel* m_LabelShowArea;
    QLabel* m_LabelTop;
    QLabel* m_LabelLeft;
    QLabel* m_LabelRight;
    QLabel* m_LabelBottom;
    QLabel* m_LabelWidth;
    QLabel* m_LabelHeight;
    QLabel* m_LabelErrorVertical;
    QLabel* m_LabelErrorHorizontal;
    QPushButton* m_BtnFull;
    QPushButton* m_BtnHalf;
    QPushButton* m_BtnQuarter;
    RubberBandLabel* m_RubberBandLabel;
    QSpinBoxMouseEventFilter* m_FilterTop;
    QSpinBoxMouseEventFilter* m_FilterLeft;
    QSpinBoxMouseEventFilter* m_FilterWidth;
    QSpinBoxMouseEventFilter* m_FilterHeight;
    QDoubleSpinBox* m_SpinExpAutoMin;
    QDoubleSpinBox* m_SpinExpAutoMax;
    QComboBox* m_ComboExpAutoTimebase;
    QLabel* m_LabelExpAutoMin;
    QLabel* m_LabelExpAutoMax;
    QLabel* m_LabelExpAutoTimebase;
    QPushButton* m_BtnExpAutoMinCurrent;
    QPushButton* m_BtnExpAutoMaxCurrent;
};

#endif
