#include "cli/ExactEntry.h"

namespace svgtool {

const ExactPath &exactPath()
{
    return metafile2svgExactPath;
}

} // namespace svgtool
