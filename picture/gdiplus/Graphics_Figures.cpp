#include "picture/gdiplus/Brushes.h"
#include "picture/gdiplus/Graphics.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

static constexpr Played kTooFewPoints = notDone("it has too few points");
static constexpr Played kTooOften = notDone("what it draws has been drawn too often");

static RectD ordered(const RectD &box)
{
    return { std::min(box.left, box.right), std::min(box.top, box.bottom),
             std::max(box.left, box.right), std::max(box.top, box.bottom) };
}

static Affine circleOf(const RectD &box)
{
    return { box.width() / 2,           0, 0, box.height() / 2, (box.left + box.right) / 2,
             (box.top + box.bottom) / 2 };
}

static Path linesOf(std::span<const PointD> points, bool isClosed)
{
    Path path;
    for (size_t i = 0; i < points.size(); ++i)
        i == 0 ? path.moveTo(points[i]) : path.lineTo(points[i]);
    if (isClosed)
        path.close();
    return path;
}

// Angles are directions from the centre. Along an ellipse both ends of the sweep move by different
// ways, but no further than to the end of their quarter.
static double angleOnCircle(double degrees, PointD radii)
{
    constexpr double kTurn = 2 * std::numbers::pi;
    const double angle = degrees / 360 * kTurn;
    const double within = std::remainder(angle, kTurn);
    return angle - within + std::atan2(radii.x * std::sin(within), radii.y * std::cos(within));
}

static Path arcOf(const RectD &given, double start, double sweep, bool isPie)
{
    const RectD box = ordered(given);
    const PointD radii{ box.width() / 2, box.height() / 2 };
    const Affine circle = circleOf(box);
    Path path;
    start = std::isfinite(start) ? std::fmod(start, 360) : 0;
    sweep = std::isfinite(sweep) ? std::clamp(sweep, -360.0, 360.0) : 0;
    if (std::abs(sweep) == 360 && isPie) {
        path.addEllipse(circle);
        return path;
    }
    const double from = angleOnCircle(start, radii);
    path.addArc(circle, from,
                std::abs(sweep) == 360 ? std::copysign(2 * std::numbers::pi, sweep)
                                       : angleOnCircle(start + sweep, radii) - from);
    if (isPie) {
        path.lineTo({ circle.e, circle.f });
        path.close();
    }
    return path;
}

// A curve through all points, whose direction in each is that from the one before to the next.
static Path curveOf(std::span<const PointD> points, double tension, bool isClosed, size_t first,
                    size_t segments)
{
    const size_t count = points.size();
    const auto point = [&](size_t i) -> const PointD & {
        return isClosed ? points[i % count] : points[std::min(i, count - 1)];
    };
    const auto slope = [&](size_t i) -> PointD {
        const PointD &before = i > 0 ? points[i - 1] : point(isClosed ? count - 1 : 0);
        const PointD &next = point(i + 1);
        return { (next.x - before.x) * tension / 3, (next.y - before.y) * tension / 3 };
    };
    Path path;
    path.moveTo(point(first));
    for (size_t i = first; i < first + segments; ++i) {
        const PointD from = point(i), to = point(i + 1);
        const PointD out = slope(i), in = slope(isClosed ? (i + 1) % count : i + 1);
        path.curveTo({ from.x + out.x, from.y + out.y }, { to.x - in.x, to.y - in.y }, to);
    }
    if (isClosed)
        path.close();
    return path;
}

Path Graphics::pathOf(const Figure &figure)
{
    Path path;
    switch (figure.kind) {
    case Figure::Kind::Path:
        return figure.path;
    case Figure::Kind::Box:
        path.addRect(figure.box);
        break;
    case Figure::Kind::Ellipse:
        path.addEllipse(circleOf(figure.box));
        break;
    }
    return path;
}

Graphics::Figure Graphics::boxFigure(const RectD &box)
{
    return { Figure::Kind::Box, ordered(box), {}, true };
}

Graphics::Figure Graphics::ellipseFigure(const RectD &box)
{
    return { Figure::Kind::Ellipse, ordered(box), {}, true };
}

Graphics::Figure Graphics::pathFigure(Path path, bool isEvenOdd)
{
    return { Figure::Kind::Path, {}, std::move(path), isEvenOdd };
}

void Graphics::grant(size_t bytes)
{
    m_left.pointsUsedAgain += bytes;
    m_left.meshPieces += bytes / limits::kBytesOfMeshPiece;
}

