#pragma once

#include "core/records/EmfPlusObjects.h"
#include "picture/scene/Scene.h"

#include <cstdint>

namespace svgtool::picture {

/// All of a Graphics that Save keeps. Copying it is saving it.
struct GraphicsState
{
    Affine world; ///< world to page units
    plus::Unit pageUnit = plus::Unit::Display;
    double pageScale = 1;
    Affine base; ///< device units to those of the picture, and what containers put before that
    Affine toPicture; ///< world units to those of the picture, made of the above
    Index clip = kNone; ///< the last one of a chain in the Graphics; all of them count
    Index outerClip = kNone; ///< where the chain leaves the container
    PointD renderingOrigin; ///< of hatches, pixels
    bool isCopying = false; ///< colours take the place of what is beneath, alpha and all
    uint8_t interpolation = 0; ///< InterpolationMode, [MS-EMFPLUS] 2.1.1.16
    uint8_t pixelOffset = 0; ///< PixelOffsetMode, 2.1.1.26
    uint8_t textRenderingHint = 0; ///< TextRenderingHint, 2.1.1.32
};

} // namespace svgtool::picture
