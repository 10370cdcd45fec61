#include "core/records/RecordHead.h"

#include "core/base/ByteOrder.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecordTypes.h"
#include "core/records/WmfRecords.h"

namespace svgtool {

int64_t headBytes(MetafileFormat format)
{
    return format == MetafileFormat::Emf ? int64_t(sizeof(EMR)) : int64_t(sizeof(WMR));
}

RecordHead readHead(MetafileFormat format, ByteView record)
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

bool isPlausible(MetafileFormat format, uint32_t number, int64_t bytes)
{
    const RecordType *type = findRecordType(recordTypes(format), number);
    const bool isWhole = format != MetafileFormat::Emf || bytes % 4 == 0;
    return type != nullptr && isWhole && bytes >= type->leastBytes;
}

} // namespace svgtool
