#pragma once

#include "picture/scene/Scene.h"

namespace svgtool::picture {

// What takes more than one record to know is done on the finished scene, one thing a pass.

/// Sees to it that there is something to look at: at least a pixel, and no more than a million.
void ensureSize(Scene &scene);

/// Makes one polyline of lines with one stroke that go on where the one before ended.
void joinLines(Scene &scene);

/// Makes one path of single pixels of a colour that follow one another, and an image of those of
/// many colours that lie together. At the natural size, and after joinLines.
void joinPixels(Scene &scene);

/// Lays the ends of thin flat lines on the edges of pixels. GDI's lines cover whole pixels from
/// that of their start to the one before their end; the points stand in the centres of pixels, so
/// both ends go back by half a pixel. After joinLines, which compares ends.
void alignLineEnds(Scene &scene);

/// Cuts off what lies so far out that viewers might miscount, and drops what is not finite. Lines
/// keep their way, so nothing that can be seen changes. After the passes above.
void cutFar(Scene &scene);

/// The box around all that can be seen; empty where that is nothing.
RectD drawnBounds(const Scene &scene);

/// Drops nodes that leave no mark: outside the picture or their clip, without area, blank.
void dropUnseen(Scene &scene);

/// Takes clips off that cut nothing: all that they are meant for lies in their rectangles. After
/// dropUnseen.
void dropClips(Scene &scene);

/// Makes one path of paths in a row that are painted alike and do not meet, or whose strokes may
/// meet. After the passes that look at single lines.
void joinFigures(Scene &scene);

/// Lays a whole line beneath a dashed one with a ground, unless it would be white on paper. After
/// the passes that change lines, since both share their geometry.
void fillGaps(Scene &scene);

} // namespace svgtool::picture
