#pragma once

#include "picture/scene/Scene.h"

#include <string>

namespace svgtool::picture {

/// A scene as an SVG 1.1 document in UTF-8. It visits the nodes in order and asks nobody.
/// @param idPrefix  of all ids, so that documents do not clash on one page
std::string writeSvg(const Scene &scene, std::string_view idPrefix);

} // namespace svgtool::picture
