#ifndef SATURATING_H
#define SATURATING_H

#include <QtGlobal>

#include <cmath>
#include <limits>
#include <type_traits>

// Conversions and sums that a camera's extreme or broken values can't push
// into undefined behaviour. Wherever the plain C++ expression is defined they
// give exactly its result: a number is truncated toward zero, a sum is exact.
// Beyond the target type's range they give the nearest limit of that type,
// and a NaN gives 0.

// The quotient as IEEE arithmetic gives it, infinite or NaN for a zero
// denominator, without a division by zero.
inline double Divide(double numerator, double denominator)
{
    if (denominator != 0.0 || std::isnan(denominator)) {
        return numerator / denominator;
    }
    if (numerator == 0.0 || std::isnan(numerator)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const double infinity = std::numeric_limits<double>::infinity();
    return std::signbit(numerator) == std::signbit(denominator) ? infinity : -infinity;
}

template <typename Int>
Int SaturatingCast(double value)
{
    static_assert(std::is_integral<Int>::value, "an integer type");
    if (std::isnan(value)) {
        return 0;
    }
    // 2^digits is the first whole number above the type's maximum; the
    // lowest value of a signed type is its negative, exactly, and that of an
    // unsigned type 0, which also takes every negative number.
    const double above = std::ldexp(1.0, std::numeric_limits<Int>::digits);
    if (value >= above) {
        return std::numeric_limits<Int>::max();
    }
    const double lowest = std::is_signed<Int>::value ? -above : 0.0;
    if (value <= lowest) {
        return std::numeric_limits<Int>::lowest();
    }
    return static_cast<Int>(value);
}

template <typename Int>
Int SaturatingNarrow(qint64 value)
{
    static_assert(std::is_integral<Int>::value, "an integer type");
    if (value > qint64(std::numeric_limits<Int>::max())) {
        return std::numeric_limits<Int>::max();
    }
    if (value < qint64(std::numeric_limits<Int>::lowest())) {
        return std::numeric_limits<Int>::lowest();
    }
    return static_cast<Int>(value);
}

// Single precision, with a number beyond its range taken to the infinity of
// its sign, as IEEE rounding does.
inline float ToSinglePrecision(double value)
{
    const double largest = std::numeric_limits<float>::max();
    if (value > largest || value < -largest) {
        return std::copysign(std::numeric_limits<float>::infinity(), float(value > 0.0 ? 1 : -1));
    }
    return static_cast<float>(value);
}

inline qint64 SaturatingSub(qint64 a, qint64 b)
{
    qint64 difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        return b < 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
    }
    return difference;
}

#endif
