#include "CallRecording.h"

#include <TarkaCPP/Feature.h>

using KST::TrkAPI::Feature;
using KST::TrkAPI::IFeatureObserverPtr;

namespace {

typedef CallRecording::Call Call;

// Forwards every operation to the camera's feature and records it.
class RecordingFeature : public Feature
{
public:
    RecordingFeature(const FeaturePtr& inner, CallRecording& recording)
        : m_Inner(inner), m_Recording(recording)
    {}
    // A misused counter would throw from here; a feature may not.
    ~RecordingFeature() noexcept override {}

    TrkErrorType GetName(char* buffer, unsigned int& length) const override
    {
        Text(CallRecording::Name, buffer, length);
        return m_Inner->GetName(buffer, length);
    }
    TrkErrorType GetDisplayName(char* buffer, unsigned int& length) const override
    {
        Text(CallRecording::DisplayName, buffer, length);
        return m_Inner->GetDisplayName(buffer, length);
    }
    TrkErrorType GetCategory(char* buffer, unsigned int& length) const override
    {
        Text(CallRecording::Category, buffer, length);
        return m_Inner->GetCategory(buffer, length);
    }
    TrkErrorType GetDataType(TrkFeatureDataType& type) const override
    {
        Plain(CallRecording::DataType);
        return m_Inner->GetDataType(type);
    }
    TrkErrorType IsWritable(bool& writable) override
    {
        Plain(CallRecording::Writable);
        return m_Inner->IsWritable(writable);
    }
    TrkErrorType GetValue(long long& value) const override
    {
        Plain(CallRecording::IntValue);
        return m_Inner->GetValue(value);
    }
    TrkErrorType GetValue(double& value) const override
    {
        Plain(CallRecording::FloatValue);
        return m_Inner->GetValue(value);
    }
    TrkErrorType GetValue(bool& value) const override
    {
        Plain(CallRecording::BoolValue);
        return m_Inner->GetValue(value);
    }
    TrkErrorType GetValue(char* buffer, unsigned int& length) const override
    {
        Text(CallRecording::TextValue, buffer, length);
        return m_Inner->GetValue(buffer, length);
    }
    TrkErrorType GetValues(char const** entries, unsigned int& count) override
    {
        Text(CallRecording::Entries, entries, count);
        return m_Inner->GetValues(entries, count);
    }
    TrkErrorType IsValueAvailable(char const* entry, bool& available) const override
    {
        Call call = Make(CallRecording::EntryAvailable);
        call.text = entry != nullptr ? entry : "";
        m_Recording.Record(call);
        return m_Inner->IsValueAvailable(entry, available);
    }
    TrkErrorType GetRange(long long& min, long long& max) const override
    {
        Plain(CallRecording::IntRange);
        return m_Inner->GetRange(min, max);
    }
    TrkErrorType GetRange(double& min, double& max) const override
    {
        Plain(CallRecording::FloatRange);
        return m_Inner->GetRange(min, max);
    }
    TrkErrorType GetIncrement(long long& increment) const override
    {
        Plain(CallRecording::IntIncrement);
        return m_Inner->GetIncrement(increment);
    }
    TrkErrorType GetIncrement(double& increment) const override
    {
        Plain(CallRecording::FloatIncrement);
        return m_Inner->GetIncrement(increment);
    }
    TrkErrorType SetValue(long long const& value) override
    {
        Call call = Make(CallRecording::SetInt);
        call.integer = value;
        m_Recording.Record(call);
        return m_Inner->SetValue(value);
    }
    TrkErrorType SetValue(double const& value) override
    {
        Call call = Make(CallRecording::SetFloat);
        call.real = value;
        m_Recording.Record(call);
        return m_Inner->SetValue(value);
    }
    TrkErrorType SetValue(bool value) override
    {
        Call call = Make(CallRecording::SetBool);
        call.flag = value;
        m_Recording.Record(call);
        return m_Inner->SetValue(value);
    }
    TrkErrorType SetValue(char const* value) override
    {
        Call call = Make(CallRecording::SetText);
        call.text = value != nullptr ? value : "";
        m_Recording.Record(call);
        return m_Inner->SetValue(value);
    }
    TrkErrorType RunCommand() override
    {
        Plain(CallRecording::Command);
        return m_Inner->RunCommand();
    }
    TrkErrorType RegisterObserver(IFeatureObserverPtr const& observer) override
    {
        Observer(CallRecording::Register, observer);
        return m_Inner->RegisterObserver(observer);
    }
    TrkErrorType UnregisterObserver(IFeatureObserverPtr const& observer) override
    {
        Observer(CallRecording::Unregister, observer);
        return m_Inner->UnregisterObserver(observer);
    }

private:
    Call Make(CallRecording::Kind kind) const
    {
        Call call{};
        call.feature = m_Inner.get();
        call.kind = kind;
        return call;
    }
    void Plain(CallRecording::Kind kind) const { m_Recording.Record(Make(kind)); }
    template <typename Buffer>
    void Text(CallRecording::Kind kind, Buffer buffer, unsigned int length) const
    {
        Call call = Make(kind);
        call.hasBuffer = buffer != nullptr;
        call.length = length;
        m_Recording.Record(call);
    }
    void Observer(CallRecording::Kind kind, const IFeatureObserverPtr& observer) const
    {
        Call call = Make(kind);
        call.observer = observer;
        m_Recording.Record(call);
    }

