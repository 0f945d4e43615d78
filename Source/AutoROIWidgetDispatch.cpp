// The editor's way from the camera to the screen (the dispatch and the region
// recalculations) and from the user to the camera (the slots of the controls,
// the preview and the presets). Construction, the form and the loading live
// in AutoROIWidget.cpp.

#include "AutoROIWidget.h"

#include "DebugLine.h"
#include "FeatureManager.h"
#include "QSpinBoxMouseEventfilter.h"
#include "Qt4Compat.h"
#include "RegionAxis.h"
#include "Saturating.h"
#include "rubberbandlabel.h"

#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QTimer>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <limits>

namespace {

// After an edit or a preset, the camera's answer is shown this many
// milliseconds later instead of at the next tick.
const int RefreshDelay = 200;

// For this many milliseconds after a dropped band the size check keeps quiet,
// while the camera takes the new offsets and sizes one by one.
const int TrustedUpdateWindow = 250;

// Gives value to the first of names that the camera has; a camera that has
// none of them gets nothing.
void SetFirstExisting(FeatureManager* features, std::initializer_list<const char*> names,
                      double value)
{
    for (const char* name : names) {
        if (features->HasFeature(name)) {
            features->SetValue(name, value);
            return;
        }
    }
}

// A feature range that can't be read leaves min and max at -1.0; the editor
// can't work on such a camera and stops here.
void AssertRange(double featureMin, double featureMax)
{
    Q_ASSERT(featureMin >= 0.0 && featureMin <= featureMax);
}

// Raises value to the next point of the spin box's grid, counted from its
// minimum; a value on the grid stays.
// Worked in 64 bits, where no sum of such numbers overflows; a grid point
// beyond the range of int is limited to it.
int SnapUpToGrid(int value, const QDoubleSpinBox* spin)
{
    const qint64 step = SaturatingCast<int>(spin->singleStep());
    const qint64 minimum = SaturatingCast<int>(spin->minimum());
    const qint64 difference = value - minimum;
    const qint64 base = step == 0 ? 0 : difference / step * step;
    const qint64 remainder = difference - base;
    if (remainder == 0) {
        return value;
    }
    return SaturatingNarrow<int>(minimum + base + (remainder > 0 ? step : 0));
}

// Writes a pair of edges so that the near edge never passes the far one on
// the camera: a pair that moves towards larger values goes far edge first.
void WriteEdgePair(qint64 presentNear, qint64 presentFar, qint64 nearEdge, qint64 farEdge,
                   const std::function<void(double)>& writeNear,
                   const std::function<void(double)>& writeFar)
{
    if (presentNear < nearEdge && presentFar < farEdge) {
        writeFar(farEdge);
        writeNear(nearEdge);
    } else {
        writeNear(nearEdge);
        writeFar(farEdge);
    }
}

// Writes a limit of automatic exposure that the user set in spin. With an
// increment and decimals, half a unit of the last decimal is added and the
// number passes through single precision; nothing is cut off, and the
// slightly raised single-precision result is the value meant to be written.
void WriteExposureLimit(FeatureManager* features, const char* limit, const QDoubleSpinBox* spin,
                        double value)
{
    const int decimals = spin->decimals();
    if (features->GetIncrement(limit) > 0.0 && decimals > 0) {
        const int scale = int(std::pow(10.0, decimals));
        const float shifted = ToSinglePrecision(std::fma(double(scale), value, 0.5));
        value = double(shifted / float(scale));
    }
    features->SetValue(limit, value);
}

} // namespace

void AutoROIWidget::HandleChangedFeatures()
{
    // The band belongs to the user while a drag lasts.
    if (m_RubberBandLabel->IsDragging()) {
        return;
    }

    if (ui.gb_AutoROI->maximumWidth() < QWIDGETSIZE_MAX) {
        DebugLine() << ui.gb_AutoROI->maximumWidth();
        ui.gb_AutoROI->setMaximumWidth(QWIDGETSIZE_MAX);
    }

    BlockControlSignals(true);
    const QStringList& changed = *m_ChangedFeatures;
    DispatchRegionChanges(changed);
    DispatchExposureAutoChanges(changed);
    SetControlsEnabled(!m_CamIsStreaming);
    BlockControlSignals(false);
}

