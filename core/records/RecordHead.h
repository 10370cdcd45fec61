#pragma once

#include "core/base/Bytes.h"
#include "core/records/RecordType.h"

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
int64_t headBytes(MetafileFormat format);

/// The head at the start of @p record; what is not there reads as zeros.
RecordHead readHead(MetafileFormat format, ByteView record);

/// Whether a record is one that a program could have written, not just bytes that look like a head.
/// @param bytes  of the whole record
bool isPlausible(MetafileFormat format, uint32_t type, int64_t bytes);

} // namespace svgtool
