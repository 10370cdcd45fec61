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
        double length(size_t line) const;
        PointD beside(PointD point, PointD direction) const
        {
            return along(point, { direction.y, -direction.x }, m_shape.width / 2);
        }
        void go(PointD point);
        void arc(PointD center, PointD from, double sweep);
        void join(size_t before, size_t after);
        void cap(PointD point, PointD direction);
        void dot(PointD point);
        void ring();

        Path &m_out;
        const LineShape &m_shape;
        std::vector<PointD> m_points; ///< no two in a row are near
    };

    double Walker::length(size_t line) const
    {
        const PointD &from = m_points[line], &to = m_points[(line + 1) % m_points.size()];
        return std::hypot(to.x - from.x, to.y - from.y);
    }

    PointD Walker::direction(size_t line) const
    {
        const PointD &from = m_points[line], &to = m_points[(line + 1) % m_points.size()];
        return { (to.x - from.x) / length(line), (to.y - from.y) / length(line) };
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

    // From one line to the next, around the point between them.
    void Walker::join(size_t lineBefore, size_t lineAfter)
    {
        const PointD point = m_points[lineAfter];
        const PointD before = direction(lineBefore), after = direction(lineAfter);
        const double radius = m_shape.width / 2;
        const double cross = before.x * after.y - before.y * after.x;
        const double dot = before.x * after.x + before.y * after.y;
        // Where the sides of both lines meet.
        const PointD meeting =
                along(point, { before.y + after.y, -before.x - after.x }, radius / (1 + dot));
        if (cross < 0) {
            // On the inner side, unless that is too far away; the way over the corner then leaves
            // the area what it is, since what overlaps winds alike.
            if (-cross * radius <= (1 + dot) * std::fmin(length(lineBefore), length(lineAfter))) {
                go(meeting);
                return;
            }
            go(beside(point, before));
            go(point);
            go(beside(point, after));
        } else if (m_shape.join == Join::Round) {
            arc(point, before, std::atan2(cross, dot));
        } else {
            go(beside(point, before));
            // A miter is as long as the width through the sine of half the angle between.
            if (m_shape.join == Join::Miter
                && 2 <= m_shape.miterLimit * m_shape.miterLimit * (1 + dot))
                go(meeting);
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
            join((i + count - 1) % count, i);
        m_out.close();
    }

    void Walker::figure(std::span<const PointD> given, bool isClosed)
    {
        // Steps that rounding makes have no direction worth going by.
        const auto isStep = [this](const PointD &from, const PointD &to) {
            return std::hypot(to.x - from.x, to.y - from.y) > 1e-6 * m_shape.width;
        };
        m_points.clear();
        for (const PointD &point : given) {
            if (m_points.empty() || isStep(m_points.back(), point))
                m_points.push_back(point);
        }
        if (isClosed && m_points.size() > 1 && !isStep(m_points.back(), m_points.front()))
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
                join(i - 1, i);
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
