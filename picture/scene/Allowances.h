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
    size_t meshPieces = limits::kMeshPiecesOfPicture;
    size_t dashes = limits::kDashes;
    int64_t runLengthPixels = limits::kRunLengthPixelsOfPicture;
    int64_t brushPixels = limits::kAllEnlargedPixels; ///< of brushes that are mixed with pixels
    double gradientPixels = limits::kGradientPixels;
    int64_t floodSteps = limits::kFloodSteps;
    int64_t groundSteps = limits::kGroundSteps;
    int64_t inversionSteps = limits::kGroundSteps;
};

/// Takes what an operation costs from an allowance, but for what any record may take.
/// @return false, with nothing taken, where there is too little left
inline bool spend(size_t &allowance, size_t cost)
{
    constexpr size_t kFree = 16;
    if (cost <= kFree)
        return true;
    if (cost > allowance)
        return false;
    allowance -= cost;
    return true;
}

} // namespace svgtool::picture
