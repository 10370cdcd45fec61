#pragma once

#include "core/records/EmfPlusObjects.h"
#include "picture/gdi/TextLayout.h"

#include <string_view>
#include <vector>

namespace svgtool::picture {

/// A line of a text that GDI+ has laid out.
struct StringLine
{
    std::vector<PlacedCharacter> characters; ///< from the line's start, on its baseline
    PointD baseline; ///< where the line starts
    double width = 0; ///< without the blanks at its end
    /// Characters that are a key to press: first and number of neighbours under a line.
    std::vector<size_t> hotkeys;
};

/// Lays a text out in a box, as DrawString of GDI+ does: breaks it into lines, aligns and trims
/// them. Lengths are units of the font, whose letters need not be drawn with the same size.
/// @param font  its em, ascent and descent are those of the letters; its axes do not count
/// @param box   width and height; a side of 0 has no end, and the text begins, ends or has its
///              middle there. Of vertical text its longer way is down the page
/// @return baselines from the upper left corner of the box, along the text and down from it
std::vector<StringLine> layOutString(std::u16string_view text, const plus::StringFormat &format,
                                     const RealizedFont &font, PointD box);

} // namespace svgtool::picture
