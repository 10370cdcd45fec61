#pragma once

#include "core/geometry/Path.h"

#include <optional>
#include <span>
#include <vector>

namespace svgtool {

/// The figures of a path, each as a path that begins with its only move.
std::vector<Path> figuresOf(const Path &path);
bool isClosed(const Path &figure);

/// The same figure, gone through from its end to its start.
Path reversed(const Path &figure);

/// An open figure without its last part.
/// @param length  of that part, along the figure; nothing is left where it is longer
Path withoutEnd(const Path &figure, double length);

/// The place of the end of an open figure, and the direction in which it gets there, of length 1.
struct LineEndPlace
{
    PointD point;
    PointD direction; ///< 0 where the figure has no length
};
LineEndPlace endOf(const Path &figure);

/// The figure beside one, to the right of its way as y grows downwards. Its corners are mitred, and
/// its curves stand for those that lie everywhere as far from the given ones.
Path beside(const Path &figure, double distance);

/// A dash of a figure of lines.
struct DashedLine
{
    Path line;
    bool isAtStart = false, isAtEnd = false; ///< it has that end of the figure
};
/// @param lines    a figure of lines alone
/// @param dashes   dash, gap, dash ..., 0 or more and not all 0; an odd number of them is taken
///                 twice
/// @param offset   what of them lies before the start
/// @return nothing where there are more than @p most dashes
std::optional<std::vector<DashedLine>> dashed(const Path &lines, std::span<const double> dashes,
                                              double offset, size_t most);

} // namespace svgtool
