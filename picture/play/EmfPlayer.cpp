#include "picture/play/EmfPlayer.h"

#include "core/base/Limits.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/MetafileFacts.h"
#include "picture/play/EmfCalls.h"
#include "picture/play/RecordRow.h"
#include "picture/play/TextCharacters.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    using enum emf::Width;

    // All types, by number.
    // clang-format off
    constexpr RecordRow kRows[] = {
        { Emr::Header, neutral },
        { Emr::PolyBezier, emf::points<Long, &DeviceContext::polyBezier> },
        { Emr::Polygon, emf::points<Long, &DeviceContext::polygon> },
        { Emr::Polyline, emf::points<Long, &DeviceContext::polyline> },
        { Emr::PolyBezierTo, emf::points<Long, &DeviceContext::polyBezierTo> },
        { Emr::PolylineTo, emf::points<Long, &DeviceContext::polylineTo> },
        { Emr::PolyPolyline, emf::figures<Long, &DeviceContext::polyPolyline> },
        { Emr::PolyPolygon, emf::figures<Long, &DeviceContext::polyPolygon> },
        { Emr::SetWindowExtEx, emf::pair<&DeviceContext::setWindowExtent> },
        { Emr::SetWindowOrgEx, emf::pair<&DeviceContext::setWindowOrigin> },
        { Emr::SetViewportExtEx, emf::pair<&DeviceContext::setViewportExtent> },
        { Emr::SetViewportOrgEx, emf::pair<&DeviceContext::setViewportOrigin> },
        { Emr::SetBrushOrgEx, emf::pair<&DeviceContext::setBrushOrigin> },
        { Emr::Eof, neutral },
        { Emr::SetPixelV, emf::setPixel },
        { Emr::SetMapperFlags, neutral },
        { Emr::SetMapMode, emf::number<&DeviceContext::setMapMode> },
        { Emr::SetBkMode, emf::number<&DeviceContext::setBackgroundMode> },
        { Emr::SetPolyFillMode, emf::number<&DeviceContext::setPolygonFillMode> },
        { Emr::SetRop2, emf::number<&DeviceContext::setRop2> },
        { Emr::SetStretchBltMode, emf::number<&DeviceContext::setStretchMode> },
        { Emr::SetTextAlign, emf::number<&DeviceContext::setTextAlign> },
        { Emr::SetColorAdjustment, neutral },
        { Emr::SetTextColor, emf::color<&DeviceContext::setTextColor> },
        { Emr::SetBkColor, emf::color<&DeviceContext::setBackgroundColor> },
        { Emr::OffsetClipRgn, emf::point<&DeviceContext::offsetClip> },
        { Emr::MoveToEx, emf::point<&DeviceContext::moveTo> },
        { Emr::SetMetaRgn, emf::plain<&DeviceContext::setMetaRegion> },
        { Emr::ExcludeClipRect, emf::box<&DeviceContext::excludeClip> },
        { Emr::IntersectClipRect, emf::box<&DeviceContext::intersectClip> },
        { Emr::ScaleViewportExtEx, emf::scaleViewportExtent },
        { Emr::ScaleWindowExtEx, emf::scaleWindowExtent },
        { Emr::SaveDC, emf::plain<&DeviceContext::saveState> },
        { Emr::RestoreDC, emf::restoreState },
        { Emr::SetWorldTransform, emf::setWorldTransform },
        { Emr::ModifyWorldTransform, emf::modifyWorldTransform },
        { Emr::SelectObject, emf::number<&DeviceContext::selectObject> },
        { Emr::CreatePen, emf::createPen },
        { Emr::CreateBrushIndirect, emf::createBrush },
        { Emr::DeleteObject, emf::number<&DeviceContext::deleteObject> },
        { Emr::AngleArc, emf::angleArc },
        { Emr::Ellipse, emf::box<&DeviceContext::ellipse> },
        { Emr::Rectangle, emf::box<&DeviceContext::rectangle> },
        { Emr::RoundRect, emf::roundRectangle },
        { Emr::Arc, emf::arc<&DeviceContext::arc> },
        { Emr::Chord, emf::arc<&DeviceContext::chord> },
        { Emr::Pie, emf::arc<&DeviceContext::pie> },
        { Emr::SelectPalette, emf::number<&DeviceContext::selectPalette> },
        { Emr::CreatePalette, emf::createPalette },
        { Emr::SetPaletteEntries, emf::setPaletteEntries },
        { Emr::ResizePalette, emf::resizePalette },
        { Emr::RealizePalette, neutral },
        { Emr::ExtFloodFill, emf::floodFill },
        { Emr::LineTo, emf::point<&DeviceContext::lineTo> },
        { Emr::ArcTo, emf::arc<&DeviceContext::arcTo> },
        { Emr::PolyDraw, emf::polyDraw<Long> },
        { Emr::SetArcDirection, emf::number<&DeviceContext::setArcDirection> },
        { Emr::SetMiterLimit, emf::setMiterLimit },
        { Emr::BeginPath, emf::plain<&DeviceContext::beginPath> },
        { Emr::EndPath, emf::plain<&DeviceContext::endPath> },
        { Emr::CloseFigure, emf::plain<&DeviceContext::closeFigure> },
        { Emr::FillPath, emf::plain<&DeviceContext::fillPath> },
        { Emr::StrokeAndFillPath, emf::plain<&DeviceContext::strokeAndFillPath> },
        { Emr::StrokePath, emf::plain<&DeviceContext::strokePath> },
        { Emr::FlattenPath, emf::plain<&DeviceContext::flattenPath> },
        { Emr::WidenPath, emf::plain<&DeviceContext::widenPath> },
        { Emr::SelectClipPath, emf::number<&DeviceContext::selectClipPath> },
        { Emr::AbortPath, emf::plain<&DeviceContext::abortPath> },
        { Emr::GdiComment, neutral },
        { Emr::FillRgn, emf::fillRegion },
        { Emr::FrameRgn, emf::frameRegion },
        { Emr::InvertRgn, emf::invertRegion },
        { Emr::PaintRgn, emf::paintRegion },
        { Emr::ExtSelectClipRgn, emf::selectClipRegion },
        { Emr::BitBlt, emf::bitBlt },
        { Emr::StretchBlt, emf::stretchBlt },
        { Emr::MaskBlt, emf::maskBlt },
        { Emr::PlgBlt, emf::plgBlt },
        { Emr::SetDIBitsToDevice, emf::setDibitsToDevice },
        { Emr::StretchDIBits, emf::stretchDibits },
        { Emr::ExtCreateFontIndirectW, emf::createFont },
        { Emr::ExtTextOutA, emf::textOut<emf::Encoding::Bytes> },
        { Emr::ExtTextOutW, emf::textOut<emf::Encoding::Unicode> },
        { Emr::PolyBezier16, emf::points<Short, &DeviceContext::polyBezier> },
        { Emr::Polygon16, emf::points<Short, &DeviceContext::polygon> },
        { Emr::Polyline16, emf::points<Short, &DeviceContext::polyline> },
        { Emr::PolyBezierTo16, emf::points<Short, &DeviceContext::polyBezierTo> },
        { Emr::PolylineTo16, emf::points<Short, &DeviceContext::polylineTo> },
        { Emr::PolyPolyline16, emf::figures<Short, &DeviceContext::polyPolyline> },
        { Emr::PolyPolygon16, emf::figures<Short, &DeviceContext::polyPolygon> },
        { Emr::PolyDraw16, emf::polyDraw<Short> },
        { Emr::CreateMonoBrush, emf::createMonoBrush },
        { Emr::CreateDIBPatternBrushPt, emf::createDibBrush },
        { Emr::ExtCreatePen, emf::extCreatePen },
        { Emr::PolyTextOutA, emf::polyTextOut<emf::Encoding::Bytes> },
        { Emr::PolyTextOutW, emf::polyTextOut<emf::Encoding::Unicode> },
        { Emr::SetICMMode, neutral },
        { Emr::CreateColorSpace, emf::createOther },
        { Emr::SetColorSpace, neutral },
        { Emr::DeleteColorSpace, neutral },
        { Emr::GlsRecord, nullptr, notDone("it holds commands of OpenGL") },
        { Emr::GlsBoundedRecord, nullptr, notDone("it holds commands of OpenGL") },
        { Emr::PixelFormat, neutral },
        { Emr::DrawEscape, nullptr, notDone("it is meant for the driver of a device") },
        { Emr::ExtEscape, nullptr, notDone("it is meant for the driver of a device") },
        { Emr::Reserved107, nullptr, notDone("its meaning is not documented") },
        { Emr::SmallTextOut, emf::smallTextOut },
        { Emr::ForceUfiMapping, neutral },
        { Emr::NamedEscape, nullptr, notDone("it is meant for the driver of a device") },
        { Emr::ColorCorrectPalette, neutral },
        { Emr::SetICMProfileA, neutral },
        { Emr::SetICMProfileW, neutral },
        { Emr::AlphaBlend, emf::alphaBlend },
        { Emr::SetLayout, emf::number<&DeviceContext::setLayout> },
        { Emr::TransparentBlt, emf::transparentBlt },
        { Emr::GradientFill, emf::gradientFill },
        { Emr::SetLinkedUfis, neutral },
        { Emr::SetTextJustification, emf::setTextJustification },
        { Emr::ColorMatchToTargetW, neutral },
        { Emr::CreateColorSpaceW, emf::createOther },
    };
    // clang-format on
    static_assert(std::ranges::equal(kRows, kEmfRecordTypes, {}, &RecordRow::type,
                                     &RecordType::number));

} // namespace

