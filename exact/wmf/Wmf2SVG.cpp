#include "exact/wmf/Wmf2SVG.h"

#include "core/base/Numeric.h"
#include "core/records/WmfRecordTypes.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"
#include "exact/records/RecordCopy.h"

#include <algorithm>
#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

WMF2SVGConverter::WMF2SVGConverter()
{
    SVGTOOL_TRACE("WMF2SVGConverter::WMF2SVGConverter");
}

qint32 WMF2SVGConverter::InitializeCoordinates(bool isPlaceable, const METAPLACEABLEHEADER &header)
{
    SVGTOOL_TRACE("WMF2SVGConverter::InitializeCoordinates");
    m_screenDpi = 96;
    m_hasPlaceableHeader = isPlaceable;
    if (isPlaceable) {
        m_width = wrapToInt16(header.Right - header.Left);
        m_height = wrapToInt16(header.Bottom - header.Top);
        m_unitsPerInch = header.Inch;
        m_unitsPerPixel = static_cast<float>(header.Inch) / 96.0F;
    } else {
        m_unitsPerInch = 1440;
        m_unitsPerPixel = 15.0F;
    }
    return m_hasPlaceableHeader ? 1 : 0;
}

void WMF2SVGConverter::InitWMFText()
{
    SVGTOOL_TRACE("WMF2SVGConverter::InitWMFText");
    logInfo(kTraceUnit, "Setup WMF record names buffer");
    m_recordTypes = kWmfRecordTypes;
}

void WMF2SVGConverter::InitWMFRecHandlers()
{
    SVGTOOL_TRACE("WMF2SVGConverter::InitWMFRecHandlers");
    InitWMFText();
    logInfo(kTraceUnit, "Setup WMF record handlers");
    m_screenDpi = 96;
    m_winOrgX = 0;
    m_winExtX = 1;
    m_winExtY = 1;
    // Quirk: the vertical origin starts one unit off; every y of a file that sets none depends
    // on it.
    m_winOrgY = 1;

    static constexpr HandlerEntry kHandlers[] = {
        { Meta::SetBkMode, &WMF2SVGConverter::OnMetaSetBkMode },
        // Quirk: the map mode is ignored and arcs draw nothing; hosts compare documents.
        { Meta::SetMapMode, &WMF2SVGConverter::OnDoNothing },
        { Meta::SelectObject, &WMF2SVGConverter::OnMetaSelectObject },
        { Meta::DeleteObject, &WMF2SVGConverter::OnMetaDeleteObject },
        { Meta::SetWindowOrg, &WMF2SVGConverter::OnMetaSetWinOrg },
        { Meta::SetWindowExt, &WMF2SVGConverter::OnMetaSetWinExt },
        { Meta::LineTo, &WMF2SVGConverter::OnMetaLineTo },
        { Meta::MoveTo, &WMF2SVGConverter::OnMetaMove },
        { Meta::CreatePenIndirect, &WMF2SVGConverter::OnCreatePenIndirect },
        { Meta::CreateFontIndirect, &WMF2SVGConverter::OnMetaCreateFontIndirect },
        { Meta::CreateBrushIndirect, &WMF2SVGConverter::OnMetaCreateBrushIndirect },
        { Meta::Polygon, &WMF2SVGConverter::OnMetaPolygon },
        { Meta::Polyline, &WMF2SVGConverter::OnMetaPolyLine },
        { Meta::Ellipse, &WMF2SVGConverter::OnMetaEllipse },
        { Meta::Rectangle, &WMF2SVGConverter::OnMetaRectangle },
        { Meta::PolyPolygon, &WMF2SVGConverter::OnMetaPolyPolygon },
        { Meta::PatBlt, &WMF2SVGConverter::OnMetaPatBlt },
        { Meta::Arc, &WMF2SVGConverter::OnDoNothing },
        { Meta::BitBlt, &WMF2SVGConverter::OnDIBBitBlt },
        { Meta::DibBitBlt, &WMF2SVGConverter::OnDIBBitBlt },
        { Meta::ExtTextOut, &WMF2SVGConverter::OnMetaExtTextOut },
        { Meta::StretchBlt, &WMF2SVGConverter::OnStretchDIB },
        { Meta::DibStretchBlt, &WMF2SVGConverter::OnDIBStretchBlt },
        { Meta::StretchDib, &WMF2SVGConverter::OnStretchDIB },
    };
    static_assert(std::size(kHandlers) == 24);
    static_assert(std::ranges::is_sorted(kHandlers, {}, &HandlerEntry::function));
    m_handlers = kHandlers;
}

