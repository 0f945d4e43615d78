#include "AutoROIWidget.h"

#include "FeatureManager.h"
#include "QSpinBoxMouseEventfilter.h"
#include "RegionAxis.h"
#include "Saturating.h"
#include "TabExtensionException.h"
#include "rubberbandlabel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTranslator>

#include <cmath>

namespace {

// The whole part of a value read from the camera, as the reference size
// keeps it. Going through a signed integer keeps the -1.0 of a failed read
// defined; a camera that reports a step of 0 makes the stepped sizes not a
// number, and such a size counts as 0.
quint64 TruncateToSize(double value)
{
    if (!std::isfinite(value)) {
        return 0;
    }
    return quint64(SaturatingCast<qint64>(value));
}

// increment * (value / increment), which the reference size is made of. A
// step of 0 makes it NaN, as the division would, without dividing by zero.
double WholeSteps(double value, double increment)
{
    return increment * Divide(value, increment);
}

} // namespace

AutoROIWidget::AutoROIWidget(const QSharedPointer<FeatureVector>& features, QWidget* parent)
    : BaseTabPluginWidget(features, parent)
{
    AcceptCamera(parent);

    QTranslator* translator = LoadTranslator("tabextensionautoaoi");
    if (!translator->isEmpty()) {
        QCoreApplication::installTranslator(translator);
    }

    WatchFeatures();
    ui.setupUi(this);
    // Observers only collect names until the tab is shown, so they can go on
    // before the controls exist.
    RegisterObservers(false);
    BuildRegionGroup();
    BuildExposureAutoGroup();
    LoadExposureAuto();
    LoadRegion();

    // A DSP region whose edges cross or leave the image is set to the whole
    // image the way the user would do it.
    if (m_FeatureManager->HasFeature("DSPSubregionLeft") && !IsDSPRegionValid()) {
        m_BtnFull->click();
    }
}

// Names the tab and its page by the camera's family, or refuses a camera of
// none. The title is translated before this tab's translator is installed,
// so the first tab of a process is named in the source language.
void AutoROIWidget::AcceptCamera(QWidget* parent)
{
    QString title;
    if (m_FeatureManager->HasFeature("DSPSubregionLeft", "AutofunctionAOIOffsetX") ||
        m_FeatureManager->HasFeature("AutoModeRegionHeight")) {
        title = m_FeatureManager->HasFeature("AutofunctionAOIOffsetX") ? tr("Autofunction AOI")
                                                                       : tr("Autofunction ROI");
    }
    if (parent) {
        parent->setAccessibleName(title);
    }
    setAccessibleName(title);
    if (title.isEmpty()) {
        throw TENotSupported("AutoROIWidget",
                             "camera does not support auto AOI, widget not created");
    }
}

// The features of every family are watched, whichever the camera has.
void AutoROIWidget::WatchFeatures()
{
    m_ObservedFeatures << "Height"
                       << "Width"
                       << "DSPSubregionTop"
                       << "DSPSubregionLeft"
                       << "DSPSubregionRight"
                       << "DSPSubregionBottom"
                       << "AutofunctionAOIHeight"
                       << "AutofunctionAOIWidth"
                       << "AutofunctionAOIOffsetX"
                       << "AutofunctionAOIOffsetY"
                       << "AutoModeRegionHeight"
                       << "AutoModeRegionWidth"
                       << "AutoModeRegionOffsetX"
                       << "AutoModeRegionOffsetY"
                       << "AutofunctionAOIEnable"
                       << "AutofunctionAOIShowArea"
                       << "ExposureAutoMin"
                       << "ExposureAutoMax"
                       << "ExposureAutoTimebase";
}

AutoROIWidget::~AutoROIWidget()
{
    // The accessible name marks an editor whose controls are its own to free;
    // with it cleared, everything is left to the widget tree.
    if (accessibleName() == "") {
        return;
    }

    // The two Current buttons, the inner region group and the time base
    // placeholders are left to the widget tree. The filters have no parent.
    const QList<QObject*> owned = {m_CheckEnable,
                                   m_CheckShowArea,
                                   m_SpinTop,
                                   m_SpinLeft,
                                   m_SpinRight,
                                   m_SpinBottom,
                                   m_SpinWidth,
                                   m_SpinHeight,
                                   m_LabelEnable,
                                   m_LabelShowArea,
                                   m_LabelTop,
                                   m_LabelLeft,
                                   m_LabelRight,
                                   m_LabelBottom,
                                   m_LabelWidth,
                                   m_LabelHeight,
                                   m_LabelErrorVertical,
                                   m_LabelErrorHorizontal,
                                   m_BtnFull,
                                   m_BtnHalf,
                                   m_BtnQuarter,
                                   m_RubberBandLabel,
                                   m_FilterTop,
                                   m_FilterLeft,
                                   m_FilterWidth,
                                   m_FilterHeight,
                                   m_SpinExpAutoMin,
                                   m_SpinExpAutoMax,
                                   m_ComboExpAutoTimebase,
                                   m_LabelExpAutoMin,
                                   m_LabelExpAutoMax,
                                   m_LabelExpAutoTimebase};
    qDeleteAll(owned);
}

