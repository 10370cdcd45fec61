#include "core/geometry/Region.h"

#include <algorithm>
#include <limits>

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

} // namespace

Region::Region(const RectI &rect)
{
    if (!rect.isEmpty())
        m_rects.push_back(rect);
}

std::optional<Region> Region::combined(const Region &a, const Region &b, Mode mode)
{
    Region result;
    std::vector<RectI> &out = result.m_rects;
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

std::optional<Region> Region::of(std::span<const RectI> rects)
{
    // By halves, so that many rectangles in no order take n log n and not the square.
    if (rects.size() <= 1)
        return rects.empty() ? Region() : Region(rects.front());
    const auto first = of(rects.first(rects.size() / 2));
    const auto second = of(rects.subspan(rects.size() / 2));
    if (!first || !second)
        return std::nullopt;
    return combined(*first, *second, Mode::Or);
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
