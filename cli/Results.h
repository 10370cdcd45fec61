#pragma once

#include "core/records/MetafileFacts.h"
#include "picture/api/picture.hpp"

#include <QByteArray>
#include <QString>

namespace svgtool {

/// Exit statuses of the tool.
enum class ExitStatus : int {
    Converted = 0, ///< all documents are there; also after --help and --version
    Failed = 1, ///< not all are; a line for each file says why
    WrongUsage = 2, ///< the arguments make no sense
    Damaged = 3, ///< all documents are there, but some of damaged metafiles
    Lost = 4, ///< all documents are there, but with --strict they lack something
};

enum class FileStatus {
    NotTried, ///< an earlier file failed, and that was to end all
    Converted,
    Damaged, ///< converted as far as possible
    UpToDate, ///< its document is newer than it
    Failed,
};
constexpr size_t kFileStatuses = 5;

inline bool isWritten(FileStatus status)
{
    return status == FileStatus::Converted || status == FileStatus::Damaged;
}

/// What became of one metafile: all that reports, and pages made from them, need.
struct FileResult
{
    QString input; ///< path, or "standard input"
    QString output; ///< path, or "-" for standard output; empty where nothing is written
    FileStatus status = FileStatus::NotTried;
    QString message; ///< Damaged and Failed: one line with the file's name and the reason
    QString loss; ///< one line with the file's name and what its picture lacks; empty for nothing
    MetafileFacts facts;
    PictureReport report; ///< what became of the records, of the exact path too
    StopReason ending = StopReason::None; ///< of the walk in which that became of them
    double width = 0; ///< of a picture, in CSS pixels; 0 for none
    double height = 0;
    QString sizeGuess; ///< why the picture's size is one; empty where the header gives it
    QByteArray document; ///< what was written or would have been, if Options::keepsDocuments
};

} // namespace svgtool
