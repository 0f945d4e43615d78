#ifndef TARKACPP_SIM_SIMFEATURE_H
#define TARKACPP_SIM_SIMFEATURE_H

#include "FeatureDescription.h"

#include <memory>

namespace KST {
namespace TrkAPI {
namespace Sim {

class CameraState;
struct FeatureEntry;

// One feature of an in-memory camera: a handle on an entry of the camera's
// shared state, which keeps that state alive after the camera is gone.
class SimFeature : public Feature
{
public:
    // entry is the feature's own in state, whose name never changes.
    SimFeature(const std::shared_ptr<CameraState>& state, size_t index, const FeatureEntry& entry);

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

    TrkErrorType RegisterObserver(IFeatureObserverPtr const& observer) override;
    TrkErrorType UnregisterObserver(IFeatureObserverPtr const& observer) override;

private:
    // Writes a number of the feature's own type, refusing it off its range
    // or grid.
    template <class T>
    TrkErrorType SetNumber(TrkFeatureDataType type, Number<T> FeatureDescription::*number, T value);

    // Runs read under the camera's lock after counting the call and applying
    // an injected failure; read returns the result code.
    template <class Read>
    TrkErrorType Query(Op op, Read read) const;
    // The name read once a test hook is set.
    [[gnu::cold]] TrkErrorType GetNameCounted(char* buffer, unsigned int& length) const;

    std::shared_ptr<CameraState> m_State;
    size_t m_Index;
    const FeatureEntry& m_Entry;
};

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
