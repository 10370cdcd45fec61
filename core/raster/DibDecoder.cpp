#include "core/raster/DibDecoder.h"

#include "core/base/ByteOrder.h"

#include "core/raster/DibHeader.h"
#include "core/raster/RunLengths.h"

#include <QVector>

#include <algorithm>
#include <bit>
#include <vector>

namespace svgtool {

namespace {

    // A colour table for every index of the depth. Entries that are not there are black, and
    // without a palette to look them up in, indices are shades of grey.
    QVector<QRgb> colourTable(const DibHeader &header, ByteView info)
    {
        const int count = 1 << header.depth;
        const auto greyOf = [count](int index) {
            const int grey = std::min(index, count - 1) * 255 / (count - 1);
            return qRgb(grey, grey, grey);
        };
        const ByteView table = tail(info, header.tableOffset);
        QVector<QRgb> colours(count, qRgb(0, 0, 0));
        for (int i = 0; i < count; ++i) {
            if (header.tableEntryBytes == 0) {
                colours[i] = greyOf(i);
                continue;
            }
            const auto entry = i < header.tableEntries
                    ? slice(table, i * header.tableEntryBytes, header.tableEntryBytes)
                    : std::nullopt;
            if (!entry)
                continue;
            const auto *bytes = entry->data;
            colours[i] = header.tableEntryBytes == 2
                    ? greyOf(fromLittleEndian(readPadded<uint16_t>(*entry)))
                    : qRgb(uchar(bytes[2]), uchar(bytes[1]), uchar(bytes[0]));
        }
        return colours;
    }

    // The bytes of line y, counted from the top.
    ByteView lineOf(const DibHeader &header, ByteView bits, int y)
    {
        const int64_t line = header.isBottomUp ? int64_t(header.height) - 1 - y : y;
        return { bits.data + line * header.stride(), header.stride() };
    }

    // The lines as they are, top first; the format lays out its pixels as the bitmap does.
    QImage copyLines(const DibHeader &header, ByteView bits, QImage::Format format)
    {
        QImage image(header.width, header.height, format);
        if (image.isNull())
            return image;
        const int64_t lineBytes = std::min<int64_t>(image.bytesPerLine(), header.stride());
        for (int y = 0; y < header.height; ++y)
            std::memcpy(image.scanLine(y), lineOf(header, bits, y).data, size_t(lineBytes));
        return image;
    }

    // Two colours, of the table; a line keeps its bits.
    QImage from1Bit(const DibHeader &header, ByteView bits)
    {
        return copyLines(header, bits, QImage::Format_Mono);
    }

    QImage from4Bits(const DibHeader &header, ByteView bits)
    {
        QImage image(header.width, header.height, QImage::Format_Indexed8);
        if (image.isNull())
            return image;
        for (int y = 0; y < header.height; ++y) {
            const char *source = lineOf(header, bits, y).data;
            uchar *target = image.scanLine(y);
            for (int x = 0; x < header.width; ++x)
                target[x] = (x % 2 == 0 ? uchar(source[x / 2]) >> 4 : source[x / 2]) & 0x0F;
        }
        return image;
    }

    QImage from8Bits(const DibHeader &header, ByteView bits)
    {
        return copyLines(header, bits, QImage::Format_Indexed8);
    }

    // The part of a pixel under a mask, stretched to 8 bits; without a mask, @p otherwise.
    int channelOf(uint32_t pixel, uint32_t mask, int otherwise)
    {
        if (mask == 0)
            return otherwise;
        const int shift = std::countr_zero(mask);
        const uint64_t most = mask >> shift;
        return static_cast<int>(uint64_t((pixel & mask) >> shift) * 255 / most);
    }

