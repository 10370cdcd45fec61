#pragma once

#include "picture/scene/Scene.h"

#include <optional>
#include <span>
#include <vector>

namespace svgtool::picture {

/// A part of an area, and the one colour that lies there; nothing where that is not known.
struct Ground
{
    std::optional<Color> color;
    std::vector<RectD> rects; ///< which do not overlap
};

/// Knows what lies beneath, as far as rectangles of one colour do: those, and white paper where
/// nothing was painted.
class Grounds
{
public:
    /// What the nodes of a scene leave in an area.
    /// @param clip  that the area is seen through, too
    /// @return one part for each colour; a single unknown one where that would be too many parts
    std::vector<Ground> under(const Scene &scene, const RectD &area, Index clip);
    /// Nodes from this number on are not what they were.
    void forget(size_t node);

private:
    const RectD &boundsOfNode(const Scene &scene, size_t node);

    std::vector<RectD> m_bounds; ///< of what each node covers
    int64_t m_steps = 0; ///< taken for all areas, which has a bound
};

/// Lays white paper under a picture that is mixed with it: viewers mix with what they have there.
void layPaper(Scene &scene);

} // namespace svgtool::picture
