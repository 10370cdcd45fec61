#include "emf/Emf2SVG.h"

#include "geometry/RgnPathUtil.h"
#include "logging/TraceScope.h"
#include "records/BEndTools.h"
#include "records/Numeric.h"

#include <QtEndian>

#include <optional>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// The rectangles of the cbRgnData bytes of region data at offset; nothing unless the whole of them
// lies inside the record and holds as many rectangles as it says.
static std::optional<std::vector<RECTL>> readRegion(char *record, quint32 size, qint64 offset,
                                                    quint32 cbRgnData)
{
    const auto data = slice({ record, size }, offset, cbRgnData);
    if (!data || data->size < qint64(sizeof(RGNDATA)))
        return std::nullopt;
    auto region = readPadded<RGNDATA>(*data);
    Init_RGNDATA(&region);
    const qint64 bytes = qint64(region.rdh.nCount) * qint64(sizeof(RECT));
    const auto rects = slice(*data, sizeof(RGNDATA), bytes);
    if (!rects || qint64(region.rdh.nRgnSize) > data->size - qint64(sizeof(RGNDATA)))
        return std::nullopt;
    std::vector<RECTL> result;
    result.reserve(region.rdh.nCount);
    for (qint64 i = 0; i < qint64(region.rdh.nCount); ++i) {
        auto rect = elementAt<RECT>(*rects, i);
        InitRECT(&rect);
        result.push_back({ rect.left, rect.top, rect.right, rect.bottom });
    }
    return result;
}

std::vector<RECTL> Emf2SvgConverter::mapRects(std::vector<RECTL> rects) const
{
    for (RECTL &rect : rects)
        rect = { MapX(rect.left, true), MapY(rect.top, true), MapX(rect.right, true),
                 MapY(rect.bottom, true) };
    return rects;
}

qint32 Emf2SvgConverter::OnFillRgn(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnFillRgn");
    auto fill = readPadded<EMRFILLRGN>({ record, size });
    InitEMRFILLRGN(&fill);
    const auto rects = readRegion(record, size, sizeof(EMRFILLRGN), fill.cbRgnData);
    if (!rects)
        return 0;
    m_writer.FillRgn(mapRects(*rects), fill.ihBrush);
    return 1;
}

qint32 Emf2SvgConverter::OnFrameRgn(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnFrameRgn");
    auto frame = readPadded<EMRFRAMERGN>({ record, size });
    InitEMRFRAMERGN(&frame);
    const auto rects = readRegion(record, size, sizeof(EMRFRAMERGN), frame.cbRgnData);
    if (!rects)
        return 0;
    m_writer.FrameRgn(mapRects(*rects), frame.ihBrush, MapX(frame.szlStroke.cx, false),
                      MapY(frame.szlStroke.cy, false));
    return 1;
}

bool Emf2SvgConverter::combineClip(const QRegion &region, quint32 mode)
{
    switch (mode) { // [MS-EMF] 2.1.29
    case 1: // RGN_AND
        m_clipRegion = m_clipRegion.intersected(region);
        return true;
    case 2: // RGN_OR
        m_clipRegion = m_clipRegion.united(region);
        return true;
    case 3: // RGN_XOR
        m_clipRegion = m_clipRegion.xored(region);
        return true;
    case 4: // RGN_DIFF
        m_clipRegion = m_clipRegion.subtracted(region);
        return true;
    case 5: // RGN_COPY
        m_clipRegion = region;
        return true;
    default:
        return false;
    }
}

qint32 Emf2SvgConverter::OnExtSetClipRgn(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnExtSetClipRgn");
    constexpr quint32 kCopy = 5;
    auto clip = readPadded<EMREXTSELECTCLIPRGN>({ record, size });
    InitEMREXTSELECTCLIPRGN(&clip);
    if (clip.cbRgnData == 0 && clip.iMode == kCopy) {
        m_clipRegion = m_deviceRegion;
        m_writer.ResetClip();
        return 1;
    }
    const auto rects = readRegion(record, size, sizeof(EMREXTSELECTCLIPRGN), clip.cbRgnData);
    if (!rects || !combineClip(RectsToRegion(*rects), clip.iMode))
        return 0;
    // Device units: of the whole mapping only the document's origin applies.
    std::vector<RECTL> clipRects = RegionToRects(m_clipRegion);
    for (RECTL &rect : clipRects)
        rect = { wrapSub(rect.left, m_originX), wrapSub(rect.top, m_originY),
                 wrapSub(rect.right, m_originX), wrapSub(rect.bottom, m_originY) };
    m_writer.SetExtClipRgn(clipRects);
    return 1;
}

qint32 Emf2SvgConverter::OnSelectClipPath(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSelectClipPath");
    m_writer.SetClipPath();
    return 1;
}

} // namespace svgtool
