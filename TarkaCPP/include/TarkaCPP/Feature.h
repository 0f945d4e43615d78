#ifndef TARKACPP_FEATURE_H
#define TARKACPP_FEATURE_H

#include <TarkaCPP/IFeatureObserver.h>
#include <TarkaCPP/SharedPtr.h>
#include <TarkaCPP/TrkTypes.h>

namespace KST {
namespace TrkAPI {

// One named camera setting. Every operation returns 0 on success; an output
// argument is not to be trusted after a failure.
//
// Text and lists are read in two calls: first with a null buffer, which
// reports the size in length or count, then with a buffer of that size.
class Feature
{
public:
    virtual ~Feature() {}

    virtual TrkErrorType GetName(char* buffer, unsigned int& length) const = 0;
    virtual TrkErrorType GetDisplayName(char* buffer, unsigned int& length) const = 0;
    virtual TrkErrorType GetCategory(char* buffer, unsigned int& length) const = 0;
    virtual TrkErrorType GetDataType(TrkFeatureDataType& type) const = 0;
    virtual TrkErrorType IsWritable(bool& writable) = 0;

    virtual TrkErrorType GetValue(long long& value) const = 0;
    virtual TrkErrorType GetValue(double& value) const = 0;
    virtual TrkErrorType GetValue(bool& value) const = 0;
    virtual TrkErrorType GetValue(char* buffer, unsigned int& length) const = 0;
    virtual TrkErrorType GetValues(char const** entries, unsigned int& count) = 0;
    virtual TrkErrorType IsValueAvailable(char const* entry, bool& available) const = 0;

    virtual TrkErrorType GetRange(long long& min, long long& max) const = 0;
    virtual TrkErrorType GetRange(double& min, double& max) const = 0;
    virtual TrkErrorType GetIncrement(long long& increment) const = 0;
    virtual TrkErrorType GetIncrement(double& increment) const = 0;

    virtual TrkErrorType SetValue(long long const& value) = 0;
    virtual TrkErrorType SetValue(double const& value) = 0;
    virtual TrkErrorType SetValue(bool value) = 0;
    virtual TrkErrorType SetValue(char const* value) = 0;
    virtual TrkErrorType RunCommand() = 0;

    virtual TrkErrorType RegisterObserver(shared_ptr<IFeatureObserver> const& observer) = 0;
    virtual TrkErrorType UnregisterObserver(shared_ptr<IFeatureObserver> const& observer) = 0;
};

typedef shared_ptr<Feature> FeaturePtr;
typedef shared_ptr<IFeatureObserver> IFeatureObserverPtr;

} // namespace TrkAPI
} // namespace KST

#endif
