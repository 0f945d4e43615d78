#ifndef TARKACPP_GENICAM_POWERUP_H
#define TARKACPP_GENICAM_POWERUP_H

#include <arv.h>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// Gives the writable features of a simulated camera's description the values
// that the in-memory camera of its family starts with, as a camera's
// firmware does at power-up. The family is told by the region features the
// description has; enumerations come first, since other values are kept in
// their units. Call it before any range or access checks are turned on.
void PowerUp(ArvGc* genicam);

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
