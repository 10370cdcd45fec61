#include "picture/play/EmfPlusPlayer.h"

#include "core/records/EmfPlusRecordTypes.h"
#include "picture/play/RecordSupport.h"

#include <algorithm>

namespace svgtool::picture {

namespace {

    using emfplus::PlusRecord;

    /// What is done with records of one type.
    struct PlusRow
    {
        uint32_t type;
        Played (*play)(emfplus::Play &play, const PlusRecord &record);
        Played otherwise = kDone; ///< what becomes of it where there is no function
    };

    Played neutral(emfplus::Play &, const PlusRecord &)
    {
        return kNeutral;
    }

    constexpr Played kNotDescribed = notDone("its layout is not documented");

    using namespace emfplus;
    using plus::PathObject;
    using plus::Region;

    // All types, by number.
    // clang-format off
    constexpr PlusRow kRows[] = {
        { EmfPlus::Header, header },
        { EmfPlus::EndOfFile, neutral },
        { EmfPlus::Comment, neutral },
        { EmfPlus::GetDC, neutral },
        { EmfPlus::MultiFormatStart, nullptr, kNotDescribed },
        { EmfPlus::MultiFormatSection, nullptr, kNotDescribed },
        { EmfPlus::MultiFormatEnd, nullptr, kNotDescribed },
        { EmfPlus::Object, object },
        { EmfPlus::Clear, set<&Graphics::clear, number> },
        { EmfPlus::FillRects, fill<&Graphics::fillRectangles, boxes> },
        { EmfPlus::DrawRects, draw<&Graphics::drawRectangles, boxes> },
        { EmfPlus::FillPolygon, fill<&Graphics::fillPolygon, points> },
        { EmfPlus::DrawLines, draw<&Graphics::drawLines, points, isSet> },
        { EmfPlus::FillEllipse, fill<&Graphics::fillEllipse, box> },
        { EmfPlus::DrawEllipse, draw<&Graphics::drawEllipse, box> },
        { EmfPlus::FillPie, fill<&emfplus::fillPie, real, real, box> },
        { EmfPlus::DrawPie, draw<&emfplus::drawPie, real, real, box> },
        { EmfPlus::DrawArc, draw<&emfplus::drawArc, real, real, box> },
        { EmfPlus::FillRegion, fillObject<Region, &Graphics::fillRegion> },
        { EmfPlus::FillPath, fillObject<PathObject, &Graphics::fillPath> },
        { EmfPlus::DrawPath, drawPath },
        { EmfPlus::FillClosedCurve, fill<&emfplus::fillClosedCurve, real, points, isSet> },
        { EmfPlus::DrawClosedCurve, draw<&emfplus::drawClosedCurve, real, points> },
        { EmfPlus::DrawCurve, draw<&emfplus::drawCurve, real, number, number, points> },
        { EmfPlus::DrawBeziers, draw<&Graphics::drawBeziers, points> },
        { EmfPlus::DrawImage, drawImage },
        { EmfPlus::DrawImagePoints, drawImagePoints },
        { EmfPlus::DrawString, drawString },
        { EmfPlus::SetRenderingOrigin, set<&Graphics::setRenderingOrigin, wholePoint> },
        { EmfPlus::SetAntiAliasMode, neutral },
        { EmfPlus::SetTextRenderingHint, set<&Graphics::setTextRenderingHint, lowByte> },
        { EmfPlus::SetTextContrast, neutral },
        { EmfPlus::SetInterpolationMode, set<&Graphics::setInterpolationMode, lowByte> },
        { EmfPlus::SetPixelOffsetMode, set<&Graphics::setPixelOffsetMode, lowByte> },
        { EmfPlus::SetCompositingMode, set<&Graphics::setCompositingMode, lowByte> },
        { EmfPlus::SetCompositingQuality, neutral },
        { EmfPlus::Save, set<&Graphics::save, number> },
        { EmfPlus::Restore, set<&Graphics::restore, number> },
        { EmfPlus::BeginContainer, set<&emfplus::beginContainer, realBox, realBox, number, unit> },
        { EmfPlus::BeginContainerNoParams, set<&emfplus::beginContainerNoParams, number> },
        { EmfPlus::EndContainer, set<&Graphics::endContainer, number> },
        { EmfPlus::SetWorldTransform, set<&Graphics::setWorldTransform, matrix> },
        { EmfPlus::ResetWorldTransform, set<&Graphics::resetWorldTransform> },
        { EmfPlus::MultiplyWorldTransform, set<&Graphics::multiplyWorldTransform, matrix, order> },
        { EmfPlus::TranslateWorldTransform, set<&Graphics::translateWorldTransform, point, order> },
        { EmfPlus::ScaleWorldTransform, set<&Graphics::scaleWorldTransform, point, order> },
        { EmfPlus::RotateWorldTransform, set<&Graphics::rotateWorldTransform, real, order> },
        { EmfPlus::SetPageTransform, set<&emfplus::setPageTransform, real, unit> },
        { EmfPlus::ResetClip, set<&Graphics::resetClip> },
        { EmfPlus::SetClipRect, set<&Graphics::setClipRectangle, realBox, combineMode> },
        { EmfPlus::SetClipPath, setObject<PathObject, &Graphics::setClipPath, combineMode> },
        { EmfPlus::SetClipRegion, setObject<Region, &Graphics::setClipRegion, combineMode> },
        { EmfPlus::OffsetClip, set<&Graphics::offsetClip, point> },
        { EmfPlus::DrawDriverString, drawDriverString },
        { EmfPlus::StrokeFillPath, nullptr, kNotDescribed },
        { EmfPlus::SerializableObject, nullptr, notDone("effects of images are not drawn") },
        { EmfPlus::SetTSGraphics, setTsGraphics },
        { EmfPlus::SetTSClip, setTsClip },
    };
    // clang-format on
    static_assert(std::ranges::equal(kRows, kEmfPlusRecordTypes, {}, &PlusRow::type,
                                     &RecordType::number));

