#include "core/raster/EmfPlusBitmap.h"

#include "core/records/Fields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace svgtool {

namespace {

    // PixelFormat, [MS-EMFPLUS] 2.1.1.25.
    enum Format : uint32_t {
        k1bppIndexed = 0x00030101,
        k4bppIndexed = 0x00030402,
        k8bppIndexed = 0x00030803,
        k16bppGrayScale = 0x00101004,
        k16bppRgb555 = 0x00021005,
        k16bppRgb565 = 0x00021006,
        k16bppArgb1555 = 0x00061007,
        k24bppRgb = 0x00021808,
        k32bppRgb = 0x00022009,
        k32bppArgb = 0x0026200A,
        k32bppPargb = 0x000E200B,
        k48bppRgb = 0x0010300C,
        k64bppArgb = 0x0034400D,
        k64bppPargb = 0x001A400E,
        k64bppPargbByBits = 0x001C400E, // with the one of alpha, as 32 bits have it
    };

    uint32_t widened(uint32_t value, uint32_t most)
    {
        return (value * 255 + most / 2) / most;
    }

    // What was multiplied by alpha, without it.
    uint32_t divided(uint32_t value, uint32_t alpha)
    {
        return alpha == 0 ? 0 : std::min(255U, (value * 255 + alpha / 2) / alpha);
    }

    Argb withoutAlpha(Argb colour)
    {
        const uint32_t alpha = alphaOf(colour);
        return argb(divided(redOf(colour), alpha), divided(greenOf(colour), alpha),
                    divided(blueOf(colour), alpha), alpha);
    }

    // A channel of 48 and 64 bits: linear light, of which 8192 is all.
    uint32_t fromLinear(uint32_t value)
    {
        const double light = std::min(value, 8192U) / 8192.0;
        const double shown =
                light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
        return uint32_t(std::lround(shown * 255));
    }

    Argb takeDeep(Fields &fields, bool hasAlpha, bool isPremultiplied)
    {
        uint32_t channels[3];
        for (uint32_t &channel : channels)
            channel = std::min<uint32_t>(fields.word(), 8192);
        const uint32_t alpha = hasAlpha ? std::min<uint32_t>(fields.word(), 8192) : 8192;
        if (isPremultiplied && alpha > 0) {
            for (uint32_t &channel : channels)
                channel = std::min(8192U, channel * 8192 / alpha);
        }
        return argb(fromLinear(channels[2]), fromLinear(channels[1]), fromLinear(channels[0]),
                    widened(alpha, 8192));
    }

    Argb takeColour(Fields &fields, uint32_t format)
    {
        switch (format) {
        case k16bppGrayScale: {
            const uint32_t grey = widened(fields.word(), 0xFFFF);
            return argb(grey, grey, grey);
        }
        case k16bppRgb555:
        case k16bppArgb1555: {
            const uint32_t value = fields.word();
            const bool isClear = format == k16bppArgb1555 && (value & 0x8000) == 0;
            return argb(widened(value >> 10 & 31, 31), widened(value >> 5 & 31, 31),
                        widened(value & 31, 31), isClear ? 0 : 255);
        }
        case k16bppRgb565: {
            const uint32_t value = fields.word();
            return argb(widened(value >> 11, 31), widened(value >> 5 & 63, 63),
                        widened(value & 31, 31));
        }
        case k24bppRgb: {
            const uint32_t blue = fields.byte(), green = fields.byte();
            return argb(fields.byte(), green, blue);
        }
        case k32bppRgb:
            return fields.dword() | kAlphaBits;
        case k32bppArgb:
            return fields.dword();
        case k32bppPargb:
            return withoutAlpha(fields.dword());
        case k48bppRgb:
            return takeDeep(fields, false, false);
        case k64bppArgb:
            return takeDeep(fields, true, false);
        default: // k64bppPargb, k64bppPargbByBits
            return takeDeep(fields, true, true);
        }
    }

    bool isIndexed(uint32_t format)
    {
        return format == k1bppIndexed || format == k4bppIndexed || format == k8bppIndexed;
    }

    bool isKnown(uint32_t format)
    {
        constexpr uint32_t kDirect[] = { k16bppGrayScale, k16bppRgb555, k16bppRgb565,
                                         k16bppArgb1555,  k24bppRgb,    k32bppRgb,
                                         k32bppArgb,      k32bppPargb,  k48bppRgb,
                                         k64bppArgb,      k64bppPargb,  k64bppPargbByBits };
        return isIndexed(format) || std::ranges::find(kDirect, format) != std::end(kDirect);
    }

    // Line y, from the top.
    ByteView lineOf(const plus::PixelBitmap &bitmap, int32_t y)
    {
        const int64_t stride = std::abs(int64_t(bitmap.stride));
        const int32_t place = bitmap.stride < 0 ? bitmap.height - 1 - y : y;
        return tail({ bitmap.pixels.data(), int64_t(bitmap.pixels.size()) }, place * stride);
    }

    // Every pixel is an index, and what has no colour is black.
    Bitmap decodeIndexed(const plus::PixelBitmap &bitmap)
    {
        const int bits = bitsPerPixel(bitmap);
        const uint32_t colours = 1U << bits;
        const std::span palette(bitmap.palette.data(),
                                std::min<size_t>(bitmap.palette.size(), colours));
        const bool isClear =
                std::ranges::any_of(palette, [](Argb colour) { return !isOpaque(colour); });
        Bitmap decoded(isClear ? PixelFormat::Bgra32 : PixelFormat::Indexed8,
                       { bitmap.width, bitmap.height });
        decoded.colours().assign(colours, kBlack);
        std::ranges::copy(palette, decoded.colours().begin());
        std::vector<Argb> line = decoded.lineBuffer();
        for (int32_t y = 0; y < bitmap.height; ++y) {
            const ByteView bytes = lineOf(bitmap, y);
            for (int32_t x = 0; x < bitmap.width; ++x) {
                const int64_t bit = int64_t(x) * bits;
                const uint32_t byte = elementAt<uint8_t>(bytes, bit / 8);
                const uint32_t index = byte >> (8 - bits - bit % 8) & (colours - 1);
                if (isClear)
                    line[size_t(x)] = decoded.colours()[index];
                else
                    decoded.line(y)[x] = uint8_t(index);
            }
            if (isClear)
                decoded.writeLine(y, line.data());
        }
        return decoded;
    }

} // namespace

std::optional<Bitmap> decodeBitmap(const plus::PixelBitmap &bitmap)
{
    if (!isKnown(bitmap.format))
        return std::nullopt;
    if (isIndexed(bitmap.format))
        return decodeIndexed(bitmap);
    Bitmap decoded(PixelFormat::Bgra32, { bitmap.width, bitmap.height });
    std::vector<Argb> line = decoded.lineBuffer();
    for (int32_t y = 0; y < bitmap.height; ++y) {
        Fields fields(lineOf(bitmap, y));
        for (Argb &colour : line)
            colour = takeColour(fields, bitmap.format);
        decoded.writeLine(y, line.data());
    }
    using namespace plus::PixelFormatBit;
    if ((bitmap.format & (kAlpha | kPremultiplied)) == 0)
        decoded.dropAlpha();
    return decoded;
}

} // namespace svgtool