// The preview, then the inner region group: its controls, its grid and the
// connections of the controls.
void AutoROIWidget::BuildRegionGroup()
{
    m_ROIWidth = GetROIWidth();
    m_ROIHeight = GetROIHeight();
    // Lifted by the first feature dispatch.
    ui.gb_AutoROI->setMaximumWidth(350);
    if (m_FeatureManager->HasFeature("AutofunctionAOIHeight")) {
        ui.gb_AutoROI->setTitle(tr("Autofunction AOI"));
    } else if (m_FeatureManager->HasFeature("AutoModeRegionHeight")) {
        ui.gb_AutoROI->setTitle(tr("AutoMode ROI"));
    } else {
        ui.gb_AutoROI->setTitle(tr("Autofunction ROI"));
    }
    MakePreview();
    connect(m_RubberBandLabel, SIGNAL(GeometryChangeStarted()), this,
            SLOT(OnGeometryChangeStarted()));

    QGroupBox* regionGroup = MakeRegionGroupBox();
    MakeRegionControls();
    regionGroup->setLayout(MakeRegionGrid());
    ui.grid_AutoROI->addWidget(regionGroup, 1, 0, 1, 1, Qt::AlignTop);
    ConnectRegionControls();
}

QGroupBox* AutoROIWidget::MakeRegionGroupBox()
{
    QGroupBox* regionGroup = new QGroupBox;
    regionGroup->setFixedHeight(200);
    regionGroup->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    if (m_FeatureManager->HasFeature("AutofunctionAOIHeight")) {
        regionGroup->setTitle(tr("Autofunction AOI"));
    } else if (m_FeatureManager->HasFeature("DSPSubregionTop")) {
        regionGroup->setTitle(tr("DSPSubregion"));
    } else {
        regionGroup->setTitle(tr("AutoModeRegion"));
    }
    return regionGroup;
}

// The spin boxes with their filters, their captions and the message lines;
// the check boxes and buttons are made with the grid.
void AutoROIWidget::MakeRegionControls()
{
    m_SpinTop = new QDoubleSpinBox;
    m_SpinLeft = new QDoubleSpinBox;
    m_SpinRight = new QDoubleSpinBox;
    m_SpinBottom = new QDoubleSpinBox;
    m_SpinWidth = new QDoubleSpinBox;
    m_SpinHeight = new QDoubleSpinBox;
    m_FilterTop = new QSpinBoxMouseEventFilter;
    m_SpinTop->installEventFilter(m_FilterTop);
    m_FilterLeft = new QSpinBoxMouseEventFilter;
    m_SpinLeft->installEventFilter(m_FilterLeft);
    m_FilterWidth = new QSpinBoxMouseEventFilter;
    m_SpinWidth->installEventFilter(m_FilterWidth);
    m_FilterHeight = new QSpinBoxMouseEventFilter;
    m_SpinHeight->installEventFilter(m_FilterHeight);
    const QList<QDoubleSpinBox*> regionSpins = {m_SpinTop,    m_SpinLeft,  m_SpinRight,
                                                m_SpinBottom, m_SpinWidth, m_SpinHeight};
    for (QDoubleSpinBox* spin : regionSpins) {
        spin->setKeyboardTracking(false);
    }
    for (QDoubleSpinBox* spin : regionSpins) {
        SetupSpinBox(spin);
    }

    m_LabelTop =
        new QLabel(m_FeatureManager->HasFeature("DSPSubregionTop") ? tr("Top:") : tr("OffsetY:"));
    m_LabelLeft =
        new QLabel(m_FeatureManager->HasFeature("DSPSubregionLeft") ? tr("Left:") : tr("OffsetX:"));
    m_LabelRight = new QLabel(tr("Right:"));
    m_LabelBottom = new QLabel(tr("Bottom:"));
    m_LabelWidth = new QLabel(tr("Width:"));
    m_LabelHeight = new QLabel(tr("Height:"));
    m_LabelErrorVertical = new QLabel;
    m_LabelErrorHorizontal = new QLabel;
    for (QLabel* label : {m_LabelErrorVertical, m_LabelErrorHorizontal}) {
        label->setStyleSheet("QLabel {color : red; }");
        label->setVisible(false);
    }
}

