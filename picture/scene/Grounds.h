#pragma once

#include "picture/scene/SceneBuilder.h"

#include <optional>
#include <span>
#include <vector>

namespace svgtool::picture {

/// A part of an area, and what lies there; nothing where that is not known.
struct Ground
{
    /// Opaque: a colour, a hatch, or pixels of tiles that are neither turned nor mirrored.
    std::optional<Paint> paint;
    std::vector<RectD> rects; ///< which do not overlap
};

/// Knows what lies beneath, as far as rectangles and images do: those, and white paper where
/// nothing was painted.
class Grounds
{
public:
    /// What the nodes of a scene leave in an area.
    /// @param clip  that the area is seen through, too
    /// @return one part for each paint, of which an image is one whose tile it fills; a single
    ///         unknown one where that would be too many parts
    std::vector<Ground> under(SceneBuilder &builder, const RectD &area, Index clip);
    /// Nodes from this number on are not what they were.
    void forget(size_t node);

    /// What a node of the scene covers.
    const RectD &boundsOfNode(const Scene &scene, size_t node);

private:
    std::vector<RectD> m_bounds; ///< of what each node covers
};

/// Lays white paper under a picture that is mixed with it: viewers mix with what they have there.
void layPaper(Scene &scene);

} // namespace svgtool::picture
