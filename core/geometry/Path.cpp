#include "core/geometry/Path.h"

#include "core/base/Limits.h"

#include <algorithm>
#include <limits>
#include <numbers>

namespace svgtool {

// The start of a hull.
static constexpr double kInfinity = std::numeric_limits<double>::infinity();
static constexpr RectD kNothing{ kInfinity, kInfinity, -kInfinity, -kInfinity };

RectD mapBounds(const Affine &transform, const RectD &rect)
{
    RectD bounds = kNothing;
    for (const double x : { rect.left, rect.right })
        for (const double y : { rect.top, rect.bottom })
            bounds = hull(bounds, transform.map({ x, y }));
    return bounds;
}

Stretch stretchOf(const Affine &map)
{
    const double xx = map.a * map.a + map.c * map.c, yy = map.b * map.b + map.d * map.d;
    const double xy = map.a * map.b + map.c * map.d;
    const double most =
            (std::hypot(map.a + map.d, map.b - map.c) + std::hypot(map.a - map.d, map.b + map.c))
            / 2;
    const double least = most > 0 ? std::abs(map.determinant()) / most : 0;
    if (xy == 0)
        return { most, least, xx >= yy ? PointD{ 1, 0 } : PointD{ 0, 1 } };
    const double angle = std::atan2(2 * xy, xx - yy) / 2;
    return { most, least, { std::cos(angle), std::sin(angle) } };
}

Affine squeezed(PointD along, double times)
{
    const double cross = (1 - times) * along.x * along.y;
    return { times + (1 - times) * along.x * along.x, cross, cross,
             times + (1 - times) * along.y * along.y, 0,     0 };
}

RectD boundsOf(std::span<const PointD> points)
{
    if (points.empty())
        return {};
    RectD box = kNothing;
    for (const PointD &point : points)
        box = hull(box, point);
    return box;
}

void Path::moveTo(PointD point)
{
    // Of moves in a row only the last one counts.
    if (!m_verbs.empty() && m_verbs.back() == Verb::Move) {
        m_points.back() = point;
    } else {
        m_verbs.push_back(Verb::Move);
        m_points.push_back(point);
    }
    m_current = m_start = point;
    m_isOpen = true;
}

void Path::linesTo(std::span<const PointD> points, const Affine &map)
{
    if (points.empty())
        return;
    open();
    m_verbs.insert(m_verbs.end(), points.size(), Verb::Line);
    const size_t first = m_points.size();
    m_points.resize(first + points.size());
    for (size_t i = 0; i < points.size(); ++i)
        m_points[first + i] = map.map(points[i]);
    m_current = m_points.back();
}

void Path::curveTo(PointD control1, PointD control2, PointD end)
{
    open();
    m_verbs.push_back(Verb::Curve);
    m_points.insert(m_points.end(), { control1, control2, end });
    m_current = end;
}

void Path::close()
{
    if (!m_isOpen)
        return;
    m_verbs.push_back(Verb::Close);
    m_current = m_start;
    m_isOpen = false;
}

void Path::dropMove()
{
    if (m_verbs.empty() || m_verbs.back() != Verb::Move)
        return;
    m_verbs.pop_back();
    m_points.pop_back();
    m_isOpen = false;
}

void Path::append(const Path &other)
{
    m_verbs.insert(m_verbs.end(), other.m_verbs.begin(), other.m_verbs.end());
    m_points.insert(m_points.end(), other.m_points.begin(), other.m_points.end());
    m_current = other.m_current;
    m_start = other.m_start;
    m_isOpen = other.m_isOpen;
}

void Path::addRect(const RectD &rect)
{
    moveTo({ rect.left, rect.top });
    lineTo({ rect.right, rect.top });
    lineTo({ rect.right, rect.bottom });
    lineTo({ rect.left, rect.bottom });
    close();
}

void Path::addArc(const Affine &circle, double start, double sweep)
{
    constexpr double kTurn = 2 * std::numbers::pi;
    sweep = std::isfinite(sweep) ? std::clamp(sweep, -kTurn, kTurn) : 0;
    const auto at = [&](double angle, double forward) {
        const double x = std::cos(angle), y = std::sin(angle);
        return circle.map({ x - forward * y, y + forward * x });
    };
    if (m_isOpen)
        lineTo(at(start, 0));
    else
        moveTo(at(start, 0));
    const int pieces = std::max(1, int(std::ceil(std::abs(sweep) / (kTurn / 4) - 1e-9)));
    const double step = sweep / pieces;
    const double reach = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        const double from = start + step * i;
        const double to = from + step;
        curveTo(at(from, reach), at(to, -reach), at(to, 0));
    }
}

