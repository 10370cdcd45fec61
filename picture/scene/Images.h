#pragma once

#include "picture/scene/Scene.h"

namespace svgtool::picture {

/// Gives small images that are enlarged as many pixels as they cover at the picture's natural size,
/// as GDI does: not every viewer can be told to leave the pixels squares.
///
/// Places become whole pixels apart where the image does. What would take many pixels is left to
/// the viewers.
/// @throws std::bad_alloc
void enlargeImages(Scene &scene);

} // namespace svgtool::picture
