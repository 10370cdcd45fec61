#include "core/raster/DibDecoder.h"

#include "core/base/ByteOrder.h"
#include "core/raster/DibHeader.h"
#include "core/raster/RunLengths.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>
#include <vector>

namespace svgtool {

namespace {

    // A colour table for every index of the depth. Entries that are not there are black, and
    // without a palette to look them up in, indices are shades of grey.
    std::vector<Argb> colourTable(const DibHeader &header, ByteView info,
                                  std::span<const Argb> palette = {})
    {
        const uint32_t count = 1U << header.depth;
        const auto ofPalette = [count, palette](uint32_t index) {
            if (!palette.empty())
                return index < palette.size() ? palette[index] : kBlack;
            const uint32_t grey = std::min(index, count - 1) * 255 / (count - 1);
            return argb(grey, grey, grey);
        };
        const ByteView table = tail(info, header.tableOffset);
        std::vector<Argb> colours(count, kBlack);
        for (uint32_t i = 0; i < count; ++i) {
            if (header.tableEntryBytes == 0) {
                colours[i] = ofPalette(i);
                continue;
            }
            const auto entry = i < header.tableEntries
                    ? slice(table, i * header.tableEntryBytes, header.tableEntryBytes)
                    : std::nullopt;
            if (!entry)
                continue;
            const auto *bytes = entry->data;
            colours[i] = header.tableEntryBytes == 2
                    ? ofPalette(fromLittleEndian(readPadded<uint16_t>(*entry)))
                    : argb(uint8_t(bytes[2]), uint8_t(bytes[1]), uint8_t(bytes[0]));
        }
        return colours;
    }

    // The bytes of line y, counted from the top.
    ByteView lineOf(const DibHeader &header, ByteView bits, int32_t y)
    {
        const int64_t line = header.isBottomUp ? int64_t(header.height) - 1 - y : y;
        return { bits.data + line * header.stride(), header.stride() };
    }

    Bitmap emptyBitmap(const DibHeader &header, PixelFormat format)
    {
        return Bitmap(format, { header.width, header.height });
    }

    // The lines as they are, top first; the format lays out its pixels as the file does.
    Bitmap linesOf(const DibHeader &header, ByteView bits, PixelFormat format)
    {
        // Bytes are what char may look at, of either sign.
        const auto *const top = reinterpret_cast<const uint8_t *>(lineOf(header, bits, 0).data);
        return Bitmap::borrowed(format, { header.width, header.height }, top,
                                header.isBottomUp ? -header.stride() : header.stride());
    }

    Bitmap from1Bit(const DibHeader &header, ByteView bits)
    {
        Bitmap bitmap = linesOf(header, bits, PixelFormat::Indexed1);
        // What a file has behind the last pixel is anything.
        const auto kept = static_cast<uint8_t>(0xFF00 >> ((header.width - 1) % 8 + 1));
        for (int32_t y = 0; y < header.height; ++y) {
            uint8_t &last = bitmap.line(y)[bitmap.lineBytes() - 1];
            last = static_cast<uint8_t>(last & kept);
        }
        return bitmap;
    }

    Bitmap from4Bits(const DibHeader &header, ByteView bits)
    {
        Bitmap bitmap = emptyBitmap(header, PixelFormat::Indexed8);
        for (int32_t y = 0; y < header.height; ++y) {
            const char *source = lineOf(header, bits, y).data;
            uint8_t *target = bitmap.line(y);
            for (int32_t x = 0; x < header.width; ++x) {
                const auto pair = static_cast<uint8_t>(source[x / 2]);
                target[x] = static_cast<uint8_t>(x % 2 == 0 ? pair >> 4 : pair & 0x0F);
            }
        }
        return bitmap;
    }

    // The part of a pixel under a mask, stretched to 8 bits; without a mask, @p otherwise.
    uint32_t channelOf(uint32_t pixel, uint32_t mask, uint32_t otherwise)
    {
        if (mask == 0)
            return otherwise;
        const int shift = std::countr_zero(mask);
        const uint64_t most = mask >> shift;
        return static_cast<uint32_t>(uint64_t((pixel & mask) >> shift) * 255 / most);
    }

