#include "fuzz/RecordMutator.h"

#include <algorithm>

namespace svgtool::fuzz {

static constexpr size_t kHead = 8; // of a record: type and size
static constexpr size_t kHeaderSize = 88;

static constexpr uint32_t kTypes[] = { 42, 43, 44, 54, 45,  55, 46, 47, 27, 41, 3,  86, 4,
                                       87, 6,  89, 7,  90,  8,  91, 5,  88, 2,  85, 92, 25,
                                       38, 39, 93, 95, 37,  84, 24, 82, 75, 76, 71, 72, 40,
                                       18, 11, 9,  10, 12,  17, 59, 60, 64, 62, 61, 81, 116,
                                       78, 77, 79, 22, 108, 67, 68, 35, 36, 30, 56, 14 };

static Metafile parse(const std::string &bytes)
{
    Metafile metafile;
    metafile.head = padded(bytes, kHeaderSize);
    size_t at = kHeaderSize;
    while (at + kHead <= bytes.size()) {
        const size_t size =
                std::clamp(size_t(numberAt(bytes, at + 4, 4)), kHead, bytes.size() - at);
        metafile.records.push_back(
                { numberAt(bytes, at, 4), bytes.substr(at + kHead, size - kHead) });
        at += size;
    }
    return metafile;
}

static std::string join(const Metafile &metafile)
{
    std::string bytes = padded(metafile.head, kHeaderSize);
    for (const Metafile::Record &record : metafile.records) {
        std::string head(kHead, '\0');
        setNumberAt(head, 0, 4, record.type);
        setNumberAt(head, 4, 4, uint32_t(kHead + record.body.size()));
        bytes += head + record.body;
    }
    setNumberAt(bytes, 0, 4, 1);
    setNumberAt(bytes, 4, 4, uint32_t(kHeaderSize));
    setNumberAt(bytes, 40, 4, 0x464D4520); // " EMF"
    setNumberAt(bytes, 48, 4, uint32_t(bytes.size()));
    setNumberAt(bytes, 52, 4, uint32_t(1 + metafile.records.size()));
    return bytes;
}

// A list of region rectangles from offset on, and its length at lengthAt.
static void mendRegion(std::string &body, size_t lengthAt, size_t offset)
{
    constexpr uint32_t kRegionHeader = 32;
    const uint32_t length = roomFrom(body, offset);
    if (length < kRegionHeader)
        return;
    const uint32_t count = (length - kRegionHeader) / 16;
    setNumberAt(body, lengthAt, 4, length);
    setNumberAt(body, offset + 8, 4, count);
    setNumberAt(body, offset + 12, 4, count * 16);
}

// Shares the points out evenly among a few figures.
static void mendFigures(std::string &body, uint32_t pointSize, Random &random)
{
    const uint32_t room = roomFrom(body, 24);
    const uint32_t figures = std::min<uint32_t>(room / (4 + pointSize), 1 + random() % 8);
    const uint32_t points = (room - figures * 4) / pointSize;
    setNumberAt(body, 16, 4, figures);
    setNumberAt(body, 20, 4, points);
    for (size_t i = 0; i < figures; ++i)
        setNumberAt(body, 24 + i * 4, 4, points / figures);
}

static void mendCounts(Metafile::Record &record, Random &random)
{
    std::string &body = record.body;
    const uint32_t type = record.type;
    if (type >= 2 && type <= 6)
        setNumberAt(body, 16, 4, roomFrom(body, 20) / 8);
    else if (type >= 85 && type <= 89)
        setNumberAt(body, 16, 4, roomFrom(body, 20) / 4);
    else if (type == 7 || type == 8)
        mendFigures(body, 8, random);
    else if (type == 90 || type == 91)
        mendFigures(body, 4, random);
    else if (type == 92)
        setNumberAt(body, 16, 4, roomFrom(body, 20) / 5);
    else if (type == 71)
        mendRegion(body, 16, 24);
    else if (type == 72)
        mendRegion(body, 16, 32);
    else if (type == 75)
        mendRegion(body, 0, 8);
    else if (type == 95)
        setNumberAt(body, 40, 4, roomFrom(body, 44) / 4);
    else if (type == 108)
        setNumberAt(body, 8, 4, roomFrom(body, 44) / 2);
    if (type == 84) {
        setNumberAt(body, 36, 4, roomFrom(body, 68) / 2);
        setNumberAt(body, 40, 4, 76);
    }
}

} // namespace svgtool::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed)
{
    using namespace svgtool::fuzz;
    static constexpr Format kFormat{ kTypes, &parse, &join, &mendCounts };
    return mutateRecords(kFormat, data, size, maxSize, seed);
}
