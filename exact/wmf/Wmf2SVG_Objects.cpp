#include "exact/wmf/Wmf2SVG.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <algorithm>
#include <cstdlib>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

quint16 WMF2SVGConverter::allocateIndex()
{
    SVGTOOL_TRACE("WMF2SVGConverter::allocateIndex");
    constexpr quint32 kIndices = 0x10000;
    if (!m_freeIndices.empty())
        return m_freeIndices.extract(m_freeIndices.begin()).value();
    // With every index in use, the next one wraps around.
    return m_indexCount < kIndices ? static_cast<quint16>(m_indexCount++) : quint16(0);
}

void WMF2SVGConverter::freeIndex(quint16 index)
{
    SVGTOOL_TRACE("WMF2SVGConverter::freeIndex");
    if (index < m_indexCount)
        m_freeIndices.insert(index);
}

// The object index of a selection or deletion.
static quint16 readIndex(const char *record, quint32 size)
{
    return readRecord({ record, size }, &InitWMRSELECTOBJECT).ihObject;
}

qint32 WMF2SVGConverter::OnMetaSelectObject(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaSelectObject");
    m_writer.SelectObject(readIndex(record, size));
    return 1;
}

qint32 WMF2SVGConverter::OnMetaDeleteObject(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaDeleteObject");
    const quint16 index = readIndex(record, size);
    freeIndex(index);
    m_writer.DeleteObject(index);
    return 1;
}

// A pen's width is a size: it does not turn negative with the axis, and a line that is there does
// not vanish.
qint32 WMF2SVGConverter::scaledPenWidth(qint16 width) const
{
    const qint32 scaled = std::abs(qint32(scaleX(width)));
    return width > 0 ? std::max(scaled, 1) : scaled;
}

qint32 WMF2SVGConverter::OnCreatePenIndirect(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnCreatePenIndirect");
    const auto pen = readRecord({ record, size }, &InitWMRCREATEPEN);
    m_writer.CreatePen(allocateIndex(), pen.lopn.lopnStyle, scaledPenWidth(pen.lopn.lopnWidth.x),
                       pen.lopn.lopnColor);
    // A pen without a line is written like a solid one.
    constexpr quint16 kStyleMask = 0x0F;
    constexpr quint16 kNull = 5; // PS_NULL
    return (pen.lopn.lopnStyle & kStyleMask) == kNull ? RecordApproximated : RecordHandled;
}

qint32 WMF2SVGConverter::OnMetaCreateBrushIndirect(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaCreateBrushIndirect");
    const auto brush = readRecord({ record, size }, &InitWMRCREATEBRUSHINDIRECT);
    m_writer.CreateBrushI(allocateIndex(),
                          { brush.lb.lbStyle, brush.lb.lbColor, brush.lb.lbHatch });
    constexpr quint16 kNull = 1; // BS_NULL; below it BS_SOLID, above it hatches and patterns
    return brush.lb.lbStyle <= kNull ? RecordHandled : RecordApproximated;
}

qint32 WMF2SVGConverter::OnMetaCreateFontIndirect(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaCreateFontIndirect");
    constexpr int64_t kFaceNameBytes = 32;
    const ByteView all{ record, size };
    const auto font = readRecord(all, &InitWMREXTCREATEFONTINDIRECT);
    ByteView faceName = tail(all, sizeof(WMREXTCREATEFONTINDIRECT));
    faceName.size = std::min(faceName.size, kFaceNameBytes);
    m_writer.MetaCreateFont(allocateIndex(), font.font, faceName);
    // A negative height is written as its unsigned pattern.
    return font.font.lfHeight < 0 ? RecordApproximated : RecordHandled;
}

} // namespace svgtool
