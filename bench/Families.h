#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

namespace svgtool::bench {

/// Metafiles of one kind of record, as drawings have them, of any length.
struct Family
{
    const char *name;
    bool isOfElements; ///< its exact text is more of elements than of numbers or characters
    std::function<QByteArray(int)> make; ///< a metafile of so many groups of records
    bool isPlus = false; ///< of EMF+ records, which only pictures are made of
};

const std::vector<Family> &families();

} // namespace svgtool::bench