// The grid of the inner region group, with the optional check boxes, which
// are made and connected as their row is filled, and the preset buttons.
QGridLayout* AutoROIWidget::MakeRegionGrid()
{
    // Each row holds two captioned controls: the caption in column 1 or 5,
    // the control beside it across two columns.
    QGridLayout* grid = new QGridLayout;
    auto addCaptioned = [grid](QLabel* caption, QWidget* control, int row, int column,
                               Qt::Alignment captionAlignment) {
        grid->addWidget(caption, row, column, 1, 1, captionAlignment);
        grid->addWidget(control, row, column + 1, 1, 2);
    };
    if (m_FeatureManager->HasFeature("AutofunctionAOIEnable")) {
        m_CheckEnable = new QCheckBox;
        m_LabelEnable = new QLabel(tr("Enable: "));
        addCaptioned(m_LabelEnable, m_CheckEnable, 0, 1, Qt::AlignCenter);
        connect(m_CheckEnable, SIGNAL(stateChanged(int)), this, SLOT(OnEnableStateChanged(int)));
    }
    if (m_FeatureManager->HasFeature("AutofunctionAOIShowArea")) {
        m_CheckShowArea = new QCheckBox;
        m_LabelShowArea = new QLabel(tr("Show Area: "));
        addCaptioned(m_LabelShowArea, m_CheckShowArea, 0, 5, Qt::AlignCenter);
        connect(m_CheckShowArea, SIGNAL(stateChanged(int)), this,
                SLOT(OnShowAreaStateChanged(int)));
    }
    addCaptioned(m_LabelTop, m_SpinTop, 1, 1, Qt::AlignRight);
    addCaptioned(m_LabelLeft, m_SpinLeft, 1, 5, Qt::AlignRight);
    addCaptioned(m_LabelBottom, m_SpinBottom, 2, 1, Qt::AlignRight);
    addCaptioned(m_LabelRight, m_SpinRight, 2, 5, Qt::AlignRight);
    addCaptioned(m_LabelHeight, m_SpinHeight, 3, 1, Qt::AlignRight);
    addCaptioned(m_LabelWidth, m_SpinWidth, 3, 5, Qt::AlignRight);
    grid->addWidget(m_LabelErrorVertical, 4, 1, 1, 6);
    grid->addWidget(m_LabelErrorHorizontal, 5, 1, 1, 6);

    m_BtnFull = new QPushButton(tr("Full"));
    m_BtnHalf = new QPushButton(tr("1/4"));
    m_BtnQuarter = new QPushButton(tr("1/16"));
    for (QPushButton* button : {m_BtnFull, m_BtnHalf, m_BtnQuarter}) {
        button->setMaximumHeight(18);
    }
    grid->addWidget(m_BtnFull, 6, 2, 1, 1, Qt::AlignLeft);
    grid->addWidget(m_BtnHalf, 6, 3, 1, 3, Qt::AlignCenter);
    grid->addWidget(m_BtnQuarter, 6, 6, 1, 1, Qt::AlignRight);
    return grid;
}

void AutoROIWidget::ConnectRegionControls()
{
    auto connectRegionSpin = [this](QDoubleSpinBox* spin, const char* valueSlot) {
        connect(spin, SIGNAL(valueChanged(double)), this, valueSlot);
        connect(spin, SIGNAL(editingFinished()), this, SLOT(OnSpinEditingFinished()));
    };
    connectRegionSpin(m_SpinTop, SLOT(OnSpinTopValueChanged(double)));
    connectRegionSpin(m_SpinLeft, SLOT(OnSpinLeftValueChanged(double)));
    // The family decides which pair the user edits; the other pair only
    // shows what follows from it.
    if (m_FeatureManager->HasFeature("DSPSubregionBottom")) {
        connectRegionSpin(m_SpinRight, SLOT(OnSpinRightValueChanged(double)));
        connectRegionSpin(m_SpinBottom, SLOT(OnSpinBottomValueChanged(double)));
        m_SpinWidth->setEnabled(false);
        m_SpinHeight->setEnabled(false);
    } else if (m_FeatureManager->HasFeature("AutofunctionAOIHeight", "AutoModeRegionHeight")) {
        connectRegionSpin(m_SpinWidth, SLOT(OnSpinWidthValueChanged(double)));
        connectRegionSpin(m_SpinHeight, SLOT(OnSpinHeightValueChanged(double)));
        m_SpinBottom->setEnabled(false);
        m_SpinRight->setEnabled(false);
    }

    connect(m_BtnFull, SIGNAL(clicked()), this, SLOT(OnROIFull()));
    connect(m_BtnHalf, SIGNAL(clicked()), this, SLOT(OnROIHalf()));
    connect(m_BtnQuarter, SIGNAL(clicked()), this, SLOT(OnROIQuarter()));
}

