#pragma once

#include "picture/scene/Scene.h"

#include <cstdint>
#include <optional>

namespace svgtool::picture {

/// A place from which an area is filled.
struct Flood
{
    PointD at; ///< in units of the picture
    Color color;
    bool endsAtColor; ///< else the area is of the colour, and ends where it is another
};

/// What a flood fills.
struct Flooded
{
    /// Whose inside it is, and of what has been painted on it since; kNone where nothing is filled,
    /// since the place has no such colour.
    Index node = kNone;
    bool isSure = true; ///< else something painted later may stand in the way, or be flooded, too
};

/// The innermost figure around a place that ends the flood, be it by its line or its filling.
/// @param[in,out] steps  nodes and points that may be looked at, and how many are left
/// @return nothing where there is none, or an image or the like makes the answer uncertain
/// @throws std::bad_alloc
std::optional<Flooded> flooded(const Scene &scene, const Flood &flood, int64_t &steps);

} // namespace svgtool::picture
