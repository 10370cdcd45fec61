#include "core/raster/PngLayout.h"

#include <algorithm>
#include <cstring>

namespace svgtool {

namespace {

    template<int kBytes>
    Argb colourAt(const uint8_t *pixel)
    {
        return argb(pixel[2], pixel[1], pixel[0], kBytes == 4 ? pixel[3] : 255U);
    }

    // How many pixels of a line are as the one before them, in blocks of eight.
    template<int kBytes>
    int32_t runOf(const uint8_t *pixel, int32_t left)
    {
        const auto word = [](const uint8_t *from) {
            uint64_t value = 0;
            std::memcpy(&value, from, sizeof value);
            return value;
        };
        int32_t run = 0;
        constexpr ptrdiff_t kBlock = ptrdiff_t(8) * kBytes;
        for (; run + 8 <= left; run += 8, pixel += kBlock) {
            uint64_t difference = 0;
            for (ptrdiff_t i = 0; i < kBlock; i += 8)
                difference |= word(pixel + i) ^ word(pixel + i - kBytes);
            if (difference != 0)
                break;
        }
        return run;
    }

    // The number of each pixel's colour in the palette, which is added to it. False, and nothing
    // more is looked at, when they are too many.
    // @param opaque  the bits of a pixel that count as set
    template<int kBytes>
    bool numberLine(const uint8_t *pixel, int32_t width, Argb opaque, Palette &palette,
                    uint8_t *numbers)
    {
        Argb last = 0;
        std::optional<uint8_t> number;
        for (int32_t x = 0; x < width;) {
            const Argb colour = colourAt<kBytes>(pixel) | opaque;
            pixel += kBytes;
            if (colour != last || !number) {
                last = colour;
                number = palette.add(colour);
                if (!number)
                    return false;
                numbers[x++] = *number;
                continue;
            }
            numbers[x++] = *number;
            const int32_t run = runOf<kBytes>(pixel, width - x);
            std::memset(numbers + x, *number, size_t(run));
            x += run;
            pixel += int64_t(run) * kBytes;
        }
        return true;
    }

    // Pages have many lines that are as the one above.
    bool numberPixels(const Bitmap &bitmap, Palette &palette, PngBlock &block)
    {
        const int32_t width = bitmap.width();
        const Argb opaque = bitmap.format() == PixelFormat::Bgr32 ? kAlphaBits : 0;
        uint8_t *numbers = block.room((size_t(width) + 1) * size_t(bitmap.height())) + 1;
        for (int32_t y = 0; y < bitmap.height(); ++y, numbers += width + 1) {
            const uint8_t *const line = bitmap.line(y);
            if (y > 0 && std::memcmp(line, bitmap.line(y - 1), size_t(bitmap.lineBytes())) == 0)
                std::memcpy(numbers, numbers - width - 1, size_t(width));
            else if (!(bitmap.format() == PixelFormat::Bgr24
                               ? numberLine<3>(line, width, opaque, palette, numbers)
                               : numberLine<4>(line, width, opaque, palette, numbers)))
                return false;
        }
        return true;
    }

    // Adds the colours of all pixels; false when they are too many.
    bool addColours(const Bitmap &bitmap, Palette &palette, PngBlock &block)
    {
        if (!bitmap.isIndexed())
            return numberPixels(bitmap, palette, block);
        const auto used = bitmap.usedIndices();
        for (size_t i = 0; i < bitmap.colours().size(); ++i) {
            if (used[i])
                palette.add(bitmap.colours()[i]); // of which there are 256 at most
        }
        return true;
    }

    int depthOfIndices(size_t count)
    {
        return count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
    }

    // The fewest bits in which these are shades of grey; nothing when they are not.
    std::optional<int> depthOfGreys(const std::vector<Argb> &colours)
    {
        for (const int depth : { 1, 2, 4, 8 }) {
            const int step = 255 / ((1 << depth) - 1);
            const auto isShade = [step](Argb colour) {
                return isOpaque(colour) && isGrey(colour) && redOf(colour) % step == 0;
            };
            if (std::all_of(colours.begin(), colours.end(), isShade))
                return depth;
        }
        return std::nullopt;
    }

    bool hasAlpha(const Bitmap &bitmap)
    {
        if (bitmap.format() != PixelFormat::Bgra32)
            return false;
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            const uint8_t *const line = bitmap.line(y);
            for (int64_t at = 3; at < bitmap.lineBytes(); at += 4) {
                if (line[at] != 255)
                    return true;
            }
        }
        return false;
    }

} // namespace

size_t Palette::slotOf(Argb colour) const
{
    size_t slot = (colour * 0x9E3779B1U) >> 22; // the golden ratio spreads neighbours
    static_assert(kSlots == 1U << (32 - 22));
    while (m_isTaken[slot] && m_colours[m_numbers[slot]] != colour)
        slot = (slot + 1) % kSlots;
    return slot;
}

std::optional<uint8_t> Palette::add(Argb colour)
{
    const size_t slot = slotOf(colour);
    if (!m_isTaken[slot]) {
        if (m_colours.size() == kMost)
            return std::nullopt;
        m_numbers[slot] = static_cast<uint8_t>(m_colours.size());
        m_colours.push_back(colour);
        m_isTaken[slot] = true;
    }
    return m_numbers[slot];
}

uint8_t *PngBlock::room(size_t size)
{
    if (size > m_size) {
        m_bytes.reset(); // first, as what is in there is not wanted
        m_size = 0;
        m_bytes = std::make_unique_for_overwrite<uint8_t[]>(size);
        m_size = size;
    }
    return m_bytes.get();
}

void PngBlock::trim()
{
    constexpr size_t kWorthKeeping = size_t(4) << 20;
    if (m_size > kWorthKeeping) {
        m_bytes.reset();
        m_size = 0;
    }
}

int PngLayout::pixelBits() const
{
    return colours == PngColours::Rgb ? 24 : colours == PngColours::Rgba ? 32 : depth;
}

PngLayout choosePngLayout(const Bitmap &bitmap, PngBlock &block)
{
    PngLayout layout;
    const bool isFew = addColours(bitmap, layout.palette, block);
    if (isFew) {
        const std::vector<Argb> &colours = layout.palette.colours();
        const int indexDepth = depthOfIndices(colours.size());
        const auto greyDepth = depthOfGreys(colours);
        if (greyDepth && *greyDepth <= indexDepth) {
            layout.colours = PngColours::Grey;
            layout.depth = *greyDepth;
            const int step = 255 / ((1 << layout.depth) - 1);
            for (size_t i = 0; i < colours.size(); ++i)
                layout.samples[i] = static_cast<uint8_t>(redOf(colours[i]) / step);
            return layout;
        }
        // A table can be longer than what it saves.
        constexpr int64_t kTableEntryPixels = 4;
        if (bitmap.isIndexed()
            || int64_t(colours.size()) * kTableEntryPixels <= bitmap.pixelCount()) {
            layout.colours = PngColours::Indexed;
            layout.depth = indexDepth;
            for (size_t i = 0; i < colours.size(); ++i)
                layout.samples[i] = static_cast<uint8_t>(i);
            return layout;
        }
    }
    layout.colours = hasAlpha(bitmap) ? PngColours::Rgba : PngColours::Rgb;
    return layout;
}

} // namespace svgtool
