#pragma once

#include "picture/scene/Scene.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace svgtool::picture {

/// A scene as an SVG 1.1 document in UTF-8. It visits the nodes in order and asks nobody.
/// @param idPrefix  of all ids, so that documents do not clash on one page
std::string writeSvg(const Scene &scene, std::string_view idPrefix);

inline constexpr int64_t kAnyLength = std::numeric_limits<int64_t>::max();
/// The same; nothing where that is longer than @p most bytes, and then in no more memory.
std::optional<std::string> writeSvg(const Scene &scene, std::string_view idPrefix, int64_t most);

} // namespace svgtool::picture
