#include "emf/Emf2SVG.h"

#include "logging/TraceScope.h"
#include "records/BEndTools.h"
#include "records/Numeric.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

qint32 Emf2SvgConverter::OnRectangle(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnRectangle");
    if (record == nullptr || size == 0)
        return 0;
    auto rectangle = readPadded<EMRRECTANGLE>({ record, size });
    InitEMRRECTANGLE(&rectangle);
    drawBox(rectangle.rclBox, 0, 0);
    return 1;
}

qint32 Emf2SvgConverter::OnRoundedRect(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnRoundedRect");
    if (record == nullptr || size == 0)
        return 1;
    auto rectangle = readPadded<EMRROUNDRECT>({ record, size });
    InitEMRROUNDRECT(&rectangle);
    // The record's corner size is the whole width and height of the corner's ellipse.
    drawBox(rectangle.rclBox, MapX(rectangle.szlCorner.cx / 2, false),
            MapY(rectangle.szlCorner.cy / 2, false));
    return 1;
}

void Emf2SvgConverter::drawBox(const RECTL &box, qint32 rx, qint32 ry)
{
    const qint32 x = MapX(box.left, true);
    const qint32 y = MapY(box.top, true);
    const qint32 width = MapX(wrapSub(box.right, box.left), false);
    const qint32 height = MapY(wrapSub(box.bottom, box.top), false);
    m_writer.DrawRect(x, y, width, height, m_writer.currentStyle(), rx, ry);
}

qint32 Emf2SvgConverter::OnEllipse(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnEllipse");
    if (record == nullptr || size == 0)
        return 1;
    auto ellipse = readPadded<EMRELLIPSE>({ record, size });
    InitEMRELLIPSE(&ellipse);
    const RECTL &box = ellipse.rclBox;
    const qint32 halfWidth = wrapSub(box.right, box.left) / 2;
    const qint32 halfHeight = wrapSub(box.bottom, box.top) / 2;
    const qint32 cx = MapX(wrapAdd(box.left, halfWidth), true);
    const qint32 cy = MapY(wrapAdd(box.top, halfHeight), true);
    const qint32 rx = MapX(halfWidth, false);
    const qint32 ry = MapY(halfHeight, false);
    if (rx != ry)
        m_writer.DrawEllipse(cx, cy, rx, ry, m_writer.currentStyle());
    else
        m_writer.DrawCircle(cx, cy, ry, m_writer.currentStyle());
    return 1;
}

qint32 Emf2SvgConverter::OnMoveToEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnMoveToEx");
    if (record == nullptr || size == 0)
        return 1;
    auto move = readPadded<EMRMOVETOEX>({ record, size });
    InitEMRMOVETO(&move);
    m_writer.MoveTo(MapX(move.ptl.x, true), MapY(move.ptl.y, true));
    m_writer.BeginFigure();
    return 1;
}

qint32 Emf2SvgConverter::OnLineTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnLineTo");
    if (record == nullptr || size == 0)
        return 1;
    auto line = readPadded<EMRLINETO>({ record, size });
    InitLINETO(&line);
    m_writer.DrawLineTo(MapX(line.ptl.x, true), MapY(line.ptl.y, true), m_writer.currentStyle());
    return 1;
}

} // namespace svgtool
