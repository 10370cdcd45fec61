#pragma once

#include "core/records/EmfRecords.h"

#include <QRegion>

#include <list>
#include <new>
#include <span>
#include <vector>

namespace svgtool {

/// A straight edge from (x1, y1) to (x2, y2), whole units, y1 not greater than y2.
class CLine
{
public:
    /// Orders y1 and y2.
    CLine(qint32 fromX, qint32 fromY, qint32 toX, qint32 toY);
    /// Copies the coordinates and orders y1 and y2, so a line of any class becomes a plain one.
    CLine(const CLine &line);
    CLine &operator=(const CLine &line) = default;

    /// Puts the coordinates that vary along the line into ascending order, here y1 and y2.
    /// @return the lesser of them
    virtual qint32 normalize();
    virtual ~CLine() = default;

    qint32 x1, y1, x2, y2;
};

/// A vertical edge; those of rectangles have x1 equal to x2.
class CVLine : public CLine
{
public:
    using CLine::CLine;
};

/// A horizontal edge, x1 not greater than x2.
class CHLine : public CLine
{
public:
    /// Orders y1 and y2, then x1 and x2.
    CHLine(qint32 fromX, qint32 fromY, qint32 toX, qint32 toY);

    /// Orders x1 and x2.
    /// @return the lesser of them
    qint32 normalize() override;
};

/// The left side of @p rect if @p which is 0, else the right one.
CVLine GetVLine(const RECTL &rect, qint32 which);

/// The top side of @p rect if @p which is 0, else the bottom one.
CHLine GetHLine(const RECTL &rect, qint32 which);

/// Compares two lines on one y and, where their stretches overlap, appends to @p pieces what only
/// one of them covers.
/// @param a, b  lines of either class; one of them may be in @p pieces itself
/// @return how many pieces were appended: 0 for two equal lines, else 1 or 2; -1 if the lines do
///         not overlap or only touch at an end
qint32 HSplitIfOverlap(const CLine &a, const CLine &b, std::list<CHLine> &pieces);

/// The same comparison with vertical pieces, whose x1 may exceed x2.
///
/// It too goes by the stretches in x, so lines that are in fact vertical are never split.
qint32 VSplitIfOverlap(const CLine &a, const CLine &b, std::list<CVLine> &pieces);

/// Turns rectangles into the edges of the area they cover together.
///
/// Each rectangle gives its four sides. Where two horizontal sides overlap, the shared stretch goes
/// and the rest stays; equal horizontal sides and shared vertical sides stay whole. Rectangles may
/// overlap, be empty or reversed, and have any coordinates.
///
/// The time is that of (n + s) log n for n rectangles and s splits, the memory that of n log n.
/// Each split leaves fewer pairs of overlapping sides than before, so s is at most the number of
/// such pairs; in banded regions it is below 2 n.
/// @param[out] edges  gets the edges appended: the horizontal ones, then the vertical ones. They
///                    are neither joined nor directed.
/// @return true
/// @throw std::bad_alloc  also for more than 2^25 rectangles
bool ConvertRgnDataToPath(std::span<const RECTL> rects, std::list<CLine> &edges);

/// A region has more rectangles than this library is willing to keep; memory has not run out.
class RegionTooLarge : public std::bad_alloc
{
};

/// The area of @p rects as a region, whose decomposition into bands Qt chooses.
///
/// The rectangles are united one by one in their order. Only where that would take time quadratic
/// in their number, as with tens of thousands in no order of bands, are the later ones united
/// pairwise: the same area, though perhaps divided into other rectangles.
/// @param rects  right and bottom are exclusive; empty and reversed ones add nothing
/// @throw RegionTooLarge  if the region would have more than 2^20 rectangles beyond twice the
/// number
///                        of @p rects: the decomposition of crossing bars grows by the square
QRegion RectsToRegion(std::span<const RECTL> rects);

/// The rectangles of @p region in its own order: by bands from the top, each from the left.
///
/// The bottom of each is exclusive, the right is not: it is the last column inside.
std::vector<RECTL> RegionToRects(const QRegion &region);

} // namespace svgtool
