#pragma once

#include "core/geometry/Outline.h"
#include "core/records/EmfPlusObjects.h"

#include <optional>

namespace svgtool::picture {

/// What stands at an end of a line, which is the origin; y grows out of the line, a unit is the
/// width of the line.
struct LineEnd
{
    Path fill; ///< by the winding rule
    Path line; ///< is stroked with the width of the line
    Cap lineCap = Cap::Butt;
    Join lineJoin = Join::Miter;
    double lineMiterLimit = 10;
    double inset = 0; ///< by which the line is shorter
    bool isAnchor = false; ///< it is never smaller than for a line of two pixels
};

/// The end that SVG has for a cap, if it has it.
std::optional<Cap> plainCap(plus::LineCap cap);
std::optional<Cap> plainCap(plus::DashCap cap);
Join joinOf(plus::LineJoin join);

/// @param over  how far it lies over the line, so that nothing shows between them
LineEnd lineEnd(plus::LineCap cap, double over);
LineEnd lineEnd(const plus::CustomLineCap &cap, double over);
/// It lies within the length of the dash.
LineEnd dashEnd(plus::DashCap cap, double over);

} // namespace svgtool::picture
