#include "core/records/RecordHead.h"

namespace svgtool {

bool isPlausible(MetafileFormat format, uint32_t number, int64_t bytes)
{
    const RecordType *type = findRecordType(recordTypes(format), number);
    const bool isWhole = format != MetafileFormat::Emf || bytes % 4 == 0;
    return type != nullptr && isWhole && bytes >= type->leastBytes;
}

} // namespace svgtool
