#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace svgtool::fuzz {

using Random = std::minstd_rand;

/// Whether one case in @p n.
bool oneIn(Random &random, unsigned n);

/// The bytes of a metafile, taken apart.
struct Metafile
{
    struct Record
    {
        uint32_t type = 0;
        std::string body; ///< what follows the record's head
    };

    std::string head;
    std::vector<Record> records;
};

/// What the mutator must know of a format.
struct Format
{
    std::span<const uint32_t> types; ///< of records that do something
    Metafile (*parse)(const std::string &bytes);
    /// Joins the parts; mends lengths and counts of the headers.
    std::string (*join)(const Metafile &metafile);
    /// Makes the counts inside a record fit its length.
    void (*mendCounts)(Metafile::Record &record, Random &random);
};

/// The first @p size bytes of @p bytes, with zeros for those that are missing.
std::string padded(const std::string &bytes, size_t size);

/// How many bytes @p bytes has from @p offset on; 0 when that lies past the end.
uint32_t roomFrom(const std::string &bytes, size_t offset);

/// Little-endian numbers anywhere in @p bytes; what lies outside reads as 0 and is not written.
uint32_t numberAt(const std::string &bytes, size_t offset, size_t width);
void setNumberAt(std::string &bytes, size_t offset, size_t width, uint32_t value);

/// A changed metafile that is still taken for one: records change, come, go and move, while sizes
/// and counts follow. Leaves some lies in, so that the checks on them are reached too.
size_t mutateRecords(const Format &format, uint8_t *data, size_t size, size_t maxSize,
                     unsigned seed);

} // namespace svgtool::fuzz
