#include "core/geometry/Region.h"

#include <utility>

namespace svgtool {

namespace {

    constexpr size_t kNothing = size_t(-1);

    // A side of the area. With the area on its right hand, a left side goes up and a right one
    // down, and a line leads on to the next one.
    struct Side
    {
        int32_t x, top, bottom;
        bool isLeft;
        size_t next = kNothing;

        PointD entry() const { return { double(x), double(isLeft ? bottom : top) }; }
        PointD exit() const { return { double(x), double(isLeft ? top : bottom) }; }
    };

    // Goes down the bands, with the sides that are open where it stands.
    class Tracer
    {
    public:
        explicit Tracer(size_t rects) { m_sides.reserve(2 * rects); }

        // Goes on to the line @p y, below which these spans lie.
        void step(int32_t y, std::span<const RectI> spans)
        {
            std::vector<size_t> &below = m_below;
            below.clear();
            const auto edge = [spans](size_t index) {
                const RectI &rect = spans[index / 2];
                return index % 2 == 0 ? rect.left : rect.right;
            };
            size_t i = 0, j = 0;
            m_kind = Kind::None;
            while (i < m_open.size() || j < 2 * spans.size()) {
                const bool isAbove = i < m_open.size()
                        && (j == 2 * spans.size() || m_sides[m_open[i]].x <= edge(j));
                const bool isBelow = j < 2 * spans.size()
                        && (i == m_open.size() || edge(j) <= m_sides[m_open[i]].x);
                if (isAbove && isBelow && i % 2 == j % 2 && m_kind == Kind::None) {
                    below.push_back(m_open[i]); // it goes straight on
                    m_sides[m_open[i]].bottom = spans.front().bottom;
                } else {
                    if (isBelow) {
                        below.push_back(m_sides.size());
                        m_sides.push_back({ edge(j), y, spans.front().bottom, j % 2 == 0 });
                    }
                    const size_t above = isAbove ? m_open[i] : below.back();
                    const size_t under = isBelow ? below.back() : above;
                    change(kindOf((i + isAbove) % 2 != 0, (j + isBelow) % 2 != 0), above, under);
                }
                i += isAbove;
                j += isBelow;
            }
            std::swap(m_open, m_below);
        }

        Path path()
        {
            Path path;
            // A rectangle has two sides with two ends each, and begins a figure at the most.
            path.reserve(m_sides.size() / 2 * 5, m_sides.size() * 2);
            for (Side &first : m_sides) {
                if (first.next == kNothing)
                    continue;
                path.moveTo(first.exit());
                for (size_t next = std::exchange(first.next, kNothing); next != kNothing;) {
                    Side &side = m_sides[next];
                    path.lineTo(side.entry());
                    next = std::exchange(side.next, kNothing);
                    if (next != kNothing)
                        path.lineTo(side.exit());
                }
                path.close();
            }
            return path;
        }

    private:
        // What a line between two sides is the end of.
        enum class Kind { None, OfAbove, OfBelow };

        static Kind kindOf(bool isInAbove, bool isInBelow)
        {
            return isInAbove == isInBelow ? Kind::None : isInAbove ? Kind::OfAbove : Kind::OfBelow;
        }

        // A line ends and another begins at the end of a side above and the start of one below,
        // which are the same where there is only one.
        void change(Kind kind, size_t above, size_t under)
        {
            const size_t end = m_kind == Kind::OfAbove ? above : under;
            if (m_kind == Kind::OfAbove)
                m_sides[end].next = m_start;
            else if (m_kind == Kind::OfBelow)
                m_sides[m_start].next = end;
            m_kind = kind;
            m_start = kind == Kind::OfAbove ? above : under;
        }

        std::vector<Side> m_sides;
        std::vector<size_t> m_open; ///< from the left
        std::vector<size_t> m_below; ///< kept for its memory
        Kind m_kind = Kind::None;
        size_t m_start = 0;
    };

} // namespace

Path Region::outline() const
{
    Tracer tracer(m_rects.size());
    int32_t bottom = 0;
    for (size_t first = 0; first < m_rects.size();) {
        size_t end = first;
        while (end < m_rects.size() && m_rects[end].top == m_rects[first].top)
            ++end;
        const int32_t top = m_rects[first].top;
        if (first > 0 && bottom < top)
            tracer.step(bottom, {});
        tracer.step(top, rects().subspan(first, end - first));
        bottom = m_rects[first].bottom;
        first = end;
    }
    tracer.step(bottom, {});
    return tracer.path();
}

} // namespace svgtool
