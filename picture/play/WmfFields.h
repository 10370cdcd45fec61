#pragma once

#include "core/records/Fields.h"
#include "picture/gdi/State.h"

namespace svgtool::picture::wmf {

/// Where the fields of a record begin: behind its size and type.
inline constexpr int64_t kBody = 6;

// Parameters stand in the reverse order of the call's arguments: y before x, bottom before top.

inline PointL takePair(Fields &fields)
{
    const int16_t y = fields.shortInt();
    return { fields.shortInt(), y };
}

inline PointD takePoint(Fields &fields)
{
    const PointL point = takePair(fields);
    return { double(point.x), double(point.y) };
}

inline RectD takeBox(Fields &fields)
{
    const PointD end = takePoint(fields), start = takePoint(fields);
    return { start.x, start.y, end.x, end.y };
}

/// How fields lie, for what both formats have in common.
struct Format
{
    static constexpr int64_t kBody = wmf::kBody;
    static int16_t takeInt(Fields &fields) { return fields.shortInt(); }
    static uint16_t takeNumber(Fields &fields) { return fields.word(); }
    static PointL takePair(Fields &fields) { return wmf::takePair(fields); }
    static PointD takePoint(Fields &fields) { return wmf::takePoint(fields); }
    static RectD takeBox(Fields &fields) { return wmf::takeBox(fields); }
};

/// A point of an array, which has x first.
inline PointD takeArrayPoint(Fields &fields)
{
    const int16_t x = fields.shortInt();
    return { double(x), double(fields.shortInt()) };
}

} // namespace svgtool::picture::wmf
