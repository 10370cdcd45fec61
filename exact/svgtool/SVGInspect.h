#pragma once

#include "core/records/RecordTally.h"

#include <QByteArray>
#include <QString>

/// What tools of this tree use beside the two exported functions: reports of conversions, the
/// level of the log, the record dump. It is part of the static library and not installed.
namespace svgtool {

/// As ConvertMetaFileToSVG, and counts into @p tally what becomes of the records.
/// @param tally  fresh; may be null
/// @return an SvgToolResult
/// @note May throw std::bad_alloc before the conversion begins.
qint32 convertMetaFile(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally);

/// Sets the level of the library's log, for all threads at once; "TRACE" logs every call.
void setLogLevel(const QByteArray &name);

/// Lists the records of the conversions that follow in a file: of an EMF those that have no
/// handler, of a WMF all. It is one list for the process: run one conversion at a time.
/// @param descriptor   the file, open for writing; stays open
/// @param[out] reason  why it cannot be written
/// @return false when it cannot be written
bool startRecordDump(int descriptor, QString *reason);
/// Ends the list.
/// @param[out] reason  why it is not complete
/// @return false when something was not written
bool stopRecordDump(QString *reason);

} // namespace svgtool
