#pragma once

#include "cli/Files.h"
#include "cli/Jobs.h"
#include "cli/Results.h"

#include <functional>
#include <vector>

namespace svgtool {

/// Converts the files of @p jobs, some at the same time, and tells of each in the order of the
/// jobs, on the caller's thread.
/// @param tell     receives each result once those before it are told; it may take parts of it away
/// @param tick     called now and then with the number of files that are done
/// @return the results in the order of the jobs
std::vector<FileResult> convertAll(const std::vector<Job> &jobs, const Options &options,
                                   const StandardStreams &streams,
                                   const std::function<void(FileResult &)> &tell,
                                   const std::function<void(size_t)> &tick);

} // namespace svgtool
