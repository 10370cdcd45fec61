#pragma once

#include "core/records/RecordType.h"
#include "fuzz/Numbers.h"

#include <span>
#include <string>

namespace svgtool::fuzz {

/// An offset of what a record does not have.
constexpr size_t kNowhere = SIZE_MAX;

/// A count in the bodies of records that says how many things reach from an offset to the end; or
/// where they start in the record, when they have no size.
struct Count
{
    uint32_t firstType, lastType;
    size_t at;
    size_t from;
    size_t thingSize;
    /// Where the number of figures stands that share out the things; their shares come first.
    size_t figuresAt = kNowhere;
};

/// What the mutator must know of a format.
struct Format
{
    struct Field
    {
        size_t at;
        size_t width;
    };

    std::span<const RecordType> types;
    std::span<const Count> counts;
    Field type, size; ///< the head of a record, in the order of the format
    size_t unit; ///< of sizes, in bytes
    size_t countWidth;
    size_t (*headerSize)(const std::string &bytes);
    /// Makes the lengths and counts of the header fit the file.
    void (*mendHeader)(std::string &bytes, size_t records);
    uint32_t typeBits = 0xFFFFFFFF; ///< of a record's type, the rest of which are flags
    /// Where records lie within others: the file with them in one chain, and the other way round.
    std::string (*unpack)(const std::string &bytes) = nullptr;
    std::string (*pack)(const std::string &bytes) = nullptr;
};

const Format &emfFormat();
const Format &wmfFormat();
const Format &emfPlusFormat();

} // namespace svgtool::fuzz
