#include "core/geometry/Region.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace svgtool {

namespace {

    using Rects = std::span<const RectI>;

    /// The bands of a region one after the other.
    class Bands
    {
    public:
        explicit Bands(Rects rects) : m_rects(rects) { find(); }

        bool isDone() const { return m_first == m_rects.size(); }
        int32_t top() const { return isDone() ? kFar : m_rects[m_first].top; }
        int32_t bottom() const { return isDone() ? kFar : m_rects[m_first].bottom; }
        /// The band's rectangles if it holds the line @p y.
        Rects at(int32_t y) const
        {
            return top() <= y ? m_rects.subspan(m_first, m_end - m_first) : Rects();
        }
        void skipTo(int32_t y)
        {
            while (!isDone() && bottom() <= y) {
                m_first = m_end;
                find();
            }
        }

        static constexpr int32_t kFar = std::numeric_limits<int32_t>::max();

    private:
        void find()
        {
            m_end = m_first;
            while (m_end < m_rects.size() && m_rects[m_end].top == m_rects[m_first].top)
                ++m_end;
        }

        Rects m_rects;
        size_t m_first = 0;
        size_t m_end = 0;
    };

    bool holds(Region::Mode mode, bool a, bool b)
    {
        switch (mode) {
        case Region::Mode::And:
            return a && b;
        case Region::Mode::Or:
            return a || b;
        case Region::Mode::Xor:
            return a != b;
        case Region::Mode::Difference:
            return a && !b;
        }
        return false;
    }

    // Appends what the spans of two bands make between two lines.
    void combineSpans(Rects a, Rects b, Region::Mode mode, int32_t top, int32_t bottom,
                      std::vector<RectI> &out)
    {
        if (a.empty() || b.empty()) { // the other one stays as it is, or nothing does
            if (holds(mode, !a.empty(), !b.empty())) {
                for (const RectI &rect : a.empty() ? b : a)
                    out.push_back({ rect.left, top, rect.right, bottom });
            }
            return;
        }
        size_t i = 0, j = 0; // of edges: two a rectangle
        const auto edge = [](Rects spans, size_t index) {
            const RectI &rect = spans[index / 2];
            return index % 2 == 0 ? rect.left : rect.right;
        };
        bool wasInside = false;
        int32_t left = 0;
        while (i < 2 * a.size() || j < 2 * b.size()) {
            const int32_t x = std::min(i < 2 * a.size() ? edge(a, i) : Bands::kFar,
                                       j < 2 * b.size() ? edge(b, j) : Bands::kFar);
            while (i < 2 * a.size() && edge(a, i) == x)
                ++i;
            while (j < 2 * b.size() && edge(b, j) == x)
                ++j;
            const bool isInside = holds(mode, i % 2 != 0, j % 2 != 0);
            if (isInside && !wasInside)
                left = x;
            else if (!isInside && wasInside)
                out.push_back({ left, top, x, bottom });
            wasInside = isInside;
        }
    }

    // Whether the rectangles from middle on go on below those from first to middle.
    bool continuesBand(Rects all, size_t first, size_t middle)
    {
        if (middle - first != all.size() - middle || middle == first)
            return false;
        for (size_t i = first; i < middle; ++i) {
            const RectI &above = all[i], &below = all[middle + i - first];
            if (above.left != below.left || above.right != below.right || above.bottom != below.top)
                return false;
        }
        return true;
    }

    // Whether rectangles are those of a region as they stand.
    bool areBands(Rects rects)
    {
        size_t before = 0, start = 0; // of the band above, and of the one at hand
        for (size_t i = 0; i < rects.size(); ++i) {
            const RectI &rect = rects[i], &first = rects[start];
            if (rect.isEmpty())
                return false;
            if (i == start)
                continue;
            if (rect.top == first.top) {
                if (rect.bottom != first.bottom || rect.left <= rects[i - 1].right)
                    return false;
                continue;
            }
            if (rect.top < first.bottom || continuesBand(rects.first(i), before, start))
                return false;
            before = start;
            start = i;
        }
        return !continuesBand(rects, before, start);
    }

