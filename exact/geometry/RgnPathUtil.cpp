#include "exact/geometry/RgnPathUtil.h"

#include "core/base/Numeric.h"
#include "exact/geometry/OverlapQueue.h"
#include "exact/geometry/RectTools.h"
#include "exact/logging/TraceScope.h"

#include <algorithm>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\RgnPathUtil.cpp";

CLine::CLine(qint32 fromX, qint32 fromY, qint32 toX, qint32 toY)
    : x1(fromX), y1(std::min(fromY, toY)), x2(toX), y2(std::max(fromY, toY))
{
}

CLine::CLine(const CLine &line) : CLine(line.x1, line.y1, line.x2, line.y2) { }

qint32 CLine::normalize()
{
    if (y1 > y2)
        std::swap(y1, y2);
    return y1;
}

CHLine::CHLine(qint32 fromX, qint32 fromY, qint32 toX, qint32 toY)
    : CLine(std::min(fromX, toX), fromY, std::max(fromX, toX), toY)
{
}

qint32 CHLine::normalize()
{
    if (x1 > x2)
        std::swap(x1, x2);
    return x1;
}

CVLine GetVLine(const RECTL &rect, qint32 which)
{
    SVGTOOL_TRACE("GetVLine");
    const qint32 x = which == 0 ? rect.left : rect.right;
    return CVLine(x, rect.top, x, rect.bottom);
}

CHLine GetHLine(const RECTL &rect, qint32 which)
{
    SVGTOOL_TRACE("GetHLine");
    const qint32 y = which == 0 ? rect.top : rect.bottom;
    return CHLine(rect.left, y, rect.right, y);
}

template<class Line>
static qint32 splitIfOverlap(const CLine &a, const CLine &b, std::list<Line> &pieces)
{
    if (a.y1 != b.y1 || a.x2 < b.x1 || b.x2 < a.x1)
        return -1;
    if (a.x2 == b.x1 || a.x1 == b.x2)
        return -1;
    qint32 count = 0;
    if (a.x1 != b.x1) {
        pieces.emplace_back(a.x1, a.y1, b.x1, a.y1);
        ++count;
    }
    if (a.x2 != b.x2) {
        pieces.emplace_back(a.x2, a.y1, b.x2, a.y1);
        ++count;
    }
    return count;
}

qint32 HSplitIfOverlap(const CLine &a, const CLine &b, std::list<CHLine> &pieces)
{
    SVGTOOL_TRACE("HSplitIfOverlap");
    return splitIfOverlap(a, b, pieces);
}

qint32 VSplitIfOverlap(const CLine &a, const CLine &b, std::list<CVLine> &pieces)
{
    SVGTOOL_TRACE("VSplitIfOverlap");
    return splitIfOverlap(a, b, pieces);
}

// Takes each line in turn, looks for the first later one that HSplitIfOverlap cuts against it, and
// puts the pieces of such a pair, instead of the pair, to the end of the list.
static std::list<CHLine> cutSharedStretches(const std::list<CHLine> &lines)
{
    OverlapQueue waiting(lines);
    std::list<CHLine> kept;
    while (!waiting.isEmpty()) {
        const OverlapQueue::Match match = waiting.takeMatch();
        if (!match.partner) {
            kept.push_back(match.first);
            continue;
        }
        std::list<CHLine> pieces;
        HSplitIfOverlap(match.first, *match.partner, pieces);
        for (const CHLine &piece : pieces)
            waiting.append(piece);
    }
    return kept;
}

bool ConvertRgnDataToPath(std::span<const RECTL> rects, std::list<CLine> &edges)
{
    SVGTOOL_TRACE("ConvertRgnDataToPath");
    std::list<CVLine> vertical;
    std::list<CHLine> horizontal;
    for (const RECTL &rect : rects) {
        vertical.push_back(GetVLine(rect, 0));
        vertical.push_back(GetVLine(rect, 1));
        horizontal.push_back(GetHLine(rect, 0));
        horizontal.push_back(GetHLine(rect, 1));
    }
    const std::list<CHLine> kept = cutSharedStretches(horizontal);
    edges.insert(edges.end(), kept.begin(), kept.end());
    // Quirk: shared vertical sides stay; golden files of frames depend on it. The same pass over
    // the vertical lines, with VSplitIfOverlap, would never find a pair to cut: x1 equals x2 in
    // each line, so a pair qualifies only if a.x >= b.x and b.x >= a.x, and then a.x2 equals b.x1,
    // which counts as a mere touch. Hence no pass.
    edges.insert(edges.end(), vertical.begin(), vertical.end());
    return true;
}

