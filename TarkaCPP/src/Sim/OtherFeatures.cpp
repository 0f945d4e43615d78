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

void Append(FeatureDescriptions& descriptions, const FeatureDescriptions& more)
{
    descriptions.insert(descriptions.end(), more.begin(), more.end());
}

FeatureDescriptions DeviceFeatures()
{
    const std::string c = "/DeviceControl";
    return {
        ReadOnly(StringFeature(c, "DeviceVendorName", "Simulated Optics")),
        ReadOnly(StringFeature(c, "DeviceModelName", "SIM-5000")),
        ReadOnly(StringFeature(c, "DeviceVersion", "1.4.2")),
        ReadOnly(StringFeature(c, "DeviceFirmwareVersion", "00.04.02.31337")),
        ReadOnly(StringFeature(c, "DeviceSerialNumber", "0412-000173")),
        StringFeature(c, "DeviceUserID", ""),
        ReadOnly(StringFeature(c, "DeviceID", "SIM-5000-0412-000173")),
        ReadOnly(EnumFeature(c, "DeviceScanType", {"Areascan", "Linescan"}, "Areascan")),
        EnumFeature(c, "DeviceTemperatureSelector", {"Sensor", "Mainboard"}, "Sensor"),
        ReadOnly(FloatFeature(c, "DeviceTemperature", 41.5, -40.0, 120.0)),
        ReadOnly(IntFeature(c, "DeviceLinkSpeed", 125000000, 0, 125000000)),
        IntFeature(c, "DeviceLinkThroughputLimit", 115000000, 1000000, 125000000, 1000),
        ReadOnly(IntFeature(c, "DeviceSFNCVersionMajor", 2, 0, 99)),
        ReadOnly(IntFeature(c, "DeviceSFNCVersionMinor", 3, 0, 99)),
        CommandFeature(c, "DeviceReset"),
        CommandFeature(c, "DeviceFactoryReset"),
    };
}

FeatureDescriptions AcquisitionFeatures()
{
    const std::string c = "/AcquisitionControl";
    const std::string t = "/AcquisitionControl/Trigger";
    return {
        EnumFeature(c, "AcquisitionMode", {"Continuous", "SingleFrame", "MultiFrame", "Recorder"},
                    "Continuous"),
        CommandFeature(c, "AcquisitionStart"),
        CommandFeature(c, "AcquisitionStop"),
        CommandFeature(c, "AcquisitionAbort"),
        ReadOnly(BoolFeature(c, "AcquisitionStatus", false)),
        IntFeature(c, "AcquisitionFrameCount", 1, 1, 65535),
        BoolFeature(c, "AcquisitionFrameRateEnable", false),
        FloatFeature(c, "AcquisitionFrameRate", 14.0, 0.1, 14.0, 0.01),
        ReadOnly(FloatFeature(c, "AcquisitionFrameRateLimit", 14.0, 0.1, 14.0)),
        IntFeature(c, "RecorderPreEventCount", 0, 0, 65535),
        EnumFeature(t, "TriggerSelector",
                    {"FrameStart", "AcquisitionStart", "AcquisitionEnd", "AcquisitionRecord"},
                    "FrameStart"),
        EnumFeature(t, "TriggerMode", OnOff, "Off"),
        EnumFeature(t, "TriggerSource", SignalSources, "Software"),
        EnumFeature(t, "TriggerActivation", EdgeActivations, "RisingEdge"),
        FloatFeature(t, "TriggerDelay", 0.0, 0.0, 60000000.0),
        EnumFeature(t, "TriggerOverlap", {"Off", "PreviousFrame"}, "Off"),
        CommandFeature(t, "TriggerSoftware"),
    };
}

FeatureDescriptions ImageFormatFeatures()
{
    const std::string c = "/ImageFormatControl";
    return {
        EnumFeature(c, "PixelFormat", {"Mono8", "Mono10", "Mono12", "Mono12Packed", "BayerRG8"},
                    "Mono8"),
        ReadOnly(IntFeature(c, "PixelSize", 8, 8, 16)),
        IntFeature(c, "BinningHorizontal", 1, 1, 8),
        IntFeature(c, "BinningVertical", 1, 1, 8),
        IntFeature(c, "DecimationHorizontal", 1, 1, 8),
        IntFeature(c, "DecimationVertical", 1, 1, 8),
        BoolFeature(c, "ReverseX", false),
        BoolFeature(c, "ReverseY", false),
        EnumFeature(c, "TestImageSelector", {"Off", "GreyHorizontalRamp", "GreyVerticalRamp"},
                    "Off"),
        ReadOnly(IntFeature(c, "PayloadSize", 5038848, 0, 20155392)),
    };
}