void AutoROIWidget::BuildExposureAutoGroup()
{
    const bool hasTimebase = m_FeatureManager->HasFeature("ExposureAutoTimebase");
    if (hasTimebase) {
        m_ComboExpAutoTimebase = new QComboBox;
        m_ComboExpAutoTimebase->setMaximumHeight(18);
        m_ComboExpAutoTimebase->setMaximumWidth(100);
    }
    m_SpinExpAutoMin = new QDoubleSpinBox;
    m_SpinExpAutoMax = new QDoubleSpinBox;
    m_BtnExpAutoMinCurrent = new QPushButton(tr("Current"));
    m_BtnExpAutoMaxCurrent = new QPushButton(tr("Current"));
    for (QPushButton* button : {m_BtnExpAutoMinCurrent, m_BtnExpAutoMaxCurrent}) {
        button->setMaximumHeight(18);
        button->setMinimumWidth(50);
        button->setMaximumWidth(100);
    }
    for (QDoubleSpinBox* spin : {m_SpinExpAutoMin, m_SpinExpAutoMax}) {
        SetupSpinBox(spin);
        spin->setMinimumWidth(80);
        spin->setKeyboardTracking(false);
    }
    m_LabelExpAutoMin = new QLabel(tr("Min:"));
    m_LabelExpAutoMax = new QLabel(tr("Max:"));
    if (hasTimebase) {
        m_LabelExpAutoTimebase = new QLabel(tr("Timeb.:"));
        m_LabelExpAutoTimebase->setToolTip(tr("Timebase"));
    }

    QGridLayout* grid = ui.grid_ImageFormat;
    grid->addWidget(m_LabelExpAutoMin, 1, 1, 1, 1, Qt::AlignRight);
    grid->addWidget(m_SpinExpAutoMin, 1, 2, 1, 2);
    grid->addWidget(m_BtnExpAutoMinCurrent, 1, 4, 1, 1);
    grid->addWidget(m_LabelExpAutoMax, 2, 1, 1, 1, Qt::AlignRight);
    grid->addWidget(m_SpinExpAutoMax, 2, 2, 1, 2);
    grid->addWidget(m_BtnExpAutoMaxCurrent, 2, 4, 1, 1);
    if (hasTimebase) {
        grid->addWidget(m_LabelExpAutoTimebase, 1, 5, 1, 1, Qt::AlignRight);
        grid->addWidget(m_ComboExpAutoTimebase, 1, 6, 1, 2);
        connect(m_ComboExpAutoTimebase, SIGNAL(currentIndexChanged(QString)), this,
                SLOT(OnExpAutoTimebaseChanged(QString)));
    } else {
        // Invisible stand-ins keep the columns as wide as with a time base.
        QComboBox* placeholderCombo = new QComboBox;
        placeholderCombo->setVisible(false);
        grid->addWidget(new QLabel, 1, 5, 1, 1, Qt::AlignRight);
        grid->addWidget(placeholderCombo, 1, 6, 1, 2);
    }

    connect(m_SpinExpAutoMin, SIGNAL(valueChanged(double)), this,
            SLOT(OnSpinExpAutoMinChanged(double)));
    connect(m_SpinExpAutoMax, SIGNAL(valueChanged(double)), this,
            SLOT(OnSpinExpAutoMaxChanged(double)));
    connect(m_BtnExpAutoMinCurrent, SIGNAL(clicked()), this, SLOT(OnBtnExpAutoMinCurrentClicked()));
    connect(m_BtnExpAutoMaxCurrent, SIGNAL(clicked()), this, SLOT(OnBtnExpAutoMaxCurrentClicked()));
}

void AutoROIWidget::SetupControl(QWidget* control)
{
    control->setMinimumWidth(60);
    control->setMaximumWidth(90);
    control->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    control->setFocusPolicy(Qt::StrongFocus);
    control->setEnabled(true);
}

void AutoROIWidget::SetupSpinBox(QDoubleSpinBox* spin)
{
    SetupControl(spin);
    spin->setDecimals(0);
}

