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

/// What became of a file, as short as can be: its verdict, or its status where there is none.
const char *verdictWord(const FileResult &result);

/// The records of a report, those first that a picture lacks.
std::vector<RecordLine> worstFirst(std::vector<RecordLine> lines);

/// What a picture lacks, with the file's name; empty for nothing.
QString lossText(const FileResult &result);

/// One line for a whole batch: how many files had which result, and how many records are missing.
QString summaryText(const std::vector<FileResult> &results);

/// What the results come to.
ExitStatus exitStatus(const std::vector<FileResult> &results, const Options &options);

} // namespace svgtool
