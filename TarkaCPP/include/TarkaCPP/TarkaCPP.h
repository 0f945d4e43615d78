#ifndef TARKACPP_TARKACPP_H
#define TARKACPP_TARKACPP_H

// The camera library's public interface: features reached by name through
// reference-counted pointers, and observers of their changes.

#include <TarkaCPP/Feature.h>
#include <TarkaCPP/IFeatureObserver.h>
#include <TarkaCPP/Mutex.h>
#include <TarkaCPP/SharedPtr.h>
#include <TarkaCPP/TrkTypes.h>

#endif
