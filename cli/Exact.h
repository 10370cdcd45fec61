#pragma once

#include "exact/svgtool/SVGInspect.h"

#include <string>

namespace svgtool {

// The tool's one way to the exact path, which Exact.cpp links. Built with SVGTOOL_CLI_EXACT off,
// the tool has ExactMissing.cpp in its place, which does nothing and converts nothing: there are
// pictures and nothing else.

/// As convertMetaFile, of which see the rest.
/// @note Throws Failure, which names no file, where it is not in this build.
qint32 convertExact(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally);

/// Shows the library's log lines from @p level on; none if it is empty.
void showLog(const std::string &level);

/// As startRecordDump and stopRecordDump.
bool startRecordList(int descriptor, QString *reason);
bool stopRecordList(QString *reason);

} // namespace svgtool
