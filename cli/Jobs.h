#pragma once

#include "cli/Options.h"

#include <vector>

namespace svgtool {

/// One metafile to convert.
struct Job
{
    QString input; ///< path, or kStandardStream
    QString output; ///< path, or kStandardStream; empty where nothing is written
    bool mayBeUpToDate = false; ///< the output's name was not given but made
    QString problem; ///< why this is no metafile but a name that leads nowhere; else empty
};

/// The metafiles that the inputs name, folder by folder and sorted in each, with their outputs.
struct Plan
{
    std::vector<Job> jobs;
    bool isBatch = false; ///< several inputs or a folder were given
    QString problem; ///< why nothing can be done; else empty
};

/// Looks what there is. Writes and creates nothing.
Plan makePlan(const Options &options);

} // namespace svgtool