// The width takes the minimum of the Y offset and only the height discounts
// a size off the step's grid; the two are kept apart as the camera's region
// expects them.
quint64 AutoROIWidget::GetROIWidth()
{
    if (!m_FeatureManager->HasFeature("AutofunctionAOIWidth")) {
        return TruncateToSize(m_FeatureManager->GetValue("Width"));
    }
    double offsetMin = 0.0;
    double offsetMax = 0.0;
    m_FeatureManager->GetValueRange("AutofunctionAOIOffsetY", &offsetMin, &offsetMax);
    const double increment = m_FeatureManager->GetIncrement("AutofunctionAOIWidth");
    double widthMin = 0.0;
    double widthMax = 0.0;
    const double width = m_FeatureManager->GetValueRange("Width", &widthMin, &widthMax);
    return TruncateToSize(offsetMin + WholeSteps(width, increment));
}

quint64 AutoROIWidget::GetROIHeight()
{
    if (!m_FeatureManager->HasFeature("AutofunctionAOIHeight")) {
        return TruncateToSize(m_FeatureManager->GetValue("Height"));
    }
    double heightMin = 0.0;
    double heightMax = 0.0;
    const qint64 height =
        SaturatingCast<qint64>(m_FeatureManager->GetValueRange("Height", &heightMin, &heightMax));
    double offsetMin = 0.0;
    double offsetMax = 0.0;
    m_FeatureManager->GetValueRange("AutofunctionAOIOffsetX", &offsetMin, &offsetMax);
    const double increment = m_FeatureManager->GetIncrement("AutofunctionAOIHeight");
    const qint32 step = SaturatingCast<qint32>(increment);
    // A step of 0 counts no whole steps, so only a height of 0 lies on its
    // grid; every height lies on a grid of -1, also the lowest one, whose
    // remainder the division itself can't give.
    qint64 remainder = height;
    if (step == -1) {
        remainder = 0;
    } else if (step != 0) {
        remainder = height % step;
    }
    const double reduce = remainder == 0 ? 0.0 : heightMin;
    return TruncateToSize(offsetMin + WholeSteps(double(height) - reduce, increment));
}

// The preview at the reference size, in its cell, reporting the geometry
// that the user drags and drops; whether it also reports the start of a
// drag is the caller's choice.
void AutoROIWidget::MakePreview()
{
    m_RubberBandLabel = new RubberBandLabel(int(m_ROIWidth), int(m_ROIHeight), Qt::darkGreen);
    ui.grid_AutoROI->addWidget(m_RubberBandLabel, 0, 0, 1, 1);
    connect(m_RubberBandLabel, SIGNAL(SendGeometry(int, int, int, int)), this,
            SLOT(OnSendGeometry(int, int, int, int)));
    connect(m_RubberBandLabel, SIGNAL(UpdateGeometry(int, int, int, int)), this,
            SLOT(OnUpdateGeometry(int, int, int, int)));
}

QSize AutoROIWidget::PreviewImageSize() const
{
    if (!m_RubberBandLabel->isVisible()) {
        return QSize();
    }
    return QSize(m_RubberBandLabel->GetFittedWidth(), m_RubberBandLabel->GetFittedHeight());
}

// The band stands in image coordinates in every family (an AutoMode region
// is moved by the image's offset before it is placed), so the frame's pixels
// map one to one onto the preview's reference pixels.
void AutoROIWidget::ShowCameraImage(const QImage& image, const QSize& frameSize)
{
    m_RubberBandLabel->SetPicture(image, QRect(QPoint(0, 0), frameSize));
}

// A region of no height or width counts as invalid here, though the
// messages of LoadRegion let it pass.
bool AutoROIWidget::IsDSPRegionValid()
{
    if (!m_FeatureManager->HasFeature("DSPSubregionTop")) {
        return true;
    }
    const double top = m_FeatureManager->GetValue("DSPSubregionTop");
    const double bottom = m_FeatureManager->GetValue("DSPSubregionBottom");
    const double left = m_FeatureManager->GetValue("DSPSubregionLeft");
    const double right = m_FeatureManager->GetValue("DSPSubregionRight");
    const double roiHeight = double(m_ROIHeight);
    const double roiWidth = double(m_ROIWidth);
    return !(top >= bottom || top >= roiHeight || bottom > roiHeight || left >= right ||
             left >= roiWidth || right > roiWidth);
}

