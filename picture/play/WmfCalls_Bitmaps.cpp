#include "picture/play/WmfCalls.h"

#include "core/raster/DibHeader.h"

#include <algorithm>
#include <string>

namespace svgtool::picture::wmf {

namespace {

    // A bitmap whose bits follow its colours. None, which cannot be decoded, unless the header
    // makes sense.
    DibBytes packedDib(ByteView bytes, uint32_t usage)
    {
        const auto header = readDibHeader(bytes, usage);
        if (!header)
            return {};
        constexpr uint32_t kPaletteIndices = 1;
        const int64_t entryBytes = usage == kPaletteIndices ? 2 : header->tableEntryBytes;
        int64_t entries = header->tableEntries;
        // More colours than there are bytes are a number that is damaged.
        constexpr int64_t kMostEntries = 256;
        if (header->tableOffset + entries * entryBytes > bytes.size && header->depth <= 8)
            entries = std::min(entries, kMostEntries >> (8 - header->depth));
        const int64_t infoBytes = std::min(header->tableOffset + entries * entryBytes, bytes.size);
        return { { bytes.data, infoBytes }, tail(bytes, infoBytes), usage };
    }

    // Height and width, then y and x.
    BlitBox takeBlitBox(Fields &fields)
    {
        BlitBox box;
        box.extent = takePair(fields);
        box.at = takePair(fields);
        return box;
    }

    // The bitmap at the end of a record: independent of devices, or not so in the older types.
    BlitSource sourceOf(ByteView bitmap, uint32_t type, const BlitBox &box)
    {
        constexpr uint32_t kBitBlt = 0x0922, kStretchBlt = 0x0B23;
        BlitSource source{ {}, box };
        if (type == kBitBlt || type == kStretchBlt)
            source.bitmap16 = bitmap;
        else
            source.dib = packedDib(bitmap, 0);
        return source;
    }

    // Records that lack the bitmap have a word in the place that it would begin.
    bool hasBitmap(ByteView record, uint32_t type)
    {
        return record.size / 2 != int64_t(type >> 8) + 3;
    }

} // namespace

Played patBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t operation = fields.dword();
    return dc.stretchBlt(takeBlitBox(fields), nullptr, operation);
}

Played dibBitBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t type = Fields(record, 4).word();
    const uint32_t operation = fields.dword();
    const PointL at = takePair(fields);
    const bool isWithBitmap = hasBitmap(record, type);
    fields.skip(isWithBitmap ? 0 : 2);
    const BlitBox to = takeBlitBox(fields);
    const BlitSource source = sourceOf(tail(record, fields.offset()), type, { at, to.extent });
    return dc.stretchBlt(to, isWithBitmap ? &source : nullptr, operation);
}

Played dibStretchBlt(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t type = Fields(record, 4).word();
    const uint32_t operation = fields.dword();
    const BlitBox from = takeBlitBox(fields);
    const bool isWithBitmap = hasBitmap(record, type);
    fields.skip(isWithBitmap ? 0 : 2);
    const BlitBox to = takeBlitBox(fields);
    const BlitSource source = sourceOf(tail(record, fields.offset()), type, from);
    return dc.stretchBlt(to, isWithBitmap ? &source : nullptr, operation);
}

Played stretchDib(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t operation = fields.dword();
    const uint32_t usage = fields.word();
    const BlitBox from = takeBlitBox(fields);
    const BlitBox to = takeBlitBox(fields);
    return dc.stretchDibits(to, from, packedDib(tail(record, fields.offset()), usage), operation);
}

Played setDibToDevice(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const uint32_t usage = fields.word();
    const uint32_t lines = fields.word(), firstLine = fields.word();
    BlitBox from;
    from.at = takePair(fields);
    from.extent = takePair(fields);
    const PointL to = takePair(fields);
    return dc.setDibitsToDevice(to, from, packedDib(tail(record, fields.offset()), usage),
                                firstLine, lines);
}

static Played createBrush(DeviceContext &dc, const BlitSource &bitmap, bool isMono)
{
    if (const auto brush = dc.patternBrush(bitmap, isMono))
        return dc.createInFreeSlot(*brush);
    // The slots of others depend on it.
    dc.createInFreeSlot(Other());
    return notDone("its bitmap makes no sense");
}

Played createDibBrush(DeviceContext &dc, ByteView record)
{
    constexpr uint16_t kPattern = 3; // BS_PATTERN: made of a bitmap of the device
    Fields fields(record, kBody);
    const bool isMono = fields.word() == kPattern;
    const uint32_t usage = fields.word();
    const ByteView bytes = tail(record, fields.offset());
    BlitSource bitmap{ packedDib(bytes, usage), {} };
    if (isMono && bitmap.dib.info.data == nullptr)
        bitmap.bitmap16 = bytes;
    return createBrush(dc, bitmap, isMono);
}

// [MS-WMF] 2.3.4.4: the fields of a bitmap, of which some are no use, and its bits.
Played createPatternBrush(DeviceContext &dc, ByteView record)
{
    constexpr int64_t kFields = 10, kBits = 32;
    std::string bitmap;
    if (slice(record, kBody, kBits)) {
        const ByteView bits = tail(record, kBody + kBits);
        bitmap.assign(record.data + kBody, size_t(kFields)).append(bits.data, size_t(bits.size));
    }
    return createBrush(dc, { {}, {}, {}, { bitmap.data(), int64_t(bitmap.size()) } }, true);
}

} // namespace svgtool::picture::wmf
