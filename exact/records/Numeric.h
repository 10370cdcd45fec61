#pragma once

#include <QtGlobal>

#include <cmath>
#include <limits>

namespace svgtool {

/// @p value truncated toward zero. What does not fit, not-a-number included, gives -2147483648,
/// as the conversion instruction of the x86 processors does.
inline qint32 truncateToInt32(double value)
{
    if (value > -2147483649.0 && value < 2147483648.0)
        return static_cast<qint32>(value);
    return std::numeric_limits<qint32>::min();
}

/// The same for single precision, in which no number lies between -2147483649 and -2147483648.
inline qint32 truncateToInt32(float value)
{
    if (std::abs(value) < 2147483648.0F)
        return static_cast<qint32>(value);
    return std::numeric_limits<qint32>::min();
}

/// The sum in 32-bit wrap-around arithmetic.
constexpr qint32 wrapAdd(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) + static_cast<quint32>(b));
}

/// The difference in 32-bit wrap-around arithmetic.
constexpr qint32 wrapSub(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) - static_cast<quint32>(b));
}

/// The product in 32-bit wrap-around arithmetic.
constexpr qint32 wrapMul(qint32 a, qint32 b)
{
    return static_cast<qint32>(static_cast<quint32>(a) * static_cast<quint32>(b));
}

/// The low 16 bits of @p value, read as a signed number.
constexpr qint16 wrapToInt16(qint32 value)
{
    return static_cast<qint16>(static_cast<quint16>(static_cast<quint32>(value)));
}

} // namespace svgtool
