#include "core/geometry/Outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool {

namespace {

    PointD along(PointD from, PointD by, double length)
    {
        return { from.x + by.x * length, from.y + by.y * length };
    }

    // Walks around one figure, on the side that lies to the left as y grows downwards.
    class Walker
    {
    public:
        Walker(Path &out, const LineShape &shape) : m_out(out), m_shape(shape) { }

        void figure(std::span<const PointD> given, bool isClosed);

    private:
        PointD direction(size_t line) const;
        PointD beside(PointD point, PointD direction) const
        {
            return along(point, { direction.y, -direction.x }, m_shape.width / 2);
        }
        void go(PointD point);
        void arc(PointD center, PointD from, double sweep);
        void join(PointD point, PointD before, PointD after);
        void cap(PointD point, PointD direction);
        void dot(PointD point);
        void ring();

        Path &m_out;
        const LineShape &m_shape;
        std::vector<PointD> m_points; ///< no two in a row are the same
    };

    PointD Walker::direction(size_t line) const
    {
        const PointD &from = m_points[line], &to = m_points[(line + 1) % m_points.size()];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        return { (to.x - from.x) / length, (to.y - from.y) / length };
    }

    void Walker::go(PointD point)
    {
        if (m_out.isOpen())
            m_out.lineTo(point);
        else
            m_out.moveTo(point);
    }

    // With the clock around the centre, from where the left side of a direction lies.
    void Walker::arc(PointD center, PointD from, double sweep)
    {
        const double radius = m_shape.width / 2;
        m_out.addArc({ radius, 0, 0, radius, center.x, center.y }, std::atan2(-from.x, from.y),
                     sweep);
    }

    void Walker::join(PointD point, PointD before, PointD after)
    {
        const double cross = before.x * after.y - before.y * after.x;
        const double dot = before.x * after.x + before.y * after.y;
        if (cross < 0) {
            // On the inner side the way leads over the corner, and what overlaps winds alike.
            go(beside(point, before));
            go(point);
            go(beside(point, after));
        } else if (m_shape.join == Join::Round) {
            arc(point, before, std::atan2(cross, dot));
        } else {
            go(beside(point, before));
            // A miter is as long as the width through the sine of half the angle between.
            if (m_shape.join == Join::Miter
                && 2 <= m_shape.miterLimit * m_shape.miterLimit * (1 + dot)) {
                const double reach = m_shape.width / 2 / (1 + dot);
                go({ point.x + (before.y + after.y) * reach,
                     point.y - (before.x + after.x) * reach });
            }
            go(beside(point, after));
        }
    }

    // From the left side of the direction to its right one.
    void Walker::cap(PointD point, PointD direction)
    {
        if (m_shape.cap == Cap::Round) {
            arc(point, direction, std::numbers::pi);
            return;
        }
        const PointD end =
                m_shape.cap == Cap::Square ? along(point, direction, m_shape.width / 2) : point;
        go(beside(end, direction));
        go(beside(end, { -direction.x, -direction.y }));
    }

    void Walker::dot(PointD point)
    {
        if (m_shape.cap == Cap::Butt)
            return;
        cap(point, { 1, 0 });
        cap(point, { -1, 0 });
        m_out.close();
    }

    void Walker::ring()
    {
        const size_t count = m_points.size();
        for (size_t i = 0; i < count; ++i)
            join(m_points[i], direction((i + count - 1) % count), direction(i));
        m_out.close();
    }

    void Walker::figure(std::span<const PointD> given, bool isClosed)
    {
        m_points.clear();
        for (const PointD &point : given) {
            if (m_points.empty() || m_points.back() != point)
                m_points.push_back(point);
        }
        if (isClosed && m_points.size() > 1 && m_points.front() == m_points.back())
            m_points.pop_back();
        const size_t count = m_points.size();
        if (count == 0)
            return;
        if (count == 1) {
            dot(m_points[0]);
            return;
        }
        for (const bool isBack : { false, true }) {
            if (isBack)
                std::reverse(m_points.begin(), m_points.end());
            if (isClosed) {
                ring();
                continue;
            }
            for (size_t i = 1; i + 1 < count; ++i)
                join(m_points[i], direction(i - 1), direction(i));
            cap(m_points[count - 1], direction(count - 2));
        }
        if (!isClosed)
            m_out.close();
    }

} // namespace

Path outlineOf(const Path &lines, const LineShape &shape)
{
    Path out;
    Walker walker(out, shape);
    const auto verbs = lines.verbs();
    const auto points = lines.points();
    size_t first = 0, next = 0; // points of the figure at hand
    for (size_t i = 0; i < verbs.size(); ++i) {
        const bool isClosed = verbs[i] == Path::Verb::Close;
        next += isClosed ? 0 : 1;
        if (isClosed || i + 1 == verbs.size() || verbs[i + 1] == Path::Verb::Move) {
            if (next > first)
                walker.figure(points.subspan(first, next - first), isClosed);
            first = next;
        }
    }
    return out;
}

} // namespace svgtool
