#include "cli/Exact.h"
#include "cli/Files.h"

namespace svgtool {

const ExactPath &exactPath()
{
    throw Failure{ QString(), QStringLiteral("the exact path is not in this build") };
}

} // namespace svgtool
