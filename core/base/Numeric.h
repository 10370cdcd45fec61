#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace svgtool {

/// The lesser of two numbers; one that is no number does not count. What std::fmin gives, without
/// a call.
constexpr double lesser(double a, double b)
{
    return b < a || a != a ? b : a;
}

/// The greater of two numbers, likewise.
constexpr double greater(double a, double b)
{
    return b > a || a != a ? b : a;
}

/// @p value truncated toward zero. What does not fit, not-a-number included, gives -2147483648,
/// as the conversion instruction of the x86 processors does.
inline int32_t truncateToInt32(double value)
{
    if (value > -2147483649.0 && value < 2147483648.0)
        return static_cast<int32_t>(value);
    return std::numeric_limits<int32_t>::min();
}

/// The same for single precision, in which no number lies between -2147483649 and -2147483648.
inline int32_t truncateToInt32(float value)
{
    if (std::abs(value) < 2147483648.0F)
        return static_cast<int32_t>(value);
    return std::numeric_limits<int32_t>::min();
}

/// The sum in 32-bit wrap-around arithmetic.
constexpr int32_t wrapAdd(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

/// The difference in 32-bit wrap-around arithmetic.
constexpr int32_t wrapSub(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

/// The product in 32-bit wrap-around arithmetic.
constexpr int32_t wrapMul(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

/// The low 16 bits of @p value, read as a signed number.
constexpr int16_t wrapToInt16(int32_t value)
{
    return static_cast<int16_t>(static_cast<uint16_t>(static_cast<uint32_t>(value)));
}

} // namespace svgtool
