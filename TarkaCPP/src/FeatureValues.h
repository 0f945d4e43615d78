#ifndef TARKACPP_FEATUREVALUES_H
#define TARKACPP_FEATUREVALUES_H

#include <TarkaCPP/TrkTypes.h>

#include <cmath>
#include <cstring>
#include <string>

namespace KST {
namespace TrkAPI {

// How every backend hands out text and judges the step grid, so that a
// feature answers alike whichever backend serves it.

// Text goes out with its terminating zero; empty text has size zero. A
// buffer too small gets the backend's code tooSmall.
inline TrkErrorType CopyText(const std::string& text, char* buffer, unsigned int& length,
                             TrkErrorType tooSmall)
{
    const unsigned int needed = text.empty() ? 0 : static_cast<unsigned int>(text.size() + 1);
    if (buffer == nullptr) {
        length = needed;
        return 0;
    }
    if (length < needed) {
        return tooSmall;
    }
    std::memcpy(buffer, text.c_str(), needed);
    length = needed;
    return 0;
}

// A whole number lies on the grid of min and increment; no increment, no grid.
template <class T>
bool IsOnGrid(T min, T increment, T value)
{
    return increment <= 0 || (value - min) % increment == 0;
}

// A tiny tolerance admits the values that a caller's own floating alignment
// leaves a hair off the grid.
inline bool IsOnGrid(double min, double increment, double value)
{
    if (increment <= 0.0) {
        return true;
    }
    const double steps = (value - min) / increment;
    return std::fabs(steps - std::round(steps)) <= 1e-6;
}

} // namespace TrkAPI
} // namespace KST

#endif