FeatureDescriptions AnalogFeatures()
{
    const std::string c = "/AnalogControl";
    return {
        EnumFeature(c, "GainSelector", {"All", "AnalogAll", "DigitalAll"}, "All"),
        FloatFeature(c, "Gain", 0.0, 0.0, 24.0, 0.1),
        EnumFeature(c, "GainAuto", {"Off", "Once", "Continuous"}, "Off"),
        FloatFeature(c, "GainAutoMin", 0.0, 0.0, 24.0),
        FloatFeature(c, "GainAutoMax", 24.0, 0.0, 24.0),
        EnumFeature(c, "BlackLevelSelector", {"All"}, "All"),
        FloatFeature(c, "BlackLevel", 4.0, 0.0, 63.75, 0.25),
        FloatFeature(c, "Gamma", 1.0, 0.25, 4.0),
        FloatFeature(c, "Hue", 0.0, -40.0, 40.0),
        FloatFeature(c, "Saturation", 1.0, 0.0, 2.0),
        FloatFeature(c, "Sharpness", 0.0, -1.0, 1.0),
        EnumFeature(c, "BalanceRatioSelector", {"Red", "Blue"}, "Red"),
        FloatFeature(c, "BalanceRatio", 1.0, 0.8, 3.0, 0.01),
        EnumFeature(c, "BalanceWhiteAuto", {"Off", "Once", "Continuous"}, "Off"),
        IntFeature(c, "BalanceWhiteAutoRate", 100, 1, 100),
        IntFeature(c, "BalanceWhiteAutoTolerance", 5, 0, 50),
        BoolFeature(c, "DefectMaskEnable", true),
        EnumFeature(c, "ColorTransformationMode", {"Off", "Manual", "Daylight", "Tungsten"}, "Off"),
        EnumFeature(c, "ColorTransformationValueSelector",
                    {"Gain00", "Gain01", "Gain02", "Gain10", "Gain11", "Gain12", "Gain20", "Gain21",
                     "Gain22"},
                    "Gain00"),
        FloatFeature(c, "ColorTransformationValue", 1.0, -2.0, 2.0, 0.01),
        ReadOnly(IntFeature(c, "SensorTaps", 1, 1, 4)),
        ReadOnly(IntFeature(c, "SensorBits", 12, 8, 14)),
    };
}

FeatureDescriptions LutFeatures()
{
    const std::string c = "/LUTControl";
    return {
        EnumFeature(c, "LUTSelector", {"Luminance", "User1", "User2"}, "Luminance"),
        BoolFeature(c, "LUTEnable", false),
        IntFeature(c, "LUTIndex", 0, 0, 4095),
        IntFeature(c, "LUTValue", 0, 0, 4095),
        ReadOnly(IntFeature(c, "LUTBitDepthIn", 12, 8, 16)),
        ReadOnly(IntFeature(c, "LUTBitDepthOut", 12, 8, 16)),
        ReadOnly(IntFeature(c, "LUTSizeBytes", 8192, 0, 65536)),
        CommandFeature(c, "LUTLoad"),
        CommandFeature(c, "LUTSave"),
        RawFeature(c, "LUTValueAll"),
    };
}

