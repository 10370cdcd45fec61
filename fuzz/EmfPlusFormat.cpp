#include "core/records/EmfPlusRecordTypes.h"
#include "core/records/EmfRecordTypes.h"
#include "fuzz/RecordMutator.h"

#include <algorithm>

// An EMF whose records of both kinds are in one chain: a type and flags, a size, and the size of
// the data, which those of the other kind have, too, as long as they are in it.

namespace svgtool::fuzz {

static constexpr uint32_t kFirstPlus = EmfPlus::Header, kLastPlus = EmfPlus::SetTSClip;
static constexpr uint32_t kIdentifier = 0x2B464D45;
static constexpr size_t kHead = 12, kEmfHead = 8, kCommentHead = 16;

// The object types of an Object record are in its flags.
static constexpr uint32_t objects(uint32_t type)
{
    return type << 24 | EmfPlus::Object;
}

static constexpr Count kCounts[] = {
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

static size_t headerSize(const std::string &)
{
    return 88;
}

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
    uint32_t records = 1;
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
    setNumberAt(bytes, 48, 4, uint32_t(bytes.size()));
    setNumberAt(bytes, 52, 4, records);
    return bytes;
}

static void mendHeader(std::string &bytes, size_t)
{
    setNumberAt(bytes, 0, 4, 1);
    setNumberAt(bytes, 4, 4, uint32_t(headerSize(bytes)));
    setNumberAt(bytes, 40, 4, 0x464D4520); // " EMF"
}

const Format &emfPlusFormat()
{
    static constexpr Format kFormat{ .types = kEmfPlusRecordTypes,
                                     .counts = kCounts,
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
