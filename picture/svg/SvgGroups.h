#pragma once

#include "picture/svg/SvgStyle.h"

#include <span>
#include <vector>

namespace svgtool::picture {

/// Elements in a row that stand in a group, and what it says for them.
struct Group
{
    size_t begin = 0, end = 0;
    Style values{}; ///< SvgStyles::kAny where it says nothing
    Index nodeGroup = kNone; ///< of the scene, whose title it has
};

/// The groups of a scene, and where others make its document shorter: those that begin earlier come
/// first, outer ones before inner ones. Groups lie wholly within each other or apart.
/// @param styles  of the scene's nodes
/// @param costs   of the values, in bytes
std::vector<Group> groupsOf(const Scene &scene, std::span<const Style> styles,
                            std::span<const uint32_t> costs);

} // namespace svgtool::picture
