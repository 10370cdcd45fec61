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
    double unitsPerPixel = 1; ///< units of the picture that a CSS pixel of it has
};

} // namespace svgtool::picture
