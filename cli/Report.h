#pragma once

#include "cli/Options.h"
#include "cli/Results.h"

#include <vector>

namespace svgtool {

/// What a status, or a format, is called in reports.
const char *word(FileStatus status);
const char *word(MetafileFormat format);

/// One file's report, as --info and --report print it: lines of text, or a JSON object without a
/// line feed behind it.
QByteArray reportText(const FileResult &result, const Options &options);

/// One line for a whole batch: how many files had which result, and how many records are missing.
QString summaryText(const std::vector<FileResult> &results);

/// What the results come to.
ExitStatus exitStatus(const std::vector<FileResult> &results);

} // namespace svgtool
