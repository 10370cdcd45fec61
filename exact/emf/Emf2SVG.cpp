#include "exact/emf/Emf2SVG.h"

#include "core/records/EmfRecordTypes.h"
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

Emf2SvgConverter::Emf2SvgConverter()
{
    SVGTOOL_TRACE("Emf2SvgConverter::Emf2SvgConverter");
}

qint32 Emf2SvgConverter::IsValidEMFFile(ENHMETAHEADER header) const
{
    SVGTOOL_TRACE("Emf2SvgConverter::IsValidEMFFile");
    return header.dSignature == kEmfSignature ? 1 : -2;
}

void Emf2SvgConverter::InitEMFText()
{
    SVGTOOL_TRACE("Emf2SvgConverter::InitEMFText");
    m_recordTypes = kEmfRecordTypes;
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
        { Emr::Ellipse, &Emf2SvgConverter::OnEllipse },
        { Emr::Rectangle, &Emf2SvgConverter::OnRectangle },
        { Emr::RoundRect, &Emf2SvgConverter::OnRoundedRect },
        { Emr::LineTo, &Emf2SvgConverter::OnLineTo },
        { Emr::Arc, &Emf2SvgConverter::OnArc },
        { Emr::ArcTo, &Emf2SvgConverter::OnArcTo },
        { Emr::Chord, &Emf2SvgConverter::OnChord },
        { Emr::Pie, &Emf2SvgConverter::OnPie },
        { Emr::MoveToEx, &Emf2SvgConverter::OnMoveToEx },
        { Emr::AngleArc, &Emf2SvgConverter::OnAngleArc },
        { Emr::Polygon, &Emf2SvgConverter::OnPolygon },
        { Emr::Polygon16, &Emf2SvgConverter::OnPolygon16 },
        { Emr::Polyline, &Emf2SvgConverter::OnPolyLine },
        { Emr::Polyline16, &Emf2SvgConverter::OnPolyLine16 },
        { Emr::PolylineTo, &Emf2SvgConverter::OnPolyLineTo },
        { Emr::PolylineTo16, &Emf2SvgConverter::OnPolyLineTo16 },
        { Emr::PolyPolyline, &Emf2SvgConverter::OnPolyPolyLine },
        { Emr::PolyPolyline16, &Emf2SvgConverter::OnPolyPolyLine16 },
        { Emr::PolyPolygon, &Emf2SvgConverter::OnPolyPolygon },
        { Emr::PolyPolygon16, &Emf2SvgConverter::OnPolyPolygon16 },
        { Emr::PolyBezierTo, &Emf2SvgConverter::OnPolyBezierTo },
        { Emr::PolyBezierTo16, &Emf2SvgConverter::OnPolyBezierTo16 },
        { Emr::PolyBezier, &Emf2SvgConverter::OnPolyBezier },
        { Emr::PolyBezier16, &Emf2SvgConverter::OnPolyBezier16 },
        // Quirk: Emr::PolyDraw has no entry; only the 16-bit record is drawn.
        { Emr::PolyDraw16, &Emf2SvgConverter::OnPolyDraw },
        { Emr::SetBkColor, &Emf2SvgConverter::OnSetBkColor },
        { Emr::CreatePen, &Emf2SvgConverter::OnCreatePen },
        { Emr::CreateBrushIndirect, &Emf2SvgConverter::OnCreateBrushIndirect },
        { Emr::CreateMonoBrush, &Emf2SvgConverter::OnAcceptAndIgnore },
        { Emr::ExtCreatePen, &Emf2SvgConverter::OnCreatePenEx },
        { Emr::SelectObject, &Emf2SvgConverter::OnSelectObject },
        { Emr::ExtTextOutW, &Emf2SvgConverter::OnExtTextOutW },
        { Emr::SetTextColor, &Emf2SvgConverter::OnSetTextColor },
        { Emr::ExtCreateFontIndirectW, &Emf2SvgConverter::OnExtCreateFontIndirect },
        { Emr::ExtSelectClipRgn, &Emf2SvgConverter::OnExtSetClipRgn },
        { Emr::BitBlt, &Emf2SvgConverter::OnBitBlt },
        { Emr::FillRgn, &Emf2SvgConverter::OnFillRgn },
        { Emr::FrameRgn, &Emf2SvgConverter::OnFrameRgn },
        { Emr::DeleteObject, &Emf2SvgConverter::OnDeleteObject },
        { Emr::SetBkMode, &Emf2SvgConverter::OnSetBkMode },
        { Emr::SetViewportExtEx, &Emf2SvgConverter::OnSetViewPortEx },
        { Emr::SetWindowExtEx, &Emf2SvgConverter::OnSetWindowsExt },
        { Emr::SetWindowOrgEx, &Emf2SvgConverter::OnSetWindowOrgEx },
        { Emr::SetViewportOrgEx, &Emf2SvgConverter::OnSetViewPortOrgEx },
        { Emr::SetMapMode, &Emf2SvgConverter::OnSetMapMode },
        { Emr::BeginPath, &Emf2SvgConverter::OnBeginPath },
        { Emr::EndPath, &Emf2SvgConverter::OnEndPath },
        { Emr::StrokePath, &Emf2SvgConverter::OnStrokePath },
        { Emr::FillPath, &Emf2SvgConverter::OnFillPath },
        { Emr::CloseFigure, &Emf2SvgConverter::OnCloseFigure },
        { Emr::StretchDIBits, &Emf2SvgConverter::OnStretchDIB },
        { Emr::TransparentBlt, &Emf2SvgConverter::OnTransparentBlt },
        { Emr::MaskBlt, &Emf2SvgConverter::OnMaskBlt },
        { Emr::StretchBlt, &Emf2SvgConverter::OnStretchBlt },
        { Emr::PlgBlt, &Emf2SvgConverter::OnDoNothing },
        { Emr::SetTextAlign, &Emf2SvgConverter::OnSetTextAlign },
        { Emr::SmallTextOut, &Emf2SvgConverter::OnSmallTextOut },
        { Emr::SelectClipPath, &Emf2SvgConverter::OnSelectClipPath },
        { Emr::AbortPath, &Emf2SvgConverter::OnAbortPath },
        { Emr::SetWorldTransform, &Emf2SvgConverter::OnSetWorldTransform },
        { Emr::ModifyWorldTransform, &Emf2SvgConverter::OnModifyWorldTransform },
        { Emr::IntersectClipRect, &Emf2SvgConverter::OnAcceptAndIgnore },
    };
    static_assert(std::size(kHandlers) == 62);
    static constexpr auto kByType = [] {
        std::array<Handler, Emr::CreateColorSpaceW + 1> table{};
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
    if (header.dSignature != kEmfSignature)
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
        if (head.iType == Emr::Eof)
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
    if (dump != nullptr && dump->isOn)
        dump->write(emfDumpLine(m_recordTypes, type));
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
