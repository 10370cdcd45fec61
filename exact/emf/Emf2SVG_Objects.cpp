#include "exact/emf/Emf2SVG.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <algorithm>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// A pen without a line is written like a solid one.
static qint32 penResult(quint32 style)
{
    constexpr quint32 kStyleMask = 0x0F;
    constexpr quint32 kNull = 5; // PS_NULL
    return (style & kStyleMask) == kNull ? RecordApproximated : RecordHandled;
}

qint32 Emf2SvgConverter::OnCreatePen(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnCreatePen");
    const auto pen = readRecord({ record, size }, &InitEMRCREATEPEN);
    m_writer.CreatePen(pen.ihPen, pen.lopn.lopnStyle, MapX(pen.lopn.lopnWidth.x, false),
                       pen.lopn.lopnColor);
    return penResult(pen.lopn.lopnStyle);
}

qint32 Emf2SvgConverter::OnCreatePenEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnCreatePenEx");
    const ByteView all{ record, size };
    const auto pen = readRecord(all, &InitEMREXTCREATEPEN);
    // What the record promises but does not hold is dropped.
    const ByteView rest = tail(all, sizeof(EMREXTCREATEPEN));
    const qint64 count = std::min<qint64>(pen.elp.elpNumEntries, rest.size / 4);
    std::vector<quint32> entries;
    for (qint64 i = 0; i < count; ++i)
        entries.push_back(qFromLittleEndian(elementAt<quint32>(rest, i)));
    m_writer.CreatePen(pen.ihPen, pen.elp.elpPenStyle,
                       MapX(static_cast<qint32>(pen.elp.elpWidth), false), pen.elp.elpColor,
                       entries);
    return penResult(pen.elp.elpPenStyle);
}

qint32 Emf2SvgConverter::OnCreateBrushIndirect(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnCreateBrushIndirect");
    const auto brush = readRecord({ record, size }, &InitEMRCREATEBRUSHINDIRECT);
    m_writer.CreateBrushI(brush.ihBrush, brush.lb);
    constexpr quint32 kNull = 1; // BS_NULL; below it BS_SOLID, above it hatches and patterns
    return brush.lb.lbStyle <= kNull ? RecordHandled : RecordApproximated;
}

qint32 Emf2SvgConverter::OnExtCreateFontIndirect(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnExtCreateFontIndirect");
    auto font = readRecord({ record, size }, &InitEMREXTCREATEFONTINDIRECTW);
    LOGFONTW &logFont = font.elfw.elfLogFont;
    logFont.lfHeight = MapY(logFont.lfHeight, false);
    m_writer.CreateFont(font.ihFont, logFont);
    return 1;
}

qint32 Emf2SvgConverter::OnSelectObject(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSelectObject");
    const auto object = readRecord({ record, size }, &InitEMRSELECTOBJECT);
    m_writer.SelectObject(object.ihObject);
    // These two come as brushes.
    constexpr quint32 kWhitePen = 0x80000006;
    constexpr quint32 kBlackPen = 0x80000007;
    return object.ihObject == kWhitePen || object.ihObject == kBlackPen ? RecordApproximated
                                                                        : RecordHandled;
}

qint32 Emf2SvgConverter::OnDeleteObject(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnDeleteObject");
    const auto object = readRecord({ record, size }, &InitEMRDELETEOBJECT);
    m_writer.DeleteObject(object.ihObject);
    return 1;
}

qint32 Emf2SvgConverter::OnSetBkColor(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetBkColor");
    const auto color = readRecord({ record, size }, &InitEMRCOLOR);
    m_writer.SetBkgColor(color.crColor);
    return 1;
}

qint32 Emf2SvgConverter::OnSetTextColor(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetTextColor");
    const auto color = readRecord({ record, size }, &InitEMRCOLOR);
    m_writer.SetTextColor(color.crColor);
    return 1;
}

qint32 Emf2SvgConverter::OnSetBkMode(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetBkMode");
    const auto mode = readRecord({ record, size }, &InitEMRSETBKMODE);
    m_writer.SetBkMode(static_cast<qint32>(mode.iMode));
    return 1;
}

qint32 Emf2SvgConverter::OnBeginPath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnBeginPath");
    m_writer.StartPath();
    return 1;
}

qint32 Emf2SvgConverter::OnEndPath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnEndPath");
    m_writer.EndPath();
    return 1;
}

qint32 Emf2SvgConverter::OnStrokePath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnStrokePath");
    m_writer.StrokePath();
    return 1;
}

qint32 Emf2SvgConverter::OnFillPath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnFillPath");
    m_writer.FillPath();
    return 1;
}

qint32 Emf2SvgConverter::OnCloseFigure(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnCloseFigure");
    m_writer.CloseFigure();
    return 1;
}

qint32 Emf2SvgConverter::OnAbortPath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnAbortPath");
    m_writer.AbortPath();
    return 1;
}

} // namespace svgtool