    // Where the border of a path crosses the middle of a row, as a number that ascends with the
    // row, and with the first column whose centre lies behind it: there may be millions of them.
    class Crossing
    {
    public:
        Crossing(int32_t row, int32_t column, bool isDown, const RectI &within)
            : m_bits((uint64_t(int64_t(row) - within.top) << 32
                      | uint32_t(int64_t(column) - within.left))
                             << 1
                     | uint64_t(isDown))
        {
        }

        int32_t row(const RectI &within) const
        {
            return int32_t(within.top + int64_t(m_bits >> 33));
        }
        int32_t column(const RectI &within) const
        {
            return int32_t(within.left + int64_t(uint32_t(m_bits >> 1)));
        }
        int32_t turn() const { return (m_bits & 1) != 0 ? 1 : -1; }
        bool operator<(const Crossing &other) const { return m_bits < other.m_bits; }

    private:
        uint64_t m_bits; ///< 31 of the row, 32 of the column, 1 of the turn
    };

    int32_t firstCentre(double from, int32_t least, int32_t most)
    {
        return int32_t(std::ceil(std::fmin(std::fmax(from - 0.5, least), most)));
    }

    // @return false when there would be too many
    bool addCrossings(PointD a, PointD b, const RectI &within, size_t &left,
                      std::vector<Crossing> &crossings)
    {
        const bool isDown = a.y < b.y;
        if (!isDown)
            std::swap(a, b);
        const int32_t first = firstCentre(a.y, within.top, within.bottom);
        const int32_t end = firstCentre(b.y, within.top, within.bottom);
        const auto rows = size_t(int64_t(end) - first);
        if (rows > left)
            return false;
        left -= rows;
        for (int32_t row = first; row < end; ++row) {
            const double x = a.x + (b.x - a.x) * ((row + 0.5 - a.y) / (b.y - a.y));
            crossings.emplace_back(row, firstCentre(x, within.left, within.right), isDown, within);
        }
        return true;
    }

    std::optional<std::vector<Crossing>> crossingsOf(const Path &path, const RectI &within,
                                                     size_t &left)
    {
        // Each of the lines that matter crosses a row, and a curve has a thousand at the most.
        constexpr double kTolerance = 0.1;
        const auto lines = path.flattened(kTolerance, left);
        if (!lines)
            return std::nullopt;
        std::vector<Crossing> crossings;
        PointD start, current;
        size_t next = 0;
        bool fits = true;
        const auto lineTo = [&](PointD to) {
            fits = fits && addCrossings(std::exchange(current, to), to, within, left, crossings);
        };
        for (const Path::Verb verb : lines->verbs()) {
            if (verb == Path::Verb::Line) {
                lineTo(lines->points()[next++]);
                continue;
            }
            lineTo(start);
            if (verb == Path::Verb::Move)
                start = current = lines->points()[next++];
        }
        lineTo(start);
        if (!fits)
            return std::nullopt;
        std::sort(crossings.begin(), crossings.end());
        return crossings;
    }

} // namespace

Region::Region(const RectI &rect)
{
    if (!rect.isEmpty())
        m_rects.push_back(rect);
}

std::optional<Region> Region::combined(const Region &a, const Region &b, Mode mode)
{
    if (mode == Mode::And && b.m_rects.size() == 1 && b.m_rects.front().contains(a.bounds()))
        return a;
    Region result;
    std::vector<RectI> &out = result.m_rects;
    out.reserve(a.m_rects.size() + b.m_rects.size()); // what it mostly has at most
    Bands bandsA(a.m_rects), bandsB(b.m_rects);
    int32_t y = std::min(bandsA.top(), bandsB.top());
    size_t band = 0; // where the last band of the result begins
    while (!bandsA.isDone() || !bandsB.isDone()) {
        // The next line at which either changes.
        int32_t next = Bands::kFar;
        for (const Bands *bands : { &bandsA, &bandsB })
            next = std::min(next, bands->top() > y ? bands->top() : bands->bottom());
        const size_t start = out.size();
        combineSpans(bandsA.at(y), bandsB.at(y), mode, y, next, out);
        if (out.size() > kMostRects)
            return std::nullopt;
        if (continuesBand(out, band, start)) {
            for (size_t i = band; i < start; ++i)
                out[i].bottom = next;
            out.resize(start);
        } else if (out.size() > start) {
            band = start;
        }
        y = next;
        bandsA.skipTo(y);
        bandsB.skipTo(y);
    }
    return result;
}