void AutoROIWidget::DispatchRegionChanges(const QStringList& changed)
{
    if (changed.contains("DSPSubregionTop")) {
        UpdateTopFromFeature();
    }
    if (changed.contains("DSPSubregionLeft")) {
        UpdateLeftFromFeature();
    }
    if (changed.contains("DSPSubregionRight")) {
        UpdateRightFromFeature();
    }
    if (changed.contains("DSPSubregionBottom")) {
        UpdateBottomFromFeature();
    }
    if (changed.contains("Height") || changed.contains("Width")) {
        RebuildPreview();
    }
    if (changed.contains("AutofunctionAOIHeight") || changed.contains("AutoModeRegionHeight")) {
        UpdateHeightFromFeature();
    }
    if (changed.contains("AutofunctionAOIWidth") || changed.contains("AutoModeRegionWidth")) {
        UpdateWidthFromFeature();
    }
    if (changed.contains("AutofunctionAOIOffsetX") || changed.contains("AutoModeRegionOffsetX")) {
        UpdateLeftFromFeature();
        LoadEnableState();
    }
    if (changed.contains("AutofunctionAOIOffsetY") || changed.contains("AutoModeRegionOffsetY")) {
        UpdateTopFromFeature();
        LoadEnableState();
    }
    if (changed.contains("AutofunctionAOIEnable")) {
        LoadShowAreaState();
        LoadEnableState();
    }
    if (changed.contains("AutofunctionAOIShowArea")) {
        LoadShowAreaState();
        LoadEnableState();
    }
}

void AutoROIWidget::DispatchExposureAutoChanges(const QStringList& changed)
{
    if (changed.contains("ExposureAutoMin")) {
        RefreshExposureLimit("ExposureAutoMin", m_SpinExpAutoMin);
    }
    if (changed.contains("ExposureAutoMax")) {
        RefreshExposureLimit("ExposureAutoMax", m_SpinExpAutoMax);
    }
    if (changed.contains("ExposureAutoTimebase")) {
        ReloadExposureAutoRanges();
    }
}

// A new time base changes the unit of both limits, so their ranges are taken
// again.
void AutoROIWidget::ReloadExposureAutoRanges()
{
    double minMin = 0.0;
    double minMax = 0.0;
    const double minValue = m_FeatureManager->GetValueRange("ExposureAutoMin", &minMin, &minMax);
    double maxMin = 0.0;
    double maxMax = 0.0;
    const double maxValue = m_FeatureManager->GetValueRange("ExposureAutoMax", &maxMin, &maxMax);
    FillComboBox("ExposureAutoTimebase", m_ComboExpAutoTimebase, false);
    m_SpinExpAutoMin->setRange(minMin, minMax);
    m_SpinExpAutoMin->setValue(minValue);
    m_SpinExpAutoMax->setRange(maxMin, maxMax);
    m_SpinExpAutoMax->setValue(maxValue);
}

// Shows a limit of automatic exposure as the camera has it, within the ranges
// that the last time base gave the spin box.
void AutoROIWidget::RefreshExposureLimit(const char* limit, QDoubleSpinBox* spin)
{
    if (m_FeatureManager->HasFeature("ExposureAutoTimebase")) {
        FillComboBox("ExposureAutoTimebase", m_ComboExpAutoTimebase, false);
    }
    spin->setValue(m_FeatureManager->GetValue(limit));
}

void AutoROIWidget::camIsStreaming(bool streaming)
{
    if (!m_FeatureManager->HasFeature("AutoModeRegionWidth")) {
        return;
    }
    // The state before the change is applied now; the new one takes effect
    // at the end of the next dispatch.
    SetControlsEnabled(!m_CamIsStreaming);
    m_CamIsStreaming = streaming;
}

void AutoROIWidget::OnSpinTopValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager,
                     {"DSPSubregionTop", "AutofunctionAOIOffsetY", "AutoModeRegionOffsetY"}, value);
}

void AutoROIWidget::OnSpinLeftValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager,
                     {"DSPSubregionLeft", "AutofunctionAOIOffsetX", "AutoModeRegionOffsetX"},
                     value);
}

