#pragma once

#include "core/fonts/FontEngine.h"

#include <algorithm>
#include <cstdint>
#include <limits>

// How GDI turns the numbers of a font's tables into pixels. Heights come from files and may be
// any 32-bit value, so all of it is 64-bit arithmetic whose factors are kept within range.

namespace svgtool {

/// What the tables of a font say, in font units.
struct FontTables
{
    int32_t unitsPerEm = 1; ///< 1 to 65535
    int32_t winAscent = 1; ///< OS/2; 0 to 65535, not 0 together with winDescent
    int32_t winDescent = 0; ///< OS/2; 0 to 65535
    int32_t ascender = 0; ///< hhea; this and all below within 18 bits
    int32_t descender = 0; ///< hhea, negative below the baseline
    int32_t lineGap = 0; ///< hhea
    int32_t averageWidth = 0; ///< OS/2
};

/// Whether a weight asks for the bold face of a family, which has no third.
constexpr bool isBold(int32_t weight)
{
    constexpr int32_t kLastRegularWeight = 550;
    return weight > kLastRegularWeight;
}

/// @p value, or the nearest 32-bit integer to it.
constexpr int32_t clampToInt32(int64_t value)
{
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(std::clamp<int64_t>(value, Limits::min(), Limits::max()));
}

/// The quotient rounded to the nearest integer, halves upward: floor(a / b + 1/2).
/// @param divisor  1 or more
constexpr int64_t roundedQuotient(int64_t dividend, int64_t divisor)
{
    const int64_t numerator = 2 * dividend + divisor;
    const int64_t quotient = numerator / (2 * divisor);
    return numerator % (2 * divisor) < 0 ? quotient - 1 : quotient;
}

/// The pixels per em of a font asked for by @p height as in fontMetrics; 1 to 2147483647.
constexpr int32_t pixelsPerEm(const FontTables &tables, int32_t height)
{
    constexpr int32_t kDefaultHeight = 16;
    if (height < 0)
        return clampToInt32(-int64_t{ height });
    const int64_t cell = height == 0 ? kDefaultHeight : height;
    const int64_t units = int64_t{ tables.winAscent } + tables.winDescent;
    const int64_t pixels = clampToInt32(roundedQuotient(tables.unitsPerEm * cell, units));
    const bool isTooHigh = roundedQuotient(units * pixels, tables.unitsPerEm) > cell;
    return static_cast<int32_t>(std::max<int64_t>(1, isTooHigh ? pixels - 1 : pixels));
}

/// The metrics at @p pixels per em. Each number is scaled by itself, so the internal leading
/// need not be the height less the character height.
constexpr FontMetrics scaledMetrics(const FontTables &tables, int32_t pixels)
{
    const auto scaled = [&](int64_t units) {
        return clampToInt32(roundedQuotient(units * pixels, tables.unitsPerEm));
    };
    const int64_t win = int64_t{ tables.winAscent } + tables.winDescent;
    const int64_t gap = tables.lineGap - (win - (tables.ascender - tables.descender));

    FontMetrics metrics;
    metrics.ascent = scaled(tables.winAscent);
    metrics.descent = scaled(tables.winDescent);
    metrics.height = clampToInt32(int64_t{ metrics.ascent } + metrics.descent);
    metrics.internalLeading = scaled(win - tables.unitsPerEm);
    metrics.externalLeading = std::max(0, scaled(gap));
    metrics.averageWidth = scaled(tables.averageWidth);
    return metrics;
}

/// The factor from font units to 1/64 pixel at @p pixels per em, in 16.16 fixed point.
constexpr int64_t fixedScale(const FontTables &tables, int32_t pixels)
{
    // Only an em of less than 128 units reaches the bound; it keeps scaledAdvance in 63 bits.
    constexpr int64_t kLargest = int64_t{ 1 } << 46;
    return std::min(kLargest, roundedQuotient((int64_t{ pixels } * 64) << 16, tables.unitsPerEm));
}

/// The whole pixels of an unhinted advance: to 1/64 pixel first and then to pixels.
/// @param advance  font units, 0 to 65535
/// @param scale    from fixedScale
constexpr int32_t scaledAdvance(int32_t advance, int64_t scale)
{
    return clampToInt32((((advance * scale + 0x8000) >> 16) + 32) >> 6);
}

} // namespace svgtool
