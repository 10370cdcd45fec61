#include "exact/emf/Emf2SVG.h"

#include "core/records/EmfRecordNames.h"
#include "exact/geometry/RectTools.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"
#include "exact/records/RecordCopy.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

static constexpr quint32 kSignature = 0x464D4520; // " EMF"
static constexpr quint32 kEndOfFile = 14; // EMR_EOF

Emf2SvgConverter::Emf2SvgConverter()
{
    SVGTOOL_TRACE("Emf2SvgConverter::Emf2SvgConverter");
}

qint32 Emf2SvgConverter::IsValidEMFFile(ENHMETAHEADER header) const
{
    SVGTOOL_TRACE("Emf2SvgConverter::IsValidEMFFile");
    return header.dSignature == kSignature ? 1 : -2;
}

void Emf2SvgConverter::InitEMFText()
{
    SVGTOOL_TRACE("Emf2SvgConverter::InitEMFText");
    m_recordNames = kEmfRecordNames;
}

qint32 Emf2SvgConverter::InitEMFRecHandlers()
{
    SVGTOOL_TRACE("Emf2SvgConverter::InitEMFRecHandlers");
    InitEMFText();
    m_scaleX = m_scaleY = m_modeScaleX = m_modeScaleY = 1.0F;
    m_windowOrigin = m_viewportOrigin = {};
    m_isAnisotropic = false;
    m_originX = m_originY = 0;
    updateAxes();

    struct Entry
    {
        quint32 type;
        Handler handler;
    };
    static constexpr Entry kHandlers[] = {
        { 42, &Emf2SvgConverter::OnEllipse }, // EMR_ELLIPSE
        { 43, &Emf2SvgConverter::OnRectangle }, // EMR_RECTANGLE
        { 44, &Emf2SvgConverter::OnRoundedRect }, // EMR_ROUNDRECT
        { 54, &Emf2SvgConverter::OnLineTo }, // EMR_LINETO
        { 45, &Emf2SvgConverter::OnArc }, // EMR_ARC
        { 55, &Emf2SvgConverter::OnArcTo }, // EMR_ARCTO
        { 46, &Emf2SvgConverter::OnChord }, // EMR_CHORD
        { 47, &Emf2SvgConverter::OnPie }, // EMR_PIE
        { 27, &Emf2SvgConverter::OnMoveToEx }, // EMR_MOVETOEX
        { 41, &Emf2SvgConverter::OnAngleArc }, // EMR_ANGLEARC
        { 3, &Emf2SvgConverter::OnPolygon }, // EMR_POLYGON
        { 86, &Emf2SvgConverter::OnPolygon16 }, // EMR_POLYGON16
        { 4, &Emf2SvgConverter::OnPolyLine }, // EMR_POLYLINE
        { 87, &Emf2SvgConverter::OnPolyLine16 }, // EMR_POLYLINE16
        { 6, &Emf2SvgConverter::OnPolyLineTo }, // EMR_POLYLINETO
        { 89, &Emf2SvgConverter::OnPolyLineTo16 }, // EMR_POLYLINETO16
        { 7, &Emf2SvgConverter::OnPolyPolyLine }, // EMR_POLYPOLYLINE
        { 90, &Emf2SvgConverter::OnPolyPolyLine16 }, // EMR_POLYPOLYLINE16
        { 8, &Emf2SvgConverter::OnPolyPolygon }, // EMR_POLYPOLYGON
        { 91, &Emf2SvgConverter::OnPolyPolygon16 }, // EMR_POLYPOLYGON16
        { 5, &Emf2SvgConverter::OnPolyBezierTo }, // EMR_POLYBEZIERTO
        { 88, &Emf2SvgConverter::OnPolyBezierTo16 }, // EMR_POLYBEZIERTO16
        { 2, &Emf2SvgConverter::OnPolyBezier }, // EMR_POLYBEZIER
        { 85, &Emf2SvgConverter::OnPolyBezier16 }, // EMR_POLYBEZIER16
        // Quirk: EMR_POLYDRAW (56) has no entry; only the 16-bit record is drawn.
        { 92, &Emf2SvgConverter::OnPolyDraw }, // EMR_POLYDRAW16
        { 25, &Emf2SvgConverter::OnSetBkColor }, // EMR_SETBKCOLOR
        { 38, &Emf2SvgConverter::OnCreatePen }, // EMR_CREATEPEN
        { 39, &Emf2SvgConverter::OnCreateBrushIndirect }, // EMR_CREATEBRUSHINDIRECT
        { 93, &Emf2SvgConverter::OnAcceptAndIgnore }, // EMR_CREATEMONOBRUSH
        { 95, &Emf2SvgConverter::OnCreatePenEx }, // EMR_EXTCREATEPEN
        { 37, &Emf2SvgConverter::OnSelectObject }, // EMR_SELECTOBJECT
        { 84, &Emf2SvgConverter::OnExtTextOutW }, // EMR_EXTTEXTOUTW
        { 24, &Emf2SvgConverter::OnSetTextColor }, // EMR_SETTEXTCOLOR
        { 82, &Emf2SvgConverter::OnExtCreateFontIndirect }, // EMR_EXTCREATEFONTINDIRECTW
        { 75, &Emf2SvgConverter::OnExtSetClipRgn }, // EMR_EXTSELECTCLIPRGN
        { 76, &Emf2SvgConverter::OnBitBlt }, // EMR_BITBLT
        { 71, &Emf2SvgConverter::OnFillRgn }, // EMR_FILLRGN
        { 72, &Emf2SvgConverter::OnFrameRgn }, // EMR_FRAMERGN
        { 40, &Emf2SvgConverter::OnDeleteObject }, // EMR_DELETEOBJECT
        { 18, &Emf2SvgConverter::OnSetBkMode }, // EMR_SETBKMODE
        { 11, &Emf2SvgConverter::OnSetViewPortEx }, // EMR_SETVIEWPORTEXTEX
        { 9, &Emf2SvgConverter::OnSetWindowsExt }, // EMR_SETWINDOWEXTEX
        { 10, &Emf2SvgConverter::OnSetWindowOrgEx }, // EMR_SETWINDOWORGEX
        { 12, &Emf2SvgConverter::OnSetViewPortOrgEx }, // EMR_SETVIEWPORTORGEX
        { 17, &Emf2SvgConverter::OnSetMapMode }, // EMR_SETMAPMODE
        { 59, &Emf2SvgConverter::OnBeginPath }, // EMR_BEGINPATH
        { 60, &Emf2SvgConverter::OnEndPath }, // EMR_ENDPATH
        { 64, &Emf2SvgConverter::OnStrokePath }, // EMR_STROKEPATH
        { 62, &Emf2SvgConverter::OnFillPath }, // EMR_FILLPATH
        { 61, &Emf2SvgConverter::OnCloseFigure }, // EMR_CLOSEFIGURE
        { 81, &Emf2SvgConverter::OnStretchDIB }, // EMR_STRETCHDIBITS
        { 116, &Emf2SvgConverter::OnTransparentBlt }, // EMR_TRANSPARENTBLT
        { 78, &Emf2SvgConverter::OnMaskBlt }, // EMR_MASKBLT
        { 77, &Emf2SvgConverter::OnStretchBlt }, // EMR_STRETCHBLT
        { 79, &Emf2SvgConverter::OnDoNothing }, // EMR_PLGBLT
        { 22, &Emf2SvgConverter::OnSetTextAlign }, // EMR_SETTEXTALIGN
        { 108, &Emf2SvgConverter::OnSmallTextOut }, // EMR_SMALLTEXTOUT
        { 67, &Emf2SvgConverter::OnSelectClipPath }, // EMR_SELECTCLIPPATH
        { 68, &Emf2SvgConverter::OnAbortPath }, // EMR_ABORTPATH
        { 35, &Emf2SvgConverter::OnSetWorldTransform }, // EMR_SETWORLDTRANSFORM
        { 36, &Emf2SvgConverter::OnModifyWorldTransform }, // EMR_MODIFYWORLDTRANSFORM
        { 30, &Emf2SvgConverter::OnAcceptAndIgnore }, // EMR_INTERSECTCLIPRECT
    };
    static_assert(std::size(kHandlers) == 62);
    static constexpr auto kByType = [] {
        std::array<Handler, std::size(kEmfRecordNames)> table{};
        for (const Entry &entry : kHandlers)
            table[entry.type] = entry.handler;
        return table;
    }();
    m_handlers = kByType;
    return 1;
}

