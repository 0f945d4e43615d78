#include "FeatureManager.h"
#include "SimFeatures.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using KST::TrkAPI::Sim::Camera;
using KST::TrkAPI::Sim::CameraAccess;
using KST::TrkAPI::Sim::Op;

namespace {

QStringList g_Lines;

void CaptureLine(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg) {
        g_Lines.append(text);
    }
}

typedef std::vector<double> Values;

// The value, writable flag, minimum, maximum and increment that a range
// query reports, from outputs that start at 5.
Values Range(FeatureManager& fm, const QString& name, const QString& alt1 = QString())
{
    bool writable = true;
    double min = 5.0, max = 5.0, increment = 5.0;
    const double value = fm.GetValueRange(name, alt1, &writable, &min, &max, &increment);
    return {value, double(writable), min, max, increment};
}

} // namespace

TEST(FeatureManager, LookupPrefersNamesInOrderAndRepeatsTheAlternativeWalk)
{
    Camera camera;
    camera.AddInteger("Height", 480, 1, 960);
    camera.AddInteger("Width", 640, 1, 1280);
    camera.AddInteger("OffsetX", 0, 0, 640);
    FeatureManager fm(MakeFeatureVector(camera));

    EXPECT_EQ(camera.Find("Width"), fm.FindFeature("Width", "Height"));
    EXPECT_FALSE(fm.HasFeature("width"));
    EXPECT_TRUE(fm.HasFeature("Missing", "Height"));

    // An empty second name ends the lookup: the third is never tried.
    camera.ResetCalls();
    EXPECT_FALSE(fm.HasFeature("Missing", "", "OffsetX"));
    EXPECT_EQ(2, camera.Calls("Height", Op::GetName));

    // Only the third name exists: four walks, two name reads each.
    camera.ResetCalls();
    EXPECT_EQ(camera.Find("OffsetX"), fm.FindFeature("Missing", "Other", "OffsetX"));
    EXPECT_EQ(8, camera.Calls("Height", Op::GetName));

    // A name that can't be read hides its feature but not the ones after it.
    camera.SetFailure("Height", Op::GetName);
    EXPECT_FALSE(fm.HasFeature("Height"));
    EXPECT_TRUE(fm.HasFeature("OffsetX"));
}

TEST(FeatureManager, QueriesAnswerTheirAbsentAndFailedValues)
{
    Camera camera;
    camera.AddInteger("Width", 640, 16, 1280, 16);
    camera.AddFloat("Gain", 2.5, 0.0, 24.0);
    camera.AddBool("Enable", true);
    camera.AddEnum("Mode", {"Off", "On"}, "On");
    camera.AddString("Label", "front");
    camera.AddString("Note", "");
    camera.SetWritable("Label", false);
    camera.SetDisplayName("Gain", "Analog gain");
    camera.SetCategory("Gain", "Analog");
    FeatureManager fm(MakeFeatureVector(camera));
    camera.ResetCalls();

    EXPECT_EQ(-1.0, fm.GetValue("Missing"));
    EXPECT_EQ(640.0, fm.GetValue("Missing", "Width"));
    EXPECT_EQ(-1.0, fm.GetValue("Mode"));
    EXPECT_EQ(0, camera.Calls("Mode", Op::GetValue));
    EXPECT_EQ(1.0, fm.GetValue("Enable"));
    camera.SetFailure("Enable", Op::GetValue);
    EXPECT_EQ(0.0, fm.GetValue("Enable"));

    camera.SetFailure("Gain", Op::GetDataType);
    EXPECT_FALSE(fm.IsFloat("Gain"));
    EXPECT_TRUE(fm.CanWrite("Width"));
    camera.SetFailure("Width", Op::IsWritable);
    EXPECT_FALSE(fm.IsWritable("Width"));

    EXPECT_EQ(QString("front"), fm.GetTextValue("Label"));
    EXPECT_TRUE(fm.GetWritableTextValue("Label").isNull());
    EXPECT_EQ(QString("On"), fm.GetWritableTextValue("Mode"));
    camera.SetFailure("Mode", Op::GetValue);
    EXPECT_FALSE(fm.GetWritableTextValue("Mode").isNull());
    EXPECT_TRUE(fm.GetWritableTextValue("Mode").isEmpty());
    EXPECT_TRUE(fm.GetTextValue("Width").isEmpty());
    for (const QString& text : {fm.GetTextValue("Missing"), fm.GetDisplayName("Missing"),
                                fm.FirstExistingName(QStringList()), fm.GetTextValue("Note")}) {
        EXPECT_TRUE(text.isEmpty() && !text.isNull());
    }
    // A text of size zero needs no second call.
    EXPECT_EQ(1, camera.Calls("Note", Op::GetValue));
    EXPECT_EQ(QString("Analog"), fm.GetCategory("Gain"));

    EXPECT_EQ(QString("Analog gain"), fm.FirstExistingDisplayName({"Missing", "Gain", "Width"}));
    EXPECT_EQ(QString("Width"), fm.FirstExistingName({"Width", "Gain"}));
    // The first feature found ends the search even when its read fails.
    camera.SetFailure("Gain", Op::GetDisplayName);
    EXPECT_TRUE(fm.FirstExistingDisplayName({"Gain", "Width"}).isEmpty());
}

