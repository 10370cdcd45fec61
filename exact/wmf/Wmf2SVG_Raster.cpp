#include "exact/wmf/Wmf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <type_traits>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

namespace {

    constexpr quint16 kBitBlt = 0x0922; // META_BITBLT
    constexpr quint16 kStretchBlt = 0x0B23; // META_STRETCHBLT

    // The fields of a bitmap record stand in the reverse order of the call, as they do in all
    // records: heights before widths, and y before x.

    WMR headOf(const char *record, quint32 size)
    {
        return readRecord({ record, size }, &InitMETARECORD);
    }

    // A record without a bitmap is as long as its function number says.
    bool hasBitmap(const WMR &head, quint32 size)
    {
        const quint32 words = (head.rdFunction >> 8) + 3U;
        return size / 2 != words;
    }

} // namespace

RECTL WMF2SVGConverter::mapCorners(const TransferTarget &to) const
{
    return { MapX(to.xDest), MapY(to.yDest), MapX(wrapToInt16(to.xDest + to.cxDest)),
             MapY(wrapToInt16(to.yDest + to.cyDest)) };
}

template<class Record>
BitmapTransfer WMF2SVGConverter::transferOf(const Record &blt) const
{
    BitmapTransfer transfer;
    transfer.corners = mapCorners(blt);
    transfer.operation = RasterOperation(blt.dwRop);
    transfer.sourceX = blt.xSrc;
    transfer.sourceY = blt.ySrc;
    if constexpr (std::is_base_of_v<SourceSize, Record>) {
        transfer.sourceWidth = blt.cxSrc;
        transfer.sourceHeight = blt.cySrc;
    } else {
        transfer.sourceWidth = blt.cxDest;
        transfer.sourceHeight = blt.cyDest;
    }
    return transfer;
}

// A reserved word stands before the destination, whose last word is where bitmaps begin.
qint32 WMF2SVGConverter::paintWithoutBitmap(const TransferTarget &moved, ByteView behind,
                                            RasterOperation operation)
{
    const auto xDest = qFromLittleEndian(readPadded<qint16>(behind));
    const TransferTarget to{ moved.cxDest, moved.yDest, moved.xDest, xDest };
    return m_writer.PatBlt(mapCorners(to), operation);
}

qint32 WMF2SVGConverter::drawBitmap(BitmapTransfer transfer, ByteView bytes, quint32 usage,
                                    bool isDeviceDependent)
{
    auto bitmap = isDeviceDependent ? decodeBitmap16(bytes) : std::nullopt;
    if (!isDeviceDependent) {
        if (const auto dib = splitPackedDib(bytes, usage))
            bitmap = m_writer.decode(*dib);
    }
    if (!bitmap)
        return RecordFailed;
    transfer.bitmap = std::move(*bitmap);
    return m_writer.DrawBitmap(std::move(transfer));
}

qint32 WMF2SVGConverter::OnMetaPatBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaPatBlt");
    const auto blt = readRecord({ record, size }, &InitWMRPATBLT);
    if (size < sizeof blt)
        return RecordFailed;
    return m_writer.PatBlt(mapCorners(blt), RasterOperation(blt.dwRop));
}

qint32 WMF2SVGConverter::OnDIBBitBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnDIBBitBlt");
    const auto blt = readRecord({ record, size }, &InitWMRBITBLT);
    if (size < quint32(WMRBITBLT::kBitmapOffset))
        return RecordFailed;
    const WMR head = headOf(record, size);
    const ByteView bitmap = tail({ record, size }, WMRBITBLT::kBitmapOffset);
    if (!hasBitmap(head, size))
        return paintWithoutBitmap(blt, bitmap, RasterOperation(blt.dwRop));
    return drawBitmap(transferOf(blt), bitmap, 0, head.rdFunction == kBitBlt);
}

qint32 WMF2SVGConverter::OnStretchDIB(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnStretchDIB");
    // Quirk: the device-dependent record shares this handler, though it has no usage word and its
    // fields lie as those of the device-independent stretch do.
    if (headOf(record, size).rdFunction == kStretchBlt)
        return OnDIBStretchBlt(record, size);
    const auto blt = readRecord({ record, size }, &InitWMRSTRETCHBLT);
    if (size < sizeof blt)
        return RecordFailed;
    BitmapTransfer transfer = transferOf(blt);
    transfer.countsFromBottom = true;
    const ByteView bitmap = tail({ record, size }, sizeof blt);
    if (bitmap.size == 0)
        return m_writer.PatBlt(transfer.corners, transfer.operation);
    return drawBitmap(std::move(transfer), bitmap, blt.iUsage, false);
}

qint32 WMF2SVGConverter::OnDIBStretchBlt(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnDIBStretchBlt");
    const auto blt = readRecord({ record, size }, &InitWMRDIBSTRETCHBLT);
    if (size < sizeof blt)
        return RecordFailed;
    const WMR head = headOf(record, size);
    const ByteView bitmap = tail({ record, size }, sizeof blt);
    if (!hasBitmap(head, size))
        return paintWithoutBitmap(blt, bitmap, RasterOperation(blt.dwRop));
    return drawBitmap(transferOf(blt), bitmap, 0, head.rdFunction == kStretchBlt);
}

} // namespace svgtool
