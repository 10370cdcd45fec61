#pragma once

#include <string>
#include <string_view>

namespace svgtool {

/// The characters that glyphs of a face stand for that is not there, as far as its order is known:
/// that of the system's first TrueType fonts, which later ones of the same name have kept.
/// @param face    as FontRequest::face
/// @param glyphs  a glyph number in each unit
/// @return as many units; 0 where it is not known
std::u16string charactersInKnownOrder(std::u16string_view glyphs, std::u16string_view face);

} // namespace svgtool
