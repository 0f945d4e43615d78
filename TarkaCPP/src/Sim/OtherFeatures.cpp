#include "OtherFeatures.h"

#include <cstdio>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

const std::vector<std::string> OnOff = {"Off", "On"};
const std::vector<std::string> EdgeActivations = {"RisingEdge", "FallingEdge", "AnyEdge",
                                                  "LevelHigh", "LevelLow"};
const std::vector<std::string> SignalSources = {
    "Off", "Line1", "Line2", "Line3", "Line4", "Timer1", "Timer2", "FrameTrigger", "Software"};

void Append(FeatureSpecs& specs, const FeatureSpecs& more)
{
    specs.insert(specs.end(), more.begin(), more.end());
}

FeatureSpecs DeviceFeatures()
{
    const std::string c = "/DeviceControl";
    return {
        ReadOnly(StringSpec(c, "DeviceVendorName", "Simulated Optics")),
        ReadOnly(StringSpec(c, "DeviceModelName", "SIM-5000")),
        ReadOnly(StringSpec(c, "DeviceVersion", "1.4.2")),
        ReadOnly(StringSpec(c, "DeviceFirmwareVersion", "00.04.02.31337")),
        ReadOnly(StringSpec(c, "DeviceSerialNumber", "0412-000173")),
        StringSpec(c, "DeviceUserID", ""),
        ReadOnly(StringSpec(c, "DeviceID", "SIM-5000-0412-000173")),
        ReadOnly(EnumSpec(c, "DeviceScanType", {"Areascan", "Linescan"}, "Areascan")),
        EnumSpec(c, "DeviceTemperatureSelector", {"Sensor", "Mainboard"}, "Sensor"),
        ReadOnly(FloatSpec(c, "DeviceTemperature", 41.5, -40.0, 120.0)),
        ReadOnly(IntSpec(c, "DeviceLinkSpeed", 125000000, 0, 125000000)),
        IntSpec(c, "DeviceLinkThroughputLimit", 115000000, 1000000, 125000000, 1000),
        ReadOnly(IntSpec(c, "DeviceSFNCVersionMajor", 2, 0, 99)),
        ReadOnly(IntSpec(c, "DeviceSFNCVersionMinor", 3, 0, 99)),
        CommandSpec(c, "DeviceReset"),
        CommandSpec(c, "DeviceFactoryReset"),
    };
}

FeatureSpecs AcquisitionFeatures()
{
    const std::string c = "/AcquisitionControl";
    const std::string t = "/AcquisitionControl/Trigger";
    return {
        EnumSpec(c, "AcquisitionMode", {"Continuous", "SingleFrame", "MultiFrame", "Recorder"},
                 "Continuous"),
        CommandSpec(c, "AcquisitionStart"),
        CommandSpec(c, "AcquisitionStop"),
        CommandSpec(c, "AcquisitionAbort"),
        ReadOnly(BoolSpec(c, "AcquisitionStatus", false)),
        IntSpec(c, "AcquisitionFrameCount", 1, 1, 65535),
        BoolSpec(c, "AcquisitionFrameRateEnable", false),
        FloatSpec(c, "AcquisitionFrameRate", 14.0, 0.1, 14.0, 0.01),
        ReadOnly(FloatSpec(c, "AcquisitionFrameRateLimit", 14.0, 0.1, 14.0)),
        IntSpec(c, "RecorderPreEventCount", 0, 0, 65535),
        EnumSpec(t, "TriggerSelector",
                 {"FrameStart", "AcquisitionStart", "AcquisitionEnd", "AcquisitionRecord"},
                 "FrameStart"),
        EnumSpec(t, "TriggerMode", OnOff, "Off"),
        EnumSpec(t, "TriggerSource", SignalSources, "Software"),
        EnumSpec(t, "TriggerActivation", EdgeActivations, "RisingEdge"),
        FloatSpec(t, "TriggerDelay", 0.0, 0.0, 60000000.0),
        EnumSpec(t, "TriggerOverlap", {"Off", "PreviousFrame"}, "Off"),
        CommandSpec(t, "TriggerSoftware"),
    };
}

