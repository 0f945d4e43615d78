#include "RandomSession.h"

#include "AutoROIWidget.h"
#include "TabExtensionException.h"
#include "rubberbandlabel.h"

#include "SimFeatures.h"
#include "UserInput.h"

#include <TarkaCPP/GenICam/GenICamCamera.h>
#include <TarkaCPP/Sim/CameraRules.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEventLoop>
#include <QTimer>
#include <QVBoxLayout>

#include <unistd.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cstdio>
#include <limits>
#include <map>

using KST::TrkAPI::Sim::Misreport;
using KST::TrkAPI::Sim::Op;

namespace {

const int OpCount = static_cast<int>(Op::UnregisterObserver) + 1;
// The host deletes the page of a lost camera within this.
const int LossReportMs = 1000;

const std::vector<std::vector<std::string>> Families = {
    {"DSPSubregionTop", "DSPSubregionLeft", "DSPSubregionRight", "DSPSubregionBottom"},
    {"AutofunctionAOIOffsetX", "AutofunctionAOIOffsetY", "AutofunctionAOIWidth",
     "AutofunctionAOIHeight", "AutofunctionAOIEnable", "AutofunctionAOIShowArea"},
    {"AutoModeRegionOffsetX", "AutoModeRegionOffsetY", "AutoModeRegionWidth",
     "AutoModeRegionHeight"}};
const std::vector<std::string> ImageNames = {"Width", "Height", "OffsetX", "OffsetY"};
const std::vector<std::string> ExposureNames = {"ExposureAutoMin", "ExposureAutoMax",
                                                "ExposureAutoTimebase", "ExposureTime",
                                                "ExposureTimeAbs"};
// The features that are no integers.
const std::map<std::string, TrkFeatureDataType> OtherTypes = {
    {"AutofunctionAOIEnable", TrkFeatureDataBool}, {"AutofunctionAOIShowArea", TrkFeatureDataBool},
    {"ExposureAutoTimebase", TrkFeatureDataEnum},  {"ExposureTime", TrkFeatureDataFloat},
    {"ExposureTimeAbs", TrkFeatureDataFloat},      {"ExposureAutoMin", TrkFeatureDataFloat}};
const std::vector<std::string> TimebaseEntries = {"1us", "10us", "100us", "1000us"};

const std::vector<long long> ExtremeInts = {LLONG_MIN, LLONG_MAX,       -1, INT_MIN,
                                            INT_MAX,   (1LL << 53) + 1, 0};
const double Inf = std::numeric_limits<double>::infinity();
const std::vector<double> ExtremeFloats = {
    std::numeric_limits<double>::quiet_NaN(), Inf, -Inf, 1e300, -1e300, DBL_MAX, 1e-310, -1.0};

// Leaves the test process on the assertion on unreadable region ranges, so
// that the parent can count it apart from crashes.
void ExitOnRangeAssertion(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtFatalMsg && message.contains("featureMin >= 0.0 && featureMin <= featureMax")) {
        fflush(nullptr);
        _exit(RandomSession::RangeAssertionExit);
    }
    if (type == QtFatalMsg) {
        fprintf(stderr, "fatal: %s\n", qPrintable(message));
    }
}

} // namespace

RandomSession::RandomSession(std::uint64_t seed) : m_Random(std::uint32_t(seed ^ (seed >> 32)))
{
    const double rates[] = {0.0, 0.0, 0.05, 0.2};
    m_FailureRate = rates[Pick(4)];
    m_LieRate = rates[Pick(4)];
}

RandomSession::~RandomSession()
{
    delete m_Page.data();
}

int RandomSession::Pick(int count)
{
    return std::uniform_int_distribution<int>(0, count - 1)(m_Random);
}

bool RandomSession::Chance(double probability)
{
    return std::uniform_real_distribution<double>(0.0, 1.0)(m_Random) < probability;
}

void RandomSession::Run()
{
    BuildCamera();
    m_Page = new QWidget;
    m_Page->resize(200 + Pick(900), 200 + Pick(700));
    try {
        m_Tab = new AutoROIWidget(HostList(), m_Page);
    } catch (const TENotSupported&) {
        return;
    }
    qInstallMessageHandler(ExitOnRangeAssertion);
    (new QVBoxLayout(m_Page))->addWidget(m_Tab);
    // Each action is an event of the host's loop, like a user's input, so
    // that Qt carries out a deleteLater of the host's where a host loop
    // would, not in the middle of the tab's own work.
    int actions = 10 + Pick(50);
    QEventLoop loop;
    QTimer step;
    step.setSingleShot(true);
    QObject::connect(&step, &QTimer::timeout, &loop, [this, &actions, &loop, &step] {
        if (actions-- > 0 && m_Page) {
            m_Pause = 0;
            Act();
            step.start(m_Pause);
        } else {
            QTimer::singleShot(Pick(300), &loop, &QEventLoop::quit);
        }
    });
    step.start(0);
    loop.exec();
}

