#pragma once

#include "core/records/RecordTally.h"

#include <QByteArray>
#include <QString>

/// What tools of this tree use beside the two exported functions: reports of conversions, facts
/// about metafiles, the record dump. It is part of the static core and not installed.
namespace svgtool {

enum class MetafileFormat {
    Unknown, ///< neither an EMF nor a WMF header
    Emf,
    Wmf, ///< without the placeable header
    PlaceableWmf,
};

/// A rectangle as a header gives it.
struct HeaderBox
{
    qint32 left = 0, top = 0, right = 0, bottom = 0;
};

/// What can be told of a metafile without converting it. What its format lacks is 0.
struct MetafileFacts
{
    MetafileFormat format = MetafileFormat::Unknown;
    qint64 fileBytes = 0; ///< what there is
    qint64 headerBytes = 0; ///< the length by the header; of a WMF with its placeable header
    quint32 headerRecords = 0; ///< EMF: the number of records by the header
    HeaderBox bounds; ///< EMF: device units; placeable WMF: logical units
    HeaderBox frame; ///< EMF: 0.01 mm
    qint32 devicePixels[2] = {}; ///< EMF: width and height of the reference device
    qint32 deviceMillimeters[2] = {};
    quint16 unitsPerInch = 0; ///< placeable WMF
    RecordTally records; ///< all records, as skipped, and where their chain ends
};

/// Reads the headers of @p metafileData and the heads of its records.
MetafileFacts inspectMetaFile(const QByteArray &metafileData);

/// As ConvertMetaFileToSVG, and counts into @p tally what becomes of the records.
/// @param tally  fresh; may be null
/// @return an SvgToolResult
/// @note May throw std::bad_alloc before the conversion begins.
qint32 convertMetaFile(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally);

/// A copy of a metafile whose header does not end its conversion early: it names the size that the
/// data have, and no limit for the number or the size of the records.
QByteArray withRepairedHeader(const QByteArray &metafileData, MetafileFormat format);

/// The name of a record type, such as "EMR_POLYLINE16"; its number where it has no name.
QByteArray recordName(MetafileFormat format, quint32 type);

/// Sets the level of the library's log, for all threads at once; "TRACE" logs every call.
void setLogLevel(const QByteArray &name);

/// Lists the records of the conversions that follow in the file @p path: of an EMF those that have
/// no handler, of a WMF all. It is one list for the process: run one conversion at a time.
/// @param[out] reason  why it cannot be written
/// @return false when the file cannot be opened
bool startRecordDump(const QString &path, QString *reason);
/// Ends the list and closes its file.
/// @param[out] reason  why it is not complete
/// @return false when something was not written
bool stopRecordDump(QString *reason);

} // namespace svgtool