// A 16-bit length in pixels, truncated toward zero.
static qint32 toPixels(qint16 value, float unitsPerPixel)
{
    const float pixels = static_cast<float>(value) / unitsPerPixel;
    return truncateToInt32(pixels);
}

void WMF2SVGConverter::openDocument()
{
    SVGTOOL_TRACE("WMF2SVGConverter::openDocument");
    if (m_hasPlaceableHeader)
        m_writer.CreateXML(toPixels(m_width, m_unitsPerPixel), toPixels(m_height, m_unitsPerPixel));
    else
        m_writer.CreateXML(1024, 768);
}

qint32 WMF2SVGConverter::ConvertWMFToSVG(ByteView records, qint64 totalBytes,
                                         quint32 maxRecordWords, RecordDump *dump)
{
    SVGTOOL_TRACE("WMF2SVGConverter::ConvertWMFToSVG");
    if (records.data == nullptr)
        return 0;
    try {
        InitWMFRecHandlers();
        m_writer.makeRoom(records.size);
        openDocument();
        if (dump != nullptr)
            dump->write("#Start Of File\n\n");
        if (!walkRecords(records, totalBytes, maxRecordWords, dump))
            return 0;
        if (dump != nullptr)
            dump->write("\nEnd of File\n\n");
        m_writer.Close();
        return 2;
    } catch (...) {
        logFatal(kTraceUnit, "Exception occured while converting WMF file to SVG");
        return -1;
    }
}

bool WMF2SVGConverter::walkRecords(ByteView records, qint64 totalBytes, quint32 maxRecordWords,
                                   RecordDump *dump)
{
    SVGTOOL_TRACE("WMF2SVGConverter::walkRecords");
    constexpr quint32 kHeadWords = sizeof(WMR) / 2;
    qint64 walkedBytes = 0;
    RecordCopy copy;
    while (records.size >= qint64(sizeof(WMR))) {
        const auto head = readRecord(records, &InitWMR);
        const qint64 bytes = qint64(head.rdSize) * 2;
        // Nothing can be read behind a record that is cut off or does not hold its own head.
        if (head.rdSize > maxRecordWords || head.rdSize < kHeadWords || bytes > records.size)
            return endAt(bytes > records.size ? StopReason::RecordCut : StopReason::BadSize);
        walkedBytes += bytes;
        // Quirk: the record that reaches the length of the header is not handled, even if it
        // draws. The length counts the headers too, so ordinary files end on their end record.
        if (totalBytes <= walkedBytes)
            return endAt(head.rdFunction == Meta::Eof ? StopReason::EndRecord
                                                      : StopReason::LengthReached);
        char *const record = copy.make(records, bytes);
        if (record == nullptr)
            return false;
        records = tail(records, bytes);
        if (head.rdFunction == Meta::Eof)
            return endAt(StopReason::EndRecord);
        // Traced, it is dispatched by a call that reads the head again.
        if (isTracing()) [[unlikely]]
            HandleWMFRecordData(record, static_cast<quint32>(bytes), dump);
        else
            handle(head.rdFunction, record, static_cast<quint32>(bytes), dump);
    }
    return endAt(StopReason::DataEnded);
}

bool WMF2SVGConverter::endAt(StopReason reason)
{
    if (m_tally != nullptr)
        m_tally->end(reason);
    return true;
}

void WMF2SVGConverter::HandleWMFRecordData(char *record, quint32 size, RecordDump *dump)
{
    SVGTOOL_TRACE("WMF2SVGConverter::HandleWMFRecordData");
    handle(readRecord({ record, size }, &InitMETARECORD).rdFunction, record, size, dump);
}