    // What a record begins with: [MS-EMFPLUS] 2.3.
    struct Head
    {
        uint16_t type, flags;
        uint32_t size, dataSize;

        static constexpr uint32_t kBytes = 12;
        explicit Head(Fields fields)
            : type(fields.word()), flags(fields.word()), size(fields.dword()),
              dataSize(fields.dword())
        {
        }
        bool isKnown() const { return findRecordType(kEmfPlusRecordTypes, type) != nullptr; }
        bool fits(ByteView records) const
        {
            return size >= kBytes && size <= records.size && dataSize <= size - kBytes;
        }
    };

    // Whether a record stands here, or nothing more.
    bool goesOn(ByteView records)
    {
        const Head head{ Fields(records) };
        return records.size == 0 || (head.isKnown() && head.fits(records));
    }

    // Whether so many plausible records lead on that it is no chance, or fewer up to the end.
    bool leadsOn(ByteView records)
    {
        constexpr int kChain = 3;
        for (int count = 0; count < kChain; ++count) {
            const Head head{ Fields(records) };
            if (records.size == 0)
                return count > 0;
            if (!head.fits(records) || head.size % 4 != 0 || !head.isKnown())
                return false;
            records = tail(records, head.size);
        }
        return true;
    }

    // Bytes up to the place behind a damaged head, or within it where it is none, from which
    // records lead on.
    int64_t damagedBytes(ByteView records, bool hasHead)
    {
        int64_t bytes = hasHead ? Head::kBytes : 1;
        while (bytes < records.size && !leadsOn(tail(records, bytes)))
            ++bytes;
        return std::min(bytes, records.size);
    }

} // namespace

std::vector<RecordSupport> emfPlusSupport()
{
    return supportOf(kRows, neutral);
}

EmfPlusPlayer::EmfPlusPlayer(DeviceContext &context, Playing &playing)
    : m_play{ context,
              Graphics(context.device(), context.builder(), context.outerClip()),
              playing,
              {},
              {} }
{
}

Played EmfPlusPlayer::playOne(uint32_t type, const PlusRecord &record)
{
    if (type != EmfPlus::Object)
        m_play.parts.drop();
    const auto row = std::ranges::lower_bound(kRows, type, {}, &PlusRow::type);
    if (row == std::end(kRows) || row->type != type)
        return notDone("its type is not known");
    return row->play != nullptr ? row->play(m_play, record) : row->otherwise;
}

void EmfPlusPlayer::playAll(ByteView records, int64_t offset, uint32_t number, RecordTally *tally)
{
    m_play.graphics.setRecord(number);
    m_play.graphics.grant(size_t(records.size));
    while (records.size > 0) {
        const Head head{ Fields(records) };
        const auto &[type, flags, named, dataSize] = head;
        int64_t size = named;
        if (!head.isKnown() || !head.fits(records) || !goesOn(tail(records, size))) {
            m_isDamaged = true;
            size = damagedBytes(records, head.isKnown());
            if (tally != nullptr)
                tally->noteDamage({ offset, size });
        }
        if (!head.isKnown() || size < Head::kBytes) {
            offset += size;
            records = tail(records, size);
            continue;
        }
        const int64_t data = std::min<int64_t>(dataSize, size - Head::kBytes);
        const Played played = playOne(type, { flags, { records.data + Head::kBytes, data } });
        m_isDamaged =
                m_isDamaged || played.why == kDamagedRecord.why || played.why == kNoObject.why;
        m_isLeftToGdi = type == EmfPlus::GetDC;
        if (tally != nullptr)
            tally->noteWithin(type, played.outcome, offset, played.why);
        offset += size;
        records = tail(records, size);
    }
}

} // namespace svgtool::picture