void AutoROIWidget::OnSpinRightValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager, {"DSPSubregionRight"}, value);
}

void AutoROIWidget::OnSpinBottomValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager, {"DSPSubregionBottom"}, value);
}

void AutoROIWidget::OnSpinWidthValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager, {"AutofunctionAOIWidth", "AutoModeRegionWidth"}, value);
}

void AutoROIWidget::OnSpinHeightValueChanged(double value)
{
    SetFirstExisting(m_FeatureManager, {"AutofunctionAOIHeight", "AutoModeRegionHeight"}, value);
}

void AutoROIWidget::OnSpinEditingFinished()
{
    // Show the camera's answer without waiting for the next tick.
    QTimer::singleShot(RefreshDelay, this, SLOT(updateTimer()));
}

void AutoROIWidget::OnEnableStateChanged(int state)
{
    if (!m_FeatureManager->HasFeature("AutofunctionAOIEnable")) {
        return;
    }
    if (!ProcessPendingEvents()) {
        return;
    }
    m_FeatureManager->SetValue("AutofunctionAOIEnable", state > 0 ? 1.0 : 0.0);
    QTimer::singleShot(RefreshDelay, this, SLOT(updateTimer()));
}

void AutoROIWidget::OnShowAreaStateChanged(int state)
{
    m_FeatureManager->SetValue("AutofunctionAOIShowArea", state > 0 ? 1.0 : 0.0);
}

void AutoROIWidget::OnResetTrustedUpdate()
{
    m_TrustedUpdate = false;
}

RegionAxis AutoROIWidget::HorizontalAxis() const
{
    RegionAxis axis;
    axis.spinOffset = m_SpinLeft;
    axis.spinFarEdge = m_SpinRight;
    axis.spinSize = m_SpinWidth;
    axis.labelError = m_LabelErrorHorizontal;
    axis.filterSize = m_FilterWidth;
    axis.referenceSize = m_ROIWidth;
    axis.dspOffset = "DSPSubregionLeft";
    axis.dspFarEdge = "DSPSubregionRight";
    axis.autofunctionOffset = "AutofunctionAOIOffsetX";
    axis.autoModeOffset = "AutoModeRegionOffsetX";
    axis.autofunctionSize = "AutofunctionAOIWidth";
    axis.autoModeSize = "AutoModeRegionWidth";
    axis.imageOffset = "OffsetX";
    axis.sizeMessage = QT_TRANSLATE_NOOP("AutoROIWidget", "Invalid settings: Width + OffsetX > ");
    axis.sizeSuffix = QT_TRANSLATE_NOOP("AutoROIWidget", " Width");
    axis.offsetPastFarEdge = QT_TRANSLATE_NOOP("AutoROIWidget", "Left > Right! ");
    axis.offsetPastReference = QT_TRANSLATE_NOOP("AutoROIWidget", "Left > ROI Width! ");
    axis.farEdgePastReference = QT_TRANSLATE_NOOP("AutoROIWidget", "Right > ROI Width! ");
    axis.truncateFarEdgeInOrderCheck = false;
    axis.readImageOffsetAtCheck = false;
    return axis;
}

RegionAxis AutoROIWidget::VerticalAxis() const
{
    RegionAxis axis;
    axis.spinOffset = m_SpinTop;
    axis.spinFarEdge = m_SpinBottom;
    axis.spinSize = m_SpinHeight;
    axis.labelError = m_LabelErrorVertical;
    axis.filterSize = m_FilterHeight;
    axis.referenceSize = m_ROIHeight;
    axis.dspOffset = "DSPSubregionTop";
    axis.dspFarEdge = "DSPSubregionBottom";
    axis.autofunctionOffset = "AutofunctionAOIOffsetY";
    axis.autoModeOffset = "AutoModeRegionOffsetY";
    axis.autofunctionSize = "AutofunctionAOIHeight";
    axis.autoModeSize = "AutoModeRegionHeight";
    axis.imageOffset = "OffsetY";
    axis.sizeMessage = QT_TRANSLATE_NOOP("AutoROIWidget", "Invalid settings: Height + OffsetY > ");
    axis.sizeSuffix = QT_TRANSLATE_NOOP("AutoROIWidget", " Height");
    axis.offsetPastFarEdge = QT_TRANSLATE_NOOP("AutoROIWidget", "Top > Bottom! ");
    axis.offsetPastReference = QT_TRANSLATE_NOOP("AutoROIWidget", "Top > ROI Height! ");
    axis.farEdgePastReference = QT_TRANSLATE_NOOP("AutoROIWidget", "Bottom > ROI Height! ");
    axis.truncateFarEdgeInOrderCheck = true;
    axis.readImageOffsetAtCheck = true;
    return axis;
}

