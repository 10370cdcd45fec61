#pragma once

#include "core/fonts/FontScaling.h"
#include "core/geometry/Path.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// What fonts say of themselves, in their own units: for whoever places characters as GDI does and
// has to know where a viewer would place them. One implementation a platform, as of FontEngine.h.

namespace svgtool {

/// A face as it is asked for.
struct FontRequest
{
    std::u16string face; ///< what stands before its first zero unit, 31 units at most
    int32_t weight = 400; ///< bold from 551 on
    bool isItalic = false;

    bool operator==(const FontRequest &) const = default;
};

/// The numbers of a face. Its lines are above the baseline where they are positive.
struct FontShape
{
    /// A face of that name, or with the same metrics; else it only stands in, or there is none.
    bool isNamed = false;
    FontTables tables;
    int32_t underline = 0; ///< middle of the line; font units, like the three below
    int32_t underlineThickness = 0;
    int32_t strikeOut = 0; ///< upper edge of the line
    int32_t strikeOutThickness = 0;
};

/// A character of a text in font units.
struct CharacterShape
{
    int32_t advance = 0; ///< 0 to 65535
    int32_t kerning = 0; ///< by which viewers move it, along the text, for the one before it
    bool hasGlyph = false; ///< else the advance is that of the mark for a missing one
};

/// The face of that name, or the one in place of it; numbers of no certain font where none is
/// installed.
/// @note This and the functions below may be called from any thread.
FontShape fontShape(const FontRequest &request);

/// What fontShape has to say of each character; no glyph anywhere where there is no font.
std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest &request);

/// The advances in whole pixels to which GDI hints characters at a size at which the font's 'gasp'
/// table asks for sharp edges.
/// @param pixels  of the em, 1 or more
/// @return nothing at other sizes, where an advance is the unhinted one, rounded
std::vector<int32_t> hintedAdvances(std::u32string_view text, const FontRequest &request,
                                    int32_t pixels);

/// The outline of each character in font units, y downwards from the baseline; empty for those
/// that have none. Where a family has no bold or slanted face, the letters are made so.
std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest &request);

/// The characters that the glyphs of a font stand for.
/// @param glyphs  a glyph number in each unit
/// @return as many units; 0 for a glyph that no character below U+10000 maps to, and where the
///         font is not there and its order is not known
std::u16string charactersOfGlyphs(std::u16string_view glyphs, const FontRequest &request);

} // namespace svgtool
