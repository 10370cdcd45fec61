#pragma once

#include "core/base/Bytes.h"
#include "core/raster/Bitmap.h"

namespace svgtool {

enum class RunDepth { Bits4 = 4, Bits8 = 8 };

/// Paints run-length encoded pixels ([MS-WMF] 3.1.6), which come bottom line first.
///
/// Whatever lies outside the bitmap is dropped, and the bitmap ends where the bytes do. Pixels that
/// are skipped become transparent; only when all 256 colours are in use they have the first.
/// @param bitmap  Indexed8, as it was made, with a colour for every index of the depth
void decodeRuns(ByteView bytes, RunDepth depth, Bitmap &bitmap);

} // namespace svgtool
