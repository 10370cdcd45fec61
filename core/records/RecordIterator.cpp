#include "core/records/RecordIterator.h"

#include "core/base/ByteOrder.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecordTypes.h"
#include "core/records/WmfRecords.h"

#include <algorithm>

namespace svgtool {

namespace {

    struct Head
    {
        uint32_t type;
        int64_t bytes; ///< of the record
        bool isEnd;
    };

    Head readHead(ByteView record, bool isEmf)
    {
        if (isEmf) {
            const auto head = readPadded<EMR>(record);
            const uint32_t type = fromLittleEndian(head.iType);
            return { type, fromLittleEndian(head.nSize), type == Emr::Eof };
        }
        const auto head = readPadded<WMR>(record);
        // Two words, each in the file's byte order.
        const int64_t words = int64_t(fromLittleEndian(head.rdSize.words[1])) << 16
                | fromLittleEndian(head.rdSize.words[0]);
        const uint32_t type = fromLittleEndian(head.rdFunction);
        return { type, words * 2, type == Meta::Eof };
    }

} // namespace

RecordIterator::RecordIterator(MetafileFormat format, ByteView file, int64_t offset)
    : m_file(file), m_offset(std::clamp<int64_t>(offset, 0, file.size)),
      m_isEmf(format == MetafileFormat::Emf)
{
}

std::optional<Record> RecordIterator::next()
{
    if (m_stop != StopReason::None)
        return {};
    const ByteView rest = tail(m_file, m_offset);
    const auto headBytes = static_cast<int64_t>(m_isEmf ? sizeof(EMR) : sizeof(WMR));
    if (rest.size < headBytes) {
        m_stop = StopReason::DataEnded;
        return {};
    }
    const Head head = readHead(rest, m_isEmf);
    const auto bytes = head.bytes < headBytes ? std::nullopt : slice(rest, 0, head.bytes);
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
