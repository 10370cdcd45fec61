#include "core/raster/DibHeader.h"

#include "core/base/ByteOrder.h"

#include <limits>

namespace svgtool {

namespace {

    constexpr int64_t kCoreHeader = 12; // BITMAPCOREHEADER
    constexpr int64_t kInfoHeader = 40; // BITMAPINFOHEADER
    constexpr int64_t kHeaderWithMasks = 52;
    constexpr int64_t kHeaderWithAlpha = 56;
    constexpr int64_t kForeignHeader = 64; // of another system: no masks behind its first 40 bytes
    constexpr int64_t kLongestHeader = 124; // BITMAPV5HEADER

    uint32_t wordAt(ByteView bytes, int64_t offset)
    {
        return fromLittleEndian(readPadded<uint32_t>(tail(bytes, offset)));
    }

    uint16_t halfWordAt(ByteView bytes, int64_t offset)
    {
        return fromLittleEndian(readPadded<uint16_t>(tail(bytes, offset)));
    }

    // The masks of a bitmap that names none.
    std::array<uint32_t, 4> usualMasks(uint16_t depth)
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
        header.tableEntries = header.depth <= 8 ? int64_t(1) << header.depth : 0;
        header.tableEntryBytes = 3;
        return header;
    }

    // Where the masks stand and which there are: in the longer headers, or behind the short one.
    void readMasks(DibHeader &header, ByteView info, int64_t headerBytes)
    {
        const bool hasFields = header.compression == DibHeader::BitFields
                || header.compression == DibHeader::AlphaBitFields;
        const bool isInHeader = headerBytes >= kHeaderWithMasks && headerBytes != kForeignHeader;
        const bool hasAlpha = isInHeader ? headerBytes >= kHeaderWithAlpha
                                         : header.compression == DibHeader::AlphaBitFields;
        header.masks = usualMasks(header.depth);
        if (hasFields) {
            for (int64_t i = 0; i < 3; ++i)
                header.masks[size_t(i)] = wordAt(info, kInfoHeader + i * 4);
        }
        if (hasAlpha && (header.depth == 32 || hasFields))
            header.masks[3] = wordAt(info, kInfoHeader + 12);
        if (hasFields && !isInHeader)
            header.tableOffset += hasAlpha ? 16 : 12;
    }

    std::optional<DibHeader> readInfoHeader(ByteView info, int64_t headerBytes)
    {
        const auto height = static_cast<int32_t>(wordAt(info, 8));
        if (height == std::numeric_limits<int32_t>::min())
            return std::nullopt;
        DibHeader header;
        header.width = static_cast<int32_t>(wordAt(info, 4));
        header.isBottomUp = height >= 0;
        header.height = header.isBottomUp ? height : -height;
        header.depth = halfWordAt(info, 14);
        header.compression = wordAt(info, 16);
        header.imageBytes = wordAt(info, 20);
        header.tableOffset = headerBytes;
        readMasks(header, info, headerBytes);
        header.tableEntries = wordAt(info, 32);
        if (header.tableEntries == 0 && header.depth <= 8 && !header.isFile())
            header.tableEntries = int64_t(1) << header.depth;
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

std::optional<DibHeader> readDibHeader(ByteView info, uint32_t usage)
{
    const int64_t headerBytes = wordAt(info, 0);
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
