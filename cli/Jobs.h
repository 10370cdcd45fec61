#pragma once

#include "cli/Options.h"

#include <QString>

#include <array>
#include <vector>

namespace svgtool {

/// One metafile to convert.
struct Job
{
    std::string input; ///< path, or kStandardStream
    std::string output; ///< path, or kStandardStream; empty where nothing is written
    size_t namedLength = std::string::npos; ///< how much of output the user named
    bool isLink = false; ///< the input is one
    QString problem; ///< why this is no metafile but a name that leads nowhere; else empty

    /// The output's name was not given but made.
    bool hasMadeName() const { return namedLength < output.size(); }
};

/// What trees hold beside what is converted.
enum class LeftOut { HiddenFolder, HiddenFile, LinkedFolder, DanglingLink, SpecialFile };

/// The metafiles that the inputs name, folder by folder and sorted in each, with their outputs.
struct Plan
{
    std::vector<Job> jobs;
    std::array<size_t, 5> leftOut{}; ///< by LeftOut
    bool isBatch = false; ///< several inputs or a folder were given
    QString problem; ///< why nothing can be done; else empty
};

/// Looks what there is. Writes and creates nothing.
Plan makePlan(const Options &options);

/// What was left out, to be put behind a summary; empty for nothing.
QString leftOutText(const Plan &plan);

} // namespace svgtool
