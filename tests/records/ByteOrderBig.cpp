#include "records/BEndTools.h"

namespace svgtool {

// Stands in for the library's answer, so that the readers take their big-endian path.
bool IsBigEndian()
{
    return true;
}

} // namespace svgtool