TEST(FeatureManager, RangesAlignTheMaximumAndDefaultAMissingStep)
{
    Camera camera;
    camera.AddInteger("Width", 7, 0, 10, 3);
    camera.AddInteger("Height", 7, 0, 10, 0);
    camera.AddFloat("Gain", 2.5, 0.0, 24.0);
    camera.AddEnum("Mode", {"Off", "On"}, "On");
    FeatureManager fm(MakeFeatureVector(camera));

    EXPECT_EQ(Range(fm, "Missing"), Values({-1.0, 1.0, 5.0, 5.0, 5.0}));
    EXPECT_EQ(Range(fm, "Mode"), Values({-1.0, 0.0, -1.0, -1.0, -1.0}));
    EXPECT_EQ(Range(fm, "Missing", "Width"), Values({7.0, 1.0, 0.0, 9.0, 3.0}));
    EXPECT_EQ(3.0, fm.GetIncrement("Width"));
    EXPECT_EQ(Range(fm, "Height"), Values({7.0, 1.0, 0.0, 10.0, 1.0}));
    EXPECT_EQ(-1.0, fm.GetIncrement("Height"));
    EXPECT_EQ(Range(fm, "Gain"), Values({2.5, 1.0, 0.0, 24.0, 0.01}));

    // A failed step leaves the bounds and the maximum unaligned; failed
    // bounds read as -1.
    double min = 0.0, max = 0.0;
    camera.SetFailure("Width", Op::GetIncrement);
    EXPECT_EQ(7.0, fm.GetValueRange("Width", &min, &max));
    EXPECT_EQ(10.0, max);
    camera.SetFailure("Width", Op::GetRange);
    fm.GetValueRange("Width", &min, &max);
    EXPECT_EQ(-1.0, min);
    EXPECT_EQ(-1.0, max);

    // Alignment on its own: on the grid, a rounding error under it, an upper
    // bound below the lower one, no usable step, a single point.
    EXPECT_EQ(11.0, AlignDownToStep(2, 11, 3));
    EXPECT_EQ(0.7, AlignDownToStep(0, 0.7, 0.1));
    EXPECT_EQ(6.0, AlignDownToStep(10, 7, 4));
    EXPECT_EQ(100.0, AlignDownToStep(0, 100, -1));
    EXPECT_EQ(100.0, AlignDownToStep(0, 100, 0));
    EXPECT_EQ(5.0, AlignDownToStep(5, 5, 2));
}

