#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

Played DeviceContext::figure(const Path &path, uint8_t parts)
{
    if (!m_isInPath)
        return paint(path, parts);
    Path mapped = path;
    mapped.transform(m_state.toDevice);
    m_path.append(mapped);
    return kDone;
}

Played DeviceContext::moveTo(PointD point)
{
    m_state.current = point;
    if (m_isInPath)
        m_path.moveTo(device(point));
    return kDone;
}

Played DeviceContext::lineTo(PointD point)
{
    return polylineTo({ &point, 1 });
}

Played DeviceContext::polylineTo(std::span<const PointD> points)
{
    if (points.empty())
        return kDone;
    Played played = kDone;
    if (m_isInPath) {
        for (const PointD &point : points)
            m_path.lineTo(device(point));
    } else {
        Path path;
        path.moveTo(m_state.current);
        for (const PointD &point : points)
            path.lineTo(point);
        played = paint(path, kStroke);
    }
    m_state.current = points.back();
    return played;
}

Played DeviceContext::polyBezierTo(std::span<const PointD> points)
{
    const size_t curves = points.size() / 3;
    if (curves == 0)
        return points.empty() ? kDone : notDone("its values make no sense");
    Path path;
    const bool collects = m_isInPath;
    if (!collects)
        path.moveTo(m_state.current);
    for (size_t i = 0; i < curves; ++i) {
        const PointD &c1 = points[3 * i], &c2 = points[3 * i + 1], &end = points[3 * i + 2];
        if (collects)
            m_path.curveTo(device(c1), device(c2), device(end));
        else
            path.curveTo(c1, c2, end);
    }
    m_state.current = points[3 * curves - 1];
    return collects ? kDone : paint(path, kStroke);
}

Played DeviceContext::polyBezier(std::span<const PointD> points)
{
    if (points.size() < 4)
        return points.empty() ? kDone : notDone("its values make no sense");
    Path path;
    path.moveTo(points[0]);
    for (size_t i = 1; i + 2 < points.size(); i += 3)
        path.curveTo(points[i], points[i + 1], points[i + 2]);
    return figure(path, kStroke);
}

Played DeviceContext::polyline(std::span<const PointD> points)
{
    if (points.size() < 2)
        return points.empty() ? kDone : notDone("its values make no sense");
    const auto count = uint32_t(points.size());
    return polyPolyline(points, { &count, 1 });
}

Played DeviceContext::polygon(std::span<const PointD> points)
{
    const auto count = uint32_t(points.size());
    return polyPolygon(points, { &count, 1 });
}

static Path figuresOf(std::span<const PointD> points, std::span<const uint32_t> counts,
                      bool isClosed)
{
    Path path;
    size_t next = 0;
    for (const uint32_t count : counts) {
        const auto figure = points.subspan(next, count);
        next += count;
        if (figure.size() < 2)
            continue;
        path.moveTo(figure.front());
        for (const PointD &point : figure.subspan(1))
            path.lineTo(point);
        if (isClosed)
            path.close();
    }
    return path;
}

Played DeviceContext::polyPolyline(std::span<const PointD> points, std::span<const uint32_t> counts)
{
    return figure(figuresOf(points, counts, false), kStroke);
}

Played DeviceContext::polyPolygon(std::span<const PointD> points, std::span<const uint32_t> counts)
{
    return figure(figuresOf(points, counts, true), kFill | kStroke);
}

// Point types, [MS-EMF] 2.1.26.
Played DeviceContext::polyDraw(std::span<const PointD> points, std::span<const uint8_t> types)
{
    constexpr uint8_t kClose = 1, kLine = 2, kCurve = 4, kMove = 6;
    if (types.size() != points.size())
        return notDone("its values make no sense");
    Path path;
    path.moveTo(m_state.current);
    PointD current = m_state.current, start = current;
    for (size_t i = 0; i < points.size(); ++i) {
        const uint8_t type = uint8_t(types[i] & 0xFE);
        if (type == kMove) {
            path.moveTo(points[i]);
            start = points[i];
        } else if (type == kLine) {
            path.lineTo(points[i]);
        } else if (type == kCurve && i + 2 < points.size()) {
            path.curveTo(points[i], points[i + 1], points[i + 2]);
            i += 2;
        } else {
            return notDone("its values make no sense");
        }
        current = points[i];
        if ((types[i] & kClose) != 0 && type != kMove) {
            path.close();
            current = start;
        }
    }
    m_state.current = current;
    return figure(path, kStroke);
}

static double angleOf(const RectD &box, PointD point)
{
    const double rx = box.width() / 2, ry = box.height() / 2;
    return std::atan2((point.y - (box.top + box.bottom) / 2) / ry,
                      (point.x - (box.left + box.right) / 2) / rx);
}

