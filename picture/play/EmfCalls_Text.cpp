#include "picture/play/EmfCalls.h"

#include "picture/play/TextCharacters.h"

#include <utility>

namespace svgtool::picture::emf {

namespace {

    constexpr uint32_t kPairs = 0x2000; // ETO_PDY: the advances are pairs
    constexpr uint32_t kNoBox = 0x100, kSmallChars = 0x200; // of EMR_SMALLTEXTOUT
    constexpr uint32_t kAdvancedMode = 2; // GraphicsMode, [MS-EMF] 2.1.16
    constexpr Played kTooShort = notDone("it names more characters than it has");

    /// EmrText, [MS-EMF] 2.2.5.
    struct TextFields
    {
        PointD reference;
        uint32_t count = 0, offset = 0, options = 0;
        RectD box;
        uint32_t advancesAt = 0;
    };

    TextFields takeText(Fields &fields)
    {
        TextFields text;
        text.reference = takePoint(fields);
        text.count = fields.dword();
        text.offset = fields.dword();
        text.options = fields.dword();
        text.box = takeBox(fields);
        text.advancesAt = fields.dword();
        return text;
    }

    std::optional<std::u16string> readUtf16(ByteView record, int64_t offset, int64_t count)
    {
        if (!slice(record, offset, count * 2))
            return std::nullopt;
        std::u16string units(size_t(count), u'\0');
        Fields fields(record, offset);
        for (char16_t &unit : units)
            unit = fields.word();
        return units;
    }

    void readAdvances(TextCharacters &text, ByteView record, const TextFields &fields)
    {
        const bool hasPairs = (fields.options & kPairs) != 0;
        const int64_t size = int64_t(fields.count) * (hasPairs ? 8 : 4);
        if (fields.advancesAt == 0 || !slice(record, fields.advancesAt, size))
            return;
        Fields values(record, fields.advancesAt);
        text.advances.reserve(fields.count);
        for (uint32_t i = 0; i < fields.count; ++i) {
            text.advances.push_back(values.longInt());
            if (hasPairs)
                text.rises.push_back(values.longInt());
        }
    }

    Played draw(DeviceContext &dc, ByteView record, const TextFields &fields, Encoding encoding,
                bool isAdvanced)
    {
        TextCharacters text;
        if (encoding == Encoding::Unicode) {
            auto units = readUtf16(record, fields.offset, fields.count);
            if (!units)
                return kTooShort;
            text.units = std::move(*units);
            readAdvances(text, record, fields);
        } else {
            const auto bytes = slice(record, fields.offset, fields.count);
            if (!bytes)
                return kTooShort;
            readAdvances(text, record, fields);
            decodeCharacters(text, *bytes, dc);
        }
        return dc.textOut({ text.units, fields.reference, fields.options, fields.box, text.advances,
                            text.rises, isAdvanced });
    }

} // namespace

Played playTextOut(DeviceContext &dc, ByteView record, Encoding encoding)
{
    Fields fields(record, kBody + kBounds);
    const bool isAdvanced = fields.dword() == kAdvancedMode;
    fields.skip(8); // the scale of the device that it was recorded for
    TextFields text = takeText(fields);
    // Where the count is wrong the place of the advances tells it, which stand behind.
    const int64_t unit = encoding == Encoding::Unicode ? 2 : 1;
    const int64_t place = text.offset, size = int64_t(text.advancesAt) - place;
    const bool isWhole = slice(record, place, text.count * unit).has_value();
    if (!isWhole && slice(record, place, size))
        text.count = uint32_t(size / unit);
    const Played played = draw(dc, record, text, encoding, isAdvanced);
    return isWhole || played.outcome != RecordOutcome::Drawn
            ? played
            : approximated("it names more characters than it has");
}

Played playPolyTextOut(DeviceContext &dc, ByteView record, Encoding encoding)
{
    constexpr int64_t kTextSize = 40;
    Fields fields(record, kBody + kBounds);
    const bool isAdvanced = fields.dword() == kAdvancedMode;
    fields.skip(8);
    const uint32_t count = fields.dword();
    if (!slice(record, fields.offset(), count * kTextSize))
        return kTooShort;
    Played played = kDone;
    int64_t charactersLeft = record.size; // for strings may lie on each other
    for (uint32_t i = 0; i < count; ++i) {
        const TextFields text = takeText(fields);
        charactersLeft -= text.count;
        if (charactersLeft < 0)
            return notDone("its texts have more characters than it has bytes");
        const Played one = draw(dc, record, text, encoding, isAdvanced);
        if (!one.isDone())
            played = one;
    }
    return played;
}

Played smallTextOut(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    TextFields text;
    text.reference = takePoint(fields);
    text.count = fields.dword();
    text.options = fields.dword();
    const bool isAdvanced = fields.dword() == kAdvancedMode;
    fields.skip(8);
    if ((text.options & kNoBox) == 0)
        text.box = takeBox(fields);
    std::u16string units;
    if ((text.options & kSmallChars) != 0) {
        // The low bytes of UTF-16, whatever the font's character set is.
        const auto bytes = slice(record, fields.offset(), text.count);
        if (!bytes)
            return kTooShort;
        for (int64_t i = 0; i < bytes->size; ++i)
            units += char16_t(uint8_t(bytes->data[i]));
    } else {
        auto read = readUtf16(record, fields.offset(), text.count);
        if (!read)
            return kTooShort;
        units = std::move(*read);
    }
    return dc.textOut({ units, text.reference, text.options, text.box, {}, {}, isAdvanced });
}

} // namespace svgtool::picture::emf
