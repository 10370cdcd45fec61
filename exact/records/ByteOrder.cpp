#include "exact/records/BEndTools.h"

#include "exact/logging/TraceScope.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\BEndTools.cpp";

const bool kIsBigEndianHost = false;

bool IsBigEndian()
{
    SVGTOOL_TRACE("IsBigEndian");
    return kIsBigEndianHost;
}

} // namespace svgtool
