// Changes a metafile so that it is still taken for one: records change, come, go and move, while
// sizes and counts follow. Leaves some lies in, so that the checks on them are reached too.

#include "fuzz/RecordMutator.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <vector>

extern "C" {
size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);
size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed);
}

namespace svgtool::fuzz {

using Random = std::minstd_rand;

struct Record
{
    uint32_t type = 0;
    std::string body; // what follows the head
};
using Records = std::vector<Record>;

static size_t below(Random &random, size_t limit)
{
    return limit == 0 ? 0 : random() % limit;
}

static bool oneIn(Random &random, unsigned n)
{
    return below(random, n) == 0;
}

static size_t headSize(const Format &format)
{
    return format.type.width + format.size.width;
}

static Records parse(const Format &format, const std::string &bytes)
{
    const auto &[at, width] = format.size;
    Records records;
    for (size_t start = format.headerSize(bytes); start + headSize(format) <= bytes.size();) {
        const size_t size = std::clamp(numberAt(bytes, start + at, width) * format.unit,
                                       headSize(format), bytes.size() - start);
        records.push_back({ numberAt(bytes, start + format.type.at, format.type.width),
                            bytes.substr(start + headSize(format), size - headSize(format)) });
        start += size;
    }
    return records;
}

static std::string join(const Format &format, std::string bytes, const Records &records)
{
    for (const Record &record : records) {
        const size_t units =
                (headSize(format) + record.body.size() + format.unit - 1) / format.unit;
        const size_t start = bytes.size();
        bytes.resize(start + headSize(format));
        setNumberAt(bytes, start + format.type.at, format.type.width, record.type);
        setNumberAt(bytes, start + format.size.at, format.size.width, uint32_t(units));
        bytes += record.body;
        bytes.resize(start + units * format.unit);
    }
    format.mendHeader(bytes, records.size());
    return bytes;
}

// Figures get equal shares.
static void mendCounts(const Format &format, Record &record, Random &random)
{
    const size_t width = format.countWidth;
    std::string &body = record.body;
    for (const Count &count : format.counts) {
        // Of what a type alone does not tell, flags are a part of the numbers.
        const bool hasFlags = count.firstType > format.typeBits;
        const uint32_t type = hasFlags ? record.type : record.type & format.typeBits;
        if (type < count.firstType || type > count.lastType)
            continue;
        if (count.thingSize == 0) {
            setNumberAt(body, count.at, width, uint32_t(headSize(format) + count.from));
            continue;
        }
        const size_t room = body.size() - std::min(body.size(), count.from);
        size_t things = room / count.thingSize;
        if (count.figuresAt != kNowhere) {
            const size_t most = room / (width + count.thingSize);
            const size_t figures = std::min<size_t>(most, 1 + below(random, 8));
            things = (room - figures * width) / count.thingSize;
            setNumberAt(body, count.figuresAt, width, uint32_t(figures));
            for (size_t i = 0; i < figures; ++i)
                setNumberAt(body, count.from + i * width, width, uint32_t(things / figures));
        }
        if (count.at != kNowhere)
            setNumberAt(body, count.at, width, uint32_t(things));
    }
}

// Numbers that boundaries, indices, stock objects and transforms are made of.
static uint32_t interestingNumber(Random &random)
{
    static constexpr uint32_t kNumbers[] = {
        0,          1,          2,          3,          4,          5,          7,
        8,          16,         100,        0x7FFF,     0x8000,     0xFFFF,     0x10000,
        0x7FFFFFFF, 0x80000000, 0x80000005, 0x80000008, 0x8000000E, 0xFFFFFFFF, 0xFFFFFFF4,
        0x3F800000, 0xBF800000, 0x7F800000, 0x7FC00000, 0x2000,     0x210,
    };
    return kNumbers[below(random, std::size(kNumbers))];
}

static uint32_t randomType(const Format &format, Random &random)
{
    return format.types[below(random, format.types.size())].number;
}

static std::string randomBody(Random &random)
{
    std::string body(below(random, 32) * 4, '\0');
    for (size_t at = 0; at < body.size();) {
        const size_t width = oneIn(random, 2) ? 4 : 2;
        setNumberAt(body, at, width,
                    oneIn(random, 2) ? interestingNumber(random) : uint32_t(below(random, 200)));
        at += width;
    }
    return body;
}

static void changeBytes(std::string &bytes, size_t room, Random &random)
{
    if (!bytes.empty() && oneIn(random, 3)) {
        const size_t width = oneIn(random, 2) ? 4 : 2;
        setNumberAt(bytes, below(random, bytes.size() / 2) * 2, width, interestingNumber(random));
        return;
    }
    const size_t old = bytes.size();
    bytes.resize(old + std::min<size_t>(room, 64));
    bytes.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t *>(bytes.data()), old, bytes.size()));
}

static void changeList(const Format &format, Records &records, size_t at, Random &random)
{
    const auto place = records.begin() + std::ptrdiff_t(at);
    Record &other = records[below(random, records.size())];
    switch (below(random, 4)) {
    case 0:
        records.insert(place, { randomType(format, random), randomBody(random) });
        return mendCounts(format, records[at], random);
    case 1:
        records.insert(place, Record(other));
        return;
    case 2:
        return std::swap(records[at], other);
    default:
        records.erase(place);
    }
}

static std::string changed(const Format &format, const std::string &bytes, size_t room,
                           Random &random)
{
    Records records = parse(format, bytes);
    std::string header = bytes.substr(0, format.headerSize(bytes));
    header.resize(format.headerSize(bytes));
    if (records.empty())
        records.push_back({ randomType(format, random), randomBody(random) });
    const size_t at = below(random, records.size());
    if (oneIn(random, 16)) {
        changeBytes(header, 0, random);
        header.resize(format.headerSize(header));
    } else if (oneIn(random, 3)) {
        changeList(format, records, at, random);
    } else {
        changeBytes(records[at].body, room, random);
        uint32_t &type = records[at].type;
        if (oneIn(random, 8))
            type = (type & ~format.typeBits) | randomType(format, random);
        if (oneIn(random, 8))
            type ^= (1U << below(random, 32)) & ~format.typeBits;
        if (!oneIn(random, 8))
            mendCounts(format, records[at], random);
    }
    return join(format, header, records);
}

} // namespace svgtool::fuzz

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned int seed)
{
    svgtool::fuzz::Random random(seed);
    const svgtool::fuzz::Format &format = SVGTOOL_FUZZ_FORMAT();
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (format.unpack != nullptr)
        bytes = format.unpack(bytes);
    std::string result =
            svgtool::fuzz::changed(format, bytes, maxSize - std::min(size, maxSize), random);
    if (format.pack != nullptr)
        result = format.pack(result);
    const size_t length = std::min(result.size(), maxSize);
    std::copy_n(result.data(), length, data);
    return length;
}