FeatureSpecs ImageFormatFeatures()
{
    const std::string c = "/ImageFormatControl";
    return {
        EnumSpec(c, "PixelFormat", {"Mono8", "Mono10", "Mono12", "Mono12Packed", "BayerRG8"},
                 "Mono8"),
        ReadOnly(IntSpec(c, "PixelSize", 8, 8, 16)),
        IntSpec(c, "BinningHorizontal", 1, 1, 8),
        IntSpec(c, "BinningVertical", 1, 1, 8),
        IntSpec(c, "DecimationHorizontal", 1, 1, 8),
        IntSpec(c, "DecimationVertical", 1, 1, 8),
        BoolSpec(c, "ReverseX", false),
        BoolSpec(c, "ReverseY", false),
        EnumSpec(c, "TestImageSelector", {"Off", "GreyHorizontalRamp", "GreyVerticalRamp"}, "Off"),
        ReadOnly(IntSpec(c, "PayloadSize", 5038848, 0, 20155392)),
    };
}

FeatureSpecs AnalogFeatures()
{
    const std::string c = "/AnalogControl";
    return {
        EnumSpec(c, "GainSelector", {"All", "AnalogAll", "DigitalAll"}, "All"),
        FloatSpec(c, "Gain", 0.0, 0.0, 24.0, 0.1),
        EnumSpec(c, "GainAuto", {"Off", "Once", "Continuous"}, "Off"),
        FloatSpec(c, "GainAutoMin", 0.0, 0.0, 24.0),
        FloatSpec(c, "GainAutoMax", 24.0, 0.0, 24.0),
        EnumSpec(c, "BlackLevelSelector", {"All"}, "All"),
        FloatSpec(c, "BlackLevel", 4.0, 0.0, 63.75, 0.25),
        FloatSpec(c, "Gamma", 1.0, 0.25, 4.0),
        FloatSpec(c, "Hue", 0.0, -40.0, 40.0),
        FloatSpec(c, "Saturation", 1.0, 0.0, 2.0),
        FloatSpec(c, "Sharpness", 0.0, -1.0, 1.0),
        EnumSpec(c, "BalanceRatioSelector", {"Red", "Blue"}, "Red"),
        FloatSpec(c, "BalanceRatio", 1.0, 0.8, 3.0, 0.01),
        EnumSpec(c, "BalanceWhiteAuto", {"Off", "Once", "Continuous"}, "Off"),
        IntSpec(c, "BalanceWhiteAutoRate", 100, 1, 100),
        IntSpec(c, "BalanceWhiteAutoTolerance", 5, 0, 50),
        BoolSpec(c, "DefectMaskEnable", true),
        EnumSpec(c, "ColorTransformationMode", {"Off", "Manual", "Daylight", "Tungsten"}, "Off"),
        EnumSpec(c, "ColorTransformationValueSelector",
                 {"Gain00", "Gain01", "Gain02", "Gain10", "Gain11", "Gain12", "Gain20", "Gain21",
                  "Gain22"},
                 "Gain00"),
        FloatSpec(c, "ColorTransformationValue", 1.0, -2.0, 2.0, 0.01),
        ReadOnly(IntSpec(c, "SensorTaps", 1, 1, 4)),
        ReadOnly(IntSpec(c, "SensorBits", 12, 8, 14)),
    };
}

FeatureSpecs LutFeatures()
{
    const std::string c = "/LUTControl";
    return {
        EnumSpec(c, "LUTSelector", {"Luminance", "User1", "User2"}, "Luminance"),
        BoolSpec(c, "LUTEnable", false),
        IntSpec(c, "LUTIndex", 0, 0, 4095),
        IntSpec(c, "LUTValue", 0, 0, 4095),
        ReadOnly(IntSpec(c, "LUTBitDepthIn", 12, 8, 16)),
        ReadOnly(IntSpec(c, "LUTBitDepthOut", 12, 8, 16)),
        ReadOnly(IntSpec(c, "LUTSizeBytes", 8192, 0, 65536)),
        CommandSpec(c, "LUTLoad"),
        CommandSpec(c, "LUTSave"),
        RawSpec(c, "LUTValueAll"),
    };
}

