#pragma once

#include "core/base/Limits.h"

#include <cstddef>
#include <cstdint>

namespace svgtool::picture {

/// What is left of the limits that hold for a document, whatever metafiles it is made of: one that
/// lies in another one brings no more with it.
struct Allowances
{
    size_t areaWork = limits::kAreaWork;
    size_t clipWork = limits::kClipWork;
    size_t pointsUsedAgain = limits::kPointsUsedAgain;
    size_t pointsOfOutlines = limits::kPointsOfOutlines;
    size_t meshPieces = limits::kAllMeshPieces;
    size_t dashes = limits::kDashes;
    int64_t runLengthPixels = limits::kRunLengthPixelsOfPicture;
    int64_t brushPixels = limits::kAllEnlargedPixels; ///< of brushes that are mixed with pixels
    double gradientPixels = limits::kGradientPixels;
    int64_t floodSteps = limits::kFloodSteps;
    int64_t groundSteps = limits::kGroundSteps;
    int64_t inversionSteps = limits::kGroundSteps;
};

} // namespace svgtool::picture
