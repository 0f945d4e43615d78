#ifndef TARKACPP_GENICAM_GENICAMFEATURE_H
#define TARKACPP_GENICAM_GENICAMFEATURE_H

#include <TarkaCPP/Feature.h>

#include <glib.h>

#include <functional>
#include <memory>

namespace KST {
namespace TrkAPI {
namespace GenICam {

class Connection;
struct NodeInfo;
struct Reading;

// One feature node of a GenICam camera: a handle on the camera's connection,
// which keeps it alive after the Camera object is gone.
class GenICamFeature : public Feature
{
public:
    GenICamFeature(const std::shared_ptr<Connection>& connection, size_t index);

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
    // Calls on the node; they may run after the feature's caller has gone
    // on, so they own what they touch (see Connection::Access).
    using ReadNode = std::function<TrkErrorType(const NodeInfo&, Reading&, GError**)>;
    using WriteNode = std::function<TrkErrorType(const NodeInfo&, GError**)>;

    const NodeInfo& Info() const;
    // Reads the node through Connection::Read if the feature is of type (or
    // alt), else fails with ErrorWrongType.
    TrkErrorType Read(TrkFeatureDataType type, TrkFeatureDataType alt, unsigned kind,
                      const ReadNode& read, Reading& answer) const;
    // A read of an Int (T long long) or Float (T double) feature that
    // answers one or two numbers.
    template <class T>
    TrkErrorType ReadNumbers(unsigned kind, const ReadNode& read, T& first,
                             T* second = nullptr) const;
    // The same for a write: check may refuse the value, then a feature that
    // can't be written now is refused, then store writes; a successful write
    // asks for a refresh of the watched features.
    TrkErrorType Write(TrkFeatureDataType type, const WriteNode& check, const WriteNode& store);

    std::shared_ptr<Connection> m_Connection;
    size_t m_Index;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
