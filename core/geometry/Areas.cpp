#include "core/geometry/Areas.h"

#include "core/base/Limits.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace svgtool {

namespace {

    // A line of one of the areas that is not level.
    struct Edge
    {
        PointD top, bottom;
        int8_t turn; // how it counts for the winding rule
        bool isOfSecond;

        double at(double y) const
        {
            if (y <= top.y)
                return top.x;
            if (y >= bottom.y)
                return bottom.x;
            return top.x + (bottom.x - top.x) * ((y - top.y) / (bottom.y - top.y));
        }
    };

    void addEdge(std::vector<Edge> &edges, PointD from, PointD to, bool isOfSecond)
    {
        if (from.y < to.y)
            edges.push_back({ from, to, 1, isOfSecond });
        else if (to.y < from.y)
            edges.push_back({ to, from, -1, isOfSecond });
    }

    bool addEdges(std::vector<Edge> &edges, const Path &path, double tolerance, size_t &work,
                  bool isOfSecond)
    {
        const RectD box = path.bounds();
        if (!path.isEmpty() && !std::isfinite(box.width() + box.height()))
            return false;
        const auto lines = path.flattened(tolerance, work / limits::kAreaEdge);
        if (!lines) {
            work = 0; // so that it is not tried again and again
            return false;
        }
        PointD start, current;
        size_t next = 0;
        for (const Path::Verb verb : lines->verbs()) {
            if (verb == Path::Verb::Line) {
                const PointD to = lines->points()[next++];
                addEdge(edges, std::exchange(current, to), to, isOfSecond);
                continue;
            }
            addEdge(edges, std::exchange(current, start), start, isOfSecond);
            if (verb == Path::Verb::Move)
                start = current = lines->points()[next++];
        }
        addEdge(edges, current, start, isOfSecond);
        return true;
    }

    // A side of the result, along one edge.
    struct Side
    {
        size_t edge;
        PointD ends[2]; // top and bottom
        size_t next[2] = {}; // end 2 * side + 0 or 1 that a level line leads to
    };

    // Where an edge crosses the lines around a row, or one line within it.
    struct Crossed
    {
        double top, bottom;
        size_t edge;
    };

    // Goes down row by row. Within a row no edge ends and none crosses another.
    class Sweep
    {
    public:
        Sweep(std::vector<Edge> edges, AreaMode mode, bool isEvenOddA, bool isEvenOddB)
            : m_edges(std::move(edges)), m_mode(mode), m_isEvenOdd{ isEvenOddA, isEvenOddB },
              m_lastSides(m_edges.size(), size_t(-1))
        {
        }

        bool run(size_t &work);
        Path path();

    private:
        bool isInside(int32_t a, int32_t b) const;
        bool findRows(double top, double bottom, size_t &work, std::vector<double> &rows);
        void row(double top, double bottom);
        void cross(double top, double bottom);
        void takeOrder();
        void link(double y, const std::vector<Side> &below);

        std::vector<Edge> m_edges;
        AreaMode m_mode;
        bool m_isEvenOdd[2];
        std::vector<size_t> m_lastSides; // of each edge
        std::vector<size_t> m_active; // edges, from the left
        std::vector<Crossed> m_crossed; // the same where they are sorted; kept for its memory
        std::vector<Side> m_sides;
        std::vector<size_t> m_open; // sides that end where the next row begins
    };

    bool Sweep::isInside(int32_t a, int32_t b) const
    {
        const bool isInA = m_isEvenOdd[0] ? a % 2 != 0 : a != 0;
        const bool isInB = m_isEvenOdd[1] ? b % 2 != 0 : b != 0;
        switch (m_mode) {
        case AreaMode::And:
            return isInA && isInB;
        case AreaMode::Or:
            return isInA || isInB;
        case AreaMode::Xor:
            return isInA != isInB;
        case AreaMode::Difference:
            return isInA && !isInB;
        }
        return false;
    }

    // Sorts the edges by where they cross two lines.
    void Sweep::cross(double top, double bottom)
    {
        m_crossed.clear();
        for (const size_t edge : m_active)
            m_crossed.push_back({ m_edges[edge].at(top), m_edges[edge].at(bottom), edge });
        std::ranges::sort(m_crossed, [](const Crossed &a, const Crossed &b) {
            return a.top < b.top || (a.top == b.top && a.bottom < b.bottom);
        });
    }

    // The edges stand as they were found to cross.
    void Sweep::takeOrder()
    {
        for (size_t i = 0; i < m_crossed.size(); ++i)
            m_active[i] = m_crossed[i].edge;
    }

    // Where edges cross between two lines; both lines are in the list.
    bool Sweep::findRows(double top, double bottom, size_t &work, std::vector<double> &rows)
    {
        rows = { top, bottom };
        cross(top, bottom);
        // Sorted by their ends, those change places that cross.
        for (size_t i = 1; i < m_crossed.size(); ++i) {
            const Crossed moved = m_crossed[i];
            size_t place = i;
            for (; place > 0 && m_crossed[place - 1].bottom > moved.bottom; --place) {
                const Crossed &other = m_crossed[place - 1];
                const double above = moved.top - other.top;
                const double below = other.bottom - moved.bottom;
                const double y = top + (bottom - top) * (above / (above + below));
                if (top < y && y < bottom)
                    rows.push_back(y);
                m_crossed[place] = other;
                if (work <= 1)
                    return false;
                --work;
            }
            m_crossed[place] = moved;
        }
        takeOrder();
        std::ranges::sort(rows);
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        const size_t cost = rows.size() * m_active.size();
        if (cost >= work)
            return false;
        work -= cost;
        return true;
    }