FeatureSpecs TransportFeatures()
{
    const std::string c = "/TransportLayerControl";
    return {
        IntSpec(c, "GevSCPSPacketSize", 1500, 576, 9000, 4),
        IntSpec(c, "GevSCPD", 0, 0, 100000),
        IntSpec(c, "GevHeartbeatTimeout", 3000, 500, 60000),
        ReadOnly(IntSpec(c, "GevTimestampTickFrequency", 1000000000, 0, 1000000000)),
        CommandSpec(c, "GevTimestampControlLatch"),
        CommandSpec(c, "GevTimestampControlReset"),
        ReadOnly(IntSpec(c, "GevTimestampValue", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(StringSpec(c, "GevCurrentIPAddress", "169.254.12.40")),
        ReadOnly(StringSpec(c, "GevCurrentSubnetMask", "255.255.0.0")),
        ReadOnly(StringSpec(c, "GevMACAddress", "02:00:5e:10:00:2a")),
        IntSpec(c, "StreamBytesPerSecond", 115000000, 1000000, 124000000),
        BoolSpec(c, "StreamFrameRateConstrain", true),
        BoolSpec(c, "StreamHoldEnable", false),
        EnumSpec(c, "PtpMode", {"Off", "Slave", "Master", "Auto"}, "Off"),
        ReadOnly(
            EnumSpec(c, "PtpStatus", {"Disabled", "Listening", "Slave", "Master"}, "Disabled")),
        FloatSpec(c, "PtpAcquisitionGateTime", 0.0, 0.0, 1e12),
    };
}

FeatureSpecs EventFeatures()
{
    const std::string c = "/EventControl";
    const std::vector<std::string> events = {"AcquisitionStart", "AcquisitionEnd",
                                             "FrameTrigger",     "FrameTriggerReady",
                                             "ExposureStart",    "ExposureEnd",
                                             "FrameStart",       "FrameEnd",
                                             "SensorReadoutEnd", "AcquisitionRecord",
                                             "Line1RisingEdge",  "Line1FallingEdge",
                                             "Line2RisingEdge",  "Line2FallingEdge",
                                             "Line3RisingEdge",  "Line3FallingEdge",
                                             "Line4RisingEdge",  "Line4FallingEdge",
                                             "Timer1End",        "Timer2End",
                                             "Counter1End",      "Counter2End",
                                             "PtpSyncLost",      "PtpSyncLocked",
                                             "Overflow",         "Error",
                                             "TemperatureAlarm", "ActionCommand"};
    FeatureSpecs specs = {EnumSpec(c, "EventSelector", events, events.front()),
                          EnumSpec(c, "EventNotification", OnOff, "Off")};
    for (const std::string& event : events) {
        const std::string category = c + "/Event" + event + "Data";
        Append(specs, {ReadOnly(IntSpec(category, "Event" + event, 0, 0, 65535)),
                       ReadOnly(IntSpec(category, "Event" + event + "FrameID", 0, 0, 65535)),
                       ReadOnly(IntSpec(category, "Event" + event + "Timestamp", 0, 0,
                                        0x7fffffffffffffffLL))});
    }
    return specs;
}

// The features of count numbered units such as "Line1" to "Line4", each in a
// category of its own below parent; make gives a unit's features from its
// category, its name and its number.
template <class Make>
FeatureSpecs Units(const std::string& parent, const std::string& unit, int count, Make make)
{
    FeatureSpecs specs;
    for (int index = 1; index <= count; ++index) {
        const std::string name = unit + std::to_string(index);
        Append(specs, make(parent + "/" + name, name, index));
    }
    return specs;
}

FeatureSpecs LineFeatures()
{
    return Units("/DigitalIOControl", "Line", 4,
                 [](const std::string& c, const std::string& line, int index) -> FeatureSpecs {
                     return {EnumSpec(c, line + "Mode", {"Input", "Output"},
                                      index <= 2 ? "Input" : "Output"),
                             BoolSpec(c, line + "Inverter", false),
                             ReadOnly(BoolSpec(c, line + "Status", false)),
                             EnumSpec(c, line + "Source", SignalSources, "Off"),
                             FloatSpec(c, line + "DebounceTime", 0.0, 0.0, 1000000.0)};
                 });
}

FeatureSpecs TimerAndCounterFeatures()
{
    const std::string parent = "/CounterAndTimerControl";
    FeatureSpecs specs =
        Units(parent, "Timer", 4, [](const std::string& c, const std::string& timer, int) {
            return FeatureSpecs{
                FloatSpec(c, timer + "Delay", 0.0, 0.0, 60000000.0),
                FloatSpec(c, timer + "Duration", 0.0, 0.0, 60000000.0),
                EnumSpec(c, timer + "TriggerSource", SignalSources, "Off"),
                EnumSpec(c, timer + "TriggerActivation", EdgeActivations, "RisingEdge"),
                CommandSpec(c, timer + "Reset")};
        });
    Append(specs,
           Units(parent, "Counter", 4, [](const std::string& c, const std::string& counter, int) {
               return FeatureSpecs{EnumSpec(c, counter + "EventSource", SignalSources, "Off"),
                                   ReadOnly(IntSpec(c, counter + "Value", 0, 0, 4294967295LL)),
                                   IntSpec(c, counter + "Duration", 1, 1, 4294967295LL),
                                   CommandSpec(c, counter + "Reset")};
           }));
    return specs;
}

FeatureSpecs UserSetAndChunkFeatures()
{
    const std::string u = "/UserSetControl";
    const std::string c = "/ChunkDataControl";
    const std::vector<std::string> sets = {"Default", "UserSet1", "UserSet2", "UserSet3"};
    return {
        EnumSpec(u, "UserSetSelector", sets, "Default"),
        CommandSpec(u, "UserSetLoad"),
        CommandSpec(u, "UserSetSave"),
        EnumSpec(u, "UserSetDefault", sets, "Default"),
        ReadOnly(EnumSpec(u, "UserSetOperationStatus", {"Idle", "Busy", "Failed"}, "Idle")),
        BoolSpec(c, "ChunkModeActive", false),
        EnumSpec(c, "ChunkSelector",
                 {"Width", "Height", "OffsetX", "OffsetY", "ExposureTime", "Gain", "Timestamp",
                  "FrameID", "LineStatusAll"},
                 "Timestamp"),
        BoolSpec(c, "ChunkEnable", false),
        ReadOnly(IntSpec(c, "ChunkWidth", 0, 0, 65535)),
        ReadOnly(IntSpec(c, "ChunkHeight", 0, 0, 65535)),
        ReadOnly(IntSpec(c, "ChunkOffsetX", 0, 0, 65535)),
        ReadOnly(IntSpec(c, "ChunkOffsetY", 0, 0, 65535)),
        ReadOnly(FloatSpec(c, "ChunkExposureTime", 0.0, 0.0, 60000000.0)),
        ReadOnly(FloatSpec(c, "ChunkGain", 0.0, 0.0, 24.0)),
        ReadOnly(IntSpec(c, "ChunkTimestamp", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(c, "ChunkFrameID", 0, 0, 65535)),
        ReadOnly(IntSpec(c, "ChunkLineStatusAll", 0, 0, 15)),
    };
}

FeatureSpecs FileAndStatisticsFeatures()
{
    const std::string f = "/FileAccessControl";
    const std::string s = "/Statistics";
    return {
        EnumSpec(f, "FileSelector", {"UserSet1", "UserSet2", "UserSet3", "UserData"}, "UserData"),
        EnumSpec(f, "FileOperationSelector", {"Open", "Close", "Read", "Write", "Delete"}, "Open"),
        EnumSpec(f, "FileOpenMode", {"Read", "Write", "ReadWrite"}, "Read"),
        CommandSpec(f, "FileOperationExecute"),
        RawSpec(f, "FileAccessBuffer"),
        IntSpec(f, "FileAccessOffset", 0, 0, 65536),
        IntSpec(f, "FileAccessLength", 0, 0, 65536),
        ReadOnly(EnumSpec(f, "FileOperationStatus", {"Success", "Failure"}, "Success")),
        ReadOnly(IntSpec(f, "FileOperationResult", 0, 0, 65536)),
        ReadOnly(IntSpec(f, "FileSize", 65536, 0, 65536)),
        ReadOnly(FloatSpec(s, "StatFrameRate", 0.0, 0.0, 1000.0)),
        ReadOnly(IntSpec(s, "StatFramesDelivered", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatFramesDropped", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatFramesUnderrun", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatPacketsErroneous", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatPacketsMissed", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatPacketsReceived", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatPacketsRequested", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntSpec(s, "StatPacketsResent", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(FloatSpec(s, "StatLocalRate", 0.0, 0.0, 1000.0)),
        ReadOnly(FloatSpec(s, "StatTimeElapsed", 0.0, 0.0, 1e9)),
    };
}

} // namespace

FeatureSpecs OtherFeatures()
{
    FeatureSpecs specs = DeviceFeatures();
    Append(specs, AcquisitionFeatures());
    Append(specs, ImageFormatFeatures());
    Append(specs, AnalogFeatures());
    Append(specs, LutFeatures());
    Append(specs, TransportFeatures());
    Append(specs, EventFeatures());
    Append(specs, LineFeatures());
    Append(specs, TimerAndCounterFeatures());
    Append(specs, UserSetAndChunkFeatures());
    Append(specs, FileAndStatisticsFeatures());
    return specs;
}

FeatureSpecs FillerFeatures(int count)
{
    FeatureSpecs specs = OtherFeatures();
    specs.resize(std::min(specs.size(), static_cast<size_t>(count)));
    for (int index = static_cast<int>(specs.size()); index < count; ++index) {
        char name[32];
        std::snprintf(name, sizeof name, "UserParameter%04d", index);
        specs.push_back(IntSpec("/UserParameters", name, 0, 0, 65535));
    }
    return specs;
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
