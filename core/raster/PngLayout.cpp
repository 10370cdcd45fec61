#include "core/raster/PngLayout.h"

#include <algorithm>

namespace svgtool {

namespace {

    // Adds the colours of all pixels. False, and nothing more is looked at, when they are too many.
    bool addColours(const Bitmap &bitmap, Palette &palette)
    {
        if (bitmap.isIndexed()) {
            const auto used = bitmap.usedIndices();
            for (size_t i = 0; i < bitmap.colours().size(); ++i) {
                if (used[i])
                    palette.add(bitmap.colours()[i]); // of which there are 256 at most
            }
            return true;
        }
        std::vector<Argb> line = bitmap.lineBuffer();
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            bitmap.readLine(y, line.data());
            std::optional<Argb> last;
            for (const Argb colour : line) {
                if (colour != last && !palette.add(colour))
                    return false;
                last = colour;
            }
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
        std::vector<Argb> line = bitmap.lineBuffer();
        for (int32_t y = 0; y < bitmap.height(); ++y) {
            bitmap.readLine(y, line.data());
            if (!std::all_of(line.begin(), line.end(), isOpaque))
                return true;
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

int PngLayout::pixelBits() const
{
    return colours == PngColours::Rgb ? 24 : colours == PngColours::Rgba ? 32 : depth;
}

PngLayout choosePngLayout(const Bitmap &bitmap)
{
    PngLayout layout;
    const bool isFew = addColours(bitmap, layout.palette);
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
