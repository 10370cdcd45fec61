#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The narrow interface between the WIN_ functions and the font engine of the platform. Its two
// implementations, FontEngine_Gdi.cpp on Windows and FontEngine_FreeType.cpp elsewhere, stand
// where the window system's graphics interface stands, so they write no trace lines.

namespace svgtool {

/// The numbers of a font that TEXTMETRICW of GDI gives, in pixels.
struct FontMetrics
{
    int32_t height = 0; ///< of a line: ascent and descent
    int32_t ascent = 0; ///< above the baseline
    int32_t descent = 0; ///< below the baseline
    int32_t internalLeading = 0; ///< part of the height that is beyond the character height
    int32_t externalLeading = 0; ///< gap between lines, outside the height
    int32_t averageWidth = 0; ///< of the characters
};

/// A measured text together with the metrics of its font.
struct TextExtent
{
    int32_t width = 0; ///< of the widest line, in pixels
    int32_t height = 0; ///< of all lines, in pixels
    FontMetrics font;
};

/// The metrics of a font; all 0 where no font can be had.
/// @param faceName  name of the face: what stands before its first zero unit, 31 units at most;
///                  a missing face is substituted
/// @param weight    bold from 551 on, else regular
/// @param height    negative: character height, positive: cell height, 0: the default size
/// @note This and the functions below may be called from any thread.
FontMetrics fontMetrics(std::u16string_view faceName, int32_t weight, int32_t height);

/// Measures @p text as DrawTextW does with DT_CALCRECT alone: "\r\n", "\n\r", "\n" and "\r" end
/// lines, "&&" counts as one ampersand, and any other "&" counts nothing unless it ends its line.
TextExtent textExtent(std::u16string_view text, std::u16string_view faceName, int32_t weight,
                      int32_t height);

/// The characters that the glyphs of a font stand for.
/// @param glyphs  a glyph number in each UTF-16 unit
/// @return for each glyph the lowest character below U+10000 that maps to it; empty when there
///         is none for one of them
std::u16string textOfGlyphs(std::u16string_view glyphs, std::u16string_view faceName,
                            int32_t weight);

/// The screen's horizontal resolution in dots per inch, 1 or more; 96 where there is no screen.
int32_t horizontalDpi();

} // namespace svgtool
