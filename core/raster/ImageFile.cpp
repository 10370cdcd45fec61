#include "core/raster/ImageFile.h"

#include <cstdint>
#include <string_view>

namespace svgtool {

namespace {

    uint8_t byteAt(ByteView file, int64_t offset)
    {
        return offset < file.size ? uint8_t(file.data[offset]) : uint8_t(0);
    }

    int32_t bigEndian16(ByteView file, int64_t offset)
    {
        return byteAt(file, offset) << 8 | byteAt(file, offset + 1);
    }

    bool beginsWith(ByteView file, std::string_view start)
    {
        return std::string_view(file.data, size_t(file.size)).substr(0, start.size()) == start;
    }

    // The first segment that begins a frame has the size; those before it say how long they are.
    IntSize jpegSize(ByteView file)
    {
        constexpr uint8_t kFirstFrame = 0xC0, kLastFrame = 0xCF;
        constexpr uint8_t kTables = 0xC4, kExtension = 0xC8, kArithmetic = 0xCC;
        for (int64_t at = 2; at + 4 <= file.size;) {
            if (byteAt(file, at) != 0xFF)
                return {};
            const uint8_t marker = byteAt(file, at + 1);
            if (marker == 0xFF) { // may be repeated
                ++at;
                continue;
            }
            const bool isFrame = marker >= kFirstFrame && marker <= kLastFrame && marker != kTables
                    && marker != kExtension && marker != kArithmetic;
            if (isFrame)
                return { bigEndian16(file, at + 7), bigEndian16(file, at + 5) };
            at += 2 + bigEndian16(file, at + 2);
        }
        return {};
    }

} // namespace

std::optional<ImageFile> inspectImageFile(ByteView file)
{
    using namespace std::string_view_literals;
    constexpr int64_t kPngWidth = 16, kGifWidth = 6;
    ImageFile image;
    if (beginsWith(file, "\x89PNG\r\n\x1A\n"sv)) {
        image.mediaType = "image/png";
        const bool isHuge = bigEndian16(file, kPngWidth) > INT16_MAX
                || bigEndian16(file, kPngWidth + 4) > INT16_MAX;
        if (!isHuge)
            image.size = { bigEndian16(file, kPngWidth) << 16 | bigEndian16(file, kPngWidth + 2),
                           bigEndian16(file, kPngWidth + 4) << 16
                                   | bigEndian16(file, kPngWidth + 6) };
    } else if (beginsWith(file, "\xFF\xD8"sv)) {
        image.mediaType = "image/jpeg";
        image.size = jpegSize(file);
    } else if (beginsWith(file, "GIF8"sv)) {
        image.mediaType = "image/gif";
        image.size = { byteAt(file, kGifWidth) | byteAt(file, kGifWidth + 1) << 8,
                       byteAt(file, kGifWidth + 2) | byteAt(file, kGifWidth + 3) << 8 };
    }
    return image.size.width > 0 && image.size.height > 0 ? std::optional(image) : std::nullopt;
}

} // namespace svgtool
