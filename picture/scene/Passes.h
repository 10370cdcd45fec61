#pragma once

#include "picture/scene/Scene.h"

namespace svgtool::picture {

// What takes more than one record to know is done on the finished scene, one thing a pass.

/// Makes one polyline of lines with one stroke that go on where the one before ended.
void joinLines(Scene &scene);

/// Lays the ends of thin flat lines on the edges of pixels. GDI's lines cover whole pixels from
/// that of their start to the one before their end; the points stand in the centres of pixels, so
/// both ends go back by half a pixel. After joinLines, which compares ends.
void alignLineEnds(Scene &scene);

} // namespace svgtool::picture
