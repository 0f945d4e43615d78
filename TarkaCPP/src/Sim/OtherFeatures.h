#ifndef TARKACPP_SIM_OTHERFEATURES_H
#define TARKACPP_SIM_OTHERFEATURES_H

#include "FeatureDescription.h"

namespace KST {
namespace TrkAPI {
namespace Sim {

// The features a camera carries besides image, exposure and region: device
// information, acquisition and trigger, analog controls, lookup table,
// transport, events, I/O lines, timers, counters, user sets, chunk data,
// file access and statistics, a few hundred in all, in that order.
FeatureDescriptions OtherFeatures();

// Exactly count features: the above first, then numbered user parameters.
FeatureDescriptions FillerFeatures(int count);

} // namespace Sim
} // namespace TrkAPI
} // namespace KST

#endif