// From the ray through start to the ray through end, the way round that the arc direction says.
DeviceContext::Sweep DeviceContext::sweepOf(const RectD &box, PointD start, PointD end) const
{
    constexpr double kTurn = 2 * std::numbers::pi;
    const double from = angleOf(box, start);
    double sweep = angleOf(box, end) - from;
    if (m_state.isClockwise) {
        if (sweep <= 1e-12)
            sweep += kTurn;
    } else if (sweep >= -1e-12) {
        sweep -= kTurn;
    }
    return { from, sweep };
}

static RectD ordered(const RectD &box)
{
    return { std::min(box.left, box.right), std::min(box.top, box.bottom),
             std::max(box.left, box.right), std::max(box.top, box.bottom) };
}

Played DeviceContext::drawArc(const RectD &given, PointD start, PointD end, bool toCenter,
                              bool isClosed)
{
    const RectD box = ordered(given);
    if (box.isEmpty())
        return kDone;
    const PointD center{ (box.left + box.right) / 2, (box.top + box.bottom) / 2 };
    const Sweep sweep = sweepOf(box, start, end);
    Path path;
    path.addArc(center, { box.width() / 2, box.height() / 2 }, sweep.start, sweep.sweep);
    if (toCenter)
        path.lineTo(center);
    if (isClosed)
        path.close();
    return figure(path, isClosed ? kFill | kStroke : uint8_t(kStroke));
}

Played DeviceContext::arc(const RectD &box, PointD start, PointD end)
{
    return drawArc(box, start, end, false, false);
}

Played DeviceContext::chord(const RectD &box, PointD start, PointD end)
{
    return drawArc(box, start, end, false, true);
}

Played DeviceContext::pie(const RectD &box, PointD start, PointD end)
{
    return drawArc(box, start, end, true, true);
}

Played DeviceContext::arcTo(const RectD &given, PointD start, PointD end)
{
    const RectD box = ordered(given);
    if (box.isEmpty())
        return kDone;
    const Sweep sweep = sweepOf(box, start, end);
    Path path;
    path.moveTo(m_state.current);
    path.addArc({ (box.left + box.right) / 2, (box.top + box.bottom) / 2 },
                { box.width() / 2, box.height() / 2 }, sweep.start, sweep.sweep);
    m_state.current = path.current();
    if (!m_isInPath)
        return paint(path, kStroke);
    path.transform(m_state.toDevice);
    // It goes on from the path's own position.
    size_t next = 1;
    for (const Path::Verb verb : path.verbs().subspan(1)) {
        const auto points = path.points().subspan(next);
        if (verb == Path::Verb::Line)
            m_path.lineTo(points[0]);
        else
            m_path.curveTo(points[0], points[1], points[2]);
        next += verb == Path::Verb::Line ? 1 : 3;
    }
    return kDone;
}

Played DeviceContext::angleArc(PointD center, double radius, double startDegrees,
                               double sweepDegrees)
{
    if (!std::isfinite(startDegrees) || !std::isfinite(sweepDegrees))
        return notDone("its values make no sense");
    // Angles count against the clock, as mathematics has them.
    constexpr double kDegree = std::numbers::pi / 180;
    Path path;
    path.moveTo(m_state.current);
    path.addArc(center, { radius, radius }, -std::fmod(startDegrees, 360) * kDegree,
                -std::clamp(sweepDegrees, -360.0, 360.0) * kDegree);
    // The position is where the whole sweep ends, though no more than a turn is drawn.
    m_state.current = path.current();
    if (!m_isInPath)
        return paint(path, kStroke);
    path.transform(m_state.toDevice);
    m_path.append(path);
    return kDone;
}

Played DeviceContext::beginPath()
{
    m_path.clear();
    m_isInPath = true;
    m_path.moveTo(device(m_state.current));
    return kDone;
}

Played DeviceContext::endPath()
{
    if (!m_isInPath)
        return notDone("its values make no sense");
    m_isInPath = false;
    return kDone;
}

Played DeviceContext::closeFigure()
{
    if (!m_isInPath)
        return notDone("its values make no sense");
    m_path.close();
    return kDone;
}

Played DeviceContext::abortPath()
{
    m_isInPath = false;
    m_path.clear();
    return kDone;
}

// Paints the path of the bracket, which is in device units, and empties it.
Played DeviceContext::paintCollected(uint8_t parts)
{
    if (m_isInPath)
        return notDone("its values make no sense");
    Path path = m_path;
    m_path.clear();
    const auto toLogical = m_state.toDevice.inverse();
    if (!toLogical)
        return notDone("its values make no sense");
    path.transform(*toLogical);
    return paint(path, parts);
}

Played DeviceContext::fillPath()
{
    return paintCollected(kFill);
}

Played DeviceContext::strokePath()
{
    return paintCollected(kStroke);
}

Played DeviceContext::strokeAndFillPath()
{
    return paintCollected(kFill | kStroke);
}

Played DeviceContext::flattenPath()
{
    constexpr double kTolerance = 0.1; // of a pixel
    m_path = m_path.flattened(kTolerance * m_device.unitsPerPixel);
    return kDone;
}

Played DeviceContext::widenPath()
{
    return approximated("it looks different");
}

} // namespace svgtool::picture