void AutoROIWidget::UpdateWidthFromFeature()
{
    UpdateSizeFromFeature(HorizontalAxis());
}

void AutoROIWidget::UpdateLeftFromFeature()
{
    UpdateOffsetFromFeature(HorizontalAxis());
}

void AutoROIWidget::UpdateRightFromFeature()
{
    UpdateFarEdgeFromFeature(HorizontalAxis());
}

void AutoROIWidget::UpdateHeightFromFeature()
{
    UpdateSizeFromFeature(VerticalAxis());
}

void AutoROIWidget::UpdateTopFromFeature()
{
    UpdateOffsetFromFeature(VerticalAxis());
}

void AutoROIWidget::UpdateBottomFromFeature()
{
    UpdateFarEdgeFromFeature(VerticalAxis());
}

// AutoMode regions count in the coordinates in which the image's own offset
// counts too; every other family has no such shift.
int AutoROIWidget::ImageOffset(const RegionAxis& axis)
{
    if (!m_FeatureManager->HasFeature(axis.autoModeOffset)) {
        return 0;
    }
    return SaturatingCast<int>(m_FeatureManager->GetValue(axis.imageOffset));
}

void AutoROIWidget::UpdateSizeFromFeature(const RegionAxis& axis)
{
    if (m_FeatureManager->HasFeature(axis.dspFarEdge)) {
        // Four-edge cameras have no size feature: the size is derived and
        // has no upper limit of its own. Qt rounds each limit through its
        // decimal text, 309 digits for the largest double, and measures the
        // box anew after every setRange: the range, once set, is not set again.
        const double farEdge = axis.spinFarEdge->value();
        const double offset = axis.spinOffset->value();
        const double unlimited = std::numeric_limits<double>::max();
        if (axis.spinSize->minimum() != 0.0 || axis.spinSize->maximum() != unlimited) {
            axis.spinSize->setRange(0.0, unlimited);
        }
        axis.spinSize->setValue(farEdge - offset);
    } else if (m_FeatureManager->HasFeature(axis.autofunctionSize, axis.autoModeSize)) {
        double featureMin = -1.0;
        double featureMax = -1.0;
        const double value = m_FeatureManager->GetValueRange(
            axis.autofunctionSize, axis.autoModeSize, &featureMin, &featureMax);
        AssertRange(featureMin, featureMax);
        axis.spinSize->setRange(featureMin, featureMax);
        const qint64 size = SaturatingCast<qint64>(value);
        axis.spinSize->setValue(size);

        // An AutoMode camera narrows the permitted offset as the size grows.
        if (m_FeatureManager->HasFeature(axis.autoModeOffset)) {
            double offsetMin = 0.0;
            double offsetMax = 0.0;
            m_FeatureManager->GetValueRange(axis.autoModeOffset, &offsetMin, &offsetMax);
            axis.spinOffset->setMaximum(offsetMax);
        }
        const qint64 offset = SaturatingCast<qint64>(
            m_FeatureManager->GetValue(axis.autofunctionOffset, axis.autoModeOffset));
        axis.spinOffset->setValue(offset);
        const int imageOffset = ImageOffset(axis);
        CheckRegionSize(axis, double(size), double(offset), imageOffset);
    }
    UpdatePreviewFromSpinBoxes();
}

