#include "exact/wmf/Wmf2SVG.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <numeric>
#include <optional>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

// Parameters stand in the file in the reverse order of the drawing call: y before x, and a box
// from its bottom to its left.

POINTL WMF2SVGConverter::readPoint(const char *record, quint32 size) const
{
    const auto line = readRecord({ record, size }, &InitWMRLINETO);
    return mapPoint(line.pt.x, line.pt.y);
}

qint32 WMF2SVGConverter::OnMetaMove(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaMove");
    const POINTL point = readPoint(record, size);
    m_writer.MoveTo(point.x, point.y);
    return 1;
}

qint32 WMF2SVGConverter::OnMetaLineTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaLineTo");
    const POINTL point = readPoint(record, size);
    m_writer.DrawLineTo(point.x, point.y, m_writer.currentStyle());
    return 1;
}

RECTL WMF2SVGConverter::readBox(const char *record, quint32 size) const
{
    const auto figure = readRecord({ record, size }, &InitWMRELLIPSE);
    const POINTL corner = mapPoint(figure.box.left, figure.box.top);
    const POINTL opposite = mapPoint(figure.box.right, figure.box.bottom);
    return { corner.x, corner.y, opposite.x, opposite.y };
}

qint32 WMF2SVGConverter::OnMetaRectangle(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaRectangle");
    const RECTL box = readBox(record, size);
    m_writer.DrawRect(box.left, box.top, box.right - box.left, box.bottom - box.top,
                      m_writer.currentStyle(), 0, 0);
    return 1;
}

qint32 WMF2SVGConverter::OnMetaEllipse(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaEllipse");
    const RECTL box = readBox(record, size);
    const qint32 rx = (box.right - box.left) / 2;
    const qint32 ry = (box.bottom - box.top) / 2;
    const qint32 cx = box.left + rx;
    const qint32 cy = box.top + ry;
    if (rx == ry)
        m_writer.DrawCircle(cx, cy, ry, m_writer.currentStyle());
    else
        m_writer.DrawEllipse(cx, cy, rx, ry, m_writer.currentStyle());
    return 1;
}

qint32 WMF2SVGConverter::drawPoints(char *record, quint32 size, bool isPolygon)
{
    const ByteView all{ record, size };
    const auto count = static_cast<quint16>(qFromLittleEndian(readPadded<WMRPOLYLINE>(all).cpts));
    const qint64 bytes = qint64(count) * qint64(sizeof(POINTS));
    if (!slice(all, sizeof(WMRPOLYLINE), bytes))
        return 0;
    std::vector<char> copy(record, record + size);
    InitWMRPOLYLINE(overlay<WMRPOLYLINE>(copy.data()), overlay<WMRPOLYLINE>(record));
    m_writer.DrawPolyLine(mapPoints({ copy.data() + sizeof(WMRPOLYLINE), bytes }), count, isPolygon,
                          false, m_writer.currentStyle());
    return 1;
}

qint32 WMF2SVGConverter::OnMetaPolygon(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaPolygon");
    return drawPoints(record, size, true);
}

qint32 WMF2SVGConverter::OnMetaPolyLine(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaPolyLine");
    return drawPoints(record, size, false);
}

qint32 WMF2SVGConverter::OnMetaPolyPolygon(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaPolyPolygon");
    const ByteView all{ record, size };
    const qint64 head = sizeof(WMRPOLYPOLYLINE);
    const qint64 polygons = qFromLittleEndian(readPadded<WMRPOLYPOLYLINE>(all).nPolys);
    const auto countBytes = slice(all, head, polygons * 2);
    if (!countBytes)
        return 0;
    std::vector<quint16> counts;
    for (qint64 i = 0; i < polygons; ++i)
        counts.push_back(qFromLittleEndian(elementAt<quint16>(*countBytes, i)));
    const qint64 points = std::accumulate(counts.begin(), counts.end(), qint64(0));
    const qint64 pointsAt = head + polygons * 2;
    qint64 pointBytes = points * qint64(sizeof(POINTS));
    if (!slice(all, pointsAt, pointBytes))
        return 0;
    std::vector<char> copy(record, record + size);
    InitWMRPOLYPOLYLINE(overlay<WMRPOLYPOLYLINE>(copy.data()), overlay<WMRPOLYPOLYLINE>(record));
    // Quirk: a figure of no points takes the point that stands in its place, even behind all
    // others.
    if (polygons > 0 && counts.back() == 0
        && slice(all, pointsAt, pointBytes + qint64(sizeof(POINTS)))) {
        const qint64 nextAt = pointsAt + pointBytes;
        InitWMRPOINTS(overlay<POINTS>(copy.data() + nextAt), overlay<POINTS>(record + nextAt));
        pointBytes += qint64(sizeof(POINTS));
    }
    m_writer.DrawPolyPolygon(mapPoints({ copy.data() + pointsAt, pointBytes }), counts,
                             m_writer.currentStyle());
    return 1;
}

} // namespace svgtool
