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
/// Pixels in all of such a picture: an A0 page at 96 an inch has a little less. At four bytes each
/// they are 64 MiB, and drawn in a second or two.
inline constexpr double kNaturalArea = double(1 << 24);
/// A side and a scale that are asked for: what lies outside is a slip of whoever asks.
inline constexpr double kLeastSide = 0.001, kMostSide = 1e6;
inline constexpr double kLeastScale = 1e-6, kMostScale = 1e6;
/// Millions of bytes of a document, as they can be asked for: less has no room for a picture.
inline constexpr double kLeastLimit = 0.01, kMostLimit = 1e6;
/// Characters of a prefix, which stands in every reference.
inline constexpr size_t kPrefix = 64;

/// Groups around an element. Those of programs are nested a few times; viewers call themselves for
/// each.
inline constexpr size_t kGroups = 32;

// What records make.

/// States that SaveDC keeps. Programs nest a few; each may hold a path, so they are not for free.
inline constexpr size_t kSavedStates = 1000;
/// Slots of a WMF's table of objects: what fits into the 16 bits of a record that selects.
inline constexpr size_t kObjects = size_t(1) << 16;
/// Rectangles that a combination of regions may have: crossing bars grow by the square.
inline constexpr size_t kRegionRects = size_t(1) << 18;
/// Lines that a curve is flattened into: finer than a pixel of the longest picture.
inline constexpr int kCurveLines = 1000;
/// Points of all paths that are cut far outside the picture. There are few so large, and they are
/// odd.
inline constexpr size_t kCutPoints = 2'000'000;

// Metafiles within metafiles.

/// Metafiles around one that is played.
inline constexpr int kNestedMetafiles = 8;
/// Bytes of all that are played, beyond those of the whole file: a short record may ask for a long
/// one, again and again. Fewer where letters are outlines, of which each takes more than 50 bytes.
/// Each metafile costs some bytes more, and some for each slot of its table.
inline constexpr int64_t kNestedBytes = int64_t(3) << 20;
inline constexpr int64_t kNestedBytesOfOutlines = int64_t(1) << 18;
inline constexpr int64_t kNestedCost = 1024, kNestedSlotCost = 64;

// Bitmaps, and what lies beneath them. A few bytes may ask for many pixels.

/// Pixels that the run-length encoded bitmaps of a document have beyond those that their bytes
/// paint, in all.
inline constexpr int64_t kRunLengthPixels = int64_t(64) << 20;
/// The same in a picture, which may mix them, for some ten times as long: a page of 300 dots an
/// inch has 8 Mi.
inline constexpr int64_t kRunLengthPixelsOfPicture = int64_t(12) << 20;
/// Pixels of a bitmap that is enlarged to those of the picture, and of all of them. Enlarging is
/// for small ones, whose copies compress to little, and must not cost more than the rest.
inline constexpr int64_t kEnlargedPixels = int64_t(1) << 20;
inline constexpr int64_t kAllEnlargedPixels = int64_t(8) << 20;
/// Parts that an area falls into when it is looked at what lies beneath, nodes that are looked at
/// for all areas of a document, and pixels mixed times the parts that they may lie in.
inline constexpr size_t kGroundParts = 64;
inline constexpr int64_t kGroundSteps = int64_t(1) << 25;
inline constexpr int64_t kMixingSteps = int64_t(1) << 25;

/// Nodes and points that all floods of a document may look at.
inline constexpr int64_t kFloodSteps = int64_t(1) << 24;

/// Pixels of the longer side of pictures that are looked at in their own size: A3 at 96 an inch.
/// Thin lines of larger ones, plans of some metres, are as wide as a pixel of a view of that size;
/// else the whole of them, looked at, would show nothing.
inline constexpr double kViewedSide = 1600;

/// Pixels of the boxes around all triangles of gradients that are drawn as images, and of those
/// images. It takes a few bytes to ask for a whole page of them, and each is compressed.
inline constexpr double kGradientPixels = double(1 << 24);

// Paths.

/// Points that all operations together may take from paths and regions that were used before:
/// RestoreDC brings a path back, and a WMF keeps regions, so that a short record can ask for a long
/// one again and again.
inline constexpr size_t kPointsUsedAgain = size_t(1) << 21;
/// What a stop of a gradient counts there: it is as long as some points.
inline constexpr size_t kPointsOfStop = 4;
/// Points that lines in the place of curves and outlines in the place of lines may have, together,
/// beside one for each byte of the file.
inline constexpr size_t kPointsOfOutlines = size_t(1) << 19;

// Areas that are combined: regions of EMF+, and clips of both formats that are cut to each other.

/// Lines times the rows in which they lie, of all of a document, and how many more for each byte of
/// the file. Lines that cross each other make as many rows as their square.
inline constexpr size_t kAreaWork = size_t(1) << 18, kAreaWorkOfByte = 2;
/// What each two of them take beside that, however small they are, and each line, which is sorted.
inline constexpr size_t kAreaCombination = 64, kAreaEdge = 8;

// Pens and brushes of EMF+.

/// Dashes that are drawn as figures, of all of a document; the others are strokes.
inline constexpr size_t kDashes = 20'000;
/// Pieces that a gradient of a path is made of; those of a document, whatever is in it; and the
/// bytes of its records that let it have one more.
inline constexpr size_t kMeshPieces = 4096, kMeshPiecesOfPicture = size_t(1) << 14;
inline constexpr size_t kBytesOfMeshPiece = 16;

// Clips.

/// Rectangles and corners that all changes of clips may go through: a short record may change a
/// large clip, again and again.
inline constexpr size_t kClipWork = size_t(1) << 21;
/// What a path among the clips takes beside its corners: it is a definition of the document.
inline constexpr size_t kClipPathWork = 32;
/// Rows of pixels that the lines of one path may cross where it becomes a region; and what each
/// takes beside rectangles, since they have to be sorted.
inline constexpr size_t kClipCrossings = size_t(1) << 19;
inline constexpr size_t kClipCrossingWork = 2;

} // namespace svgtool::limits
