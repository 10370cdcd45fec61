#pragma once

#include "core/geometry/Path.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace svgtool {

/// What lies inside of a path by one of the rules of filling. Figures that are open count as
/// closed.
struct Area
{
    Path path;
    bool isEvenOdd = true; ///< else by the winding rule

    bool operator==(const Area &) const = default;
};

/// What of two areas is in their combination.
enum class AreaMode : uint8_t { And, Or, Xor, Difference };

/// Two areas as one, of lines, by the even-odd rule.
/// @param tolerance  how far lines in the place of curves may be off
/// @param[in,out] work  of lines times rows that begin where lines end or cross, and of
///                      limits::kAreaEdge for each line: how much there may be, and how much is
///                      left
/// @return nothing when there is more, or what is not finite
std::optional<Area> combined(const Area &a, const Area &b, AreaMode mode, double tolerance,
                             size_t &work);

} // namespace svgtool