    FeaturePtr m_Inner;
    CallRecording& m_Recording;
};

// Two-call reads go to a buffer of the recorded size, as the caller's was.
TrkErrorType ReplayText(const Call& call, std::vector<char>& buffer,
                        TrkErrorType (Feature::*read)(char*, unsigned int&) const)
{
    unsigned int length = call.length;
    if (!call.hasBuffer) {
        return (call.feature->*read)(nullptr, length);
    }
    buffer.assign(static_cast<size_t>(length) + 1, '\0');
    return (call.feature->*read)(buffer.data(), length);
}

} // namespace

QSharedPointer<FeatureVector> CallRecording::Wrap(const FeatureVector& features)
{
    QSharedPointer<FeatureVector> wrapped(new FeatureVector);
    for (const FeaturePtr& feature : features) {
        wrapped->append(FeaturePtr(new RecordingFeature(feature, *this)));
    }
    return wrapped;
}

void CallRecording::Start()
{
    m_Calls.clear();
    m_On = true;
}

void CallRecording::Stop()
{
    m_On = false;
}

void CallRecording::Record(const Call& call)
{
    if (m_On) {
        m_Calls.push_back(call);
    }
}

void CallRecording::Replay() const
{
    std::vector<char> buffer;
    std::vector<const char*> entries;
    for (const Call& call : m_Calls) {
        Feature& feature = *call.feature;
        TrkFeatureDataType type;
        bool flag;
        long long integer;
        long long integerMax;
        double real;
        double realMax;
        unsigned int count = call.length;
        switch (call.kind) {
        case Name:
            ReplayText(call, buffer, &Feature::GetName);
            break;
        case DisplayName:
            ReplayText(call, buffer, &Feature::GetDisplayName);
            break;
        case Category:
            ReplayText(call, buffer, &Feature::GetCategory);
            break;
        case TextValue:
            ReplayText(call, buffer,
                       static_cast<TrkErrorType (Feature::*)(char*, unsigned int&) const>(
                           &Feature::GetValue));
            break;
        case DataType:
            feature.GetDataType(type);
            break;
        case Writable:
            feature.IsWritable(flag);
            break;
        case IntValue:
            feature.GetValue(integer);
            break;
        case FloatValue:
            feature.GetValue(real);
            break;
        case BoolValue:
            feature.GetValue(flag);
            break;
        case Entries:
            entries.assign(count, nullptr);
            feature.GetValues(call.hasBuffer ? entries.data() : nullptr, count);
            break;
        case EntryAvailable:
            feature.IsValueAvailable(call.text.c_str(), flag);
            break;
        case IntRange:
            feature.GetRange(integer, integerMax);
            break;
        case FloatRange:
            feature.GetRange(real, realMax);
            break;
        case IntIncrement:
            feature.GetIncrement(integer);
            break;
        case FloatIncrement:
            feature.GetIncrement(real);
            break;
        case SetInt:
            feature.SetValue(call.integer);
            break;
        case SetFloat:
            feature.SetValue(call.real);
            break;
        case SetBool:
            feature.SetValue(call.flag);
            break;
        case SetText:
            feature.SetValue(call.text.c_str());
            break;
        case Command:
            feature.RunCommand();
            break;
        case Register:
            feature.RegisterObserver(call.observer);
            break;
        case Unregister:
            feature.UnregisterObserver(call.observer);
            break;
        }
    }
}

void CallRecording::UndoRegistrations() const
{
    for (const Call& call : m_Calls) {
        if (call.kind == Register) {
            call.feature->UnregisterObserver(call.observer);
        }
    }
}
