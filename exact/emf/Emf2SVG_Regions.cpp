#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/geometry/RgnPathUtil.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <algorithm>
#include <optional>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

static constexpr quint32 kCopy = 5; // RGN_COPY

// The rectangles of the cbRgnData bytes of region data at offset; nothing unless the whole of them
// lies inside the record and holds as many rectangles as it says.
static std::optional<std::vector<RECTL>> readRegion(char *record, quint32 size, qint64 offset,
                                                    quint32 cbRgnData)
{
    const auto data = slice({ record, size }, offset, cbRgnData);
    if (!data || data->size < qint64(sizeof(RGNDATA)))
        return std::nullopt;
    const auto region = readRecord(*data, &Init_RGNDATA);
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
    const auto fill = readRecord({ record, size }, &InitEMRFILLRGN);
    const auto rects = readRegion(record, size, sizeof(EMRFILLRGN), fill.cbRgnData);
    if (!rects)
        return 0;
    m_writer.FillRgn(mapRects(*rects), fill.ihBrush);
    return 1;
}

qint32 Emf2SvgConverter::OnFrameRgn(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnFrameRgn");
    const auto frame = readRecord({ record, size }, &InitEMRFRAMERGN);
    const auto rects = readRegion(record, size, sizeof(EMRFRAMERGN), frame.cbRgnData);
    if (!rects)
        return 0;
    m_writer.FrameRgn(mapRects(*rects), frame.ihBrush, MapX(frame.szlStroke.cx, false),
                      MapY(frame.szlStroke.cy, false));
    return 1;
}

// How many rectangles a combination of two regions can have at most. Each of its bands takes the
// spans of one band of either; bars that cross give as many as the product.
static qint64 largestCombination(const QRegion &a, const QRegion &b)
{
    qint64 bands = 0;
    qint64 spans = 0;
    for (const QRegion *region : { &a, &b }) {
        qint64 widest = 0;
        qint64 current = 0;
        const QRect *previous = nullptr;
        for (const QRect &rect : *region) {
            const bool isNewBand = previous == nullptr || previous->top() != rect.top();
            bands += isNewBand ? 1 : 0;
            current = isNewBand ? 1 : current + 1;
            widest = std::max(widest, current);
            previous = &rect;
        }
        spans += widest;
    }
    return 2 * bands * spans;
}

std::optional<QRegion> Emf2SvgConverter::combinedClip(std::span<const RECTL> rects,
                                                      quint32 mode) const
{
    constexpr qint64 kLargest = 1 << 22;
    const QRegion region = RectsToRegion(rects);
    if (mode == kCopy)
        return region;
    if (largestCombination(m_clipRegion, region) > kLargest)
        return std::nullopt;
    switch (mode) { // [MS-EMF] 2.1.29
    case 1: // RGN_AND
        return m_clipRegion.intersected(region);
    case 2: // RGN_OR
        return m_clipRegion.united(region);
    case 3: // RGN_XOR
        return m_clipRegion.xored(region);
    case 4: // RGN_DIFF
        return m_clipRegion.subtracted(region);
    default:
        return std::nullopt;
    }
}

qint32 Emf2SvgConverter::OnExtSetClipRgn(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnExtSetClipRgn");
    const auto clip = readRecord({ record, size }, &InitEMREXTSELECTCLIPRGN);
    if (clip.cbRgnData == 0 && clip.iMode == kCopy) {
        m_clipRegion = m_deviceRegion;
        m_writer.ResetClip();
        return 1;
    }
    const auto rects = readRegion(record, size, sizeof(EMREXTSELECTCLIPRGN), clip.cbRgnData);
    // A small record may combine with a large region and write all of it again, so the rectangles
    // that a file has read and written that way are counted.
    const qint64 read = clip.iMode == kCopy ? 0 : m_clipRegion.rectCount();
    if (!rects || read > m_clipRectsLeft)
        return 0;
    m_clipRectsLeft -= read;
    std::optional<QRegion> combined;
    try {
        combined = combinedClip(*rects, clip.iMode);
    } catch (const RegionTooLarge &) {
        // It fails the record, not the file. As below, it takes what is left, or a file could have
        // such work done by every record.
        m_clipRectsLeft = 0;
    }
    if (!combined)
        return 0;
    if (combined->rectCount() > m_clipRectsLeft) {
        m_clipRectsLeft = 0;
        return 0;
    }
    m_clipRegion = *combined;
    m_clipRectsLeft -= m_clipRegion.rectCount();
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
