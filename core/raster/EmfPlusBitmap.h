#pragma once

#include "core/raster/Bitmap.h"
#include "core/records/EmfPlusBrushes.h"

#include <optional>

namespace svgtool {

/// The pixels of a bitmap of EMF+, in all formats of [MS-EMFPLUS] 2.1.1.25: those that have alpha
/// as Bgra32, indexed ones as they are, all others without alpha.
/// @return nothing for a format that is not known
std::optional<Bitmap> decodeBitmap(const plus::PixelBitmap &bitmap);

} // namespace svgtool