Played Graphics::clear(plus::Argb color)
{
    if (isClippedAway())
        return kDone;
    const bool isFirst = m_builder.scene().nodes.empty();
    const Color shown = isFirst ? colorOf(color) : onPaper(colorOf(color));
    if (shown.alpha == 0)
        return kDone;
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, shown, kNone });
    m_builder.add(node, Rect{ m_device.view, 0, 0 });
    return kDone;
}

Played Graphics::fillRectangles(const plus::Brush &brush, std::span<const RectD> boxes)
{
    Played played = kDone;
    for (const RectD &box : boxes) {
        const Played one = fill(brush, boxFigure(box));
        played = one.isDone() ? played : one;
    }
    return played;
}

Played Graphics::fillPolygon(const plus::Brush &brush, Points points)
{
    if (points.size() < 3)
        return points.empty() ? kDone : kTooFewPoints;
    return fill(brush, pathFigure(linesOf(points, true), true));
}

Played Graphics::fillEllipse(const plus::Brush &brush, const RectD &box)
{
    return fill(brush, ellipseFigure(box));
}

Played Graphics::fillPie(const plus::Brush &brush, const RectD &box, double start, double sweep)
{
    if (std::abs(sweep) >= 360)
        return fillEllipse(brush, box);
    return fill(brush, pathFigure(arcOf(box, start, sweep, true), true));
}

Played Graphics::fillClosedCurve(const plus::Brush &brush, Points points, double tension,
                                 bool isWinding)
{
    if (points.size() < 3)
        return points.empty() ? kDone : kTooFewPoints;
    return fill(brush, pathFigure(curveOf(points, tension, true, 0, points.size()), !isWinding));
}

Played Graphics::fillPath(const plus::Brush &brush, const plus::PathObject &path)
{
    if (!spend(path.outline.points().size()))
        return kTooOften;
    return fill(brush, pathFigure(path.outline, !path.isWinding));
}

Played Graphics::fillRegion(const plus::Brush &brush, const plus::Region &region)
{
    auto area = areaOf(region);
    const auto back = m_state.toPicture.inverse();
    if (!area)
        return notDone("its region has too many parts");
    if (!back)
        return kDone;
    area->path.transform(*back);
    return fill(brush, pathFigure(std::move(area->path), area->isEvenOdd));
}

Played Graphics::drawRectangles(const plus::Pen &pen, std::span<const RectD> boxes)
{
    Played played = kDone;
    for (const RectD &box : boxes) {
        const Played one = stroke(pen, boxFigure(box));
        played = one.isDone() ? played : one;
    }
    return played;
}

Played Graphics::drawLines(const plus::Pen &pen, Points points, bool isClosed)
{
    if (points.size() < 2)
        return points.empty() ? kDone : kTooFewPoints;
    return stroke(pen, pathFigure(linesOf(points, isClosed), true));
}

Played Graphics::drawEllipse(const plus::Pen &pen, const RectD &box)
{
    return stroke(pen, ellipseFigure(box));
}

Played Graphics::drawPie(const plus::Pen &pen, const RectD &box, double start, double sweep)
{
    return stroke(pen, pathFigure(arcOf(box, start, sweep, true), true));
}

Played Graphics::drawArc(const plus::Pen &pen, const RectD &box, double start, double sweep)
{
    return stroke(pen, pathFigure(arcOf(box, start, sweep, false), true));
}

Played Graphics::drawClosedCurve(const plus::Pen &pen, Points points, double tension)
{
    if (points.size() < 3)
        return points.empty() ? kDone : kTooFewPoints;
    return stroke(pen, pathFigure(curveOf(points, tension, true, 0, points.size()), true));
}

Played Graphics::drawCurve(const plus::Pen &pen, Points points, double tension, size_t first,
                           size_t segments)
{
    if (points.size() < 2)
        return points.empty() ? kDone : kTooFewPoints;
    if (first >= points.size() - 1)
        return notDone("it begins behind its last point");
    segments = std::min(segments, points.size() - 1 - first);
    return stroke(pen, pathFigure(curveOf(points, tension, false, first, segments), true));
}

Played Graphics::drawBeziers(const plus::Pen &pen, Points points)
{
    if (points.size() < 4)
        return points.empty() ? kDone : kTooFewPoints;
    Path path;
    path.moveTo(points[0]);
    for (size_t i = 1; i + 2 < points.size(); i += 3)
        path.curveTo(points[i], points[i + 1], points[i + 2]);
    return stroke(pen, pathFigure(std::move(path), true));
}

Played Graphics::drawPath(const plus::Pen &pen, const plus::PathObject &path)
{
    if (!spend(path.outline.points().size()))
        return kTooOften;
    return stroke(pen, pathFigure(path.outline, !path.isWinding));
}

} // namespace svgtool::picture
