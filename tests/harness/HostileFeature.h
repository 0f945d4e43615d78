#ifndef HOSTILEFEATURE_H
#define HOSTILEFEATURE_H

#include <TarkaCPP/Sim/SimCamera.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

// A feature that stands in front of an in-memory camera's feature and reports
// what a broken camera might: any operation fails at a given rate, and the
// name, the type, the value, the range and the increment can be replaced with
// hostile ones. Writes and observers still reach the camera behind it.
// Used on the GUI thread only; the camera notifies through its own feature.
// It can also keep a journal of the operations called on it.
class HostileFeature : public KST::TrkAPI::Feature
{
public:
    struct Lies
    {
        bool unreadableName = false;
        bool replaceType = false;
        TrkFeatureDataType type = TrkFeatureDataUnknown;
        bool replaceValue = false;
        long long intValue = 0;
        double floatValue = 0.0;
        bool replaceRange = false;
        long long intMin = 0;
        long long intMax = 0;
        double floatMin = 0.0;
        double floatMax = 0.0;
        bool replaceIncrement = false;
        long long intIncrement = 0;
        double floatIncrement = 0.0;
    };

    HostileFeature(const KST::TrkAPI::FeaturePtr& real, const Lies& lies, double failureRate,
                   std::shared_ptr<std::mt19937> random);
    // Tells no lies and writes "name operation" into journal at each call.
    HostileFeature(const KST::TrkAPI::FeaturePtr& real, const std::string& name,
                   std::shared_ptr<std::vector<std::string>> journal);
    ~HostileFeature() noexcept override;

    TrkErrorType GetName(char* buffer, unsigned int& length) const override;
    TrkErrorType GetDisplayName(char* buffer, unsigned int& length) const override;
    TrkErrorType GetCategory(char* buffer, unsigned int& length) const override;
    TrkErrorType GetDataType(TrkFeatureDataType& type) const override;
    TrkErrorType IsWritable(bool& writable) override;
    TrkErrorType GetValue(long long& value) const override;
    TrkErrorType GetValue(double& value) const override;
    TrkErrorType GetValue(bool& value) const override;
    TrkErrorType GetValue(char* buffer, unsigned int& length) const override;
    TrkErrorType GetValues(char const** entries, unsigned int& count) override;
    TrkErrorType IsValueAvailable(char const* entry, bool& available) const override;
    TrkErrorType GetRange(long long& min, long long& max) const override;
    TrkErrorType GetRange(double& min, double& max) const override;
    TrkErrorType GetIncrement(long long& increment) const override;
    TrkErrorType GetIncrement(double& increment) const override;
    TrkErrorType SetValue(long long const& value) override;
    TrkErrorType SetValue(double const& value) override;
    TrkErrorType SetValue(bool value) override;
    TrkErrorType SetValue(char const* value) override;
    TrkErrorType RunCommand() override;
    TrkErrorType RegisterObserver(KST::TrkAPI::IFeatureObserverPtr const& observer) override;
    TrkErrorType UnregisterObserver(KST::TrkAPI::IFeatureObserverPtr const& observer) override;

private:
    bool Fails(const char* operation) const;
    // Fails at the failure rate; otherwise runs lie when told to, with a
    // successful return, or else asks the real feature.
    template <typename Lie, typename Real>
    TrkErrorType Answer(const char* operation, bool tell, Lie lie, Real real) const
    {
        if (Fails(operation)) {
            return KST::TrkAPI::Sim::ErrorInjected;
        }
        if (tell) {
            lie();
            return 0;
        }
        return real();
    }

    KST::TrkAPI::FeaturePtr m_Real;
    Lies m_Lies;
    double m_FailureRate;
    std::shared_ptr<std::mt19937> m_Random;
    std::string m_Name;
    std::shared_ptr<std::vector<std::string>> m_Journal;
};

#endif
