#pragma once

#include "core/geometry/Affine.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace svgtool {

/// Figures of lines and cubic Bézier curves, in two blocks of memory.
class Path
{
public:
    enum class Verb : uint8_t {
        Move, ///< one point
        Line, ///< one point
        Curve, ///< three points
        Close, ///< none; the point in force is the figure's first again
    };

    /// Makes room, as far as it is not there.
    void reserve(size_t verbs, size_t points)
    {
        m_verbs.reserve(verbs);
        m_points.reserve(points);
    }
    void moveTo(PointD point);
    /// Like the curve, begins a figure at the point in force where none is open.
    void lineTo(PointD point)
    {
        open();
        m_verbs.push_back(Verb::Line);
        m_points.push_back(point);
        m_current = point;
    }
    /// Lines from one to the other of the points where a map puts them.
    void linesTo(std::span<const PointD> points, const Affine &map);
    void curveTo(PointD control1, PointD control2, PointD end);
    void close();
    /// Takes back a move that nothing has followed.
    void dropMove();
    void append(const Path &other);
    /// A closed rectangle, clockwise as y grows downwards.
    void addRect(const RectD &rect);
    /// An arc of an ellipse as curves of at most a quarter each, which are off by less than 0.03 %
    /// of the radius. A figure that is open goes on to it with a line, else it begins one.
    /// @param circle  makes the ellipse of the circle around the origin with radius 1
    /// @param start, sweep  radians, from x towards y; the sweep is cut to one turn
    void addArc(const Affine &circle, double start, double sweep);
    /// A closed ellipse, beginning where the circle meets the x axis.
    void addEllipse(const Affine &circle);

    void transform(const Affine &matrix);
    /// Lines in the place of curves, nowhere further off than @p tolerance; a thousand for a curve
    /// at the most.
    /// @return nothing when there would be more than @p mostPoints
    std::optional<Path> flattened(double tolerance, size_t mostPoints) const;
    /// Of all points, control points included; nothing in it for an empty path.
    RectD bounds() const;

    bool isEmpty() const { return m_verbs.empty(); }
    /// The figure begun last is not closed, and lines go on from it.
    bool isOpen() const { return m_isOpen; }
    /// Keeps the memory.
    void clear();
    PointD current() const { return m_current; }
    std::span<const Verb> verbs() const { return m_verbs; }
    std::span<const PointD> points() const { return m_points; }
    bool operator==(const Path &) const = default;

private:
    void open()
    {
        if (m_isOpen)
            return;
        m_verbs.push_back(Verb::Move);
        m_points.push_back(m_current);
        m_start = m_current;
        m_isOpen = true;
    }

    std::vector<Verb> m_verbs;
    std::vector<PointD> m_points;
    PointD m_current; ///< where the next line begins
    PointD m_start; ///< of the figure that is open, or was last
    bool m_isOpen = false;
};

/// The box around points; nothing is in it where there are none.
RectD boundsOf(std::span<const PointD> points);

/// The upright rectangle that one figure of lines goes round, closed or not; nothing for all else.
std::optional<RectD> rectOf(std::span<const Path::Verb> verbs, std::span<const PointD> points);

} // namespace svgtool
