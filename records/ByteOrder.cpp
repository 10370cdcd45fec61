#include "records/BEndTools.h"

#include "logging/TraceScope.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\BEndTools.cpp";

bool IsBigEndian()
{
    SVGTOOL_TRACE("IsBigEndian");
    return false;
}

} // namespace svgtool
