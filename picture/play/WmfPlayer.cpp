#include "picture/play/WmfPlayer.h"

#include "core/records/WmfRecordTypes.h"
#include "picture/play/RecordRow.h"
#include "picture/play/RecordSupport.h"
#include "picture/play/TextCharacters.h"
#include "picture/play/WmfCalls.h"

#include <algorithm>

namespace svgtool::picture {

namespace {

    // All types, by number.
    // clang-format off
    constexpr RecordRow kRows[] = {
        { Meta::Eof, neutral },
        { Meta::SaveDC, wmf::plain<&DeviceContext::saveState> },
        { Meta::RealizePalette, neutral },
        { Meta::SetPalEntries, wmf::setPaletteEntries },
        { Meta::CreatePalette, wmf::createPalette },
        { Meta::CreateBrush, wmf::createOther },
        { Meta::SetBkMode, wmf::number<&DeviceContext::setBackgroundMode> },
        { Meta::SetMapMode, wmf::number<&DeviceContext::setMapMode> },
        { Meta::SetRop2, wmf::number<&DeviceContext::setRop2> },
        { Meta::SetRelAbs, neutral },
        { Meta::SetPolyFillMode, wmf::number<&DeviceContext::setPolygonFillMode> },
        { Meta::SetStretchBltMode, wmf::number<&DeviceContext::setStretchMode> },
        { Meta::SetTextCharExtra, wmf::setCharacterExtra },
        { Meta::RestoreDC, wmf::restoreState },
        { Meta::InvertRegion, wmf::invertRegion },
        { Meta::PaintRegion, wmf::paintRegion },
        { Meta::SelectClipRegion, wmf::selectClipRegion },
        { Meta::SelectObject, wmf::selectObject },
        { Meta::SetTextAlign, wmf::number<&DeviceContext::setTextAlign> },
        { Meta::ResizePalette, wmf::resizePalette },
        { Meta::DibCreatePatternBrush, wmf::createDibBrush },
        { Meta::SetLayout, wmf::number<&DeviceContext::setLayout> },
        { Meta::DeleteObject, wmf::object<&DeviceContext::deleteObject> },
        { Meta::CreatePatternBrush, wmf::createPatternBrush },
        { Meta::SetBkColor, wmf::color<&DeviceContext::setBackgroundColor> },
        { Meta::SetTextColor, wmf::color<&DeviceContext::setTextColor> },
        { Meta::SetTextJustification, wmf::setJustification },
        { Meta::SetWindowOrg, wmf::pair<&DeviceContext::setWindowOrigin> },
        { Meta::SetWindowExt, wmf::pair<&DeviceContext::setWindowExtent> },
        { Meta::SetViewportOrg, wmf::pair<&DeviceContext::setViewportOrigin> },
        { Meta::SetViewportExt, wmf::pair<&DeviceContext::setViewportExtent> },
        { Meta::OffsetWindowOrg, wmf::offsetWindowOrigin },
        { Meta::OffsetViewportOrg, wmf::offsetViewportOrigin },
        { Meta::LineTo, wmf::point<&DeviceContext::lineTo> },
        { Meta::MoveTo, wmf::point<&DeviceContext::moveTo> },
        { Meta::OffsetClipRgn, wmf::point<&DeviceContext::offsetClip> },
        { Meta::FillRegion, wmf::fillRegion },
        { Meta::SetMapperFlags, neutral },
        { Meta::SelectPalette, wmf::object<&DeviceContext::selectPalette> },
        { Meta::CreatePenIndirect, wmf::createPen },
        { Meta::CreateFontIndirect, wmf::createFont },
        { Meta::CreateBrushIndirect, wmf::createBrush },
        { Meta::CreateBitmapIndirect, wmf::createOther },
        { Meta::Polygon, wmf::polygon },
        { Meta::Polyline, wmf::polyline },
        { Meta::ScaleWindowExt, wmf::scaleWindowExtent },
        { Meta::ScaleViewportExt, wmf::scaleViewportExtent },
        { Meta::ExcludeClipRect, wmf::box<&DeviceContext::excludeClip> },
        { Meta::IntersectClipRect, wmf::box<&DeviceContext::intersectClip> },
        { Meta::Ellipse, wmf::figure<&DeviceContext::ellipse> },
        { Meta::FloodFill, wmf::floodFill },
        { Meta::Rectangle, wmf::figure<&DeviceContext::rectangle> },
        { Meta::SetPixel, wmf::setPixel },
        { Meta::FrameRegion, wmf::frameRegion },
        { Meta::AnimatePalette, wmf::setPaletteEntries },
        { Meta::TextOut, wmf::textOut },
        { Meta::PolyPolygon, wmf::polyPolygon },
        { Meta::ExtFloodFill, wmf::extFloodFill },
        { Meta::RoundRect, wmf::roundRectangle },
        { Meta::PatBlt, wmf::patBlt },
        { Meta::Escape, neutral },
        { Meta::DrawText, nullptr, notDone("its layout is not documented") },
        { Meta::CreateBitmap, wmf::createOther },
        { Meta::CreateRegion, wmf::createRegion },
        { Meta::Arc, wmf::arc<&DeviceContext::arc> },
        { Meta::Pie, wmf::arc<&DeviceContext::pie> },
        { Meta::Chord, wmf::arc<&DeviceContext::chord> },
        { Meta::BitBlt, wmf::dibBitBlt },
        { Meta::DibBitBlt, wmf::dibBitBlt },
        { Meta::ExtTextOut, wmf::extTextOut },
        { Meta::StretchBlt, wmf::dibStretchBlt },
        { Meta::DibStretchBlt, wmf::dibStretchBlt },
        { Meta::SetDibToDev, wmf::setDibToDevice },
        { Meta::StretchDib, wmf::stretchDib },
    };
    // clang-format on
    static_assert(std::ranges::equal(kRows, kWmfRecordTypes, {}, &RecordRow::type,
                                     &RecordType::number));

} // namespace

std::vector<RecordSupport> wmfSupport()
{
    return supportOf(kRows, neutral);
}

WmfPlayer::WmfPlayer(DeviceContext &context, const Picture &picture, const WmfEscapes &escapes)
    : m_context(context), m_escapes(escapes)
{
    m_context.setMapMode(uint32_t(MapMode::Anisotropic));
    m_context.setViewportExtent(picture.viewport);
    m_context.setWindowOrigin(picture.windowOrigin);
    m_context.setWindowExtent(picture.windowExtent);
}

// What a device may do beyond GDI; a screen does nothing of it.
Played WmfPlayer::escape(ByteView record) const
{
    if (isPartOfEmf(record))
        return m_escapes.isEmfDamaged ? notDone("the EMF that it is a part of is damaged")
                                      : kNeutral;
    switch (Fields(record, wmf::kBody).word()) {
    case WmfEscape::PassThrough:
    case WmfEscape::PostScriptData:
    case WmfEscape::PostScriptPassThrough:
    case WmfEscape::EncapsulatedPostScript:
        return m_escapes.replacesPostScript ? kNeutral
                                            : notDone("it holds PostScript, which is for printers");
    default:
        return kNeutral;
    }
}

Played WmfPlayer::play(uint32_t type, ByteView record)
{
    return type == Meta::Escape ? escape(record) : playByRow(kRows, m_context, type, record);
}

void WmfPlayer::playAll(ByteView file, const MetafileFacts &facts, RecordTally *tally)
{
    const RecordRecovery records(file, facts);
    m_context.setSystemCharSet([=] { return systemCharSet(records, facts.format); });
    playRecords(records, 1, m_context, tally,
                [this](const Record &record) { return play(record.type, record.bytes); });
}

} // namespace svgtool::picture