void AutoROIWidget::UpdateOffsetFromFeature(const RegionAxis& axis)
{
    if (m_FeatureManager->HasFeature(axis.dspOffset)) {
        double featureMin = -1.0;
        double featureMax = -1.0;
        const double offset =
            m_FeatureManager->GetValueRange(axis.dspOffset, &featureMin, &featureMax);
        AssertRange(featureMin, featureMax);
        axis.spinOffset->setRange(featureMin, featureMax);
        axis.spinOffset->setValue(offset);

        const double farEdge = axis.spinFarEdge->value();
        const double farForOrder =
            axis.truncateFarEdgeInOrderCheck ? double(SaturatingCast<quint64>(farEdge)) : farEdge;
        ShowEdgeMessages(axis, offset, farForOrder, farEdge);
        UpdateSizeFromFeature(axis);
    } else if (m_FeatureManager->HasFeature(axis.autofunctionOffset, axis.autoModeOffset)) {
        int imageOffset = 0;
        if (!axis.readImageOffsetAtCheck) {
            imageOffset = ImageOffset(axis);
        }

        double featureMin = -1.0;
        double featureMax = -1.0;
        const double offset = m_FeatureManager->GetValueRange(
            axis.autofunctionOffset, axis.autoModeOffset, &featureMin, &featureMax);
        AssertRange(featureMin, featureMax);
        axis.spinOffset->setRange(featureMin, featureMax);
        axis.spinOffset->setValue(offset);

        featureMin = -1.0;
        featureMax = -1.0;
        const double size = m_FeatureManager->GetValueRange(
            axis.autofunctionSize, axis.autoModeSize, &featureMin, &featureMax);
        AssertRange(featureMin, featureMax);
        axis.spinSize->setRange(featureMin, featureMax);
        axis.spinSize->setValue(size);
        axis.spinFarEdge->setValue(offset + size);

        // An Autofunction camera leaves the size room up to the reference
        // edge, unless the user is holding the size spin box right now.
        if (!axis.filterSize->IsMousePressed() &&
            m_FeatureManager->HasFeature(axis.autofunctionOffset)) {
            axis.spinSize->setMaximum(double(axis.referenceSize) - offset);
        }

        if (axis.readImageOffsetAtCheck) {
            imageOffset = ImageOffset(axis);
        }
        CheckRegionSize(axis, size, offset, imageOffset);
    }
    UpdatePreviewFromSpinBoxes();
}

void AutoROIWidget::UpdateFarEdgeFromFeature(const RegionAxis& axis)
{
    if (m_FeatureManager->HasFeature(axis.dspFarEdge)) {
        double featureMin = -1.0;
        double featureMax = -1.0;
        const double value =
            m_FeatureManager->GetValueRange(axis.dspFarEdge, &featureMin, &featureMax);
        AssertRange(featureMin, featureMax);
        axis.spinFarEdge->setRange(featureMin, featureMax);
        const qint64 farEdge = SaturatingCast<qint64>(value);
        axis.spinFarEdge->setValue(farEdge);

        ShowEdgeMessages(axis, axis.spinOffset->value(), double(farEdge), double(farEdge));
        UpdateSizeFromFeature(axis);
    }
    UpdatePreviewFromSpinBoxes();
}

// Reports a region that reaches past the reference size and switches the
// camera's region off, unless the offset and the size are known to be on
// their way to a region that fits.
void AutoROIWidget::CheckRegionSize(const RegionAxis& axis, double size, double offset,
                                    int imageOffset)
{
    axis.labelError->hide();
    const bool tooLarge = size + offset - imageOffset > double(axis.referenceSize);
    if (!tooLarge || m_TrustedUpdate) {
        return;
    }

    const QString family =
        m_FeatureManager->HasFeature(axis.autofunctionSize) ? tr("AOI") : tr("ROI");
    axis.labelError->setText(tr(axis.sizeMessage) + family + tr(axis.sizeSuffix));
    axis.labelError->show();
    if (isVisible()) {
        OnEnableStateChanged(0);
    }
}