// Halves round up. Every step is in single precision, on which the document's size depends.
static qint32 roundedSize(float value)
{
    const float floor = std::floor(value);
    return truncateToInt32(value < floor + 0.5F ? floor : std::ceil(value));
}

void Emf2SvgConverter::initFrame(const ENHMETAHEADER &header)
{
    SVGTOOL_TRACE("Emf2SvgConverter::initFrame");
    const RECTL &bounds = header.rclBounds;
    const RECTL &frame = header.rclFrame;
    // Quirk: right and bottom are passed where a width and a height are expected; the clip region
    // that later records are combined with starts from this rectangle.
    m_deviceRegion = QRegion(rectAt(bounds.left, bounds.top, bounds.right, bounds.bottom));
    m_clipRegion = m_deviceRegion;

    const auto frameWidth = static_cast<float>(wrapSub(frame.right, frame.left));
    const auto frameHeight = static_cast<float>(wrapSub(frame.bottom, frame.top));
    m_scaleX = frameWidth / static_cast<float>(wrapSub(bounds.right, bounds.left));
    m_scaleY = frameHeight / static_cast<float>(wrapSub(bounds.bottom, bounds.top));

    const float pixelsPerMmX =
            static_cast<float>(header.szlDevice.cx) / static_cast<float>(header.szlMillimeters.cx);
    const float pixelsPerMmY =
            static_cast<float>(header.szlDevice.cy) / static_cast<float>(header.szlMillimeters.cy);
    const float frameLeftMm = static_cast<float>(frame.left) / 100.0F;
    const float frameTopMm = static_cast<float>(frame.top) / 100.0F;
    const float cornerX = pixelsPerMmX * frameLeftMm;
    const float cornerY = pixelsPerMmY * frameTopMm;
    const float offsetX = cornerX - static_cast<float>(bounds.left);
    const float offsetY = cornerY - static_cast<float>(bounds.top);
    if ((offsetX > -1.0F && offsetX < 1.0F) || (offsetY > -1.0F && offsetY < 1.0F)) {
        m_originX = bounds.left;
        m_originY = bounds.top;
    } else {
        // Quirk: millimetres, not device units; every coordinate of such a file depends on it.
        m_originX = truncateToInt32(frameLeftMm);
        m_originY = truncateToInt32(frameTopMm);
    }
    updateAxes();

    const float frameWidthMm = frameWidth / 100.0F;
    const float frameHeightMm = frameHeight / 100.0F;
    const float width = pixelsPerMmX * frameWidthMm;
    const float height = pixelsPerMmY * frameHeightMm;
    m_writer.CreateXML(roundedSize(width), roundedSize(height));
}

