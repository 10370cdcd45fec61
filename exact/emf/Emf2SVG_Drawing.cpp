#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

qint32 Emf2SvgConverter::OnRectangle(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnRectangle");
    if (record == nullptr || size == 0)
        return 0;
    const auto rectangle = readRecord({ record, size }, &InitEMRRECTANGLE);
    drawBox(rectangle.rclBox, 0, 0);
    return 1;
}

qint32 Emf2SvgConverter::OnRoundedRect(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnRoundedRect");
    if (record == nullptr || size == 0)
        return 1;
    const auto rectangle = readRecord({ record, size }, &InitEMRROUNDRECT);
    // The record's corner size is the whole width and height of the corner's ellipse.
    const auto [rx, ry] = mapSize({ rectangle.szlCorner.cx / 2, rectangle.szlCorner.cy / 2 });
    drawBox(rectangle.rclBox, rx, ry);
    return 1;
}

void Emf2SvgConverter::drawBox(RECTL box, qint32 rx, qint32 ry)
{
    const POINTL corner = mapPoint({ box.left, box.top });
    const SIZEL size = mapSize({ wrapSub(box.right, box.left), wrapSub(box.bottom, box.top) });
    m_writer.DrawRect(corner.x, corner.y, size.cx, size.cy, m_writer.currentStyle(), rx, ry);
}

qint32 Emf2SvgConverter::OnEllipse(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnEllipse");
    if (record == nullptr || size == 0)
        return 1;
    const auto ellipse = readRecord({ record, size }, &InitEMRELLIPSE);
    const RECTL &box = ellipse.rclBox;
    const qint32 halfWidth = wrapSub(box.right, box.left) / 2;
    const qint32 halfHeight = wrapSub(box.bottom, box.top) / 2;
    const POINTL center = mapPoint({ wrapAdd(box.left, halfWidth), wrapAdd(box.top, halfHeight) });
    const auto [rx, ry] = mapSize({ halfWidth, halfHeight });
    if (rx != ry)
        m_writer.DrawEllipse(center.x, center.y, rx, ry, m_writer.currentStyle());
    else
        m_writer.DrawCircle(center.x, center.y, ry, m_writer.currentStyle());
    return 1;
}

qint32 Emf2SvgConverter::OnMoveToEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnMoveToEx");
    if (record == nullptr || size == 0)
        return 1;
    const auto move = readRecord({ record, size }, &InitEMRMOVETO);
    const POINTL point = mapPoint(move.ptl);
    m_writer.MoveTo(point.x, point.y);
    m_writer.BeginFigure();
    return 1;
}

qint32 Emf2SvgConverter::OnLineTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnLineTo");
    if (record == nullptr || size == 0)
        return 1;
    const auto line = readRecord({ record, size }, &InitLINETO);
    const POINTL point = mapPoint(line.ptl);
    m_writer.DrawLineTo(point.x, point.y, m_writer.currentStyle());
    return 1;
}

} // namespace svgtool
