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
    static constexpr int kMostLength = 24; ///< characters of a number

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
        const double tolerance = unitsPerPixel / 1000;
        int decimals = 0;
        for (double half = 0.5; decimals < kMostDecimals && half > tolerance; half /= 10)
            ++decimals;
        Numbers numbers(decimals);
        numbers.m_tolerance = tolerance * numbers.m_scale;
        return numbers;
    }

    /// The nearest place on the grid; what is not finite or beyond all sense is cut. What lies half
    /// way goes up, on every machine: sines may differ in their last bits.
    int64_t steps(double value) const
    {
        constexpr double kFar = 1e15;
        constexpr double kHalf = 0.5 + 1e-6;
        const double scaled = value * m_scale + kHalf;
        if (scaled > -kFar && scaled < kFar) [[likely]] {
            const auto whole = int64_t(scaled); // towards zero
            return whole - (double(whole) > scaled ? 1 : 0);
        }
        return scaled >= kFar ? int64_t(kFar) : scaled <= -kFar ? -int64_t(kFar) : 0;
    }
    double nearest(double value) const { return double(steps(value)) / m_scale; }
    /// How far from itself a value may be written.
    double tolerance() const { return m_tolerance / m_scale; }
    /// Whether a place stands for a value as well as the nearest does.
    bool isNear(int64_t steps, double value) const
    {
        return std::abs(double(steps) - value * m_scale) <= m_tolerance;
    }

    /// Writes a number of the grid: no zero before the point, none at the end behind it.
    /// @param out  has room for kMostLength characters
    /// @param[out] hasPoint  whether it has a decimal point
    /// @return where the number ends
    char *put(char *out, int64_t steps, bool &hasPoint) const;
    void append(TextBuffer &out, double value) const
    {
        bool hasPoint = false;
        out.write(kMostLength, [&](char *at) { return put(at, steps(value), hasPoint); });
    }
    /// Whether a number begins with its decimal point.
    bool beginsWithPoint(int64_t steps) const { return steps > 0 && double(steps) < m_scale; }

private:
    /// The same of numbers of any length, without a sign.
    char *putLong(char *out, uint64_t number, bool &hasPoint) const;

    int m_decimals;
    double m_scale = 1;
    double m_tolerance = 0.5; // in steps
};

} // namespace svgtool::picture