// The edges of a four-edge camera are shown as the camera has them; what is
// wrong with them is only told.
void AutoROIWidget::ShowEdgeMessages(const RegionAxis& axis, double offset, double farForOrder,
                                     double farEdge)
{
    axis.labelError->hide();
    QString message = tr("Invalid settings: ");
    if (offset > farForOrder) {
        message += tr(axis.offsetPastFarEdge);
        axis.labelError->show();
    }
    if (offset > double(axis.referenceSize)) {
        message += tr(axis.offsetPastReference);
        axis.labelError->show();
    }
    if (farEdge > double(axis.referenceSize)) {
        message += tr(axis.farEdgePastReference);
        axis.labelError->show();
    }
    axis.labelError->setText(message);
}

void AutoROIWidget::OnGeometryChangeStarted()
{
    // No camera value may move the band while the user drags it.
    StopUpdateTimer();
}

void AutoROIWidget::OnUpdateGeometry(int top, int left, int width, int height)
{
    BlockControlSignals(true);
    const int offsetX = ImageOffset(HorizontalAxis());
    const int offsetY = ImageOffset(VerticalAxis());
    SetRegionSpinBoxes(top, left, width, height, offsetX, offsetY);
    BlockControlSignals(false);
}

void AutoROIWidget::OnSendGeometry(int top, int left, int width, int height)
{
    const int offsetX = ImageOffset(HorizontalAxis());
    const int offsetY = ImageOffset(VerticalAxis());
    SetRegionSpinBoxes(top, left, width, height, offsetX, offsetY);

    if (m_FeatureManager->HasFeature("DSPSubregionTop")) {
        const qint64 presentTop =
            SaturatingCast<qint64>(m_FeatureManager->GetValue("DSPSubregionTop"));
        const qint64 presentLeft =
            SaturatingCast<qint64>(m_FeatureManager->GetValue("DSPSubregionLeft"));
        const qint64 presentRight =
            SaturatingCast<qint64>(m_FeatureManager->GetValue("DSPSubregionRight"));
        const qint64 presentBottom =
            SaturatingCast<qint64>(m_FeatureManager->GetValue("DSPSubregionBottom"));
        WriteEdgePair(
            presentLeft, presentRight, left, qint64(left) + width,
            [this](double value) { OnSpinLeftValueChanged(value); },
            [this](double value) { OnSpinRightValueChanged(value); });
        WriteEdgePair(
            presentTop, presentBottom, top, qint64(top) + height,
            [this](double value) { OnSpinTopValueChanged(value); },
            [this](double value) { OnSpinBottomValueChanged(value); });
    } else if (m_FeatureManager->HasFeature("AutofunctionAOIHeight", "AutoModeRegionHeight")) {
        left = SnapUpToGrid(left, m_SpinLeft);
        top = SnapUpToGrid(top, m_SpinTop);
        const int roiHeight = int(m_ROIHeight);
        const int roiWidth = int(m_ROIWidth);
        const int roomHeight = SaturatingNarrow<int>(qint64(roiHeight) - top);
        const int roomWidth = SaturatingNarrow<int>(qint64(roiWidth) - left);
        m_SpinHeight->setMaximum(roomHeight);
        m_SpinWidth->setMaximum(roomWidth);
        if (roomHeight < height) {
            height = roomHeight;
        }
        if (roomWidth < width) {
            width = roomWidth;
        }

        // Between the offset and the size writes the camera can hold a new
        // offset with the old size; the size check keeps quiet meanwhile.
        if (top < roiHeight && left < roiWidth) {
            m_TrustedUpdate = true;
        }
        OnSpinLeftValueChanged(double(left) + offsetX);
        OnSpinTopValueChanged(double(top) + offsetY);
        OnSpinHeightValueChanged(height);
        OnSpinWidthValueChanged(width);
        if (!ProcessPendingEvents()) {
            return;
        }
        QTimer::singleShot(TrustedUpdateWindow, this, SLOT(OnResetTrustedUpdate()));
    }
    StartUpdateTimer();
}

// Shows a rectangle of the preview, in image pixels, in the spin boxes.
void AutoROIWidget::SetRegionSpinBoxes(int top, int left, int width, int height, int offsetX,
                                       int offsetY)
{
    // Summed in double, which holds every sum of ints exactly.
    m_SpinTop->setValue(double(top) + offsetY);
    m_SpinLeft->setValue(double(left) + offsetX);
    m_SpinRight->setValue(double(left) + width + offsetX);
    m_SpinBottom->setValue(double(top) + height + offsetY);
    m_SpinWidth->setValue(width);
    m_SpinHeight->setValue(height);
}

