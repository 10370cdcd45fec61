#include "fuzz/RecordMutator.h"

namespace svgtool::fuzz {

static constexpr uint32_t kTypes[] = { 42, 43, 44, 54, 45,  55, 46, 47, 27, 41, 3,  86, 4,
                                       87, 6,  89, 7,  90,  8,  91, 5,  88, 2,  85, 92, 25,
                                       38, 39, 93, 95, 37,  84, 24, 82, 75, 76, 71, 72, 40,
                                       18, 11, 9,  10, 12,  17, 59, 60, 64, 62, 61, 81, 116,
                                       78, 77, 79, 22, 108, 67, 68, 35, 36, 30, 56, 14 };

static constexpr Count kCounts[] = {
    { 2, 6, 16, 20, 8 }, // points of 32 bits
    { 85, 89, 16, 20, 4 }, // points of 16 bits
    { 92, 92, 16, 20, 5 }, // such points, each with a type
    { 7, 8, 20, 24, 8, 16 }, // figures
    { 90, 91, 20, 24, 4, 16 }, { 71, 71, 16, 24, 1 }, // a region's bytes
    { 71, 71, 32, 56, 16 }, // its rectangles
    { 71, 71, 36, 56, 1 }, // their bytes
    { 72, 72, 16, 32, 1 },     { 72, 72, 40, 64, 16 }, { 72, 72, 44, 64, 1 }, { 75, 75, 0, 8, 1 },
    { 75, 75, 16, 40, 16 },    { 75, 75, 20, 40, 1 },  { 95, 95, 40, 44, 4 }, // dashes
    { 108, 108, 8, 44, 2 }, // characters
    { 84, 84, 36, 68, 2 },     { 84, 84, 40, 68, 0 }, // where they start
};

static size_t headerSize(const std::string &)
{
    return 88;
}

static void mendHeader(std::string &bytes, size_t records)
{
    setNumberAt(bytes, 0, 4, 1);
    setNumberAt(bytes, 4, 4, uint32_t(headerSize(bytes)));
    setNumberAt(bytes, 40, 4, 0x464D4520); // " EMF"
    setNumberAt(bytes, 48, 4, uint32_t(bytes.size()));
    setNumberAt(bytes, 52, 4, uint32_t(1 + records));
}

const Format &emfFormat()
{
    static constexpr Format kFormat{ .types = kTypes,
                                     .counts = kCounts,
                                     .type = { 0, 4 },
                                     .size = { 4, 4 },
                                     .unit = 1,
                                     .countWidth = 4,
                                     .headerSize = &headerSize,
                                     .mendHeader = &mendHeader };
    return kFormat;
}

} // namespace svgtool::fuzz
