#pragma once

#include "core/geometry/Affine.h"

namespace svgtool::picture {

/// The device that a metafile was recorded for, and the part of it that the picture shows.
struct Device
{
    double pixelsX = 1024, pixelsY = 768;
    double millimetersX = 271, millimetersY = 203;
    /// From device units to those of the picture, which are square where the device's are not.
    Affine toPicture;
    RectD view; ///< in units of the picture
    /// Units of the picture that a pixel has, of thin pens and hatches: a CSS pixel of it, or more
    /// in one that is larger than what is looked at in its own size.
    double unitsPerPixel = 1;
    bool isClipped = true; ///< records may cut off what others draw
};

} // namespace svgtool::picture