FeatureDescriptions TransportFeatures()
{
    const std::string c = "/TransportLayerControl";
    return {
        IntFeature(c, "GevSCPSPacketSize", 1500, 576, 9000, 4),
        IntFeature(c, "GevSCPD", 0, 0, 100000),
        IntFeature(c, "GevHeartbeatTimeout", 3000, 500, 60000),
        ReadOnly(IntFeature(c, "GevTimestampTickFrequency", 1000000000, 0, 1000000000)),
        CommandFeature(c, "GevTimestampControlLatch"),
        CommandFeature(c, "GevTimestampControlReset"),
        ReadOnly(IntFeature(c, "GevTimestampValue", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(StringFeature(c, "GevCurrentIPAddress", "169.254.12.40")),
        ReadOnly(StringFeature(c, "GevCurrentSubnetMask", "255.255.0.0")),
        ReadOnly(StringFeature(c, "GevMACAddress", "02:00:5e:10:00:2a")),
        IntFeature(c, "StreamBytesPerSecond", 115000000, 1000000, 124000000),
        BoolFeature(c, "StreamFrameRateConstrain", true),
        BoolFeature(c, "StreamHoldEnable", false),
        EnumFeature(c, "PtpMode", {"Off", "Slave", "Master", "Auto"}, "Off"),
        ReadOnly(
            EnumFeature(c, "PtpStatus", {"Disabled", "Listening", "Slave", "Master"}, "Disabled")),
        FloatFeature(c, "PtpAcquisitionGateTime", 0.0, 0.0, 1e12),
    };
}

FeatureDescriptions EventFeatures()
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
    FeatureDescriptions descriptions = {EnumFeature(c, "EventSelector", events, events.front()),
                                        EnumFeature(c, "EventNotification", OnOff, "Off")};
    for (const std::string& event : events) {
        const std::string category = c + "/Event" + event + "Data";
        Append(descriptions,
               {ReadOnly(IntFeature(category, "Event" + event, 0, 0, 65535)),
                ReadOnly(IntFeature(category, "Event" + event + "FrameID", 0, 0, 65535)),
                ReadOnly(IntFeature(category, "Event" + event + "Timestamp", 0, 0,
                                    0x7fffffffffffffffLL))});
    }
    return descriptions;
}

// The features of count numbered units such as "Line1" to "Line4", each in a
// category of its own below parent; make gives a unit's features from its
// category, its name and its number.
template <class Make>
FeatureDescriptions Units(const std::string& parent, const std::string& unit, int count, Make make)
{
    FeatureDescriptions descriptions;
    for (int index = 1; index <= count; ++index) {
        const std::string name = unit + std::to_string(index);
        Append(descriptions, make(parent + "/" + name, name, index));
    }
    return descriptions;
}

FeatureDescriptions LineFeatures()
{
    return Units(
        "/DigitalIOControl", "Line", 4,
        [](const std::string& c, const std::string& line, int index) -> FeatureDescriptions {
            return {
                EnumFeature(c, line + "Mode", {"Input", "Output"}, index <= 2 ? "Input" : "Output"),
                BoolFeature(c, line + "Inverter", false),
                ReadOnly(BoolFeature(c, line + "Status", false)),
                EnumFeature(c, line + "Source", SignalSources, "Off"),
                FloatFeature(c, line + "DebounceTime", 0.0, 0.0, 1000000.0)};
        });
}

FeatureDescriptions TimerAndCounterFeatures()
{
    const std::string parent = "/CounterAndTimerControl";
    FeatureDescriptions descriptions =
        Units(parent, "Timer", 4, [](const std::string& c, const std::string& timer, int) {
            return FeatureDescriptions{
                FloatFeature(c, timer + "Delay", 0.0, 0.0, 60000000.0),
                FloatFeature(c, timer + "Duration", 0.0, 0.0, 60000000.0),
                EnumFeature(c, timer + "TriggerSource", SignalSources, "Off"),
                EnumFeature(c, timer + "TriggerActivation", EdgeActivations, "RisingEdge"),
                CommandFeature(c, timer + "Reset")};
        });
    Append(descriptions,
           Units(parent, "Counter", 4, [](const std::string& c, const std::string& counter, int) {
               return FeatureDescriptions{
                   EnumFeature(c, counter + "EventSource", SignalSources, "Off"),
                   ReadOnly(IntFeature(c, counter + "Value", 0, 0, 4294967295LL)),
                   IntFeature(c, counter + "Duration", 1, 1, 4294967295LL),
                   CommandFeature(c, counter + "Reset")};
           }));
    return descriptions;
}

FeatureDescriptions UserSetAndChunkFeatures()
{
    const std::string u = "/UserSetControl";
    const std::string c = "/ChunkDataControl";
    const std::vector<std::string> sets = {"Default", "UserSet1", "UserSet2", "UserSet3"};
    return {
        EnumFeature(u, "UserSetSelector", sets, "Default"),
        CommandFeature(u, "UserSetLoad"),
        CommandFeature(u, "UserSetSave"),
        EnumFeature(u, "UserSetDefault", sets, "Default"),
        ReadOnly(EnumFeature(u, "UserSetOperationStatus", {"Idle", "Busy", "Failed"}, "Idle")),
        BoolFeature(c, "ChunkModeActive", false),
        EnumFeature(c, "ChunkSelector",
                    {"Width", "Height", "OffsetX", "OffsetY", "ExposureTime", "Gain", "Timestamp",
                     "FrameID", "LineStatusAll"},
                    "Timestamp"),
        BoolFeature(c, "ChunkEnable", false),
        ReadOnly(IntFeature(c, "ChunkWidth", 0, 0, 65535)),
        ReadOnly(IntFeature(c, "ChunkHeight", 0, 0, 65535)),
        ReadOnly(IntFeature(c, "ChunkOffsetX", 0, 0, 65535)),
        ReadOnly(IntFeature(c, "ChunkOffsetY", 0, 0, 65535)),
        ReadOnly(FloatFeature(c, "ChunkExposureTime", 0.0, 0.0, 60000000.0)),
        ReadOnly(FloatFeature(c, "ChunkGain", 0.0, 0.0, 24.0)),
        ReadOnly(IntFeature(c, "ChunkTimestamp", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(c, "ChunkFrameID", 0, 0, 65535)),
        ReadOnly(IntFeature(c, "ChunkLineStatusAll", 0, 0, 15)),
    };
}

FeatureDescriptions FileAndStatisticsFeatures()
{
    const std::string f = "/FileAccessControl";
    const std::string s = "/Statistics";
    return {
        EnumFeature(f, "FileSelector", {"UserSet1", "UserSet2", "UserSet3", "UserData"},
                    "UserData"),
        EnumFeature(f, "FileOperationSelector", {"Open", "Close", "Read", "Write", "Delete"},
                    "Open"),
        EnumFeature(f, "FileOpenMode", {"Read", "Write", "ReadWrite"}, "Read"),
        CommandFeature(f, "FileOperationExecute"),
        RawFeature(f, "FileAccessBuffer"),
        IntFeature(f, "FileAccessOffset", 0, 0, 65536),
        IntFeature(f, "FileAccessLength", 0, 0, 65536),
        ReadOnly(EnumFeature(f, "FileOperationStatus", {"Success", "Failure"}, "Success")),
        ReadOnly(IntFeature(f, "FileOperationResult", 0, 0, 65536)),
        ReadOnly(IntFeature(f, "FileSize", 65536, 0, 65536)),
        ReadOnly(FloatFeature(s, "StatFrameRate", 0.0, 0.0, 1000.0)),
        ReadOnly(IntFeature(s, "StatFramesDelivered", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatFramesDropped", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatFramesUnderrun", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatPacketsErroneous", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatPacketsMissed", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatPacketsReceived", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatPacketsRequested", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(IntFeature(s, "StatPacketsResent", 0, 0, 0x7fffffffffffffffLL)),
        ReadOnly(FloatFeature(s, "StatLocalRate", 0.0, 0.0, 1000.0)),
        ReadOnly(FloatFeature(s, "StatTimeElapsed", 0.0, 0.0, 1e9)),
    };
}

} // namespace

FeatureDescriptions OtherFeatures()
{
    FeatureDescriptions descriptions = DeviceFeatures();
    Append(descriptions, AcquisitionFeatures());
    Append(descriptions, ImageFormatFeatures());
    Append(descriptions, AnalogFeatures());
    Append(descriptions, LutFeatures());
    Append(descriptions, TransportFeatures());
    Append(descriptions, EventFeatures());
    Append(descriptions, LineFeatures());
    Append(descriptions, TimerAndCounterFeatures());
    Append(descriptions, UserSetAndChunkFeatures());
    Append(descriptions, FileAndStatisticsFeatures());
    return descriptions;
}

FeatureDescriptions FillerFeatures(int count)
{
    FeatureDescriptions descriptions = OtherFeatures();
    descriptions.resize(std::min(descriptions.size(), static_cast<size_t>(count)));
    for (int index = static_cast<int>(descriptions.size()); index < count; ++index) {
        char name[32];
        std::snprintf(name, sizeof name, "UserParameter%04d", index);
        descriptions.push_back(IntFeature("/UserParameters", name, 0, 0, 65535));
    }
    return descriptions;
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
