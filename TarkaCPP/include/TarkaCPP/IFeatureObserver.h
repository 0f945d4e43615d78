#ifndef TARKACPP_IFEATUREOBSERVER_H
#define TARKACPP_IFEATUREOBSERVER_H

#include <TarkaCPP/SharedPtr.h>

namespace KST {
namespace TrkAPI {

class Feature;

// Receives the library's notice that a feature changed. Called on a thread
// of the library, never on the thread that wrote the feature.
class IFeatureObserver
{
public:
    virtual void FeatureChanged(const shared_ptr<Feature>& feature) = 0;
    virtual ~IFeatureObserver() {}
};

} // namespace TrkAPI
} // namespace KST

#endif
