#include "picture/play/WmfCalls.h"

#include "picture/play/TextCharacters.h"

namespace svgtool::picture::wmf {

static constexpr Played kTooFewCharacters = notDone("it names more characters than it has");

static int64_t padded(int64_t bytes)
{
    return bytes + bytes % 2;
}

Played textOut(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const int64_t count = fields.word();
    const auto text = slice(record, fields.offset(), count);
    if (!text)
        return kTooFewCharacters;
    fields.skip(padded(count));
    TextCharacters characters;
    decodeCharacters(characters, *text, dc);
    return dc.textOut({ characters.units, takePoint(fields), 0, {}, {}, {}, false });
}

Played extTextOut(DeviceContext &dc, ByteView record)
{
    constexpr uint32_t kHasBox = 6; // ETO_OPAQUE, ETO_CLIPPED
    Fields fields(record, kBody);
    const PointD reference = takePoint(fields);
    const int64_t count = fields.word();
    const uint32_t options = fields.word();
    RectD box;
    if ((options & kHasBox) != 0) {
        const PointD start = takeArrayPoint(fields), end = takeArrayPoint(fields);
        box = { start.x, start.y, end.x, end.y };
    }
    const auto text = slice(record, fields.offset(), count);
    if (!text)
        return kTooFewCharacters;
    fields.skip(padded(count));
    constexpr uint32_t kPairs = 0x2000; // ETO_PDY: the advances are pairs
    const bool hasPairs = (options & kPairs) != 0;
    TextCharacters characters;
    // An advance for each byte.
    if (slice(record, fields.offset(), count * (hasPairs ? 4 : 2))) {
        characters.advances.reserve(size_t(count));
        for (int64_t i = 0; i < count; ++i) {
            characters.advances.push_back(fields.shortInt());
            if (hasPairs)
                characters.rises.push_back(fields.shortInt());
        }
    }
    decodeCharacters(characters, *text, dc);
    return dc.textOut({ characters.units, reference, options, box, characters.advances,
                        characters.rises, false });
}

} // namespace svgtool::picture::wmf
