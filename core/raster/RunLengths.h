#pragma once

#include "core/base/Bytes.h"

#include <QImage>

namespace svgtool {

enum class RunDepth { Bits4 = 4, Bits8 = 8 };

/// Paints run-length encoded pixels ([MS-WMF] 3.1.6), which come bottom line first.
///
/// Whatever lies outside the image is dropped, and the image ends where the bytes do. Pixels that
/// are skipped become transparent; only when all 256 colours are in use they have the first.
/// @param image  Format_Indexed8 with a colour table for every index
void decodeRuns(ByteView bytes, RunDepth depth, QImage &image);

} // namespace svgtool