void AutoROIWidget::SetFullArea()
{
    const quint64 height = GetROIHeight();
    const quint64 width = GetROIWidth();
    if (height > m_ROIHeight) {
        m_FeatureManager->SetValue("Height", double(height));
    }
    if (width > m_ROIWidth) {
        m_FeatureManager->SetValue("Width", double(width));
    }
    const int offsetX = ImageOffset(HorizontalAxis());
    const int offsetY = ImageOffset(VerticalAxis());
    m_SpinWidth->setMaximum(double(width) + offsetX);
    m_SpinHeight->setMaximum(double(height) + offsetY);
}

void AutoROIWidget::OnROIFull()
{
    SetFullArea();
    m_SpinLeft->setValue(m_SpinLeft->minimum());
    m_SpinTop->setValue(m_SpinTop->minimum());
    m_SpinHeight->setValue(m_ROIHeight);
    m_SpinWidth->setValue(m_ROIWidth);
    m_SpinRight->setValue(m_ROIWidth - m_SpinLeft->minimum());
    m_SpinBottom->setValue(m_ROIHeight - m_SpinTop->minimum());
    QTimer::singleShot(RefreshDelay, this, SLOT(updateTimer()));
}

void AutoROIWidget::OnROIHalf()
{
    SetCentredArea(0.5);
}

void AutoROIWidget::OnROIQuarter()
{
    SetCentredArea(0.25);
}

// A region of the given share of each side, centred on the image.
void AutoROIWidget::SetCentredArea(double sideFactor)
{
    SetFullArea();
    const int width = SaturatingCast<int>(m_ROIWidth * sideFactor);
    const int height = SaturatingCast<int>(m_ROIHeight * sideFactor);
    const int offsetX = ImageOffset(HorizontalAxis());
    const int offsetY = ImageOffset(VerticalAxis());
    const double left = offsetX + (double(m_ROIWidth) - width) * 0.5;
    const double top = offsetY + (double(m_ROIHeight) - height) * 0.5;

    m_SpinLeft->setValue(left);
    m_SpinTop->setValue(top);
    // The position is written even where the spin boxes didn't change.
    OnSpinLeftValueChanged(left);
    OnSpinTopValueChanged(top);
    m_SpinHeight->setValue(height);
    m_SpinWidth->setValue(width);
    m_SpinRight->setValue(offsetX + m_SpinLeft->value() + width);
    m_SpinBottom->setValue(offsetY + m_SpinTop->value() + height);
    QTimer::singleShot(RefreshDelay, this, SLOT(updateTimer()));
}

void AutoROIWidget::OnSpinExpAutoMinChanged(double value)
{
    WriteExposureLimit(m_FeatureManager, "ExposureAutoMin", m_SpinExpAutoMin, value);
}

void AutoROIWidget::OnSpinExpAutoMaxChanged(double value)
{
    WriteExposureLimit(m_FeatureManager, "ExposureAutoMax", m_SpinExpAutoMax, value);
}

void AutoROIWidget::OnExpAutoTimebaseChanged(QString value)
{
    // Only ASCII reaches the camera: ToAscii keeps Latin-1, so the rest of
    // the upper half goes the way of every other character it can't encode.
    QByteArray ascii = Qt4Compat::ToAscii(value);
    for (char& byte : ascii) {
        if (static_cast<unsigned char>(byte) > 0x7f) {
            byte = '?';
        }
    }
    m_FeatureManager->SetValue("ExposureAutoTimebase", Qt4Compat::FromAscii(ascii));
}

void AutoROIWidget::OnBtnExpAutoMinCurrentClicked()
{
    // The spin box writes the limit through its own slot if the value changes.
    m_SpinExpAutoMin->setValue(m_FeatureManager->GetValue("ExposureTime", "ExposureTimeAbs"));
}

void AutoROIWidget::OnBtnExpAutoMaxCurrentClicked()
{
    m_SpinExpAutoMax->setValue(m_FeatureManager->GetValue("ExposureTime", "ExposureTimeAbs"));
}
