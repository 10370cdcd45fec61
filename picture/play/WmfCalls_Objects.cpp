#include "picture/play/WmfCalls.h"

#include "core/text/FaceNames.h"
#include "picture/play/TextCharacters.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace svgtool::picture::wmf {

Played createPen(DeviceContext &dc, ByteView record)
{
    constexpr uint16_t kStyle = 0x0F;
    Fields fields(record, kBody);
    const uint16_t style = fields.word() & kStyle;
    Pen pen;
    pen.line = style <= uint16_t(Pen::Line::InsideFrame) ? Pen::Line(style) : Pen::Line::Solid;
    pen.width = std::abs(fields.shortInt());
    fields.skip(2); // the width's y, which does not count
    pen.brush.color = dc.colorOfReference(fields.dword());
    return dc.createInFreeSlot(pen);
}

Played createBrush(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return dc.createInFreeSlot(takeBrush<Format>(dc, fields));
}

Played createFont(DeviceContext &dc, ByteView record)
{
    constexpr int kFaceBytes = 32;
    Fields fields(record, kBody);
    Font font = takeFont<Format>(fields);
    std::string face;
    for (int i = 0; i < kFaceBytes; ++i) {
        const uint8_t byte = fields.byte();
        if (byte == 0)
            break;
        face += char(byte);
    }
    const bool isSystems = font.charSet == CharSet::kDefault;
    font.face = decodeFace({ face.data(), int64_t(face.size()) },
                           isSystems ? dc.systemCharSet() : font.charSet);
    font.charSet = textCharSet(font);
    return dc.createInFreeSlot(font);
}

Played createOther(DeviceContext &dc, ByteView)
{
    return dc.createInFreeSlot(Other());
}

// Region, [MS-WMF] 2.2.1.5: scans, which are bands of boxes.
Played createRegion(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + 10);
    const int scans = fields.word();
    fields.skip(2 + 8); // longest scan, and bounds
    // What cannot be read takes a slot, too.
    const auto unusable = [&dc](const char *why) {
        dc.createInFreeSlot(Other());
        return notDone(why);
    };
    std::vector<RectI> rects;
    for (int i = 0; i < scans; ++i) {
        const int count = fields.word();
        const int32_t top = fields.shortInt(), bottom = fields.shortInt();
        if (!slice(record, fields.offset(), int64_t(count) * 2))
            return unusable("its bands are longer than it is");
        for (int side = 0; side + 1 < count; side += 2) {
            const int32_t left = fields.shortInt();
            rects.push_back({ left, top, fields.shortInt(), bottom });
        }
        fields.skip(2 * (count % 2) + 2); // the count again
    }
    auto region = Region::of(std::move(rects));
    if (!region)
        return unusable("it has too many rectangles");
    dc.grantRegion(*region);
    return dc.createInFreeSlot(std::make_shared<const Region>(std::move(*region)));
}

Played createPalette(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody + 2);
    const int64_t count = fields.word();
    auto palette = takePalette(record, fields, count);
    return dc.createInFreeSlot(std::make_shared<Palette>(std::move(palette).value_or(Palette())));
}

// Changes the palette that is selected.
Played setPaletteEntries(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t first = fields.word();
    const int64_t count = fields.word();
    const auto palette = takePalette(record, fields, count);
    return palette ? dc.setPaletteEntries(DeviceContext::kSelectedPalette, first, *palette)
                   : kTooFewEntries;
}

Played resizePalette(DeviceContext &dc, ByteView record)
{
    return dc.resizePalette(DeviceContext::kSelectedPalette, Fields(record, kBody).word());
}

} // namespace svgtool::picture::wmf
