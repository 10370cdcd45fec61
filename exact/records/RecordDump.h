#pragma once

#include "core/records/RecordType.h"

#include <QFile>

#include <span>
#include <string>
#include <string_view>

namespace svgtool {

/// Where the record loops list the names of records, between a start and an end banner.
///
/// One object serves the whole process. Nothing in the library switches it on; who does must open
/// the file first and run one conversion at a time.
struct RecordDump
{
    bool isOn = false;
    QFile file;

    /// Writes @p text when the dump is on.
    void write(std::string_view text)
    {
        if (isOn)
            file.write(text.data(), qint64(text.size()));
    }
};

/// The line for records of a type, its name filled up to a column; empty for a type that the dump
/// does not know. @p types is the list of its format.
std::string emfDumpLine(std::span<const RecordType> types, quint32 type);
std::string wmfDumpLine(std::span<const RecordType> types, quint32 function);

} // namespace svgtool
