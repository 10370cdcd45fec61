#pragma once

#include "core/raster/PngLayout.h"

namespace svgtool {

/// All lines of a bitmap as a PNG file has them before they are compressed: each behind the number
/// of its filter, and after it.
/// @param[in,out] block  what choosePngLayout() left there
/// @return the first of height * (layout.lineBytes(width) + 1) bytes in the block
/// @throws std::bad_alloc
const uint8_t *makePngLines(const Bitmap &bitmap, const PngLayout &layout, PngBlock &block);

} // namespace svgtool
