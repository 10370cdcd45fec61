#pragma once

#include "core/base/Numeric.h"

#include <cmath>
#include <optional>

namespace svgtool {

struct PointD
{
    double x = 0, y = 0;

    bool operator==(const PointD &) const = default;
};

/// A rectangle by its edges, which callers keep in ascending order.
struct RectD
{
    double left = 0, top = 0, right = 0, bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    bool isEmpty() const { return !(left < right && top < bottom); }
    bool contains(const RectD &other) const
    {
        return left <= other.left && top <= other.top && other.right <= right
                && other.bottom <= bottom;
    }
    bool operator==(const RectD &) const = default;
};

/// The part that two rectangles share; empty when there is none.
inline RectD intersection(const RectD &a, const RectD &b)
{
    return { greater(a.left, b.left), greater(a.top, b.top), lesser(a.right, b.right),
             lesser(a.bottom, b.bottom) };
}

/// The rectangle around two.
inline RectD hull(const RectD &a, const RectD &b)
{
    return { lesser(a.left, b.left), lesser(a.top, b.top), greater(a.right, b.right),
             greater(a.bottom, b.bottom) };
}

/// The rectangle around one, whose edges are numbers, and a point; parts of it that are none do not
/// count.
inline RectD hull(const RectD &a, PointD p)
{
    return { p.x < a.left ? p.x : a.left, p.y < a.top ? p.y : a.top, p.x > a.right ? p.x : a.right,
             p.y > a.bottom ? p.y : a.bottom };
}

/// x' = a x + c y + e, y' = b x + d y + f: SVG's matrix(a b c d e f), and XFORM of [MS-EMF] 2.2.28
/// with eM11, eM12, eM21, eM22, eDx, eDy.
struct Affine
{
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    static constexpr Affine translation(double x, double y) { return { 1, 0, 0, 1, x, y }; }
    static constexpr Affine scale(double x, double y) { return { x, 0, 0, y, 0, 0 }; }

    constexpr PointD map(PointD p) const
    {
        return { a * p.x + c * p.y + e, b * p.x + d * p.y + f };
    }
    /// Without the translation.
    constexpr PointD mapVector(PointD p) const { return { a * p.x + c * p.y, b * p.x + d * p.y }; }
    /// This transform first, @p next after it.
    constexpr Affine then(const Affine &next) const
    {
        const PointD x = next.mapVector({ a, b });
        const PointD y = next.mapVector({ c, d });
        const PointD origin = next.map({ e, f });
        return { x.x, x.y, y.x, y.y, origin.x, origin.y };
    }
    constexpr double determinant() const { return a * d - b * c; }
    std::optional<Affine> inverse() const
    {
        const double det = determinant();
        if (!std::isfinite(1 / det))
            return std::nullopt;
        return Affine{
            d / det, -b / det, -c / det, a / det, (c * f - d * e) / det, (b * e - a * f) / det
        };
    }
    constexpr bool isIdentity() const { return *this == Affine{}; }
    /// Rectangles stay rectangles, in place or turned by a quarter.
    constexpr bool keepsRectangles() const { return (b == 0 && c == 0) || (a == 0 && d == 0); }
    bool isFinite() const
    {
        return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d)
                && std::isfinite(e) && std::isfinite(f);
    }
    /// How long a unit along x, and along y, becomes.
    double scaleX() const { return std::hypot(a, b); }
    double scaleY() const { return std::hypot(c, d); }
    bool operator==(const Affine &) const = default;
};

/// The rectangle around the mapped corners.
RectD mapBounds(const Affine &transform, const RectD &rect);

/// The ellipse that becomes of a circle with radius 1.
struct Stretch
{
    double most, least; ///< half axes
    PointD along; ///< the direction of the longer one, of length 1
};
Stretch stretchOf(const Affine &map);

/// Leaves lengths along a direction as they are, and makes those across it so many times as long.
/// @param along  of length 1
Affine squeezed(PointD along, double times);

} // namespace svgtool
