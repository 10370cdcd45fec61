#pragma once

#include "core/base/ByteOrder.h"
#include "core/base/Bytes.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecordTypes.h"
#include "core/records/WmfRecords.h"

#include <cstdint>

namespace svgtool {

/// The fields that every record begins with.
struct RecordHead
{
    uint32_t type;
    int64_t bytes; ///< of the record, if it is true
    bool isEnd; ///< it is the end record
};

/// Bytes of the head of a record of either format.
inline int64_t headBytes(MetafileFormat format)
{
    return format == MetafileFormat::Emf ? int64_t(sizeof(EMR)) : int64_t(sizeof(WMR));
}

/// The head at the start of @p record; what is not there reads as zeros.
inline RecordHead readHead(MetafileFormat format, ByteView record)
{
    if (format == MetafileFormat::Emf) {
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

/// Whether a record is one that a program could have written, not just bytes that look like a head.
/// @param bytes  of the whole record
bool isPlausible(MetafileFormat format, uint32_t type, int64_t bytes);

} // namespace svgtool