    void Sweep::row(double top, double bottom)
    {
        const double middle = top + (bottom - top) / 2;
        cross(middle, middle);
        takeOrder();
        std::vector<Side> sides;
        int32_t turns[2] = {};
        for (const size_t number : m_active) {
            const Edge &edge = m_edges[number];
            const bool was = isInside(turns[0], turns[1]);
            turns[edge.isOfSecond ? 1 : 0] += edge.turn;
            if (was == isInside(turns[0], turns[1]))
                continue;
            const Side side{ number, { { edge.at(top), top }, { edge.at(bottom), bottom } } };
            // Of nothing between two edges in one place nothing is left.
            if (!sides.empty() && sides.back().ends[0] == side.ends[0]
                && sides.back().ends[1] == side.ends[1])
                sides.pop_back();
            else
                sides.push_back(side);
        }
        link(top, sides);
    }

    // Joins what ends at a line and what begins there: the ends lie two by two around what changes
    // from inside to outside at that line.
    void Sweep::link(double y, const std::vector<Side> &below)
    {
        struct End
        {
            double x;
            size_t number;
        };
        std::vector<End> ends;
        std::vector<size_t> open;
        for (const Side &side : below) {
            size_t &last = m_lastSides[side.edge];
            if (last < m_sides.size() && m_sides[last].ends[1].y == y) {
                m_sides[last].ends[1] = side.ends[1]; // it goes straight on
            } else {
                last = m_sides.size();
                ends.push_back({ side.ends[0].x, 2 * last });
                m_sides.push_back(side);
            }
            open.push_back(last);
        }
        for (const size_t number : m_open) {
            if (m_sides[number].ends[1].y == y)
                ends.push_back({ m_sides[number].ends[1].x, 2 * number + 1 });
        }
        std::ranges::stable_sort(ends, {}, &End::x);
        for (size_t i = 0; i + 1 < ends.size(); i += 2) {
            const size_t one = ends[i].number, other = ends[i + 1].number;
            m_sides[one / 2].next[one % 2] = other;
            m_sides[other / 2].next[other % 2] = one;
        }
        m_open = std::move(open);
    }

    bool Sweep::run(size_t &work)
    {
        std::vector<double> rows;
        rows.reserve(2 * m_edges.size());
        for (const Edge &edge : m_edges) {
            rows.push_back(edge.top.y);
            rows.push_back(edge.bottom.y);
        }
        std::ranges::sort(rows);
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
        std::ranges::sort(m_edges, {}, [](const Edge &edge) { return edge.top.y; });
        size_t next = 0;
        std::vector<double> within;
        for (size_t i = 0; i + 1 < rows.size(); ++i) {
            const double top = rows[i], bottom = rows[i + 1];
            std::erase_if(m_active, [&](size_t edge) { return m_edges[edge].bottom.y <= top; });
            for (; next < m_edges.size() && m_edges[next].top.y <= top; ++next)
                m_active.push_back(next);
            if (!findRows(top, bottom, work, within))
                return false;
            for (size_t k = 0; k + 1 < within.size(); ++k)
                row(within[k], within[k + 1]);
        }
        if (!rows.empty())
            link(rows.back(), {});
        return true;
    }

    Path Sweep::path()
    {
        Path path;
        std::vector<bool> isDone(m_sides.size());
        for (size_t first = 0; first < m_sides.size(); ++first) {
            if (isDone[first])
                continue;
            std::vector<PointD> figure;
            const auto go = [&figure](PointD point) {
                if (figure.empty() || figure.back() != point)
                    figure.push_back(point);
            };
            size_t end = 2 * first; // at which a side is entered
            do {
                const Side &side = m_sides[end / 2];
                isDone[end / 2] = true;
                go(side.ends[end % 2]);
                go(side.ends[1 - end % 2]);
                end = side.next[1 - end % 2];
            } while (!isDone[end / 2]);
            if (figure.front() == figure.back())
                figure.pop_back();
            for (size_t i = 0; i < figure.size(); ++i)
                i == 0 ? path.moveTo(figure[i]) : path.lineTo(figure[i]);
            path.close();
        }
        return path;
    }

} // namespace

std::optional<Area> combined(const Area &a, const Area &b, AreaMode mode, double tolerance,
                             size_t &work)
{
    std::vector<Edge> edges;
    if (!addEdges(edges, a.path, tolerance, work, false)
        || !addEdges(edges, b.path, tolerance, work, true))
        return std::nullopt;
    const size_t cost = edges.size() * limits::kAreaEdge;
    if (cost > work) {
        work = 0;
        return std::nullopt;
    }
    work -= cost;
    Sweep sweep(std::move(edges), mode, a.isEvenOdd, b.isEvenOdd);
    if (!sweep.run(work))
        return std::nullopt;
    return Area{ sweep.path(), true };
}

} // namespace svgtool
