#include "exact/svg/DibDecoder.h"

#include "exact/logging/TraceScope.h"
#include "exact/svg/DibHeader.h"
#include "exact/svg/RunLengths.h"

#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\DibDecoder.cpp";

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
                    ? greyOf(qFromLittleEndian(readPadded<quint16>(*entry)))
                    : qRgb(uchar(bytes[2]), uchar(bytes[1]), uchar(bytes[0]));
        }
        return colours;
    }

    // The bytes of line y, counted from the top.
    ByteView lineOf(const DibHeader &header, ByteView bits, int y)
    {
        const qint64 line = header.isBottomUp ? qint64(header.height) - 1 - y : y;
        return { bits.data + line * header.stride(), header.stride() };
    }

    // The lines as they are, top first; the format lays out its pixels as the bitmap does.
    QImage copyLines(const DibHeader &header, ByteView bits, QImage::Format format)
    {
        QImage image(header.width, header.height, format);
        if (image.isNull())
            return image;
        const qint64 lineBytes = std::min<qint64>(image.bytesPerLine(), header.stride());
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
    int channelOf(quint32 pixel, quint32 mask, int otherwise)
    {
        if (mask == 0)
            return otherwise;
        const int shift = std::countr_zero(mask);
        const quint64 most = mask >> shift;
        return static_cast<int>(quint64((pixel & mask) >> shift) * 255 / most);
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
                const quint32 pixel = qFromLittleEndian(elementAt<Pixel>(source, x));
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
        using Masks = std::array<quint32, 4>;
        if (header.masks == Masks{ 0x7C00, 0x03E0, 0x001F, 0 })
            return copyLines(header, bits, QImage::Format_RGB555);
        if (header.masks == Masks{ 0xF800, 0x07E0, 0x001F, 0 })
            return copyLines(header, bits, QImage::Format_RGB16);
        return withUsedAlpha(fromFields<quint16>(header, bits));
    }

    QImage from24Bits(const DibHeader &header, ByteView bits)
    {
        return copyLines(header, bits, QImage::Format_BGR888);
    }

    QImage from32Bits(const DibHeader &header, ByteView bits)
    {
        using Masks = std::array<quint32, 4>;
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0 })
            return copyLines(header, bits, QImage::Format_RGB32);
        if (header.masks == Masks{ 0xFF0000, 0x00FF00, 0x0000FF, 0xFF000000 })
            return withUsedAlpha(copyLines(header, bits, QImage::Format_ARGB32));
        return withUsedAlpha(fromFields<quint32>(header, bits));
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
                                           qint64 &pixelsLeft)
    {
        // Two bytes paint up to 255 pixels, which is bounded by the file. What the rectangle has
        // beyond that is taken from the document's allowance.
        const qint64 pixels =
                (qint64(header.width) + 3) / 4 * 4 * header.height; // lines are padded
        const qint64 painted = std::min(dib.bits.size, kRunLengthPixels) * 128;
        const qint64 charged = std::max<qint64>(0, pixels - painted);
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

std::optional<DibBytes> splitPackedDib(ByteView packed, quint32 usage)
{
    SVGTOOL_TRACE("splitPackedDib");
    const auto header = readDibHeader(packed, usage);
    if (!header)
        return std::nullopt;
    const qint64 infoBytes = header->tableOffset + header->tableEntries * header->tableEntryBytes;
    const auto info = slice(packed, 0, infoBytes);
    if (!info)
        return std::nullopt;
    return DibBytes{ *info, tail(packed, infoBytes), usage };
}

std::optional<Bitmap> ConvertTo32Bits(const DibBytes &dib, qint64 &runLengthPixels)
{
    SVGTOOL_TRACE("ConvertTo32Bits");
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
    SVGTOOL_TRACE("decodeBitmap16");
    // Type, width, height, bytes of a line, planes, bits of a pixel; then the bits, top line first.
    constexpr qint64 kHeaderBytes = 10;
    if (bytes.size < kHeaderBytes)
        return std::nullopt;
    const auto word = [bytes](int index) {
        return qFromLittleEndian(elementAt<qint16>(bytes, index));
    };
    DibHeader header;
    header.width = word(1);
    header.height = word(2);
    const qint64 lineBytes = word(3);
    const auto planes = uchar(bytes.data[8]);
    header.depth = uchar(bytes.data[9]);
    header.isBottomUp = false;
    if (header.depth == 16)
        header.masks = { 0x7C00, 0x03E0, 0x001F, 0 };
    else if (header.depth == 32)
        header.masks = { 0xFF0000, 0x00FF00, 0x0000FF, 0 };
    else if (header.depth != 1 && header.depth != 4 && header.depth != 8 && header.depth != 24)
        return std::nullopt;
    const qint64 needed = (qint64(header.width) * header.depth + 7) / 8;
    if (header.width < 1 || header.height < 1 || planes != 1 || lineBytes < needed
        || lineBytes > (bytes.size - kHeaderBytes) / header.height)
        return std::nullopt;

    // Lines end on 16-bit borders here; the decoder wants 32-bit ones.
    std::vector<char> bits(size_t(header.stride() * header.height));
    for (qint64 y = 0; y < header.height; ++y)
        std::memcpy(bits.data() + y * header.stride(), bytes.data + kHeaderBytes + y * lineBytes,
                    size_t(needed));
    Bitmap bitmap;
    bitmap.image = fromPlainBits(header, { bits.data(), qint64(bits.size()) });
    if (bitmap.image.isNull())
        return std::nullopt;
    header.tableEntryBytes = 0;
    if (header.depth <= 8)
        bitmap.image.setColorTable(colourTable(header, {}));
    bitmap.size = QSize(header.width, header.height);
    return bitmap;
}

} // namespace svgtool
