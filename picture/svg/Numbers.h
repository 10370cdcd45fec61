#pragma once

#include "core/base/ByteOrder.h"
#include "core/base/TextBuffer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

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
    char *put(char *out, int64_t steps, bool &hasPoint) const
    {
        *out = '-';
        out += steps < 0 ? 1 : 0;
        const uint64_t number = steps < 0 ? uint64_t(-steps) : uint64_t(steps);
        constexpr uint64_t kMost = 100'000'000;
        if (number >= kMost || m_decimals >= kWord) [[unlikely]]
            return putLong(out, number, hasPoint);
        hasPoint = false;
        if (number == 0) {
            *out = '0';
            return out + 1;
        }
        const uint64_t digits = digitsOf(uint32_t(number));
        const uint64_t characters = digits + 0x3030303030303030;
        // Less than kWord anyhow, as one of the digits is not 0.
        const int first = std::countr_zero(digits) / kWord % kWord;
        const int end = kWord - std::countl_zero(digits) / kWord;
        const int point = kWord - m_decimals;
        store(out, characters >> (8 * first));
        out += std::max(point - first, 0);
        if (end <= point)
            return out;
        hasPoint = true;
        *out = '.';
        store(out + 1, characters >> (8 * point));
        return out + 1 + (end - point);
    }
    void append(TextBuffer &out, double value) const
    {
        bool hasPoint = false;
        out.write(kMostLength, [&](char *at) { return put(at, steps(value), hasPoint); });
    }
    /// Whether a number begins with its decimal point.
    bool beginsWithPoint(int64_t steps) const { return steps > 0 && double(steps) < m_scale; }

private:
    static constexpr int kWord = 8; ///< digits

    /// The eight digits of a number, the first in the lowest byte. It is halved three times, all
    /// parts at once: hi and lo half of four digits, then quarters of two, then digits.
    static uint64_t digitsOf(uint32_t number)
    {
        const uint64_t halves = number / 10000 | uint64_t(number % 10000) << 32;
        // By 100, and by 10, with products that are exact as far as these numbers go.
        const uint64_t hundreds = ((halves * 10486) >> 20) & 0x0000007F0000007F;
        const uint64_t quarters = hundreds | (halves - hundreds * 100) << 16;
        const uint64_t tens = ((quarters * 103) >> 10) & 0x000F000F000F000F;
        return tens | (quarters - tens * 10) << 8;
    }
    /// Copies eight characters; those that count come first.
    static void store(char *out, uint64_t characters)
    {
        const uint64_t bytes = fromLittleEndian(characters);
        std::memcpy(out, &bytes, sizeof bytes);
    }
    /// The same of numbers of any length, without a sign.
    char *putLong(char *out, uint64_t number, bool &hasPoint) const;

    int m_decimals;
    double m_scale = 1;
    double m_tolerance = 0.5; // in steps
};

} // namespace svgtool::picture
