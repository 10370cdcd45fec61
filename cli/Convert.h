#pragma once

#include "cli/Files.h"
#include "cli/Jobs.h"
#include "cli/Results.h"

namespace svgtool {

/// Converts one metafile and writes its document, as the options say.
/// @note Throws nothing. May be called on several threads at once, for different jobs.
FileResult convertFile(const Job &job, const Options &options, const StandardStreams &streams);

} // namespace svgtool
