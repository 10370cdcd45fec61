#include "core/records/WmfRecordTypes.h"
#include "core/records/WmfRecords.h"
#include "fuzz/RecordMutator.h"

namespace svgtool::fuzz {

static constexpr Count kCounts[] = {
    { Meta::Polygon, Meta::Polyline, 0, 2, 4 }, // points
    { Meta::PolyPolygon, Meta::PolyPolygon, kNowhere, 2, 4, 0 }, // figures
    { Meta::ExtTextOut, Meta::ExtTextOut, 4, 8, 1 }, // characters
};

static constexpr size_t kHeaderSize = 18;

static size_t headerSize(const std::string &bytes)
{
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
    static constexpr Format kFormat{ .types = kWmfRecordTypes,
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
