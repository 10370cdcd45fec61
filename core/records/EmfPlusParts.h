#pragma once

#include "core/records/EmfPlusFields.h"
#include "core/records/EmfPlusObjects.h"

namespace svgtool::plus {

// Readers of objects that stand in others, too. Each begins behind the version that the object
// begins with; what it finds makes sense if the fields are sound at the end.

inline constexpr int64_t kVersionBytes = 4;

Brush readBrush(PlusFields &fields);
Pen readPen(PlusFields &fields);
PathObject readPath(PlusFields &fields);
/// A path with its size and its version in front.
PathObject readSizedPath(PlusFields &fields);
Image readImage(PlusFields &fields);
CustomLineCap readCustomLineCap(PlusFields &fields);

} // namespace svgtool::plus
