#pragma once

#include "core/geometry/Path.h"

namespace svgtool {

/// What a line ends with.
enum class Cap : uint8_t { Butt, Round, Square };
/// What stands between two lines of a figure.
enum class Join : uint8_t { Miter, Round, Bevel };

/// How a line is widened.
struct LineShape
{
    double width = 1;
    Cap cap = Cap::Butt;
    Join join = Join::Miter;
    double miterLimit = 10; ///< longest miter, in widths; longer ones are bevelled
};

/// The outline of the area that a path covers when its lines are widened: around an open figure one
/// figure, around a closed one two. Where they overlap they wind alike, so that they are to be
/// filled by the winding rule.
/// @param lines  without curves
Path outlineOf(const Path &lines, const LineShape &shape);

} // namespace svgtool
