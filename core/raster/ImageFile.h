#pragma once

#include "core/base/Bytes.h"
#include "core/geometry/IntRect.h"

#include <optional>

namespace svgtool {

/// What a file of an image is, of those that viewers of SVG show as they are.
struct ImageFile
{
    const char *mediaType = ""; ///< of a PNG, JPEG or GIF
    IntSize size; ///< 1 by 1 or larger
};

/// Looks into the head of an image file, of untrusted bytes.
/// @return nothing for what is none of these, or has no size
std::optional<ImageFile> inspectImageFile(ByteView file);

} // namespace svgtool
