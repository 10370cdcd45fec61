#include "core/records/EmfPlusRecordTypes.h"
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

// Most programs write 108 bytes, some a description behind them.
static size_t headerSize(const std::string &bytes)
{
    return std::clamp<size_t>(numberAt(bytes, 4, 4), 88, 512);
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

// An EMF whose records of both kinds are in one chain: a type and flags, a size, and the size of
// the data, which those of the other kind have, too, as long as they are in it.

static constexpr uint32_t kFirstPlus = EmfPlus::Header, kLastPlus = EmfPlus::SetTSClip;
static constexpr uint32_t kIdentifier = 0x2B464D45;
static constexpr size_t kHead = 12, kEmfHead = 8, kCommentHead = 16;

// The object types of an Object record are in its flags.
static constexpr uint32_t objects(uint32_t type)
{
    return type << 24 | EmfPlus::Object;
}

static constexpr Count kPlusCounts[] = {
    { 0, 0xFFFF, 0, 4, 1 }, // the data
    { EmfPlus::FillRects, EmfPlus::FillRects, 8, 12, 16 },
    { EmfPlus::DrawRects, EmfPlus::DrawRects, 4, 8, 16 },
    { EmfPlus::FillPolygon, EmfPlus::FillPolygon, 8, 12, 8 },
    { EmfPlus::DrawLines, EmfPlus::DrawLines, 4, 8, 8 },
    { EmfPlus::FillClosedCurve, EmfPlus::FillClosedCurve, 12, 16, 8 },
    { EmfPlus::DrawClosedCurve, EmfPlus::DrawClosedCurve, 8, 12, 8 },
    { EmfPlus::DrawCurve, EmfPlus::DrawCurve, 16, 20, 8 },
    { EmfPlus::DrawBeziers, EmfPlus::DrawBeziers, 4, 8, 8 },
    { EmfPlus::DrawString, EmfPlus::DrawString, 12, 32, 2 },
    { EmfPlus::DrawDriverString, EmfPlus::DrawDriverString, 16, 20, 10 },
    { objects(3), objects(3) + 0x400000, 8, 16, 9 }, // points of a path and their types
    { objects(6), objects(6) + 0x400000, 24, 28, 2 }, // characters of a font's name
};

static void append(std::string &bytes, uint32_t number)
{
    bytes.resize(bytes.size() + 4);
    setNumberAt(bytes, bytes.size() - 4, 4, number);
}

static std::string unpack(const std::string &bytes)
{
    std::string chain = bytes.substr(0, headerSize(bytes));
    chain.resize(headerSize(bytes));
    for (size_t start = chain.size(); start + kEmfHead <= bytes.size();) {
        const size_t size =
                std::clamp<size_t>(numberAt(bytes, start + 4, 4), kEmfHead, bytes.size() - start);
        const bool isPlus = numberAt(bytes, start, 4) == Emr::GdiComment
                && numberAt(bytes, start + kEmfHead + 4, 4) == kIdentifier;
        if (isPlus) {
            chain += bytes.substr(start, size).erase(0, kCommentHead);
        } else {
            append(chain, numberAt(bytes, start, 2));
            append(chain, uint32_t(size + kHead - kEmfHead));
            append(chain, uint32_t(size - kEmfHead));
            chain += bytes.substr(start + kEmfHead, size - kEmfHead);
        }
        start += size;
    }
    return chain;
}

static std::string pack(const std::string &chain)
{
    std::string bytes = chain.substr(0, headerSize(chain));
    size_t records = 0;
    for (size_t start = bytes.size(); start + kEmfHead <= chain.size(); ++records) {
        const size_t size =
                std::clamp<size_t>(numberAt(chain, start + 4, 4), kEmfHead, chain.size() - start);
        const uint32_t type = numberAt(chain, start, 2);
        const std::string record = chain.substr(start, size);
        if (type >= kFirstPlus && type <= kLastPlus) {
            append(bytes, Emr::GdiComment);
            append(bytes, uint32_t(kCommentHead + size));
            append(bytes, uint32_t(4 + size));
            append(bytes, kIdentifier);
            bytes += record;
        } else {
            const std::string body = record.substr(std::min(kHead, size));
            append(bytes, type);
            append(bytes, uint32_t(kEmfHead + body.size()));
            bytes += body;
        }
        start += size;
    }
    mendHeader(bytes, records);
    return bytes;
}

const Format &emfPlusFormat()
{
    static constexpr Format kFormat{ .types = kEmfPlusRecordTypes,
                                     .counts = kPlusCounts,
                                     .type = { 0, 4 },
                                     .size = { 4, 4 },
                                     .unit = 1,
                                     .countWidth = 4,
                                     .headerSize = &headerSize,
                                     .mendHeader = &mendHeader,
                                     .typeBits = 0xFFFF,
                                     .unpack = &unpack,
                                     .pack = &pack };
    return kFormat;
}

} // namespace svgtool::fuzz
