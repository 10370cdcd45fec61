#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

static constexpr Played kTooFewPoints = notDone("it has too few points");

Path &DeviceContext::beginFigure()
{
    if (m_isInPath)
        return m_path;
    m_figure.clear();
    return m_figure;
}

Path &DeviceContext::goOn()
{
    Path &path = beginFigure();
    const PointD at = device(m_state.current);
    if (!path.isOpen() || path.current() != at)
        path.moveTo(at);
    return path;
}

Played DeviceContext::endFigure(uint8_t parts)
{
    return m_isInPath ? kDone : paint(m_figure, parts, !m_state.isWinding);
}

void DeviceContext::addLines(Path &path, std::span<const PointD> points) const
{
    path.linesTo(points, m_state.toDevice);
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
    addLines(goOn(), points);
    m_state.current = points.back();
    return endFigure(kStroke);
}

Played DeviceContext::polyBezierTo(std::span<const PointD> points)
{
    const size_t curves = points.size() / 3;
    if (curves == 0)
        return points.empty() ? kDone : kTooFewPoints;
    Path &path = goOn();
    for (size_t i = 0; i < 3 * curves; i += 3)
        path.curveTo(device(points[i]), device(points[i + 1]), device(points[i + 2]));
    m_state.current = points[3 * curves - 1];
    return endFigure(kStroke);
}

Played DeviceContext::polyBezier(std::span<const PointD> points)
{
    if (points.size() < 4)
        return points.empty() ? kDone : kTooFewPoints;
    Path &path = beginFigure();
    path.moveTo(device(points[0]));
    for (size_t i = 1; i + 2 < points.size(); i += 3)
        path.curveTo(device(points[i]), device(points[i + 1]), device(points[i + 2]));
    return endFigure(kStroke);
}

Played DeviceContext::polyline(std::span<const PointD> points)
{
    const auto count = uint32_t(points.size());
    return polyPolyline(points, { &count, 1 });
}

Played DeviceContext::polygon(std::span<const PointD> points)
{
    const auto count = uint32_t(points.size());
    return polyPolygon(points, { &count, 1 });
}

Played DeviceContext::polyPolyline(std::span<const PointD> points, std::span<const uint32_t> counts)
{
    return drawLines(points, counts, false);
}

Played DeviceContext::polyPolygon(std::span<const PointD> points, std::span<const uint32_t> counts)
{
    return drawLines(points, counts, true);
}

// A figure of one point is none; the others count.
Played DeviceContext::drawLines(std::span<const PointD> points, std::span<const uint32_t> counts,
                                bool isClosed)
{
    Path &path = beginFigure();
    bool isEmpty = true;
    size_t next = 0;
    for (const uint32_t count : counts) {
        const auto figure = points.subspan(next, count);
        next += count;
        if (figure.size() < 2)
            continue;
        isEmpty = false;
        path.moveTo(device(figure.front()));
        addLines(path, figure.subspan(1));
        if (isClosed)
            path.close();
    }
    if (isEmpty)
        return points.empty() ? kDone : kTooFewPoints;
    return endFigure(isClosed ? kFill | kStroke : uint8_t(kStroke));
}

// Point types, [MS-EMF] 2.1.26.
static constexpr uint8_t kCloses = 1, kLine = 2, kCurve = 4, kMove = 6;

// Each point has a known type, and those of curves come by three.
static bool areFigures(std::span<const uint8_t> types)
{
    for (size_t i = 0; i < types.size(); ++i) {
        const uint8_t type = uint8_t(types[i] & ~kCloses);
        if (type == kCurve && i + 2 < types.size())
            i += 2;
        else if (type != kMove && type != kLine)
            return false;
    }
    return true;
}

Played DeviceContext::polyDraw(std::span<const PointD> points, std::span<const uint8_t> types)
{
    if (types.size() != points.size() || !areFigures(types))
        return notDone("its points have types that make no sense");
    if (points.empty())
        return kDone;
    Path &path = goOn();
    PointD start = m_state.current;
    for (size_t i = 0; i < points.size(); ++i) {
        const uint8_t type = uint8_t(types[i] & ~kCloses);
        if (!path.isOpen())
            path.moveTo(device(m_state.current));
        if (type == kMove) {
            path.moveTo(device(points[i]));
            start = points[i];
        } else if (type == kLine) {
            path.lineTo(device(points[i]));
        } else {
            path.curveTo(device(points[i]), device(points[i + 1]), device(points[i + 2]));
            i += 2;
        }
        m_state.current = points[i];
        if ((types[i] & kCloses) != 0 && type != kMove) {
            path.close();
            m_state.current = start;
        }
    }
    return endFigure(kStroke);
}

} // namespace svgtool::picture
