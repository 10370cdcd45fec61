#pragma once

#include <QFile>

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
    void write(const char *text)
    {
        if (isOn)
            file.write(text);
    }
};

} // namespace svgtool