    // Any masks: pixels one by one.
    template<class Pixel>
    Bitmap fromFields(const DibHeader &header, ByteView bits)
    {
        const auto &masks = header.masks;
        const bool hasAlpha = masks[3] != 0;
        Bitmap bitmap = emptyBitmap(header, hasAlpha ? PixelFormat::Bgra32 : PixelFormat::Bgr24);
        const int step = bitsPerPixel(bitmap.format()) / 8;
        for (int32_t y = 0; y < header.height; ++y) {
            const ByteView source = lineOf(header, bits, y);
            uint8_t *target = bitmap.line(y);
            for (int32_t x = 0; x < header.width; ++x, target += step) {
                const uint32_t pixel = fromLittleEndian(elementAt<Pixel>(source, x));
                for (int i = 0; i < 3; ++i)
                    target[i] = uint8_t(channelOf(pixel, masks[size_t(2 - i)], 0));
                if (hasAlpha)
                    target[3] = uint8_t(channelOf(pixel, masks[3], 255));
            }
        }
        return bitmap;
    }

    // An alpha channel of zeros only was never filled in; such a bitmap is opaque.
    Bitmap withUsedAlpha(Bitmap bitmap)
    {
        if (bitmap.format() != PixelFormat::Bgra32)
            return bitmap;
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            const uint8_t *const line = bitmap.line(y);
            for (int64_t x = 0; x < bitmap.width(); ++x) {
                if (line[x * 4 + 3] != 0)
                    return bitmap;
            }
        }
        bitmap.dropAlpha();
        return bitmap;
    }

    // Fields of 5 or 6 bits at these places; their upper bits are repeated below them.
    template<int kRedShift, int kGreenBits>
    Bitmap fromUsualFields(const DibHeader &header, ByteView bits)
    {
        constexpr uint32_t kGreenMask = (1U << kGreenBits) - 1;
        Bitmap bitmap = emptyBitmap(header, PixelFormat::Bgr24);
        for (int32_t y = 0; y < header.height; ++y) {
            const ByteView source = lineOf(header, bits, y);
            uint8_t *target = bitmap.line(y);
            for (int32_t x = 0; x < header.width; ++x, target += 3) {
                const uint32_t pixel = fromLittleEndian(elementAt<uint16_t>(source, x));
                const uint32_t blue = pixel & 31;
                const uint32_t green = pixel >> 5 & kGreenMask;
                const uint32_t red = pixel >> kRedShift & 31;
                target[0] = uint8_t(blue << 3 | blue >> 2);
                target[1] = uint8_t(green << (8 - kGreenBits) | green >> (2 * kGreenBits - 8));
                target[2] = uint8_t(red << 3 | red >> 2);
            }
        }
        return bitmap;
    }

    Bitmap from16Bits(const DibHeader &header, ByteView bits)
    {
        using Masks = std::array<uint32_t, 4>;
        if (header.masks == Masks{ 0x7C00, 0x03E0, 0x001F, 0 })
            return fromUsualFields<10, 5>(header, bits);
        if (header.masks == Masks{ 0xF800, 0x07E0, 0x001F, 0 })
            return fromUsualFields<11, 6>(header, bits);
        return withUsedAlpha(fromFields<uint16_t>(header, bits));
    }

    Bitmap from32Bits(const DibHeader &header, ByteView bits)
    {
        using Masks = std::array<uint32_t, 4>;
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0 })
            return linesOf(header, bits, PixelFormat::Bgr32);
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0xFF000000 })
            return withUsedAlpha(linesOf(header, bits, PixelFormat::Bgra32));
        return withUsedAlpha(fromFields<uint32_t>(header, bits));
    }

    Bitmap fromPlainBits(const DibHeader &header, ByteView bits)
    {
        switch (header.depth) {
        case 1:
            return from1Bit(header, bits);
        case 4:
            return from4Bits(header, bits);
        case 8:
            return linesOf(header, bits, PixelFormat::Indexed8);
        case 16:
            return from16Bits(header, bits);
        case 24:
            return linesOf(header, bits, PixelFormat::Bgr24);
        default:
            return from32Bits(header, bits);
        }
    }

    std::optional<DecodedBitmap> decodePlain(const DibHeader &header, const DibBytes &dib)
    {
        // The bits must be there before a pixel is allocated. Neither factor exceeds 2^36.
        if (header.stride() > dib.bits.size / header.height)
            return std::nullopt;
        DecodedBitmap bitmap;
        bitmap.pixels = fromPlainBits(header, dib.bits);
        if (header.depth <= 8)
            bitmap.pixels.colours() = colourTable(header, dib.info, dib.palette);
        return bitmap;
    }

    std::optional<DecodedBitmap> decodeRunLengths(const DibHeader &header, const DibBytes &dib,
                                                  int64_t &pixelsLeft)
    {
        // Two bytes paint up to 255 pixels, which is bounded by the file. What the rectangle has
        // beyond that is taken from the document's allowance.
        const int64_t pixels =
                (int64_t(header.width) + 3) / 4 * 4 * header.height; // lines are padded
        const int64_t painted = std::min(dib.bits.size, kRunLengthPixels) * 128;
        const int64_t charged = std::max<int64_t>(0, pixels - painted);
        if (pixels > kRunLengthPixels || charged > pixelsLeft)
            return std::nullopt;
        pixelsLeft -= charged;
        DecodedBitmap bitmap;
        bitmap.pixels = emptyBitmap(header, PixelFormat::Indexed8);
        bitmap.pixels.colours() = colourTable(header, dib.info, dib.palette);
        decodeRuns(dib.bits, header.depth == 4 ? RunDepth::Bits4 : RunDepth::Bits8, bitmap.pixels);
        return bitmap;
    }

    // The file as it stands, once its first bytes are those of its kind.
    std::optional<DecodedBitmap> passOn(const DibHeader &header, const DibBytes &dib)
    {
        const bool isPng = header.compression == DibHeader::Png;
        const std::string_view start = isPng ? "\x89PNG\r\n\x1a\n" : "\xff\xd8\xff";
        const auto startBytes = int64_t(start.size());
        if (dib.bits.size < startBytes
            || std::memcmp(dib.bits.data, start.data(), start.size()) != 0)
            return std::nullopt;
        DecodedBitmap bitmap;
        // Records are padded; the padding is no part of the file.
        bitmap.file = dib.bits;
        if (header.imageBytes >= startBytes && header.imageBytes < dib.bits.size)
            bitmap.file.size = header.imageBytes;
        bitmap.mediaType = isPng ? "image/png" : "image/jpeg";
        return bitmap;
    }

} // namespace