    // Any masks: pixels one by one.
    template<class Pixel>
    QImage fromFields(const DibHeader &header, ByteView bits)
    {
        const auto &masks = header.masks;
        QImage image(header.width, header.height,
                     masks[3] != 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        if (image.isNull())
            return image;
        for (int y = 0; y < header.height; ++y) {
            const ByteView source = lineOf(header, bits, y);
            auto *target = reinterpret_cast<QRgb *>(image.scanLine(y));
            for (int x = 0; x < header.width; ++x) {
                const uint32_t pixel = fromLittleEndian(elementAt<Pixel>(source, x));
                target[x] = qRgba(channelOf(pixel, masks[0], 0), channelOf(pixel, masks[1], 0),
                                  channelOf(pixel, masks[2], 0), channelOf(pixel, masks[3], 255));
            }
        }
        return image;
    }

    // An alpha channel of zeros only was never filled in; such a bitmap is opaque.
    bool isAllTransparent(const QImage &image)
    {
        for (int y = 0; y < image.height(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
            if (std::any_of(line, line + image.width(), [](QRgb p) { return qAlpha(p) != 0; }))
                return false;
        }
        return true;
    }

    QImage withUsedAlpha(QImage image)
    {
        if (image.format() == QImage::Format_ARGB32 && isAllTransparent(image))
            image.reinterpretAsFormat(QImage::Format_RGB32);
        return image;
    }

    QImage from16Bits(const DibHeader &header, ByteView bits)
    {
        using Masks = std::array<uint32_t, 4>;
        if (header.masks == Masks{ 0x7C00, 0x03E0, 0x001F, 0 })
            return copyLines(header, bits, QImage::Format_RGB555);
        if (header.masks == Masks{ 0xF800, 0x07E0, 0x001F, 0 })
            return copyLines(header, bits, QImage::Format_RGB16);
        return withUsedAlpha(fromFields<uint16_t>(header, bits));
    }

    QImage from24Bits(const DibHeader &header, ByteView bits)
    {
        return copyLines(header, bits, QImage::Format_BGR888);
    }

    QImage from32Bits(const DibHeader &header, ByteView bits)
    {
        using Masks = std::array<uint32_t, 4>;
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0 })
            return copyLines(header, bits, QImage::Format_RGB32);
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0xFF000000 })
            return withUsedAlpha(copyLines(header, bits, QImage::Format_ARGB32));
        return withUsedAlpha(fromFields<uint32_t>(header, bits));
    }

    QImage fromPlainBits(const DibHeader &header, ByteView bits)
    {
        switch (header.depth) {
        case 1:
            return from1Bit(header, bits);
        case 4:
            return from4Bits(header, bits);
        case 8:
            return from8Bits(header, bits);
        case 16:
            return from16Bits(header, bits);
        case 24:
            return from24Bits(header, bits);
        default:
            return from32Bits(header, bits);
        }
    }

    std::optional<Bitmap> decodePlain(const DibHeader &header, const DibBytes &dib)
    {
        // The bits must be there before a pixel is allocated. Neither factor exceeds 2^36.
        if (header.stride() > dib.bits.size / header.height)
            return std::nullopt;
        Bitmap bitmap;
        bitmap.image = fromPlainBits(header, dib.bits);
        if (bitmap.image.isNull())
            return std::nullopt;
        if (header.depth <= 8)
            bitmap.image.setColorTable(colourTable(header, dib.info));
        return bitmap;
    }

    std::optional<Bitmap> decodeRunLengths(const DibHeader &header, const DibBytes &dib,
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
        Bitmap bitmap;
        bitmap.image = QImage(header.width, header.height, QImage::Format_Indexed8);
        if (bitmap.image.isNull())
            return std::nullopt;
        bitmap.image.setColorTable(colourTable(header, dib.info));
        decodeRuns(dib.bits, header.depth == 4 ? RunDepth::Bits4 : RunDepth::Bits8, bitmap.image);
        return bitmap;
    }

    // The file as it stands, once its first bytes are those of its kind.
    std::optional<Bitmap> passOn(const DibHeader &header, const DibBytes &dib)
    {
        const bool isPng = header.compression == DibHeader::Png;
        const QByteArray start =
                isPng ? QByteArrayLiteral("\x89PNG\r\n\x1a\n") : QByteArrayLiteral("\xff\xd8\xff");
        if (dib.bits.size < start.size()
            || std::memcmp(dib.bits.data, start.constData(), size_t(start.size())) != 0)
            return std::nullopt;
        Bitmap bitmap;
        // Records are padded; the padding is no part of the file.
        bitmap.file = dib.bits;
        if (header.imageBytes >= start.size() && header.imageBytes < dib.bits.size)
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

std::optional<Bitmap> ConvertTo32Bits(const DibBytes &dib, int64_t &runLengthPixels)
{
    const auto header = readDibHeader(dib.info, dib.usage);
    if (!header)
        return std::nullopt;
    auto bitmap = header->isFile()   ? passOn(*header, dib)
            : header->isRunLengths() ? decodeRunLengths(*header, dib, runLengthPixels)
                                     : decodePlain(*header, dib);
    if (bitmap)
        bitmap->size = QSize(header->width, header->height);
    return bitmap;
}

std::optional<Bitmap> decodeBitmap16(ByteView bytes)
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
    const auto planes = uchar(bytes.data[8]);
    header.depth = uchar(bytes.data[9]);
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
    Bitmap bitmap;
    bitmap.image = fromPlainBits(header, { bits.data(), int64_t(bits.size()) });
    if (bitmap.image.isNull())
        return std::nullopt;
    header.tableEntryBytes = 0;
    if (header.depth <= 8)
        bitmap.image.setColorTable(colourTable(header, {}));
    bitmap.size = QSize(header.width, header.height);
    return bitmap;
}

} // namespace svgtool
