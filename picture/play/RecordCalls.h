#pragma once

#include "core/records/Fields.h"
#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace svgtool::picture {

// What records of both formats have in common: the calls they make, and the structures in them. A
// Format says where the fields of a record begin (kBody) and how they lie: takeInt, takeNumber,
// takePair, takePoint and takeBox.

using RecordCall = Played (*)(DeviceContext &dc, ByteView record);

/// A record without fields that matter.
template<auto Call>
Played playPlain(DeviceContext &dc, ByteView)
{
    return (dc.*Call)();
}

/// A record of one number.
template<class Format, auto Call>
Played playNumber(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(Format::takeNumber(fields));
}

/// A record of one number with a sign.
template<class Format, auto Call>
Played playInt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(Format::takeInt(fields));
}

/// A record of a COLORREF, [MS-WMF] 2.2.2.8.
template<class Format, auto Call>
Played playColor(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(dc.colorOfReference(fields.dword()));
}

/// A record of two whole numbers.
template<class Format, auto Call>
Played playPair(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(Format::takePair(fields));
}

template<class Format, auto Call>
Played playPoint(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(Format::takePoint(fields));
}

template<class Format, auto Call>
Played playBox(DeviceContext &dc, ByteView record)
{
    Fields fields(record, Format::kBody);
    return (dc.*Call)(Format::takeBox(fields));
}

inline constexpr Played kTooFewPoints = notDone("it names more points than it has");

/// As many points as a record says, or as there are in it.
/// @tparam Number  of which each has two, x first
template<class Number>
std::vector<PointD> takePoints(ByteView record, Fields &fields, int64_t count)
{
    using Pair = std::array<Number, 2>;
    const ByteView rest = tail(record, fields.offset());
    count = std::min(count, rest.size / int64_t(sizeof(Pair)));
    std::vector<PointD> points;
    points.reserve(size_t(count));
    for (int64_t i = 0; i < count; ++i) {
        const auto pair = elementAt<Pair>(rest, i);
        points.push_back({ double(fromLittleEndian(pair[0])), double(fromLittleEndian(pair[1])) });
    }
    fields.skip(count * int64_t(sizeof(Pair)));
    return points;
}

/// What became of a record that is drawn with @p points, of which it names @p count.
inline Played ofPoints(const std::vector<PointD> &points, int64_t count, const Played &played)
{
    if (int64_t(points.size()) >= count || played.outcome != RecordOutcome::Drawn)
        return played;
    return points.empty() ? kTooFewPoints : approximated("it names more points than it has");
}

/// Makes figures have no more than @p points in all; the first ones keep theirs.
inline void trimFigures(std::vector<uint32_t> &counts, size_t points)
{
    for (uint32_t &count : counts) {
        count = uint32_t(std::min<size_t>(count, points));
        points -= count;
    }
    std::erase(counts, 0U);
}

/// LogBrush, [MS-WMF] 2.2.1.10 and [MS-EMF] 2.2.12. Styles that need a bitmap are solid.
template<class Format>
Brush takeBrush(const DeviceContext &dc, Fields &fields)
{
    constexpr uint32_t kNull = 1, kHatched = 2, kHatches = 6;
    const uint32_t style = Format::takeNumber(fields);
    Brush brush;
    brush.color = dc.colorOfReference(fields.dword());
    const uint32_t hatch = Format::takeNumber(fields);
    if (style == kNull)
        brush.kind = Brush::Kind::Null;
    else if (style == kHatched && hatch < kHatches)
        brush.kind = Brush::Kind::Hatched;
    brush.hatch = uint8_t(hatch);
    return brush;
}

/// Font, [MS-WMF] 2.2.1.2, and LogFont, [MS-EMF] 2.2.13, up to the name.
template<class Format>
Font takeFont(Fields &fields)
{
    Font font;
    font.height = Format::takeInt(fields);
    font.width = Format::takeInt(fields);
    font.escapement = Format::takeInt(fields);
    font.orientation = Format::takeInt(fields);
    font.weight = Format::takeInt(fields);
    font.isItalic = fields.byte() != 0;
    font.isUnderlined = fields.byte() != 0;
    font.isStruckOut = fields.byte() != 0;
    font.charSet = fields.byte();
    fields.skip(3); // precisions and quality
    font.pitchAndFamily = fields.byte();
    return font;
}

/// Entries of a palette, four bytes each; nothing when they do not fit.
inline std::optional<Palette> takePalette(ByteView record, Fields &fields, int64_t count)
{
    if (!slice(record, fields.offset(), count * 4))
        return std::nullopt;
    Palette palette;
    palette.reserve(size_t(count));
    for (int64_t i = 0; i < count; ++i) {
        const uint8_t red = fields.byte(), green = fields.byte(), blue = fields.byte();
        fields.skip(1);
        palette.push_back(argb(red, green, blue));
    }
    return palette;
}

inline constexpr Played kTooFewEntries = notDone("it names more entries than it has");

} // namespace svgtool::picture
