#include "core/records/RecordIterator.h"

#include "core/records/RecordHead.h"

#include <algorithm>

namespace svgtool {

RecordIterator::RecordIterator(MetafileFormat format, ByteView file, int64_t offset)
    : m_format(format), m_file(file), m_offset(std::clamp<int64_t>(offset, 0, file.size))
{
}

std::optional<Record> RecordIterator::next()
{
    if (m_stop != StopReason::None)
        return {};
    const ByteView rest = tail(m_file, m_offset);
    const int64_t least = headBytes(m_format);
    if (rest.size < least) {
        m_stop = StopReason::DataEnded;
        return {};
    }
    const RecordHead head = readHead(m_format, rest);
    const auto bytes = head.bytes < least ? std::nullopt : slice(rest, 0, head.bytes);
    std::optional<Record> record;
    if (bytes)
        record = { head.type, m_offset, *bytes };
    if (head.isEnd) {
        m_stop = StopReason::EndRecord;
        m_endRecord = record;
        return {};
    }
    if (!record)
        m_stop = head.bytes > rest.size ? StopReason::RecordCut : StopReason::BadSize;
    else
        m_offset += head.bytes;
    return record;
}

} // namespace svgtool
