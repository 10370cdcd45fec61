#pragma once

#include <QByteArray>

#include <span>

namespace svgtool::bench {

/// Metafiles of one kind of record, as drawings have them, of any length.
struct Family
{
    const char *name;
    QByteArray (*make)(int count); ///< a metafile of @p count groups of records
    bool isOfElements; ///< its document is more of elements than of numbers or characters
};

std::span<const Family> families();

} // namespace svgtool::bench
