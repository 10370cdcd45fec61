#include "fuzz/RecordMutator.h"

#include <algorithm>
#include <iterator>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace svgtool::fuzz {

using Records = std::vector<Metafile::Record>;

static size_t below(Random &random, size_t limit)
{
    return limit == 0 ? 0 : random() % limit;
}

bool oneIn(Random &random, unsigned n)
{
    return below(random, n) == 0;
}

std::string padded(const std::string &bytes, size_t size)
{
    std::string result = bytes.substr(0, size);
    result.resize(size);
    return result;
}

uint32_t roomFrom(const std::string &bytes, size_t offset)
{
    return offset < bytes.size() ? uint32_t(bytes.size() - offset) : 0;
}

uint32_t numberAt(const std::string &bytes, size_t offset, size_t width)
{
    uint32_t value = 0;
    for (size_t i = 0; offset + width <= bytes.size() && i < width; ++i)
        value |= uint32_t(uint8_t(bytes[offset + i])) << (8 * i);
    return value;
}

void setNumberAt(std::string &bytes, size_t offset, size_t width, uint32_t value)
{
    for (size_t i = 0; offset + width <= bytes.size() && i < width; ++i)
        bytes[offset + i] = char(value >> (8 * i));
}

// Numbers that boundaries, indices, stock objects and transforms are made of.
static uint32_t interestingNumber(Random &random)
{
    static constexpr uint32_t kNumbers[] = {
        0,          1,          2,          3,          4,          5,          7,
        8,          16,         100,        0x7FFF,     0x8000,     0xFFFF,     0x10000,
        0x7FFFFFFF, 0x80000000, 0x80000005, 0x80000008, 0x8000000E, 0xFFFFFFFF, 0xFFFFFFF4,
        0x3F800000, 0xBF800000, 0x7F800000, 0x7FC00000, 0x00000001, 0x2000,     0x210,
    };
    return kNumbers[below(random, std::size(kNumbers))];
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
    switch (below(random, 4)) {
    case 0:
        records.insert(place,
                       { format.types[below(random, format.types.size())], randomBody(random) });
        format.mendCounts(records[at], random);
        break;
    case 1:
        records.insert(place, Metafile::Record(records[below(random, records.size())]));
        break;
    case 2:
        std::swap(records[at], records[below(random, records.size())]);
        break;
    default:
        records.erase(place);
    }
}

size_t mutateRecords(const Format &format, uint8_t *data, size_t size, size_t maxSize,
                     unsigned seed)
{
    Random random(seed);
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    Metafile metafile = format.parse(bytes);
    Records &records = metafile.records;
    if (records.empty())
        records.push_back({ format.types.front(), randomBody(random) });
    const size_t at = below(random, records.size());
    if (oneIn(random, 16)) {
        changeBytes(metafile.head, 0, random);
    } else if (oneIn(random, 3)) {
        changeList(format, records, at, random);
    } else {
        changeBytes(records[at].body, maxSize - std::min(size, maxSize), random);
        if (oneIn(random, 8))
            records[at].type = format.types[below(random, format.types.size())];
        if (!oneIn(random, 8))
            format.mendCounts(records[at], random);
    }
    const std::string changed = format.join(metafile);
    const size_t length = std::min(changed.size(), maxSize);
    std::copy_n(changed.data(), length, data);
    return length;
}

} // namespace svgtool::fuzz
