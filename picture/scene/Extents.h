#pragma once

#include "picture/scene/Scene.h"

#include <span>

namespace svgtool::picture {

// How far things of a scene reach.

/// A rectangle with its sides moved outwards.
RectD grown(const RectD &box, double by);

/// The rectangle around all that a node paints, its stroke included, before its transform; somewhat
/// more for text. One without width or height is of an area that leaves no mark.
RectD inkOf(const Scene &scene, const Node &node);

/// The same as the picture has it.
RectD paintedBounds(const Scene &scene, const Node &node);

/// A path of its parts.
Path pathOf(std::span<const Path::Verb> verbs, std::span<const PointD> points);

/// Whether nothing is left of a node to be seen.
inline bool isTakenBack(const Node &node)
{
    return node.fill == kNone && node.stroke == kNone && node.kind != Node::Kind::Image;
}

/// The outline of a shape or an image, before the node's transform; empty for text.
Path outlineOf(const Scene &scene, const Node &node);

} // namespace svgtool::picture
