#pragma once

#include "exact/svgtool/SVGInspect.h"

#include <string>

namespace svgtool {

/// The tool's one way to the exact path.
struct ExactPath
{
    /// As convertMetaFile, of which see the rest.
    qint32 (*convert)(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally);
    /// Shows the library's log lines from @p level on.
    void (*showLog)(const std::string &level);
    /// As startRecordDump and stopRecordDump.
    bool (*startRecordList)(int descriptor, QString *reason);
    bool (*stopRecordList)(QString *reason);
};

/// The exact path links Qt Gui, whose libraries take longer to load than most files to convert. So
/// it is a module of its own where that can be (ExactModule.cpp, which loads it when first asked),
/// and else a part of the tool (ExactLinked.cpp). Built with SVGTOOL_CLI_EXACT off, the tool has
/// none (ExactMissing.cpp).
/// @note Throws Failure, which names no file, where it is not there. May be called from any thread.
const ExactPath &exactPath();

} // namespace svgtool
