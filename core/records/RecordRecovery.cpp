#include "core/records/RecordRecovery.h"

#include "core/records/Fields.h"

#include <algorithm>
#include <limits>

namespace svgtool {

namespace {

    // So many plausible records in a row are no chance.
    constexpr int kChain = 3;
    constexpr int64_t kNowhere = std::numeric_limits<int64_t>::max();

    // Whether all records up to the end that the header names, or that of the file, were found
    // without help.
    bool isWhole(ByteView file, const MetafileFacts &facts)
    {
        const RecordTally::Stop &stop = facts.records.stop();
        return stop.reason == StopReason::EndRecord && !facts.isEndCut
                && stop.offset + readHead(facts.format, tail(file, stop.offset)).bytes
                >= std::min(facts.headerBytes, file.size);
    }

    // The type of a record: another one than it says where that makes no sense, but tells enough.
    uint32_t likelyType(MetafileFormat format, const Record &record)
    {
        // The lowest byte is all that those of an EMF have, and different in all of a WMF.
        constexpr uint32_t kTypeBits = 0xFF;
        constexpr int64_t kIdentifier = 12;
        constexpr uint32_t kEmfPlus = 0x2B464D45;
        const bool isEmf = format == MetafileFormat::Emf;
        if (isEmf && Fields(record.bytes, kIdentifier).dword() == kEmfPlus)
            return Emr::GdiComment;
        const auto types = recordTypes(format);
        if (findRecordType(types, record.type) != nullptr)
            return record.type;
        const auto type =
                std::ranges::find(types, record.type & kTypeBits,
                                  [](const RecordType &each) { return each.number & kTypeBits; });
        const bool isLikely =
                type != types.end() && isPlausible(format, type->number, record.bytes.size);
        return isLikely && (isEmf || type->number != Meta::Eof) ? type->number : record.type;
    }

    bool fits(const RecordHead &head, MetafileFormat format, ByteView rest)
    {
        return headBytes(format) <= head.bytes && head.bytes <= rest.size;
    }

} // namespace

RecordRecovery::RecordRecovery(ByteView file, const MetafileFacts &facts)
    : m_format(facts.format), m_file(file), m_namedEnd(facts.headerBytes),
      m_isWhole(isWhole(file, facts)),
      m_offset(std::clamp<int64_t>(facts.firstRecord, 0, file.size))
{
}

// Whether what lies at a place may well be a record, if an odd one.
bool RecordRecovery::isSound(int64_t place) const
{
    for (int count = 0; count < kChain; ++count) {
        const ByteView rest = tail(m_file, place);
        if (rest.size < headBytes(m_format))
            return true;
        const RecordHead head = readHead(m_format, rest);
        if (!fits(head, m_format, rest))
            return false;
        if (isPlausible(m_format, head.type, head.bytes))
            return true;
        place += head.bytes;
    }
    return true;
}

// Whether plausible records lead on from a place: so many that it is no chance, or fewer up to an
// end record.
bool RecordRecovery::isChain(int64_t place) const
{
    for (int count = 0; count < kChain; ++count) {
        const ByteView rest = tail(m_file, place);
        const RecordHead head = readHead(m_format, rest);
        if (!fits(head, m_format, rest) || !isPlausible(m_format, head.type, head.bytes))
            return false;
        // That of a WMF is no more than its head.
        if (head.isEnd && m_format != MetafileFormat::Emf && head.bytes != headBytes(m_format))
            return false;
        if (head.isEnd)
            return count > 0 || head.bytes == rest.size;
        place += head.bytes;
    }
    return true;
}

// The next place that a chain begins at.
int64_t RecordRecovery::findChain()
{
    if (m_chain > m_offset)
        return m_chain;
    const int64_t least = headBytes(m_format);
    m_chain = m_offset + least;
    while (m_chain + least <= m_file.size && !isChain(m_chain))
        ++m_chain;
    if (m_chain + least > m_file.size)
        m_chain = kNowhere;
    return m_chain;
}

Record RecordRecovery::take(uint32_t type, int64_t end)
{
    const int64_t begin = m_offset;
    m_offset = end;
    return { type, begin, { m_file.data + begin, end - begin } };
}

void RecordRecovery::skipTo(int64_t place)
{
    if (m_damage.bytes == 0)
        m_damage.offset = m_offset;
    m_damage.bytes = place - m_damage.offset;
    m_offset = place;
}

// The record at which something is wrong: with it, or with what lies behind. Nothing where it is
// left out, or they end.
std::optional<Record> RecordRecovery::recover(const RecordHead &head)
{
    const ByteView rest = tail(m_file, m_offset);
    const bool isRight = fits(head, m_format, rest);
    const int64_t end = isRight ? m_offset + head.bytes : m_offset;
    const bool isLast = head.isEnd && std::max(end, m_offset + headBytes(m_format)) >= m_namedEnd;
    const int64_t chain = isLast ? kNowhere : findChain();
    if (head.isEnd) {
        if (chain == kNowhere)
            m_stop = StopReason::EndRecord;
        else
            skipTo(chain);
        return {};
    }
    // Less than its fixed fields is nothing to be played.
    const RecordType *const type = findRecordType(recordTypes(m_format), head.type);
    const int64_t least = type != nullptr ? type->leastBytes : kNowhere;
    if (chain == kNowhere) {
        if (isRight)
            return take(head.type, end);
        m_stop = head.bytes > rest.size ? StopReason::RecordCut : StopReason::BadSize;
        if (m_stop == StopReason::BadSize || rest.size < least)
            return {};
        return Record{ head.type, m_offset, rest };
    }
    // What lies behind is its own, unless that has a head, too.
    const bool hasNext = isRight && end <= chain
            && (end == chain
                || findRecordType(recordTypes(m_format), readHead(m_format, tail(m_file, end)).type)
                        != nullptr);
    if (hasNext)
        return take(head.type, end);
    const int64_t begin = m_offset;
    skipTo(chain);
    if (chain - begin < least)
        return {};
    return Record{ head.type, begin, { m_file.data + begin, chain - begin } };
}

std::optional<Record> RecordRecovery::next()
{
    m_damage = {};
    std::optional<Record> record = find();
    const uint32_t type = record ? likelyType(m_format, *record) : 0;
    if (record && type != record->type) {
        record->type = type;
        if (m_damage.bytes == 0)
            m_damage = { record->offset, record->bytes.size };
    }
    return record;
}

std::optional<Record> RecordRecovery::find()
{
    while (m_stop == StopReason::None) {
        const ByteView rest = tail(m_file, m_offset);
        if (rest.size < headBytes(m_format)) {
            m_stop = StopReason::DataEnded;
            break;
        }
        const RecordHead head = readHead(m_format, rest);
        if (!head.isEnd && fits(head, m_format, rest)
            && (m_isWhole || isSound(m_offset + head.bytes)))
            return take(head.type, m_offset + head.bytes);
        if (auto record = recover(head))
            return record;
    }
    return {};
}

} // namespace svgtool