// Uniting, counted in rectangles that Qt must go through, is done one by one up to this cost. Lists
// of some four thousand rectangles, and all in the order of bands, stay below it.
static constexpr qint64 kMaxOneByOneCost = qint64(1) << 23;

// Whether Qt unites by adding to the end of the region, without a look at the rest.
static bool isBehind(const QRect &rect, const QRegion &region)
{
    if (region.isEmpty())
        return true;
    const QRect last = *(region.end() - 1);
    return rect.top() > last.bottom()
            || (rect.top() == last.top() && rect.bottom() == last.bottom()
                && rect.left() > last.right());
}

// The lines on which bands of the region begin or end, from the top.
static std::vector<qint64> bandEdges(const QRegion &region)
{
    std::vector<qint64> edges;
    for (const QRect &rect : region) {
        edges.push_back(rect.top());
        edges.push_back(qint64(rect.bottom()) + 1);
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

// Into how many rectangles the band edges cut those of the region.
static qint64 cutCount(const QRegion &region, const std::vector<qint64> &edges)
{
    qint64 count = 0;
    for (const QRect &rect : region) {
        const auto first = std::upper_bound(edges.begin(), edges.end(), rect.top());
        count += 1 + (std::lower_bound(first, edges.end(), qint64(rect.bottom()) + 1) - first);
    }
    return count;
}

// Unites unless the result might have more than limit rectangles.
static void uniteWithin(qint64 limit, QRegion &region, const QRegion &other)
{
    // No rectangle is cut more often than by both edges of every band of the other region.
    const qint64 simpleBound = region.rectCount() + other.rectCount()
            + 4 * qint64(region.rectCount()) * other.rectCount();
    if (simpleBound > limit
        && cutCount(region, bandEdges(other)) + cutCount(other, bandEdges(region)) > limit)
        throw RegionTooLarge();
    region += other;
}

static QRegion uniteBalanced(qint64 limit, std::span<const QRect> rects)
{
    if (rects.size() == 1)
        return QRegion(rects.front());
    const size_t half = rects.size() / 2;
    QRegion region = uniteBalanced(limit, rects.first(half));
    uniteWithin(limit, region, uniteBalanced(limit, rects.subspan(half)));
    return region;
}

QRegion RectsToRegion(std::span<const RECTL> rects)
{
    const qint64 limit = (qint64(1) << 20) + 2 * qint64(rects.size());
    QRegion region;
    qint64 cost = 0;
    std::vector<QRect> rest;
    for (const RECTL &r : rects) {
        const QRect rect =
                rectAt(r.left, r.top, wrapSub(r.right, r.left), wrapSub(r.bottom, r.top));
        if (rect.isEmpty())
            continue;
        if (!rest.empty() || cost > kMaxOneByOneCost) {
            rest.push_back(rect);
            continue;
        }
        if (!isBehind(rect, region))
            cost += region.rectCount();
        region += rect;
        if (region.rectCount() > limit)
            throw RegionTooLarge();
    }
    if (!rest.empty())
        uniteWithin(limit, region, uniteBalanced(limit, rest));
    return region;
}

std::vector<RECTL> RegionToRects(const QRegion &region)
{
    std::vector<RECTL> rects;
    rects.reserve(static_cast<size_t>(region.rectCount()));
    for (const QRect &rect : region) {
        // Quirk: the bottom becomes exclusive, the right does not; golden files of clip regions
        // depend on it.
        rects.push_back({ rect.left(), rect.top(), rect.right(), wrapAdd(rect.bottom(), 1) });
    }
    return rects;
}

} // namespace svgtool