// The check boxes stay unblocked: their echo to the camera is wanted.
void AutoROIWidget::BlockControlSignals(bool block)
{
    for (QDoubleSpinBox* spin : {m_SpinTop, m_SpinLeft, m_SpinRight, m_SpinBottom, m_SpinWidth,
                                 m_SpinHeight, m_SpinExpAutoMin, m_SpinExpAutoMax}) {
        spin->blockSignals(block);
    }
    if (m_ComboExpAutoTimebase) {
        m_ComboExpAutoTimebase->blockSignals(block);
    }
}

void AutoROIWidget::LoadExposureAuto()
{
    BlockControlSignals(true);
    if (m_FeatureManager->HasFeature("ExposureAutoTimebase")) {
        FillComboBox("ExposureAutoTimebase", m_ComboExpAutoTimebase, false);
    }
    BlockControlSignals(false);

    // Both limits are read before either spin box is filled. The value is set
    // while the spin box still shows no decimals, so a fractional limit is
    // first rounded to a whole number.
    struct Limit
    {
        double value, minimum, maximum, increment;
    };
    auto readLimit = [this](const QString& name) {
        Limit limit = {0.0, 0.0, 0.0, 1.0};
        limit.value =
            m_FeatureManager->GetValueRange(name, &limit.minimum, &limit.maximum, &limit.increment);
        return limit;
    };
    auto loadLimit = [this](QDoubleSpinBox* spin, const QString& name, const Limit& limit) {
        spin->blockSignals(true);
        spin->setRange(limit.minimum, limit.maximum);
        spin->setValue(limit.value);
        spin->setSingleStep(qMax(limit.increment, 1.0));
        spin->setDecimals(m_FeatureManager->IsFloat(name) ? 2 : 0);
        spin->blockSignals(false);
    };
    const Limit lower = readLimit("ExposureAutoMin");
    const Limit upper = readLimit("ExposureAutoMax");
    loadLimit(m_SpinExpAutoMin, "ExposureAutoMin", lower);
    loadLimit(m_SpinExpAutoMax, "ExposureAutoMax", upper);
}

void AutoROIWidget::LoadRegion()
{
    if (m_FeatureManager->HasFeature("DSPSubregionTop")) {
        LoadEdgeRegion();
    } else if (m_FeatureManager->HasFeature("AutofunctionAOIHeight", "AutoModeRegionHeight")) {
        LoadOffsetRegion();
    }
}

// Nothing is blocked here: a spin box whose shown value changes writes it
// back through its slot.
void AutoROIWidget::LoadEdgeRegion()
{
    struct Edges
    {
        double nearEdge, nearMin, nearMax, farEdge, farMin, farMax;
    };
    // Both edges are bounded by the image size rather than by their own
    // maxima; a far edge beyond it raises its limit so that it still shows.
    auto loadEdges = [this](const char* nearName, const char* farName, const char* imageName,
                            QDoubleSpinBox* nearSpin, QDoubleSpinBox* farSpin) {
        Edges edges = {};
        edges.nearEdge = m_FeatureManager->GetValueRange(nearName, &edges.nearMin, &edges.nearMax);
        edges.farEdge = m_FeatureManager->GetValueRange(farName, &edges.farMin, &edges.farMax);
        double imageMin = 0.0;
        m_FeatureManager->GetValueRange(imageName, &imageMin, &edges.nearMax);
        m_FeatureManager->GetValueRange(imageName, &imageMin, &edges.farMax);
        if (edges.farEdge > edges.farMax) {
            edges.farMax = edges.farEdge;
        }
        nearSpin->setRange(edges.nearMin, edges.nearMax);
        nearSpin->setValue(edges.nearEdge);
        farSpin->setRange(edges.farMin, edges.farMax);
        farSpin->setValue(edges.farEdge);
        return edges;
    };
    const Edges vertical =
        loadEdges("DSPSubregionTop", "DSPSubregionBottom", "Height", m_SpinTop, m_SpinBottom);
    const Edges horizontal =
        loadEdges("DSPSubregionLeft", "DSPSubregionRight", "Width", m_SpinLeft, m_SpinRight);

    ShowEdgeMessages(VerticalAxis(), vertical.nearEdge, vertical.farEdge, vertical.farEdge);
    ShowEdgeMessages(HorizontalAxis(), horizontal.nearEdge, horizontal.farEdge, horizontal.farEdge);

    // The sizes are derived and disabled in this family: a range, no value.
    m_SpinHeight->setRange(vertical.nearMin, vertical.farMax);
    m_SpinWidth->setRange(horizontal.nearMin, horizontal.farMax);

    // Crossed edges give the band a negative size; it is drawn as it is.
    const double roiHeight = double(m_ROIHeight);
    const double roiWidth = double(m_ROIWidth);
    const double top = qMin(vertical.nearEdge, roiHeight);
    const double bottom = qMin(vertical.farEdge, roiHeight);
    const double left = qMin(horizontal.nearEdge, roiWidth);
    const double right = qMin(horizontal.farEdge, roiWidth);
    m_RubberBandLabel->SetBandGeometry(SaturatingCast<int>(top), SaturatingCast<int>(left),
                                       SaturatingCast<int>(right - left),
                                       SaturatingCast<int>(bottom - top));

    ui.gb_AutoROI->setEnabled(m_FeatureManager->IsWritable("DSPSubregionTop") &&
                              m_FeatureManager->IsWritable("DSPSubregionLeft") &&
                              m_FeatureManager->IsWritable("DSPSubregionRight") &&
                              m_FeatureManager->IsWritable("DSPSubregionBottom"));
}

