#pragma once

#include "exact/platform/FontEngine.h"

#include <algorithm>
#include <limits>

// How GDI turns the numbers of a font's tables into pixels. Heights come from files and may be
// any 32-bit value, so all of it is 64-bit arithmetic whose factors are kept within range.

namespace svgtool {

/// What the tables of a font say, in font units.
struct FontTables
{
    qint32 unitsPerEm = 1; ///< 1 to 65535
    qint32 winAscent = 1; ///< OS/2; 0 to 65535, not 0 together with winDescent
    qint32 winDescent = 0; ///< OS/2; 0 to 65535
    qint32 ascender = 0; ///< hhea; this and all below within 18 bits
    qint32 descender = 0; ///< hhea, negative below the baseline
    qint32 lineGap = 0; ///< hhea
    qint32 averageWidth = 0; ///< OS/2
};

/// @p value, or the nearest 32-bit integer to it.
constexpr qint32 clampToInt32(qint64 value)
{
    using Limits = std::numeric_limits<qint32>;
    return static_cast<qint32>(std::clamp<qint64>(value, Limits::min(), Limits::max()));
}

/// The quotient rounded to the nearest integer, halves upward: floor(a / b + 1/2).
/// @param divisor  1 or more
constexpr qint64 roundedQuotient(qint64 dividend, qint64 divisor)
{
    const qint64 numerator = 2 * dividend + divisor;
    const qint64 quotient = numerator / (2 * divisor);
    return numerator % (2 * divisor) < 0 ? quotient - 1 : quotient;
}

/// The pixels per em of a font asked for by @p height as in fontMetrics; 1 to 2147483647.
constexpr qint32 pixelsPerEm(const FontTables &tables, qint32 height)
{
    constexpr qint32 kDefaultHeight = 16;
    if (height < 0)
        return clampToInt32(-qint64{ height });
    const qint64 cell = height == 0 ? kDefaultHeight : height;
    const qint64 units = qint64{ tables.winAscent } + tables.winDescent;
    const qint64 pixels = clampToInt32(roundedQuotient(tables.unitsPerEm * cell, units));
    const bool isTooHigh = roundedQuotient(units * pixels, tables.unitsPerEm) > cell;
    return static_cast<qint32>(std::max<qint64>(1, isTooHigh ? pixels - 1 : pixels));
}

/// The metrics at @p pixels per em. Each number is scaled by itself, so the internal leading
/// need not be the height less the character height.
constexpr FontMetrics scaledMetrics(const FontTables &tables, qint32 pixels)
{
    const auto scaled = [&](qint64 units) {
        return clampToInt32(roundedQuotient(units * pixels, tables.unitsPerEm));
    };
    const qint64 win = qint64{ tables.winAscent } + tables.winDescent;
    const qint64 gap = tables.lineGap - (win - (tables.ascender - tables.descender));

    FontMetrics metrics;
    metrics.ascent = scaled(tables.winAscent);
    metrics.descent = scaled(tables.winDescent);
    metrics.height = clampToInt32(qint64{ metrics.ascent } + metrics.descent);
    metrics.internalLeading = scaled(win - tables.unitsPerEm);
    metrics.externalLeading = std::max(0, scaled(gap));
    metrics.averageWidth = scaled(tables.averageWidth);
    return metrics;
}

/// The factor from font units to 1/64 pixel at @p pixels per em, in 16.16 fixed point.
constexpr qint64 fixedScale(const FontTables &tables, qint32 pixels)
{
    // Only an em of less than 128 units reaches the bound; it keeps scaledAdvance in 63 bits.
    constexpr qint64 kLargest = qint64{ 1 } << 46;
    return std::min(kLargest, roundedQuotient((qint64{ pixels } * 64) << 16, tables.unitsPerEm));
}

/// The whole pixels of an unhinted advance: to 1/64 pixel first and then to pixels.
/// @param advance  font units, 0 to 65535
/// @param scale    from fixedScale
constexpr qint32 scaledAdvance(qint32 advance, qint64 scale)
{
    return clampToInt32((((advance * scale + 0x8000) >> 16) + 32) >> 6);
}

} // namespace svgtool