std::optional<Region> Region::of(std::vector<RectI> rects)
{
    if (rects.size() > kMostRects || !areBands(rects))
        return together(rects);
    Region region;
    region.m_rects = std::move(rects);
    return region;
}

// By halves, so that many rectangles in no order take n log n and not the square.
std::optional<Region> Region::together(std::span<const RectI> rects)
{
    if (rects.size() <= 1)
        return rects.empty() ? Region() : Region(rects.front());
    if (rects.size() <= kMostRects && areBands(rects)) {
        Region region;
        region.m_rects.assign(rects.begin(), rects.end());
        return region;
    }
    const auto first = together(rects.first(rects.size() / 2));
    const auto second = together(rects.subspan(rects.size() / 2));
    if (!first || !second)
        return std::nullopt;
    return combined(*first, *second, Mode::Or);
}

std::optional<Region> Region::ofPath(const Path &path, bool isEvenOdd, const RectI &within,
                                     size_t &crossings)
{
    const RectD box = path.bounds();
    const RectI area{ within.left, firstCentre(box.top, within.top, within.bottom), within.right,
                      firstCentre(box.bottom, within.top, within.bottom) };
    // Figures so far from each other are no picture's, and have no numbers.
    if (int64_t(area.bottom) - area.top > std::numeric_limits<int32_t>::max())
        return std::nullopt;
    const auto found = crossingsOf(path, area, crossings);
    if (!found)
        return std::nullopt;
    Region result;
    std::vector<RectI> &out = result.m_rects;
    size_t band = 0; // where the last band begins
    for (auto at = found->begin(); at != found->end();) {
        const size_t start = out.size();
        const int32_t row = at->row(area);
        int32_t winding = 0;
        for (; at != found->end() && at->row(area) == row; ++at) {
            const int32_t column = at->column(area);
            const bool wasInside = isEvenOdd ? winding % 2 != 0 : winding != 0;
            winding += at->turn();
            const bool isInside = isEvenOdd ? winding % 2 != 0 : winding != 0;
            if (!wasInside && isInside && out.size() > start && out.back().right == column)
                continue; // it goes on where the one before has ended
            if (!wasInside && isInside)
                out.push_back({ column, row, column, row + 1 });
            else if (wasInside && !isInside)
                out.back().right = column;
        }
        const auto fresh = out.begin() + std::ptrdiff_t(start);
        out.erase(std::remove_if(fresh, out.end(), std::mem_fn(&RectI::isEmpty)), out.end());
        if (out.size() > kMostRects)
            return std::nullopt;
        if (continuesBand(out, band, start)) {
            for (size_t i = band; i < start; ++i)
                out[i].bottom = out.back().bottom;
            out.resize(start);
        } else if (out.size() > start) {
            band = start;
        }
    }
    return result;
}

Region Region::moved(int32_t dx, int32_t dy) const
{
    const auto sum = [](int32_t value, int32_t by) {
        return int32_t(std::clamp<int64_t>(int64_t(value) + by, std::numeric_limits<int32_t>::min(),
                                           std::numeric_limits<int32_t>::max()));
    };
    Region result;
    for (const RectI &rect : m_rects) {
        const RectI moved{ sum(rect.left, dx), sum(rect.top, dy), sum(rect.right, dx),
                           sum(rect.bottom, dy) };
        if (!moved.isEmpty())
            result.m_rects.push_back(moved);
    }
    return result;
}

RectI Region::bounds() const
{
    if (m_rects.empty())
        return {};
    RectI bounds = m_rects.front();
    for (const RectI &rect : m_rects) {
        bounds.left = std::min(bounds.left, rect.left);
        bounds.right = std::max(bounds.right, rect.right);
    }
    bounds.bottom = m_rects.back().bottom;
    return bounds;
}

} // namespace svgtool
