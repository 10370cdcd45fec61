#include "picture/gdi/DeviceContext.h"

#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace svgtool::picture {

static constexpr double kTurn = 2 * std::numbers::pi;

static RectD ordered(const RectD &box)
{
    return { std::min(box.left, box.right), std::min(box.top, box.bottom),
             std::max(box.left, box.right), std::max(box.top, box.bottom) };
}

static PointD centerOf(const RectD &box)
{
    return { (box.left + box.right) / 2, (box.top + box.bottom) / 2 };
}

static Affine circleAt(PointD center, PointD radii)
{
    return { radii.x, 0, 0, radii.y, center.x, center.y };
}

// Makes the ellipse in a box, in device units, of the circle with radius 1.
Affine DeviceContext::circleOf(const RectD &box) const
{
    return circleAt(centerOf(box), { box.width() / 2, box.height() / 2 }).then(m_state.toDevice);
}

// The corners in order; and where the pen is to stay inside the frame, the line that its middle
// goes on, less the pixel that lines have beside the place of their points.
RectD DeviceContext::framed(const RectD &given) const
{
    RectD box = ordered(given);
    const Pen &pen = m_state.pen;
    if (pen.line != Pen::Line::InsideFrame)
        return box;
    const Affine map = toPicture();
    const double pixel = m_device.unitsPerPixel;
    const double scaleX = map.scaleX(), scaleY = map.scaleY();
    const double high = pen.isGeometric ? pen.width : pen.width * scaleX / scaleY;
    const double x = std::clamp((pen.width - pixel / scaleX) / 2, 0.0, box.width() / 2);
    const double y = std::clamp((high - pixel / scaleY) / 2, 0.0, box.height() / 2);
    return { box.left + x, box.top + y, box.right - x, box.bottom - y };
}

// A turned circle is one still, unless it shows where it begins.
static std::optional<RectD> turnedCircle(const Affine &map, const RectD &box, PointD radii)
{
    const double scale = map.scaleX();
    const bool isSimilar = std::abs(scale - map.scaleY()) <= 1e-6 * scale
            && std::abs(map.a * map.c + map.b * map.d) <= 1e-6 * scale * scale;
    if (!isSimilar || radii.x != radii.y || 2 * radii.x != box.width()
        || 2 * radii.y != box.height())
        return std::nullopt;
    const PointD center = map.map(centerOf(box));
    const double radius = radii.x * scale;
    return RectD{ center.x - radius, center.y - radius, center.x + radius, center.y + radius };
}

std::optional<Played> DeviceContext::paintBox(const RectD &box, PointD radii, uint8_t parts)
{
    Affine map = toPicture();
    if (m_isInPath)
        return std::nullopt;
    RectD mapped = mapBounds(map, box);
    if (!map.keepsRectangles()) {
        const auto circle = turnedCircle(map, box, radii);
        const Pen::Line line = m_state.pen.line;
        const bool isWhole = line == Pen::Line::Solid || line == Pen::Line::Null
                || line == Pen::Line::InsideFrame;
        if (!circle || !isWhole)
            return std::nullopt;
        mapped = *circle;
        map = Affine::scale(map.scaleX(), map.scaleX());
    }
    // Viewers leave out what has no width or height; a line in its place is drawn.
    if (mapped.isEmpty())
        return std::nullopt;
    if (!isSeen())
        return kDone;
    PointD mappedRadii = map.mapVector(radii);
    mappedRadii = { std::abs(mappedRadii.x), std::abs(mappedRadii.y) };
    Index stroke = kNone;
    double reach = 0;
    if (hasPen()) {
        const UsedPen &pen = usePen(parts, true);
        const Nib &nib = pen.nib;
        if (!nib.shape.isIdentity())
            return std::nullopt;
        stroke = pen.stroke;
        reach = nib.width;
        mapped = { mapped.left + nib.offset.x, mapped.top + nib.offset.y,
                   mapped.right + nib.offset.x, mapped.bottom + nib.offset.y };
    }
    if (isCutOff(grown(mapped, reach)))
        return kDone;
    Node node = newNode();
    node.isEvenOdd = true;
    node.stroke = stroke;
    if ((parts & kFill) != 0)
        node.fill = fillPaint();
    const PointD half{ mapped.width() / 2, mapped.height() / 2 };
    constexpr double kRounding = 1 - 1e-9;
    const auto add = [&](const Node &part) {
        if (mappedRadii.x >= half.x * kRounding && mappedRadii.y >= half.y * kRounding)
            m_builder.add(part, Ellipse{ centerOf(mapped), half });
        else
            m_builder.add(part,
                          Rect{ mapped, std::min(mappedRadii.x, half.x),
                                std::min(mappedRadii.y, half.y) });
    };
    return addMixed(node, std::ref(add));
}

