#include "records/BEndTools.h"

namespace svgtool {

// Stands in for the library's answer, so that the readers take their big-endian path.
const bool kIsBigEndianHost = true;

bool IsBigEndian()
{
    return kIsBigEndianHost;
}

} // namespace svgtool
