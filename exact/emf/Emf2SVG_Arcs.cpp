#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/geometry/GeometricHelpers.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <cmath>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// Values of SVG's sweep and large-arc flags. GDI draws arcs counter-clockwise by default.
static constexpr qint32 kCounterClockwise = 0;
static constexpr qint32 kClockwise = 1;
static constexpr qint32 kSmallArc = 0;

// The point of an ellipse that lies across its centre.
static POINTL opposite(const POINTL &point, const POINTL &center)
{
    return { wrapSub(wrapMul(2, center.x), point.x), wrapSub(wrapMul(2, center.y), point.y) };
}

// Finds the point where a radial meets the ellipse in @p box and returns the radial's direction.
// Without a slope the point is the top or the bottom one, and the right one for a radial in the
// centre itself.
static POINTL project(const RECTL &box, const Emf2SvgConverter::Arc &arc, const POINTL &radial,
                      POINTL &onEllipse)
{
    const POINTL direction{ wrapSub(radial.x, arc.center.x), wrapSub(radial.y, arc.center.y) };
    if (arc.ry == 0) {
        // A line, or no more than the centre.
        const qint32 reach = direction.y != 0 ? 0 : direction.x < 0 ? wrapSub(0, arc.rx) : arc.rx;
        onEllipse = { wrapAdd(arc.center.x, reach), arc.center.y };
        return direction;
    }
    if (direction.x != 0) {
        GetPointOnEllipse(box.left, box.top, box.right, box.bottom, radial.x, radial.y, onEllipse);
        return direction;
    }
    if (direction.y == 0) {
        onEllipse = { wrapAdd(arc.center.x, arc.rx), arc.center.y };
        return { 1, 0 };
    }
    const qint32 radius = direction.y < 0 ? wrapSub(0, arc.ry) : arc.ry;
    onEllipse = { arc.center.x, wrapAdd(arc.center.y, radius) };
    return direction;
}

Emf2SvgConverter::Arc Emf2SvgConverter::readArc(const char *record, quint32 size) const
{
    const auto source = readRecord({ record, size }, &InitEMRARC);
    const RECTL box{ MapX(source.rclBox.left, true), MapY(source.rclBox.top, true),
                     MapX(source.rclBox.right, true), MapY(source.rclBox.bottom, true) };
    Arc arc{};
    arc.rx = wrapSub(box.right, box.left) / 2;
    arc.ry = wrapSub(box.bottom, box.top) / 2;
    arc.center = { wrapAdd(box.left, arc.rx), wrapAdd(box.top, arc.ry) };
    const POINTL from = project(box, arc, mapPoint(source.ptlStart), arc.start);
    const POINTL to = project(box, arc, mapPoint(source.ptlEnd), arc.end);
    // With y downwards, a positive product means that the end lies clockwise of the start, and the
    // counter-clockwise way to it is more than half a turn.
    const qint64 turn = qint64(from.x) * to.y - qint64(from.y) * to.x;
    arc.isLarge = turn > 0;
    return arc;
}

// Quirk: ends that are one point are written like any others, though viewers draw nothing then;
// hosts compare documents byte by byte.

qint32 Emf2SvgConverter::OnArc(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnArc");
    if (record == nullptr || size == 0)
        return 1;
    const Arc arc = readArc(record, size);
    m_writer.DrawArc(arc.start.x, arc.start.y, arc.rx, arc.ry, 0, arc.isLarge ? 1 : 0,
                     kCounterClockwise, arc.end.x, arc.end.y, m_writer.currentStyle());
    return 1;
}

qint32 Emf2SvgConverter::OnArcTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnArcTo");
    if (record == nullptr || size == 0)
        return 1;
    const Arc arc = readArc(record, size);
    drawArcTo(arc, kCounterClockwise);
    return 1;
}

void Emf2SvgConverter::drawArcTo(const Arc &arc, qint32 sweepFlag)
{
    m_writer.DrawArcTo(arc.start.x, arc.start.y, arc.rx, arc.ry, 0, arc.isLarge ? 1 : 0, sweepFlag,
                       arc.end.x, arc.end.y, m_writer.currentStyle());
}

// Draws a full turn as two halves, and takes the current position to the arc's end.
void Emf2SvgConverter::drawTurnTo(const Arc &arc, qint32 sweepFlag)
{
    const StyleText &style = m_writer.currentStyle();
    // The first half brings the connecting line with it.
    const POINTL across = opposite(arc.start, arc.center);
    m_writer.DrawArcTo(arc.start.x, arc.start.y, arc.rx, arc.ry, 0, kSmallArc, sweepFlag, across.x,
                       across.y, style);
    m_writer.DrawArc(across.x, across.y, arc.rx, arc.ry, 0, kSmallArc, sweepFlag, arc.start.x,
                     arc.start.y, style);
    m_writer.MoveTo(arc.end.x, arc.end.y);
}

qint32 Emf2SvgConverter::OnChord(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnChord");
    if (record == nullptr || size == 0)
        return 1;
    const Arc arc = readArc(record, size);
    m_writer.DrawChord(arc.start.x, arc.start.y, arc.rx, arc.ry, 0, arc.isLarge ? 1 : 0,
                       kCounterClockwise, arc.end.x, arc.end.y, m_writer.currentStyle());
    return 1;
}

qint32 Emf2SvgConverter::OnPie(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPie");
    if (record == nullptr || size == 0)
        return 1;
    const Arc arc = readArc(record, size);
    // Quirk: this test is wrong for about half of all pies; their pictures depend on it.
    const bool isLarge =
            IsBigArc(arc.start.x, arc.start.y, arc.end.x, arc.end.y, arc.center.x, arc.center.y);
    m_writer.DrawPie(arc.start.x, arc.start.y, arc.rx, arc.ry, 0, isLarge ? 1 : 0,
                     kCounterClockwise, arc.end.x, arc.end.y, arc.center.x, arc.center.y,
                     m_writer.currentStyle());
    return 1;
}

qint32 Emf2SvgConverter::OnAngleArc(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnAngleArc");
    if (record == nullptr || size == 0)
        return 1;
    const auto source = readPadded<EMRANGLEARC>({ record, size });
    EMRANGLEARC angleArc{};
    if (!InitEMRANGLEARC(&angleArc, &source))
        angleArc = source;
    const double start = angleArc.eStartAngle;
    const double sweep = angleArc.eSweepAngle;
    if (!std::isfinite(start) || !std::isfinite(sweep))
        return 0;

    Arc arc{};
    arc.center = mapPoint(angleArc.ptlCenter);
    arc.rx = MapX(static_cast<qint32>(angleArc.nRadius), false);
    arc.ry = MapY(static_cast<qint32>(angleArc.nRadius), false);
    const auto pointAt = [&arc](double degrees) -> POINTL {
        const double radians = std::fmod(degrees, 360.0) * std::acos(-1.0) / 180.0;
        return { wrapAdd(arc.center.x, truncateToInt32(std::round(arc.rx * std::cos(radians)))),
                 wrapSub(arc.center.y, truncateToInt32(std::round(arc.ry * std::sin(radians)))) };
    };
    arc.start = pointAt(start);
    arc.end = pointAt(start + sweep);
    arc.isLarge = std::abs(sweep) > 180.0;
    const qint32 sweepFlag = sweep < 0 ? kClockwise : kCounterClockwise;
    if (std::abs(sweep) >= 360.0)
        drawTurnTo(arc, sweepFlag);
    else
        drawArcTo(arc, sweepFlag);
    return 1;
}

} // namespace svgtool