Played DeviceContext::rectangle(const RectD &given)
{
    const RectD box = framed(given);
    constexpr uint8_t kParts = kFill | kStroke | kFramed;
    if (const auto played = paintBox(box, {}, kParts); played)
        return *played;
    Path &path = beginFigure();
    path.moveTo(device({ box.left, box.top }));
    const PointD corners[] = { { box.right, box.top },
                               { box.right, box.bottom },
                               { box.left, box.bottom } };
    addLines(path, corners);
    path.close();
    return endFigure(kParts);
}

Played DeviceContext::roundRectangle(const RectD &given, PointD corner)
{
    const RectD box = framed(given);
    const PointD radii{ std::min(std::abs(corner.x), box.width()) / 2,
                        std::min(std::abs(corner.y), box.height()) / 2 };
    if (radii.x == 0 || radii.y == 0)
        return rectangle(given);
    constexpr uint8_t kParts = kFill | kStroke | kFramed;
    if (const auto played = paintBox(box, radii, kParts); played)
        return *played;
    const PointD centers[] = { { box.right - radii.x, box.top + radii.y },
                               { box.right - radii.x, box.bottom - radii.y },
                               { box.left + radii.x, box.bottom - radii.y },
                               { box.left + radii.x, box.top + radii.y } };
    Path &path = beginFigure();
    path.moveTo(device({ centers[0].x, box.top }));
    double angle = -kTurn / 4;
    for (const PointD &center : centers) {
        path.addArc(circleAt(center, radii).then(m_state.toDevice), angle, kTurn / 4);
        angle += kTurn / 4;
    }
    path.close();
    return endFigure(kParts);
}

Played DeviceContext::ellipse(const RectD &box)
{
    return drawEllipse(framed(box), kFill | kStroke | kFramed);
}

Played DeviceContext::drawEllipse(const RectD &box, uint8_t parts)
{
    if (const auto played = paintBox(box, { box.width() / 2, box.height() / 2 }, parts); played)
        return *played;
    beginFigure().addEllipse(circleOf(box));
    return endFigure(parts);
}

// From the ray through start to the ray through end, the way round that the arc direction says; it
// counts before the mapping, so that a mirrored one turns it round.
DeviceContext::Sweep DeviceContext::sweepOf(const RectD &box, PointD start, PointD end) const
{
    const PointD center = centerOf(box);
    const auto angleOf = [&](PointD point) {
        return std::atan2((point.y - center.y) * box.width(), (point.x - center.x) * box.height());
    };
    const double from = angleOf(start);
    double sweep = angleOf(end) - from;
    if (m_state.isClockwise) {
        if (sweep <= 1e-12)
            sweep += kTurn;
    } else if (sweep >= -1e-12) {
        sweep -= kTurn;
    }
    return { from, sweep };
}

Played DeviceContext::drawArc(const RectD &given, PointD start, PointD end, bool toCenter,
                              bool isClosed)
{
    const Sweep sweep = sweepOf(ordered(given), start, end);
    const RectD box = framed(given);
    if (box.isEmpty())
        return kDone;
    const uint8_t parts = isClosed ? kFill | kStroke | kFramed : kStroke | kFramed;
    if (!toCenter && std::abs(sweep.sweep) >= kTurn)
        return drawEllipse(box, parts);
    Path &path = beginFigure();
    const Affine circle = circleOf(box);
    path.moveTo(circle.map({ std::cos(sweep.start), std::sin(sweep.start) }));
    path.addArc(circle, sweep.start, sweep.sweep);
    if (toCenter)
        path.lineTo(device(centerOf(box)));
    if (isClosed)
        path.close();
    return endFigure(parts);
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
    goOn().addArc(circleOf(box), sweep.start, sweep.sweep);
    const double last = sweep.start + sweep.sweep;
    m_state.current = circleAt(centerOf(box), { box.width() / 2, box.height() / 2 })
                              .map({ std::cos(last), std::sin(last) });
    return endFigure(kStroke);
}

Played DeviceContext::angleArc(PointD center, double radius, double startDegrees,
                               double sweepDegrees)
{
    if (!std::isfinite(startDegrees) || !std::isfinite(sweepDegrees))
        return notDone("its angles are no numbers");
    // Angles count against the clock, as mathematics has them. More than a turn goes round as often
    // as it says, which is seen once.
    const double start = -std::fmod(startDegrees, 360) * kTurn / 360;
    const double sweep = -std::fmod(sweepDegrees, 360) * kTurn / 360;
    const Affine circle = circleAt(center, { radius, radius });
    const Affine inDevice = circle.then(m_state.toDevice);
    Path &path = goOn();
    if (std::abs(sweepDegrees) >= 360)
        path.addArc(inDevice, start, std::copysign(kTurn, sweep));
    if (sweep != 0 || sweepDegrees == 0)
        path.addArc(inDevice, start, sweep);
    m_state.current = circle.map({ std::cos(start + sweep), std::sin(start + sweep) });
    return endFigure(kStroke);
}

} // namespace svgtool::picture
