#include "HostileFeature.h"

using KST::TrkAPI::Sim::ErrorInjected;

HostileFeature::HostileFeature(const KST::TrkAPI::FeaturePtr& real, const Lies& lies,
                               double failureRate, std::shared_ptr<std::mt19937> random)
    : m_Real(real), m_Lies(lies), m_FailureRate(failureRate), m_Random(std::move(random))
{}

HostileFeature::~HostileFeature() noexcept {}

HostileFeature::HostileFeature(const KST::TrkAPI::FeaturePtr& real, const std::string& name,
                               std::shared_ptr<std::vector<std::string>> journal)
    : m_Real(real), m_FailureRate(0.0), m_Random(std::make_shared<std::mt19937>()), m_Name(name),
      m_Journal(std::move(journal))
{}

bool HostileFeature::Fails(const char* operation) const
{
    if (m_Journal) {
        m_Journal->push_back(m_Name + " " + operation);
    }
    return m_FailureRate > 0.0 &&
           std::uniform_real_distribution<double>(0.0, 1.0)(*m_Random) < m_FailureRate;
}

TrkErrorType HostileFeature::GetName(char* buffer, unsigned int& length) const
{
    return m_Lies.unreadableName || Fails("GetName") ? ErrorInjected
                                                     : m_Real->GetName(buffer, length);
}

TrkErrorType HostileFeature::GetDisplayName(char* buffer, unsigned int& length) const
{
    return Fails("GetDisplayName") ? ErrorInjected : m_Real->GetDisplayName(buffer, length);
}

TrkErrorType HostileFeature::GetCategory(char* buffer, unsigned int& length) const
{
    return Fails("GetCategory") ? ErrorInjected : m_Real->GetCategory(buffer, length);
}

TrkErrorType HostileFeature::GetDataType(TrkFeatureDataType& type) const
{
    return Answer(
        "GetDataType", m_Lies.replaceType, [&] { type = m_Lies.type; },
        [&] { return m_Real->GetDataType(type); });
}

TrkErrorType HostileFeature::IsWritable(bool& writable)
{
    return Fails("IsWritable") ? ErrorInjected : m_Real->IsWritable(writable);
}

TrkErrorType HostileFeature::GetValue(long long& value) const
{
    return Answer(
        "GetValue", m_Lies.replaceValue, [&] { value = m_Lies.intValue; },
        [&] { return m_Real->GetValue(value); });
}

TrkErrorType HostileFeature::GetValue(double& value) const
{
    return Answer(
        "GetValue", m_Lies.replaceValue, [&] { value = m_Lies.floatValue; },
        [&] { return m_Real->GetValue(value); });
}

TrkErrorType HostileFeature::GetValue(bool& value) const
{
    return Fails("GetValue") ? ErrorInjected : m_Real->GetValue(value);
}

TrkErrorType HostileFeature::GetValue(char* buffer, unsigned int& length) const
{
    return Fails("GetValue") ? ErrorInjected : m_Real->GetValue(buffer, length);
}

TrkErrorType HostileFeature::GetValues(char const** entries, unsigned int& count)
{
    return Fails("GetValues") ? ErrorInjected : m_Real->GetValues(entries, count);
}

TrkErrorType HostileFeature::IsValueAvailable(char const* entry, bool& available) const
{
    return Fails("IsValueAvailable") ? ErrorInjected : m_Real->IsValueAvailable(entry, available);
}

TrkErrorType HostileFeature::GetRange(long long& min, long long& max) const
{
    return Answer(
        "GetRange", m_Lies.replaceRange,
        [&] {
            min = m_Lies.intMin;
            max = m_Lies.intMax;
        },
        [&] { return m_Real->GetRange(min, max); });
}

TrkErrorType HostileFeature::GetRange(double& min, double& max) const
{
    return Answer(
        "GetRange", m_Lies.replaceRange,
        [&] {
            min = m_Lies.floatMin;
            max = m_Lies.floatMax;
        },
        [&] { return m_Real->GetRange(min, max); });
}

TrkErrorType HostileFeature::GetIncrement(long long& increment) const
{
    return Answer(
        "GetIncrement", m_Lies.replaceIncrement, [&] { increment = m_Lies.intIncrement; },
        [&] { return m_Real->GetIncrement(increment); });
}

TrkErrorType HostileFeature::GetIncrement(double& increment) const
{
    return Answer(
        "GetIncrement", m_Lies.replaceIncrement, [&] { increment = m_Lies.floatIncrement; },
        [&] { return m_Real->GetIncrement(increment); });
}

TrkErrorType HostileFeature::SetValue(long long const& value)
{
    return Fails("SetValue") ? ErrorInjected : m_Real->SetValue(value);
}

TrkErrorType HostileFeature::SetValue(double const& value)
{
    return Fails("SetValue") ? ErrorInjected : m_Real->SetValue(value);
}

TrkErrorType HostileFeature::SetValue(bool value)
{
    return Fails("SetValue") ? ErrorInjected : m_Real->SetValue(value);
}

TrkErrorType HostileFeature::SetValue(char const* value)
{
    return Fails("SetValue") ? ErrorInjected : m_Real->SetValue(value);
}

TrkErrorType HostileFeature::RunCommand()
{
    return Fails("RunCommand") ? ErrorInjected : m_Real->RunCommand();
}

TrkErrorType HostileFeature::RegisterObserver(KST::TrkAPI::IFeatureObserverPtr const& observer)
{
    return Fails("RegisterObserver") ? ErrorInjected : m_Real->RegisterObserver(observer);
}

TrkErrorType HostileFeature::UnregisterObserver(KST::TrkAPI::IFeatureObserverPtr const& observer)
{
    return Fails("UnregisterObserver") ? ErrorInjected : m_Real->UnregisterObserver(observer);
}
