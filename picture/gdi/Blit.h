#pragma once

#include "core/geometry/Affine.h"
#include "core/raster/DibDecoder.h"
#include "core/raster/RasterOperation.h"
#include "picture/gdi/Played.h"
#include "picture/gdi/State.h"

#include <array>
#include <optional>

namespace svgtool::picture {

/// What refuses bitmaps beyond kLayeredPixels.
inline constexpr Played kTooLargeToMix =
        notDone("its bitmap is too large to be mixed with what lies beneath");

/// What is said of brushes whose pixels cannot be told where they are mixed.
inline constexpr Played kTakenForOneColour = approximated("its brush is taken for one colour");

/// A rectangle by a corner and its extent, which mirrors where it is negative.
struct BlitBox
{
    PointL at, extent;
};

/// A bitmap of a call, before it is decoded: untrusted bytes.
struct BlitSource
{
    DibBytes dib;
    BlitBox box; ///< in units that toPixels maps
    Affine toPixels = {}; ///< XformSrc of [MS-EMF], which is the identity nearly always

    /// A device-dependent bitmap, [MS-WMF] 2.2.2.1, in the place of the other; or nothing.
    ByteView bitmap16 = {};

    /// The box in pixels; right is less than left where it mirrors, bottom less than top.
    RectD pixelBox() const;
};

/// A bitmap of one bit a pixel, of which pixel `at` lies over the first one of the source.
struct BlitMask
{
    DibBytes dib;
    PointL at;
};

/// A point of a gradient, and its colour: red, green and blue from 0 to below 256.
struct GradientVertex
{
    PointL at;
    std::array<double, 3> channels{};
};

/// Where pixels come from and where they go.
struct BlitPlace
{
    IntRect part; ///< of the bitmap, not empty
    RectD box; ///< which the part fills, in units of the picture before `transform`
    Affine transform;
    bool mirrorsX = false, mirrorsY = false;
};

} // namespace svgtool::picture
