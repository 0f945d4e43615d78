#ifndef TARKACPP_TARKACPP_H
#define TARKACPP_TARKACPP_H

// The camera library's public interface: features reached by name through
// reference-counted pointers, observers of their changes, and the opened
// camera that owns them.

#include <TarkaCPP/Device.h>
#include <TarkaCPP/Feature.h>
#include <TarkaCPP/IFeatureObserver.h>
#include <TarkaCPP/Mutex.h>
#include <TarkaCPP/SharedPtr.h>
#include <TarkaCPP/TrkTypes.h>

#endif
