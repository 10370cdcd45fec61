#include "picture/play/EmfPlayer.h"

#include "core/base/Limits.h"
#include "core/records/EmfPlusRecordTypes.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "core/records/MetafileFacts.h"
#include "picture/play/EmfCalls.h"
#include "picture/play/RecordRow.h"
#include "picture/play/RecordSupport.h"
#include "picture/play/TextCharacters.h"

#include <algorithm>
#include <cstddef>

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

std::vector<RecordSupport> emfSupport()
{
    return supportOf(kRows, neutral);
}

// A comment may hold EMF+ records ([MS-EMF] 2.3.3.2). They are played from their header
// ([MS-EMFPLUS] 2.3.3.3) on, unless the file is to be played by its EMF records and has these.
// Where others have drawn before that, neither kind holds the picture alone, and both are played.
Played EmfPlayer::comment(const Record &record, uint32_t number, RecordTally *tally)
{
    constexpr int64_t kSize = 8, kIdentifier = 12, kRecords = 16;
    constexpr uint32_t kEmfPlus = 0x2B464D45, kPublic = 0x43494447;
    constexpr uint16_t kDual = 1;
    Fields fields(record.bytes, kSize);
    const int64_t size = int64_t(fields.dword()) - (kRecords - kIdentifier);
    const uint32_t identifier = fields.dword();
    const ByteView rest = tail(record.bytes, kRecords);
    if (identifier == kPublic)
        group(rest);
    if (identifier != kEmfPlus)
        return kNeutral;
    const ByteView records = slice(rest, 0, size).value_or(rest);
    Fields first(records);
    if (m_plus == nullptr && first.word() == EmfPlus::Header) {
        m_isDual = (first.word() & kDual) != 0;
        m_isAdded = m_context.builder().mark().nodes > m_nodesBefore;
        if (!m_isDual || m_dual == Dual::EmfPlus)
            m_plus = std::make_unique<EmfPlusPlayer>(m_context, m_playing);
    }
    if (m_plus != nullptr)
        m_plus->playAll(records, record.offset + kRecords, number, tally);
    else if (m_isDual && m_dual == Dual::Damaged)
        return notDone("its EMF+ records are damaged, and the EMF ones are drawn");
    return kNeutral;
}

// What records between two comments draw belongs together ([MS-EMF] 2.3.3.4.1, 2.3.3.4.2).
void EmfPlayer::group(ByteView comment)
{
    constexpr uint32_t kBegin = 2, kEnd = 3;
    constexpr int64_t kCount = 20, kText = 24; // behind the identifiers
    SceneBuilder &builder = m_context.builder();
    const uint32_t kind = Fields(comment).dword();
    if (kind == kBegin) {
        const int64_t bytes = int64_t(Fields(comment, kCount).dword()) * 2;
        const ByteView text = slice(comment, kText, bytes).value_or(ByteView());
        std::u16string title(size_t(text.size / 2), u'\0');
        for (Fields units(text); char16_t &unit : title)
            unit = units.word();
        title.resize(std::min(title.find(u'\0'), title.size()));
        builder.beginGroup(std::move(title));
    } else if (kind == kEnd && builder.groupDepth() > m_groupsBefore) {
        builder.endGroup();
    }
}

// Where EMF+ records draw the picture, others are a part of it only where those say so. Their state
// counts, since that is what the next ones begin with.
Played EmfPlayer::play(const Record &record, uint32_t number, RecordTally *tally)
{
    if (record.type == Emr::GdiComment)
        return comment(record, number, tally);
    const bool isSeen = m_plus == nullptr || m_isAdded || m_plus->isLeftToGdi();
    m_context.setPainting(isSeen);
    const Played played = playByRow(kRows, m_context, record.type, record.bytes);
    if (isSeen)
        return played;
    const RecordType *const type = findRecordType(kEmfRecordTypes, record.type);
    return type != nullptr && type->loss == Loss::State ? played : kNeutral;
}

size_t EmfPlayer::handlesOf(ByteView file)
{
    return Fields(file, offsetof(ENHMETAHEADER, nHandles)).word();
}

void EmfPlayer::playFile(ByteView file, const MetafileFacts &facts, const Device &device,
                         SceneBuilder &builder, Index clip, Playing &playing, RecordTally *tally)
{
    const size_t handles = handlesOf(file);
    const SceneBuilder::Mark mark = builder.mark();
    const auto hasBetter = [&](Dual dual) {
        DeviceContext context(device, handles, builder, clip);
        if (playing.drawsOutlines)
            context.drawOutlines();
        EmfPlayer player(context, playing, dual);
        RecordTally records;
        player.playAll(file, facts, tally != nullptr ? &records : nullptr);
        if (tally != nullptr)
            *tally = std::move(records);
        return player.hasBetterEmf();
    };
    if (playing.prefersEmf) {
        hasBetter(Dual::Emf);
        return;
    }
    if (!hasBetter(Dual::EmfPlus))
        return;
    builder.takeBack(mark);
    hasBetter(Dual::Damaged);
    // Some say that both kinds hold the picture where only one does.
    if (builder.mark().nodes == mark.nodes)
        hasBetter(Dual::EmfPlus);
}

void EmfPlayer::playAll(ByteView file, const MetafileFacts &facts, RecordTally *tally)
{
    uint32_t number = 2; // the header is the first
    const RecordRecovery records(file, facts);
    m_context.setSystemCharSet([=] { return systemCharSet(records, MetafileFormat::Emf); });
    playRecords(records, number, m_context, tally,
                [&](const Record &record) { return play(record, number++, tally); });
    while (m_context.builder().groupDepth() > m_groupsBefore)
        m_context.builder().endGroup();
}

} // namespace svgtool::picture