// A comment may hold EMF+ records ([MS-EMF] 2.3.3.2). They are drawn a second time by EMF records
// unless the EMF+ header ([MS-EMFPLUS] 2.3.3.3) says otherwise.
Played EmfPlayer::comment(ByteView record)
{
    constexpr int64_t kIdentifier = 12, kLeast = 12;
    constexpr uint32_t kEmfPlus = 0x2B464D45, kDual = 1;
    constexpr uint32_t kHeader = 0x4001, kFirstDrawing = 0x4009, kLastDrawing = 0x401C;
    constexpr uint32_t kDrawDriverString = 0x4036, kStrokeFillPath = 0x4037;
    Fields fields(record, kIdentifier);
    if (fields.dword() != kEmfPlus)
        return kNeutral;
    bool draws = false;
    while (slice(record, fields.offset(), kLeast)) {
        const uint32_t type = fields.word(), flags = fields.word();
        const int64_t size = fields.dword();
        if (size < kLeast)
            break;
        if (type == kHeader)
            m_isEmfPlusOnly = (flags & kDual) == 0;
        draws = draws || (type >= kFirstDrawing && type <= kLastDrawing)
                || type == kDrawDriverString || type == kStrokeFillPath;
        fields.skip(size - 8); // of which the fields above were read
    }
    return draws && m_isEmfPlusOnly ? notDone("EMF+ records are not drawn yet") : kNeutral;
}

Played EmfPlayer::play(uint32_t type, ByteView record)
{
    return type == Emr::GdiComment ? comment(record) : playByRow(kRows, m_context, type, record);
}

void EmfPlayer::playAll(ByteView file, int64_t firstRecord, RecordTally *tally)
{
    constexpr uint32_t kFirst = 2; // the header is the first
    const RecordIterator records(MetafileFormat::Emf, file, firstRecord);
    m_context.setSystemCharSet(systemCharSet(records, MetafileFormat::Emf));
    playRecords(records, kFirst, m_context, tally,
                [this](const Record &record) { return play(record.type, record.bytes); });
}

} // namespace svgtool::picture