TEST(FeatureManager, NumericWritesAlignClampReadBackAndLogTheirErrors)
{
    Camera camera;
    camera.AddInteger("Exposure", 50, 0, 100, 10);
    camera.AddInteger("Width", 10, 10, 1000, 4);
    camera.AddInteger("Binning", 1, 1, 8);
    camera.AddInteger("Delay", 0, 0, 100, 0);
    camera.AddFloat("Gain", 0.5, 0.0, 1.0, 0.1);
    camera.AddFloat("Gamma", 1.0, 0.5, 2.0);
    camera.AddBool("Enable", false);
    camera.AddEnum("Mode", {"Off", "On"}, "On");
    camera.AddInteger("Height", 480, 1, 960);
    camera.SetWritable("Height", false);
    camera.AddInteger("Counter", 5, 0, std::numeric_limits<long long>::max());
    FeatureManager fm(MakeFeatureVector(camera));
    camera.ResetCalls();

    EXPECT_EQ(30.0, fm.SetValue("Exposure", 37));
    EXPECT_EQ(998.0, fm.SetValue("Width", 5000));
    EXPECT_EQ(10.0, fm.SetValue("Width", 3));
    EXPECT_EQ(3.0, fm.SetValue("Binning", 3.7));
    EXPECT_EQ(37.0, fm.SetValue("Delay", 37.9));
    EXPECT_EQ(0.3, fm.SetValue("Gain", 0.3));
    EXPECT_EQ(1.2345, fm.SetValue("Gamma", 1.2345));
    EXPECT_EQ(1.0, fm.SetValue("Enable", 1.0));
    EXPECT_EQ(0.0, fm.SetValue("Enable", -1.0));
    EXPECT_EQ(480.0, fm.SetValue("Height", 100));
    EXPECT_EQ(0, camera.Calls("Height", Op::SetValue));
    EXPECT_EQ(3.0, fm.SetValue("Mode", 3));
    EXPECT_EQ(0, camera.Calls("Mode", Op::SetValue));
    EXPECT_EQ(7.0, fm.SetValue("Missing", 7));

    // A maximum at the top of the integer range, whose double is just past
    // it, limits to the largest integer; a request that is no number writes 0.
    fm.SetValue("Counter", 1e30);
    EXPECT_EQ(std::numeric_limits<long long>::max(), camera.IntValue("Counter"));
    EXPECT_EQ(0.0, fm.SetValue("Counter", std::numeric_limits<double>::quiet_NaN()));

    // The same value again is written again.
    camera.ResetCalls();
    fm.SetValue("Exposure", 30);
    EXPECT_EQ(1, camera.Calls("Exposure", Op::SetValue));

    // A failed write logs the name found and the name asked for, and still
    // reads back.
    camera.SetFailure("Binning", Op::SetValue, -7);
    camera.SetFailure("Enable", Op::SetValue, 3);
    camera.SetFailure("Gamma", Op::SetValue, 5);
    g_Lines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(CaptureLine);
    EXPECT_EQ(3.0, fm.SetValue("BinningX", "Binning", 6.5));
    fm.SetValue("Enable", 1.0);
    fm.SetValue("Gamma", 1.5);
    fm.SetValue("Missing", 1.0);
    qInstallMessageHandler(previous);
    const QStringList expected = {
        "Set  Binning  =  6.5 ", "Error: FeatureManager::SetValue:Int:  \"BinningX\"  :  -7 ",
        "Set  Enable  =  1 ",    "Error: FeatureManager::SetValue:Bool:  \"Enable\"  :  3 ",
        "Set  Gamma  =  1.5 ",   "Error: FeatureManager::SetValue:Double:  \"Gamma\"  :  5 "};
    EXPECT_EQ(expected, g_Lines);
}

TEST(FeatureManager, TextWritesCommandsAndEntriesReportAsStated)
{
    Camera camera;
    camera.AddEnum("Mode", {"Off", "On"}, "Off");
    camera.AddString("On", "named like an entry");
    camera.AddCommand("Start");
    bool started = false;
    camera.SetCommandAction("Start", [&started](CameraAccess&) { started = true; });
    camera.AddEnum("Timebase", {"1us", "10us", "100us", "1ms"}, "10us");
    camera.AddEnum("Empty", {"Only"}, "Only");
    camera.SetEntryAvailable("Timebase", "10us", false);
    camera.SetEntryAvailable("Empty", "Only", false);
    FeatureManager fm(MakeFeatureVector(camera));
    camera.ResetCalls();

    EXPECT_EQ(QString("On"), fm.SetValue("Mode", QString("On")));
    EXPECT_EQ("On", camera.TextValue("Mode"));
    // The written text is looked up as a feature name, and read.
    EXPECT_EQ(2, camera.Calls("On", Op::GetValue));
    EXPECT_EQ(QString("x"), fm.SetValue("Missing", QString("x")));
    camera.SetFailure("Mode", Op::SetValue);
    EXPECT_EQ(QString("Off"), fm.SetValue("Mode", QString("Off")));

    EXPECT_FALSE(fm.RunCommand("Missing"));
    EXPECT_FALSE(fm.RunCommand("Start"));
    EXPECT_TRUE(started);
    // The library refuses to run a feature that is no command.
    EXPECT_TRUE(fm.RunCommand("Mode"));

    // Available entries keep the library's order.
    EXPECT_EQ(QStringList({"1us", "100us", "1ms"}), fm.GetAvailableEntries("Missing", "Timebase"));
    EXPECT_EQ(4, fm.GetEntriesOf(fm.FindFeature(QString("Timebase"))).size());
    EXPECT_TRUE(fm.GetAvailableEntries("Empty").isEmpty());
    EXPECT_TRUE(fm.IsEntryAvailable("Timebase", "1ms"));
    EXPECT_FALSE(fm.IsEntryAvailable("Missing", "1ms"));
    camera.SetFailure("Timebase", Op::IsValueAvailable);
    EXPECT_FALSE(fm.IsEntryAvailable("Timebase", "1ms"));
    camera.SetFailure("Timebase", Op::GetValues);
    EXPECT_TRUE(fm.GetEntriesOf(fm.FindFeature(QString("Timebase"))).isEmpty());
}
