#pragma once

#include "core/geometry/IntRect.h"
#include "core/raster/DibDecoder.h"
#include "core/raster/RasterOperation.h"
#include "core/records/GdiStructures.h"

#include <cstdint>
#include <optional>

namespace svgtool {

/// The transfer of a bitmap, or of a part of it, to a rectangle of the document.
struct BitmapTransfer
{
    DecodedBitmap bitmap;
    /// The part in pixels; a negative extent mirrors.
    int64_t sourceX = 0, sourceY = 0, sourceWidth = 0, sourceHeight = 0;
    /// sourceY counts from the bottom line, whichever line comes first in the record.
    bool countsFromBottom = false;
    /// The mapped corners; mirrored where right is less than left or bottom less than top.
    RECTL corners{};
    RasterOperation operation = RasterOperations::SourceCopy;

    std::optional<Argb> transparentColour = {};
    /// Of one bit a pixel: the operation holds where it has a 1, the other one elsewhere.
    Bitmap mask = {};
    int64_t maskX = 0, maskY = 0; ///< the pixel of the mask over the first one of the source
    RasterOperation operationOutsideMask = RasterOperations::SourceCopy;
};

/// Where a transfer takes its pixels and where it puts them.
struct BitmapPlacement
{
    IntRect part; ///< inside the bitmap, not empty
    RECTL box; ///< what @p part fills, left to right and top to bottom
    bool mirrorsX = false;
    bool mirrorsY = false;
};

/// Cuts off what the source has outside the bitmap, and the same share of the destination.
/// @return nothing when nothing is left
std::optional<BitmapPlacement> placeBitmap(const BitmapTransfer &transfer);

} // namespace svgtool
