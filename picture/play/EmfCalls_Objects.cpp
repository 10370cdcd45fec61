#include "picture/play/EmfCalls.h"

#include "picture/play/TextCharacters.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture::emf {

static void setStyle(Pen &pen, uint32_t style)
{
    const uint32_t line = style & 0x0F;
    pen.line = line <= uint32_t(Pen::Line::Alternate) ? Pen::Line(line) : Pen::Line::Solid;
    static constexpr Cap kCaps[] = { Cap::Round, Cap::Square, Cap::Butt };
    static constexpr Join kJoins[] = { Join::Round, Join::Bevel, Join::Miter };
    pen.cap = kCaps[std::min<uint32_t>(style >> 8 & 0x0F, 2)];
    pen.join = kJoins[std::min<uint32_t>(style >> 12 & 0x0F, 2)];
}

Played createPen(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    Pen pen;
    setStyle(pen, fields.dword() & 0x0F);
    pen.width = std::abs(takePoint(fields).x);
    pen.brush.color = takeColor(dc, fields);
    return dc.createObject(handle, pen);
}

Played createBrush(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    return dc.createObject(handle, takeBrush<Format>(dc, fields));
}

Played extCreatePen(DeviceContext &dc, ByteView record)
{
    constexpr uint32_t kType = 0xF0000, kGeometric = 0x10000;
    constexpr uint32_t kNull = 1, kHatched = 2, kPattern = 3, kHatches = 6;
    constexpr uint32_t kMostDashes = 16; // as GDI takes them
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    DibRange range;
    takeRange(fields, range);
    const uint32_t style = fields.dword();
    Pen pen;
    setStyle(pen, style);
    pen.isExtended = true;
    pen.isGeometric = (style & kType) == kGeometric;
    pen.width = fields.dword();
    const uint32_t brush = fields.dword();
    if (brush == kNull)
        pen.line = Pen::Line::Null;
    const uint32_t color = fields.dword();
    pen.brush.color = dc.colorOfReference(color);
    const uint32_t hatch = fields.dword();
    if (brush == kHatched && hatch < kHatches && pen.isGeometric) {
        pen.brush.kind = Brush::Kind::Hatched;
        pen.brush.hatch = uint8_t(hatch);
    } else if (brush >= kPattern && pen.isGeometric) {
        range.usage = color & 0xFFFF;
        pen.brush = dc.patternBrush({ dibOf(record, range), {} }, brush == kPattern)
                            .value_or(pen.brush);
    }
    const int64_t count = std::min(fields.dword(), kMostDashes);
    if (slice(record, fields.offset(), count * 4)) {
        for (int64_t i = 0; i < count; ++i)
            pen.dashes.push_back(fields.dword());
    }
    return dc.createObject(handle, pen);
}

Played createFont(DeviceContext &dc, ByteView record)
{
    constexpr int kFaceUnits = 32;
    Fields fields(record, kBody);
    const uint32_t handle = fields.dword();
    Font font = takeFont<Format>(fields);
    for (int i = 0; i < kFaceUnits; ++i) {
        const char16_t unit = fields.word();
        if (unit == 0)
            break;
        font.face += unit;
    }
    font.charSet = textCharSet(font);
    return dc.createObject(handle, font);
}

Played createOther(DeviceContext &dc, ByteView record)
{
    return dc.createObject(Fields(record, kBody).dword(), Other());
}

} // namespace svgtool::picture::emf
