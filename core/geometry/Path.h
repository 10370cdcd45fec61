#pragma once

#include "core/geometry/Affine.h"

#include <cstddef>
#include <cstdint>
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

    void moveTo(PointD point);
    /// Like the curve, begins a figure at the point in force where none is open.
    void lineTo(PointD point);
    void curveTo(PointD control1, PointD control2, PointD end);
    void close();
    void append(const Path &other);
    /// A closed rectangle, clockwise as y grows downwards.
    void addRect(const RectD &rect);
    /// An arc of an ellipse as curves of at most a quarter each, which are off by less than 0.03 %
    /// of the radius. It begins with a line from the point in force, or a move where none is.
    /// @param start, sweep  radians of the ellipse's parameter; the sweep is cut to one turn
    void addArc(PointD center, PointD radii, double start, double sweep);
    /// A closed ellipse.
    void addEllipse(PointD center, PointD radii);

    void transform(const Affine &matrix);
    /// Lines in the place of curves, nowhere further off than @p tolerance.
    Path flattened(double tolerance) const;
    /// Of all points, control points included; nothing in it for an empty path.
    RectD bounds() const;

    bool isEmpty() const { return m_verbs.empty(); }
    void clear();
    PointD current() const { return m_current; }
    std::span<const Verb> verbs() const { return m_verbs; }
    std::span<const PointD> points() const { return m_points; }
    bool operator==(const Path &) const = default;

private:
    void open();

    std::vector<Verb> m_verbs;
    std::vector<PointD> m_points;
    PointD m_current; ///< where the next line begins
    PointD m_start; ///< of the figure that is open, or was last
    bool m_isOpen = false;
};

} // namespace svgtool
