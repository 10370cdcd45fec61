#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <cmath>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// Where a record says its bitmap lies.
struct BitmapRange
{
    quint32 infoOffset, infoBytes, bitsOffset, bitsBytes, usage;

    bool isEmpty() const { return infoBytes == 0 || bitsBytes == 0; }
};

namespace {

    template<class Record>
    BitmapRange sourceRange(const Record &record)
    {
        return { record.offBmiSrc, record.cbBmiSrc, record.offBitsSrc, record.cbBitsSrc,
                 record.iUsageSrc };
    }

    std::optional<DibBytes> dibIn(ByteView record, const BitmapRange &range)
    {
        const auto info = slice(record, range.infoOffset, range.infoBytes);
        const auto bits = slice(record, range.bitsOffset, range.bitsBytes);
        if (!info || !bits)
            return std::nullopt;
        return DibBytes{ *info, *bits, range.usage };
    }

    // The source's own mapping. One of zeros only was never filled in.
    void setSource(BitmapTransfer &transfer, const XFORM &xform, qint32 x, qint32 y, qint32 width,
                   qint32 height)
    {
        const bool isEmpty = xform.eM11 == 0.0F && xform.eM22 == 0.0F;
        const float scaleX = isEmpty ? 1.0F : xform.eM11;
        const float scaleY = isEmpty ? 1.0F : xform.eM22;
        const auto rounded = [](float value) { return truncateToInt32(std::floor(value + 0.5F)); };
        transfer.sourceX = rounded(static_cast<float>(x) * scaleX + xform.eDx);
        transfer.sourceY = rounded(static_cast<float>(y) * scaleY + xform.eDy);
        transfer.sourceWidth = rounded(static_cast<float>(width) * scaleX);
        transfer.sourceHeight = rounded(static_cast<float>(height) * scaleY);
    }

} // namespace

RECTL Emf2SvgConverter::mapCorners(qint32 x, qint32 y, qint32 width, qint32 height) const
{
    return { MapX(x, true), MapY(y, true), MapX(wrapAdd(x, width), true),
             MapY(wrapAdd(y, height), true) };
}

BitmapTransfer Emf2SvgConverter::transferOf(const EMRBITBLT &blt, qint32 sourceWidth,
                                            qint32 sourceHeight) const
{
    BitmapTransfer transfer;
    transfer.corners = mapCorners(blt.xDest, blt.yDest, blt.cxDest, blt.cyDest);
    transfer.operation = RasterOperation(blt.dwRop);
    setSource(transfer, blt.xformSrc, blt.xSrc, blt.ySrc, sourceWidth, sourceHeight);
    return transfer;
}

qint32 Emf2SvgConverter::OnBitBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnBitBlt");
    const auto blt = readRecord({ record, size }, &InitEMRBITBLT);
    if (size < sizeof blt)
        return RecordFailed;
    return drawBitmap(transferOf(blt, blt.cxDest, blt.cyDest), { record, size }, sourceRange(blt));
}

qint32 Emf2SvgConverter::OnStretchBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnStretchBlt");
    const auto blt = readRecord({ record, size }, &InitEMRSTRETCHBLT);
    if (size < sizeof blt)
        return RecordFailed;
    return drawBitmap(transferOf(blt, blt.cxSrc, blt.cySrc), { record, size }, sourceRange(blt));
}

qint32 Emf2SvgConverter::OnTransparentBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnTransparentBlt");
    const auto blt = readRecord({ record, size }, &InitEMRTRANSPARENTBLT);
    if (size < sizeof blt)
        return RecordFailed;
    BitmapTransfer transfer = transferOf(blt, blt.cxSrc, blt.cySrc);
    transfer.operation = RasterOperations::SourceCopy;
    const quint32 key = blt.dwRop; // COLORREF: red in the low byte
    transfer.transparentColour = argb(key & 0xFF, key >> 8 & 0xFF, key >> 16 & 0xFF);
    return drawBitmap(std::move(transfer), { record, size }, sourceRange(blt));
}

qint32 Emf2SvgConverter::OnStretchDIB(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnStretchDIB");
    const auto blt = readRecord({ record, size }, &InitEMRSTRETCHDIBITS);
    if (size < sizeof blt)
        return RecordFailed;
    BitmapTransfer transfer;
    transfer.corners = mapCorners(blt.xDest, blt.yDest, blt.cxDest, blt.cyDest);
    transfer.operation = RasterOperation(blt.dwRop);
    transfer.sourceX = blt.xSrc;
    transfer.sourceY = blt.ySrc;
    transfer.sourceWidth = blt.cxSrc;
    transfer.sourceHeight = blt.cySrc;
    transfer.countsFromBottom = true;
    return drawBitmap(std::move(transfer), { record, size }, sourceRange(blt));
}

qint32 Emf2SvgConverter::OnMaskBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnMaskBlt");
    const auto blt = readRecord({ record, size }, &InitEMRMASKBLT);
    if (size < sizeof blt)
        return RecordFailed;
    BitmapTransfer transfer = transferOf(blt, blt.cxDest, blt.cyDest);
    const ByteView all{ record, size };
    const BitmapRange maskRange{ blt.offBmiMask, blt.cbBmiMask, blt.offBitsMask, blt.cbBitsMask,
                                 blt.iUsageMask };
    if (!maskRange.isEmpty()) {
        const auto dib = dibIn(all, maskRange);
        auto mask = dib ? m_writer.decode(*dib) : std::nullopt;
        if (!mask || !mask->isMask())
            return RecordFailed;
        transfer.mask = std::move(mask->pixels);
        transfer.maskX = blt.xMask;
        transfer.maskY = blt.yMask;
        // The operation outside the mask is the fourth byte of the two that the record combines.
        transfer.operationOutsideMask = RasterOperation(blt.dwRop >> 8);
    }
    const BitmapRange range = sourceRange(blt);
    if (!range.isEmpty() || transfer.mask.isNull())
        return drawBitmap(std::move(transfer), all, range);
    if (transfer.operation.usesSource() || transfer.operationOutsideMask.usesSource())
        return RecordFailed;
    // The brush alone is painted through the mask: any pixels will do as its source.
    transfer.bitmap.pixels = transfer.mask;
    transfer.bitmap.size = transfer.mask.size();
    transfer.sourceX = transfer.maskX;
    transfer.sourceY = transfer.maskY;
    return m_writer.DrawBitmap(std::move(transfer));
}

qint32 Emf2SvgConverter::drawBitmap(BitmapTransfer transfer, ByteView record,
                                    const BitmapRange &range)
{
    if (range.isEmpty())
        return m_writer.PatBlt(transfer.corners, transfer.operation);
    const auto dib = dibIn(record, range);
    auto bitmap = dib ? m_writer.decode(*dib) : std::nullopt;
    if (!bitmap)
        return RecordFailed;
    transfer.bitmap = std::move(*bitmap);
    return m_writer.DrawBitmap(std::move(transfer));
}

} // namespace svgtool
