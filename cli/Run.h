#pragma once

#include "cli/Files.h"
#include "cli/Options.h"
#include "cli/Results.h"

namespace svgtool {

/// Does what @p options ask for. A document appears, or changes, only when it is complete.
ExitStatus run(Options options, const StandardStreams &streams = {});

} // namespace svgtool
