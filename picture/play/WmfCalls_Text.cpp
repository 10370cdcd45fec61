#include "picture/play/WmfCalls.h"

#include "core/text/CharacterSet.h"

#include <vector>

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
    const std::u16string characters = decodeText(*text, dc.state().font->charSet);
    return dc.textOut(characters, takePoint(fields), 0, {}, {});
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
    const std::u16string characters = decodeText(*text, dc.state().font->charSet);
    std::vector<int32_t> advances;
    // An advance for each byte, which is one for each character but in double-byte sets.
    if (slice(record, fields.offset(), count * 2) && characters.size() == size_t(count)) {
        for (int64_t i = 0; i < count; ++i)
            advances.push_back(fields.shortInt());
    }
    return dc.textOut(characters, reference, options, box, advances);
}

} // namespace svgtool::picture::wmf