void AutoROIWidget::LoadOffsetRegion()
{
    BlockControlSignals(true);
    LoadEnableState();
    LoadShowAreaState();

    struct Span
    {
        double offset, size;
    };
    // The far edge shows the size counted from the offset's minimum, not
    // from the offset itself; it is disabled in these families.
    auto loadSpan = [this](const RegionAxis& axis) {
        double offsetMin = 0.0;
        double offsetMax = 0.0;
        double offsetStep = 0.0;
        double sizeMin = 0.0;
        double sizeMax = 0.0;
        double sizeStep = 0.0;
        Span span;
        span.offset = m_FeatureManager->GetValueRange(axis.autofunctionOffset, axis.autoModeOffset,
                                                      &offsetMin, &offsetMax, &offsetStep);
        span.size = m_FeatureManager->GetValueRange(axis.autofunctionSize, axis.autoModeSize,
                                                    &sizeMin, &sizeMax, &sizeStep);
        if (m_FeatureManager->HasFeature(axis.autofunctionSize)) {
            sizeMax = double(axis.referenceSize);
        }
        axis.spinOffset->setRange(offsetMin, offsetMax);
        axis.spinOffset->setSingleStep(offsetStep);
        axis.spinOffset->setValue(span.offset);
        axis.spinSize->setRange(sizeMin, sizeMax);
        axis.spinSize->setSingleStep(sizeStep);
        axis.spinSize->setValue(span.size);
        axis.spinFarEdge->setRange(offsetMin, sizeMax + offsetMax);
        axis.spinFarEdge->setValue(span.size + offsetMin);
        return span;
    };
    const Span vertical = loadSpan(VerticalAxis());
    const Span horizontal = loadSpan(HorizontalAxis());
    m_LabelErrorVertical->hide();

    const int offsetX = ImageOffset(HorizontalAxis());
    const int offsetY = ImageOffset(VerticalAxis());
    PlaceOffsetBand(vertical.offset, horizontal.offset, horizontal.size, vertical.size, offsetX,
                    offsetY);

    // Overrides what LoadEnableState gave the group.
    ui.gb_AutoROI->setEnabled(
        m_FeatureManager->IsWritable("AutofunctionAOIHeight", "AutoModeRegionHeight") &&
        m_FeatureManager->IsWritable("AutofunctionAOIWidth", "AutoModeRegionWidth") &&
        m_FeatureManager->IsWritable("AutofunctionAOIOffsetX", "AutoModeRegionOffsetX") &&
        m_FeatureManager->IsWritable("AutofunctionAOIOffsetY", "AutoModeRegionOffsetY"));
    BlockControlSignals(false);
}

// The region counts in the camera's sensor coordinates where the image has
// an offset, so the band stands relative to the image and may start before
// it; its size is limited to the reference size.
void AutoROIWidget::PlaceOffsetBand(double top, double left, double width, double height,
                                    int offsetX, int offsetY)
{
    const double roiHeight = double(m_ROIHeight);
    const double roiWidth = double(m_ROIWidth);
    m_RubberBandLabel->SetBandGeometry(
        SaturatingCast<int>(qMin(top, offsetY + roiHeight) - offsetY),
        SaturatingCast<int>(qMin(left, offsetX + roiWidth) - offsetX),
        SaturatingCast<int>(qMin(width, roiWidth)), SaturatingCast<int>(qMin(height, roiHeight)));
}

void AutoROIWidget::LoadEnableState()
{
    if (!m_CheckEnable) {
        return;
    }
    const bool enabled = m_FeatureManager->GetValue("AutofunctionAOIEnable") != 0.0;
    m_CheckEnable->setCheckState(enabled ? Qt::Checked : Qt::Unchecked);
    SetControlsEnabled(enabled);
}

