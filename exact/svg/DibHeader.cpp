#include "exact/svg/DibHeader.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <limits>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\DibDecoder.cpp";

namespace {

    constexpr qint64 kCoreHeader = 12; // BITMAPCOREHEADER
    constexpr qint64 kInfoHeader = 40; // BITMAPINFOHEADER
    constexpr qint64 kHeaderWithMasks = 52;
    constexpr qint64 kHeaderWithAlpha = 56;
    constexpr qint64 kForeignHeader = 64; // of another system: no masks behind its first 40 bytes
    constexpr qint64 kLongestHeader = 124; // BITMAPV5HEADER

    quint32 wordAt(ByteView bytes, qint64 offset)
    {
        return qFromLittleEndian(readPadded<quint32>(tail(bytes, offset)));
    }

    quint16 halfWordAt(ByteView bytes, qint64 offset)
    {
        return qFromLittleEndian(readPadded<quint16>(tail(bytes, offset)));
    }

    // The masks of a bitmap that names none.
    std::array<quint32, 4> usualMasks(quint16 depth)
    {
        if (depth == 16)
            return { 0x7C00, 0x03E0, 0x001F, 0 };
        return { 0xFF0000, 0x00FF00, 0x0000FF, 0 };
    }

    DibHeader readCoreHeader(ByteView info)
    {
        DibHeader header;
        header.width = halfWordAt(info, 4);
        header.height = halfWordAt(info, 6);
        header.depth = halfWordAt(info, 10);
        header.masks = usualMasks(header.depth);
        header.tableOffset = kCoreHeader;
        header.tableEntries = header.depth <= 8 ? qint64(1) << header.depth : 0;
        header.tableEntryBytes = 3;
        return header;
    }

    // Where the masks stand and which there are: in the longer headers, or behind the short one.
    void readMasks(DibHeader &header, ByteView info, qint64 headerBytes)
    {
        const bool hasFields = header.compression == DibHeader::BitFields
                || header.compression == DibHeader::AlphaBitFields;
        const bool isInHeader = headerBytes >= kHeaderWithMasks && headerBytes != kForeignHeader;
        const bool hasAlpha = isInHeader ? headerBytes >= kHeaderWithAlpha
                                         : header.compression == DibHeader::AlphaBitFields;
        header.masks = usualMasks(header.depth);
        if (hasFields) {
            for (int i = 0; i < 3; ++i)
                header.masks[size_t(i)] = wordAt(info, kInfoHeader + i * 4);
        }
        if (hasAlpha && (header.depth == 32 || hasFields))
            header.masks[3] = wordAt(info, kInfoHeader + 12);
        if (hasFields && !isInHeader)
            header.tableOffset += hasAlpha ? 16 : 12;
    }

    std::optional<DibHeader> readInfoHeader(ByteView info, qint64 headerBytes)
    {
        auto fields = readPadded<BITMAPINFO>(info).bmiHeader;
        InitBITMAPHEADER(&fields);
        if (fields.biHeight == std::numeric_limits<qint32>::min())
            return std::nullopt;
        DibHeader header;
        header.width = fields.biWidth;
        header.isBottomUp = fields.biHeight >= 0;
        header.height = header.isBottomUp ? fields.biHeight : -fields.biHeight;
        header.depth = fields.biBitCount;
        header.compression = fields.biCompression;
        header.imageBytes = fields.biSizeImage;
        header.tableOffset = headerBytes;
        readMasks(header, info, headerBytes);
        header.tableEntries = fields.biClrUsed;
        if (header.tableEntries == 0 && header.depth <= 8 && !header.isFile())
            header.tableEntries = qint64(1) << header.depth;
        return header;
    }

    bool isPossible(const DibHeader &header)
    {
        if (header.width < 1 || header.height < 1)
            return false;
        const auto depth = header.depth;
        switch (header.compression) {
        case DibHeader::Plain:
            return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24
                    || depth == 32;
        case DibHeader::RunLengths8:
            return depth == 8 && header.isBottomUp;
        case DibHeader::RunLengths4:
            return depth == 4 && header.isBottomUp;
        case DibHeader::BitFields:
        case DibHeader::AlphaBitFields:
            return depth == 16 || depth == 32;
        case DibHeader::Jpeg:
        case DibHeader::Png:
            return true;
        default:
            return false;
        }
    }

} // namespace

std::optional<DibHeader> readDibHeader(ByteView info, quint32 usage)
{
    SVGTOOL_TRACE("readDibHeader");
    const qint64 headerBytes = wordAt(info, 0);
    if (headerBytes > info.size)
        return std::nullopt;
    std::optional<DibHeader> header;
    if (headerBytes == kCoreHeader)
        header = readCoreHeader(info);
    else if (headerBytes >= kInfoHeader && headerBytes <= kLongestHeader)
        header = readInfoHeader(info, headerBytes);
    if (!header || !isPossible(*header) || header->tableOffset > info.size)
        return std::nullopt;
    if (usage == 1)
        header->tableEntryBytes = 2;
    else if (usage != 0)
        header->tableEntryBytes = 0;
    return header;
}

} // namespace svgtool
