#pragma once

#include "core/fonts/FontShapes.h"

#include <cstdint>
#include <span>

// Numbers of the Liberation fonts, in font units, and of symbol fonts: KnownFaces_Data.cpp, which
// scripts/make-widths.py writes. Styles are regular, bold, italic and bold italic.

namespace svgtool::known {

/// Characters that follow one another.
struct Run
{
    char16_t first, last;
};
/// Advances in the four styles without serifs, and in the four with.
struct Widths
{
    uint16_t of[8];
};
/// By which the right character is moved for the left one, in the four styles.
struct Pair
{
    char16_t left, right;
    int16_t by[4];
};

/// Without serifs, with serifs, and of one width, each in the four styles.
extern const std::span<const FontShape> kShapes;
extern const std::span<const Run> kRuns; ///< by their characters
extern const std::span<const uint8_t> kWidthOf; ///< which of the widths each character of them has
extern const std::span<const Widths> kWidths;
extern const std::span<const Pair> kSansPairs; ///< by both characters
extern const std::span<const Pair> kSerifPairs;
/// Of symbol fonts, of the codes from 20 on, in thousandths of an em; 0 where there is none.
extern const std::span<const uint16_t> kSymbolWidths, kDingbatsWidths;

} // namespace svgtool::known