// Also reached from the dispatch on a camera that may lack the feature, so
// the check box is asked for like its neighbour.
void AutoROIWidget::LoadShowAreaState()
{
    if (!m_CheckShowArea) {
        return;
    }
    const bool shown = m_FeatureManager->GetValue("AutofunctionAOIShowArea") != 0.0;
    m_CheckShowArea->setCheckState(shown ? Qt::Checked : Qt::Unchecked);
}

// The enable check box stays usable so the region can be switched on again;
// right and bottom of a DSP camera follow the group box alone.
void AutoROIWidget::SetControlsEnabled(bool enabled)
{
    QList<QWidget*> controls;
    if (m_CheckShowArea) {
        controls << m_CheckShowArea;
    }
    controls << m_RubberBandLabel << m_SpinTop << m_SpinLeft;
    if (m_FeatureManager->HasFeature("AutofunctionAOIHeight", "AutoModeRegionHeight")) {
        controls << m_SpinWidth << m_SpinHeight;
    }
    controls << m_BtnFull << m_BtnHalf << m_BtnQuarter << ui.gb_AutoROI;
    for (QWidget* control : controls) {
        control->setEnabled(enabled);
    }
}

void AutoROIWidget::UpdatePreviewFromSpinBoxes()
{
    if (m_FeatureManager->HasFeature("DSPSubregionTop")) {
        const qint64 roiHeight = qint64(m_ROIHeight);
        const qint64 roiWidth = qint64(m_ROIWidth);
        const qint64 bottom = qMin(SaturatingCast<qint64>(m_SpinBottom->value()), roiHeight);
        const qint64 right = qMin(SaturatingCast<qint64>(m_SpinRight->value()), roiWidth);
        const qint64 top =
            qMin(qMin(SaturatingCast<qint64>(m_SpinTop->value()), roiHeight), bottom);
        const qint64 left =
            qMin(qMin(SaturatingCast<qint64>(m_SpinLeft->value()), roiWidth), right);
        m_RubberBandLabel->blockSignals(true);
        m_RubberBandLabel->SetBandGeometry(SaturatingNarrow<int>(top), SaturatingNarrow<int>(left),
                                           SaturatingNarrow<int>(SaturatingSub(right, left)),
                                           SaturatingNarrow<int>(SaturatingSub(bottom, top)));
        m_RubberBandLabel->blockSignals(false);
    } else if (m_FeatureManager->HasFeature("AutofunctionAOIHeight", "AutoModeRegionHeight")) {
        const qint64 top = SaturatingCast<qint64>(m_SpinTop->value());
        const qint64 left = SaturatingCast<qint64>(m_SpinLeft->value());
        const qint64 width = SaturatingCast<qint64>(m_SpinWidth->value());
        const qint64 height = SaturatingCast<qint64>(m_SpinHeight->value());
        const int offsetX = ImageOffset(HorizontalAxis());
        const int offsetY = ImageOffset(VerticalAxis());
        // A camera without "AutofunctionAOIEnable" can't switch its region
        // off, so the region counts as on and the band follows it.
        if (m_FeatureManager->HasFeature("AutoModeRegionHeight") || !m_CheckEnable ||
            m_CheckEnable->isChecked()) {
            m_RubberBandLabel->blockSignals(true);
            PlaceOffsetBand(top, left, width, height, offsetX, offsetY);
            m_RubberBandLabel->blockSignals(false);
        }
    }
}

void AutoROIWidget::RebuildPreview()
{
    const quint64 oldWidth = m_ROIWidth;
    const quint64 oldHeight = m_ROIHeight;
    m_ROIWidth = GetROIWidth();
    m_ROIHeight = GetROIHeight();
    // A new label allocates a picture of the full reference size.
    if (m_ROIWidth == oldWidth && m_ROIHeight == oldHeight) {
        return;
    }

    // The dispatch that gets here can run inside the old label's own mouse
    // handler, whose hover processes events; deleting the label now would
    // pull it out from under that handler. It leaves the grid and the editor
    // at once and is freed when control is back in the event loop.
    ui.grid_AutoROI->removeWidget(m_RubberBandLabel);
    m_RubberBandLabel->hide();
    m_RubberBandLabel->disconnect(this);
    m_RubberBandLabel->deleteLater();

    // The rebuilt preview no longer reports the start of a drag.
    MakePreview();
    LoadRegion();
}
