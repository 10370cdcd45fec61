#include "core/records/EmfPlusParts.h"

#include <algorithm>
#include <cstdlib>

namespace svgtool::plus {

static std::string copied(ByteView bytes)
{
    return bytes.size > 0 ? std::string(bytes.data, size_t(bytes.size)) : std::string();
}

// All lines are there, but for what fills the last one up.
static bool isWhole(const PixelBitmap &bitmap, int64_t bytes)
{
    const int64_t stride = std::abs(int64_t(bitmap.stride));
    const int64_t line = (int64_t(bitmap.width) * bitsPerPixel(bitmap) + 7) / 8;
    return bitmap.width > 0 && bitmap.height > 0 && line > 0 && line <= stride && line <= bytes
            && (bitmap.height - 1) <= (bytes - line) / stride;
}

static PixelBitmap readPixels(PlusFields &fields, PixelBitmap bitmap)
{
    if ((bitmap.format & PixelFormatBit::kIndexed) != 0) {
        fields.skip(4); // what its colours are like
        bitmap.palette = fields.dwords(fields.dword());
    }
    if (isWhole(bitmap, fields.rest().size))
        bitmap.pixels = copied(fields.rest());
    else
        fields.fail();
    return bitmap;
}

static Image readBitmap(PlusFields &fields)
{
    constexpr uint32_t kPixels = 0;
    PixelBitmap bitmap;
    bitmap.width = fields.longInt();
    bitmap.height = fields.longInt();
    bitmap.stride = fields.longInt();
    bitmap.format = fields.dword();
    if (fields.dword() == kPixels)
        return readPixels(fields, std::move(bitmap));
    return CompressedBitmap{ copied(fields.rest()) };
}

// A placeable header is filled up to 24 bytes, which are not counted; a file has it without.
static Image readMetafile(PlusFields &fields)
{
    constexpr uint32_t kPlaceable = 2;
    constexpr int64_t kHeader = 22, kFilledHeader = 24;
    constexpr uint32_t kWmfHeader = 0x00090001; // its type and size in words
    const uint32_t type = fields.dword();
    const int64_t size = fields.dword();
    const ByteView rest = fields.rest();
    if (type != kPlaceable)
        return NestedMetafile{ copied({ rest.data, std::min(size, rest.size) }) };
    const bool isFilled = Fields(rest, kFilledHeader).dword() == kWmfHeader;
    std::string file = copied({ rest.data, std::min(kHeader, rest.size) });
    file += copied(tail(rest, isFilled ? kFilledHeader : kHeader));
    return NestedMetafile{ std::move(file) };
}

Image readImage(PlusFields &fields)
{
    enum : uint32_t { Bitmap = 1, Metafile = 2 };
    switch (fields.dword()) {
    case Bitmap:
        return readBitmap(fields);
    case Metafile:
        return readMetafile(fields);
    default:
        return {};
    }
}

} // namespace svgtool::plus
