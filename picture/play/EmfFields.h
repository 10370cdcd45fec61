#pragma once

#include "core/records/Fields.h"
#include "picture/gdi/DeviceContext.h"

#include <optional>
#include <span>
#include <vector>

namespace svgtool::picture::emf {

/// Where the fields of a record begin: behind its type and size.
inline constexpr int64_t kBody = 8;
/// RECTL, [MS-WMF] 2.2.2.19: bounds that many records begin with, and that playback ignores.
inline constexpr int64_t kBounds = 16;

/// A COLORREF, [MS-WMF] 2.2.2.8.
inline Color takeColor(const DeviceContext &dc, Fields &fields)
{
    return dc.colorOfReference(fields.dword());
}

inline PointL takePair(Fields &fields)
{
    const int32_t x = fields.longInt();
    return { x, fields.longInt() };
}

inline PointD takePoint(Fields &fields)
{
    const PointL point = takePair(fields);
    return { double(point.x), double(point.y) };
}

inline RectD takeBox(Fields &fields)
{
    const PointD first = takePoint(fields), second = takePoint(fields);
    return { first.x, first.y, second.x, second.y };
}

/// How fields lie, for what both formats have in common.
struct Format
{
    static constexpr int64_t kBody = emf::kBody;
    static int32_t takeInt(Fields &fields) { return fields.longInt(); }
    static uint32_t takeNumber(Fields &fields) { return fields.dword(); }
    static PointL takePair(Fields &fields) { return emf::takePair(fields); }
    static PointD takePoint(Fields &fields) { return emf::takePoint(fields); }
    static RectD takeBox(Fields &fields) { return emf::takeBox(fields); }
};

/// XFORM, [MS-EMF] 2.2.28.
inline Affine takeAffine(Fields &fields)
{
    Affine matrix;
    for (double *const value : { &matrix.a, &matrix.b, &matrix.c, &matrix.d, &matrix.e, &matrix.f })
        *value = double(fields.real());
    return matrix;
}

/// Where a bitmap lies in its record: header with colour table, and bits.
struct DibRange
{
    uint32_t info = 0, infoBytes = 0, bits = 0, bitsBytes = 0;
    uint32_t usage = 0;

    bool isEmpty() const { return infoBytes == 0; }
};

/// All but the usage, whose place differs.
inline void takeRange(Fields &fields, DibRange &range)
{
    for (uint32_t *const field : { &range.info, &range.infoBytes, &range.bits, &range.bitsBytes })
        *field = fields.dword();
}

/// None, which cannot be decoded, unless all of it is there.
DibBytes dibOf(ByteView record, const DibRange &range);

/// The rectangles of region data ([MS-EMF] 2.2.24) of so many bytes; nothing unless they are all
/// there.
std::optional<std::vector<RectI>> readRegion(ByteView record, int64_t offset, int64_t bytes);

} // namespace svgtool::picture::emf
