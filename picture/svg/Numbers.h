#pragma once

#include "core/base/TextBuffer.h"

#include <cmath>
#include <cstdint>

namespace svgtool::picture {

/// Decimal numbers in their shortest form, on a grid that is fine enough for a purpose.
class Numbers
{
public:
    static constexpr int kMostDecimals = 9;

    /// @param decimals  behind the point, 0 to kMostDecimals
    explicit constexpr Numbers(int decimals) : m_decimals(decimals)
    {
        for (int i = 0; i < decimals; ++i)
            m_scale *= 10;
    }
    /// A grid on which nothing moves by more than a thousandth of a pixel.
    /// @param unitsPerPixel  above 0
    static constexpr Numbers forPixel(double unitsPerPixel)
    {
        int decimals = 0;
        for (double step = 1; decimals < kMostDecimals && step > unitsPerPixel * 0.002; step /= 10)
            ++decimals;
        return Numbers(decimals);
    }

    /// The nearest place on the grid; what is not finite or beyond all sense is cut.
    int64_t steps(double value) const
    {
        constexpr double kFar = 1e15;
        const double scaled = std::floor(value * m_scale + 0.5);
        return scaled > -kFar && scaled < kFar ? int64_t(scaled)
                : scaled >= kFar               ? int64_t(kFar)
                : scaled <= -kFar              ? -int64_t(kFar)
                                               : 0;
    }
    /// Appends a number of the grid: no zero before the point, none at the end behind it.
    void append(TextBuffer &out, int64_t steps) const;
    void append(TextBuffer &out, double value) const { append(out, steps(value)); }
    /// How many characters append makes of it.
    int length(int64_t steps) const;

private:
    int m_decimals;
    double m_scale = 1;
};

} // namespace svgtool::picture
