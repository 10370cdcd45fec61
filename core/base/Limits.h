#pragma once

#include <cstddef>
#include <cstdint>

// What the picture path takes at most of anything. All else is bounded by the bytes that a metafile
// has, since counts and lengths are checked against them before they are used.

namespace svgtool::limits {

// The document.

/// Pixels of a side that is not asked for by its length. Longer pictures are not opened by viewers:
/// one of the usual libraries ends at 32,767, browsers at as many or fewer.
inline constexpr double kNaturalSide = 16384;
/// Pixels in all of such a picture. At four bytes each they are 256 MiB, and drawn in seconds.
inline constexpr double kNaturalArea = double(1 << 26);
/// A side and a scale that are asked for: what lies outside is a slip of whoever asks.
inline constexpr double kLeastSide = 0.001, kMostSide = 1e6;
inline constexpr double kLeastScale = 1e-6, kMostScale = 1e6;
/// Characters of a prefix, which stands in every reference.
inline constexpr size_t kPrefix = 64;

/// Pixels of the longer side of pictures that are looked at in their own size: A3 at 96 an inch.
/// Thin lines of larger ones, plans of some metres, are as wide as a pixel of a view of that size;
/// else the whole of them, looked at, would show nothing.
inline constexpr double kViewedSide = 1600;

// Paths.

/// Points that all operations together may take from paths that were used before: RestoreDC brings
/// a path back, so that a short record can ask for a long one again and again.
inline constexpr size_t kPointsUsedAgain = size_t(1) << 21;
/// Points that lines in the place of curves and outlines in the place of lines may have, together.
inline constexpr size_t kPointsOfOutlines = size_t(1) << 23;

} // namespace svgtool::limits