void WMF2SVGConverter::handle(quint16 function, char *record, quint32 size, RecordDump *dump)
{
    const auto entry = std::ranges::lower_bound(m_handlers, function, {}, &HandlerEntry::function);
    const Handler handler =
            entry != m_handlers.end() && entry->function == function ? entry->handler : nullptr;
    if (m_tally != nullptr)
        handleAndNote(handler, record, size, function);
    else if (handler != nullptr)
        (this->*handler)(record, size);
    if (dump != nullptr && dump->isOn)
        dump->write(wmfDumpLine(m_recordTypes, function));
}

// A length in 16 bits: first in pixels, then scaled from the window to the picture.
static qint16 scaled16(qint16 length, float unitsPerPixel, bool hasFactor, float factor)
{
    const qint16 pixels = wrapToInt16(toPixels(length, unitsPerPixel));
    if (!hasFactor)
        return pixels;
    const float product = factor * static_cast<float>(pixels);
    return wrapToInt16(truncateToInt32(product));
}

qint16 WMF2SVGConverter::scaleX(qint16 length) const
{
    return scaled16(length, m_unitsPerPixel, m_hasPlaceableHeader, m_factorX);
}

qint16 WMF2SVGConverter::scaleY(qint16 length) const
{
    return scaled16(length, m_unitsPerPixel, m_hasPlaceableHeader, m_factorY);
}

qint16 WMF2SVGConverter::positionX(qint16 x) const
{
    return scaleX(wrapToInt16(x - m_winOrgX));
}

qint16 WMF2SVGConverter::positionY(qint16 y) const
{
    return scaleY(wrapToInt16(y - m_winOrgY));
}

qint16 WMF2SVGConverter::MapX(qint16 x) const
{
    SVGTOOL_TRACE("WMF2SVGConverter::MapX");
    return positionX(x);
}

qint16 WMF2SVGConverter::MapY(qint16 y) const
{
    SVGTOOL_TRACE("WMF2SVGConverter::MapY");
    return positionY(y);
}

// Traced, each coordinate is a call of its own; else the level is asked once for all of them.

POINTL WMF2SVGConverter::mapPoint(qint16 x, qint16 y) const
{
    if (isTracing())
        return { MapX(x), MapY(y) };
    return { positionX(x), positionY(y) };
}

std::vector<POINTL> WMF2SVGConverter::mapPoints(ByteView points) const
{
    std::vector<POINTL> mapped(size_t(points.size / qint64(sizeof(POINTS))));
    const bool traces = isTracing();
    for (size_t i = 0; i < mapped.size(); ++i) {
        const auto point = elementAt<POINTS>(points, qint64(i));
        if (traces)
            mapped[i] = { MapX(point.x), MapY(point.y) };
        else
            mapped[i] = { positionX(point.x), positionY(point.y) };
    }
    return mapped;
}

// The pair of a record whose parameters are one pair.
static PointYX readPair(const char *record, quint32 size)
{
    return readRecord({ record, size }, &InitWMRSETVIEWPORTORGEX).pt;
}

qint32 WMF2SVGConverter::OnMetaSetWinOrg(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaSetWinOrg");
    const PointYX origin = readPair(record, size);
    m_winOrgX = origin.x;
    m_winOrgY = origin.y;
    return 1;
}

qint32 WMF2SVGConverter::OnMetaSetWinExt(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaSetWinExt");
    const PointYX extent = readPair(record, size);
    m_winExtX = extent.x;
    m_winExtY = extent.y;
    // Quirk: with an extent of 0 on one axis, both scales become the picture's size, undivided.
    const bool divides = m_winExtX != 0 && m_winExtY != 0;
    m_factorX = static_cast<float>(m_width) / (divides ? static_cast<float>(m_winExtX) : 1.0F);
    m_factorY = static_cast<float>(m_height) / (divides ? static_cast<float>(m_winExtY) : 1.0F);
    return m_hasPlaceableHeader && divides ? RecordHandled : RecordApproximated;
}

qint32 WMF2SVGConverter::OnMetaSetBkMode(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaSetBkMode");
    if (record == nullptr || size == 0)
        return 1;
    // The parameter is one word, as the object index of a selection is.
    m_writer.SetBkMode(readRecord({ record, size }, &InitWMRSELECTOBJECT).ihObject);
    return 1;
}

qint32 WMF2SVGConverter::OnDoNothing(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnDoNothing");
    return 1;
}

} // namespace svgtool