void Path::addEllipse(const Affine &circle)
{
    m_isOpen = false;
    addArc(circle, 0, 2 * std::numbers::pi);
    close();
}

void Path::transform(const Affine &matrix)
{
    for (PointD &point : m_points)
        point = matrix.map(point);
    m_current = matrix.map(m_current);
    m_start = matrix.map(m_start);
}

// How many lines keep within the tolerance of a cubic: the second differences bound its bend.
static int linesOfCurve(PointD p0, PointD p1, PointD p2, PointD p3, double tolerance)
{
    const double ax = std::fmax(std::abs(p0.x - 2 * p1.x + p2.x), std::abs(p1.x - 2 * p2.x + p3.x));
    const double ay = std::fmax(std::abs(p0.y - 2 * p1.y + p2.y), std::abs(p1.y - 2 * p2.y + p3.y));
    const double lines = std::ceil(std::sqrt(0.75 * std::hypot(ax, ay) / tolerance));
    return lines >= 1 ? int(std::fmin(lines, limits::kCurveLines)) : 1;
}

std::optional<Path> Path::flattened(double tolerance, size_t mostPoints) const
{
    Path path;
    size_t next = 0;
    for (const Verb verb : m_verbs) {
        if (path.m_points.size() > mostPoints)
            return std::nullopt;
        switch (verb) {
        case Verb::Move:
            path.moveTo(m_points[next++]);
            break;
        case Verb::Line:
            path.lineTo(m_points[next++]);
            break;
        case Verb::Close:
            path.close();
            break;
        case Verb::Curve: {
            const PointD p0 = path.m_current;
            const PointD p1 = m_points[next], p2 = m_points[next + 1], p3 = m_points[next + 2];
            next += 3;
            const int lines = linesOfCurve(p0, p1, p2, p3, tolerance);
            for (int i = 1; i < lines; ++i) {
                const double t = double(i) / lines;
                const double u = 1 - t;
                const double w0 = u * u * u, w1 = 3 * u * u * t, w2 = 3 * u * t * t, w3 = t * t * t;
                path.lineTo({ w0 * p0.x + w1 * p1.x + w2 * p2.x + w3 * p3.x,
                              w0 * p0.y + w1 * p1.y + w2 * p2.y + w3 * p3.y });
            }
            path.lineTo(p3);
            break;
        }
        }
    }
    return path;
}

RectD Path::bounds() const
{
    return boundsOf(m_points);
}

void Path::clear()
{
    m_verbs.clear();
    m_points.clear();
    m_current = m_start = {};
    m_isOpen = false;
}

std::optional<RectD> rectOf(std::span<const Path::Verb> verbs, std::span<const PointD> p)
{
    const auto lines = size_t(std::ranges::count(verbs, Path::Verb::Line));
    const bool isClosed = !verbs.empty() && verbs.back() == Path::Verb::Close;
    if (verbs.size() != 1 + lines + (isClosed ? 1 : 0) || lines < 3 || lines > 4
        || (lines == 4 && p[4] != p[0]))
        return std::nullopt;
    const bool isUpright =
            (p[0].y == p[1].y && p[1].x == p[2].x && p[2].y == p[3].y && p[3].x == p[0].x)
            || (p[0].x == p[1].x && p[1].y == p[2].y && p[2].x == p[3].x && p[3].y == p[0].y);
    if (!isUpright)
        return std::nullopt;
    return RectD{ lesser(p[0].x, p[2].x), lesser(p[0].y, p[2].y), greater(p[0].x, p[2].x),
                  greater(p[0].y, p[2].y) };
}

} // namespace svgtool
