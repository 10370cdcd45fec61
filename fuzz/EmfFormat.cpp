#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "fuzz/RecordMutator.h"

namespace svgtool::fuzz {

static constexpr Count kCounts[] = {
    { Emr::PolyBezier, Emr::PolylineTo, 16, 20, 8 }, // points of 32 bits
    { Emr::PolyBezier16, Emr::PolylineTo16, 16, 20, 4 }, // points of 16 bits
    { Emr::PolyDraw16, Emr::PolyDraw16, 16, 20, 5 }, // such points, each with a type
    { Emr::PolyPolyline, Emr::PolyPolygon, 20, 24, 8, 16 }, // figures
    { Emr::PolyPolyline16, Emr::PolyPolygon16, 20, 24, 4, 16 },
    { Emr::FillRgn, Emr::FillRgn, 16, 24, 1 }, // a region's bytes
    { Emr::FillRgn, Emr::FillRgn, 32, 56, 16 }, // its rectangles
    { Emr::FillRgn, Emr::FillRgn, 36, 56, 1 }, // their bytes
    { Emr::FrameRgn, Emr::FrameRgn, 16, 32, 1 },
    { Emr::FrameRgn, Emr::FrameRgn, 40, 64, 16 },
    { Emr::FrameRgn, Emr::FrameRgn, 44, 64, 1 },
    { Emr::ExtSelectClipRgn, Emr::ExtSelectClipRgn, 0, 8, 1 },
    { Emr::ExtSelectClipRgn, Emr::ExtSelectClipRgn, 16, 40, 16 },
    { Emr::ExtSelectClipRgn, Emr::ExtSelectClipRgn, 20, 40, 1 },
    { Emr::ExtCreatePen, Emr::ExtCreatePen, 40, 44, 4 }, // dashes
    { Emr::SmallTextOut, Emr::SmallTextOut, 8, 44, 2 }, // characters
    { Emr::ExtTextOutW, Emr::ExtTextOutW, 36, 68, 2 },
    { Emr::ExtTextOutW, Emr::ExtTextOutW, 40, 68, 0 }, // where they start
};

static size_t headerSize(const std::string &)
{
    return 88;
}

static void mendHeader(std::string &bytes, size_t records)
{
    setNumberAt(bytes, 0, 4, 1);
    setNumberAt(bytes, 4, 4, uint32_t(headerSize(bytes)));
    setNumberAt(bytes, 40, 4, kEmfSignature);
    setNumberAt(bytes, 48, 4, uint32_t(bytes.size()));
    setNumberAt(bytes, 52, 4, uint32_t(1 + records));
}

const Format &emfFormat()
{
    static constexpr Format kFormat{ .types = kEmfRecordTypes,
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