void RandomSession::BuildCamera()
{
    const int families = Chance(0.8) ? 1 : Pick(4);
    for (int family = 0; family < families; ++family) {
        for (const std::string& name : Families[Pick(3)]) {
            if (Chance(0.9) && !m_Camera.Has(name)) {
                AddFeature(name);
            }
        }
    }
    for (const std::vector<std::string>* group : {&ImageNames, &ExposureNames}) {
        for (const std::string& name : *group) {
            if (Chance(0.85)) {
                AddFeature(name);
            }
        }
    }
    AddRules();
    AddFaults();
}

// Adds name, now and then of another type than the tab expects.
void RandomSession::AddFeature(const std::string& name)
{
    const auto other = OtherTypes.find(name);
    TrkFeatureDataType type = other == OtherTypes.end() ? TrkFeatureDataInt : other->second;
    if (Chance(0.08)) {
        type = TrkFeatureDataType(1 + Pick(7));
    }
    // Sane sizes stay small enough for the preview's full-size picture.
    const long long extents[] = {0, 1, 8, 640, 1000, 2048, 4096};
    const long long intSteps[] = {1, 1, 1, 2, 4, 8, 0};
    const double floatSteps[] = {0.0, 0.001, 0.1, 1.0};
    if (type == TrkFeatureDataInt) {
        const long long min = Pick(17);
        const long long max = min + extents[Pick(7)];
        const long long step = intSteps[Pick(7)];
        const long long grid = step > 0 ? step : 1;
        m_Camera.AddInteger(name, min + grid * Pick(int((max - min) / grid) + 1), min, max, step);
        m_Integers.insert(name);
    } else if (type == TrkFeatureDataFloat) {
        const double min = Pick(11);
        const double max = min + double(extents[Pick(7)]) * 10.0;
        m_Camera.AddFloat(name, min + (max - min) * Pick(5) / 4.0, min, max, floatSteps[Pick(4)]);
    } else if (type == TrkFeatureDataBool) {
        m_Camera.AddBool(name, Chance(0.5));
    } else if (type == TrkFeatureDataEnum) {
        m_Camera.AddEnum(name, TimebaseEntries, TimebaseEntries[Pick(4)]);
    } else if (type == TrkFeatureDataString) {
        m_Camera.AddString(name, Chance(0.5) ? "" : "text");
    } else if (type == TrkFeatureDataCommand) {
        m_Camera.AddCommand(name);
    } else {
        m_Camera.AddRaw(name);
    }
    m_Names.push_back(name);
}

// Half the cameras keep dependent limits, where the features they tie are
// integers.
void RandomSession::AddRules()
{
    auto integers = [this](const std::vector<std::string>& names) {
        return std::all_of(names.begin(), names.end(),
                           [this](const std::string& name) { return m_Integers.count(name) > 0; });
    };
    if (!Chance(0.5)) {
        return;
    }
    if (integers({"AutofunctionAOIOffsetX", "AutofunctionAOIWidth", "Width"})) {
        m_Camera.AddRule(KST::TrkAPI::Sim::KeepInside("AutofunctionAOIOffsetX",
                                                      "AutofunctionAOIWidth", "", "Width"));
    }
    if (integers({"AutoModeRegionOffsetY", "AutoModeRegionHeight", "OffsetY", "Height"})) {
        m_Camera.AddRule(KST::TrkAPI::Sim::KeepInside("AutoModeRegionOffsetY",
                                                      "AutoModeRegionHeight", "OffsetY", "Height"));
    }
    if (integers({"DSPSubregionLeft", "DSPSubregionRight", "Width"})) {
        m_Camera.AddRule(
            KST::TrkAPI::Sim::KeepEdgesApart("DSPSubregionLeft", "DSPSubregionRight", "Width", 1));
    }
}

// The camera's faults: operations that fail, and answers that lie about the
// type, the value, the range or the step, or change between two reads.
void RandomSession::AddFaults()
{
    auto anyInt = [this] { return ExtremeInts[Pick(int(ExtremeInts.size()))]; };
    auto anyFloat = [this] { return ExtremeFloats[Pick(int(ExtremeFloats.size()))]; };
    for (const std::string& name : m_Names) {
        while (Chance(m_FailureRate)) {
            m_Camera.SetFailure(name, Op(Pick(OpCount)));
        }
        if (!Chance(m_LieRate)) {
            continue;
        }
        Misreport lie;
        const int kind = Pick(5);
        if (kind == 0) {
            lie.type = TrkFeatureDataType(Pick(8));
        } else if (kind == 1) {
            lie.intValue = anyInt();
            lie.floatValue = anyFloat();
        } else if (kind == 2) {
            lie.intRange = std::make_pair(anyInt(), anyInt());
            lie.floatRange = std::make_pair(anyFloat(), anyFloat());
        } else if (kind == 3) {
            lie.intIncrement = anyInt();
            lie.floatIncrement = anyFloat();
        } else {
            lie.unsteady = true;
        }
        m_Camera.SetMisreport(name, lie);
    }
}