qint32 Emf2SvgConverter::ConvertEMFToSVG(ByteView data, RecordDump *dump)
{
    SVGTOOL_TRACE("Emf2SvgConverter::ConvertEMFToSVG");
    if (data.data == nullptr)
        return 0;
    try {
        return convertRecords(data, dump);
    } catch (...) {
        logFatal(kTraceUnit, "Exception occured");
        return -1;
    }
}

qint32 Emf2SvgConverter::convertRecords(ByteView data, RecordDump *dump)
{
    const auto header = readRecord(data, &InitEnhMetaHeader);
    if (header.dSignature != kSignature)
        return 0;
    InitEMFRecHandlers();
    m_writer.makeRoom(data.size);
    initFrame(header);
    // Far more than a drawing needs, and still in proportion to the file.
    constexpr qint64 kClipRects = 100000;
    m_clipRectsLeft = data.size + kClipRects;
    if (dump != nullptr)
        dump->write("################# Start Of File ######################\n\n");
    // The header may be longer than its fixed part, so the records begin where it says it ends.
    if (m_tally != nullptr)
        m_tally->begin(std::min(int64_t(header.nSize), data.size), 2);
    if (!walkRecords(tail(data, header.nSize), header.nRecords, dump))
        return 0;
    m_writer.EndWorldTransform();
    m_writer.Close();
    if (dump != nullptr)
        dump->write("\n ############### End of File ##############\n\n");
    return 1;
}

