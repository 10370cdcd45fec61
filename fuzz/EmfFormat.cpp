#include "core/records/EmfRecordTypes.h"
#include "core/records/EmfRecords.h"
#include "fuzz/RecordMutator.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace svgtool::fuzz {

static constexpr Count kPlainCounts[] = {
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

/// Where a record of a bitmap tells where that lies.
struct BitmapFields
{
    uint32_t type;
    size_t at; ///< of the header's offset and size, and those of the bits
    size_t from; ///< where the variable part begins
};

static constexpr BitmapFields kBitmaps[] = {
    { Emr::BitBlt, 76, 92 },         { Emr::StretchBlt, 76, 100 },
    { Emr::MaskBlt, 76, 120 },       { Emr::PlgBlt, 88, 132 },
    { Emr::AlphaBlend, 76, 100 },    { Emr::TransparentBlt, 76, 100 },
    { Emr::StretchDIBits, 40, 72 },  { Emr::SetDIBitsToDevice, 40, 68 },
    { Emr::CreateMonoBrush, 8, 24 }, { Emr::CreateDIBPatternBrushPt, 8, 24 },
};

// A bitmap fills the rest of its record. Its header is the usual one; the colour table, if there is
// one, is a part of the bits, too.
static constexpr auto kCounts = [] {
    constexpr size_t kHeader = 40;
    std::array<Count, std::size(kPlainCounts) + 4 * std::size(kBitmaps)> all{};
    auto next = std::copy(std::begin(kPlainCounts), std::end(kPlainCounts), all.begin());
    for (const auto &[type, at, from] : kBitmaps) {
        *next++ = { type, type, at, from, 0 };
        *next++ = { type, type, at + 4, from, 1 };
        *next++ = { type, type, at + 8, from + kHeader, 0 };
        *next++ = { type, type, at + 12, from + kHeader, 1 };
    }
    return all;
}();

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
