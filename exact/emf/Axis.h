#pragma once

#include "core/base/Numeric.h"

#include <QtGlobal>

#include <cmath>

namespace svgtool {

/// Maps the coordinates of one axis of an enhanced metafile to output units.
///
/// Every step is rounded to single precision. What does not fit comes out as -2147483648.
///
/// Quirk: lengths are rounded half up while positions are truncated; every coordinate depends on
/// both.
class Axis
{
public:
    Axis() = default;
    /// @param divisor       logical units per output unit
    /// @param windowOrigin  where the logical units begin
    /// @param origin        of the document, in output units
    Axis(float divisor, float windowOrigin, float origin)
        : m_divisor(divisor), m_windowOrigin(windowOrigin), m_origin(origin)
    {
        const auto isWhole = [](float value) {
            return std::abs(value) <= kExact && value == static_cast<float>(truncateToInt32(value));
        };
        if (divisor == 1.0F && isWhole(windowOrigin) && isWhole(origin)) {
            m_wholeRange = 2 * kExact;
            m_shift = truncateToInt32(windowOrigin) + truncateToInt32(origin);
        } else {
            m_wholeRange = 0;
        }
    }

    qint32 position(qint32 value) const
    {
        if (isExact(value)) [[likely]]
            return value - m_shift;
        const float scaled = scaledDown(value);
        const float fromWindow = scaled - m_windowOrigin;
        const float fromOrigin = fromWindow - m_origin;
        return truncateToInt32(fromOrigin);
    }
    qint32 length(qint32 value) const
    {
        if (isExact(value)) [[likely]]
            return value;
        const float scaled = scaledDown(value);
        if (scaled < 0.0F) {
            const float shifted = scaled - 1.0F;
            const qint32 below = truncateToInt32(shifted);
            const float rest = scaled - static_cast<float>(below);
            const float rounded = rest + 0.5F;
            return wrapAdd(below, truncateToInt32(rounded));
        }
        const float rounded = scaled + 0.5F;
        return truncateToInt32(rounded);
    }

private:
    // Whole numbers up to here, the sums of three of them and their halves are exact in single
    // precision, so that integers give the same.
    static constexpr qint32 kExact = 1 << 21;

    bool isExact(qint32 value) const { return static_cast<quint32>(value) + kExact < m_wholeRange; }
    float scaledDown(qint32 value) const { return static_cast<float>(value) / m_divisor; }

    float m_divisor = 1.0F;
    float m_windowOrigin = 0.0F;
    float m_origin = 0.0F;
    quint32 m_wholeRange = 2 * kExact; ///< 0 when the mapping is not one of whole numbers
    qint32 m_shift = 0;
};

} // namespace svgtool