std::optional<DibBytes> splitPackedDib(ByteView packed, uint32_t usage)
{
    const auto header = readDibHeader(packed, usage);
    if (!header)
        return std::nullopt;
    const int64_t infoBytes = header->tableOffset + header->tableEntries * header->tableEntryBytes;
    const auto info = slice(packed, 0, infoBytes);
    if (!info)
        return std::nullopt;
    return DibBytes{ *info, tail(packed, infoBytes), usage };
}

std::optional<DecodedBitmap> ConvertTo32Bits(const DibBytes &dib, int64_t &runLengthPixels)
{
    const auto header = readDibHeader(dib.info, dib.usage);
    if (!header)
        return std::nullopt;
    auto bitmap = header->isFile()   ? passOn(*header, dib)
            : header->isRunLengths() ? decodeRunLengths(*header, dib, runLengthPixels)
                                     : decodePlain(*header, dib);
    if (!bitmap)
        return std::nullopt;
    bitmap->size = { header->width, header->height };
    if (!dib.isLasting)
        bitmap->pixels.own();
    return bitmap;
}

std::optional<DecodedBitmap> decodeBitmap16(ByteView bytes)
{
    // Type, width, height, bytes of a line, planes, bits of a pixel; then the bits, top line first.
    constexpr int64_t kHeaderBytes = 10;
    if (bytes.size < kHeaderBytes)
        return std::nullopt;
    const auto word = [bytes](int index) {
        return fromLittleEndian(elementAt<int16_t>(bytes, index));
    };
    DibHeader header;
    header.width = word(1);
    header.height = word(2);
    const int64_t lineBytes = word(3);
    const auto planes = uint8_t(bytes.data[8]);
    header.depth = uint8_t(bytes.data[9]);
    header.isBottomUp = false;
    if (header.depth == 16)
        header.masks = { 0x7C00, 0x03E0, 0x001F, 0 };
    else if (header.depth == 32)
        header.masks = { 0xFF0000, 0x00FF00, 0x0000FF, 0 };
    else if (header.depth != 1 && header.depth != 4 && header.depth != 8 && header.depth != 24)
        return std::nullopt;
    const int64_t needed = (int64_t(header.width) * header.depth + 7) / 8;
    if (header.width < 1 || header.height < 1 || planes != 1 || lineBytes < needed
        || lineBytes > (bytes.size - kHeaderBytes) / header.height)
        return std::nullopt;

    // Lines end on 16-bit borders here; the decoder wants 32-bit ones.
    std::vector<char> bits(size_t(header.stride() * header.height));
    for (int64_t y = 0; y < header.height; ++y)
        std::memcpy(bits.data() + y * header.stride(), bytes.data + kHeaderBytes + y * lineBytes,
                    size_t(needed));
    DecodedBitmap bitmap;
    bitmap.pixels = fromPlainBits(header, { bits.data(), int64_t(bits.size()) });
    bitmap.pixels.own();
    header.tableEntryBytes = 0;
    if (header.depth <= 8)
        bitmap.pixels.colours() = colourTable(header, {});
    bitmap.size = { header.width, header.height };
    return bitmap;
}

} // namespace svgtool
