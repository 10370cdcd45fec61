#pragma once

#include "picture/scene/Scene.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace svgtool::picture {

/// A scene as writeSvg() writes it, in no more than so many bytes: nodes that do not fit are left
/// out, in the order of painting, so that smaller ones behind them may be there.
/// @param scene         loses what is left out: nodes, and title and description if those are long
/// @param most          bytes of the document, 10,000 or more
/// @param[out] records  numbers of the records of which something is left out, rising, each once
std::string writeWithin(Scene &scene, std::string_view idPrefix, int64_t most,
                        std::vector<uint32_t> &records);

} // namespace svgtool::picture
