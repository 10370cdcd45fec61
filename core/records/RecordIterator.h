#pragma once

#include "core/base/Bytes.h"
#include "core/records/RecordTally.h"
#include "core/records/RecordType.h"

#include <optional>

namespace svgtool {

/// A record as it lies in a file.
struct Record
{
    uint32_t type; ///< a number of EmfRecordTypes.h or WmfRecordTypes.h, or an unknown one
    int64_t offset; ///< in the file
    ByteView bytes; ///< all of it, its head included
};

/// Goes from record to record by their heads, up to the end record.
///
/// It heeds no limit that a header sets. Each record lies in the file and holds at least its head;
/// nothing else about it is checked.
class RecordIterator
{
public:
    /// @param file    the whole file, which outlives the iterator
    /// @param offset  of the first record; beyond the file's end there is none
    RecordIterator(MetafileFormat format, ByteView file, int64_t offset);

    /// The next record; nothing where they end, and from there on.
    std::optional<Record> next();

    /// Why they end, once next() gives nothing: EndRecord, DataEnded, RecordCut or BadSize.
    StopReason stop() const { return m_stop; }
    /// Of the record to come; of the one at which they end.
    int64_t offset() const { return m_offset; }
    /// The end record at which they end, if its size makes sense.
    const std::optional<Record> &endRecord() const { return m_endRecord; }

private:
    MetafileFormat m_format;
    ByteView m_file;
    int64_t m_offset;
    StopReason m_stop = StopReason::None;
    std::optional<Record> m_endRecord;
};

} // namespace svgtool
