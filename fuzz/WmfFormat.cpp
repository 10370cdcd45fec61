#include "fuzz/RecordMutator.h"

namespace svgtool::fuzz {

static constexpr uint32_t kTypes[] = { 0x0102, 0x0103, 0x012D, 0x01F0, 0x020B, 0x020C, 0x0213,
                                       0x0214, 0x02FA, 0x02FB, 0x02FC, 0x0324, 0x0325, 0x0418,
                                       0x041B, 0x0538, 0x061D, 0x0817, 0x0922, 0x0940, 0x0A32,
                                       0x0B23, 0x0B41, 0x0F43, 0x0000 };

static constexpr Count kCounts[] = {
    { 0x0324, 0x0325, 0, 2, 4 }, // points
    { 0x0538, 0x0538, kNowhere, 2, 4, 0 }, // figures
    { 0x0A32, 0x0A32, 4, 8, 1 }, // characters
};

static constexpr size_t kHeaderSize = 18;

static size_t headerSize(const std::string &bytes)
{
    constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;
    return kHeaderSize + (numberAt(bytes, 0, 4) == kPlaceableKey ? 22 : 0);
}

static void mendHeader(std::string &bytes, size_t /*records*/)
{
    const size_t header = headerSize(bytes) - kHeaderSize;
    setNumberAt(bytes, header + 2, 2, 9);
    // The record that reaches the length is not handled, so it lies behind the last.
    setNumberAt(bytes, header + 6, 4, uint32_t(bytes.size() - header) / 2 + 1);
    setNumberAt(bytes, header + 12, 4, 0x7FFFFFFF);
    setNumberAt(bytes, header + 16, 2, 0);
}

const Format &wmfFormat()
{
    static constexpr Format kFormat{ .types = kTypes,
                                     .counts = kCounts,
                                     .type = { 4, 2 },
                                     .size = { 0, 4 },
                                     .unit = 2,
                                     .countWidth = 2,
                                     .headerSize = &headerSize,
                                     .mendHeader = &mendHeader };
    return kFormat;
}

} // namespace svgtool::fuzz