bool Emf2SvgConverter::walkRecords(ByteView records, quint32 count, RecordDump *dump)
{
    SVGTOOL_TRACE("Emf2SvgConverter::walkRecords");
    RecordCopy copy;
    for (quint32 done = 0; done < count; ++done) {
        if (records.size < qint64(sizeof(EMR)))
            return endAt(StopReason::DataEnded);
        const auto head = readRecord(records, &InitEMR);
        // Nothing can be read behind a record that is cut off or does not hold its own head.
        if (head.nSize < sizeof(EMR) || head.nSize > records.size)
            return endAt(head.nSize < sizeof(EMR) ? StopReason::BadSize : StopReason::RecordCut);
        char *const record = copy.make(records, head.nSize);
        if (record == nullptr)
            return false;
        records = tail(records, head.nSize);
        if (head.iType == kEndOfFile)
            return endAt(StopReason::EndRecord);
        // Traced, it is dispatched by a call that reads the head again.
        if (isTracing()) [[unlikely]]
            HandleEnhMetaRecordData(record, head.nSize, dump);
        else
            handle(findHandler(head.iType, dump), record, head.nSize);
    }
    return endAt(StopReason::CountReached);
}

bool Emf2SvgConverter::endAt(StopReason reason)
{
    if (m_tally != nullptr)
        m_tally->end(reason);
    return true;
}

Emf2SvgConverter::Handler Emf2SvgConverter::findHandler(quint32 type, RecordDump *dump) const
{
    if (type < m_handlers.size() && m_handlers[type] != nullptr)
        return m_handlers[type];
    if (dump != nullptr && type < m_recordNames.size() && m_recordNames[type] != nullptr) {
        dump->write(m_recordNames[type]);
        dump->write("\n");
    }
    return nullptr;
}

qint32 Emf2SvgConverter::HandleEnhMetaRecordData(char *record, quint32 size, RecordDump *dump)
{
    Handler handler = nullptr;
    {
        // The exit line comes before the handler's own lines, not behind them.
        SVGTOOL_TRACE("Emf2SvgConverter::HandleEnhMetaRecordData");
        if (size == 0)
            return 0;
        const auto head = readRecord({ record, size }, &InitEMRMETARECORD);
        handler = findHandler(head.iType, dump);
    }
    return handle(handler, record, size);
}

qint32 Emf2SvgConverter::handle(Handler handler, char *record, quint32 size)
{
    if (m_tally != nullptr)
        return handleAndNote(handler, record, size);
    return handler != nullptr ? (this->*handler)(record, size) : 1;
}

qint32 Emf2SvgConverter::OnAcceptAndIgnore(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnAcceptAndIgnore");
    return record != nullptr && size != 0 ? 1 : 0;
}

qint32 Emf2SvgConverter::OnDoNothing(char * /*record*/, quint32 /*size*/)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnDoNothing");
    return 1;
}

} // namespace svgtool
