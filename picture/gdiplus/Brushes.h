#pragma once

#include "core/records/EmfPlusBrushes.h"
#include "picture/scene/Scene.h"

#include <vector>

namespace svgtool::picture {

// What brushes of EMF+ mean, one by one.

/// What is seen of a colour that takes the place of what was there before.
Color onPaper(Color color);
/// From the first colour to the second one, of which it is so much.
Color mixed(Color first, Color second, double part);

bool isOpaque(const plus::Brush &brush);
/// One colour in the place of the brush.
Color averageOf(const plus::Brush &brush);

/// The lines of a hatch in a tile of 8 by 8, and their width; 0 where they are areas.
struct HatchLines
{
    Path path;
    double width = 0;
};
/// @param style  HatchStyle, [MS-EMFPLUS] 2.1.1.13
HatchLines hatchLines(uint8_t style);

/// From the left edge of the box to its right one.
std::vector<Gradient::Stop> stopsOf(const plus::LinearGradientBrush &brush);
/// From a place of the boundary to the centre.
std::vector<Gradient::Stop> stopsOf(const plus::PathGradientBrush &brush, Color surround);

/// How a value changes over the plane: atOrigin + x * slope.x + y * slope.y.
struct Ramp
{
    double atOrigin = 0;
    PointD slope;

    double at(PointD p) const { return atOrigin + p.x * slope.x + p.y * slope.y; }
    /// The same value over the plane that @p map makes of this one; nothing where it makes a line.
    std::optional<Ramp> mapped(const Affine &map) const;
};
/// Paints as it says along a line from where it is 0 to where it is 1.
Gradient gradientOf(const Ramp &ramp, std::vector<Gradient::Stop> stops);

} // namespace svgtool::picture