// The host's list, now and then with an empty pointer.
QSharedPointer<FeatureVector> RandomSession::HostList()
{
    QSharedPointer<FeatureVector> features = MakeFeatureVector(m_Camera);
    if (Chance(0.2)) {
        for (int gap = Pick(4); gap >= 0; --gap) {
            features->insert(Pick(features->size() + 1), FeaturePtr());
        }
    }
    return features;
}

template <typename T>
T* RandomSession::AnyUsable()
{
    QList<T*> usable;
    for (T* widget : m_Page->findChildren<T*>()) {
        if (widget->isVisible() && widget->isEnabled()) {
            usable << widget;
        }
    }
    return usable.isEmpty() ? nullptr : usable[Pick(usable.size())];
}

// One action of the host, the camera or the user; the user's are the most.
void RandomSession::Act()
{
    const int action = Pick(14);
    QWidget* page = m_Page;
    if (action == 0) {
        QMetaObject::invokeMethod(m_Tab, "updateTimer");
    } else if (action == 1) {
        m_Pause = Chance(0.8) ? Pick(30) : Pick(400);
    } else if (action == 2) {
        m_Page->setVisible(!m_Page->isVisible() || Chance(0.3));
    } else if (action == 3) {
        m_Page->resize(Pick(1200), Pick(900));
    } else if (action == 4) {
        QMetaObject::invokeMethod(m_Tab, "camIsStreaming", Q_ARG(bool, Chance(0.5)));
    } else if (action == 5) {
        CameraChange();
    } else if (action == 6 && Chance(0.05)) {
        delete page;
    } else if (action == 7 && Chance(0.05)) {
        // Asked for from an event that the tab may deliver inside its own work.
        QTimer::singleShot(0, page, [page] { page->deleteLater(); });
    } else if (action == 8 && Chance(0.2)) {
        LoseCamera();
    } else if (action == 9) {
        EditSpinBox();
    } else if (action == 10) {
        Click();
    } else if (action == 11) {
        QComboBox* combo = AnyUsable<QComboBox>();
        if (combo && combo->count() > 0) {
            combo->setCurrentIndex(Pick(combo->count()));
        }
    } else if (action > 11) {
        Drag();
    }
}

// The camera is unplugged. As a lost GenICam camera does, it answers reads
// with the values it had and refuses writes and commands, changes no more,
// and the host deletes the page a moment later.
void RandomSession::LoseCamera()
{
    for (const std::string& name : m_Names) {
        m_Camera.SetFailure(name, Op::SetValue, KST::TrkAPI::GenICam::ErrorDeviceLost);
        m_Camera.SetFailure(name, Op::RunCommand, KST::TrkAPI::GenICam::ErrorDeviceLost);
    }
    m_Lost = true;
    QWidget* page = m_Page;
    QTimer::singleShot(Pick(LossReportMs), page, [page] { page->deleteLater(); });
}

void RandomSession::Click()
{
    if (QAbstractButton* button = m_Page ? AnyUsable<QAbstractButton>() : nullptr) {
        button->click();
    }
}

void RandomSession::EditSpinBox()
{
    QDoubleSpinBox* spin = AnyUsable<QDoubleSpinBox>();
    if (!spin) {
        return;
    }
    const double values[] = {spin->minimum(),    spin->maximum(), spin->value() + 1,
                             double(Pick(5000)), -1e300,          1e300};
    spin->setValue(values[Pick(6)]);
    if (Chance(0.5)) {
        QMetaObject::invokeMethod(spin, "editingFinished");
    }
}

// A hover, or a press, a few moves and a release, anywhere on or off the
// preview; the editor may replace the preview in the middle of it.
void RandomSession::Drag()
{
    QPointer<RubberBandLabel> preview = AnyUsable<RubberBandLabel>();
    std::vector<QEvent::Type> events = {QEvent::MouseMove};
    if (Chance(0.7)) {
        events.push_back(QEvent::MouseButtonPress);
        events.insert(events.end(), Pick(5), QEvent::MouseMove);
        events.push_back(QEvent::MouseButtonRelease);
    }
    for (QEvent::Type type : events) {
        if (!preview) {
            return;
        }
        SendMouse(preview, type,
                  QPoint(Pick(preview->width() + 20) - 10, Pick(preview->height() + 20) - 10));
    }
}

// The camera changes a value by itself; the notification comes from the
// library's thread.
void RandomSession::CameraChange()
{
    if (m_Names.empty() || m_Lost) {
        return;
    }
    const std::string& name = m_Names[Pick(int(m_Names.size()))];
    try {
        if (Chance(m_FailureRate)) {
            m_Camera.ClearFailures();
        } else if (Chance(0.2)) {
            m_Camera.SetWritable(name, Chance(0.7));
        } else {
            m_Camera.SetFromCamera(name, Pick(3000));
        }
    } catch (const std::invalid_argument&) {
        // Not a number on this camera.
    }
}
